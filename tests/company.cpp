// The company: selections, storage, sibling answers, states of the books.

#include "company/Company.h"

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <functional>
#include <random>
#include <set>
#include <sstream>
#include <thread>

#include "company/Schema.h"
#include "company/Verify.h"
#include "company/postgres/PostgresEngine.h"
#include "company/sqlite/SchemaSql.h"
#include "company/sqlite/SqliteEngine.h"
#include "siblings/Components.h"
#include "tests/engines.h"
#include "tests/kit.h"

namespace kal::company {
namespace {

namespace fs = std::filesystem;
using enum CompareWith;

Date Day(std::string_view iso) { return Date::FromIso(iso).value(); }

// "Null", or the value as automation writes it, so that the type shows.
std::string Show(const Variant& value) { return value.IsNull() ? "Null" : CStr(value); }

// The rows' fields; rows are separated by semicolons.
std::string Show(const RowTable& table) {
  std::string text;
  for (std::size_t row = 0; row < table.RowCount(); ++row) {
    for (std::size_t column = 0; column < table.Columns().size(); ++column) {
      text += (column > 0 ? " " : row > 0 ? ";" : "") + Show(table.Cell(row, column));
    }
  }
  return text;
}

// The answer, or "number: text" of the error raised, with the source where it is another's.
std::string AnswerOrError(const std::function<std::string()>& question) {
  try {
    return question();
  } catch (const RunTimeError& error) {
    const std::string source = error.Source() == kDataAccessSource ? "" : error.Source() + " ";
    return source + std::to_string(error.Number()) + ": " + error.Description();
  }
}

// A case of a table; "*" at the end of what is expected stands for any rest.
struct Case {
  const char* name;
  std::string answer;
  std::string expected;

  void Check() const {
    const bool open = expected.ends_with('*');
    const std::size_t size = open ? expected.size() - 1 : std::string::npos;
    EXPECT_EQ(answer.substr(0, size), expected.substr(0, size)) << name << ": " << answer;
  }
};

class CompanyTest : public testing::Test {
 protected:
  CompanyTest() {
    fs::create_directories(folder_.Path());
    CreateCompany(file_, false);
    writer_ = Connect(file_);
  }
  ~CompanyTest() override { sqlite3_close(writer_); }

  static sqlite3* Connect(const std::string& path) {
    sqlite3* connection = nullptr;
    EXPECT_EQ(sqlite3_open(path.c_str(), &connection), SQLITE_OK);
    EXPECT_EQ(Run(connection, "PRAGMA synchronous = OFF"), SQLITE_OK);
    return connection;
  }
  static int Run(sqlite3* connection, const std::string& sql) {
    return sqlite3_exec(connection, sql.c_str(), nullptr, nullptr, nullptr);
  }
  void Write(const std::string& sql) {
    ASSERT_EQ(Run(writer_, sql), SQLITE_OK) << sqlite3_errmsg(writer_) << "\n" << sql;
  }
  void WriteUnchecked(const std::string& sql) {
    Write("PRAGMA ignore_check_constraints = ON");
    Write(sql);
    Write("PRAGMA ignore_check_constraints = OFF");
  }
  // Makes the table anew, without rowid; its first column is then the key.
  void MakeWithoutRowid(const std::string& table) {
    Write("DROP TABLE " + table);
    std::istringstream schema(SchemaSql());
    for (std::string line; std::getline(schema, line);) {
      if (line.starts_with("CREATE TABLE \"" + table + "\"")) {
        line.insert(line.find(','), " PRIMARY KEY").insert(line.size() - 1, " WITHOUT ROWID");
      }
      if (line.find(" \"" + table + "\" (") != line.npos) Write(line);
    }
  }
  [[nodiscard]] std::string Path(const std::string& name) const {
    return (folder_.Path() / name).string();
  }
  [[nodiscard]] std::ptrdiff_t Files() const {
    return std::distance(fs::directory_iterator(folder_.Path()), fs::directory_iterator());
  }
  static std::string Bytes(const std::string& path) {
    std::ostringstream bytes;
    bytes << std::ifstream(path, std::ios::binary).rdbuf();
    return bytes.str();
  }
  static std::string Answer(Engine& engine, const Selection& what,
                            const std::vector<Variant>& values = {}) {
    return AnswerOrError([&] { return Show(*engine.Rows(Query::OfPassing(what, values))); });
  }
  template <const Selection& kSelection>
  static std::string KeptAnswer(Engine& engine, const std::vector<Variant>& values = {},
                                std::string_view name = {}) {
    return AnswerOrError([&] { return Show(*engine.Rows(Query::Of<kSelection>(values, name))); });
  }

  test::ScratchPath folder_;
  std::string file_ = Path("Libri à.db");
  sqlite3* writer_ = nullptr;
};

// On every engine, with the rows that were written to the file.
class EngineTest : public CompanyTest, public testing::WithParamInterface<test::Place> {
 protected:
  [[nodiscard]] bool IsFile() const { return GetParam() == test::Place::File; }
  [[nodiscard]] std::unique_ptr<Engine> Open() const {
    if (IsFile()) return std::make_unique<SqliteEngine>(file_);
    return std::make_unique<PostgresEngine>(test::KeptAt(GetParam(), file_));
  }
};
KAL_ON_ALL_ENGINES(EngineTest);

constexpr Selection From(std::string_view columns, std::string_view table) {
  return Selection().Option(11).Select(columns).From(table);
}
constexpr Selection kTeste = From("IdPrimaNota", "COGPrimeNoteTeste");
constexpr Selection kCodes = From("*", "STDIva");
constexpr Selection kCode = kCodes.WhereEqual("CodIva");
constexpr Selection kDeclarations = From("*", "STDDichiarazioniIntento");

TEST_P(EngineTest, SelectionsAnswer) {
  Write(R"(
    INSERT INTO COGPrimeNoteTeste (IdPrimaNota, CodCausale, NumeroDocumento, SegnoIva, TipoRegIva,
        SezionaleIva, DataRegistrazione, DataDocumento, Provvisoria, TotDocumento, Fixing)
      VALUES (1, 'FT', 'A/1', 1, 2, 3, '2024-03-15', NULL, NULL, '10.50', 1.5),
        (2, 'ft', 'a/1', NULL, 1, 3, '2023-12-31', '2023-12-30', 1, 0.1, NULL),
        (2, 'ft', NULL, NULL, 1, 3, NULL, '2024-01-01 09:00:00', -1, NULL, NULL);
    INSERT INTO COGNumerazioniIva
        (IdNumerazione, IdSezAutofatture, Anno, SezionaleIva, SplitPayment)
      VALUES (1, 2, 2024, 3, 1), (2, NULL, 2024, 9, 0);
    INSERT INTO COGPrimeNoteRCont VALUES (1, 10), (2, 12);
    INSERT INTO COGRateiRisconti VALUES (4, 1);
    INSERT INTO COGRateiRiscontiContabilizzati VALUES (4), (4);
    CREATE TABLE "as as as" (A AMOUNT_TEXT, B, C SMALLINT);
    INSERT INTO "as as as" VALUES ('1.25', 'x', 3);)");
  const std::unique_ptr<Engine> own = Open();
  Engine& engine = *own;
  const auto where = [&](const char* left, CompareWith operation, const Variant& value) {
    return Answer(engine, kTeste.Where(left, operation), {value});
  };
  const auto literal = [&](const char* text) { return Answer(engine, kTeste.WhereLiteral(text)); };
  const auto from = [&](const char* columns, const char* table) {
    return Answer(engine, From(columns, table));
  };
  const auto outer = [&](const char* table) {
    return Answer(engine,
                  From("IdScadenza, T.IdPrimaNota", "COGPrimeNoteRCont")
                      .JoinWith(JoinKind::LeftOuter, table)
                      .On("T.IdPrimaNota", "COGPrimeNoteRCont.IdPrimaNota")
                      .WhereEqual("IdScadenza"),
                  {12});
  };
  const char* types = "idprimanota,NumeroDocumento , DataRegistrazione,Intra,TotDocumento, Fixing";
  const Case cases[] = {
      {"types", Answer(engine, From(types, "cogprimenoteteste").WhereEqual("Fixing"), {1.5}),
       "1 A/1 15/03/2024 Null 10.5 1.5"},
      {"letter case of texts counts", where("CodCausale", Equal, "ft"), "2;2"},
      {"nothing equals Null", where("NumeroDocumento", Equal, Null), ""},
      {"nothing differs from Null", where("IdPrimaNota", NotEqual, Null), ""},
      {"Null does not differ", where("NumeroDocumento", NotEqual, "A/1"), "2"},
      {"default for Null", where("ISNULL( provvisoria ,0)", Equal, 0), "1"},
      {"True is 1 and -1", where("Provvisoria", Equal, true), "2;2"},
      {"Null is not False", where("Provvisoria", Equal, false), ""},
      {"year as text", where("Year(DataDocumento)", Equal, "2024"), "2"},
      {"year as number", where("Year(DataDocumento)", LessOrEqual, 2023), "2"},
      {"dates", where("DataDocumento", GreaterOrEqual, Day("2024-01-01")), "2"},
      {"a day with its time", where("DataDocumento", Equal, Day("2024-01-01")), "2"},
      {"not before itself", where("DataDocumento", Less, Date::FromSerial(45292.75).value()), "2"},
      {"not behind itself", where("DataDocumento", Greater, Day("2024-01-01")), ""},
      {"up to a day", where("DataDocumento", LessOrEqual, Day("2024-01-01")), "2;2"},
      {"the empty date is before all", where("DataDocumento", Less, ""), ""},
      {"literal", literal("DataIva Is Null And(IdPrimaNota=1 Or CodCausale = 'it''s')"), "1"},
      {"And before Or, inside only",
       Answer(engine,
              kTeste.WhereEqual("TipoRegIva")
                  .WhereLiteral("IdPrimaNota = 1 Or IdPrimaNota = 2 And Intra = 7"),
              {2}),
       "1"},
      {"Not of Not", literal("Not Not DataRegistrazione Is Null"), "2"},
      {"alternatives that overlap",
       Answer(engine, kTeste.WhereAnyOf({{{"IdPrimaNota"}}, {{"CodCausale"}}, {}}), {2, "ft"}),
       "2;2;1"},
      {"no alternatives", Answer(engine, kTeste.WhereAnyOf({})), ""},
      {"joined with itself",
       Answer(engine,
              From("COGNumerazioniIva.SezionaleIva,Autofattura.SezionaleIva", "COGNumerazioniIva")
                  .JoinWith(JoinKind::Inner, "COGNumerazioniIva as Autofattura")
                  .On("COGNumerazioniIva.IdSezAutofatture", "Autofattura.IdNumerazione")),
       "3 9"},
      {"all columns of all tables",
       Answer(engine,
              From("*", "COGRateiRisconti")
                  .JoinWith(JoinKind::Inner, "COGRateiRiscontiContabilizzati")
                  .On("COGRateiRisconti.IdRateoRisconto",
                      "COGRateiRiscontiContabilizzati.IdRateoRisconto")
                  .WhereEqual("IdDoc"),
              {1}),
       "4 1 4;4 1 4"},
      {"outer join", outer("COGPrimeNoteTeste AS T"), "12 2;12 2"},
      {"outer join keeps the left side", outer("COGPrimeNoteRiferimenti AS T"), "12 Null"},
      {"unknown column", where("Nessuna", Equal, 1),
       "-2147217900: There is no column 'Nessuna' in COGPrimeNoteTeste"},
      {"behind an alias", from("z.X", "STDIva as Z"), "-2147217900: There is no column 'X' in z"},
      {"hidden by its alias", from("STDIva.CodIva", "STDIva as z"),
       "-2147217865: The selection has no table 'STDIva'"},
      {"no table", from("*", "STDIva; DROP TABLE STDIva"),
       "-2147217865: There is no table 'STDIva; DROP TABLE STDIva' in *"},
      {"no columns", from("", "STDIva"), "-2147217900: The selection from STDIva names no colum*"},
      {"other function", literal("length(Partita) = 2"), "-2147217900: There is no column 'len*"},
      {"two statements", literal("Intra = 1; DELETE FROM STDIva"),
       "-2147217900: Can't read 'Intra = 1; DELETE FROM STDIva' from '; DELETE FROM STDIva' on"},
      {"open text", literal("CodCausale = 'x"), "-2147217900: Can't read*"},
      {"condition on the left", where("1 = 1 Or Intra", Equal, 1), "-2147217900: Can't read*"},
      {"amounts have no order in texts", where("TotDocumento", Less, 5), "445: Amounts can't*"},
  };
  std::ranges::for_each(cases, &Case::Check);
  // What only a file can hold.
  const Case others[] = {
      {"1 is 1 alone", IsFile() ? where("Provvisoria", Equal, 1) : "2", "2"},
      {"a table of others, oddly named", IsFile() ? from("*", "as as as as z") : "1.25 x 3",
       "1.25 x 3"},
  };
  std::ranges::for_each(others, &Case::Check);
}

TEST_F(CompanyTest, ReadsWhateverStorage) {
  const struct {
    const char* column;
    const char* stored;
    const char* read;
    int error = 0;
  } kRows[] = {
      {"TotDocumento", "'922337203685477.5807'", "922337203685477.5807"},
      {"TotDocumento", "'-922337203685477.5808'", "-922337203685477.5808"},
      {"TotDocumento", "-0.0001", "-0.0001"},
      {"TotDocumento", "12", "12"},
      {"TotDocumento", "'922337203685477.5808'", "out of range", 6},
      {"TotDocumento", "'1-2'", "no amount of up to four decimals", 13},
      {"TotDocumento", "'12,5'", "no amount of up to four decimals", 13},
      {"TotDocumento", "'0.00005'", "no amount of up to four decimals", 13},
      {"DataIva", "'2024-02-29'", "29/02/2024"},
      {"DataIva", "'2023-02-29'", "no date yyyy-mm-dd", 13},
      {"DataIva", "'15/03/2024'", "no date yyyy-mm-dd", 13},
      {"DataIva", "45000", "no date yyyy-mm-dd", 13},
      {"Intra", "-1", "True"},
      {"Intra", "'0'", "False"},
      {"Intra", "-2", "neither 0 nor 1", 13},
      {"Intra", "2", "neither 0 nor 1", 13},
      {"Intra", "'True'", "neither 0 nor 1", 13},
      {"TipoCliFor", "32767.0", "32767"},
      {"TipoCliFor", "32768", "out of range", 6},
      {"IdLink", "-2147483648", "-2147483648"},
      {"IdLink", "2147483648", "out of range", 6},
      {"IdLink", "1.5", "no whole number", 13},
      {"IdLink", "'abc'", "no number", 13},
      {"Fixing", "1", "1"},
      {"Fixing", "'abc'", "no number", 13},
      {"Partita", "5", "5"},
      {"Partita", "''", ""},
      {"Partita", "x'41'", "no text", 13},
  };
  SqliteEngine engine(file_);
  for (const auto& row : kRows) {
    const std::string insert = "INSERT INTO COGPrimeNoteTeste (IdPrimaNota, " +
                               std::string(row.column) + ") VALUES (1, " + row.stored + ")";
    Write("DELETE FROM COGPrimeNoteTeste");
    // What can't be read can't be stored either, but by who switches that off (and amounts that
    // are out of range by less than 1).
    if (const bool atTheEdge = insert.find(".5808'") != insert.npos; !atTheEdge || row.error == 0) {
      EXPECT_EQ(Run(writer_, insert), row.error == 0 ? SQLITE_OK : SQLITE_CONSTRAINT) << insert;
    }
    if (row.error != 0) WriteUnchecked(insert);
    const std::string answer = Answer(engine, From(row.column, "COGPrimeNoteTeste"));
    if (row.error == 0) {
      EXPECT_EQ(answer, row.read) << row.column << " " << row.stored;
      continue;
    }
    std::string value = row.stored[0] == 'x' ? "'A'" : row.stored;
    value = value[0] == '\'' ? value : "'" + value + "'";
    EXPECT_EQ(answer, std::to_string(row.error) + ": COGPrimeNoteTeste." + row.column +
                          ": the stored value " + value + " is " + row.read);
  }
}

// Every conflict, and nothing else, whatever branch and index answers, from a table without rowid
// too; against a plain walk.
TEST_P(EngineTest, AlternativesAgreeWithAPlainWalk) {
  static constexpr Selection kConflicts =
      kTeste.Where("IdPrimaNota", NotEqual)
          .WhereEqual("Year(DataRegistrazione)")
          .WhereEqual("TipoRegIva")
          .WhereEqual("SezionaleIva")
          .WhereEqual("IsNull(Provvisoria,0)")
          .WhereAnyOf({{{"Protocollo", Greater}, {"DataRegistrazione", Less}},
                       {{"Protocollo", Less}, {"DataRegistrazione", Greater}},
                       {{"Protocollo", Equal}}});
  static constexpr Selection kFirst = kConflicts.OnlyFirst();
  struct Saved {
    std::int32_t id;
    int section;
    int protocol;
    Date day;
  };
  std::mt19937 random(7);
  const auto number = [&](unsigned limit) { return static_cast<int>(random() % limit); };
  std::vector<Saved> saved;  // those that count
  MakeWithoutRowid("COGPrimeNoteTeste");
  const char* const provvisoria[] = {"1", "0", "NULL"};
  for (std::int32_t id = 1; id <= 120; ++id) {
    // Mostly in order: a conflict is one day among many.
    const int dayOfMonth = 1 + number(28);
    const int protocol = number(30) == 0 ? 1 + number(30) : dayOfMonth + number(2);
    const Date day = Date::FromYmd(2024 - (number(9) == 0), 6, dayOfMonth).value();
    const int section = 1 + (number(9) == 0);
    const bool provisional = number(4) == 0;
    if (id != 5 && day.Year() == 2024 && !provisional) {
      saved.push_back({id, section, protocol, day});
    }
    Write(
        "INSERT INTO COGPrimeNoteTeste (IdPrimaNota, Protocollo, DataRegistrazione, TipoRegIva, "
        "SezionaleIva, Provvisoria) VALUES (" +
        std::to_string(id) + "," + std::to_string(protocol) + ",'" + day.ToIso() + "',1," +
        std::to_string(section) + "," + provvisoria[provisional ? 0 : 1 + id % 2] + ")");
  }
  const std::unique_ptr<Engine> engine = Open();
  const auto check = [&](int section, int protocol, const Date& day) {
    std::multiset<std::int32_t> expected;
    for (const Saved& entry : saved) {
      if (entry.section == section &&
          (entry.protocol == protocol || (entry.protocol > protocol && entry.day < day) ||
           (entry.protocol < protocol && entry.day > day))) {
        expected.insert(entry.id);
      }
    }
    const Variant values[] = {5, "2024", 1, section, 0, protocol, day, protocol, day, protocol};
    const auto all = engine->Rows(Query::Of<kConflicts>(values));
    std::multiset<std::int32_t> found;
    for (std::size_t row = 0; row < all->RowCount(); ++row) found.insert(CLng(all->Cell(row, 0)));
    EXPECT_EQ(found, expected) << "protocol " << protocol << " on " << day.ToIso();
    const auto first = engine->Rows(Query::Of<kFirst>(values));
    ASSERT_EQ(first->RowCount(), expected.empty() ? 0U : 1U)
        << "protocol " << protocol << " on " << day.ToIso();
    EXPECT_TRUE(expected.empty() || expected.contains(CLng(first->Cell(0, 0))))
        << "protocol " << protocol << " on " << day.ToIso();
  };
  // Behind the end of the books as well, and in states of them that are held.
  for (const bool held : {false, true}) {
    for (int protocol = 0; protocol <= 34; protocol += 2) {
      if (held) engine->BeginReading({});
      for (int dayOfMonth = 1; dayOfMonth <= 28; dayOfMonth += 3) {
        check(1 + dayOfMonth % 2, protocol, Date::FromYmd(2024, 6, dayOfMonth).value());
      }
      if (held) engine->EndReading();
    }
  }
}

// Where the books end is asked once, and holds until something is saved. Only what the columns are
// for is an end.
TEST_F(CompanyTest, TheEndOfTheBooksHoldsUntilTheyChange) {
  static constexpr Selection kConflict =
      kTeste.OnlyFirst()
          .WhereEqual("Year(DataRegistrazione)")
          .WhereAnyOf({{{"Protocollo", Greater}, {"DataRegistrazione", Less}},
                       {{"Protocollo", Less}, {"DataRegistrazione", Greater}},
                       {{"Protocollo", Equal}}});
  SqliteEngine engine(file_);
  Write(
      "INSERT INTO COGPrimeNoteTeste (IdPrimaNota,Protocollo,DataRegistrazione) VALUES "
      "(1,7,'2024-06-29'),(2,NULL,'2024-01-01'),(3,1,'2024-06-30')");
  const auto ask = [&] {
    const Variant day = Day("2024-06-30");
    return KeptAnswer<kConflict>(engine, {"2024", 8, day, 8, day, 8});
  };
  EXPECT_EQ(ask(), "");  // prepares it
  const struct {
    const char* saved;  // protocol and date
    const char* found;
  } rows[] = {{"7,'2024-06-30 23:59:59'", ""}, {"8,'2024-06-30'", "4"}, {"9,'2024-06-29'", "4"},
              {"9,'2024-06-30'", ""},          {"1,'2024-07-01'", "4"}, {"'x','2024-06-29'", "4"},
              {"1,'2024-06-31x'", "4"}};
  for (const auto& row : rows) {
    for (const bool saved : {false, true}) {
      if (saved) {
        WriteUnchecked(
            "INSERT INTO COGPrimeNoteTeste (IdPrimaNota,Protocollo,DataRegistrazione) "
            "VALUES (4," +
            std::string(row.saved) + ")");
      }
      const std::uint64_t queries = engine.Counted().queries;
      for (int reading = 0; reading < 2; ++reading) {
        engine.BeginReading({});
        for (int i = 0; i < 2; ++i) EXPECT_EQ(ask(), saved ? row.found : "") << row.saved;
        engine.EndReading();
      }
      EXPECT_TRUE(saved || engine.Counted().queries == queries + 2) << row.saved;
    }
    Write("DELETE FROM COGPrimeNoteTeste WHERE IdPrimaNota = 4");
  }
}

// How SQLite searches the tables that grow with the entries, for whatever the checks ask.
TEST(CompanyPlans, LargeTablesAreSearchedByIndex) {
  test::OpenedCompany books(R"(
    INSERT INTO STDParametriAzienda VALUES ('GirocontoFatturaSplitPayment','1');
    INSERT INTO COGPrimeNoteTeste (IdPrimaNota,TipoDocumento,IdDoc) VALUES (100,5,7);
    INSERT INTO COGPrimeNoteRCont VALUES (100,5);
    INSERT INTO COGScadenze (IdScadenza,NrRata,TipoRata,LinkApertura,RataApertura) VALUES
      (5,1,0,NULL,NULL), (6,1,1,5,1))");
  std::vector<std::string> asked;
  books.company.Record(&asked);
  for (const auto& [kind, changes] :
       {std::pair("acquisto", "T.Intra=true;T.IdDichiarazione=2;S2.TipoRata=1;S2.LinkApertura=5"),
        std::pair("vendita", "T.InSospensione=true;TmpTableScadenze=\"COGScadenze\""),
        std::pair("vendita", "operation=\"OkModifica\""),
        std::pair("giroconto", "operation=\"OkModifica\""),
        std::pair("giroconto", "operation=\"OkModificaDoc\";arguments=[5,7]"),
        std::pair("giroconto", "operation=\"LeggiIdPrimaNota\";arguments=[7,5]")}) {
    (void)test::Checked(books.siblings, test::EntryText(kind, changes)).Run();
  }
  books.company.Record(nullptr);
  sqlite3* connection = nullptr;
  ASSERT_EQ(sqlite3_open(books.Text().c_str(), &connection), SQLITE_OK);
  std::set<std::string> steps;
  for (const std::string& sql : asked) {
    const auto collect = [](void* target, int, char** cells, char**) {
      static_cast<std::set<std::string>*>(target)->insert(cells[3]);
      return 0;
    };
    // What it asks about its own tables is not to be explained.
    sqlite3_exec(connection, ("EXPLAIN QUERY PLAN " + sql).c_str(), collect, &steps, nullptr);
  }
  sqlite3_close(connection);
  std::set<std::string> searched;
  for (const std::string& step : steps) {
    for (const SchemaTable& table : Tables()) {
      if (!table.growsWithEntries) continue;
      const std::string name(table.name);
      EXPECT_NE(step, "SCAN " + name);  // a walk over days scans those days alone
      if (step.find(" INDEX " + name + "_") != step.npos) {
        searched.insert(name + " " + step.substr(step.find('(')));
      }
    }
  }
  std::string shown;
  for (const std::string& search : searched) shown += search + "\n";
  EXPECT_EQ(shown, R"(COGPrimeNoteRCont (IdPrimaNota=?)
COGPrimeNoteRCont (IdScadenza=?)
COGPrimeNoteRiferimenti (IdPrimaNota=?)
COGPrimeNoteTeste (<expr>=? AND TipoRegIva=? AND SezionaleIva=? AND DataRegistrazione<?)
COGPrimeNoteTeste (<expr>=? AND TipoRegIva=? AND SezionaleIva=? AND DataRegistrazione=? AND Protocollo<?)
COGPrimeNoteTeste (<expr>=? AND TipoRegIva=? AND SezionaleIva=? AND DataRegistrazione=? AND Protocollo>?)
COGPrimeNoteTeste (<expr>=? AND TipoRegIva=? AND SezionaleIva=? AND DataRegistrazione>?)
COGPrimeNoteTeste (<expr>=? AND TipoRegIva=? AND SezionaleIva=? AND Protocollo<?)
COGPrimeNoteTeste (<expr>=? AND TipoRegIva=? AND SezionaleIva=? AND Protocollo=?)
COGPrimeNoteTeste (<expr>=? AND TipoRegIva=? AND SezionaleIva=? AND Protocollo>?)
COGPrimeNoteTeste (<expr>=? AND TipoRegIva=? AND SezionaleIva=?)
COGPrimeNoteTeste (IdDoc=? AND TipoDocumento=?)
COGPrimeNoteTeste (IdLink=?)
COGPrimeNoteTeste (IdPrimaNota=?)
COGPrimeNoteTeste (NumeroDocumento=? AND TipoRegIva=? AND IdAnagrafica=?)
COGPrimeNoteTeste (NumeroDocumento=? AND TipoRegIva=? AND SezionaleIva=?)
COGRateiRisconti (IdDoc=?)
COGRateiRiscontiContabilizzati (IdRateoRisconto=?)
COGScadenze (IdScadenza=? AND NrRata=? AND TipoRata=?)
COGScadenze (IdScadenza=? AND NrRata=?)
COGScadenze (IdScadenza=?)
COGScadenze (LinkApertura=? AND RataApertura=? AND TipoRata=?)
COGScadenze (LinkApertura=? AND RataApertura=?) LEFT-JOIN
)");
}

TEST_P(EngineTest, SiblingsAnswer) {
  MakeWithoutRowid("COGScadenze");
  Write(R"(
    DELETE FROM KalMessaggi;
    INSERT INTO KalMessaggi
      VALUES (1, 'it', 'uno'), (1, 'en', 'one'), (2, 'it', 'due'), (3, 'en', NULL), (4, 'en', '');
    INSERT INTO KalDizionario VALUES ('sì', 'en', 'yes'), ('no', 'it', 'mai'), ('forse', 'en', '');
    INSERT INTO STDParametriAzienda VALUES ('BloccoInviatoSDI', '1'), ('CodIvaBolli', NULL),
      ('AziendaSplitPayment', 'false'), ('GestisciPNInfragruppo', 'forse'), ('CodDivisaBase', '0'),
      ('AttivitaSeparateIva', ''), ('DataInizioSplitPayment', '2015-01-01'),
      ('SezionaleAutofatture', '70000');
    INSERT INTO STDEsercizi VALUES (9, '2024-01-01 09:00', '2024-12-31', 1, NULL),
      (8, '2024-07-01', '2025-06-30', 0, 1), (10, '2024-07-01', '2024-07-31', 0, 0);
    INSERT INTO STDAnagraficaClienti VALUES (1, 1, NULL);
    INSERT INTO STDAnagraficaFornitori VALUES (1, 0, 1, 1);
    INSERT INTO STDIva (CodIva, AmmessaFiscalitaBL, TipoIntra)
      VALUES ('22', 1, 1), ('10', NULL, NULL);
    INSERT INTO COGCausaliContabili (CodCausale, TipoParcella, NotaVariazione)
      VALUES ('NC', 1, 1), ('X', NULL, NULL);
    INSERT INTO COGBlocchiPeriodo VALUES ('2024-01-31 09:00', '2024-01-31T18:00'), (NULL, '2030-01-01');
    INSERT INTO COGNumerazioniIva (Anno, TipoRegIva, SezionaleIva, CodAttivita)
      VALUES (2024, 2, 3, 'B'), (2024, 2, 4, NULL);
    INSERT INTO COGPrimeNoteTeste
        (TipoRegIva, SezionaleIva, DataRegistrazione, Protocollo, Provvisoria)
      VALUES (2, 3, '2024-12-31', 41, NULL), (2, 3, '2024-01-01', 40, 0),
        (2, 3, '2024-01-01', 99, 1), (2, 3, '2025-01-01', 98, 0), (2, 4, '2024-01-01', 97, 0),
        (1, 3, '2024-01-01', 2147483647, 0);
    INSERT INTO COGPrimeNoteRCont VALUES (1, 10), (1, 10), (1, 11), (2, 12);
    INSERT INTO COGScadenze (IdScadenza, NrRata, TipoRata, LinkApertura, RataApertura)
      VALUES (10, 1, 0, 0, 0), (11, 1, 1, 0, 0), (12, 1, 0, 0, 0), (20, 1, 1, 10, 1),
        (21, 1, 1, 10, 1), (22, 1, 1, 10, 2), (23, 1, 0, 10, 1), (24, 1, 1, 11, 1),
        (25, 1, 1, 12, 1);)");
  const std::string kept = test::KeptAt(GetParam(), file_);
  Company company(kept, "en");
  kal::Siblings& f = company.Siblings();
  using M = Member;
  const struct {
    Member member;
    std::vector<Variant> values;
    std::string expected;
  } kRows[] = {
      {M::KalStatus_GetMessage, {1}, "one"},
      {M::KalStatus_GetMessage, {2}, "[2]"},  // in the other language only
      {M::KalStatus_GetMessage, {3}, "[3]"},  // Null
      {M::KalStatus_TranslateFromDict, {"sì", "a", "b", "", "", ""}, "yes"},
      {M::KalStatus_GetMessage, {4}, "[4]"},  // empty
      {M::KalStatus_TranslateFromDict, {"no", "a", "b", "", "", ""}, "no"},
      {M::KalStatus_TranslateFromDict, {"forse", "a", "b", "", "", ""}, "forse"},
      {M::CompanySettings_Setting, {"BloccoInviatoSDI"}, "True"},
      {M::CompanySettings_Setting, {"AziendaSplitPayment"}, "False"},
      {M::CompanySettings_Setting,
       {"GestisciPNInfragruppo"},
       "13: The setting GestisciPNInfragruppo can't have the value 'forse'"},
      {M::CompanySettings_Setting, {"AttivitaSeparateIva"}, "Null"},  // empty
      {M::CompanySettings_Setting, {"CodIvaBolli"}, "Null"},
      {M::CompanySettings_Setting, {"GirocontoFatturaSplitPayment"}, "Null"},  // missing
      {M::CompanySettings_Setting, {"DataInizioSplitPayment"}, "01/01/2015"},
      {M::CompanySettings_Setting, {"SezionaleAutofatture"}, "70000"},
      {M::CompanySettings_Setting, {"CodDivisaBase"}, "0"},
      {M::CompanySettings_FiscalYearField, {"X"}, "91: No fiscal year is selected"},
      {M::KalAnagrafiche_InfoAnagrafica, {"Infragruppo"}, "91: InfoAnagrafica was called befor*"},
      {M::VatCodes_AdmitsFiscalData, {"22"}, "True"},
      {M::VatCodes_AdmitsFiscalData, {"10"}, "False"},
      {M::VatCodes_AdmitsFiscalData, {"4"}, "False"},
      {M::VatCodes_IntraClassification, {"22"}, "1"},
      {M::VatCodes_IntraClassification, {"10"}, "0"},
      {M::VatCodes_IntraClassification, {"4"}, "0"},
      {M::VatCodes_IsVariationNote, {"NC"}, "True"},
      {M::VatCodes_IsVariationNote, {"X"}, "False"},
      {M::VatCodes_PeriodReferenceDate, {2, 2024}, "29/02/2024"},
      {M::VatCodes_PeriodReferenceDate, {12, 9999}, "31/12/9999"},
      {M::VatCodes_PeriodReferenceDate, {13, 2024}, "13: There is no month 13 of the year 2024"},
      {M::PeriodLock_IsLocked, {Day("2024-01-31")}, "True"},
      {M::PeriodLock_IsLocked, {Day("2024-02-01")}, "False"},
      {M::PeriodLock_IsLocked, {""}, "False"},
      {M::PeriodLock_IsLocked, {Day("2030-01-01")}, "False"},  // a lock without a start
      {M::VatActivities_ActivityCode, {2024, 2, 3}, "B"},
      {M::VatActivities_ActivityCode, {2024, 2, 4}, ""},  // Null
      {M::VatActivities_ActivityCode, {2023, 2, 3}, ""},
      {M::ProtocolNumbering_NextProtocol, {2, 3, Day("2024-06-01")}, "42"},
      {M::ProtocolNumbering_NextProtocol, {3, 3, Day("2024-06-01")}, "1"},
      {M::ProtocolNumbering_NextProtocol,
       {1, 3, Day("2024-06-01")},
       "6: There is no protocol after 2147483647"},
      {M::ProtocolNumbering_NextProtocol, {2, 3, ""}, "Kal_COGCheck 13: *"},
      {M::FeeNotes_SupplierTest, {1}, "True"},
      {M::FeeNotes_SupplierTest, {2}, "False"},
      {M::FeeNotes_TemplateTest, {"NC"}, "1"},
      {M::FeeNotes_TemplateTest, {"X"}, "0"},
      {M::SqlFunctions_Expression, {4, "DataIva"}, "Year(DataIva)"},
      {M::SqlFunctions_Expression, {5, "DataIva"}, "445: There is no function with the code 5"},
      {M::DataAccess_Execute, {"cogNroChiusurePrimaNota", 1, 1, 0}, "2"},  // each once
      {M::DataAccess_Execute, {"COGNroChiusurePrimaNota", 3, 1, 0}, "0"},
      {M::DataAccess_Execute, {"COGAltro", 1, 1, 0}, "-2147217900: There is no stored procedure*"},
  };
  for (const auto& row : kRows) {
    const MemberInfo& asked = kMembers[static_cast<std::size_t>(row.member)];
    std::vector<Variant> values = row.values;
    std::unique_ptr<SiblingState> state;
    const auto answer = [&] {
      return Show(f.Ask({.component = asked.component,
                         .member = row.member,
                         .values = values,
                         .state = state})
                      .value);
    };
    Case{asked.name.data(), AnswerOrError(answer), row.expected}.Check();
  }
  Company fresh(kept, "en");  // which keeps nothing yet
  IsFile() ? Write("DROP TABLE KalDizionario")
           : (void)test::Session(kept).Execute("DROP TABLE KalDizionario");
  EXPECT_EQ(KalStatus(fresh.Siblings()).TranslateFromDict("sì", "", "", "", "", ""), "sì");
  const auto year = [&](const Variant& date, const char* field) {
    CompanySettings settings(f);
    return settings.SelectFiscalYear(date) ? Show(settings.FiscalYearField(field)) : "none";
  };
  const auto person = [&](std::int16_t type, std::int32_t id, const char* name) {
    return AnswerOrError([&] {
      KalAnagrafiche component(f);
      component.IDAnagrafica(id);
      component.TipoAnagrafica(type);
      component.Init();
      return Show(component.InfoAnagrafica(name));
    });
  };
  const auto sum = [&](const char* list, const char* column) {
    return AnswerOrError([&] {
      auto rows = std::make_shared<RowTable>(
          std::vector<Column>{{"Dare", DataType::Currency}, {"Avere", DataType::Currency}});
      rows->AddRow({Currency::FromUnits(1), Currency::FromUnits(INT64_MAX)});
      rows->AddRow({Null, Currency::FromUnits(1)});
      rows->AddRow({Currency::FromUnits(-30000), Null});
      Totals totals(f);
      totals.Recordset(std::make_shared<MemoryRecordset>(rows));
      totals.Columns(list);
      totals.Compute();
      return Show(totals.Total(column));
    });
  };
  const Case cases[] = {
      {"first day of a year", year(Day("2024-01-01"), "codesercizio"), "9"},
      {"last day of a year", year(Day("2025-06-30"), "EsercizioChiuso"), "False"},
      {"lowest of three years", year(Day("2024-07-31"), "CodEsercizio"), "8"},
      {"day after all years", year(Day("2025-07-01"), "CodEsercizio"), "none"},
      {"year of no date", year("", "CodEsercizio"), "none"},
      {"year of Null", year(Null, "CodEsercizio"), "none"},
      {"date of a year", year(Day("2024-02-01"), "DataFine"), "31/12/2024"},
      {"Null of a year", year(Day("2024-02-01"), "ContabilitaChiusa"), "Null"},
      {"customer", person(1, 1, "SoggettoSplitPayment"), "True"},
      {"Null of a customer", person(1, 1, "Infragruppo"), "False"},
      {"no customer", person(1, 2, "SoggettoSplitPayment"), "False"},
      {"supplier", person(2, 1, "Infragruppo"), "True"},
      {"neither customer nor supplier", person(3, 1, "Infragruppo"), "13: *"},
      {"sum", sum("Avere,Dare ", "DARE"), "Kal_COGCheck 6: *"},
      {"sum of one column", sum(" Dare", "Dare"), "-2.9999"},
      {"sum not asked for", sum("Dare", "Avere"), "3265: No total was asked for Avere"},
      {"sum of no column", sum("Dare, Altro", "Dare"), "ADODB.Recordset 3265: *"},
  };
  std::ranges::for_each(cases, &Case::Check);
}

// One state of the books inside a Reading, the newest outside. The VAT codes, which are kept, and
// the books, which are not, behave alike.
TEST_F(CompanyTest, ReadsOneStateOfTheBooks) {
  for (const std::string mode : {"DELETE", "WAL"}) {
    ASSERT_EQ(Run(writer_, "PRAGMA journal_mode = " + mode), SQLITE_OK);
    Write("DELETE FROM STDIva; DELETE FROM COGPrimeNoteTeste");
    SqliteEngine engine(file_);
    const auto state = [&] {
      return KeptAnswer<kCode>(engine, {"x"}).substr(0, 1) + KeptAnswer<kTeste>(engine);
    };
    const auto change = [&](const std::string& id) {
      return Run(writer_,
                 "BEGIN; INSERT INTO STDIva (CodIva) VALUES ('x');"
                 "INSERT INTO COGPrimeNoteTeste (IdPrimaNota) VALUES (" +
                     id + "); COMMIT");
    };
    EXPECT_EQ(state(), "") << mode;
    engine.BeginReading({});
    EXPECT_EQ(state(), "") << mode;
    // Without a log of its own the writer has to wait for the reader.
    EXPECT_EQ(change("1"), mode == "WAL" ? SQLITE_OK : SQLITE_BUSY);
    EXPECT_EQ(state(), "") << mode;
    engine.EndReading();
    if (sqlite3_get_autocommit(writer_) == 0) {
      EXPECT_EQ(Run(writer_, "COMMIT"), SQLITE_OK);
    }
    EXPECT_EQ(state(), "x1") << mode;
  }
}

// Checking a company with a write-ahead log leaves its folder as it was.
TEST_F(CompanyTest, RemovesTheFilesOfAnEmptyLog) {
  ASSERT_EQ(Run(writer_, "PRAGMA journal_mode = WAL"), SQLITE_OK);
  sqlite3_close(std::exchange(writer_, nullptr));
  const std::string before = Bytes(file_);
  {
    const SqliteEngine first(file_);
    const SqliteEngine second(file_);
    EXPECT_EQ(Files(), 3);
  }
  EXPECT_EQ(Files(), 1);
  EXPECT_EQ(Bytes(file_), before);
}

sqlite3* opened = nullptr;
int Remember(sqlite3* connection, char** /*error*/, const sqlite3_api_routines* /*api*/) {
  opened = connection;
  return SQLITE_OK;
}

// It only reads, asks for the version before the answer that it keeps under it, and ends what it
// began. A writer comes as soon as the version is asked for, and a COMMIT fails.
TEST_F(CompanyTest, KeepsItsConnectionClean) {
  sqlite3_auto_extension(reinterpret_cast<void (*)()>(Remember));
  SqliteEngine engine(file_);
  sqlite3_reset_auto_extension();
  EXPECT_EQ(sqlite3_db_readonly(opened, "main"), 1);
  const auto disturb = [](unsigned /*event*/, void* writer, void* statement, void* /*text*/) {
    const std::string_view sql = sqlite3_sql(static_cast<sqlite3_stmt*>(statement));
    if (sql == "COMMIT") sqlite3_interrupt(opened);
    return sql != "PRAGMA data_version"
               ? 0
               : Run(static_cast<sqlite3*>(writer), "INSERT INTO STDIva (CodIva) VALUES ('x')");
  };
  sqlite3_trace_v2(opened, SQLITE_TRACE_STMT, disturb, writer_);
  engine.BeginReading({});
  engine.EndReading();
  EXPECT_NE(sqlite3_get_autocommit(opened), 0);
  EXPECT_EQ(KeptAnswer<kCodes>(engine).substr(0, 1), "x");
  sqlite3_trace_v2(opened, 0, nullptr, nullptr);
  SqliteEngine fresh(file_);
  EXPECT_EQ(KeptAnswer<kCodes>(engine), KeptAnswer<kCodes>(fresh));
}

// What an engine has kept of small tables and of their columns, seen through one that keeps nothing
// yet.
TEST_F(CompanyTest, KeptAnswersFollowEveryChange) {
  static constexpr Selection kLines = From("*", "COGPrimeNoteRCont");
  Write("DELETE FROM STDIva; DELETE FROM STDDichiarazioniIntento");
  Write("PRAGMA ignore_check_constraints = ON");
  const auto answers = [](Engine& engine) {
    return KeptAnswer<kCodes>(engine) + "|" + KeptAnswer<kCode>(engine, {"22"}) + "|" +
           KeptAnswer<kDeclarations>(engine) + "|" + KeptAnswer<kLines>(engine);
  };
  SqliteEngine engine(file_);
  std::string before = answers(engine);
  for (const std::string change : {
           ("INSERT INTO STDIva VALUES ('10', NULL, 0, 0.5, 1, 2), ('22', '', 0, 0, 0, 0), "
            "('4', 'A', -3, 1e300, NULL, NULL)"),
           ("INSERT INTO STDDichiarazioniIntento VALUES (1, 7, 2, 0, '10', '1.5', -2, "
            "'2024-01-31', NULL, 0), (2, NULL, NULL, 1, NULL, 1, 1.25, NULL, '2024-12-31 10:00', "
            "1)"),
           "UPDATE STDIva SET CodIvaAutoFtReverse = '' WHERE CodIva = '10'",
           "UPDATE STDIva SET PercIvaACosto = 0.25 WHERE CodIva = '22'",
           "UPDATE STDIva SET AmmessaFiscalitaBL = 0 WHERE CodIva = '10'",
           "UPDATE STDIva SET AmmessaFiscalitaBL = 'si' WHERE CodIva = '10'",
           "UPDATE STDIva SET AmmessaFiscalitaBL = -1 WHERE CodIva = '10'",
           "UPDATE STDIva SET TipoIntra = 40000 WHERE CodIva = '4'",
           "UPDATE STDIva SET TipoIntra = -1 WHERE CodIva = '4'",
           "UPDATE STDIva SET CodIva = x'3232' WHERE CodIva = '22'",
           "UPDATE STDIva SET CodIva = '22' WHERE CodIva = x'3232'",
           "INSERT INTO STDIva VALUES ('5', NULL, 0, 0, 0, 0)",
           "UPDATE STDDichiarazioniIntento SET Importo = '-2.0001' WHERE IdDichiarazione = 1",
           "UPDATE STDDichiarazioniIntento SET ImportoPlafond = NULL WHERE IdDichiarazione = 1",
           "UPDATE STDDichiarazioniIntento SET IdAnagrafica = 8 WHERE IdDichiarazione = 1",
           ("UPDATE STDDichiarazioniIntento SET DataInizioValidita = '2024-02-29' "
            "WHERE IdDichiarazione = 1"),
           ("UPDATE STDDichiarazioniIntento SET DataFineValidita = '31.12.24' "
            "WHERE IdDichiarazione = 2"),
           "ALTER TABLE STDIva ADD COLUMN Altra TEXT",
           "ALTER TABLE STDIva DROP COLUMN TipoIntra",
           "INSERT INTO COGPrimeNoteRCont VALUES (1, 2)",
           "ALTER TABLE COGPrimeNoteRCont ADD COLUMN Altra TEXT",
           "DELETE FROM STDDichiarazioniIntento",
           "DELETE FROM STDIva",
       }) {
    Write(change);
    SqliteEngine fresh(file_);
    const std::string now = answers(fresh);
    EXPECT_NE(now, before) << change;
    EXPECT_EQ(answers(engine), now) << change;
    EXPECT_EQ(answers(engine), now) << change << ", asked again";
    before = now;
  }
}

TEST_P(EngineTest, TemporaryTablesComeAndGo) {
  static constexpr Selection kAll = From("*", "? as Chiu");
  static constexpr Selection kPaired = From("Chiu.IdScadenza", "? as Chiu")
                                           .JoinWith(JoinKind::Inner, "? as Ape")
                                           .On("Chiu.IdScadenza", "Ape.IdScadenza")
                                           .WhereEqual("Chiu.TipoRata");
  RowTable rows({{"IdScadenza", DataType::Integer},
                 {"TipoRata", DataType::SmallInt},
                 {"DataScadenza", DataType::Date},
                 {"ImportoDare", DataType::Currency}});
  rows.AddRow({1, std::int16_t{0}, Day("2024-05-31"), Currency::FromUnits(INT64_MIN)});
  rows.AddRow({2, std::int16_t{1}, Null, Null});
  RowTable other({{"IdScadenza", DataType::VarWChar}});
  other.AddRow({"testo"});
  RowTable twice({{"A", DataType::Integer}, {"a", DataType::Integer}});
  const std::unique_ptr<Engine> own = Open();
  Engine& engine = *own;
  // A file may lack a table that an entry puts one of its own in the place of.
  if (IsFile()) Write("DROP TABLE COGBollati");
  const std::string before = Bytes(file_);
  const auto make = [&](const std::string& name, const RowTable& content) {
    return AnswerOrError([&] { return engine.MakeTemporaryTable(name, content), "made"; });
  };
  for (const std::string name :
       {IsFile() ? "COGBollati" : "COGAltra", "TmpScadenze", "x\"; DROP TABLE COGScadenze; --",
        "a as b", "'", "[x]", "1 = 1", ""}) {
    engine.BeginReading({});
    const Case cases[] = {
        {"made", make(name, rows), "made"},
        {"its rows", KeptAnswer<kAll>(engine, {}, name),
         "1 0 31/05/2024 -922337203685477.5808;2 1 Null Null"},
        {"joined with itself", KeptAnswer<kPaired>(engine, {1}, name), "2"},
        {"made again", make(name, rows), "-2147217900: There is a table*"},
        {"dropped", (engine.DropTemporaryTable(name), KeptAnswer<kAll>(engine, {}, name)),
         "-2147217865: There is no table*"},
        {"with other columns", (make(name, other), KeptAnswer<kAll>(engine, {}, name)), "testo"},
    };
    std::ranges::for_each(cases, &Case::Check);
    engine.DropTemporaryTable(name);
    engine.EndReading();
    EXPECT_FALSE(engine.HasTable(name)) << name;
  }
  EXPECT_EQ(IsFile() ? make("Doppia", twice).substr(0, 11) : "-2147467259", "-2147467259");
  EXPECT_FALSE(engine.HasTable("Doppia"));
  EXPECT_EQ(make("cogscadenze", rows).substr(0, 11), "-2147217900");
  EXPECT_TRUE(engine.HasTable("cogscadenze"));
  EXPECT_EQ(Bytes(file_), before);
  EXPECT_EQ(Files(), 1);
}

TEST_F(CompanyTest, FilesThatAreNoCompany) {
  std::ofstream(Path("testo.db")) << std::string(2000, 'x');
  std::ofstream(Path("vuoto.db")).flush();
  std::ofstream(Path("mozzo.db"), std::ios::binary) << Bytes(file_).substr(0, 5000);
  fs::create_directory(Path("cartella"));
  for (const char* copy :
       {"futuro.db", "vista.db", "senza tavola.db", "conti.db", "lungo.db", "altra copia.db"}) {
    fs::copy_file(file_, Path(copy));
  }
  for (const auto& [name, sql] : {std::pair("altro.db", "CREATE TABLE T (A)"),
                                  std::pair("futuro.db", "PRAGMA user_version = 99"),
                                  std::pair("senza tavola.db", "DROP TABLE KalDizionario"),
                                  std::pair("conti.db",
                                            "DROP TABLE STDPianoDeiConti; CREATE TABLE "
                                            "STDPianoDeiConti (CodConto NUMERIC, TipoConto INT)"),
                                  std::pair("lungo.db",
                                            "INSERT INTO STDIva (CodIva) VALUES "
                                            "(CAST(zeroblob(17 << 20) AS TEXT))"),
                                  std::pair("vista.db",
                                            "ALTER TABLE COGScadenze RENAME TO S; "
                                            "CREATE VIEW cogScadenze AS SELECT * FROM S")}) {
    sqlite3* other = Connect(Path(name));
    EXPECT_EQ(Run(other, sql), SQLITE_OK);
    sqlite3_close(other);
  }
  const auto open = [](const std::string& path, std::string_view language = "it") {
    return AnswerOrError([&] { return Company(path, language), "opened"; });
  };
  const auto failure = [&](const char* name, const char* what) {
    return Case{name, open(Path(name)), "-2147467259: " + Path(name) + what};
  };
  SqliteEngine impatient(file_, {.forLock = std::chrono::milliseconds(1)});
  const auto ask = [&] { return KeptAnswer<kCode>(impatient, {"?"}); };
  const auto begin = [&] {
    return AnswerOrError([&] { return impatient.BeginReading({}), "begun"; });
  };
  const std::string before = Bytes(file_);
  const auto create = [](const std::string& path) {
    return AnswerOrError([&] { return CreateCompany(path, true), "made"; });
  };
  const auto beginOverAnother = [&] {
    impatient.EndReading();
    fs::rename(Path("altra copia.db"), file_);
    std::this_thread::sleep_for(std::chrono::milliseconds(150));  // it looks now and then
    return begin();
  };
  SqliteEngine tooLong(Path("lungo.db"));
  const std::string askAll = KeptAnswer<kCodes>(tooLong);
  Write(
      "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n LIMIT 60000) "
      "INSERT INTO COGPrimeNoteRCont SELECT i, NULL FROM n");
  SqliteEngine hurried(file_, {.forAnswer = std::chrono::milliseconds(0)});
  const std::string endless = Answer(hurried, From("IdPrimaNota", "COGPrimeNoteRCont"));
  Write("DELETE FROM COGPrimeNoteRCont");
  SqliteEngine patient(file_, {.forLock = std::chrono::milliseconds(300)});
  const std::string isLocked = "-2147467259: " + file_ + " is locked by another program";
  Write("BEGIN EXCLUSIVE; DELETE FROM KalMessaggi");
  fs::copy_file(file_, Path("a metà.db"));
  fs::copy_file(file_ + "-journal", Path("a metà.db-journal"));
  std::ofstream(Path("a metà con log.db"))
      << std::string(before).replace(18, 2, "\2\2");  // it has a log
  std::ofstream(Path("a metà con log.db-wal")) << "log";
  fs::create_symlink("/", Path("a metà con log.db-shm"));  // nothing can be made in its place
  const std::string asked = ask();
  const std::string begun = begin();
  // The first question waits, the others know.
  const auto started = std::chrono::steady_clock::now();
  for (int i = 0; i < 20; ++i) (void)KeptAnswer<kCode>(patient, {"?"});
  EXPECT_LT(std::chrono::steady_clock::now() - started, std::chrono::seconds(3));
  Write("ROLLBACK");
  const Case cases[] = {
      {"manca.db", open(Path("manca.db")), "-2147467259: There is no file " + Path("manca.db")},
      failure("testo.db", " is no database"),
      failure("vuoto.db", " is no company of this program"),
      failure("mozzo.db", ": database disk image is malformed"),
      failure("cartella", " is a folder"),
      failure("altro.db", " is no company of this program"),
      failure("futuro.db", " was made by a later version of this program"),
      failure("a metà.db", " was left in the middle of a change by a program that broke off (*"),
      failure("a metà con log.db", " was left with changes that are not in it yet (*"),
      {"vista.db", open(Path("vista.db")),
       "-2147467259: In " + Path("vista.db") + " cogScadenze is a view, not a table"},
      {"senza tavola.db", open(Path("senza tavola.db")),
       "-2147217865: There is no table 'KalDizionario' in " + Path("senza tavola.db")},
      {"conti.db", open(Path("conti.db")),
       "13: In " + Path("conti.db") + " the column STDPianoDeiConti.CodConto is declared NUMERIC*"},
      {"lungo.db", askAll, "-2147467259: " + Path("lungo.db") + ": a value is longer than 16777*"},
      {"an endless answer", endless, "-2147467259: " + file_ + " took longer than 0 ms to answer*"},
      {"language", open(file_, "fr"), "13: There are no messages in the language 'fr'"},
      {"asked while locked", asked, isLocked},
      {"begun while locked", begun, isLocked},
      {"begun afterwards", begin(), "begun"},
      {"asked afterwards", ask(), ""},
      {"made over a company", create(file_), "-2147467259: There is a file " + file_ + " already"},
      {"made in no folder", create(Path("manca/x.db")), "-2147467259: *"},
      {"begun over another file", beginOverAnother(),
       "-2147467259: " + file_ + " was replaced or removed while it was open: open the comp*"},
  };
  std::ranges::for_each(cases, &Case::Check);
  EXPECT_FALSE(fs::exists(Path("manca.db")));
  EXPECT_EQ(Bytes(file_), before);
}

// One inside another shows what that one shows; what came meanwhile is seen behind both.
TEST_F(CompanyTest, ReadingsInsideEachOtherShowOneState) {
  Write("PRAGMA journal_mode = WAL");
  Company company(file_);
  const auto codes = [&] {
    return DataAccess(company.Siblings()).Open(Query::Of<kCodes>({}))->RecordCount();
  };
  Write("DELETE FROM STDIva");
  {
    const Company::Reading outer(company);
    EXPECT_EQ(codes(), 0);
    Write("INSERT INTO STDIva (CodIva) VALUES ('1')");
    {
      const Company::Reading inner(company);
      EXPECT_EQ(codes(), 0);
    }
    EXPECT_EQ(codes(), 0);
  }
  EXPECT_EQ(codes(), 1);
}

// One damage a row, and what is said of it: kind, table, column, row.
TEST_F(CompanyTest, VerifyFindsEveryFlaw) {
  const auto flaws = [&] {
    std::string all;
    Verify(file_, [&](const Flaw& flaw) {
      all += std::to_string(static_cast<int>(flaw.kind)) + " " + flaw.table + "." + flaw.column +
             " " + std::to_string(flaw.row) + ";";
    });
    return all;
  };
  Write(
      "INSERT INTO STDEsercizi VALUES (1, '2023-01-01', '2023-12-31', 0, 0), "
      "(2, '2024-01-01', '2024-12-31', 0, 0), (3, NULL, NULL, 0, 0), (4, NULL, NULL, 0, 0); "
      "INSERT INTO STDIva (CodIva) VALUES ('10'), (NULL), (NULL)");
  EXPECT_EQ(flaws(), "");
  const std::string sound = Bytes(file_);
  const std::pair<std::string, std::string> rows[] = {
      {"DROP TABLE COGBollati", "1 COGBollati. 0;"},
      {"ALTER TABLE COGBollati RENAME TO B; CREATE VIEW COGBollati AS SELECT * FROM B",
       "2 COGBollati. 0;"},
      {"ALTER TABLE COGBollati DROP COLUMN RiepilogoStampato", "3 COGBollati.RiepilogoStampato 0;"},
      {"DROP TABLE STDTipologiePagamento; CREATE TABLE STDTipologiePagamento (IdTipologiaPagamento "
       "TEXT, Effetto BOOLEAN)",
       "4 STDTipologiePagamento.IdTipologiaPagamento 0;5 STDTipologiePagamento."
       "IdTipologiaPagamento 0;"},
      {"DROP INDEX STDIva_CodIva", "5 STDIva.CodIva 0;"},
      {"DROP INDEX STDIva_CodIva; CREATE INDEX Altro ON STDIva (CODIVA, TipoIntra)", ""},
      {"INSERT INTO STDIva (CodIva, TipoIntra) VALUES ('4', '1.5'), ('5', 'x')",
       "6 STDIva.TipoIntra 4;6 STDIva.TipoIntra 5;"},
      {"UPDATE STDEsercizi SET DataFine = '31/12/2023' WHERE CodEsercizio = 1",
       "6 STDEsercizi.DataFine 1;10 STDEsercizi.CodEsercizio 0;"},
      {"INSERT INTO STDParametriAzienda VALUES ('BloccoInviatoSDI', 'forse'), "
       "('DataInizioSplitPayment', '1/1/2015'), ('CodDivisaBase', 'forse')",
       "7 STDParametriAzienda.Valore 1;7 STDParametriAzienda.Valore 2;"},
      {"INSERT INTO STDIva (CodIva) VALUES ('10')", "8 STDIva.CodIva 0;"},
      {"UPDATE STDEsercizi SET DataFine = '2022-12-31' WHERE CodEsercizio = 1",
       "9 STDEsercizi.DataInizio,DataFine 0;"},
      {"UPDATE STDEsercizi SET DataInizio = '2023-12-31' WHERE CodEsercizio = 2",
       "10 STDEsercizi.CodEsercizio 0;"},
      {"UPDATE KalMessaggi SET Testo = '' WHERE Codice = 10492 AND Lingua = 'en'",
       "11 KalMessaggi.Testo 0;"},
  };
  for (const auto& [sql, expected] : rows) {
    WriteUnchecked(sql);
    EXPECT_EQ(flaws(), expected) << sql;
    sqlite3_close(writer_);
    std::ofstream(file_, std::ios::binary) << sound;
    writer_ = Connect(file_);
  }
  // A page in the middle.
  std::string damaged = sound;
  std::fill_n(damaged.begin() + static_cast<std::ptrdiff_t>(damaged.size() / 2), 4096, 'x');
  std::ofstream(file_, std::ios::binary) << damaged;
  EXPECT_EQ(flaws().substr(0, 2), "0 ");
}

}  // namespace
}  // namespace kal::company
