#include "company/sqlite/SchemaSql.h"

#include <algorithm>
#include <cstddef>

#include "company/QueryTexts.h"
#include "company/sqlite/SqliteDialect.h"
#include "platform/LetterCase.h"

namespace kal::company {
namespace {

// How a column of each type is declared. Amounts and dates are kept as texts: the word TEXT in the
// declaration stops SQLite from turning "0.10" or a large amount into a rounded number.
struct Declaration {
  DataType type;
  std::string_view text;
};
constexpr Declaration kDeclarations[] = {
    {DataType::VarWChar, "TEXT"},   {DataType::SmallInt, "SMALLINT"},
    {DataType::Integer, "INTEGER"}, {DataType::Currency, "AMOUNT_TEXT"},
    {DataType::Date, "DATE_TEXT"},  {DataType::Boolean, "BOOLEAN"},
    {DataType::Double, "DOUBLE"},
};

// What a value of the type looks like; "?" stands for the column, also where a pattern would mean
// any letter by it. A Null meets every condition.
std::string_view ConditionOf(DataType type) {
  switch (type) {
    case DataType::SmallInt:
      return "typeof(?) = 'integer' AND ? BETWEEN -32768 AND 32767";
    case DataType::Integer:
      return "typeof(?) = 'integer' AND ? BETWEEN -2147483648 AND 2147483647";
    case DataType::Boolean:
      return "typeof(?) = 'integer' AND ? BETWEEN -1 AND 1";
    case DataType::Double:
      return "typeof(?) IN ('real', 'integer')";
    case DataType::Currency:
      return "typeof(?) = 'text' AND ? NOT GLOB '*[^-.0-9]*' AND instr(substr(?, 2), '-') = 0 AND "
             "? NOT GLOB '*.*.*' AND (? GLOB '*[0-9].[0-9]*' OR ? NOT GLOB '*.*') AND "
             "? GLOB '*[0-9]' AND (instr(?, '.') = 0 OR length(?) - instr(?, '.') <= 4) AND "
             "CAST(? AS INTEGER) BETWEEN -922337203685477 AND 922337203685477";
    case DataType::Date:
      return "typeof(?) = 'text' AND "
             "? GLOB '[0-9][0-9][0-9][0-9]-[0-9][0-9]-[0-9][0-9]*' AND "
             "date(substr(?, 1, 10), '+0 days') = substr(?, 1, 10)";
    default:
      return "typeof(?) = 'text'";
  }
}

std::string ColumnSql(const SchemaColumn& column) {
  const std::string name = QuoteName(column.name);
  std::string sql =
      name + " " + std::string(DeclarationOfType(column.type)) + " CHECK (" + name + " IS NULL OR ";
  for (const char c : ConditionOf(column.type)) {
    c == '?' ? sql += name : sql += c;
  }
  return sql + ")";
}

std::string TableSql(const SchemaTable& table) {
  std::string sql = "CREATE TABLE " + QuoteName(table.name) + " (";
  std::string_view separator;
  for (const SchemaColumn& column : table.columns) {
    sql += separator;
    sql += ColumnSql(column);
    separator = ", ";
  }
  return sql + ");\n";
}

}  // namespace

std::string IndexSql(const SchemaIndex& index) {
  std::string columns;
  for (const IndexedColumn& column : ColumnsOf(index)) {
    const std::string name = QuoteName(column.name);
    columns += columns.empty() ? "" : ", ";
    columns += column.isYear ? SqliteDialect().Year(name) : name;
  }
  return std::string(index.unique ? "CREATE UNIQUE INDEX " : "CREATE INDEX ") +
         QuoteName(NameOf(index)) + " ON " + QuoteName(index.table) + " (" + columns + ");\n";
}

std::string SchemaSql() {
  std::string sql;
  for (const SchemaTable& table : Tables()) {
    sql += TableSql(table);
  }
  for (const SchemaIndex& index : Indexes()) {
    sql += IndexSql(index);
  }
  return sql;
}

DataType TypeOfDeclaration(std::string_view declaration) {
  const auto found =
      std::ranges::find_if(kDeclarations, [declaration](const Declaration& candidate) {
        return SameName(candidate.text, declaration);
      });
  return found == std::end(kDeclarations) ? DataType::VarWChar : found->type;
}

std::string_view DeclarationOfType(DataType type) {
  switch (type) {
    case DataType::TinyInt:
      return DeclarationOfType(DataType::SmallInt);
    case DataType::Single:
      return DeclarationOfType(DataType::Double);
    default:
      break;
  }
  const auto found = std::ranges::find(kDeclarations, type, &Declaration::type);
  return found == std::end(kDeclarations) ? DeclarationOfType(DataType::VarWChar) : found->text;
}

bool Stores(std::string_view declaration, DataType type) {
  const auto says = [declaration](std::string_view part) {
    const auto same = [](char a, char b) { return FoldedAscii(a) == FoldedAscii(b); };
    return std::search(declaration.begin(), declaration.end(), part.begin(), part.end(), same) !=
           declaration.end();
  };
  // The order in which SQLite looks for these parts.
  const bool keepsIntegers = says("INT");
  const bool keepsTexts = !keepsIntegers && (says("CHAR") || says("CLOB") || says("TEXT"));
  const bool keepsAll = !keepsIntegers && !keepsTexts && (declaration.empty() || says("BLOB"));
  const bool keepsReals =
      !keepsIntegers && !keepsTexts && !keepsAll && (says("REAL") || says("FLOA") || says("DOUB"));
  switch (type) {
    case DataType::SmallInt:
    case DataType::Integer:
    case DataType::Boolean:
      return !keepsTexts && !keepsAll && !keepsReals;
    case DataType::Double:
      return !keepsTexts && !keepsAll;
    case DataType::Date:  // no number can pass for one
      return keepsTexts || (!keepsIntegers && !keepsReals && !keepsAll);
    default:
      return keepsTexts;
  }
}

}  // namespace kal::company
