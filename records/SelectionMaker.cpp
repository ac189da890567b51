#include "records/SelectionMaker.h"

namespace kal::records {
namespace {

using Condition = Selection::Condition;

void TellCondition(SelectionMaker& maker, const Query& query, const Condition& condition) {
  switch (condition.kind) {
    case Condition::Kind::Value:
      return maker.Compare(query.Text(condition.left), condition.operation);
    case Condition::Kind::Columns:
      return maker.Columns(query.Text(condition.left), query.Text(condition.right));
    case Condition::Kind::Literal:
      return maker.Literal(query.Text(condition.left));
    case Condition::Kind::AnyOf:
      break;
  }
  maker.BeginAnyOf();
  for (const Selection::All& alternative : condition.alternatives) {
    maker.BeginAlternative();
    for (const Selection::Comparison& comparison : alternative) {
      maker.Compare(query.Text(comparison.left), comparison.operation);
    }
  }
  maker.EndAnyOf();
}

}  // namespace

void SelectionMaker::Compare(std::string_view left, CompareWith operation) {
  if (anyOf_) {
    anyOf_->alternatives.Last().Add({Keep(left), operation});
  } else {
    Add({Condition::Kind::Value, operation, Keep(left), {}, {}});
  }
}

void SelectionMaker::Columns(std::string_view left, std::string_view right) {
  Add({Condition::Kind::Columns, CompareWith::Equal, Keep(left), Keep(right), {}});
}

void SelectionMaker::Literal(std::string_view condition) {
  Add({Condition::Kind::Literal, CompareWith::Equal, Keep(condition), {}, {}});
}

void SelectionMaker::BeginAnyOf() {
  anyOf_ = Condition{Condition::Kind::AnyOf, CompareWith::Equal, {}, {}, {}};
}

void SelectionMaker::EndAnyOf() {
  Add(*anyOf_);
  anyOf_.reset();
}

void SelectionMaker::Add(const Condition& condition) {
  What() = inJoin_ ? What().On(condition) : What().Where(condition);
}

std::shared_ptr<const Selection> Kept(const Query& query) {
  const Selection& what = query.What();
  if (query.IsConstant()) {
    return {std::shared_ptr<const void>(), &what};
  }
  SelectionMaker maker;
  maker.Option(what.Option());
  for (const std::string_view columns : what.Columns()) {
    maker.Select(query.Text(columns));
  }
  maker.From(query.Text(what.Table()));
  for (const Selection::Join& join : what.Joins()) {
    maker.JoinWith(join.kind, query.Text(join.table));
    for (const Condition& condition : join.on) {
      TellCondition(maker, query, condition);
    }
  }
  maker.Where();
  for (const Condition& condition : what.Conditions()) {
    TellCondition(maker, query, condition);
  }
  return maker.Take();
}

}  // namespace kal::records
