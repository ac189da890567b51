#include "company/postgres/Catalog.h"

#include <algorithm>
#include <array>
#include <charconv>

#include "company/DataError.h"
#include "platform/LetterCase.h"

namespace kal::company {
namespace {

constexpr std::string_view kDatabase =
    "SELECT pg_catalog.current_database(), pg_catalog.current_schema(), "
    "pg_catalog.current_setting('server_encoding')";
constexpr std::string_view kSystem = "SELECT system_identifier FROM pg_catalog.pg_control_system()";
struct ServerType {
  std::string_view oid;
  DataType type;
};
constexpr std::array kServerTypes = {
    ServerType{"21", DataType::SmallInt},   ServerType{"23", DataType::Integer},
    ServerType{"20", DataType::Integer},    ServerType{"25", DataType::VarWChar},
    ServerType{"1043", DataType::VarWChar}, ServerType{"1700", DataType::Currency},
    ServerType{"1082", DataType::Date},     ServerType{"16", DataType::Boolean},
    ServerType{"701", DataType::Double},
};

PostgresResult AskAlone(Postgres& connection, std::string_view sql,
                        std::span<const PostgresValue> values = {}) {
  connection.AskOnce(std::string(sql), values);
  connection.Sync();
  PostgresResult result = connection.Next();
  connection.NextSync();
  return result;
}

PostgresResult Answered(Postgres& connection, std::string_view sql,
                        std::span<const PostgresValue> values = {}) {
  PostgresResult result = AskAlone(connection, sql, values);
  if (result.Failed()) {
    connection.Fail(result);
  }
  return result;
}

}  // namespace

const std::string_view kCompanyColumns =
    "SELECT own.relname, own.relkind, col.attname, col.atttypid, "
    "pg_catalog.format_type(col.atttypid, col.atttypmod) FROM pg_catalog.pg_class AS own "
    "JOIN pg_catalog.pg_attribute AS col ON col.attrelid = own.oid AND col.attnum > 0 "
    "AND NOT col.attisdropped WHERE pg_catalog.pg_table_is_visible(own.oid) "
    "AND own.relkind IN ('r', 'p', 'v', 'm', 'f') AND lower(own.relname) = ANY ($1::text[]) "
    "ORDER BY own.oid, col.attnum";
// A statement trigger for each of insert, delete, update and truncate, without a condition.
const std::string_view kVersionTriggers =
    "SELECT own.relname FROM pg_catalog.pg_class AS own "
    "JOIN pg_catalog.pg_trigger AS its ON its.tgrelid = own.oid "
    "JOIN pg_catalog.pg_proc AS run ON run.oid = its.tgfoid "
    "WHERE pg_catalog.pg_table_is_visible(own.oid) AND own.relkind = 'r' "
    "AND NOT own.relhassubclass AND its.tgenabled IN ('O', 'A') AND its.tgtype & 3 = 0 "
    "AND its.tgqual IS NULL AND its.tgattr = '' AND run.proname = $1 "
    "GROUP BY own.relname HAVING bit_or(its.tgtype) & 60 = 60";

bool KeepsOnServer(std::string_view oid, DataType type) {
  const auto* known = std::ranges::find(kServerTypes, oid, &ServerType::oid);
  if (known == kServerTypes.end()) {
    return false;
  }
  const bool whole = known->type == DataType::SmallInt || known->type == DataType::Integer;
  return known->type == type ||
         (whole && (type == DataType::SmallInt || type == DataType::Integer));
}

std::string CompanyNames() {
  std::string names = "{" + std::string(kVersionsTable);
  for (const SchemaTable& table : Tables()) {
    names += ",";
    for (const char letter : table.name) {
      names += FoldedAscii(letter);
    }
  }
  return names + "}";
}

Catalog::Catalog(Postgres& connection) : tables_(Tables().size()) {
  ReadDatabase(connection);
  ReadColumns(connection);
  RequireTables(connection);
  ReadVersions(connection);
}

void Catalog::ReadDatabase(Postgres& connection) {
  const PostgresResult database = Answered(connection, kDatabase);
  if (database.Text(0, 2) != "UTF8") {
    RaiseDataError(kDatabaseFailed, connection.Name() + ": the database keeps its texts as " +
                                        std::string(database.Text(0, 2)) + ", not as UTF8");
  }
  const PostgresResult system = AskAlone(connection, kSystem);
  // Who may not read it knows a server by its address.
  const std::string server =
      system.Failed() || system.Rows() == 0 ? connection.Name() : std::string(system.Text(0, 0));
  database_ =
      server + "/" + std::string(database.Text(0, 0)) + "/" + std::string(database.Text(0, 1));
}

void Catalog::ReadColumns(Postgres& connection) {
  const std::array<PostgresValue, 1> names = {CompanyNames()};
  const PostgresResult columns = Answered(connection, kCompanyColumns, names);
  for (std::size_t row = 0; row < columns.Rows(); ++row) {
    if (SameName(columns.Text(row, 0), kVersionsTable)) {
      hasVersions_ = true;
    } else {
      AddColumn(connection, columns, row);
    }
  }
}

void Catalog::AddColumn(const Postgres& connection, const PostgresResult& columns,
                        std::size_t row) {
  const SchemaTable* const table = FindTable(columns.Text(row, 0));
  const std::string_view kind = columns.Text(row, 1);
  if (table == nullptr) {
    return;
  }
  // A view has no indexes, and what reads it may answer differently from what the entries wrote.
  if (kind != "r" && kind != "p") {
    RaiseDataError(kDatabaseFailed, "In " + connection.Name() + " " + std::string(table->name) +
                                        (kind == "f" ? " is a foreign table" : " is a view") +
                                        ", not a table");
  }
  Own& own = Place(*table);
  const std::string sql = QuoteName(columns.Text(row, 0));
  if (own.shape.sql.empty()) {
    own.shape.sql = sql;
  } else if (own.shape.sql != sql) {
    RaiseDataError(kDatabaseFailed, "In " + connection.Name() + " there are two tables " +
                                        own.shape.sql + " and " + sql);
  }
  const std::string_view name = columns.Text(row, 2);
  const SchemaColumn* const known = FindColumn(*table, name);
  if (known != nullptr && !KeepsOnServer(columns.Text(row, 3), known->type)) {
    RaiseDataError(RunTime::TypeMismatch, "In " + connection.Name() + " the column " +
                                              std::string(table->name) + "." +
                                              std::string(known->name) + " is declared " +
                                              std::string(columns.Text(row, 4)) +
                                              ", which does not keep what is stored in it");
  }
  own.shape.columns.push_back({std::string(known == nullptr ? name : known->name),
                               known == nullptr ? TypeOfServer(columns.Text(row, 3)) : known->type,
                               QuoteName(name)});
}

void Catalog::RequireTables(const Postgres& connection) const {
  const auto missing =
      std::ranges::find_if(tables_, [](const Own& own) { return own.shape.sql.empty(); });
  if (std::ranges::all_of(tables_, [](const Own& own) { return own.shape.sql.empty(); })) {
    RaiseDataError(kDatabaseFailed, connection.Name() + " is no company of this program");
  }
  if (missing != tables_.end()) {
    const auto place = static_cast<std::size_t>(missing - tables_.begin());
    RaiseDataError(kNoSuchTable, "There is no table '" + std::string(Tables()[place].name) +
                                     "' in " + connection.Name());
  }
}

void Catalog::ReadVersions(Postgres& connection) {
  if (!hasVersions_) {
    return;
  }
  const std::array<PostgresValue, 1> layoutRow = {std::string(kLayoutRow)};
  const PostgresResult layout =
      AskAlone(connection, "SELECT Versione FROM KalVersioni WHERE Tabella = $1", layoutRow);
  // Nothing is kept for who may not read it.
  hasVersions_ = !layout.Failed();
  if (hasVersions_ && layout.Rows() == 1) {
    std::int64_t version = 0;
    const std::string_view text = layout.Text(0, 0);
    (void)std::from_chars(text.data(), text.data() + text.size(), version);
    if (version > kLayoutVersion) {
      RaiseDataError(kDatabaseFailed,
                     connection.Name() + " was made by a later version of this program");
    }
  }
  const std::array<PostgresValue, 1> function = {std::string(kVersionFunction)};
  const PostgresResult triggers = Answered(connection, kVersionTriggers, function);
  for (std::size_t row = 0; row < triggers.Rows(); ++row) {
    if (const SchemaTable* const table = FindTable(triggers.Text(row, 0)); table != nullptr) {
      Place(*table).hasVersion = hasVersions_ && !table->growsWithEntries;
    }
  }
}

const TableShape* Catalog::Find(const SchemaTable* table) const {
  return table == nullptr ? nullptr
                          : &tables_[static_cast<std::size_t>(table - Tables().data())].shape;
}

bool Catalog::HasVersion(const SchemaTable* table) const {
  return table != nullptr && tables_[static_cast<std::size_t>(table - Tables().data())].hasVersion;
}

DataType TypeOfServer(std::string_view oid) {
  const auto* known = std::ranges::find(kServerTypes, oid, &ServerType::oid);
  return known == kServerTypes.end() ? DataType::VarWChar : known->type;
}

}  // namespace kal::company
