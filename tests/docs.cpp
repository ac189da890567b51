// The documents that state what the code states: their lists stand between markers and are as the
// code makes them. With KAL_WRITE_DOCS in the environment they are written afresh: make docs.

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <nlohmann/json.hpp>
#include <random>
#include <regex>

#include "company/Schema.h"
#include "host/EntryFields.h"
#include "host/Operations.h"
#include "host/Report.h"
#include "host/Runner.h"
#include "messages/Catalogue.h"
#include "modify/Modify.h"
#include "save/OkAggiorna.h"
#include "server/SiblingNames.h"

namespace kal {
namespace {

namespace fs = std::filesystem;

const std::map<std::string_view, std::string_view> kProtects = {
#define KAL_CHECK(name, italian, english) {name, english},
#include "messages/Messages.h"
};

std::string TextOf(const fs::path& file) {
  std::ifstream stream(KAL_SOURCE_DIR / file, std::ios::binary);
  return {std::istreambuf_iterator(stream), {}};
}

std::string Code(std::string_view text) { return "`" + std::string(text) + "`"; }
std::string Link(const std::string& file) { return "[" + file + "](../" + file + ")"; }

std::string Table(const std::string& heads, const auto& rows, const auto& cells) {
  std::string table = "| " + heads + " |\n|---|";
  for (const char c : heads) table += c == '|' ? "---|" : "";
  for (const auto& row : rows) table += "\n| " + cells(row) + " |";
  return table + '\n';
}

// Columns in their order, neighbours of one type together.
std::string Columns(const auto& columns) {
  static const std::map<DataType, std::string> kTypes = {
      {DataType::SmallInt, "16-bit:"}, {DataType::Integer, "32-bit:"},
      {DataType::Currency, "amount:"}, {DataType::Date, "date:"},
      {DataType::Boolean, "boolean:"}, {DataType::Double, "number:"},
      {DataType::VarWChar, "text:"}};
  std::string list;
  for (DataType last{}; const auto& column : columns) {
    if (column.type != last) list += (list.empty() ? "" : " · ") + kTypes.at(column.type);
    list += ' ' + Code(column.name);
    last = column.type;
  }
  return list;
}

// The names of the arguments stand in the checker's header alone.
std::string Arguments(const host::Operation& operation) {
  constexpr const char* kTypes[] = {" boolean", " 16-bit", " 32-bit", " text", " date"};
  static const std::string kHeader = TextOf("checker/KalCOGCheck.h");
  static const std::regex kName(R"(\ba([A-Z]\w*))");
  const char* const at = &kHeader[kHeader.find(' ' + std::string(operation.name) + '(')];
  std::cregex_iterator name(at, kHeader.data() + kHeader.size(), kName);
  std::string list;
  for (const host::ArgumentKind kind : operation.arguments) {
    list += (list.empty() ? "" : ", ") + Code((name++)->str(1));
    list += kTypes[static_cast<std::size_t>(kind)];
  }
  return list;
}

// A sample over the sample company, as --json answers it but on several lines.
std::string Example() {
  const fs::path books = testing::TempDir() + "kal_docs_" + std::to_string(std::random_device{}());
  company::CreateCompany(books.string(), true);
  company::Company company(books.string(), "en");
  constexpr const char* kSample = "host/samples/riga-senza-conto.json";
  const std::string entry = TextOf(kSample);
  const std::string answer = host::ToJson(host::CheckEntry(company, {entry, {kSample}}),
                                          Language::English, host::PlaceToo::Yes);
  fs::remove(books);
  return "```json\n" + nlohmann::ordered_json::parse(answer).dump(2) + "\n```\n";
}

// The source in which a line begins with the definition of that check.
std::string SourceOf(std::string_view check) {
  const std::regex definition("\n[a-z][\\w:]* " + std::string(check) + "\\([^;]*\\{");
  for (const fs::path folder : {"checks", "modify"}) {
    for (const fs::path& file : fs::directory_iterator(KAL_SOURCE_DIR / folder)) {
      const fs::path source = folder / file.filename();
      if (std::regex_search(TextOf(source), definition)) return Link(source.string());
    }
  }
  return "";
}

std::string Checks(std::span<const Passo> order) {
  std::vector<Passo> checks;
  for (const Passo& row : order) {
    if (!row.Controllo.empty()) checks.push_back(row);
  }
  return Table("Check | When | What it protects | Source", checks, [](const Passo& row) {
    const auto protects = kProtects.find(row.Controllo);
    EXPECT_NE(protects, kProtects.end()) << row.Controllo << " has no KAL_CHECK in Messages.h";
    return Code(row.Controllo) + " | " +
           (row.Quando == kSempre ? "always" : row.Quando->Parole.In(Language::English)) + " | " +
           std::string(protects->second) + " | " + SourceOf(row.Controllo);
  });
}

std::string Messages() {
  std::string list;
  for (const Message& message : Catalogue()) {
    const std::string sample(message.sample);
    list += "\n### " + (message.code ? std::to_string(static_cast<int>(*message.code)) + ' ' : "");
    list += message.name;
    list += "\n\n- Text: " + message.text.In(Language::Italian);
    if (message.text.english != message.text.italian) {
      list += "\n- English: " + message.text.In(Language::English);
    }
    list += "\n- Check: " + Code(message.check);
    if (!message.set.empty()) list += ", a row of " + Code(message.set);
    list += "\n- When: " + message.when.In(Language::English);
    list += "\n- What to do: " + message.remedy.In(Language::English) + "\n- Sample: ";
    list += (sample.empty() ? "none" : Link("host/samples/" + sample + ".json")) + "\n";
  }
  return list;
}

std::string NamesFile() {
  std::string text =
      R"(# How this installation calls the components that the checker asks, and their members. A line
# "key = name" says what is called otherwise than it stands here: take its # away and change
# the name. Read whenever a checker is created, from the folder of KalCOGCheck20.dll.
)";
  for (const names::Key& key : names::kKeys) {
    text += std::string(key.member.empty() ? "\n" : "") + "# " + TextOf(key) + " = " +
            std::string(key.name) + '\n';
  }
  return text;
}

std::string Make(std::string_view list) {
  if (list == "names") {
    return Table("Key | Usual name | What it is", names::kKeys, [](const names::Key& key) {
      constexpr const char* kKinds[] = {"class",
                                        "method or property, answers a value",
                                        "method",
                                        "property, takes a value",
                                        "property, takes a record set",
                                        "method, answers the record set of a query builder",
                                        "method, its last argument is the answer"};
      return Code(TextOf(key)) + " | " + Code(key.name) + " | " +
             kKinds[static_cast<std::size_t>(key.kind)];
    });
  }
  if (list == "save check") return Checks(OrdineAggiorna());
  if (list == "modify check") return Checks(OrdineModifica());
  if (list == "messages") return Messages();
  if (list == "example") return Example();
  if (list == "operations") {
    return Table("Operation | Kind | Arguments", host::Operations(), [](const auto& each) {
      return Code(each.name) + (each.isCheck ? " | check | " : " | lookup | ") + Arguments(each);
    });
  }
  if (list == "record sets") {
    return Table("Record set | Fields", host::EntrySets(), [](const host::EntrySet& set) {
      return Code(set.name) + " | " + Columns(NewRowTable(set)->Columns());
    });
  }
  return Table("Table | Columns", company::Tables(),
               [](const auto& table) { return Code(table.name) + " | " + Columns(table.columns); });
}

TEST(Docs, StateWhatTheCodeStates) {
  constexpr std::string_view kBegin = "<!-- table: ";
  const std::map<std::string, int> documents = {{"docs/entry.md", 4},
                                                {"docs/checks.md", 2},
                                                {"docs/messages.md", 1},
                                                {"docs/windows.md", 1},
                                                {"server/KalCOGCheck20.names", 0}};
  for (const auto& [name, wanted] : documents) {
    const std::string text = TextOf(name);
    std::string fresh = name.starts_with("docs/") ? text : NamesFile();
    int lists = 0;
    for (std::size_t at = 0; (at = fresh.find(kBegin, at)) != std::string::npos; ++lists) {
      at += kBegin.size();
      const std::size_t from = fresh.find('\n', at) + 1;
      const std::string list = fresh.substr(at, fresh.find(" -->", at) - at);
      fresh.replace(from, fresh.find("<!-- end -->", from) - from, Make(list));
    }
    EXPECT_EQ(lists, wanted) << name;
    if (std::getenv("KAL_WRITE_DOCS") != nullptr) {
      std::ofstream(KAL_SOURCE_DIR / fs::path(name), std::ios::binary) << fresh;
    } else {
      EXPECT_TRUE(fresh == text) << name << " is not as the code states it: run make docs";
    }
  }
}

}  // namespace
}  // namespace kal
