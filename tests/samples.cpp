// Every sample entry, run by the program over the sample company, answers what
// data/samples.expected says; and every message has its texts.

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <nlohmann/json.hpp>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "company/Company.h"
#include "company/MessageTexts.h"
#include "frame/modCommonCostanti.h"

namespace kal {
namespace {

namespace fs = std::filesystem;
using nlohmann::json;

const fs::path kSource = KAL_SOURCE_DIR;

constexpr std::pair<std::string_view, std::string_view> kLiterals[] = {
    {"kEffettiSplitPayment", testi::kEffettiSplitPayment},
    {"kSezionaleNonSplit", testi::kSezionaleNonSplit},
    {"kClienteNonSplit", testi::kClienteNonSplit},
    {"kPlafondSuperato", testi::kPlafondSuperato},
    {"kDataDocumentoVuota", testi::kDataDocumentoVuota},
    {"kDichiarazioneNonValida", testi::kDichiarazioneNonValida},
    {"kAliquoteDiverse", testi::kAliquoteDiverse},
    {"kGenerataDaSplitPayment", testi::kGenerataDaSplitPayment},
    {"kTrasmessoSdi", testi::kTrasmessoSdi},
    {"kXmlGenerato", testi::kXmlGenerato},
};

// The parts of a text between its separators.
std::vector<std::string> Split(std::string_view text, std::string_view separator) {
  std::vector<std::string> parts;
  for (std::size_t end = 0; (end = text.find(separator)) != text.npos;) {
    parts.emplace_back(text.substr(0, end));
    text.remove_prefix(end + separator.size());
  }
  parts.emplace_back(text);
  return parts;
}

// Whether the message is the text with something, or nothing, in place of each "%s".
bool IsFilled(std::string_view message, std::string_view text) {
  const std::vector<std::string> parts = Split(text, "%s");
  if (parts.size() == 1) return message == text;
  std::size_t from = 0;
  for (const std::string& part : parts) {
    const std::size_t found = message.find(part, from);
    if (found == message.npos) return false;
    from = found + part.size();
  }
  return message.starts_with(parts.front()) && message.ends_with(parts.back());
}

// The code or the name of a message; all that fit, should its text not tell them apart.
std::string Name(std::string_view message) {
  std::string names;
  const auto add = [&names](std::string_view name) {
    names += (names.empty() ? "" : "/") + std::string(name);
  };
  for (const auto& [name, text] : kLiterals) {
    if (message == text) add(name);
  }
  for (const company::MessageText& text : company::MessageTexts()) {
    if (IsFilled(message, text.italian)) add(std::to_string(static_cast<int>(text.code)));
  }
  return names.empty() ? "?" + std::string(message) : names;
}

std::string Findings(const json& result, const char* set, const std::string& label) {
  std::string names;
  for (const std::string& message : Split(result.value(set, ""), kCrLf)) {
    if (!message.empty()) names += (names.empty() ? " " : ", ") + Name(message);
  }
  return " | " + label + ":" + names;
}

std::string Answer(const json& result) {
  if (!result.at("error").is_null()) return result.at("error").dump();
  const json& answer = result.at("result");
  return answer.is_boolean() ? (answer.get<bool>() ? "True" : "False") : answer.dump();
}

std::string Line(const std::string& file, const json& result) {
  return file + " | " + Answer(result) + Findings(result, "ErrString", "Err") +
         Findings(result, "WarnString", "Warn") + Findings(result, "WarnProtocolloString", "Prot") +
         Findings(result, "WarnDuplicatoDocString", "Dup") +
         Findings(result, "WarnInfragruppoString", "Group");
}

TEST(Samples, AnswerAsTheirTableSays) {
  std::map<std::string, std::string> expected;
  std::ifstream table(kSource / "tests/data/samples.expected");
  for (std::string line; std::getline(table, line);) {
    if (!line.empty() && line[0] != '#') expected[Split(line, " | ").front()] = line;
  }

  const fs::path folder = fs::path(testing::TempDir()) / "kal_samples";
  fs::remove_all(folder);
  fs::create_directories(folder);
  company::CreateCompany((folder / "company.db").string(), true);
  std::set<fs::path> files;
  for (const auto& entry : fs::directory_iterator(kSource / "host/samples")) {
    files.insert(entry.path());
  }
  std::string command = std::string("\"") + KAL_HOST_PROGRAM + "\" check --json --company \"" +
                        (folder / "company.db").string() + "\"";
  for (const fs::path& file : files) command += " \"" + file.string() + "\"";
  (void)std::system((command + " > \"" + (folder / "results").string() + "\"").c_str());

  std::ifstream results(folder / "results");
  for (const fs::path& file : files) {
    const std::string name = file.filename().string();
    std::string result;
    ASSERT_TRUE(std::getline(results, result)) << name;
    EXPECT_EQ(Line(name, json::parse(result)), expected[name]);
    expected.erase(name);
  }
  for (const auto& [name, line] : expected) ADD_FAILURE() << "no such sample: " << line;
}

// How many parameters the checks hand to a message; none where it is not listed.
TEST(MessageTexts, TakeTheParametersOfTheirCode) {
  const std::map<int, std::size_t> parameters = {{10489, 1}, {10498, 1}, {10506, 2}, {10511, 1},
                                                 {10519, 1}, {10520, 1}, {10521, 1}, {10578, 1},
                                                 {10587, 2}, {10588, 1}, {10590, 2}, {10660, 1},
                                                 {10666, 1}, {10738, 1}, {10742, 1}, {10743, 1}};
  for (const company::MessageText& text : company::MessageTexts()) {
    const int code = static_cast<int>(text.code);
    const auto row = parameters.find(code);
    for (const std::string_view said : {text.italian, text.english}) {
      EXPECT_FALSE(said.empty()) << code;
      EXPECT_EQ(Split(said, "%s").size() - 1, row == parameters.end() ? 0 : row->second)
          << code << ": " << said;
    }
  }
}

}  // namespace
}  // namespace kal
