// PostgresDialect: PostgreSQL's SQL, and values as the texts in which they travel.
//
// Parameters carry their type in the SQL, by what they are compared with and by their kind. A value
// that can't equal anything there travels as Null.

#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "company/Branches.h"
#include "company/Dialect.h"
#include "company/QuerySql.h"
#include "company/postgres/Postgres.h"
#include "platform/MemoryRecordset.h"

namespace kal::company {

// What the SQL of a comparison depends on.
enum class ValueKind : std::uint8_t { None, Flag, Whole, Fraction, Day, Text };
[[nodiscard]] ValueKind KindOf(const Variant& value);

class PostgresDialect final : public Dialect {
 public:
  [[nodiscard]] std::string Year(std::string_view columnSql) const override;
  [[nodiscard]] Operand IfNull(const Operand& value, const Operand& otherwise) const override;
  [[nodiscard]] std::string Compared(const Operand& operand) const override;
  [[nodiscard]] ComparisonSql CompareWithValue(const Operand& operand, CompareWith operation,
                                               const Variant& value,
                                               std::size_t parameter) const override;
  // Of several the first by what is read of them, on the nearest day where days are walked.
  [[nodiscard]] std::string FirstRow(const Branches& branches,
                                     const std::vector<ComparisonSql>& alternative) const override;
};

[[nodiscard]] std::string_view TypeName(DataType type);

// A value to be compared with something of that type.
[[nodiscard]] PostgresValue ToParameter(const Variant& value, const ComparedValue& compared);

// A column of a table as an array.
[[nodiscard]] std::string ToArray(const RowTable& rows, std::size_t column);

// The server's text as a value of that type. Raises 13 when it is of another kind and 6 when it is
// out of the type's range; the source says whose value it is.
[[nodiscard]] Variant ToVariant(std::string_view text, DataType type, std::string_view source);

}  // namespace kal::company
