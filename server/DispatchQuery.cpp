#include "server/DispatchQuery.h"

#include "server/SiblingNames.h"

namespace kal {
namespace {

void AddComparison(LateBound& builder, std::string_view left, CompareWith operation,
                   const Variant& value) {
  builder.Do(names::query::kAddCondition, left,
             names::query::kOperators.at(static_cast<std::size_t>(operation)), value);
}

void AddAnyOf(LateBound& builder, const QueryBuilder::Condition& group) {
  builder.Do(names::query::kBeginAnyOf);
  for (const auto& alternative : group.alternatives) {
    builder.Do(names::query::kBeginAlternative);
    for (const QueryBuilder::Comparison& comparison : alternative) {
      AddComparison(builder, comparison.left, comparison.operation, comparison.value);
    }
  }
  builder.Do(names::query::kEndAnyOf);
}

void AddCondition(LateBound& builder, const QueryBuilder::Condition& condition) {
  switch (condition.kind) {
    case QueryBuilder::Condition::Kind::Value:
      return AddComparison(builder, condition.left, condition.operation, condition.value);
    case QueryBuilder::Condition::Kind::Columns:
      return builder.Do(names::query::kAddColumnPair, condition.left, condition.right);
    case QueryBuilder::Condition::Kind::Literal:
      return builder.Do(names::query::kAddLiteral, condition.left);
    case QueryBuilder::Condition::Kind::AnyOf:
      return AddAnyOf(builder, condition);
  }
}

}  // namespace

LateBound DescribeQuery(const QueryBuilder& query) {
  LateBound builder = LateBound::Create(names::query::kProgId);
  for (const std::int32_t option : query.Options()) {
    builder.Put(names::query::kOption, option);
  }
  for (const std::string_view columns : query.Columns()) {
    builder.Do(names::query::kAddFields, columns);
  }
  builder.Do(names::query::kAddTable, query.Table());
  for (const QueryBuilder::Join& join : query.Joins()) {
    builder.Do(names::query::kAddJoin,
               names::query::kJoinKinds.at(static_cast<std::size_t>(join.kind)), join.table);
    for (const QueryBuilder::Condition& condition : join.on) {
      AddCondition(builder, condition);
    }
  }
  builder.Do(names::query::kBeginWhere);
  for (const QueryBuilder::Condition& condition : query.Conditions()) {
    AddCondition(builder, condition);
  }
  return builder;
}

}  // namespace kal
