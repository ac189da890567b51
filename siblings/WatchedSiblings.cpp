#include "siblings/WatchedSiblings.h"

#include "siblings/InWords.h"

namespace kal {

SiblingAnswer WatchedSiblings::Ask(const SiblingCall& call) {
  // The arguments are said before the call, which may take them away.
  std::string text;
  switch (call.Kind()) {
    case CallKind::Create:
      subject_.clear();
      break;
    case CallKind::Put:
      if (call.component == Component::KalAnagrafiche) {
        subject_.push_back(call.values.front());
      }
      break;
    case CallKind::Open:
      text = InWords(*call.query);
      break;
    case CallKind::Execute:
      text = CStr(call.values.front()) + " (" +
             InWords(call.values.subspan(1, call.values.size() - 2)) + ")";
      break;
    case CallKind::Get: {
      std::vector<Variant> arguments(call.values.begin(), call.values.end());
      if (call.component == Component::KalAnagrafiche) {
        arguments.insert(arguments.end(), subject_.begin(), subject_.end());
      }
      text = InWords(arguments);
      break;
    }
    default:
      break;
  }
  SiblingAnswer answer = inner_.Ask(call);
  if (call.Kind() == CallKind::Open) {
    watcher_.Asked({call, text, Variant(!answer.rows.IsNothing() && !answer.rows->Eof())});
  } else if (call.Kind() == CallKind::Get || call.Kind() == CallKind::Execute) {
    watcher_.Asked({call, text, answer.value});
  }
  return answer;
}

}  // namespace kal
