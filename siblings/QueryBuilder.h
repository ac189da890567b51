// QueryBuilder: a selection from the company database, described as data.
//
// It holds what a check asks for, word by word: fields, tables with their aliases, joins and
// conditions. It knows no database language; DataAccess runs it. Values travel as values, never
// inside a text. One object describes one selection and lives where it is built; its texts are
// kept in the object itself, so describing a usual selection takes no memory from the heap.

#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <memory_resource>
#include <string_view>
#include <vector>

#include "platform/Variant.h"

namespace kal {

enum class CompareWith : std::uint8_t {
  Equal,
  NotEqual,
  Less,
  LessOrEqual,
  Greater,
  GreaterOrEqual
};

// The two kinds of join: rows that match on both sides, and every row of the left side.
enum class JoinKind : std::uint8_t { Inner, LeftOuter };

class QueryBuilder {
 public:
  // One comparison: a column (or an expression over one, such as "IsNull(Provvisoria,0)" or what
  // SqlFunctions returned) with a value.
  struct Comparison {
    std::string_view left;
    CompareWith operation = CompareWith::Equal;
    Variant value;
  };

  // Comparisons that must all hold.
  using All = std::initializer_list<Comparison>;

  // A condition of the selection or of a join; which of the parts counts is told by the kind.
  struct Condition {
    enum class Kind : std::uint8_t {
      Value,    // left, operation, value
      Columns,  // left = right, two columns
      Literal,  // left: a text of the database language as the rules write it
      AnyOf,    // one of the alternatives
    };
    Kind kind = Kind::Value;
    CompareWith operation = CompareWith::Equal;
    std::string_view left;
    std::string_view right;
    Variant value;
    std::pmr::vector<std::pmr::vector<Comparison>> alternatives;
  };

  struct Join {
    JoinKind kind = JoinKind::Inner;
    std::string_view table;
    std::pmr::vector<Condition> on;  // all must hold
  };

  QueryBuilder();
  QueryBuilder(const QueryBuilder&) = delete;
  QueryBuilder& operator=(const QueryBuilder&) = delete;
  ~QueryBuilder() = default;

  // A numeric option, handed through as it is.
  QueryBuilder& Option(std::int32_t number);
  // One or more columns, separated by commas, or "*". Several calls add up.
  QueryBuilder& Select(std::string_view columns);
  // The first table: a name, or "name as alias".
  QueryBuilder& From(std::string_view table);
  // Another table; the following On and OnAnyOf conditions belong to it.
  QueryBuilder& JoinWith(JoinKind kind, std::string_view table);
  QueryBuilder& On(std::string_view left, std::string_view right);
  QueryBuilder& OnAnyOf(std::initializer_list<All> alternatives);
  // Conditions of the selection; all must hold.
  QueryBuilder& Where(std::string_view left, CompareWith operation, Variant value);
  QueryBuilder& WhereEqual(std::string_view left, Variant value);
  QueryBuilder& WhereLiteral(std::string_view condition);
  QueryBuilder& WhereAnyOf(std::initializer_list<All> alternatives);
  // Says that the first row is all that will be read: whoever runs the selection may leave out the
  // others.
  QueryBuilder& OnlyFirst();
  // Forgets the conditions of the selection, not those of its joins, so that it can be run again
  // with others.
  QueryBuilder& ClearConditions();

  [[nodiscard]] const std::pmr::vector<std::int32_t>& Options() const { return options_; }
  [[nodiscard]] const std::pmr::vector<std::string_view>& Columns() const { return columns_; }
  [[nodiscard]] std::string_view Table() const { return table_; }
  [[nodiscard]] const std::pmr::vector<Join>& Joins() const { return joins_; }
  [[nodiscard]] const std::pmr::vector<Condition>& Conditions() const { return conditions_; }
  [[nodiscard]] bool IsOnlyFirst() const { return onlyFirst_; }

 private:
  [[nodiscard]] std::string_view Keep(std::string_view text);
  [[nodiscard]] Condition MakeAnyOf(std::initializer_list<All> alternatives);

  std::array<std::byte, 3072> store_;
  std::pmr::monotonic_buffer_resource memory_{store_.data(), store_.size()};
  std::pmr::vector<std::int32_t> options_{&memory_};
  std::pmr::vector<std::string_view> columns_{&memory_};
  std::string_view table_;
  std::pmr::vector<Join> joins_{&memory_};
  std::pmr::vector<Condition> conditions_{&memory_};
  bool onlyFirst_ = false;
};

}  // namespace kal
