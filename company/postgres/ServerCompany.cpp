#include "company/postgres/ServerCompany.h"

#include <chrono>
#include <vector>

#include "company/DataError.h"
#include "company/Schema.h"
#include "company/postgres/Catalog.h"
#include "company/postgres/Postgres.h"
#include "company/postgres/PostgresDialect.h"
#include "company/postgres/SchemaSql.h"
#include "company/sqlite/CompanyFile.h"
#include "company/sqlite/Sqlite.h"
#include "platform/LetterCase.h"
#include "platform/MemoryRecordset.h"

namespace kal::company {
namespace {

// The schema where tables are made, as SQL.
std::string FreeSchema(Postgres& server) {
  const PostgresResult found = server.Execute(
      "SELECT pg_catalog.quote_ident(pg_catalog.current_schema()), "
      "pg_catalog.current_setting('server_encoding')");
  if (found.IsNull(0, 0)) {
    RaiseDataError(kDatabaseFailed, server.Name() + ": search_path names no schema that exists");
  }
  if (found.Text(0, 1) != "UTF8") {
    RaiseDataError(kDatabaseFailed, server.Name() + ": the database keeps its texts as " +
                                        std::string(found.Text(0, 1)) + ", not as UTF8");
  }
  std::string schema(found.Text(0, 0));
  const PostgresResult tables = server.Execute(
      "SELECT own.relname FROM pg_catalog.pg_class AS own JOIN pg_catalog.pg_namespace AS its "
      "ON its.oid = own.relnamespace WHERE its.nspname = pg_catalog.current_schema() "
      "ORDER BY own.relname");
  for (std::size_t row = 0; row < tables.Rows(); ++row) {
    const std::string_view name = tables.Text(row, 0);
    if (FindTable(name) != nullptr || SameName(name, kVersionsTable)) {
      RaiseDataError(kDatabaseFailed, server.Name() + ": the schema " + schema + " holds a table " +
                                          std::string(name) + " already");
    }
  }
  return schema;
}

// The rows go over many at once, as an array for each column.
void CopyTable(const Sqlite& file, const SchemaTable& table, Postgres& server) {
  constexpr std::size_t kRowsAtOnce = 10000;
  const std::string name(table.name);
  std::vector<Column> columns;
  std::vector<std::string> sources;
  std::string names;
  std::string arrays;
  for (const SchemaColumn& column : table.columns) {
    columns.push_back({std::string(column.name), column.type});
    sources.push_back(name + "." + std::string(column.name));
    names.append(names.empty() ? "" : ", ").append(QuoteName(column.name));
    arrays.append(arrays.empty() ? "$" : ", $")
        .append(std::to_string(columns.size()))
        .append("::")
        .append(TypeName(column.type))
        .append("[]");
  }
  const std::string insert = "INSERT INTO " + name + " SELECT * FROM unnest(" + arrays + ")";
  SqliteStatement stored(file, "SELECT " + names + " FROM " + QuoteName(name));
  for (bool more = stored.Step(); more;) {
    RowTable rows(columns);
    for (; more && rows.RowCount() < kRowsAtOnce; more = stored.Step()) {
      rows.AddRowOf([&](std::size_t column) {
        return stored.Value(static_cast<int>(column), columns[column].type, sources[column]);
      });
    }
    std::vector<PostgresValue> values;
    for (std::size_t column = 0; column < columns.size(); ++column) {
      values.emplace_back(ToArray(rows, column));
    }
    (void)server.Execute(insert, values);
  }
}

MadeOnServer Make(const std::string& uri, const Sqlite& from) {
  Postgres server(uri, Postgres::Access::Make);
  (void)server.Execute("BEGIN");
  const std::string schema = FreeSchema(server);
  (void)server.Execute(ServerSchemaSql(schema));
  for (const SchemaTable& table : Tables()) {
    CopyTable(from, table, server);
  }
  for (const SchemaTable& table : Tables()) {
    (void)server.Execute("ANALYZE " + std::string(table.name));
  }
  (void)server.Execute("COMMIT");
  return {server.Name(), ServerGrants(schema)};
}

}  // namespace

MadeOnServer CreateServerCompany(const std::string& uri, bool withSample) {
  Sqlite model(":memory:", Sqlite::Access::Create);
  FillCompany(model, withSample);
  return Make(uri, model);
}

MadeOnServer CopyToServer(const std::string& file, const std::string& uri) {
  constexpr Patience kAsLongAsItTakes{.forAnswer = std::chrono::hours(24)};
  Sqlite from(ExistingCompanyFile(file), Sqlite::Access::Read, kAsLongAsItTakes);
  RequireCompany(from);
  from.Execute("BEGIN");  // one state of all tables
  return Make(uri, from);
}

}  // namespace kal::company
