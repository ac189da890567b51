// The embedded company: selections, storage, sibling answers, states of the file.

#include "company/Company.h"

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <functional>
#include <random>
#include <set>
#include <sstream>

#include "company/Database.h"
#include "company/QuerySql.h"
#include "company/Schema.h"

namespace kal::company {
namespace {

namespace fs = std::filesystem;
using enum CompareWith;
using Build = std::function<void(QueryBuilder&)>;
using Where = std::vector<QueryBuilder::Comparison>;

Date Day(std::string_view iso) { return Date::FromIso(iso).value(); }

// "Null", or the value as automation writes it, so that the type shows.
std::string Show(const Variant& value) { return value.IsNull() ? "Null" : CStr(value); }

// The rows' fields; rows are separated by semicolons.
std::string Show(const RecordsetRef& set, std::size_t fields) {
  std::string text;
  for (; !set->Eof(); set->MoveNext()) {
    text += text.empty() ? "" : ";";
    for (std::size_t i = 0; i < fields; ++i) {
      text += (i == 0 ? "" : " ") + Show(set->Fields(i).Value());
    }
  }
  return text;
}

// The answer, or "number: text" of the error raised, with the source where it is another's.
std::string Outcome(const std::function<std::string()>& question) {
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
    fs::create_directories(folder_);
    CreateCompany(file_, false);
    writer_ = Connect(file_);
  }
  ~CompanyTest() override {
    sqlite3_close(writer_);
    fs::remove_all(folder_);
  }

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
  [[nodiscard]] std::string Path(const std::string& name) const {
    return (folder_ / name).string();
  }
  [[nodiscard]] std::ptrdiff_t Files() const {
    return std::distance(fs::directory_iterator(folder_), fs::directory_iterator());
  }
  static std::string Bytes(const std::string& path) {
    std::ostringstream bytes;
    bytes << std::ifstream(path, std::ios::binary).rdbuf();
    return bytes.str();
  }
  static RecordsetRef Open(Company& company, const Build& build) {
    QueryBuilder query;
    build(query);
    return company.Siblings().CreateDataAccess()->Open(query);
  }
  static std::string Answer(Company& company, const Build& build, std::size_t fields = 1) {
    return Outcome([&] { return Show(Open(company, build), fields); });
  }

  fs::path folder_ =
      fs::temp_directory_path() / ("kal-company-" + std::to_string(std::random_device()()));
  std::string file_ = Path("Libri à.db");
  sqlite3* writer_ = nullptr;
};

Build Selection(const std::string& columns, const std::string& table, const Where& where = {},
                const std::string& literal = "") {
  return [=](QueryBuilder& q) {
    q.Option(11).Select(columns).From(table);
    for (const auto& [left, operation, value] : where) {
      q.Where(left, operation, value);
    }
    if (!literal.empty()) {
      q.WhereLiteral(literal);
    }
  };
}
Build Teste(const Where& where, const std::string& literal = "") {
  return Selection("IdPrimaNota", "COGPrimeNoteTeste", where, literal);
}
Build Joined(const std::string& columns, const std::string& table, JoinKind kind,
             const std::string& other, const std::string& left, const std::string& right,
             const Where& where = {}) {
  return [=](QueryBuilder& q) {
    q.JoinWith(kind, other).On(left, right);
    Selection(columns, table, where)(q);
  };
}

const Build kInRemittance = [](QueryBuilder& q) {
  q.Select("COGSCadenzeApertura.IdScadenza").From("COGPrimeNoteRCont");
  q.JoinWith(JoinKind::Inner, "COGScadenze AS COGSCadenzeApertura");
  q.On("COGPrimeNoteRCont.IDScadenza", "COGSCadenzeApertura.IdScadenza");
  q.WhereEqual("COGSCadenzeApertura.TipoRata", 0).WhereEqual("COGPrimeNoteRCont.IDPrimaNota", 1);
  q.WhereLiteral("Not COGSCadenzeApertura.IdDistinta Is Null");
};
const Build kClosedInRemittance = [](QueryBuilder& q) {
  q.Select("COGSCadenzeChiusura.IdScadenza").From("COGPrimeNoteRCont");
  q.JoinWith(JoinKind::Inner, "COGScadenze AS COGSCadenzeApertura");
  q.On("COGPrimeNoteRCont.IDScadenza", "COGSCadenzeApertura.IdScadenza");
  q.JoinWith(JoinKind::LeftOuter, "COGScadenze AS COGSCadenzeChiusura");
  q.On("COGSCadenzeApertura.IDScadenza", "COGSCadenzeChiusura.LinkApertura");
  q.On("COGSCadenzeApertura.NrRata", "COGSCadenzeChiusura.RataApertura");
  q.OnAnyOf({{{"COGScadenzeChiusura.TipoDocumento", Equal, 23}},
             {{"COGScadenzeChiusura.TipoDocumento", Equal, 24}}});
  q.WhereEqual("COGSCadenzeApertura.TipoRata", 0).WhereEqual("COGPrimeNoteRCont.IDPrimaNota", 1);
  q.WhereLiteral("isnull(COGScadenzeChiusura.IdDistinta,0) <> 0");
};
const Build kSplitPayment = [](QueryBuilder& q) {
  q.Select("IdPrimaNota, SegnoIVA").Select("Splitpayment, COGPrimeNoteTeste.TipoRegIva");
  q.From("COGPrimeNoteTeste").JoinWith(JoinKind::Inner, "COGCausaliContabili");
  q.On("COGPrimeNoteTeste.CodCausale", "COGCausaliContabili.CodCausale");
  q.JoinWith(JoinKind::LeftOuter, "COGNumerazioniIva");
  q.On("COGPrimeNoteTeste.SezionaleIva", "COGNumerazioniIva.SezionaleIva");
  q.On("Year(COGPrimeNoteTeste.DataRegistrazione)", "COGNumerazioniIva.Anno");
  q.WhereEqual("COGPrimeNoteTeste.IdPrimaNota", 1);
};
Build ProtocolOrder(std::int32_t protocol, Date day, bool onlyFirst) {
  return [=](QueryBuilder& q) {
    if (onlyFirst) {
      q.OnlyFirst();
    }
    q.Select("Protocollo, DataRegistrazione, IdPrimaNota").From("COGPrimeNoteTeste");
    q.Where("IdPrimaNota", NotEqual, 5).WhereEqual("Year(DataRegistrazione)", "2024");
    q.WhereEqual("TipoRegIva", 1).WhereEqual("SezionaleIva", std::int16_t{1});
    q.WhereEqual("IsNull(Provvisoria,0)", 0);
    q.WhereAnyOf({{{"Protocollo", Greater, protocol}, {"DataRegistrazione", Less, day}},
                  {{"Protocollo", Less, protocol}, {"DataRegistrazione", Greater, day}},
                  {{"Protocollo", Equal, protocol}}});
  };
}
const Build kOverlapping = [](QueryBuilder& q) {
  Teste({})(q);
  q.WhereAnyOf({{{"IdPrimaNota", Equal, 2}}, {{"CodCausale", Equal, "ft"}}, {}});
};

TEST_F(CompanyTest, SelectionsAnswer) {
  Write(R"(
    INSERT INTO COGPrimeNoteTeste (IdPrimaNota, CodCausale, NumeroDocumento, SegnoIva, TipoRegIva,
        SezionaleIva, DataRegistrazione, DataDocumento, Provvisoria, TotDocumento, Fixing)
      VALUES (1, 'FT', 'A/1', 1, 2, 3, '2024-03-15', NULL, NULL, '10.50', 1.5),
        (2, 'ft', 'a/1', NULL, 1, 3, '2023-12-31', '2023-12-30', 1, 0.1, NULL),
        (2, 'ft', NULL, NULL, 1, 3, NULL, '2024-01-01', -1, NULL, NULL);
    INSERT INTO COGCausaliContabili (CodCausale, SegnoIva) VALUES ('FT', -1);
    INSERT INTO COGNumerazioniIva
        (IdNumerazione, IdSezAutofatture, Anno, SezionaleIva, SplitPayment)
      VALUES (1, 2, 2024, 3, 1), (2, NULL, 2024, 9, 0);
    INSERT INTO COGPrimeNoteRCont VALUES (1, 10), (1, 11), (2, 12);
    INSERT INTO COGScadenze
        (IdScadenza, NrRata, TipoRata, LinkApertura, RataApertura, TipoDocumento, IdDistinta)
      VALUES (10, 1, 0, NULL, NULL, NULL, 7), (11, 1, 0, NULL, NULL, NULL, NULL),
        (11, 2, 1, NULL, NULL, NULL, 7), (12, 1, 0, NULL, NULL, NULL, 7), (20, 1, 1, 10, 1, 23, 8),
        (21, 1, 1, 11, 1, 24, 0), (22, 1, 1, 11, 1, 25, 8), (23, 1, 1, 11, 9, 24, 8);
    INSERT INTO COGRateiRisconti VALUES (4, 1);
    INSERT INTO COGRateiRiscontiContabilizzati VALUES (4), (4);
    CREATE TABLE "as as as" (A AMOUNT_TEXT, B, C SMALLINT);
    INSERT INTO "as as as" VALUES ('1.25', 'x', 3);)");
  Company company(file_);
  const auto teste = [&](const Where& where, const char* literal = "") {
    return Answer(company, Teste(where, literal));
  };
  const auto from = [&](const char* columns, const char* table, std::size_t fields = 1) {
    return Answer(company, Selection(columns, table), fields);
  };
  const auto joined = [&](std::size_t fields, auto... parts) {
    return Answer(company, Joined(parts...), fields);
  };
  const auto outer = [&](const char* table) {
    return joined(2, "IdScadenza, T.IdPrimaNota", "COGPrimeNoteRCont", JoinKind::LeftOuter, table,
                  "T.IdPrimaNota", "COGPrimeNoteRCont.IdPrimaNota",
                  Where{{"IdScadenza", Equal, 12}});
  };
  const char* types = "idprimanota,NumeroDocumento , DataRegistrazione,Intra,TotDocumento, Fixing";
  for (int run = 0; run < 2; ++run) {  // at first prepared, then from the cache
    const Case cases[] = {
        {"types",
         Answer(company, Selection(types, "cogprimenoteteste", {{"Fixing", Equal, 1.5}}), 6),
         "1 A/1 15/03/2024 Null 10.5 1.5"},
        {"letter case of texts counts", teste({{"CodCausale", Equal, "ft"}}), "2;2"},
        {"nothing equals Null", teste({{"NumeroDocumento", Equal, Null}}), ""},
        {"nothing differs from Null", teste({{"IdPrimaNota", NotEqual, Null}}), ""},
        {"Null does not differ", teste({{"NumeroDocumento", NotEqual, "A/1"}}), "2"},
        {"default for Null", teste({{"ISNULL( provvisoria ,0)", Equal, 0}}), "1"},
        {"True is 1 and -1", teste({{"Provvisoria", Equal, true}}), "2;2"},
        {"1 is 1 alone", teste({{"Provvisoria", Equal, 1}}), "2"},
        {"Null is not False", teste({{"Provvisoria", Equal, false}}), ""},
        {"year as text", teste({{"Year(DataDocumento)", Equal, "2024"}}), "2"},
        {"year as number", teste({{"Year(DataDocumento)", LessOrEqual, 2023}}), "2"},
        {"dates", teste({{"DataDocumento", GreaterOrEqual, Day("2024-01-01")}}), "2"},
        {"the empty date is before all", teste({{"DataDocumento", Less, ""}}), ""},
        {"literal", teste({}, "DataIva Is Null And(IdPrimaNota=1 Or CodCausale = 'it''s')"), "1"},
        {"And before Or, inside only",
         teste({{"TipoRegIva", Equal, 2}}, "IdPrimaNota = 1 Or IdPrimaNota = 2 And Intra = 7"),
         "1"},
        {"Not of Not", teste({}, "Not Not DataRegistrazione Is Not Null"), "1;2"},
        {"alternatives that overlap", Answer(company, kOverlapping), "1;2;2"},
        {"no alternatives", Answer(company, [](auto& q) { Teste({})(q), q.WhereAnyOf({}); }), ""},
        {"in a remittance", Answer(company, kInRemittance), "10"},
        {"closed in a remittance", Answer(company, kClosedInRemittance), "20"},
        {"first table that has the column", Answer(company, kSplitPayment, 4), "1 1 True 2"},
        {"joined with itself",
         joined(2, "COGNumerazioniIva.SezionaleIva,Autofattura.SezionaleIva", "COGNumerazioniIva",
                JoinKind::Inner, "COGNumerazioniIva as Autofattura",
                "COGNumerazioniIva.IdSezAutofatture", "Autofattura.IdNumerazione"),
         "3 9"},
        {"all columns of all tables",
         joined(3, "*", "COGRateiRisconti", JoinKind::Inner, "COGRateiRiscontiContabilizzati",
                "COGRateiRisconti.IdRateoRisconto",
                "COGRateiRiscontiContabilizzati.IdRateoRisconto", Where{{"IdDoc", Equal, 1}}),
         "4 1 4;4 1 4"},
        {"outer join", outer("COGPrimeNoteTeste AS T"), "12 2;12 2"},
        {"outer join keeps the left side", outer("COGPrimeNoteRiferimenti AS T"), "12 Null"},
        {"a table of others, oddly named", from("*", "as as as as z", 3), "1.25 x 3"},
        {"unknown column", teste({{"Nessuna", Equal, 1}}),
         "-2147217900: There is no column 'Nessuna' in COGPrimeNoteTeste"},
        {"behind an alias", from("z.X", "STDIva as Z"), "-2147217900: There is no column 'X' in z"},
        {"hidden by its alias", from("STDIva.CodIva", "STDIva as z"),
         "-2147217865: The selection has no table 'STDIva'"},
        {"no table", from("*", "STDIva; DROP TABLE STDIva"),
         "-2147217865: There is no table 'STDIva; DROP TABLE STDIva' in " + file_},
        {"no columns", from("", "STDIva"),
         "-2147217900: The selection from STDIva names no colum*"},
        {"other function", teste({}, "length(Partita) = 2"),
         "-2147217900: There is no column 'len*"},
        {"two statements", teste({}, "Intra = 1; DELETE FROM STDIva"),
         "-2147217900: Can't read 'Intra = 1; DELETE FROM STDIva' from '; DELETE FROM STDIva' on"},
        {"open text", teste({}, "CodCausale = 'x"), "-2147217900: Can't read*"},
        {"condition on the left", teste({{"1 = 1 Or Intra", Equal, 1}}),
         "-2147217900: Can't read*"},
        {"amounts have no order in texts", teste({{"TotDocumento", Less, 5}}),
         "445: Amounts can't*"},
    };
    std::ranges::for_each(cases, &Case::Check);
  }
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
  Company company(file_);
  for (const auto& row : kRows) {
    Write("DELETE FROM COGPrimeNoteTeste; INSERT INTO COGPrimeNoteTeste (IdPrimaNota, " +
          std::string(row.column) + ") VALUES (1, " + row.stored + ")");
    const std::string answer =
        Answer(company, Selection(row.column, "COGPrimeNoteTeste", {{"IdPrimaNota", Equal, 1}}));
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

// Every conflict, and nothing else, whatever branch and index answers; against a plain walk.
TEST_F(CompanyTest, AlternativesAgreeWithAPlainWalk) {
  struct Entry {
    std::int32_t id;
    int protocol;
    Date day;
  };
  std::mt19937 random(7);
  const auto number = [&](unsigned limit) { return static_cast<int>(random() % limit); };
  std::vector<Entry> entries;  // those that count
  const char* const provvisoria[] = {"1", "0", "NULL"};
  for (std::int32_t id = 1; id <= 120; ++id) {
    const int protocol = 1 + number(30);
    const Date day = Date::FromYmd(2024 - (number(9) == 0), 6, 1 + number(28)).value();
    const int section = 1 + (number(9) == 0);
    const bool provisional = number(4) == 0;
    if (id != 5 && day.Year() == 2024 && section == 1 && !provisional) {
      entries.push_back({id, protocol, day});
    }
    Write(
        "INSERT INTO COGPrimeNoteTeste (IdPrimaNota, Protocollo, DataRegistrazione, TipoRegIva, "
        "SezionaleIva, Provvisoria) VALUES (" +
        std::to_string(id) + "," + std::to_string(protocol) + ",'" + day.ToIso() + "',1," +
        std::to_string(section) + "," + provvisoria[provisional ? 0 : 1 + id % 2] + ")");
  }
  Company company(file_);
  for (int protocol = 0; protocol <= 31; protocol += 3) {
    for (int dayOfMonth = 1; dayOfMonth <= 28; dayOfMonth += 3) {
      const Date day = Date::FromYmd(2024, 6, dayOfMonth).value();
      std::multiset<std::int32_t> expected;
      for (const Entry& entry : entries) {
        if (entry.protocol == protocol || (entry.protocol > protocol && entry.day < day) ||
            (entry.protocol < protocol && entry.day > day)) {
          expected.insert(entry.id);
        }
      }
      std::multiset<std::int32_t> found;
      const RecordsetRef set = Open(company, ProtocolOrder(protocol, day, false));
      for (; !set->Eof(); set->MoveNext()) {
        found.insert(CLng(set->Fields("IdPrimaNota").Value()));
      }
      EXPECT_EQ(found, expected) << "protocol " << protocol << " on " << day.ToIso();
      const RecordsetRef first = Open(company, ProtocolOrder(protocol, day, true));
      EXPECT_EQ(first->RecordCount(), expected.empty() ? 0 : 1);
      EXPECT_TRUE(first->Eof() || expected.contains(CLng(first->Fields("IdPrimaNota").Value())))
          << "protocol " << protocol << " on " << day.ToIso();
    }
  }
}

TEST_F(CompanyTest, LargeTablesAreSearchedByIndex) {
  const Where number = {{"Year(DataDocumento)", Equal, "2024"},
                        {"NumeroDocumento", Equal, "1"},
                        {"TipoRegIva", Equal, 1},
                        {"IsNull(Provvisoria,0)", Equal, 0},
                        {"IdPrimaNota", NotEqual, 1}};
  const auto numberOf = [&](const char* owner) {
    Where where = number;
    where.push_back({owner, Equal, 1});
    return Teste(where);
  };
  const struct {
    const char* name;
    Build build;
    std::vector<const char*> plan;  // what it must contain
  } kRows[] = {
      {"id",
       Teste({{"IdPrimaNota", Equal, 1}, {"Provvisoria", Equal, false}}),
       {"(IdPrimaNota=?)"}},
      {"link", Teste({{"IdLink", Equal, 1}}), {"(IdLink=?)"}},
      {"document",
       Teste({{"TipoDocumento", Equal, 4}, {"IdDoc", Equal, 1}}),
       {"(IdDoc=? AND Tipo"}},
      {"received number", numberOf("IdAnagrafica"), {"(NumeroDocumento=? AND", "IdAnagrafica=?)"}},
      {"issued number", numberOf("SezionaleIva"), {"(NumeroDocumento=? AND", "SezionaleIva=?)"}},
      {"protocol order",
       ProtocolOrder(7, Day("2024-03-15"), true),
       {"<expr>=? AND TipoRegIva=? AND SezionaleIva=? AND Protocollo>?)",
        "<expr>=? AND TipoRegIva=? AND SezionaleIva=? AND DataRegistrazione>?)",
        "<expr>=? AND TipoRegIva=? AND SezionaleIva=? AND Protocollo=?)"}},
      {"in a remittance", kInRemittance, {"(IdPrimaNota=?)", "(IdScadenza=?)"}},
      {"closed in a remittance", kClosedInRemittance, {"(LinkApertura=? AND RataApertura=?)"}},
      {"split payment", kSplitPayment, {"COGPrimeNoteTeste_IdPrimaNota"}},
      {"lines of an installment",
       Joined("IdPrimaNota", "COGScadenze", JoinKind::Inner, "COGPrimeNoteRCont",
              "COGPrimeNoteRCont.IdScadenza", "COGScadenze.IdScadenza",
              {{"COGScadenze.IdScadenza", Equal, 1}, {"NrRata", Equal, 1}}),
       {"(IdScadenza=? AND NrRata=?)", "COGPrimeNoteRCont USING"}},
  };
  const auto columnsOf = [](std::string_view table) {
    std::vector<TableColumn> columns;
    for (const SchemaColumn& column : FindTable(table)->columns) {
      columns.push_back({std::string(column.name), column.type});
    }
    return columns;
  };
  for (const auto& row : kRows) {
    QueryBuilder query;
    row.build(query);
    const std::string sql = "EXPLAIN QUERY PLAN " + RenderQuery(query, columnsOf).sql;
    std::string plan;
    const auto collect = [](void* text, int, char** cells, char**) {
      *static_cast<std::string*>(text) += std::string(cells[3]) + "\n";
      return 0;
    };
    ASSERT_EQ(sqlite3_exec(writer_, sql.c_str(), collect, &plan, nullptr), SQLITE_OK) << sql;
    for (const SchemaTable& table : Tables()) {  // a walk over days scans those days alone
      EXPECT_EQ(plan.find("SCAN " + std::string(table.name)), std::string::npos) << row.name << "\n"
                                                                                 << plan;
    }
    for (const char* part : row.plan) {
      EXPECT_NE(plan.find(part), std::string::npos) << row.name << ": " << part << "\n" << plan;
    }
  }
}

TEST_F(CompanyTest, SiblingsAnswer) {
  Write(R"(
    DELETE FROM KalMessaggi;
    INSERT INTO KalMessaggi
      VALUES (1, 'it', 'uno'), (1, 'en', 'one'), (2, 'it', 'due'), (3, 'en', NULL);
    INSERT INTO KalDizionario VALUES ('sì', 'en', 'yes'), ('no', 'it', 'mai');
    INSERT INTO STDParametriAzienda VALUES ('BloccoInviatoSDI', '1'), ('CodIvaBolli', NULL),
      ('AziendaSplitPayment', 'false'), ('GestisciPNInfragruppo', 'forse'), ('CodDivisaBase', '0'),
      ('AttivitaSeparateIva', ''), ('DataInizioSplitPayment', '2015-01-01'),
      ('SezionaleAutofatture', '70000');
    INSERT INTO STDEsercizi VALUES (9, '2024-01-01', '2024-12-31', 1, NULL),
      (8, '2024-07-01', '2025-06-30', 0, 1), (10, '2024-07-01', '2024-07-31', 0, 0);
    INSERT INTO STDAnagraficaClienti VALUES (1, 1, NULL);
    INSERT INTO STDAnagraficaFornitori VALUES (1, 0, 1, 1);
    INSERT INTO STDIva (CodIva, AmmessaFiscalitaBL, TipoIntra)
      VALUES ('22', 1, 1), ('10', NULL, NULL);
    INSERT INTO COGCausaliContabili (CodCausale, TipoParcella, NotaVariazione)
      VALUES ('NC', 1, 1), ('X', NULL, NULL);
    INSERT INTO COGBlocchiPeriodo VALUES ('2024-01-01', '2024-01-31'), (NULL, '2030-01-01');
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
  Company company(file_, "en");
  SiblingFactory& f = company.Siblings();
  const auto message = [&](int code) { return f.CreateKalStatus()->GetMessage(code); };
  const auto translate = [&](const char* text) {
    return f.CreateKalStatus()->TranslateFromDict(text, "a", "b", "", "", "");
  };
  const auto setting = [&](const char* name) {
    return Outcome([&] { return Show(f.CreateCompanySettings()->Setting(name)); });
  };
  const auto year = [&](const Variant& date, const char* field) {
    const auto settings = f.CreateCompanySettings();
    return settings->SelectFiscalYear(date) ? Show(settings->FiscalYearField(field)) : "none";
  };
  const auto person = [&](std::int16_t type, std::int32_t id, const char* name, bool init = true) {
    return Outcome([&] {
      const auto component = f.CreateKalAnagrafiche();
      component->IDAnagrafica(id);
      component->TipoAnagrafica(type);
      if (init) {
        component->Init();
      }
      return Show(component->InfoAnagrafica(name));
    });
  };
  const auto admits = [&](const char* code) { return f.CreateVatCodes()->AdmitsFiscalData(code); };
  const auto intra = [&](const char* code) {
    return f.CreateVatCodes()->IntraClassification(code);
  };
  const auto variation = [&](const char* c) { return f.CreateVatCodes()->IsVariationNote(c); };
  const auto monthEnd = [&](std::int16_t month, std::int16_t ofYear) {
    return Outcome([&] { return Show(f.CreateVatCodes()->PeriodReferenceDate(month, ofYear)); });
  };
  const auto locked = [&](const Variant& date) { return f.CreatePeriodLock()->IsLocked(date); };
  const auto activity = [&](std::int16_t ofYear, std::int16_t section) {
    return "<" + f.CreateVatActivities()->ActivityCode(ofYear, 2, section) + ">";
  };
  const auto next = [&](std::int16_t type, const Variant& date) {
    return Outcome([&] { return Show(f.CreateProtocolNumbering()->NextProtocol(type, 3, date)); });
  };
  const auto function = [&](std::int32_t code) {
    return Outcome([&] { return f.CreateSqlFunctions()->Expression(code, "DataIva"); });
  };
  const auto closings = [&](const char* procedure, std::int32_t entry) {
    return Outcome([&] {
      ProcedureArgument arguments[] = {{entry}, {std::int16_t{1}}, {std::int32_t{0}, true}};
      f.CreateDataAccess()->Execute(procedure, arguments);
      return Show(arguments[2].value);
    });
  };
  const auto sum = [&](const char* list, const char* column) {
    return Outcome([&] {
      auto rows = std::make_shared<RowTable>(
          std::vector<Column>{{"Dare", DataType::Currency}, {"Avere", DataType::Currency}});
      rows->AddRow({Currency::FromUnits(1), Currency::FromUnits(INT64_MAX)});
      rows->AddRow({Null, Currency::FromUnits(1)});
      rows->AddRow({Currency::FromUnits(-30000), Null});
      const auto totals = f.CreateTotals();
      totals->Attach(std::make_shared<MemoryRecordset>(rows));
      totals->Columns(list);
      totals->Compute();
      return Show(totals->Total(column));
    });
  };
  const Case cases[] = {
      {"message", message(1), "one"},
      {"message in the other language only", message(2), "[2]"},
      {"message that is Null", message(3), "[3]"},
      {"translation", translate("sì"), "yes"},
      {"translation into the other language", translate("no"), "no"},
      {"flag 1", setting("BloccoInviatoSDI"), "True"},
      {"flag as a word", setting("AziendaSplitPayment"), "False"},
      {"flag that is none", setting("GestisciPNInfragruppo"),
       "13: The setting GestisciPNInfragruppo can't have the value 'forse'"},
      {"empty setting", setting("AttivitaSeparateIva"), "Null"},
      {"Null setting", setting("CodIvaBolli"), "Null"},
      {"missing setting", setting("GirocontoFatturaSplitPayment"), "Null"},
      {"date setting", setting("DataInizioSplitPayment"), "01/01/2015"},
      {"section too large", setting("SezionaleAutofatture"),
       "6: The setting SezionaleAutofatture*"},
      {"text setting", setting("CodDivisaBase"), "0"},
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
      {"before Init", person(1, 1, "Infragruppo", false), "91: InfoAnagrafica was called befor*"},
      {"neither customer nor supplier", person(3, 1, "Infragruppo"), "13: *"},
      {"fiscal data", Show(admits("22")) + Show(admits("10")) + Show(admits("4")),
       "TrueFalseFalse"},
      {"intra", Show(intra("22")) + Show(intra("10")) + Show(intra("4")), "100"},
      {"variation note", Show(variation("NC")) + Show(variation("X")), "TrueFalse"},
      {"leap February", monthEnd(2, 2024), "29/02/2024"},
      {"last month of all", monthEnd(12, 9999), "31/12/9999"},
      {"month 13", monthEnd(13, 2024), "13: There is no month 13 of the year 2024"},
      {"last locked day", Show(locked(Day("2024-01-31"))), "True"},
      {"day after it", Show(locked(Day("2024-02-01"))), "False"},
      {"no date is locked", Show(locked("")), "False"},
      {"lock without a start", Show(locked(Day("2030-01-01"))), "False"},
      {"activity, Null, no row", activity(2024, 3) + activity(2024, 4) + activity(2023, 3),
       "<B><><>"},
      {"next protocol", next(2, Day("2024-06-01")), "42"},
      {"first protocol", next(3, Day("2024-06-01")), "1"},
      {"no protocol left", next(1, Day("2024-06-01")), "6: There is no protocol after 2147483647"},
      {"protocol of no date", next(2, ""), "Kal_COGCheck 13: *"},
      {"fee note of a supplier", Show(f.CreateFeeNotes()->SupplierTest(1)), "True"},
      {"fee note of nobody", Show(f.CreateFeeNotes()->SupplierTest(2)), "False"},
      {"fee note of a template", Show(f.CreateFeeNotes()->TemplateTest("NC")), "1"},
      {"fee note of a Null", Show(f.CreateFeeNotes()->TemplateTest("X")), "0"},
      {"year function", function(4), "Year(DataIva)"},
      {"other function", function(5), "445: There is no function with the code 5"},
      {"closings, each once", closings("cogNroChiusurePrimaNota", 1), "2"},
      {"no closings", closings("COGNroChiusurePrimaNota", 3), "0"},
      {"other procedure", closings("COGAltro", 1), "-2147217900: There is no stored procedure*"},
      {"sum", sum("Avere,Dare ", "DARE"), "Kal_COGCheck 6: *"},
      {"sum of one column", sum(" Dare", "Dare"), "-2.9999"},
      {"sum not asked for", sum("Dare", "Avere"), "3265: No total was asked for Avere"},
      {"sum of no column", sum("Dare, Altro", "Dare"), "ADODB.Recordset 3265: *"},
  };
  std::ranges::for_each(cases, &Case::Check);
  EXPECT_EQ(Outcome([&] { return Show(f.CreateCompanySettings()->FiscalYearField("X")); }),
            "91: No fiscal year is selected");
}

// One state of the books inside a Reading, the newest outside. The VAT codes, which are kept, and
// a plain question behave alike.
TEST_F(CompanyTest, ReadsOneStateOfTheBooks) {
  for (const std::string mode : {"DELETE", "WAL"}) {
    CreateCompany(Path(mode), true);
    sqlite3* writer = Connect(Path(mode));
    ASSERT_EQ(Run(writer, "PRAGMA journal_mode = " + mode), SQLITE_OK);
    Company company(Path(mode));
    const auto state = [&] {
      return std::to_string(Open(company, Selection("*", "STDIva"))->RecordCount()) +
             company.Siblings().CreateKalStatus()->GetMessage(1);
    };
    const auto change = [&](const std::string& text) {
      return Run(writer,
                 "BEGIN; INSERT INTO STDIva (CodIva) VALUES ('x'); DELETE FROM KalMessaggi;" +
                     ("INSERT INTO KalMessaggi VALUES (1, 'it', '" + text + "'); COMMIT"));
    };
    const std::int32_t codes = Open(company, Selection("*", "STDIva"))->RecordCount();
    ASSERT_EQ(change("a"), SQLITE_OK);
    EXPECT_EQ(state(), std::to_string(codes + 1) + "a") << mode;
    {
      const Company::Reading reading(company);
      // Without a log of its own the writer has to wait for the reader.
      EXPECT_EQ(change("b"), mode == "WAL" ? SQLITE_OK : SQLITE_BUSY);
      EXPECT_EQ(state(), std::to_string(codes + 1) + "a") << mode;
    }
    if (sqlite3_get_autocommit(writer) == 0) {
      EXPECT_EQ(Run(writer, "COMMIT"), SQLITE_OK);
    }
    EXPECT_EQ(state(), std::to_string(codes + 2) + "b") << mode;
    sqlite3_close(writer);
  }
}

// What a company has kept of small tables, seen through one that keeps nothing yet.
TEST_F(CompanyTest, KeptAnswersFollowEveryChange) {
  Write("DELETE FROM STDIva; DELETE FROM STDDichiarazioniIntento");
  const auto answers = [](Company& company) {
    return Answer(company, Selection("*", "STDIva"), 6) + "|" +
           Answer(company, Selection("*", "STDIva", {{"CodIva", Equal, "22"}}), 6) + "|" +
           Answer(company, Selection("*", "STDDichiarazioniIntento"), 10);
  };
  Company company(file_);
  std::string before = answers(company);
  for (const std::string change : {
           "INSERT INTO STDIva VALUES ('10', NULL, 0, 0.5, 1, 2), ('22', '', 0, 0, 0, 0), "
           "('4', 'A', -3, 1e300, NULL, NULL)",
           "INSERT INTO STDDichiarazioniIntento VALUES (1, 7, 2, 0, '10', '1.5', -2, "
           "'2024-01-31', NULL, 0), (2, NULL, NULL, 1, NULL, 1, 1.25, NULL, '2024-12-31 10:00', 1)",
           "UPDATE STDIva SET CodIvaAutoFtReverse = '' WHERE CodIva = '10'",
           "UPDATE STDIva SET PercIvaACosto = 0.25 WHERE CodIva = '22'",
           "UPDATE STDIva SET PercIndetraibile = -1e300 WHERE CodIva = '4'",
           "UPDATE STDIva SET AmmessaFiscalitaBL = 0 WHERE CodIva = '10'",
           "UPDATE STDIva SET AmmessaFiscalitaBL = 'si' WHERE CodIva = '10'",
           "UPDATE STDIva SET AmmessaFiscalitaBL = -1 WHERE CodIva = '10'",
           "UPDATE STDIva SET TipoIntra = 40000 WHERE CodIva = '4'",
           "UPDATE STDIva SET TipoIntra = -1 WHERE CodIva = '4'",
           "UPDATE STDIva SET CodIva = x'3232' WHERE CodIva = '22'",
           "UPDATE STDIva SET CodIva = '22' WHERE CodIva = x'3232'",
           "INSERT INTO STDIva VALUES ('5', NULL, 0, 0, 0, 0)",
           "DELETE FROM STDIva WHERE CodIva = '10'",
           "UPDATE STDDichiarazioniIntento SET Importo = '-2.0001' WHERE IdDichiarazione = 1",
           "UPDATE STDDichiarazioniIntento SET ImportoPlafond = NULL WHERE IdDichiarazione = 1",
           "UPDATE STDDichiarazioniIntento SET IdAnagrafica = 8 WHERE IdDichiarazione = 1",
           "UPDATE STDDichiarazioniIntento SET DataInizioValidita = '2024-02-29' "
           "WHERE IdDichiarazione = 1",
           "UPDATE STDDichiarazioniIntento SET DataFineValidita = '2024-12-30' "
           "WHERE IdDichiarazione = 2",
           "UPDATE STDDichiarazioniIntento SET DataFineValidita = '31.12.24' "
           "WHERE IdDichiarazione = 2",
           "DELETE FROM STDDichiarazioniIntento",
           "DELETE FROM STDIva",
       }) {
    Write(change);
    Company fresh(file_);
    const std::string now = answers(fresh);
    EXPECT_NE(now, before) << change;
    EXPECT_EQ(answers(company), now) << change;
    EXPECT_EQ(answers(company), now) << change << ", asked again";
    before = now;
  }
}

TEST_F(CompanyTest, TemporaryTablesComeAndGo) {
  RowTable rows({{"IdScadenza", DataType::Integer},
                 {"TipoRata", DataType::SmallInt},
                 {"DataScadenza", DataType::Date},
                 {"ImportoDare", DataType::Currency}});
  rows.AddRow({1, std::int16_t{0}, Day("2024-05-31"), Currency::FromUnits(INT64_MIN)});
  rows.AddRow({2, std::int16_t{1}, Null, Null});
  RowTable other({{"IdScadenza", DataType::VarWChar}});
  other.AddRow({"testo"});
  RowTable twice({{"A", DataType::Integer}, {"a", DataType::Integer}});
  const std::string before = Bytes(file_);
  Company company(file_);
  const auto make = [&](const std::string& name, const RowTable& content) {
    return Outcome([&] { return Company::TemporaryTable(company, name, content), "made"; });
  };
  for (const std::string name :
       {"TmpScadenze", "x\"; DROP TABLE COGScadenze; --", "a as b", "'", "[x]", "1 = 1", ""}) {
    const Build all = [&](auto& q) { q.Select("*").From(name + " as Chiu"); };
    const Build paired =
        Joined("Chiu.IdScadenza", name + " as Chiu", JoinKind::Inner, name + " as Ape",
               "Chiu.IdScadenza", "Ape.IdScadenza", {{"Chiu.TipoRata", Equal, 1}});
    const Company::Reading reading(company);
    {
      const Company::TemporaryTable table(company, name, rows);
      EXPECT_TRUE(company.HasTable(name)) << name;
      EXPECT_EQ(Answer(company, all, 4), "1 0 31/05/2024 -922337203685477.5808;2 1 Null Null")
          << name;
      EXPECT_EQ(Answer(company, paired), "2") << name;
      Case{name.c_str(), make(name, rows), "-2147217900: There is a table*"}.Check();
    }
    EXPECT_FALSE(company.HasTable(name)) << name;
    Case{name.c_str(), Answer(company, all), "-2147217865: There is no table*"}.Check();
    const Company::TemporaryTable table(company, name, other);
    EXPECT_EQ(Answer(company, all), "testo") << name;
  }
  EXPECT_EQ(make("Doppia", twice).substr(0, 11), "-2147467259");
  EXPECT_FALSE(company.HasTable("Doppia"));
  EXPECT_EQ(make("cogscadenze", rows).substr(0, 11), "-2147217900");
  EXPECT_TRUE(company.HasTable("cogscadenze"));
  EXPECT_EQ(Bytes(file_), before);
  EXPECT_EQ(Files(), 1);
}

TEST_F(CompanyTest, FilesThatAreNoCompany) {
  std::ofstream(Path("testo.db")) << std::string(2000, 'x');
  std::ofstream(Path("vuoto.db")).flush();
  std::ofstream(Path("mozzo.db"), std::ios::binary) << Bytes(file_).substr(0, 5000);
  fs::create_directory(Path("cartella"));
  fs::copy_file(file_, Path("futuro.db"));
  for (const auto& [name, sql] : {std::pair("altro.db", "CREATE TABLE T (A)"),
                                  std::pair("futuro.db", "PRAGMA user_version = 99")}) {
    sqlite3* other = Connect(Path(name));
    EXPECT_EQ(Run(other, sql), SQLITE_OK);
    sqlite3_close(other);
  }
  const auto open = [](const std::string& path, std::string_view language = "it") {
    return Outcome([&] { return Company(path, language), "opened"; });
  };
  const auto failure = [&](const char* name, const char* what) {
    return Case{name, open(Path(name)), "-2147467259: " + Path(name) + what};
  };
  Database impatient(file_, 1);
  QueryBuilder query;
  Selection("*", "STDIva", {{"CodIva", Equal, "?"}})(query);
  const auto ask = [&] { return Outcome([&] { return Show(impatient.FirstValue(query)); }); };
  const auto begin = [&] { return Outcome([&] { return impatient.BeginReading(), "begun"; }); };
  const std::string isLocked = "-2147467259: " + file_ + " is locked by another program";
  Write("BEGIN EXCLUSIVE");
  const std::string asked = ask();
  const std::string begun = begin();
  Write("COMMIT");
  const Case cases[] = {
      {"manca.db", open(Path("manca.db")), "-2147467259: There is no file " + Path("manca.db")},
      failure("testo.db", " is no database"),
      failure("vuoto.db", " is no company of this program"),
      failure("mozzo.db", ": database disk image is malformed"),
      failure("cartella", " is a folder"),
      failure("altro.db", " is no company of this program"),
      failure("futuro.db", " was made by a later version of this program"),
      {"language", open(file_, "fr"), "13: There are no messages in the language 'fr'"},
      {"asked while locked", asked, isLocked},
      {"begun while locked", begun, isLocked},
      {"begun afterwards", begin(), "begun"},
      {"asked afterwards", ask(), "Null"},
  };
  std::ranges::for_each(cases, &Case::Check);
  EXPECT_FALSE(fs::exists(Path("manca.db")));
}

TEST_F(CompanyTest, CreationNeverReplacesAFile) {
  const std::string before = Bytes(file_);
  const auto create = [](const std::string& path) {
    return Outcome([&] { return CreateCompany(path, true), "made"; });
  };
  const Case cases[] = {
      {"over a company", create(file_), "-2147467259: There is a file " + file_ + " already"},
      {"in no folder", create(Path("manca/x.db")), "-2147467259: *"},
  };
  std::ranges::for_each(cases, &Case::Check);
  EXPECT_EQ(Bytes(file_), before);
  EXPECT_EQ(Files(), 1);
}

}  // namespace
}  // namespace kal::company
