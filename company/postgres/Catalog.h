// Catalog: what a server has of the company's tables.

#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "company/QueryTexts.h"
#include "company/Schema.h"
#include "company/postgres/Postgres.h"

namespace kal::company {

// Holds for the connection that it was read on.
class Catalog {
 public:
  // Raises an error when a table is missing or is a view, when a column can't keep what belongs in
  // it, and when a later version of this program made the company.
  explicit Catalog(Postgres& connection);

  // nullptr where it is no table of the company.
  [[nodiscard]] const TableShape* Find(const SchemaTable* table) const;
  // Whether every change of the table raises its version, as far as the server's own catalog tells.
  [[nodiscard]] bool HasVersion(const SchemaTable* table) const;
  // Whether versions can be read at all.
  [[nodiscard]] bool HasVersions() const { return hasVersions_; }
  // What tells the database from every other one, whatever its name.
  [[nodiscard]] const std::string& Database() const { return database_; }

 private:
  struct Own {
    TableShape shape;
    bool hasVersion = false;
  };

  void ReadDatabase(Postgres& connection);
  void ReadColumns(Postgres& connection);
  void AddColumn(const Postgres& connection, const PostgresResult& columns, std::size_t row);
  void RequireTables(const Postgres& connection) const;
  void ReadVersions(Postgres& connection);
  [[nodiscard]] Own& Place(const SchemaTable& table) {
    return tables_[static_cast<std::size_t>(&table - Tables().data())];
  }

  std::vector<Own> tables_;  // as Tables()
  bool hasVersions_ = false;
  std::string database_;
};

// The type of a server's type, for columns of tables that are not part of the schema.
[[nodiscard]] DataType TypeOfServer(std::string_view oid);

// Whether a column of that type keeps what belongs in one of the other.
[[nodiscard]] bool KeepsOnServer(std::string_view oid, DataType type);

// The columns of tables of those names, which are an array: table, kind of table, column, its type,
// and that as it is declared.
extern const std::string_view kCompanyColumns;
[[nodiscard]] std::string CompanyNames();
// The tables whose every change runs the trigger function of that name.
extern const std::string_view kVersionTriggers;

// The tables with versions, and how the trigger function is named that raises them.
inline constexpr std::string_view kVersionsTable = "kalversioni";
inline constexpr std::string_view kVersionFunction = "kalnuovaversione";
// The row that says which layout the tables have.
inline constexpr std::string_view kLayoutRow = "Layout";

}  // namespace kal::company
