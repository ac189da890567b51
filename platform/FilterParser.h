// FilterParser: a filter text as an expression over the rows of a table.
//
// The expression is a tree kept in one array. "and" binds tighter than "or". It lives on the
// stack of whoever sets a filter: one of usual size takes no memory from the heap.

#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory_resource>
#include <string_view>
#include <vector>

#include "platform/MemoryRecordset.h"

namespace kal {

class FilterExpression {
 public:
  enum class Operation : std::uint8_t {
    All,  // every operand holds
    Any,  // at least one does
    IsNull,
    IsNotNull,
    Equal,
    NotEqual,
    Less,
    LessOrEqual,
    Greater,
    GreaterOrEqual,
    StartsWith,
    Contains,
  };

  static constexpr std::uint32_t kNone = UINT32_MAX;

  // The operands of All and Any are nodes too, chained by `next`.
  struct Node {
    Operation operation = Operation::All;
    std::uint32_t column = 0;
    std::uint32_t firstOperand = kNone;
    std::uint32_t next = kNone;
    Variant constant;
  };

  // Raises 3001 when the text is no filter for that table. The table must outlive the expression.
  FilterExpression(const RowTable& table, std::string_view text);
  FilterExpression(const FilterExpression&) = delete;
  FilterExpression& operator=(const FilterExpression&) = delete;
  ~FilterExpression() = default;

  [[nodiscard]] bool Matches(std::size_t row) const { return Holds(nodes_[root_], row); }

  // Whether it is one equality and nothing else.
  [[nodiscard]] bool IsEquality() const { return nodes_[root_].operation == Operation::Equal; }
  // Calls visit(node) for the equalities that every matching row meets.
  template <class Visit>
  void ForEachRequiredEquality(Visit&& visit) const {
    VisitEqualities(nodes_[root_], visit);
  }

 private:
  [[nodiscard]] bool Holds(const Node& node, std::size_t row) const;

  template <class Visit>
  void VisitEqualities(const Node& node, Visit& visit) const {
    if (node.operation == Operation::Equal) {
      visit(node);
    } else if (node.operation == Operation::All) {
      for (std::uint32_t at = node.firstOperand; at != kNone; at = nodes_[at].next) {
        VisitEqualities(nodes_[at], visit);
      }
    }
  }

  static constexpr std::size_t kUsualNodes = 12;

  const RowTable& table_;
  alignas(Node) std::array<std::byte, kUsualNodes * sizeof(Node)> store_;
  std::pmr::monotonic_buffer_resource memory_{store_.data(), store_.size()};
  std::pmr::vector<Node> nodes_{&memory_};
  std::uint32_t root_ = kNone;
};

}  // namespace kal
