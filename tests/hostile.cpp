// Hostile data: codes and texts that no screen lets through, values at every edge of their types,
// companies that change or break while they are read. Each gives its answer or an error with its
// trail, and nothing changes the company's file.

#include <gtest/gtest.h>
#include <sqlite3.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <cmath>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <nlohmann/json.hpp>
#include <regex>
#include <set>
#include <sstream>
#include <thread>

#include "host/CommandLine.h"
#include "host/Runner.h"
#include "platform/RunTimeError.h"
#include "tests/kit.h"

namespace kal::test {
namespace {

namespace fs = std::filesystem;
using namespace std::string_literals;

std::string Bytes(const fs::path& path) {
  std::ostringstream bytes;
  bytes << std::ifstream(path, std::ios::binary).rdbuf();
  return bytes.str();
}

// The set handed over again with the field of its first row replaced.
void SetCell(Checked& checked, std::string_view set, std::string_view field, const Variant& value) {
  for (std::size_t i = 0; i < checked.entry.sets.size(); ++i) {
    host::SuppliedSet& supplied = checked.entry.sets[i];
    if (supplied.set->name == set) {
      const auto rows = std::make_shared<RowTable>(supplied.rows->Columns());
      const auto column = static_cast<std::size_t>(supplied.rows->FindColumn(field));
      for (std::size_t row = 0; row < supplied.rows->RowCount(); ++row) {
        rows->AddRowOf([&](std::size_t place) {
          return row == 0 && place == column ? value : supplied.rows->Cell(row, place);
        });
      }
      supplied.rows = rows;
      checked.sets[i] = std::make_shared<MemoryRecordset>(rows, supplied.editMode);
      (checked.checker.*supplied.set->assign)(checked.sets[i]);
    }
  }
}

std::string Replaced(std::string text, std::string_view from, std::string_view to) {
  for (std::size_t at = text.find(from); at != std::string::npos;
       at = text.find(from, at + to.size())) {
    text.replace(at, from.size(), to);
  }
  return text;
}

struct Text {
  const char* name;
  std::string text;
  const char* inFilter;  // what a filter finds that has it between quotes
};

// Each is stored as an account, a template, a VAT code and so on, beside what it would be if it
// were cut, unescaped or read as a pattern.
const Text kTexts[] = {
    {"quote", "a'b", "invalid"},
    {"quote that closes a filter", "x' or CodIva <> '", "any"},
    {"doubled quote", "a''b", "itself"},
    {"double quote", "a\"b", "itself"},
    {"placeholder", "%s", "itself"},
    {"capital placeholder", "%S", "itself"},
    {"NUL", "22\0x"s, "itself"},
    {"invalid UTF-8", "\xC3\x28\xFF", "itself"},
    {"control characters", "\x01\t\r\n\x7F", "itself"},
    {"statement", "'); DELETE FROM STDIva; --", "invalid"},
    {"bracket", "[a]", "itself"},
    {"date mark", "#1/1/2024#", "itself"},
    {"a megabyte", std::string(1 << 20, 'x'), "itself"},
};

// Puts the text behind a statement with one parameter.
void Store(const fs::path& company, const char* sql, const std::string& text) {
  sqlite3* db = nullptr;
  sqlite3_stmt* statement = nullptr;
  ASSERT_EQ(sqlite3_open(company.c_str(), &db), SQLITE_OK);
  ASSERT_EQ(sqlite3_prepare_v2(db, sql, -1, &statement, nullptr), SQLITE_OK) << sql;
  sqlite3_bind_text(statement, 1, text.data(), static_cast<int>(text.size()), SQLITE_TRANSIENT);
  EXPECT_EQ(sqlite3_step(statement), SQLITE_DONE) << sqlite3_errmsg(db);
  sqlite3_finalize(statement);
  sqlite3_close(db);
}

// Where a code is looked up, what is answered when the company has it and when it has not.
// <text> is the code.
struct Place {
  const char* name;
  const char* kind;
  const char* changes;
  const char* set;
  const char* field;
  const char* stored;
  const char* found;
  const char* missing;
};

constexpr Place kPlaces[] = {
    {"account", "giroconto", "", "RsRCont", "CodConto",
     "INSERT INTO STDPianoDeiConti VALUES (?,0,0)", "True", "False Err: 10520(1)"},
    {"template", "giroconto", "", "RsTesta", "CodCausale",
     "INSERT INTO COGCausaliContabili (CodCausale,TipoRegIva) VALUES (?,0)", "True",
     "False Err: 10525"},
    {"property", "giroconto", "C1.CodDivisa=\"\"", "RsTesta", "CodProprieta",
     "INSERT INTO COGPrimeNoteProprieta VALUES (?,1)", "False Err: 10578(1)", "True"},
    {"document number", "acquisto", "", "RsTesta", "NumeroDocumento",
     "INSERT INTO COGPrimeNoteTeste (IdPrimaNota,TipoRegIva,NumeroDocumento,IdAnagrafica,"
     "DataDocumento,Protocollo,DataRegistrazione) VALUES (1,1,?,20,'2024-01-01',1,'2024-01-01')",
     "False Dup: 10507", "True"},
    {"terms of payment", "vendita",
     "T.IdAnagrafica=11;T.SezionaleIva=2;S2.IdTipologiaPagamento=2;S2.IdBancaCliente=1", "RsTesta",
     "CodPagamento", "INSERT INTO STDCondizioniPagamentoTeste VALUES (?,1)",
     "False Warn: <effetti>", "True"},
    {"group account", "giroconto", "C1.TipoCliFor=0", "RsRCont", "CodConto",
     "INSERT INTO STDPianoDeiConti VALUES (?,0,1)", "False Group: 10656", "False Err: 10520(1)"},
    {"VAT code", "acquisto", "", "RsRIva", "CodIva", "INSERT INTO STDIva (CodIva) VALUES (?)",
     "True", "False Err: 10498(<text>)"},
};

TEST(Hostile, CodesAreFoundAsTheyAre) {
  const char* const group = "INSERT INTO STDParametriAzienda VALUES ('GestisciPNInfragruppo','1')";
  for (const Place& place : kPlaces) {
    for (const bool found : {true, false}) {
      const TestCompany file(group);
      for (const Text& text : kTexts) {
        if (found) {
          Store(file.Path(), place.stored, text.text);
        }
      }
      const std::string before = Bytes(file.Path());
      company::Company company(file.Path().string());
      CodedSiblings siblings(company.Siblings());
      for (const Text& text : kTexts) {
        SCOPED_TRACE(place.name + " "s + text.name + (found ? " found" : " missing"));
        Checked checked(siblings, EntryText(place.kind, place.changes));
        SetCell(checked, place.set, place.field, text.text);
        std::string expected = Written(found ? place.found : place.missing);
        if (place.field == "CodIva"s && text.inFilter == "invalid"s) {
          expected = "Error 3001 in CheckCodIva < OkAggiorna";
        } else if (place.field == "CodIva"s && text.inFilter == "any"s) {
          expected = "True";
        }
        const std::string shown = Replaced(text.text, "\r\n", " / ");
        EXPECT_TRUE(checked.Run() == Replaced(expected, "<text>", shown))
            << checked.Findings().substr(0, 300);
      }
      EXPECT_TRUE(Bytes(file.Path()) == before);
    }
  }
}

TEST(Hostile, ValuesAtTheEdges) {
  RunTable(R"(
<most> = "922337203685477.5807"
<least> = "-922337203685477.5808"
[giroconto]
largest amounts | C1.ImportoDare=<most>;C1.ImportoDareVB=<most>;C2.ImportoAvere=<most>;
    C2.ImportoAvereVB=<most> | True
sum too large | C1.ImportoDareVB=<most>;C2.ImportoDareVB="0.0001"
    | Error 6 in OkQuadratura < OkAggiorna
sum too small | C1.ImportoDareVB=<least>;C2.ImportoAvereVB="0.0001"
    | Error 6 in OkQuadratura < OkAggiorna
credit without a negative | C2.ImportoAvereVB=<least> | Error 6 in OkQuadratura < OkAggiorna
least debit and most credit | C1.ImportoDareVB=<least>;C2.ImportoAvereVB=<most>
    | Error 6 in OkQuadratura < OkAggiorna
largest protocol | T.Protocollo=2147483647 | False Warn: 10738(del documento)
smallest protocol | T.Protocollo=-2147483648 | True
largest section | T.SezionaleIva=32767 | False Err: 10514
smallest section | T.SezionaleIva=-32768 | False Err: 10514
largest line number | C1.CodConto="";C1.NumeroRiga=2147483647 | False Err: 10520(2147483647)
smallest line number | C1.CodConto="";C1.NumeroRiga=-2147483648 | False Err: 10520(-2147483648)
first day of all | T.DataRegistrazione="0100-01-01" | False Err: 10513 / 10514
last day of all | T.DataCompetenza="9999-12-31" | False Err: 10523
leap day | T.DataRegistrazione="2024-02-29";T.DataCompetenza="2024-02-29" | True
leap day of a period | T.Rettifica=true;T.DataCompetenza="2024-02-29" | True
day before it | T.Rettifica=true;T.DataCompetenza="2024-02-28" | False Err: 10594
month end of the first year | T.Rettifica=true;T.DataCompetenza="0100-02-28"
    | False Err: 10523
last month end | T.Rettifica=true;T.DataCompetenza="9999-12-31" | False Err: 10523
no leap day in 1900 | T.Rettifica=true;T.DataCompetenza="1900-02-28" | False Err: 10523
leap day of 2000 | T.Rettifica=true;T.DataCompetenza="2000-02-28" | False Err: 10523 / 10594
[acquisto]
smallest deadline | C1.IdScadenza=-2147483648;S1.IdScadenza=-2147483648;
    S2.IdScadenza=-2147483648 | True
no such deadline | C1.IdScadenza=2147483647 | False Err: 10489(1)
leap day of the document | T.DataDocumento="2024-02-29" | True
first day of the document | T.DataDocumento="0100-01-01" | True
last day of the document | T.DataDocumento="9999-12-31" | False Err: 10496
totals of the largest amount | F+{"BeniImponibili":<most>,"ServiziImponibili":"0.0001"}
    | Error 6 in CheckQuadraturaDatiFiscalitaBL < OkAggiorna
[acquisto] | operation="LibroGiornaleStampato"
first day | arguments=["0100-01-01"] | False
last day | arguments=["9999-12-31"] | False
leap day | arguments=["2024-02-29"] | INSERT INTO COGBollati VALUES (1,2024,2,1,0) | True
)");
}

// A date that a host's record set gives with a time of day is that day.
TEST(Hostile, TimesOfDay) {
  const struct {
    const char* kind;
    const char* changes;
    const char* sql;
    const char* field;
  } rows[] = {
      {"acquisto", "T.DataDocumento=\"2024-03-15\"", "", "DataDocumento"},
      {"giroconto", "T.Rettifica=true;T.DataCompetenza=\"2024-02-29\"", "", "DataCompetenza"},
      {"giroconto", "T.DataCompetenza=\"2024-12-31\"",
       "UPDATE COGCausaliContabili SET IdTipoMovimento=1", "DataCompetenza"},
      {"giroconto", "T.DataCompetenza=\"2024-01-01\"",
       "UPDATE COGCausaliContabili SET IdTipoMovimento=2", "DataCompetenza"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.changes);
    const TestCompany file(row.sql);
    company::Company company(file.Path().string());
    CodedSiblings siblings(company.Siblings());
    Checked checked(siblings, EntryText(row.kind, row.changes));
    const RowTable& header = *checked.entry.sets.front().rows;
    const auto column = static_cast<std::size_t>(header.FindColumn(row.field));
    SetCell(checked, "RsTesta", row.field, *Date::FromSerial(CDbl(header.Cell(0, column)) + 0.75));
    EXPECT_EQ(checked.Run(), "True");
  }
}

// Every field of every record set, with values of its own type and of others. The answer may be any
// but an internal error.
TEST(Hostile, AnyValueInAnyField) {
  const Variant values[] = {Null,
                            Variant(),
                            std::int64_t{INT64_MAX},
                            std::int64_t{INT64_MIN},
                            std::nan(""),
                            -1e308,
                            Currency::FromUnits(INT64_MIN),
                            Decimal::FromParts(UINT32_MAX, UINT64_MAX, 0, true),
                            Date::FromYmd(100, 1, 1).value(),
                            Date::FromYmd(9999, 12, 31).value(),
                            true,
                            "",
                            "x'\0%s\xFF"s};
  const TestCompany file;
  const std::string before = Bytes(file.Path());
  company::Company company(file.Path().string());
  CodedSiblings siblings(company.Siblings());
  const std::string text = EntryText(
      "acquisto",
      "T.DataPlafond=\"2024-03-10\";T.IdDichiarazione=2;R+{\"CodContoContropartita\":\"4001\"};"
      "F+{\"BeniImponibili\":100,\"ImpostaBeniImponibili\":22};K+{\"TipoRegIva\":1,"
      "\"Operazione\":1,\"SegnoIva\":1}");
  const Checked base(siblings, text);
  std::set<std::string> answers;
  for (const host::SuppliedSet& set : base.entry.sets) {
    for (const Column& column : set.rows->Columns()) {
      for (const Variant& value : values) {
        Checked checked(siblings, text);
        SetCell(checked, set.set->name, column.name, value);
        const std::string shown = checked.Run();
        const bool error = shown.starts_with("Error ");
        EXPECT_TRUE(!error || std::regex_search(shown, std::regex("^Error (6|13|91|94|3001|3021) "
                                                                  "in [^\n]*OkAggiorna")))
            << column.name << " " << shown;
        answers.insert(shown.substr(0, shown.find(' ', 6)));
      }
    }
  }
  EXPECT_GE(answers.size(), 5U);
  EXPECT_TRUE(Bytes(file.Path()) == before);
}

TEST(Hostile, TemporaryTableOfAnyName) {
  const std::string injections[] = {"x; DROP TABLE STDIva; --",
                                    "x\" (A); DROP TABLE STDIva; --",
                                    "main.COGScadenze",
                                    "sqlite_master",
                                    "x\0y"s,
                                    "\xFF'%s[]`"};
  const TestCompany file;
  const std::string before = Bytes(file.Path());
  company::Company company(file.Path().string());
  for (const std::string& name : injections) {
    const std::string text = EntryText("vendita",
                                       "T.InSospensione=true;S2.TipoRata=1;S2.LinkApertura=1;"
                                       "S2.RataApertura=1;TmpTableScadenze=\"TABLE\"");
    const std::string named = Replaced(text, "\"TABLE\"", host::QuotedText(name));
    const host::Outcome outcome = host::CheckEntry(company, {named, "", ""});
    EXPECT_TRUE(outcome.error || outcome.errString.find("sospensione") != std::string::npos)
        << name << outcome.errString << outcome.inputError;
    EXPECT_TRUE(!outcome.error || outcome.error->Source() == kDataAccessSource)
        << name << outcome.error->Description();
    EXPECT_TRUE(Bytes(file.Path()) == before) << name;
  }
}

// What the host answers for three entries of which only the middle one reads COGBollati.
struct HostRun {
  int status = 0;
  std::string out;
  std::string err;
};

HostRun RunHost(const fs::path& company) {
  std::istringstream in(
      "{\"operation\":\"LeggiIdPrimaNota\",\"arguments\":[1,1]}\n"
      "{\"operation\":\"LibroGiornaleStampato\",\"arguments\":[\"2024-03-15\"]}\n"
      "{\"operation\":\"LeggiIdPrimaNota\",\"arguments\":[2,1]}\n");
  std::ostringstream out;
  std::ostringstream err;
  const std::string path = company.string();
  const char* const arguments[] = {"kalcogcheck", "check",      "--json",
                                   "--company",   path.c_str(), "-"};
  const int status = host::Run(6, arguments, in, out, err);
  return {status, out.str(), err.str()};
}

// The bytes of a table's first page.
void DamagePage(const TestCompany& file, const std::string& table) {
  sqlite3* db = nullptr;
  sqlite3_open(file.Path().c_str(), &db);
  const auto number = [&](const std::string& sql) {
    sqlite3_stmt* statement = nullptr;
    sqlite3_prepare_v2(db, sql.c_str(), -1, &statement, nullptr);
    sqlite3_step(statement);
    const int answer = sqlite3_column_int(statement, 0);
    sqlite3_finalize(statement);
    return answer;
  };
  const int size = number("PRAGMA page_size");
  const int page = number("SELECT rootpage FROM sqlite_master WHERE name = '" + table + "'");
  sqlite3_close(db);
  std::fstream bytes(file.Path(), std::ios::in | std::ios::out | std::ios::binary);
  bytes.seekp(static_cast<std::streamoff>(page - 1) * size);
  bytes << std::string(static_cast<std::size_t>(size), '\xEE');
}

TEST(BrokenCompany, TheOtherEntriesAreAnswered) {
  using Break = std::function<void(const TestCompany&)>;
  const auto sql = [](const char* text) -> Break {
    return [text](const TestCompany& file) { file.Execute(text); };
  };
  const struct {
    const char* name;
    Break breakIt;
    const char* what;  // in the description, beside the file or the field
    const char* which;
  } rows[] = {
      {"damaged page",
       [](const TestCompany& file) {
         file.Execute("INSERT INTO COGBollati VALUES (1,2024,3,1,1)");
         DamagePage(file, "COGBollati");
       },
       "malformed", ".db"},
      {"missing table", sql("DROP TABLE COGBollati"), "no table", "COGBollati"},
      {"missing column",
       sql("ALTER TABLE COGBollati DROP COLUMN GiorContStampato;"
           "INSERT INTO COGBollati (IdBollato,Anno,Mese) VALUES (1,2024,3)"),
       "GiorContStampato", ""},
      {"missing column of a condition", sql("ALTER TABLE COGBollati RENAME COLUMN Anno TO Annata"),
       "Anno", "COGBollati"},
      {"another type", sql("INSERT INTO COGBollati VALUES (1,2024,3,'forse',0)"),
       "GiorContStampato", "forse"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    const TestCompany file;
    row.breakIt(file);
    const HostRun run = RunHost(file.Path());
    EXPECT_EQ(run.status, 2);
    std::istringstream lines(run.out);
    for (int i = 0; i < 3; ++i) {
      std::string line;
      ASSERT_TRUE(std::getline(lines, line)) << run.err;
      const nlohmann::json result = nlohmann::json::parse(line);
      if (i != 1) {
        EXPECT_EQ(result["result"], -1) << line;
      } else {
        ASSERT_FALSE(result["error"].is_null()) << line;
        const std::string description = result["error"]["description"];
        EXPECT_NE(description.find(row.what), std::string::npos) << description;
        EXPECT_NE(description.find(row.which), std::string::npos) << description;
      }
    }
  }
}

// A lock that ends soon is waited for.
TEST(BrokenCompanyThreads, LockedForAMoment) {
  const TestCompany file;
  sqlite3* db = nullptr;
  ASSERT_EQ(sqlite3_open(file.Path().c_str(), &db), SQLITE_OK);
  ASSERT_EQ(sqlite3_exec(db, "BEGIN EXCLUSIVE", nullptr, nullptr, nullptr), SQLITE_OK);
  std::thread writer([db] {
    std::this_thread::sleep_for(std::chrono::milliseconds(200));
    sqlite3_exec(db, "COMMIT", nullptr, nullptr, nullptr);
  });
  const HostRun run = RunHost(file.Path());
  writer.join();
  sqlite3_close(db);
  EXPECT_EQ(run.status, 1) << run.err << run.out;
}

// A writer moves the books between two states all the time; eight checkers each see one of them.
TEST(BrokenCompanyThreads, EachCheckSeesOneStateOfTheBooks) {
  const TestCompany file("PRAGMA journal_mode = WAL");
  const std::string text = EntryText("acquisto");
  std::atomic<int> checking{8};
  std::atomic<int> calmSeen{0};
  std::atomic<int> busySeen{0};
  std::thread writer([&] {
    for (bool busy = true; checking > 0; busy = !busy) {
      file.Execute(busy ? "BEGIN IMMEDIATE; INSERT INTO COGBollati VALUES (1,2024,3,1,1);"
                          "INSERT INTO COGBlocchiPeriodo VALUES ('2024-03-15','2024-03-15');"
                          "UPDATE STDIva SET CodIva = 'x' WHERE CodIva = '22'; COMMIT"
                        : "BEGIN IMMEDIATE; DELETE FROM COGBollati; DELETE FROM COGBlocchiPeriodo;"
                          "UPDATE STDIva SET CodIva = '22' WHERE CodIva = 'x'; COMMIT");
    }
  });
  const auto check = [&] {
    company::Company company(file.Path().string());
    for (int i = 0; i < 60; ++i) {
      const host::Outcome outcome = host::CheckEntry(company, {text, "", ""});
      const bool findings = !outcome.errString.empty();
      EXPECT_FALSE(outcome.error) << outcome.error->Description();
      // Journal, register and VAT code, and the lock: all or none.
      EXPECT_EQ(std::ranges::count(outcome.errString, '\n'), findings ? 2 : 0) << outcome.errString;
      EXPECT_EQ(outcome.warnString.empty(), !findings);
      ++(findings ? busySeen : calmSeen);
    }
    --checking;
  };
  std::vector<std::thread> checkers;
  for (int i = 0; i < 8; ++i) {
    checkers.emplace_back(check);
  }
  for (std::thread& checker : checkers) {
    checker.join();
  }
  writer.join();
  EXPECT_GT(calmSeen, 0);
  EXPECT_GT(busySeen, 0);
}

// Stopped in the middle of a batch, and with nobody left to read.
TEST(StoppedHost, LeavesWholeLines) {
  const TestCompany file;
  const fs::path in = file.Path().string() + ".jsonl";
  const fs::path out = file.Path().string() + ".out";
  constexpr int kEntries = 20000;
  std::ofstream entries(in);
  const std::string text = EntryText("acquisto");
  for (int i = 0; i < kEntries; ++i) {
    entries << text << "\n";
  }
  entries.close();
  const pid_t child = fork();
  if (child == 0) {
    (void)!std::freopen(out.c_str(), "w", stdout);
    (void)!std::freopen("/dev/null", "w", stderr);
    execl(KAL_HOST_PROGRAM, "kalcogcheck", "check", "--json", "--company", file.Path().c_str(),
          in.c_str(), nullptr);
    _exit(99);
  }
  std::error_code none;
  for (int i = 0; i < 2000 && (!fs::exists(out) || fs::file_size(out, none) < 50000); ++i) {
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
  kill(child, SIGINT);
  int status = 0;
  waitpid(child, &status, 0);
  const std::string written = Bytes(out);
  EXPECT_GE(written.size(), 50000U);
  EXPECT_TRUE(written.ends_with("\n"));
  std::istringstream lines(written);
  int count = 0;
  for (std::string line; std::getline(lines, line); ++count) {
    EXPECT_TRUE(nlohmann::json::accept(line)) << line;
  }
  EXPECT_LT(count, kEntries);
  EXPECT_FALSE(WIFEXITED(status) && WEXITSTATUS(status) < 2) << status;
  const std::string closed = "(" KAL_HOST_PROGRAM " check --json --company " +
                             file.Path().string() + " " + in.string() + " 2>" + out.string() +
                             "; exit $?) | true";
  EXPECT_EQ(std::system(("bash -c 'set -o pipefail; " + closed + "'").c_str()), 2 << 8);
  EXPECT_NE(Bytes(out).find("can't be written"), std::string::npos);
  fs::remove(in);
  fs::remove(out);
}

}  // namespace
}  // namespace kal::test
