// Selection: what a check asks of the company database, described as constant data.
//
// A selection holds word by word what is asked for: fields, tables with their aliases, joins and
// conditions. It knows no database language; DataAccess runs it. The values to compare with are no
// part of it: they come with each use, one for each comparison, in the order in which the
// comparisons stand (those of joins first). So a selection is a constant beside the check that
// asks it, and whoever runs it may prepare it once and know it again by its address.
//
//   constexpr Selection kConto =
//       Selection().Select("CodConto").From("STDPianoDeiConti").WhereEqual("CodConto");
//   … Open<kConto>(siblings, codConto) …
//
// Where a name is known only at run time, a "?" stands for it in the texts, the same in all.

#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>

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

// What stands in the texts of a selection for the name given with each use.
inline constexpr std::string_view kGivenName = "?";

// A list that constants can hold. One item too many does not compile, or throws at run time.
template <class Item, std::size_t kMost>
class Few {
 public:
  constexpr void Add(const Item& item) {
    if (size_ == kMost) {
      throw std::length_error("too many parts of a selection");
    }
    items_[size_++] = item;
  }
  [[nodiscard]] constexpr Item& Last() { return items_[size_ - 1]; }
  [[nodiscard]] constexpr std::size_t Size() const { return size_; }
  [[nodiscard]] constexpr const Item* begin() const { return items_.data(); }
  [[nodiscard]] constexpr const Item* end() const { return items_.data() + size_; }
  constexpr const Item& operator[](std::size_t at) const { return items_[at]; }

 private:
  std::array<Item, kMost> items_{};
  std::size_t size_ = 0;
};

class Selection {
 public:
  // One comparison of a column (or of an expression over one, such as "IsNull(Provvisoria,0)")
  // with a value that comes with each use.
  struct Comparison {
    std::string_view left;
    CompareWith operation = CompareWith::Equal;
  };

  // Comparisons that must all hold.
  using All = Few<Comparison, 2>;

  // A condition of the selection or of a join; which of the parts counts is told by the kind.
  struct Condition {
    enum class Kind : std::uint8_t {
      Value,    // left compared with a value
      Columns,  // left = right, two columns
      Literal,  // left: a condition in words of the database
      AnyOf,    // one of the alternatives
    };
    Kind kind = Kind::Value;
    CompareWith operation = CompareWith::Equal;
    std::string_view left;
    std::string_view right;
    Few<All, 3> alternatives;
  };

  struct Join {
    JoinKind kind = JoinKind::Inner;
    std::string_view table;
    Few<Condition, 4> on;  // all must hold
  };

  // A numeric option, handed through as it is; 0 for none.
  [[nodiscard]] constexpr Selection Option(std::int32_t number) const {
    Selection made = *this;
    made.option_ = number;
    return made;
  }
  // One or more columns, separated by commas, or "*". Several calls add up.
  [[nodiscard]] constexpr Selection Select(std::string_view columns) const {
    Selection made = *this;
    made.columns_.Add(columns);
    return made;
  }
  // The first table: a name, or "name as alias".
  [[nodiscard]] constexpr Selection From(std::string_view table) const {
    Selection made = *this;
    made.table_ = table;
    return made;
  }
  // Another table; the following On and OnAnyOf conditions belong to it.
  [[nodiscard]] constexpr Selection JoinWith(JoinKind kind, std::string_view table) const {
    Selection made = *this;
    made.joins_.Add({kind, table, {}});
    return made;
  }
  [[nodiscard]] constexpr Selection On(std::string_view left, std::string_view right) const {
    Selection made = *this;
    made.joins_.Last().on.Add({Condition::Kind::Columns, CompareWith::Equal, left, right, {}});
    return made;
  }
  [[nodiscard]] constexpr Selection OnAnyOf(
      std::initializer_list<std::initializer_list<Comparison>> alternatives) const {
    Selection made = *this;
    made.joins_.Last().on.Add(AnyOf(alternatives));
    return made;
  }
  // Conditions of the selection; all must hold.
  [[nodiscard]] constexpr Selection Where(std::string_view left, CompareWith operation) const {
    Selection made = *this;
    made.conditions_.Add({Condition::Kind::Value, operation, left, {}, {}});
    return made;
  }
  [[nodiscard]] constexpr Selection WhereEqual(std::string_view left) const {
    return Where(left, CompareWith::Equal);
  }
  [[nodiscard]] constexpr Selection WhereLiteral(std::string_view condition) const {
    Selection made = *this;
    made.conditions_.Add({Condition::Kind::Literal, CompareWith::Equal, condition, {}, {}});
    return made;
  }
  [[nodiscard]] constexpr Selection WhereAnyOf(
      std::initializer_list<std::initializer_list<Comparison>> alternatives) const {
    Selection made = *this;
    made.conditions_.Add(AnyOf(alternatives));
    return made;
  }
  // A condition as selections hold it: of the table joined last, or of the selection.
  [[nodiscard]] constexpr Selection On(const Condition& condition) const {
    Selection made = *this;
    made.joins_.Last().on.Add(condition);
    return made;
  }
  [[nodiscard]] constexpr Selection Where(const Condition& condition) const {
    Selection made = *this;
    made.conditions_.Add(condition);
    return made;
  }
  // Says that the first row is all that will be read: whoever runs the selection may leave out the
  // others.
  [[nodiscard]] constexpr Selection OnlyFirst() const {
    Selection made = *this;
    made.onlyFirst_ = true;
    return made;
  }

  [[nodiscard]] constexpr std::int32_t Option() const { return option_; }
  [[nodiscard]] constexpr const Few<std::string_view, 4>& Columns() const { return columns_; }
  [[nodiscard]] constexpr std::string_view Table() const { return table_; }
  [[nodiscard]] constexpr const Few<Join, 3>& Joins() const { return joins_; }
  [[nodiscard]] constexpr const Few<Condition, 8>& Conditions() const { return conditions_; }
  [[nodiscard]] constexpr bool IsOnlyFirst() const { return onlyFirst_; }

  // Hands every comparison with a value over, in the order of the values.
  template <class Visit>
  constexpr void ForEachComparison(Visit&& visit) const {
    const auto walk = [&visit](const auto& conditions) {
      for (const Condition& condition : conditions) {
        if (condition.kind == Condition::Kind::Value) {
          visit(Comparison{condition.left, condition.operation});
        }
        for (const All& alternative : condition.alternatives) {
          for (const Comparison& comparison : alternative) {
            visit(comparison);
          }
        }
      }
    };
    for (const Join& join : joins_) {
      walk(join.on);
    }
    walk(conditions_);
  }
  // How many values each use brings.
  [[nodiscard]] constexpr std::size_t ValueCount() const {
    std::size_t count = 0;
    ForEachComparison([&count](const Comparison&) { ++count; });
    return count;
  }
  // Whether a name comes with each use.
  [[nodiscard]] constexpr bool WantsName() const {
    const auto open = [](std::string_view text) { return text.find('?') != text.npos; };
    bool wants = open(table_) || std::ranges::any_of(columns_, open);
    for (const Join& join : joins_) {
      wants = wants || open(join.table);
    }
    ForEachComparison(
        [&](const Comparison& comparison) { wants = wants || open(comparison.left); });
    return wants;
  }

 private:
  static constexpr Condition AnyOf(
      std::initializer_list<std::initializer_list<Comparison>> alternatives) {
    Condition group{Condition::Kind::AnyOf, CompareWith::Equal, {}, {}, {}};
    for (const auto& comparisons : alternatives) {
      group.alternatives.Add({});
      for (const Comparison& comparison : comparisons) {
        group.alternatives.Last().Add(comparison);
      }
    }
    return group;
  }

  std::int32_t option_ = 0;
  bool onlyFirst_ = false;
  Few<std::string_view, 4> columns_;
  std::string_view table_;
  Few<Join, 3> joins_;
  Few<Condition, 8> conditions_;
};

// One use of a selection: what is asked, and the values to compare with. It holds references and
// lives no longer than the question.
class Query {
 public:
  // A use of a constant, known again by its address.
  template <const Selection& kSelection>
  [[nodiscard]] static Query Of(std::span<const Variant> values, std::string_view name = {}) {
    return {kSelection, values, name, true};
  }
  // A use of a selection that was put together at run time.
  [[nodiscard]] static Query OfPassing(const Selection& selection, std::span<const Variant> values,
                                       std::string_view name = {}) {
    return {selection, values, name, false};
  }

  [[nodiscard]] const Selection& What() const { return *selection_; }
  [[nodiscard]] std::span<const Variant> Values() const { return values_; }
  [[nodiscard]] std::string_view Name() const { return name_; }
  // Whether the selection lasts as long as the program, so that its address names it.
  [[nodiscard]] bool IsConstant() const { return isConstant_; }

  // A text of the selection with the name in the place of its "?".
  [[nodiscard]] std::string Text(std::string_view text) const {
    std::string full(text);
    if (const std::size_t at = full.find(kGivenName); at != std::string::npos) {
      full.replace(at, kGivenName.size(), name_);
    }
    return full;
  }

 private:
  Query(const Selection& selection, std::span<const Variant> values, std::string_view name,
        bool isConstant)
      : selection_(&selection), values_(values), name_(name), isConstant_(isConstant) {}

  const Selection* selection_;
  std::span<const Variant> values_;
  std::string_view name_;
  bool isConstant_;
};

}  // namespace kal
