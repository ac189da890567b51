// SelectionMaker: a selection put together at run time, with the texts that it is made of.
//
// It is told the parts in the order of siblings/Selection.h: the conditions behind a table to join
// belong to that table until Where says that those of the selection follow. More parts than a
// selection holds raise std::length_error. The texts are whole: a query of such a selection has the
// name "?", so that a "?" in them stays one.

#pragma once

#include <cstdint>
#include <deque>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "siblings/Selection.h"

namespace kal::records {

class SelectionMaker {
 public:
  SelectionMaker() : made_(std::make_shared<Made>()) {}

  void Option(std::int32_t number) { What() = What().Option(number); }
  void Select(std::string_view columns) { What() = What().Select(Keep(columns)); }
  void From(std::string_view table) { What() = What().From(Keep(table)); }
  void JoinWith(JoinKind kind, std::string_view table) {
    What() = What().JoinWith(kind, Keep(table));
    inJoin_ = true;
  }
  void Where() { inJoin_ = false; }

  void Compare(std::string_view left, CompareWith operation);
  void Columns(std::string_view left, std::string_view right);
  void Literal(std::string_view condition);
  // Until EndAnyOf, Compare belongs to the alternative that was begun last.
  void BeginAnyOf();
  void BeginAlternative() { anyOf_->alternatives.Add({}); }
  void EndAnyOf();

  // It holds its texts itself. The maker is done with then.
  [[nodiscard]] std::shared_ptr<const Selection> Take() {
    const auto made = std::move(made_);
    return {made, &made->what};
  }

 private:
  struct Made {
    Selection what;
    std::deque<std::string> texts;
  };

  [[nodiscard]] Selection& What() { return made_->what; }
  [[nodiscard]] std::string_view Keep(std::string_view text) {
    return made_->texts.emplace_back(text);
  }
  void Add(const Selection::Condition& condition);

  std::shared_ptr<Made> made_;
  std::optional<Selection::Condition> anyOf_;
  bool inJoin_ = false;
};

// The selection of a query for as long as it is wanted: a constant as it is, any other one as a
// copy with the query's name in the place of its "?".
[[nodiscard]] std::shared_ptr<const Selection> Kept(const Query& query);

}  // namespace kal::records
