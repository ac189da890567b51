#include "company/postgres/PostgresDialect.h"

#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <optional>

#include "company/DataError.h"

namespace kal::company {
namespace {

bool IsWholeNumber(const DataType type) {
  return type == DataType::SmallInt || type == DataType::Integer || type == DataType::TinyInt ||
         type == DataType::BigInt;
}

// The shortest text that stands for the number; nothing where it is none.
PostgresValue ShortText(double number) {
  if (!std::isfinite(number)) {
    return std::nullopt;
  }
  std::array<char, 32> text{};
  const auto end = std::to_chars(text.data(), text.data() + text.size(), number).ptr;
  return std::string(text.data(), end);
}

// The value as a number; nothing where it is none.
PostgresValue NumberText(const Variant& value) {
  switch (value.VarType()) {
    case Variant::Type::Boolean:
      return *value.As<bool>() ? "1" : "0";
    case Variant::Type::TinyInt:
    case Variant::Type::SmallInt:
    case Variant::Type::Integer:
    case Variant::Type::BigInt:
      return CStr(value);
    case Variant::Type::Currency:
      return value.As<Currency>()->ToText();
    case Variant::Type::Decimal:
      return value.As<Decimal>()->ToText();
    case Variant::Type::Single:
    case Variant::Type::Double:
      return ShortText(CDbl(value));
    case Variant::Type::Text:
      if (const auto number = Decimal::FromText(*value.AsText())) {
        return number->ToText();
      }
      return std::nullopt;
    default:
      return std::nullopt;
  }
}

bool IsWholeText(const std::string& number) {
  return number.find_first_of(".eE") == std::string::npos;
}

// A text or number beside a date comes before all of them, or behind: texts compare by their
// letters, numbers come before texts.
std::string DayText(const Variant& value) {
  if (const auto* day = value.As<Date>(); day != nullptr) {
    return day->WithoutTime().ToIso();
  }
  const auto text = value.AsText();
  if (!text || *text < "0") {
    return "-infinity";
  }
  const std::optional<Date> day = Date::FromIso(*text);
  return day ? day->ToIso() : "infinity";
}

PostgresValue PlainText(const Variant& value) {
  if (const auto* day = value.As<Date>(); day != nullptr) {
    return day->ToIso();
  }
  const auto text = value.AsText();
  if (!text) {
    return NumberText(value);
  }
  if (text->find('\0') != std::string_view::npos) {  // no stored text has one
    return std::nullopt;
  }
  return std::string(*text);
}

// The first row in two ranges. The order that is asked for leaves the planner one index: that of
// days and the other column, in which a pair is one place. As the day alone is no constant to it,
// but a range of one day, it can't take another one.
std::string DayByDay(const Branches& branches, const ComparisonSql& day,
                     const ComparisonSql& other) {
  const bool below = IsBelow(other.operation);
  const std::string& left = day.left.sql;
  const std::string pair = "(" + left + ", " + other.left.sql + ")";
  const std::string bothOrders = left + (below ? " DESC, " : ", ") + other.left.sql;
  const std::string met = branches.table + " WHERE " + AllOf(branches.all) + " AND ";
  const auto exists = [&](const std::string& its) {
    return "(SELECT 1 FROM " + met + pair + std::string(Symbol(other.operation)) + "(" + its +
           ", " + other.parameter + ") AND " + left + (below ? " >= " : " <= ") + its +
           " ORDER BY " + bothOrders + (below ? " DESC" : "") + " LIMIT 1) IS NOT NULL";
  };
  return "(SELECT its.* FROM (" + DaysOf(branches, day) + "SELECT day FROM days WHERE " +
         exists("days.day") + " LIMIT 1) AS found CROSS JOIN LATERAL (" + branches.select + met +
         left + " >= found.day AND " + left + " <= found.day AND " + other.sql + " ORDER BY " +
         left + ", " + other.left.sql + " LIMIT 1) AS its)";
}

[[noreturn]] void Refuse(RunTime error, std::string_view text, std::string_view source,
                         std::string_view what) {
  RaiseDataError(error, std::string(source) + ": the stored value '" + std::string(text) + "' is " +
                            std::string(what));
}

template <class T>
Variant ReadWhole(std::string_view text, std::string_view source) {
  T whole{};
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), whole);
  if (error == std::errc::result_out_of_range) {
    Refuse(RunTime::Overflow, text, source, "out of range");
  }
  if (error != std::errc() || end != text.data() + text.size()) {
    Refuse(RunTime::TypeMismatch, text, source, "no whole number");
  }
  return whole;
}

Variant ReadAmount(std::string_view text, std::string_view source) {
  constexpr std::size_t kDecimals = 4;
  std::string_view exact = text;
  if (const std::size_t point = text.find('.'); point != std::string_view::npos) {
    while (exact.size() > point + 1 + kDecimals && exact.back() == '0') {
      exact.remove_suffix(1);
    }
  }
  if (const auto amount = Currency::FromExactText(exact)) {
    return *amount;
  }
  if (exact.find_first_not_of("-0123456789") == std::string_view::npos) {
    Refuse(RunTime::Overflow, text, source, "out of range");
  }
  Refuse(RunTime::TypeMismatch, text, source, "no amount of up to four decimals");
}

Variant ReadNumber(std::string_view text, std::string_view source) {
  double number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size()) {
    Refuse(RunTime::TypeMismatch, text, source, "no number");
  }
  return number;
}

}  // namespace

ValueKind KindOf(const Variant& value) {
  switch (value.VarType()) {
    case Variant::Type::Empty:
    case Variant::Type::NullValue:
      return ValueKind::None;
    case Variant::Type::Boolean:
      return ValueKind::Flag;
    case Variant::Type::TinyInt:
    case Variant::Type::SmallInt:
    case Variant::Type::Integer:
    case Variant::Type::BigInt:
      return ValueKind::Whole;
    case Variant::Type::Date:
      return ValueKind::Day;
    case Variant::Type::Text:
      return ValueKind::Text;
    default:
      return ValueKind::Fraction;
  }
}

std::string PostgresDialect::Year(std::string_view columnSql) const {
  return "(extract(year FROM " + std::string(columnSql) + ")::integer)";
}

Operand PostgresDialect::IfNull(const Operand& value, const Operand& otherwise) const {
  return {.sql = "coalesce(" + Compared(value) + ", " + Compared(otherwise) + ")",
          .type = value.type == DataType::Boolean ? DataType::Integer : value.type,
          .column = {},
          .indexed = false};
}

std::string PostgresDialect::Compared(const Operand& operand) const {
  return operand.type == DataType::Boolean ? "(" + operand.sql + ")::integer" : operand.sql;
}

ComparisonSql PostgresDialect::CompareWithValue(const Operand& operand, CompareWith operation,
                                                const Variant& value, std::size_t parameter) const {
  const DataType type = operand.type.value_or(DataType::VarWChar);
  const ValueKind kind = KindOf(value);
  std::string left = operand.sql;
  std::string its = "$" + std::to_string(parameter) + "::";
  if (type == DataType::Boolean && kind == ValueKind::Flag) {
    its += "boolean";
  } else if (type == DataType::Boolean || IsWholeNumber(type)) {
    left = Compared(operand);
    its += kind == ValueKind::Fraction ? "numeric" : "bigint";
  } else if (type == DataType::Date) {
    its += "date";
  } else if (type == DataType::Double || type == DataType::Single) {
    its += "double precision";
  } else {
    its += "text";
    left += IsRange(operation) ? " COLLATE \"C\"" : "";
  }
  return {left.append(Symbol(operation)).append(its), operand, operation, parameter - 1, its};
}

std::string PostgresDialect::FirstRow(const Branches& branches,
                                      const std::vector<ComparisonSql>& alternative) const {
  if (const auto [day, other] = RangesOf(alternative); day != nullptr) {
    return DayByDay(branches, *day, *other);
  }
  // The selection's columns by their places.
  std::string places = "1";
  for (std::size_t column = 2; column <= branches.columns; ++column) {
    places += ", " + std::to_string(column);
  }
  return "(" + branches.select + branches.table + " WHERE " + AllOf(branches.all) + " AND " +
         AllOf(alternative) + " ORDER BY " + places + " LIMIT 1)";
}

std::string_view TypeName(DataType type) {
  switch (type) {
    case DataType::TinyInt:
    case DataType::SmallInt:
      return "smallint";
    case DataType::Integer:
      return "integer";
    case DataType::BigInt:
      return "bigint";
    case DataType::Currency:
      return "numeric(19,4)";
    case DataType::Date:
      return "date";
    case DataType::Boolean:
      return "boolean";
    case DataType::Single:
    case DataType::Double:
      return "double precision";
    default:
      return "text";
  }
}

PostgresValue ToParameter(const Variant& value, const ComparedValue& compared) {
  const ValueKind kind = KindOf(value);
  if (kind == ValueKind::None) {
    return std::nullopt;
  }
  const DataType type = compared.with.value_or(DataType::VarWChar);
  if (type == DataType::Date) {
    return DayText(value);
  }
  if (type == DataType::Boolean || IsWholeNumber(type)) {
    PostgresValue number = NumberText(value);
    // A text that is no whole number equals none.
    return number && kind != ValueKind::Fraction && !IsWholeText(*number) ? std::nullopt : number;
  }
  return type == DataType::Double || type == DataType::Single ? NumberText(value)
                                                              : PlainText(value);
}

std::string ToArray(const RowTable& rows, std::size_t column) {
  const ComparedValue compared{rows.Columns()[column].type, false};
  std::string array = "{";
  for (std::size_t row = 0; row < rows.RowCount(); ++row) {
    array += row == 0 ? "" : ",";
    const Variant& cell = rows.Cell(row, column);
    const PostgresValue text =
        compared.with == DataType::Currency ? NumberText(cell) : ToParameter(cell, compared);
    if (!text) {
      array += "NULL";
      continue;
    }
    array += '"';
    for (const char letter : *text) {
      array += letter == '"' || letter == '\\' ? "\\" : "";
      array += letter;
    }
    array += '"';
  }
  return array + "}";
}

Variant ToVariant(std::string_view text, DataType type, std::string_view source) {
  switch (type) {
    case DataType::SmallInt:
      return ReadWhole<std::int16_t>(text, source);
    case DataType::Integer:
      return ReadWhole<std::int32_t>(text, source);
    case DataType::Double:
      return ReadNumber(text, source);
    case DataType::Currency:
      return ReadAmount(text, source);
    case DataType::Date:
      if (const std::optional<Date> date = Date::FromIso(text)) {
        return *date;
      }
      Refuse(RunTime::TypeMismatch, text, source, "no date yyyy-mm-dd");
    case DataType::Boolean:
      return text == "t";
    default:
      return text;
  }
}

}  // namespace kal::company
