// Properties that hold for every entry, tried on random ones.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <set>

#include "tests/kit.h"

namespace kal::test {
namespace {

using Rows = std::vector<std::vector<Variant>>;

// What a run answers: its findings, each string's in one order so that entries compare whose lines
// stand in another, or the error.
using Findings = std::multiset<std::string>;

// An entry whose account and VAT lines can be changed, and one company for all of them.
class Properties : public testing::Test {
 protected:
  static constexpr int kEntries = 200;
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

  int Below(int limit) { return static_cast<int>(random_() % static_cast<unsigned>(limit)); }
  template <class T, std::size_t n>
  const T& AnyOf(const T (&of)[n]) {
    return of[Below(n)];
  }

  // A random entry: one of each kind, changed in up to three ways, with lines of random accounts,
  // types and amounts behind its own; half of those come in pairs that balance.
  void Draw() {
    text_ = EntryText(AnyOf(kKinds), AnyOf(kChanges) + std::string(";") + AnyOf(kChanges));
    Checked base(company_.Siblings(), text_);
    entry_ = base.entry;
    Rows lines = RowsOf("RsRCont");
    static constexpr const char* kAccounts[] = {"1001", "3001", "4001", "7001", "10", "", "x"};
    for (int added = Below(5); added > 0; --added) {
      std::vector<Variant> line = lines[static_cast<std::size_t>(Below(3)) % lines.size()];
      Set("RsRCont", line, "CodConto", AnyOf(kAccounts));
      Set("RsRCont", line, "TipoRiga", static_cast<std::int16_t>(Below(5)));
      Set("RsRCont", line, "NumeroRiga", static_cast<std::int32_t>(lines.size() + 1));
      const Currency amount = Currency::FromUnits(Below(2'000'000) - 500'000);
      const bool debit = Below(2) == 0;
      Amounts(line, debit, amount, amount);
      lines.push_back(line);
      if (Below(2) == 0) {
        Set("RsRCont", line, "NumeroRiga", static_cast<std::int32_t>(lines.size() + 1));
        Amounts(line, !debit, amount, amount);
        lines.push_back(line);
      }
    }
    SetRows("RsRCont", lines);
  }

  host::SuppliedSet* Find(std::string_view name) {
    const auto found = std::ranges::find_if(
        entry_.sets, [&](const host::SuppliedSet& s) { return s.set->name == name; });
    return found == entry_.sets.end() ? nullptr : &*found;
  }

  std::size_t Column(std::string_view set, std::string_view field) {
    return static_cast<std::size_t>(Find(set)->rows->FindColumn(field));
  }
  void Set(std::string_view set, std::vector<Variant>& row, std::string_view field, Variant value) {
    row[Column(set, field)] = std::move(value);
  }
  void Amounts(std::vector<Variant>& line, bool debit, Currency amount, Currency inBase) {
    Set("RsRCont", line, "ImportoDare", debit ? amount : Currency());
    Set("RsRCont", line, "ImportoDareVB", debit ? inBase : Currency());
    Set("RsRCont", line, "ImportoAvere", debit ? Currency() : amount);
    Set("RsRCont", line, "ImportoAvereVB", debit ? Currency() : inBase);
  }

  Rows RowsOf(std::string_view set) {
    const RowTable& table = *Find(set)->rows;
    Rows rows(table.RowCount());
    for (std::size_t row = 0; row < rows.size(); ++row) {
      for (std::size_t column = 0; column < table.Columns().size(); ++column) {
        rows[row].push_back(table.Cell(row, column));
      }
    }
    return rows;
  }
  void SetRows(std::string_view set, const Rows& rows) {
    const auto table = std::make_shared<RowTable>(Find(set)->rows->Columns());
    for (const std::vector<Variant>& row : rows) {
      table->AddRow(row);
    }
    Find(set)->rows = table;
  }

  void Hand(Checked& checked) {
    checked.entry = entry_;
    checked.sets.clear();
    for (const host::SuppliedSet& supplied : entry_.sets) {
      checked.sets.push_back(std::make_shared<MemoryRecordset>(supplied.rows, supplied.editMode));
      (checked.checker.*supplied.set->assign)(checked.sets.back());
    }
  }
  std::string Run() {
    Checked checked(siblings_, text_);
    Hand(checked);
    return checked.Run();
  }
  static Findings Split(std::string run) {
    for (const char* name : {" Err: ", " Warn: ", " Prot: ", " Dup: ", " Group: "}) {
      if (const std::size_t at = run.find(name); at != std::string::npos) {
        run.replace(at, std::string_view(name).size(), " / ");
      }
    }
    Findings findings;
    for (std::size_t end = 0; end != std::string::npos; run.erase(0, end + 3)) {
      end = run.find(" / ");
      findings.insert(run.substr(0, end));
      if (end == std::string::npos) {
        break;
      }
    }
    return findings;
  }
  // The findings that only one of the two has, but for those told.
  static Findings Difference(const Findings& before, const Findings& after,
                             std::initializer_list<std::string_view> butFor) {
    Findings difference;
    std::ranges::set_symmetric_difference(before, after,
                                          std::inserter(difference, difference.end()));
    std::erase_if(difference, [&](const std::string& finding) {
      return finding == "True" || finding == "False" ||
             std::ranges::any_of(butFor, [&](auto code) { return finding.starts_with(code); });
    });
    return difference;
  }

  TestCompany file_{
      "INSERT INTO STDParametriAzienda VALUES ('GestisciPNInfragruppo','1');"
      "INSERT INTO COGPrimeNoteProprieta VALUES ('P',1)"};
  company::Company company_{file_.Path().string()};
  CodedSiblings siblings_{company_.Siblings()};
  std::mt19937 random_{20110701};
  std::string text_;
  host::Entry entry_;
};

TEST_F(Properties, OrderOfAccountLines) {
  for (int i = 0; i < kEntries && !HasFailure(); ++i) {
    Draw();
    const Findings before = Split(Run());
    Rows lines = RowsOf("RsRCont");
    std::ranges::shuffle(lines, random_);
    SetRows("RsRCont", lines);
    EXPECT_EQ(Split(Run()), before) << text_;
  }
}

// The balance messages, and all others of an entry that is not counted or matched by line.
TEST_F(Properties, OneLineAsTwoOfTheSameSum) {
  static constexpr std::string_view kBalance[] = {"10492", "10493", "10494", "10495"};
  const auto balance = [&](const Findings& findings) {
    Findings kept;
    std::ranges::copy_if(findings, std::inserter(kept, kept.end()), [&](const std::string& f) {
      return std::ranges::find(kBalance, f) != std::end(kBalance);
    });
    return kept;
  };
  std::size_t unbalanced = 0;
  for (int i = 0; i < kEntries && !HasFailure(); ++i) {
    Draw();
    const Findings before = balance(Split(Run()));
    Rows lines = RowsOf("RsRCont");
    std::vector<Variant>& line = lines[static_cast<std::size_t>(Below(100)) % lines.size()];
    const bool debit{line[Column("RsRCont", "ImportoDare")] != 0};
    const Currency whole = CCur(line[Column("RsRCont", debit ? "ImportoDare" : "ImportoAvere")]);
    const Currency base = CCur(line[Column("RsRCont", debit ? "ImportoDareVB" : "ImportoAvereVB")]);
    const Currency part = Currency::FromUnits(Below(3'000'000) - 1'000'000);
    std::vector<Variant> other = line;
    Amounts(line, debit, part, part);
    Amounts(other, debit, whole - part, base - part);
    lines.push_back(other);
    SetRows("RsRCont", lines);
    EXPECT_EQ(balance(Split(Run())), before) << text_;
    unbalanced += before.empty() ? 0U : 1U;
  }
  EXPECT_GT(unbalanced, 20U);
}

// A line without an amount counts as a line, and as nothing else.
TEST_F(Properties, ZeroLines) {
  for (int i = 0; i < kEntries && !HasFailure(); ++i) {
    Draw();
    const Findings before = Split(Run());
    const host::Entry entry = entry_;
    Rows lines = RowsOf("RsRCont");
    std::vector<Variant> zero = lines[0];
    Amounts(zero, Below(2) == 0, Currency(), Currency());
    Set("RsRCont", zero, "CodConto", "1001");
    Set("RsRCont", zero, "TipoCliFor", std::int16_t{0});
    lines.insert(lines.begin() + Below(static_cast<int>(lines.size()) + 1), zero);
    SetRows("RsRCont", lines);
    EXPECT_EQ(Difference(before, Split(Run()), {"10522", "10734"}), Findings()) << text_;
    entry_ = entry;
    if (Find("RsRIva") == nullptr) {
      continue;
    }
    // A VAT line is also asked about its code.
    Rows vatLines = RowsOf("RsRIva");
    vatLines.push_back(vatLines[0]);
    for (const char* field :
         {"Imponibile", "ImponibileVB", "Imposta", "ImpostaVB", "TotaleVB", "Indetraibile"}) {
      Set("RsRIva", vatLines.back(), field, Currency());
    }
    SetRows("RsRIva", vatLines);
    EXPECT_EQ(
        Difference(before, Split(Run()), {"10498", "10521", "10726", "10695", "10743", "Alcune"}),
        Findings())
        << text_;
  }
}

// The template is what an object keeps, so it is handed over each time.
TEST_F(Properties, SecondCallsAreAsFirstOnes) {
  Draw();
  Checked reused(siblings_, text_);
  for (int i = 0; i < kEntries && !HasFailure(); ++i) {
    Draw();
    for (const host::EntrySet& set : host::EntrySets()) {
      (reused.checker.*set.assign)(nullptr);
    }
    Hand(reused);
    const std::string first = Run();
    EXPECT_EQ(reused.Run(), first) << text_;
    for (const std::shared_ptr<MemoryRecordset>& set : reused.sets) {
      EXPECT_TRUE(set->FilterText().empty() || set->RecordCount() == 0) << text_;
    }
    // As the sets were handed back, the template now kept: positions do not matter but the
    // header's, which never moves.
    EXPECT_EQ(reused.Run(), first) << text_;
  }
}

}  // namespace
}  // namespace kal::test
