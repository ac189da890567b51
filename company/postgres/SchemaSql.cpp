#include "company/postgres/SchemaSql.h"

#include <cstddef>

#include "company/postgres/Catalog.h"
#include "company/postgres/PostgresDialect.h"

namespace kal::company {
namespace {

// A version never comes back: not after a restore, not on a replica that took over before it had
// everything, not in a company that takes another's place. So it is the time, and more than before.
constexpr std::string_view kNow =
    "pg_catalog.floor(EXTRACT(epoch FROM pg_catalog.clock_timestamp()) * 1000000)::bigint";

std::string TableSql(const SchemaTable& table) {
  std::string sql = "CREATE TABLE " + std::string(table.name) + " (";
  std::string_view separator;
  for (const SchemaColumn& column : table.columns) {
    sql.append(separator).append(column.name).append(" ").append(TypeName(column.type));
    // Texts are compared by their bytes, whatever the server's language is.
    sql += column.type == DataType::VarWChar ? " COLLATE \"C\"" : "";
    separator = ", ";
  }
  return sql + ");\n";
}

// A name that is too long for the server ends with the place of the index among all.
std::string NameOnServer(const SchemaIndex& index) {
  constexpr std::size_t kLongest = 63;
  constexpr std::size_t kCut = 59;
  std::string name = NameOf(index);
  if (name.size() > kLongest) {
    name.resize(kCut);
    name += "_" + std::to_string(&index - Indexes().data());
  }
  return name;
}

// Writers need no right on the versions, so the function runs with its owner's. It names everything
// whole, and nobody but the owner may make a trigger of it.
std::string VersionFunctionSql(std::string_view schema) {
  const std::string name = std::string(schema) + "." + std::string(kVersionFunction) + "()";
  return "CREATE FUNCTION " + name +
         " RETURNS trigger LANGUAGE plpgsql SECURITY DEFINER SET search_path = pg_catalog, pg_temp "
         "AS $$ BEGIN INSERT INTO " +
         std::string(schema) + ".KalVersioni AS own VALUES (TG_ARGV[0], " + std::string(kNow) +
         ") ON CONFLICT (Tabella) DO UPDATE SET Versione = greatest(own.Versione + 1, "
         "excluded.Versione); RETURN NULL; END $$;\nREVOKE ALL ON FUNCTION " +
         name + " FROM PUBLIC;\n";
}

// Statements raise the version, also those that come through replication. Where the changes
// themselves come, row by row, only row triggers run.
std::string TriggersSql(const SchemaTable& table, std::string_view schema) {
  const std::string name(table.name);
  const std::string run = " EXECUTE FUNCTION " + std::string(schema) + "." +
                          std::string(kVersionFunction) + "('" + name + "');\n";
  return "CREATE TRIGGER KalVersione AFTER INSERT OR UPDATE OR DELETE OR TRUNCATE ON " + name +
         " FOR EACH STATEMENT" + run + "ALTER TABLE " + name +
         " ENABLE ALWAYS TRIGGER KalVersione;\n"
         "CREATE TRIGGER KalVersioneReplica AFTER INSERT OR UPDATE OR DELETE ON " +
         name + " FOR EACH ROW" + run + "ALTER TABLE " + name +
         " ENABLE REPLICA TRIGGER KalVersioneReplica;\n";
}

}  // namespace

std::string ServerIndexSql(const SchemaIndex& index) {
  std::string columns;
  for (const IndexedColumn& column : ColumnsOf(index)) {
    columns += columns.empty() ? "" : ", ";
    columns += column.isYear ? PostgresDialect().Year(column.name) : column.name;
  }
  return std::string(index.unique ? "CREATE UNIQUE INDEX " : "CREATE INDEX ") +
         NameOnServer(index) + " ON " + std::string(index.table) + " (" + columns + ");\n";
}

std::string ServerSchemaSql(std::string_view schema) {
  std::string sql;
  for (const SchemaTable& table : Tables()) {
    sql += TableSql(table);
  }
  for (const SchemaIndex& index : Indexes()) {
    sql += ServerIndexSql(index);
  }
  sql +=
      "CREATE TABLE KalVersioni (Tabella text COLLATE \"C\" PRIMARY KEY, Versione bigint NOT "
      "NULL);\nINSERT INTO KalVersioni VALUES ('" +
      std::string(kLayoutRow) + "', " + std::to_string(kLayoutVersion) + ");\n" +
      VersionFunctionSql(schema);
  for (const SchemaTable& table : Tables()) {
    if (!table.growsWithEntries) {
      sql += "INSERT INTO KalVersioni VALUES ('" + std::string(table.name) + "', " +
             std::string(kNow) + ");\n" + TriggersSql(table, schema);
    }
  }
  return sql;
}

std::string ServerGrants(std::string_view schema) {
  constexpr std::size_t kWidth = 100;
  std::string sql =
      "GRANT USAGE ON SCHEMA " + std::string(schema) + " TO \"...\";\nGRANT SELECT ON";
  std::string line = "\n   ";
  const auto add = [&](std::string_view table, std::string_view separator) {
    const std::string name = " " + std::string(schema) + "." + std::string(table);
    if (line.size() + name.size() + separator.size() > kWidth) {
      sql += line;
      line = "\n   ";
    }
    line.append(name).append(separator);
  };
  for (const SchemaTable& table : Tables()) {
    add(table.name, ",");
  }
  add("KalVersioni", "");
  return sql + line + "\n    TO \"...\";\n";
}

}  // namespace kal::company
