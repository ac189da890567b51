#include "company/sqlite/SchemaSql.h"

#include <algorithm>
#include <cstddef>

#include "company/sqlite/QueryTexts.h"
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

std::string TableSql(const SchemaTable& table) {
  std::string sql = "CREATE TABLE " + QuoteName(table.name) + " (";
  std::string_view separator;
  for (const SchemaColumn& column : table.columns) {
    sql.append(separator).append(QuoteName(column.name)).append(" ");
    sql += DeclarationOfType(column.type);
    separator = ", ";
  }
  return sql + ");\n";
}

// The index is named after its table and columns.
std::string IndexSql(const SchemaIndex& index) {
  constexpr std::string_view kYear = "Year(";
  std::string name(index.table);
  std::string columns;
  for (std::string_view rest = index.columns; !rest.empty();) {
    const std::size_t comma = std::min(rest.find(','), rest.size());
    const std::string_view item = rest.substr(0, comma);
    rest.remove_prefix(std::min(comma + 1, rest.size()));
    columns += columns.empty() ? "" : ", ";
    name += '_';
    if (item.starts_with(kYear)) {
      const std::string_view column = item.substr(kYear.size(), item.size() - kYear.size() - 1);
      columns += YearExpression(QuoteName(column));
      name.append("Year").append(column);
    } else {
      columns += QuoteName(item);
      name += item;
    }
  }
  return std::string(index.unique ? "CREATE UNIQUE INDEX " : "CREATE INDEX ") + QuoteName(name) +
         " ON " + QuoteName(index.table) + " (" + columns + ");\n";
}

}  // namespace

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

}  // namespace kal::company
