// Schema: the tables of a company, as data.
//
// The schema makes a company in an engine, tells the engine the type of every column, and tells
// the host the fields of the record sets that mirror a table.

#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

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

// What stands between the commas, without the blanks around it.
[[nodiscard]] std::vector<std::string_view> Items(std::string_view list);

// An index that serves the checks' selections.
struct SchemaIndex {
  std::string_view table;
  std::string_view columns;  // separated by commas; Year(x) is the year of a date column
  bool unique = false;
};

struct IndexedColumn {
  std::string_view name;
  bool isYear;  // of the column's dates
};
[[nodiscard]] std::vector<IndexedColumn> ColumnsOf(const SchemaIndex& index);
// Made of the table and the columns.
[[nodiscard]] std::string NameOf(const SchemaIndex& index);

// Columns whose values, where all are there, name one row.
struct SchemaKey {
  std::string_view table;
  std::string_view columns;  // separated by commas
};

// Two dates of a row, the first and the last day of a period.
struct SchemaPeriod {
  std::string_view table;
  std::string_view start;
  std::string_view end;
  std::string_view key;  // of periods that may not overlap; "" where they may
};

[[nodiscard]] std::span<const SchemaTable> Tables();
[[nodiscard]] std::span<const SchemaIndex> Indexes();
[[nodiscard]] std::span<const SchemaKey> Keys();
[[nodiscard]] std::span<const SchemaPeriod> Periods();
// Without regard to letter case; nullptr when there is none.
[[nodiscard]] const SchemaTable* FindTable(std::string_view name);
[[nodiscard]] const SchemaColumn* FindColumn(const SchemaTable& table, std::string_view name);

// The layout of the tables; a company keeps the one that it was made with.
inline constexpr std::int32_t kLayoutVersion = 1;

}  // namespace kal::company
