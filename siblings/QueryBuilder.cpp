#include "siblings/QueryBuilder.h"

#include <algorithm>
#include <utility>

namespace kal {

std::string_view QueryBuilder::Keep(std::string_view text) {
  if (text.empty()) {
    return {};
  }
  char* copy = static_cast<char*>(memory_.allocate(text.size(), 1));
  std::copy(text.begin(), text.end(), copy);
  return {copy, text.size()};
}

QueryBuilder::QueryBuilder() {
  // Room for a usual selection at once: what a growing vector leaves behind is not used again.
  columns_.reserve(4);
  conditions_.reserve(6);
}

QueryBuilder& QueryBuilder::Option(std::int32_t number) {
  options_.push_back(number);
  return *this;
}

QueryBuilder& QueryBuilder::Select(std::string_view columns) {
  columns_.push_back(Keep(columns));
  return *this;
}

QueryBuilder& QueryBuilder::From(std::string_view table) {
  table_ = Keep(table);
  return *this;
}

QueryBuilder& QueryBuilder::JoinWith(JoinKind kind, std::string_view table) {
  joins_.push_back({kind, Keep(table), std::pmr::vector<Condition>(&memory_)});
  return *this;
}

QueryBuilder& QueryBuilder::On(std::string_view left, std::string_view right) {
  Condition condition;
  condition.kind = Condition::Kind::Columns;
  condition.left = Keep(left);
  condition.right = Keep(right);
  joins_.back().on.push_back(std::move(condition));
  return *this;
}

QueryBuilder& QueryBuilder::OnAnyOf(std::initializer_list<All> alternatives) {
  joins_.back().on.push_back(MakeAnyOf(alternatives));
  return *this;
}

QueryBuilder& QueryBuilder::Where(std::string_view left, CompareWith operation, Variant value) {
  Condition& condition = conditions_.emplace_back();
  condition.operation = operation;
  condition.left = Keep(left);
  condition.value = std::move(value);
  return *this;
}

QueryBuilder& QueryBuilder::WhereEqual(std::string_view left, Variant value) {
  return Where(left, CompareWith::Equal, std::move(value));
}

QueryBuilder& QueryBuilder::WhereLiteral(std::string_view condition) {
  Condition literal;
  literal.kind = Condition::Kind::Literal;
  literal.left = Keep(condition);
  conditions_.push_back(std::move(literal));
  return *this;
}

QueryBuilder& QueryBuilder::WhereAnyOf(std::initializer_list<All> alternatives) {
  conditions_.push_back(MakeAnyOf(alternatives));
  return *this;
}

QueryBuilder& QueryBuilder::OnlyFirst() {
  onlyFirst_ = true;
  return *this;
}

QueryBuilder& QueryBuilder::ClearConditions() {
  conditions_.clear();
  return *this;
}

QueryBuilder::Condition QueryBuilder::MakeAnyOf(std::initializer_list<All> alternatives) {
  Condition group{.kind = Condition::Kind::AnyOf,
                  .left = {},
                  .right = {},
                  .value = {},
                  .alternatives = std::pmr::vector<std::pmr::vector<Comparison>>(&memory_)};
  group.alternatives.reserve(alternatives.size());
  for (const All& all : alternatives) {
    auto& comparisons = group.alternatives.emplace_back();
    comparisons.reserve(all.size());
    for (const Comparison& comparison : all) {
      comparisons.push_back({Keep(comparison.left), comparison.operation, comparison.value});
    }
  }
  return group;
}

}  // namespace kal
