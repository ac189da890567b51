#include "server/DispatchQuery.h"

namespace kal {
namespace {

using names::QueryMember;

class QueryDescription {
 public:
  QueryDescription(const Query& query, const SiblingNames& names) : query_(query), names_(names) {}

  LateBound Describe() && {
    const Selection& selection = query_.What();
    if (selection.Option() != 0) {
      builder_.Put(names_.NameOf(QueryMember::Option), selection.Option());
    }
    for (const std::string_view columns : selection.Columns()) {
      Say(QueryMember::AddFields, {query_.Text(columns)});
    }
    Say(QueryMember::AddTable, {query_.Text(selection.Table())});
    for (const Selection::Join& join : selection.Joins()) {
      Say(QueryMember::AddJoin, {names::NumberOf(join.kind), query_.Text(join.table)});
      AddAll(join.on);
    }
    Say(QueryMember::BeginWhere);
    AddAll(selection.Conditions());
    return std::move(builder_);
  }

 private:
  void Say(QueryMember member, std::initializer_list<Variant> values = {}) {
    builder_.Do(names_.NameOf(member), values);
  }

  template <class Conditions>
  void AddAll(const Conditions& conditions) {
    for (const Selection::Condition& condition : conditions) {
      Add(condition);
    }
  }

  void Add(const Selection::Condition& condition) {
    switch (condition.kind) {
      case Selection::Condition::Kind::Value:
        return Add(Selection::Comparison{condition.left, condition.operation});
      case Selection::Condition::Kind::Columns:
        return Say(QueryMember::AddColumnPair,
                   {query_.Text(condition.left), query_.Text(condition.right)});
      case Selection::Condition::Kind::Literal:
        return Say(QueryMember::AddLiteral, {query_.Text(condition.left)});
      case Selection::Condition::Kind::AnyOf:
        break;
    }
    Say(QueryMember::BeginAnyOf);
    for (const Selection::All& alternative : condition.alternatives) {
      Say(QueryMember::BeginAlternative);
      for (const Selection::Comparison& comparison : alternative) {
        Add(comparison);
      }
    }
    Say(QueryMember::EndAnyOf);
  }

  void Add(const Selection::Comparison& comparison) {
    Say(QueryMember::AddCondition, {query_.Text(comparison.left),
                                    names::NameOf(comparison.operation), query_.Values()[next_++]});
  }

  const Query& query_;
  const SiblingNames& names_;
  LateBound builder_ = LateBound::Create(names_.QueryBuilderClass());
  std::size_t next_ = 0;  // of the values, which come in the order of the comparisons
};

}  // namespace

LateBound DescribeQuery(const Query& query, const SiblingNames& names) {
  return QueryDescription(query, names).Describe();
}

}  // namespace kal
