#include "siblings/InWords.h"

#include <array>

namespace kal {
namespace {

std::string ValueInWords(const Variant& value) {
  if (value.IsNull()) {
    return "Null";
  }
  const std::string text = CStr(value);
  return value.VarType() == Variant::Type::Text ? "'" + text + "'" : text;
}

void Add(std::string& list, std::string_view separator, std::string_view item) {
  list += list.empty() ? "" : separator;
  list += item;
}

// Says the conditions one after the other, each with the values whose turn has come.
class ConditionWords {
 public:
  explicit ConditionWords(const Query& query) : query_(query) {}

  template <class Conditions>
  std::string Of(const Conditions& conditions) {
    std::string words;
    for (const Selection::Condition& condition : conditions) {
      if (condition.kind != Selection::Condition::Kind::Columns) {
        Add(words, ", ", Of(condition));
      }
    }
    return words.empty() ? words : " (" + words + ")";
  }

 private:
  std::string Of(const Selection::Condition& condition) {
    switch (condition.kind) {
      case Selection::Condition::Kind::Columns:
      case Selection::Condition::Kind::Literal:
        return std::string(condition.left);
      case Selection::Condition::Kind::Value:
        return Of(Selection::Comparison{condition.left, condition.operation});
      case Selection::Condition::Kind::AnyOf:
        break;
    }
    std::string any;
    for (const Selection::All& all : condition.alternatives) {
      std::string words;
      for (const Selection::Comparison& comparison : all) {
        Add(words, ", ", Of(comparison));
      }
      Add(any, " | ", words);
    }
    return "(" + any + ")";
  }

  std::string Of(const Selection::Comparison& comparison) {
    constexpr std::array kSigns = {" = ", " <> ", " < ", " <= ", " > ", " >= "};
    return query_.Text(comparison.left) + kSigns[static_cast<std::size_t>(comparison.operation)] +
           ValueInWords(query_.Values()[next_++]);
  }

  const Query& query_;
  std::size_t next_ = 0;
};

}  // namespace

std::string InWords(const Query& query) {
  ConditionWords conditions(query);
  const Selection& selection = query.What();
  std::string words = query.Text(selection.Table());
  for (const Selection::Join& join : selection.Joins()) {
    words += " + " + query.Text(join.table) + conditions.Of(join.on);
  }
  return words + conditions.Of(selection.Conditions());
}

std::string InWords(std::span<const Variant> values) {
  std::string words;
  for (const Variant& value : values) {
    Add(words, ", ", ValueInWords(value));
  }
  return words;
}

}  // namespace kal
