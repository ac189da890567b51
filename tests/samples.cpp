// Every sample entry answers over the sample company what it expects; and every message has its
// texts.

#include <gtest/gtest.h>

#include <cstddef>
#include <filesystem>
#include <fstream>
#include <map>
#include <nlohmann/json.hpp>
#include <random>
#include <string>
#include <string_view>

#include "company/Company.h"
#include "host/EntryFile.h"
#include "host/Report.h"
#include "host/Runner.h"
#include "messages/Catalogue.h"

namespace kal {
namespace {

namespace fs = std::filesystem;
using nlohmann::json;

// The answer as entries expect it: messages by their codes, literal ones by their names.
json Told(const json& answer) {
  json told = {{"result", answer.at("result")}};
  if (!answer.at("error").is_null()) told["error"] = answer.at("error");
  for (const json& finding : answer.at("findings")) {
    json name = finding.at("code");
    const std::string text = finding.at("text");  // some literal ones end their line
    for (const Message& message : Catalogue()) {
      if (name.is_null() && text.starts_with(message.text.italian)) name = message.name;
    }
    told[finding.at("string").get<std::string>()].push_back(name);
  }
  return told;
}

TEST(Samples, AnswerWhatTheyExpect) {
  const fs::path books =
      testing::TempDir() + "kal_samples_" + std::to_string(std::random_device{}());
  company::CreateCompany(books.string(), true);
  for (company::Company company(books.string());
       const fs::path& file : fs::directory_iterator(fs::path(KAL_SOURCE_DIR) / "host/samples")) {
    std::ifstream stream(file);
    host::EntryFile entries(stream, file.filename().string());
    auto entry = entries.Next();
    EXPECT_TRUE(entry) << file << " holds no entry";
    for (; entry; entry = entries.Next()) {
      const json given = json::parse(entry->text, nullptr, false);
      const json expected = given.is_object() ? given.value("expected", json()) : json();
      const json answer = json::parse(ToJson(CheckEntry(company, *entry)));
      const json told = Told(answer);
      EXPECT_TRUE(told == expected) << entry->place << ": " << answer.at("id") << "\n  expected "
                                    << expected << "\n  answered " << told;
    }
  }
  fs::remove(books);
}

// How many parameters the checks hand to a message; none where it is not listed.
TEST(Messages, TakeTheParametersOfTheirCode) {
  const std::map<int, std::size_t> parameters = {{10489, 1}, {10498, 1}, {10506, 2}, {10511, 1},
                                                 {10519, 1}, {10520, 1}, {10521, 1}, {10578, 1},
                                                 {10587, 2}, {10588, 1}, {10590, 2}, {10660, 1},
                                                 {10666, 1}, {10738, 1}, {10742, 1}, {10743, 1}};
  for (const Message& message : Catalogue()) {
    const std::string_view said = message.text.italian;
    const auto row = parameters.find(message.code ? static_cast<int>(*message.code) : 0);
    std::size_t taken = 0;
    for (std::size_t at = said.find("%s"); at != said.npos; at = said.find("%s", at + 2)) ++taken;
    EXPECT_EQ(taken, row == parameters.end() ? 0 : row->second) << message.name;
  }
}

}  // namespace
}  // namespace kal
