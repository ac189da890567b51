// Schema: the tables of the embedded company, as data.
//
// The schema makes the company file, tells the data access the type of every column, and tells
// the host the fields of the record sets that mirror a table.

#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "platform/Recordset.h"

namespace kal::company {

struct SchemaColumn {
  std::string_view name;
  DataType type;
};

struct SchemaTable {
  std::string_view name;
  std::span<const SchemaColumn> columns;
  bool growsWithEntries = false;  // every entry adds rows to it; the others change rarely
};

[[nodiscard]] std::span<const SchemaTable> Tables();
// Without regard to letter case; nullptr when there is none.
[[nodiscard]] const SchemaTable* FindTable(std::string_view name);

// Whether the database takes two names for the same: without regard to the case of ASCII letters.
[[nodiscard]] bool SameName(std::string_view left, std::string_view right);

// What marks a file as a company, and the layout of its tables.
inline constexpr std::int32_t kApplicationId = 0x4B434F47;  // "KCOG"
inline constexpr std::int32_t kLayoutVersion = 1;

// The statements that make an empty company: tables, and the indexes that serve the checks'
// selections.
[[nodiscard]] std::string SchemaSql();

// The type that a column was declared with in the schema, for columns of tables that are not part
// of it; a text type for a declaration that the schema never uses.
[[nodiscard]] DataType TypeOfDeclaration(std::string_view declaration);
[[nodiscard]] std::string_view DeclarationOfType(DataType type);

}  // namespace kal::company
