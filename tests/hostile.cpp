// Hostile data: codes and texts that no screen lets through, values at every edge of their types,
// companies that change or break while they are read. Each gives its answer or an error with its
// trail, and nothing changes the company's file.

#include <gtest/gtest.h>
#include <sqlite3.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <fstream>
#include <nlohmann/json.hpp>
#include <sstream>
#include <thread>

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

// The sets handed over again with the field of one's first row replaced.
void SetCell(Checked& checked, std::string_view set, std::string_view field, const Variant& value) {
  for (host::SuppliedSet& supplied : checked.entry.sets) {
    if (supplied.set->name != set) continue;
    const auto rows = std::make_shared<RowTable>(supplied.rows->Columns());
    const auto column = static_cast<std::size_t>(supplied.rows->FindColumn(field));
    for (std::size_t row = 0; row < supplied.rows->RowCount(); ++row) {
      rows->AddRowOf([&](std::size_t place) {
        return row == 0 && place == column ? value : supplied.rows->Cell(row, place);
      });
    }
    supplied.rows = rows;
  }
  checked.Hand();
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
     "INSERT INTO STDPianoDeiConti VALUES (?,0,0)", "True", "Err: 10520(1)"},
    {"template", "giroconto", "", "RsTesta", "CodCausale",
     "INSERT INTO COGCausaliContabili (CodCausale,TipoRegIva) VALUES (?,0)", "True", "Err: 10525"},
    {"property", "giroconto", "C1.CodDivisa=\"\"", "RsTesta", "CodProprieta",
     "INSERT INTO COGPrimeNoteProprieta VALUES (?,1)", "Err: 10578(1)", "True"},
    {"document number", "acquisto", "", "RsTesta", "NumeroDocumento",
     "INSERT INTO COGPrimeNoteTeste (IdPrimaNota,TipoRegIva,NumeroDocumento,IdAnagrafica,"
     "DataDocumento,Protocollo,DataRegistrazione) VALUES (1,1,?,20,'2024-01-01',1,'2024-01-01')",
     "Dup: 10507", "True"},
    {"terms of payment", "vendita",
     "T.IdAnagrafica=11;T.SezionaleIva=2;S2.IdTipologiaPagamento=2;S2.IdBancaCliente=1", "RsTesta",
     "CodPagamento", "INSERT INTO STDCondizioniPagamentoTeste VALUES (?,1)", "Warn: <effetti>",
     "True"},
    {"group account", "giroconto", "C1.TipoCliFor=0", "RsRCont", "CodConto",
     "INSERT INTO STDPianoDeiConti VALUES (?,0,1)", "Group: 10656", "Err: 10520(1)"},
    {"VAT code", "acquisto", "", "RsRIva", "CodIva", "INSERT INTO STDIva (CodIva) VALUES (?)",
     "True", "Err: 10498(<text>)"},
};

TEST(Hostile, CodesAreFoundAsTheyAre) {
  const char* const group = "INSERT INTO STDParametriAzienda VALUES ('GestisciPNInfragruppo','1')";
  for (const Place& place : kPlaces) {
    for (const bool found : {true, false}) {
      OpenedCompany books(group);
      for (const Text& text : kTexts) {
        if (found) Store(books.Path(), place.stored, text.text);
      }
      const std::string before = Bytes(books.Path());
      for (const Text& text : kTexts) {
        SCOPED_TRACE(place.name + " "s + text.name + (found ? " found" : " missing"));
        Checked checked(books.siblings, EntryText(place.kind, place.changes));
        SetCell(checked, place.set, place.field, text.text);
        std::string expected = Written(found ? place.found : place.missing);
        if (place.field == "CodIva"s && text.inFilter == "invalid"s) {
          expected = "Error 3001 in CheckCodIva";
        } else if (place.field == "CodIva"s && text.inFilter == "any"s) {
          expected = "True";
        }
        const std::string shown = Replaced(text.text, "\r\n", " / ");
        EXPECT_TRUE(checked.Run() == Replaced(expected, "<text>", shown))
            << checked.Findings().substr(0, 300);
      }
      EXPECT_TRUE(Bytes(books.Path()) == before);
    }
  }
}

TEST(Hostile, ValuesAtTheEdges) {
  RunTable(R"(
<most> = "922337203685477.5807"
<least> = "-922337203685477.5808"
[giroconto]
sum too large | C1.ImportoDareVB=<most>;C2.ImportoDareVB="0.0001" | Error 6 in OkQuadratura
sum too small | C1.ImportoDareVB=<least>;C2.ImportoAvereVB="0.0001" | Error 6 in OkQuadratura
credit without a negative | C2.ImportoAvereVB=<least> | Error 6 in OkQuadratura
largest protocol | T.Protocollo=2147483647 | Warn: 10738({del documento})
smallest protocol | T.Protocollo=-2147483648 | True
largest section | T.SezionaleIva=32767 | Err: 10514
largest line number | C1.CodConto="";C1.NumeroRiga=2147483647 | Err: 10520(2147483647)
smallest line number | C1.CodConto="";C1.NumeroRiga=-2147483648 | Err: 10520(-2147483648)
first day of all | T.DataRegistrazione="0100-01-01" | Err: 10513 / 10514
leap day | T.DataRegistrazione="2024-02-29";T.DataCompetenza="2024-02-29" | True
last month end | T.Rettifica=true;T.DataCompetenza="9999-12-31" | Err: 10523
no leap day in 1900 | T.Rettifica=true;T.DataCompetenza="1900-02-28" | Err: 10523
leap day of 2000 | T.Rettifica=true;T.DataCompetenza="2000-02-28" | Err: 10523 / 10594
[acquisto]
smallest deadline | C1.IdScadenza=-2147483648;S1.IdScadenza=-2147483648;S2.IdScadenza=-2147483648
    | True
no such deadline | C1.IdScadenza=2147483647 | Err: 10489(1)
first day of the document | T.DataDocumento="0100-01-01" | True
last day of the document | T.DataDocumento="9999-12-31" | Err: 10496
[acquisto] | operation="LibroGiornaleStampato"
first day | arguments=["0100-01-01"] | False
last day | arguments=["9999-12-31"] | False
leap day | arguments=["2024-02-29"] | INSERT INTO COGBollati VALUES (1,2024,2,1,0) | True
)");
}

// A header total that is no amount of ours is compared as one.
TEST(Hostile, AnAmountAsADouble) {
  OpenedCompany books;
  Checked checked(books.siblings,
                  EntryText("acquisto", R"(F+{"BeniImponibili":100,"ImpostaBeniImponibili":22})"));
  SetCell(checked, "RsTesta", "TotImponibileVB", 100.00000000000003);
  EXPECT_EQ(checked.Run(), "True");
}

constexpr const char* kLookup = R"({"operation":"LeggiIdPrimaNota","arguments":[1,1]})";
constexpr const char* kJournal =
    R"({"operation":"LibroGiornaleStampato","arguments":["2024-03-15"]})";

TEST(BrokenCompany, TheOtherEntriesAreAnswered) {
  const struct {
    const char* breakIt;
    const char* what;  // in the description, beside the table or the value
    const char* which;
  } rows[] = {
      {"DROP TABLE COGBollati", "no table", "COGBollati"},
      {"ALTER TABLE COGBollati DROP COLUMN GiorContStampato;"
       "INSERT INTO COGBollati (IdBollato,Anno,Mese) VALUES (1,2024,3)",
       "GiorContStampato", ""},
      {"ALTER TABLE COGBollati RENAME COLUMN Anno TO Annata", "Anno", "COGBollati"},
      {"INSERT INTO COGBollati VALUES (1,2024,3,'forse',0)", "GiorContStampato", "forse"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.breakIt);
    OpenedCompany books(row.breakIt);
    EXPECT_TRUE(host::CheckEntry(books.company, {kLookup}).result);
    const host::Outcome broken = host::CheckEntry(books.company, {kJournal});
    ASSERT_TRUE(broken.error);
    EXPECT_NE(broken.error->Description().find(row.what), std::string::npos);
    EXPECT_NE(broken.error->Description().find(row.which), std::string::npos);
    EXPECT_TRUE(host::CheckEntry(books.company, {kLookup}).result);
  }
}

// Nobody reads what is written, and the end is asked for: it comes nevertheless.
TEST(StoppedHost, EndsThoughItsOutputIsBlocked) {
  const TestCompany file;
  const ScratchPath in;
  std::ofstream entries(in.Path());
  for (int i = 0; i < 2000; ++i) {
    entries << EntryText("acquisto") << "\n";
  }
  entries.close();
  int pipe[2];
  ASSERT_EQ(::pipe(pipe), 0);
  const pid_t child = fork();
  if (child == 0) {
    dup2(pipe[1], STDOUT_FILENO);
    (void)!std::freopen("/dev/null", "w", stderr);
    execl(KAL_HOST_PROGRAM, "kalcogcheck", "check", "--json", "--company", file.Path().c_str(),
          in.Path().c_str(), nullptr);
    _exit(99);
  }
  std::this_thread::sleep_for(std::chrono::milliseconds(500));  // the pipe is full by then
  kill(child, SIGTERM);
  int status = 0;
  for (int i = 0; i < 1000 && waitpid(child, &status, WNOHANG) == 0; ++i) {
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
  EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 2) << status;
  if (!WIFEXITED(status)) kill(child, SIGKILL);
  close(pipe[0]);
  close(pipe[1]);
}

// Stopped in the middle of a batch, and with nobody left to read. What was answered is recorded.
TEST(StoppedHost, LeavesWholeLines) {
  const TestCompany file;
  const ScratchPath record;
  const fs::path in = file.Text() + ".jsonl";
  const fs::path out = file.Text() + ".out";
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
    execl(KAL_HOST_PROGRAM, "kalcogcheck", "check", "--json", "--record", record.Path().c_str(),
          "--company", file.Path().c_str(), in.c_str(), nullptr);
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
  const std::string recorded = Bytes(record.Path());
  EXPECT_GE(std::ranges::count(recorded, '\n'), count);
  EXPECT_TRUE(recorded.ends_with("}}\n"));
  EXPECT_FALSE(WIFEXITED(status) && WEXITSTATUS(status) < 2) << status;
  const std::string closed = "(" KAL_HOST_PROGRAM " check --json --lang en --company " +
                             file.Text() + " " + in.string() + " 2>" + out.string() +
                             "; exit $?) | true";
  EXPECT_EQ(std::system(("bash -c 'set -o pipefail; " + closed + "'").c_str()), 2 << 8);
  EXPECT_NE(Bytes(out).find("can't be written"), std::string::npos);
  fs::remove(in);
  fs::remove(out);
}

}  // namespace
}  // namespace kal::test
