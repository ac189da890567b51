// Properties that hold for every entry, tried on random ones.

#include <gtest/gtest.h>

#include <algorithm>
#include <nlohmann/json.hpp>
#include <random>
#include <set>

#include "tests/engines.h"
#include "tests/kit.h"

namespace kal::test {
namespace {

class Properties : public testing::TestWithParam<Place> {
 protected:
  static constexpr int kEntries = 200;

  template <class T, std::size_t n>
  const T& AnyOf(const T (&of)[n]) {
    return of[random_() % n];
  }

  // One of each kind, changed in up to two ways, with lines of random accounts, types and amounts
  // behind its own; half of those come in pairs that balance.
  nlohmann::json Draw() {
    static constexpr const char* kKinds[] = {"acquisto", "vendita", "corrispettivi", "giroconto"};
    static constexpr const char* kChanges[] = {"",
                                               "T.Provvisoria=true",
                                               "T.CodCausale=\"LIB\"",
                                               "T.CodCausale=\"APE\"",
                                               "T.CodCausale=\"ACQ\";T.Intra=true",
                                               "T.ReverseCharge=true;I1.ReverseCharge=true",
                                               "T.FiscalitaBL=true",
                                               "T.IdDichiarazione=2",
                                               "T.CodProprieta=\"P\";T.Infragruppo=true",
                                               "R+{\"CodContoContropartita\":\"4001\"}",
                                               "T.Protocollo=0;T.TotDocumentoVB=0"};
    static constexpr const char* kAccounts[] = {"1001", "3001", "4001", "7001", "10", "", "x"};
    auto entry = nlohmann::json::parse(
        EntryText(AnyOf(kKinds), AnyOf(kChanges) + std::string(";") + AnyOf(kChanges)));
    auto& lines = entry["RsRCont"]["rows"];
    const auto add = [&](nlohmann::json line, bool debit, const std::string& amount) {
      line["NumeroRiga"] = lines.size() + 1;
      for (const char* base : {"", "VB"}) {
        line["ImportoDare" + std::string(base)] = debit ? amount : "0";
        line["ImportoAvere" + std::string(base)] = debit ? "0" : amount;
      }
      lines.push_back(std::move(line));
    };
    for (std::size_t added = random_() % 5; added > 0; --added) {
      nlohmann::json line = lines[random_() % lines.size()];
      line["CodConto"] = AnyOf(kAccounts);
      line["TipoRiga"] = random_() % 5;
      const auto amount =
          Currency::FromUnits(static_cast<std::int64_t>(random_() % 2'000'000) - 500'000).ToText();
      const bool debit = random_() % 2 == 0;
      add(line, debit, amount);
      if (random_() % 2 == 0) add(line, !debit, amount);
    }
    return entry;
  }

  // What it answers in a reading that was rehearsed.
  std::string Run(Checked& checked, const std::string& text) {
    const company::Company::Reading books(company_, [&] { (void)Checked(siblings_, text).Run(); });
    return checked.Run();
  }

  TestCompany file_{
      "INSERT INTO STDParametriAzienda VALUES ('GestisciPNInfragruppo','1');"
      "INSERT INTO COGPrimeNoteProprieta VALUES ('P',1)"};
  company::Company company_{KeptAt(GetParam(), file_.Text())};
  CodedSiblings siblings_{company_.Siblings()};
  std::mt19937 random_{20110701};
};

// Every finding stays, in whatever order the lines stand.
TEST_P(Properties, OrderOfAccountLines) {
  const auto findings = [&](const nlohmann::json& entry) {
    const std::string text = entry.dump();
    Checked checked(siblings_, text);
    std::multiset<std::string> found = {Run(checked, text).substr(0, 5)};
    for (const Finding& finding : checked.checker.Findings().All()) found.insert(finding.text);
    return found;
  };
  for (int i = 0; i < kEntries && !HasFailure(); ++i) {
    nlohmann::json entry = Draw();
    const auto before = findings(entry);
    std::ranges::shuffle(entry["RsRCont"]["rows"].get_ref<nlohmann::json::array_t&>(), random_);
    EXPECT_EQ(findings(entry), before) << entry;
  }
}

// The template is what an object keeps, so it is handed over each time.
TEST_P(Properties, SecondCallsAreAsFirstOnes) {
  Checked reused(siblings_, Draw().dump());
  for (int i = 0; i < kEntries && !HasFailure(); ++i) {
    const std::string text = Draw().dump();
    Checked fresh(siblings_, text);
    const std::string first = Run(fresh, text);
    reused.entry = fresh.entry;
    reused.Hand();
    EXPECT_EQ(reused.Run(), first) << text;
    for (const std::shared_ptr<MemoryRecordset>& set : reused.sets) {
      EXPECT_TRUE(set->FilterText().empty() || set->RecordCount() == 0) << text;
    }
    // As the sets were handed back, the template now kept: positions do not matter but the
    // header's, which never moves.
    EXPECT_EQ(reused.Run(), first) << text;
  }
}

KAL_ON_ALL_ENGINES(Properties);

}  // namespace
}  // namespace kal::test
