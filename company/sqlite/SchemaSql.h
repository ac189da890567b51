// SchemaSql: the schema as SQLite's SQL.

#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "company/Schema.h"

namespace kal::company {

// What marks a file as a company.
inline constexpr std::int32_t kApplicationId = 0x4B434F47;  // "KCOG"

// The statements that make an empty company: tables and indexes. The tables refuse values of
// another kind than their columns': nothing would find them.
[[nodiscard]] std::string SchemaSql();
// The statement that makes one index, named after its table and columns.
[[nodiscard]] std::string IndexSql(const SchemaIndex& index);

// The type that a column was declared with in the schema, for columns of tables that are not part
// of it; a text type for a declaration that the schema never uses.
[[nodiscard]] DataType TypeOfDeclaration(std::string_view declaration);
[[nodiscard]] std::string_view DeclarationOfType(DataType type);

// Whether a column declared like that keeps values of the type as they were written: what SQLite
// takes from a declaration is whether to turn texts into numbers, and numbers into texts.
[[nodiscard]] bool Stores(std::string_view declaration, DataType type);

}  // namespace kal::company
