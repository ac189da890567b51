// Every sample entry answers over the sample company what it expects, however closely it is
// watched; and every message has a sample that gives it.

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <nlohmann/json.hpp>
#include <sstream>

#include "host/EntryFile.h"
#include "host/ExplainPages.h"
#include "host/ExplainTree.h"
#include "host/Report.h"
#include "host/Runner.h"
#include "messages/Catalogue.h"
#include "modify/Modify.h"
#include "save/OkAggiorna.h"
#include "tests/kit.h"

namespace kal::host {
namespace {

namespace fs = std::filesystem;
using nlohmann::json;

std::string_view NameOf(const Finding& finding) {
  return finding.code ? kal::NameOf(*finding.code) : finding.literal;
}

// The answer as entries expect it: messages by their codes, literal ones by their names.
json Told(const Outcome& outcome) {
  const json answer = json::parse(ToJson(outcome));
  json told = {{"result", answer.at("result")}};
  if (!answer.at("error").is_null()) told["error"] = answer.at("error");
  for (const Finding& finding : outcome.findings) {
    json& string = told[std::string(kResultStringNames[static_cast<std::size_t>(finding.string)])];
    string.push_back(finding.code ? json(static_cast<int>(*finding.code)) : json(finding.literal));
  }
  return told;
}

class Samples : public testing::Test {
 protected:
  // What each entry of each file comes to.
  template <class Visit>
  void ForEach(Visit visit) {
    for (const fs::path& file : fs::directory_iterator(fs::path(KAL_SOURCE_DIR) / "host/samples")) {
      std::ifstream stream(file);
      const std::string name = file.stem().string();
      EntryFile entries(stream, name);
      auto entry = entries.Next();
      EXPECT_TRUE(entry) << file << " holds no entry";
      for (; entry; entry = entries.Next()) {
        visit(*entry, CheckEntry(company_, *entry, Detail::FindingsAndSteps));
      }
    }
  }

  test::ScratchPath path_;
  company::Company company_ = [&] {
    company::CreateCompany(path_.Text(), true);
    return company::Company(path_.Text());
  }();
};

TEST_F(Samples, AnswerWhatTheyExpect) {
  ForEach([&](const EntryText& entry, const Outcome& watched) {
    const json given = json::parse(entry.text, nullptr, false);
    const json expected = given.is_object() ? given.value("expected", json()) : json();
    const json told = Told(watched);
    EXPECT_TRUE(told == expected) << entry.place.In(Language::English) << "\n  expected "
                                  << expected << "\n  answered " << told;
    EXPECT_EQ(ToJson(watched), ToJson(CheckEntry(company_, entry)))
        << entry.place.In(Language::English);
    std::istringstream lines(ExplainTree(watched, {Language::English, false}));
    for (std::string line; std::getline(lines, line);) {
      EXPECT_LE(std::ranges::count_if(line, [](char c) { return (c & 0xC0) != 0x80; }), 100)
          << line;
      EXPECT_EQ(line.find_first_of("\r\x1b"), std::string::npos) << line;
    }
  });
}

// Only the message about separate VAT activities has none: the sample company does not keep them.
TEST_F(Samples, GiveEveryMessage) {
  std::map<std::string, Outcome, std::less<>> outcomes;
  ForEach([&](const EntryText& entry, Outcome outcome) {
    outcomes[std::string(entry.place.file)] = std::move(outcome);
  });
  for (const Message& page : Catalogue()) {
    SCOPED_TRACE(page.name);
    EXPECT_EQ(FindPage(page.name), &page);
    if (page.sample.empty()) {
      EXPECT_EQ(page.name, "AttivitaAutofatturaDiversa");
      continue;
    }
    const auto sample = outcomes.find(page.sample);
    ASSERT_NE(sample, outcomes.end()) << page.sample;
    const auto finding = std::ranges::find(sample->second.findings, page.name, NameOf);
    ASSERT_NE(finding, sample->second.findings.end()) << page.sample;
    EXPECT_TRUE(std::ranges::any_of(sample->second.steps,
                                    [&](const Step& step) { return step.name == page.check; }));
    EXPECT_EQ(finding->at.set, page.set);
    EXPECT_EQ(finding->at.row != 0, !page.set.empty());
  }
}

// A check in an order is an operation, so that an explanation shows it by the name that its row
// has.
TEST_F(Samples, EnterTheChecksOfTheOrders) {
  std::map<std::string_view, bool> entered;
  for (const auto order : {OrdineAggiorna(), OrdineModifica()}) {
    for (const Passo& row : order) entered[row.Controllo] = row.Controllo.empty();
  }
  ForEach([&](const EntryText&, const Outcome& outcome) {
    for (const Step& step : outcome.steps) {
      if (const auto row = entered.find(step.name); row != entered.end()) row->second = true;
    }
  });
  for (const auto& [check, was] : entered) EXPECT_TRUE(was) << check;
}

}  // namespace
}  // namespace kal::host
