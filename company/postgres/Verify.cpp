#include "company/Verify.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include "company/DataError.h"
#include "company/QueryTexts.h"
#include "company/Schema.h"
#include "company/Settings.h"
#include "company/postgres/Catalog.h"
#include "company/postgres/Postgres.h"
#include "company/postgres/PostgresDialect.h"
#include "company/postgres/SchemaSql.h"
#include "messages/Catalogue.h"
#include "platform/LetterCase.h"

namespace kal::company {
namespace {

constexpr std::size_t kMostOfATable = 1000;

// What a column of the type may hold and automation's type may not; "?" stands for the column.
std::string_view WrongValue(DataType type) {
  switch (type) {
    case DataType::SmallInt:
      return "? NOT BETWEEN -32768 AND 32767";
    case DataType::Integer:
      return "? NOT BETWEEN -2147483648 AND 2147483647";
    case DataType::Currency:
      return "? = 'NaN' OR ? NOT BETWEEN -922337203685477.5808 AND 922337203685477.5807 OR "
             "? <> round(?, 4)";
    case DataType::Date:
      return "? NOT BETWEEN '0100-01-01' AND '9999-12-31'";
    default:
      return "";
  }
}

std::string With(std::string_view condition, std::string_view column) {
  std::string sql;
  for (const char letter : condition) {
    letter == '?' ? sql += column : sql += letter;
  }
  return sql;
}

class ServerVerification {
 public:
  ServerVerification(const std::string& uri, const FlawReport& report)
      : server_(uri, Postgres::Access::Make), report_(report) {
    (void)server_.Execute("BEGIN ISOLATION LEVEL REPEATABLE READ READ ONLY");
    columns_.emplace(server_.Execute(std::string(kCompanyColumns), Param(CompanyNames())));
    if (columns_->Rows() == 0) {
      RaiseDataError(kDatabaseFailed, server_.Name() + " is no company of this program");
    }
  }

  void Run() {
    for (const SchemaTable& table : Tables()) {
      Guarded(table, [&] {
        if (CheckTable(table)) {
          CheckRows(table);
        }
      });
    }
    for (const SchemaIndex& index : Indexes()) {
      Guarded(*FindTable(index.table), [&] { CheckIndex(index); });
    }
    for (const SchemaKey& key : Keys()) {
      Guarded(*FindTable(key.table), [&] { CheckKey(key); });
    }
    for (const SchemaPeriod& period : Periods()) {
      Guarded(*FindTable(period.table), [&] { CheckPeriods(period); });
    }
    Guarded(*FindTable("STDParametriAzienda"), [&] { CheckSettings(); });
    Guarded(*FindTable("KalMessaggi"), [&] { CheckTexts(); });
    CheckVersions();
  }

 private:
  static std::array<PostgresValue, 1> Param(std::string text) { return {std::move(text)}; }

  // Whether the server says that it can't make sense of what it has stored, or can't read it.
  [[nodiscard]] bool IsDamage() const {
    return server_.Refusal().starts_with("XX") || server_.Refusal().starts_with("58");
  }

  // What is damaged in one table says nothing of the others.
  template <class Look>
  void Guarded(const SchemaTable& table, Look look) {
    if (std::ranges::find(broken_, &table) != broken_.end()) {
      return;
    }
    (void)server_.Execute("SAVEPOINT look");
    try {
      look();
    } catch (const RunTimeError& error) {
      if (!IsDamage()) {
        throw;
      }
      broken_.push_back(&table);
      report_({FlawKind::Damaged, std::string(table.name), "", 0, error.Description()});
    }
    (void)server_.Execute("ROLLBACK TO look");
  }

  // Hands over the first cell of each row.
  void Report(FlawKind kind, std::string_view table, std::string_view column,
              const std::string& sql) {
    const PostgresResult found = server_.Execute(sql);
    for (std::size_t row = 0; row < std::min(found.Rows(), kMostOfATable); ++row) {
      report_({kind, std::string(table), std::string(column), 0, std::string(found.Text(row, 0))});
    }
    if (found.Rows() > kMostOfATable) {
      report_({FlawKind::More, std::string(table), "", 0, ""});
    }
  }

  // Whether the table's rows can be looked at.
  bool CheckTable(const SchemaTable& table) {
    std::vector<std::string_view> names;
    bool isView = false;
    for (std::size_t row = 0; row < columns_->Rows(); ++row) {
      if (!SameName(columns_->Text(row, 0), table.name)) {
        continue;
      }
      const std::string_view kind = columns_->Text(row, 1);
      isView = isView || (kind != "r" && kind != "p");
      names.push_back(columns_->Text(row, 2));
      const SchemaColumn* const known = FindColumn(table, names.back());
      if (known != nullptr && !KeepsOnServer(columns_->Text(row, 3), known->type)) {
        report_({FlawKind::Declaration, std::string(table.name), std::string(known->name), 0,
                 std::string(columns_->Text(row, 4))});
        broken_.push_back(&table);
      }
    }
    if (names.empty() || isView) {
      broken_.push_back(&table);
      report_(
          {names.empty() ? FlawKind::NoTable : FlawKind::View, std::string(table.name), "", 0, ""});
      return false;
    }
    for (const SchemaColumn& column : table.columns) {
      if (std::ranges::none_of(
              names, [&](std::string_view name) { return SameName(name, column.name); })) {
        report_({FlawKind::NoColumn, std::string(table.name), std::string(column.name), 0, ""});
        broken_.push_back(&table);
      }
    }
    return std::ranges::find(broken_, &table) == broken_.end();
  }

  // One pass over the table.
  void CheckRows(const SchemaTable& table) {
    std::string any;
    std::string which = "CASE";
    for (const SchemaColumn& column : table.columns) {
      if (const std::string_view wrong = WrongValue(column.type); !wrong.empty()) {
        const std::string condition = "(" + With(wrong, column.name) + ")";
        any += (any.empty() ? "" : " OR ") + condition;
        which.append(" WHEN ").append(condition).append(" THEN '").append(column.name);
        which.append(" = ' || ").append(column.name);
      }
    }
    if (!any.empty()) {
      Report(FlawKind::Value, table.name, "",
             "SELECT " + which + " END FROM " + std::string(table.name) + " WHERE " + any +
                 " LIMIT " + std::to_string(kMostOfATable + 1));
    }
  }

  void CheckIndex(const SchemaIndex& index) {
    const PostgresResult all = server_.Execute(
        "SELECT its.indexrelid, place, pg_catalog.pg_get_indexdef(its.indexrelid, place, true) "
        "FROM pg_catalog.pg_index AS its, pg_catalog.generate_series(1, its.indnkeyatts) AS place "
        "WHERE its.indrelid = $1::regclass AND its.indisvalid AND its.indpred IS NULL "
        "ORDER BY its.indexrelid, place",
        Param(std::string(index.table)));
    const std::vector<IndexedColumn> wanted = ColumnsOf(index);
    std::size_t served = 0;
    for (std::size_t row = 0; row < all.Rows() && served < wanted.size(); ++row) {
      served = all.Text(row, 1) == "1" ? 0 : served;
      const bool isNext = all.Text(row, 1) == std::to_string(served + 1);
      served += isNext && Serves(all.Text(row, 2), wanted[served]) ? 1U : 0U;
    }
    if (served < wanted.size()) {
      std::string statement = ServerIndexSql(index);
      statement.erase(statement.find_last_not_of('\n') + 1);
      report_({FlawKind::NoIndex, std::string(index.table), std::string(index.columns), 0,
               std::move(statement)});
    }
  }

  // An expression passes for a year.
  static bool Serves(std::string_view own, const IndexedColumn& wanted) {
    return wanted.isYear ? own.find('(') != std::string_view::npos : SameName(own, wanted.name);
  }

  void CheckKey(const SchemaKey& key) {
    std::string row;
    std::string filled;
    for (const std::string_view name : Items(key.columns)) {
      row.append(row.empty() ? "" : " || ', ' || ").append(name);
      filled.append(filled.empty() ? "" : " AND ").append(name).append(" IS NOT NULL");
    }
    Report(FlawKind::Duplicate, key.table, key.columns,
           "SELECT " + row + " FROM " + std::string(key.table) + " WHERE " + filled + " GROUP BY " +
               std::string(key.columns) + " HAVING count(*) > 1 LIMIT " +
               std::to_string(kMostOfATable + 1));
  }

  void CheckPeriods(const SchemaPeriod& period) {
    const std::string table(period.table);
    const std::string from(period.start);
    const std::string to(period.end);
    Report(
        FlawKind::Period, table, from + "," + to,
        "SELECT " + from + " || ' > ' || " + to + " FROM " + table + " WHERE " + from + " > " + to);
    if (period.key.empty()) {
      return;
    }
    const std::string key(period.key);
    Report(FlawKind::Overlap, table, key,
           "SELECT one." + key + " || ', ' || other." + key + " FROM " + table + " AS one JOIN " +
               table + " AS other ON one." + key + " < other." + key + " AND one." + from +
               " <= other." + to + " AND other." + from + " <= one." + to);
  }

  void CheckSettings() {
    const PostgresResult settings = server_.Execute("SELECT Nome, Valore FROM STDParametriAzienda");
    for (std::size_t row = 0; row < settings.Rows(); ++row) {
      try {
        (void)SettingValue(settings.Text(row, 0), Variant(settings.Text(row, 1)));
      } catch (const RunTimeError& error) {
        report_({FlawKind::Setting, "STDParametriAzienda", "Valore", 0, error.Description()});
      }
    }
  }

  void CheckTexts() {
    for (const Message& message : Catalogue()) {
      for (const std::string_view language : {"it", "en"}) {
        if (!message.code) {
          continue;
        }
        const std::string code = std::to_string(static_cast<std::int32_t>(*message.code));
        const std::array<PostgresValue, 2> values = {code, std::string(language)};
        if (server_
                .Execute("SELECT 1 FROM KalMessaggi WHERE Codice = $1::integer AND Lingua = $2 "
                         "AND Testo <> ''",
                         values)
                .Rows() == 0) {
          report_(
              {FlawKind::NoText, "KalMessaggi", "Testo", 0, code + ", " + std::string(language)});
        }
      }
    }
  }

  void CheckVersions() {
    const PostgresResult raised =
        server_.Execute(std::string(kVersionTriggers), Param(std::string(kVersionFunction)));
    for (const SchemaTable& table : Tables()) {
      bool has = table.growsWithEntries || std::ranges::find(broken_, &table) != broken_.end();
      for (std::size_t row = 0; row < raised.Rows(); ++row) {
        has = has || SameName(raised.Text(row, 0), table.name);
      }
      if (!has) {
        report_({FlawKind::NoVersion, std::string(table.name), "", 0, ""});
      }
    }
  }

  Postgres server_;
  const FlawReport& report_;
  std::optional<PostgresResult> columns_;
  std::vector<const SchemaTable*> broken_;  // tables whose flaws hide all others
};

}  // namespace

void VerifyServer(const std::string& uri, const FlawReport& report) {
  ServerVerification(uri, report).Run();
}

}  // namespace kal::company
