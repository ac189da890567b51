// The command-line host: what it reads, what it writes, and its exit status.

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <nlohmann/json.hpp>
#include <random>
#include <sstream>
#include <streambuf>

#include "host/CommandLine.h"
#include "host/EntryFile.h"
#include "host/EntryReader.h"
#include "host/JsonReaders.h"
#include "host/Operations.h"
#include "host/Report.h"
#include "host/Runner.h"
#include "tests/kit.h"

namespace kal::host {
namespace {

using nlohmann::json;
using test::TestCompany;

std::string SetOf(const std::string& set, const std::string& row) {
  const bool hasOneRow = set == "RsTesta" || set == "RsCausale";
  return "{\"" + set + "\":{\"rows\":[" + (hasOneRow ? "" : "{},") + row + "]}}";
}

TEST(EntryReader, ReadsValuesExactlyOrRefusesThem) {
  const struct {
    const char* set;
    const char* field;
    const char* value;
    Variant expected;      // Empty where the value is refused
    const char* wanted{};  // then what the message says that the field takes
  } rows[] = {
      {"RsRCont", "ImportoDare", "922337203685477.5807", Currency::FromUnits(INT64_MAX)},
      {"RsRCont", "ImportoDare", "\"-922337203685477.5808\"", Currency::FromUnits(INT64_MIN)},
      {"RsRCont", "ImportoAvereVB", "0.1", Currency::FromUnits(1000)},
      {"RsRCont", "ImportoAvereVB", "-7", Currency::FromUnits(-70000)},
      {"RsRIva", "Imposta", "1e2", Currency::FromUnits(1000000)},
      {"RsRIva", "Imposta", "-12.5e-3", Currency::FromUnits(-125)},
      {"RsRIva", "Imposta", "0.0092233720368547758E17", Currency::FromUnits(9223372036854775800)},
      {"RsRIva", "Imposta", "0e99999999999", Currency()},
      {"RsRIva", "Imposta", "0.00001", {}, "an amount with up to four decimals"},
      {"RsRIva", "Imposta", "1e-5", {}, "an amount with up to four decimals"},
      {"RsRIva", "Imposta", "1e-300", {}, "an amount with up to four decimals"},
      {"RsRIva", "Imposta", "1e300", {}, "an amount with up to four decimals"},
      {"RsRIva", "Imposta", "1e-99999999999", {}, "an amount with up to four decimals"},
      {"RsScadenze", "ImportoDare", "922337203685477.5808", {}, "an amount"},
      {"RsFiscalitaBL", "BeniServiziEsenti", "\"12,50\"", {}, "an amount"},
      {"RsFiscalitaBL", "BeniServiziEsenti", "\"\"", {}, "an amount"},
      {"RsFiscalitaBL", "BeniServiziEsenti", "true", {}, "an amount"},
      {"RsRCont", "TipoRiga", "-32768", std::int16_t{-32768}},
      {"RsRCont", "TipoRiga", "32768", {}, "a whole number from -32768 to 32767"},
      {"RsRCont", "TipoRiga", "3.0", {}, "a whole number"},
      {"RsRCont", "TipoRiga", "\"3\"", {}, "a whole number"},
      {"RsRCont", "NumeroRiga", "2147483647", std::int32_t{2147483647}},
      {"RsRCont", "NumeroRiga", "-2147483649", {}, "a whole number from -2147483648"},
      {"RsRCont", "NumeroRiga", "99999999999999999999", {}, "a whole number"},
      {"RsTesta", "Fixing", "1.25", 1.25},
      {"RsTesta", "Fixing", "\"1.25\"", {}, "a number"},
      {"RsTesta", "DataIva", "\"2024-02-29\"", *Date::FromYmd(2024, 2, 29)},
      {"RsTesta", "DataIva", "\"2023-02-29\"", {}, "a date (yyyy-mm-dd)"},
      {"RsTesta", "DataIva", "\"15/03/2024\"", {}, "a date (yyyy-mm-dd)"},
      {"RsScadenze", "DataScadenza", "\"\"", {}, "a date (yyyy-mm-dd)"},
      {"RsScadenze", "DataScadenza", "null", Null},
      {"RsRIva", "ReverseCharge", "true", true},
      {"RsRIva", "ReverseCharge", "1", {}, "true or false"},
      {"RsCausale", "CodCausale", "\"\\u00e8\"", "\xC3\xA8"},
      {"RsRisconti", "CodContoContropartita", "101", {}, "a text"},
      {"RsRisconti", "CODCONTOcontropartita", "\"101\"", "101"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(std::string(row.set) + '.' + row.field + " = " + row.value);
    const auto reading =
        ReadEntry(SetOf(row.set, std::string("{\"") + row.field + "\":" + row.value + '}'));
    const bool isSecond = ReadEntry(SetOf(row.set, "{}")).entry->sets.at(0).rows->RowCount() == 2;
    const std::string refusal = row.set + std::string(isSecond ? " row 2" : " row 1") +
                                ", field \"" + row.field + "\": " + row.value + " is not " +
                                (row.wanted != nullptr ? row.wanted : "");
    ASSERT_EQ(reading.error.english.substr(0, refusal.size()),
              row.wanted != nullptr ? refusal : "");
    if (row.wanted == nullptr) {
      MemoryRecordset set(reading.entry->sets.at(0).rows);
      if (isSecond) {
        EXPECT_TRUE(set.Fields(row.field).Value().IsNull());  // left out in the first row
        set.MoveNext();
      }
      EXPECT_TRUE(Identical(set.Fields(row.field).Value(), row.expected));
    }
  }
}

TEST(EntryReader, SaysWhatIsWrongAndWhere) {
  const std::pair<std::string, const char*> rows[] = {
      {"", "not JSON"},
      {"{\"id\":1,}", "not JSON, column 9"},
      {"{\"id\":1,\n \"RsTesta\" 5}", "not JSON, line 2 column 12"},
      {"{\"id\":\"\xFF\"}", "not JSON"},
      {"{\"id\":1e999}", "not JSON"},
      {"{} {}", "not JSON"},
      {"[{}]", "write one object a line"},
      {"\"x\"", "must be a JSON object, not \"x\""},
      {"{\"id\":" + std::string(32, '['), "nested deeper than 32 levels"},
      {"{\"id\":" + std::string(31, '['), "unexpected end of input"},
      {"{\"id\":" + std::string(100000, '['), "nested deeper than 32 levels"},
      {"{\"id\":1,\"id\":1}", "the key \"id\" is given twice in one object"},
      {"{\"RsRIva\":{\"rows\":[{},\n{\"Imposta\":[],\"a\":[{}],\"Imposta\":2}]}}\n",
       "is given twice in one object, in RsRIva row 2 (it begins on line 2)"},
      {"{\"RsRIva\":{\"rows\":[{},{\"Imposta\":01}]}}", ", in RsRIva row 2: "},
      {"{\"id\":5,\"RsTesta\":{\"rows\":[{},{}]}}", "RsTesta has 2 rows: an entry has one"},
      {SetOf("RsRIva", "{\"CodIva\":\"1\",\"CodIva\":\"2\"}"), "the key \"CodIva\" is given twice"},
      {SetOf("RsRIva", "{\"CodIva\":\"1\",\"CODIVA\":\"2\"}"),
       "row 2, field \"CODIVA\": given twice"},
      {SetOf("RsRIva", "{\"CodConto\":1}"), "RsRIva row 2 has an unknown field \"CodConto\""},
      {SetOf("RsRIva", "7"), "RsRIva row 2 must be an object, not 7"},
      {SetOf("RsIva", "{}"), "unknown key \"RsIva\""},
      {"{\"ID\":1}", "unknown key \"ID\""},
      {"{\"RsTesta\":[]}", "RsTesta must be an object with rows, or null, not []"},
      {"{\"RsTesta\":{\"EditMode\":2}}", "RsTesta has no rows"},
      {"{\"RsTesta\":{\"rows\":{}}}", "RsTesta: rows must be an array"},
      {"{\"RsTesta\":{\"rows\":[],\"Filter\":\"\"}}", "RsTesta has an unknown key \"Filter\""},
      {"{\"RsTesta\":{\"EditMode\":3,\"rows\":[]}}",
       "RsTesta: EditMode must be 0, 1, 2 or 4, not 3"},
      {"{\"RsTesta\":{\"EditMode\":null,\"rows\":[]}}", "EditMode must be 0, 1, 2 or 4, not null"},
      {"{\"IsParcella\":1}", "IsParcella must be true or false, not 1"},
      {"{\"TmpTableScadenze\":null}", "TmpTableScadenze must be a text, not null"},
      {"{\"operation\":5}", "operation must be a text, not 5"},
      {"{\"operation\":\"GenericFx\"}", "unknown operation \"GenericFx\""},
      {"{\"operation\":\"okaggiorna\"}", "unknown operation \"okaggiorna\""},
      {"{\"arguments\":true}", "arguments must be an array, not true"},
  };
  for (const auto& [text, fragment] : rows) {
    const EntryReading reading = ReadEntry(text);
    EXPECT_FALSE(reading.entry) << text.substr(0, 80);
    EXPECT_NE(reading.error.english.find(fragment), std::string::npos) << fragment << "\n"
                                                                       << reading.error.english;
  }
}

// Each limit: what just fits, what goes beyond it, and what is said then.
TEST(EntryReader, IsBounded) {
  const auto rows = [](int count) {
    std::string text = "{}";
    for (int i = 1; i < count; ++i) text += ",{}";
    return "{\"id\":7,\"RsRIva\":{\"rows\":[" + text + "]}}";
  };
  const auto keys = [](int count) {
    std::string text;
    for (int i = 0; i < count; ++i) text += "\"k" + std::to_string(i) + "\":1,";
    return "{\"id\":{" + text + "\"z\":1}}";
  };
  const Limits limits = {.bytes = 1000, .rows = 3, .json = {.depth = 4, .keys = 5, .values = 20}};
  const struct {
    std::string fits;
    std::string excess;
    const char* said;
  } cases[] = {
      {rows(3), rows(4), "RsRIva has 4 rows; at most 3 are read, --max-rows allows more"},
      {keys(4), keys(5), "more than 5 keys in one object: \"z\", in id; --max-keys allows more"},
      {"{\"id\":[[[1]]]}", "{\"id\":[[[[1]]]]}", "deeper than 4 levels, in id; --max-depth"},
      {rows(3), rows(20), "more than 20 values, in RsRIva row 17; --max-values allows more"},
      {"{\"id\":\"" + std::string(980, 'x') + "\"}", std::string(1001, ' ') + "{}",
       "longer than 1000 bytes; --max-line-bytes allows more"},
      {"{\n\"id\":[\n1\n]\n}", "{\n\"id\":[\n" + std::string(990, '\n') + "1]\n}",
       "longer than 1000 bytes; --max-line-bytes allows more"},
  };
  for (const auto& row : cases) {
    for (const std::string& text : {row.fits, row.excess}) {
      std::istringstream stream(text);
      const EntryText entry = EntryFile(stream, "F", limits).Next().value();
      const EntryReading reading = ReadEntry(entry.text, limits);
      const std::string& error =
          entry.error.IsEmpty() ? reading.error.english : entry.error.english;
      EXPECT_EQ(error.empty(), text == row.fits) << error;
      EXPECT_NE(error.find(text == row.fits ? "" : row.said), std::string::npos) << error;
      EXPECT_TRUE(ReadEntry(text).entry || text[0] == ' ') << text;  // by the usual limits
    }
  }
  // The line behind one that is too long is read; a line without an end ends the file.
  for (const auto& [behind, entries] : {std::pair(0U, 2), std::pair(20000U, 1)}) {
    std::istringstream stream(std::string(2000 + behind, 'x') + "\n{}\n");
    EntryFile file(stream, "F", limits);
    int count = 0;
    for (; file.Next(); ++count) {
    }
    EXPECT_EQ(count, entries);
  }
}

TEST(EntryReader, ChecksArgumentsAgainstTheOperation) {
  const struct {
    const char* operation;
    const char* arguments;
    const char* error;  // "" where they are taken
  } rows[] = {
      {"OkAggiorna", "[]", ""},
      {"OkAggiorna", "[false,true]", ""},
      {"OkAggiorna", "[true]", "OkAggiorna takes 2 arguments, not 1"},
      {"OkAggiorna", "[true,1]", "OkAggiorna argument 2 must be true or false, not 1"},
      {"OkAggiorna", "[null,true]", "OkAggiorna argument 1 must be true or false, not null"},
      {"OkModifica", "[]", ""},
      {"OkModifica", "[0]", "OkModifica takes 0 arguments, not 1"},
      {"OkModificaDoc", "[32767,2147483647]", ""},
      {"OkModificaDoc", "[32768,1]", "argument 1 must be a whole number from -32768 to 32767"},
      {"OkCancellaDoc", "[1,2147483648]", "argument 2 must be a whole number from -2147483648"},
      {"OkCancellaDoc", "[1,30.0]", "argument 2 must be a whole number"},
      {"LeggiIdPrimaNota", "[2147483647,32767]", ""},
      {"LeggiIdPrimaNota", "[1,32768]", "argument 2 must be a whole number from -32768 to 32767"},
      {"LibroGiornaleStampato", "[\"2024-01-31\"]", ""},
      {"LibroGiornaleStampato", "[\"\"]", ""},
      {"LibroGiornaleStampato", "[null]", ""},
      {"LibroGiornaleStampato", "[\"31/01/2024\"]", "argument 1 must be a date (yyyy-mm-dd), \"\""},
      {"RegistriIvaStampati", "[null,1]", "RegistriIvaStampati takes 3 arguments, not 2"},
      {"CheckDuplicatoNrDocRicevuto", "[\"1/A\",\"2024-01-31\",20,0]", ""},
      {"CheckDuplicatoNrDocRicevuto", "[1,\"2024-01-31\",20,0]",
       "argument 1 must be a text, not 1"},
      {"CheckDuplicatoNrDocEmesso", "[2,1,\"1/A\",null,0]", ""},
      {"CheckDuplicatoNrDocEmesso", "[2,1,null,null,0]", "argument 3 must be a text, not null"},
  };
  for (const auto& row : rows) {
    const std::string text = std::string("{\"operation\":\"") + row.operation +
                             "\",\"arguments\":" + row.arguments + '}';
    const EntryReading reading = ReadEntry(text);
    EXPECT_EQ(reading.error.IsEmpty(), *row.error == '\0') << text << "\n" << reading.error.english;
    EXPECT_NE(reading.error.english.find(row.error), std::string::npos) << text << "\n"
                                                                        << reading.error.english;
  }
  const auto defaults = ReadEntry("{}").entry.value().arguments;
  ASSERT_EQ(defaults.size(), 2U);
  EXPECT_TRUE(Identical(defaults[0], true) && Identical(defaults[1], true));
}

// What is learnt of the keys of one entry serves the next ones, also when many others came between.
TEST(EntryReader, KnowsKeysAgainInAnyOrder) {
  const auto values = [](const EntryReading& reading, std::size_t row) {
    const RowTable& table = *reading.entry.value().sets.at(0).rows;
    const auto cell = [&](const char* name) {
      return CStr(table.Cell(row, static_cast<std::size_t>(table.FindColumn(name))));
    };
    return cell("CodIva") + ' ' + cell("Imposta");
  };
  for (int i = 0; i < 3000; ++i) {
    const std::string n = std::to_string(i);
    const std::string rows = R"({"CodIva":"a","Imposta":)" + n + R"(},{"Imposta":1,"CodIva":")" +
                             n + R"("},{"IMPOSTA":2,"codiva":"b"})";
    const auto reading = ReadEntry("{\"id\":{\"" + n + "\":{\"x" + n +
                                   "\":1}},\"RsRIva\":" + "{\"rows\":[" + rows + "]}}");
    ASSERT_EQ(values(reading, 0), "a " + n);
    ASSERT_EQ(values(reading, 1), n + " 1");
    ASSERT_EQ(values(reading, 2), "b 2");
  }
  // A backslash and a "b", then a backspace.
  for (const std::string id : {R"({"k":1,"a\\b":2})", R"({"k":1,"a\b":2})"}) {
    EXPECT_EQ(ReadEntry("{\"id\":" + id + "}").id.json, id);
  }
}

// The library says of any bytes how they are written, and the careful reader of any text how it is
// read; what the quick reader refuses is for the careful one.
TEST(JsonText, IsReadAndWrittenAsTheLibrariesDo) {
  const std::string pieces[] = {"{",
                                "}",
                                "[",
                                "]",
                                ",",
                                ":",
                                "\"",
                                "\"id\":1,",
                                "\"id\":",
                                "\\",
                                "\\u00e8",
                                "\\udc00",
                                "\\ud83d\\ude00",
                                "\xC3\xA8",
                                "\xF0\x9F\x98",
                                "\xED\xA0\x80",
                                "\xE2\x82",
                                "\xFF",
                                "\x7F",
                                "\x1A",
                                "\x0C",
                                "\t",
                                "\r\n\b",
                                "-0",
                                "1e2",
                                "1e999",
                                "12.34000",
                                "01",
                                "null",
                                "true",
                                "x",
                                std::string(1, '\0')};
  std::mt19937 random(1);
  QuickJson quick;
  JsonTree tree;
  int taken = 0;
  for (int i = 0; i < 20000; ++i) {
    std::string text =
        R"( {"id": "p\"\u00e8", "RsRIva":{"rows": [{"CodIva":"22"} , {} ]},"n":[-7,1.5]})";
    std::string bytes;
    for (unsigned changes = random() % 4; changes > 0; --changes) {
      const std::string& piece = pieces[random() % std::size(pieces)];
      text.replace(random() % text.size(), random() % 2 * piece.size(), piece);
      bytes += piece + pieces[random() % std::size(pieces)];
    }
    ASSERT_EQ(QuotedText(bytes), json(bytes).dump(-1, ' ', false, json::error_handler_t::replace));
    tree.Start();
    if (!quick.Read(text, tree)) continue;
    ++taken;
    JsonTree other;
    other.Start();
    const JsonReading careful = ReadCarefully(text, other);
    ASSERT_EQ(careful.error.english, "") << text;
    ASSERT_EQ(ToText(*careful.value), ToText(tree.Finish())) << text;
    ASSERT_EQ(other.RepeatedKey() == nullptr, tree.RepeatedKey() == nullptr) << text;
  }
  EXPECT_GT(taken, 5000);
}

// The places of a file's entries, with "!" behind one that is no JSON.
std::string Places(const std::string& content) {
  std::istringstream stream(content);
  EntryFile file(stream, "F");
  std::string places;
  while (const auto entry = file.Next()) {
    const bool whole = JsonReader().Read(entry->text).ending == JsonReading::Ending::Complete;
    places +=
        (places.empty() ? "" : ", ") + entry->place.In(Language::English) + (whole ? "" : "!");
  }
  return places;
}

TEST(EntryFile, TellsOneObjectFromJsonLines) {
  const std::string manyRows = [] {
    std::string rows = "{\"RsRIva\":{\"rows\":[\n";
    for (int i = 0; i < 20000; ++i) rows += "{\"NumeroRiga\":1},\n";
    return rows + "{\"NumeroRiga\":2}\n";
  }();
  const struct {
    const char* name;
    std::string content;
    std::string places;
  } rows[] = {
      {"nothing", "", ""},
      {"blank lines", "\n \t\r\n", ""},
      {"one line", "{}", "F line 1"},
      {"first line blank behind its mark", "\xEF\xBB\xBF\n{}", "F line 2"},
      {"lines, some blank", "\xEF\xBB\xBF{}\r\n\r\n \n{}\n{}", "F line 1, F line 4, F line 5"},
      {"bad lines between", "{}\nx\n{\"a\":\n{}\n", "F line 1, F line 2!, F line 3!, F line 4"},
      {"bad first line", "x\n{\"id\":2}\n", "F line 1!, F line 2"},
      {"scalars", "1\n\"{\"\n", "F line 1, F line 2"},
      {"broken first line", "{\"a\":1,5}\n{\"id\":2}\n{}\n", "F line 1!, F line 2, F line 3"},
      {"no JSON at all", "x\ny\n", "F!"},
      {"cut first line", "{\"a\":{\"rows\":[\n{\"id\":2}\n", "F line 1!, F line 2"},
      {"cut lines", "\n{\"a\":\n\n{\"b\"\n{\"id\":2}\n", "F line 2!, F line 4!, F line 5"},
      {"object over lines", "\n{\n\n\"a\":[\n {},\n{}\n]\n}\n", "F"},
      {"array over lines", "[\n{\"id\":1},\n{\"id\":2}\n]", "F"},
      {"broken object over lines", "{\n \"a\":[\n{\"NumeroRiga\":1}\n ],,\n}\n", "F!"},
      {"cut object over lines", "{\n \"a\": [\n  {\"id\":2}\n", "F!"},
      {"large object over lines", manyRows + "]}}\n", "F"},
      {"large object broken at its end", manyRows + "]}}]\n", "F!"},
  };
  for (const auto& row : rows) {
    const std::string places = Places(row.content);
    EXPECT_EQ(places, row.places) << row.name;
  }
  std::istringstream broken("\n{\n\n\n\"a\" 5}\n");
  const std::string error = ReadEntry(EntryFile(broken, "F").Next().value().text).error.english;
  EXPECT_NE(error.find("line 5 column 5"), std::string::npos) << error;  // as the file counts
}

// JSON Lines are not drawn in: not behind a good first line, nor behind one that breaks off.
TEST(EntryFile, ReadsJsonLinesAsAStream) {
  std::string lines;
  for (int i = 0; i < 100000; ++i) lines += "{\"id\":1}\n";
  for (const std::string first : {"{}\n", "x\n", "{\"a\":5,\n", "{\"rows\":[\n"}) {
    std::istringstream stream(first + lines);
    EntryFile file(stream, "F");
    ASSERT_TRUE(file.Next()) << first;
    EXPECT_LT(file.BytesRead(), 200000U) << first;
  }
}

// A result's JSON: strings, flags and what stands behind are cut down to what differs.
TEST(Report, WritesResultsForPrograms) {
  const std::string strings =
      "\"ErrString\":\"\",\"WarnString\":\"\",\"WarnProtocolloString\":\"\","
      "\"WarnDuplicatoDocString\":\"\",\"WarnInfragruppoString\":\"\",\"ImportoPlafond\":\"0."
      "0000\","
      "\"ChiusuraRateInSospensione\":false,\"RiaperturaRateInSospensione\":false,"
      "\"IsInfragruppo\":\"False\",\"findings\":[],";
  const struct {
    const char* entry;
    std::string result;
  } rows[] = {
      {"{\"id\":{\"n\":[1.50,-12345678901234567890123,\"\xC3\xA8\\u0001\"]},"
       "\"operation\":\"LeggiIdPrimaNota\",\"arguments\":[5,1],"
       "\"RsRCont\":{\"rows\":[{}]},\"RsTesta\":{\"rows\":[]},\"RsRIva\":null}",
       "{\"id\":{\"n\":[1.50,-12345678901234567890123,\"\xC3\xA8\\u0001\"]},"
       "\"operation\":\"LeggiIdPrimaNota\",\"result\":-1," +
           strings +
           "\"recordSets\":{\"RsTesta\":{\"Filter\":\"\",\"Position\":0},"
           "\"RsRCont\":{\"Filter\":\"\",\"Position\":1}},\"error\":null}"},
      {"{\"RsTesta\":{\"rows\":[]}}", "{\"id\":null,\"operation\":\"OkAggiorna\",\"result\":null," +
                                          strings +
                                          "\"recordSets\":{\"RsTesta\":{\"Filter\":\"\","
                                          "\"Position\":0}},\"error\":{\"number\":3021,"},
      {"{\"id\":\"b\",\"operation\":\"OkModifica\",\"RsTesta\":",
       "{\"id\":\"b\",\"operation\":\"OkModifica\",\"result\":null," + strings +
           "\"recordSets\":{},\"error\":{\"input\":\"F line 1: not JSON, column "},
      {"{\"operation\":\"OkSalva\"}", "{\"id\":null,\"operation\":\"OkSalva\",\"result\":null," +
                                          strings +
                                          "\"recordSets\":{},\"error\":{\"input\":\"F line 1: "
                                          "unknown operation \\\"OkSalva\\\"\"}}"},
      {"x", "{\"id\":null,\"operation\":null,\"result\":null,"},
  };
  const TestCompany file;
  company::Company company(file.Text());
  for (const auto& row : rows) {
    const std::string result = ToJson(CheckEntry(company, {row.entry, {"F", 1}}));
    EXPECT_EQ(result.substr(0, row.result.size()), row.result) << row.entry;
    EXPECT_TRUE(json::accept(result)) << result;
  }
}

// A line for each finding, also where a parameter brings a line end into it.
TEST(Report, ShowsVerdictsAndFindingsToPeople) {
  const struct {
    bool isCheck;
    std::optional<OperationResult> result;
    std::vector<std::pair<ResultString, const char*>> findings;
    const char* italian;
    const char* english;
  } rows[] = {
      {true, true, {}, "libera\n", "free\n"},
      {true,
       false,
       {{WarnString, "uno\r\n"}, {WarnString, ""}, {WarnString, "due"}},
       "da confermare\n  avviso: uno\n  avviso: due\n",
       "to be confirmed\n  warning: uno\n  warning: due\n"},
      {true,
       false,
       {{WarnDuplicatoDocString, "c"},
        {WarnString, "b"},
        {ErrString, "a\x1b[2J\r\na\xC2\x9B\xE2\x80\xAE\xE2\x80\xAC\xFF\xC3\xA0"}},
       "bloccata\n  errore: a?[2J??a????\xC3\xA0\n  avviso: b\n  avviso documento duplicato: c\n",
       "blocked\n  error: a?[2J??a????\xC3\xA0\n  warning: b\n  duplicate document warning: c\n"},
      {true, false, {}, "rifiutata senza rilievi\n", "refused without findings\n"},
      {false, true, {}, "s\xC3\xAC\n", "yes\n"},
      {false, false, {}, "no\n", "no\n"},
      {false, std::int32_t{-1}, {}, "-1\n", "-1\n"},
      {true,
       std::nullopt,
       {{ErrString, "a"}},
       "non controllata\n  errore di esecuzione 13 (valore di un altro tipo): d\n    s\n    t\n  "
       "errore: a\n",
       "not checked\n  run-time error 13: d\n    s\n    t\n  error: a\n"},
  };
  for (const auto& row : rows) {
    Outcome outcome;
    outcome.place = {"F", 1};
    outcome.operation = "Op";
    outcome.isCheck = row.isCheck;
    outcome.result = row.result;
    Findings findings;
    for (const auto& [string, text] : row.findings) {
      findings.Add({string, {}, {}, {}, text, {}, {}, {}});
    }
    outcome.findings = findings.All();
    outcome.errString = findings.Text(ErrString);
    outcome.warnString = findings.Text(WarnString);
    if (!row.result) outcome.error = RunTimeError(13, "s\r\nt", "d");
    EXPECT_EQ(ToBlock(outcome, {}), std::string("F riga 1  Op: ") + row.italian);
    EXPECT_EQ(ToBlock(outcome, {Language::English, false}),
              std::string("F line 1  Op: ") + row.english);
    EXPECT_NE(ToBlock(outcome, {Language::Italian, true}).find("\x1b["), std::string::npos);
  }
  EXPECT_EQ(ToSummary({1, 0, 2}, Language::Italian), "3 registrazioni: 1 libera, 2 bloccate\n");
}

TEST(Runner, ReportsWhatIsInfragruppoRaisesUnlessTheOperationRaised) {
  test::OpenedCompany books("DROP TABLE STDParametriAzienda");
  const std::pair<const char*, const char*> rows[] = {
      {"{\"operation\":\"LibroGiornaleStampato\",\"arguments\":[\"2024-01-01\"]}", "IsInfragruppo"},
      {"{\"operation\":\"LibroGiornaleStampato\",\"arguments\":[\"\"]}", "LibroGiornaleStampato"},
  };
  for (const auto& [text, source] : rows) {
    const auto outcome = CheckEntry(books.company, {text, {"F"}});
    EXPECT_FALSE(outcome.result) << text;
    ASSERT_TRUE(outcome.error) << text;
    EXPECT_NE(outcome.error->Source().find(source), std::string::npos) << text;
    EXPECT_EQ(outcome.isInfragruppo, "False") << text;
  }
}

// A message whose text is lost leaves its result string empty, and the answer True.
TEST(Runner, ReportsATrueBesideAFindingAsNoAnswer) {
  struct Textless : test::CodedSiblings {
    using CodedSiblings::CodedSiblings;
    SiblingAnswer Ask(const SiblingCall& call) override {
      return call.member == Member::KalStatus_GetMessage ? SiblingAnswer{""} : inner_.Ask(call);
    }
  };
  test::OpenedCompany books;
  Textless textless(books.company.Siblings());
  for (const char* change : {"C1.CodConto=\"\"", "S1.DataScadenza=null"}) {  // blocks, warns
    const auto outcome = DecideAgain(test::EntryText("acquisto", change), textless);
    EXPECT_EQ(outcome.errString + outcome.warnString, "");
    EXPECT_FALSE(outcome.result);
    ASSERT_TRUE(outcome.error) << ToJson(outcome);
    EXPECT_EQ(outcome.error->Number(), 51);
    EXPECT_EQ(VerdictOf(outcome), Verdict::Unchecked);
  }
}

// A table of any name, beside one that the company has; none of it outlives the entry.
TEST(Runner, MakesTheTemporaryInstallmentsTable) {
  const TestCompany file;
  company::Company company(file.Text());
  for (const char* const name : {"\"Tmp\"", "\"a b\\\"c'd\"", "\"COGScadenze\"", "\"\""}) {
    for (const char* const changes : {"", "S!;"}) {
      const std::string change = std::string(changes) + "TmpTableScadenze=" + name;
      const auto outcome = CheckEntry(company, {test::EntryText("acquisto", change), {"F"}});
      EXPECT_TRUE(outcome.result) << change << ToJson(outcome);
      EXPECT_EQ(company.HasTable("Tmp"), false) << change;
    }
  }
}

struct ProgramRun {
  int status;
  std::string out;
  std::string err;
};

ProgramRun RunProgram(const std::string& arguments, const std::string& input) {
  const test::ScratchPath in;
  const test::ScratchPath out;
  const test::ScratchPath err;
  std::ofstream(in.Path()) << input;
  const int status = std::system(("\"" KAL_HOST_PROGRAM "\" < " + in.Text() + " > " + out.Text() +
                                  " 2> " + err.Text() + " " + arguments)
                                     .c_str());
  const auto content = [](const test::ScratchPath& path) {
    std::ostringstream text;
    text << std::ifstream(path.Path()).rdbuf();
    return text.str();
  };
  return {WEXITSTATUS(status), content(out), content(err)};
}

TEST(Program, AnswersByItsExitStatus) {
  const TestCompany file("INSERT INTO COGBlocchiPeriodo VALUES ('2023-12-31','2024-12-31')");
  const std::string company = file.Text();
  const std::string check = "check --company " + company + " ";
  const std::string warned = test::EntryText("acquisto", "") + "\n";
  const std::string yes = "{\"operation\":\"LeggiIdPrimaNota\",\"arguments\":[1,1]}\n";
  const std::string no =
      "{\"operation\":\"LibroGiornaleStampato\",\"arguments\":[\"2024-01-01\"]}\n";
  const struct {
    std::string arguments;
    std::string input;
    int status;
    const char* out;
    const char* err;
  } rows[] = {
      {check + "-", yes + yes, 0, "2 registrazioni: 2 s\xC3\xAC", ""},
      {check + "-", yes + warned, 1, "1 da confermare", ""},
      {check + "--fail-on error -", yes + warned, 0, "1 da confermare", ""},
      {check + "--fail-on error -", yes + no, 1, "1 no", ""},
      {check + "--json --only-problems -", yes + yes, 0, "", ""},
      {check + "--json --only-problems -", yes + no, 1, "\"result\":false", ""},
      {"verify " + company, "", 0, "nessun difetto", ""},
      {"verify no-such.db", "", 2, "", "no-such.db"},
      {check + "--lang en -", yes + no, 1, "2 entries: 1 yes, 1 no", ""},
      {check + "-", no + "{}\n" + yes, 2, "1 non controllata", ""},
      {check + "-", "", 0, "0 registrazioni", "non c'è nulla"},
      {check + "--json --summary -", yes + no + "x\n", 2,
       "{\"summary\":{\"entries\":3,\"free\":0,\"toBeConfirmed\":0,\"blocked\":0,\"refused\":0,"
       "\"yes\":1,\"no\":1,\"notChecked\":1,\"accepted\":0},\"status\":2}\n",
       ""},
      {check + "--json -", "x\n", 2, "\"place\":{\"file\":\"standard input\"}}\n", ""},
      {check + "--max-line-bytes 1000000 /dev/zero", "", 2, "di 1000000 byte; con --max-line", ""},
      {check + "--json -", no, 1, "\"result\":false", ""},
      {check + "no-such-file - .", yes, 2, "no-such-file  non controllata", ""},
      {check + "no-such-file - .", yes, 2, "3 registrazioni: 1 s\xC3\xAC, 2 non", ""},
      {check + KAL_SOURCE_DIR "/CMakeLists.txt > /dev/full", "", 2, "", "non si può scrivere"},
      {check, yes, 2, "", "FILE"},
      {check + "--lang fr -", yes, 2, "", "--lang"},
      {check + "--bogus -", yes, 2, "", "--bogus"},
      {"check -", yes, 2, "", "--company"},
      {"check --company no-such.db -", yes, 2, "", "no-such.db"},
      {"check --company " KAL_SOURCE_DIR "/CMakeLists.txt -", yes, 2, "", "CMakeLists.txt"},
      {"init " + company, "", 2, "", "already"},
      {"", "", 2, "", "manca il comando"},
      {"chekc --json", "", 2, "", "un comando chekc; forse check?"},
      {check + "--json --explain -", yes, 2, "", "--json non va insieme a --explain"},
      {check + "--summary -", yes, 2, "", "--summary vuole anche --json"},
      {check + "--jobs 257 -", yes, 2, "", "257 non è un numero intero da 1 a 256"},
      {check + "--jobs", yes, 2, "", "--jobs vuole un valore"},
      {check + "--json=no -", yes, 2, "", "--json non vuole un valore"},
      {check + "--jobs 1 --jobs 010 -", yes, 2, "", "--jobs si dice una volta sola"},
      {"verify --lang en", "", 2, "", "COMPANY is missing (see kalcogcheck verify --help)"},
      {"--help", "", 0, "Uso: kalcogcheck [OPZIONI] COMANDO", ""},
      {"check --help --lang=en", "", 0, "Usage: kalcogcheck check [OPTIONS] FILE...", ""},
      {"--help > /dev/full", "", 2, "", "non si può scrivere"},
      {"--version", "", 0, "5.05.0017", ""},
  };
  for (const auto& row : rows) {
    const ProgramRun run = RunProgram(row.arguments, row.input);
    EXPECT_EQ(run.status, row.status) << row.arguments;
    EXPECT_NE(run.out.find(row.out), std::string::npos) << row.arguments << "\n" << run.out;
    EXPECT_NE(run.err.find(row.err), std::string::npos) << row.arguments << "\n" << run.err;
    EXPECT_EQ(run.err.empty(), *row.err == '\0') << row.arguments << "\n" << run.err;
    EXPECT_TRUE(*row.out != '\0' || run.out.empty()) << row.arguments << "\n" << run.out;
    EXPECT_EQ(run.out.find('\x1b'), std::string::npos) << row.arguments;
  }
}

}  // namespace
}  // namespace kal::host
