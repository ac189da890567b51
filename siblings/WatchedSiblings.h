// WatchedSiblings: hands every call through and tells of each question with its answer.
//
// It is for hosts that show how a decision came about. A call that raises an error is not told:
// the error tells of itself. Nor are calls that answer nothing.

#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "siblings/Siblings.h"

namespace kal {

// Valid during the call that tells of it.
struct SiblingQuestion {
  const SiblingCall& call;
  std::string_view text;  // what is asked behind the member's name: a selection, or the arguments
  const Variant& answer;  // of a selection: whether a row came back
};

class SiblingWatcher {
 public:
  virtual void Asked(const SiblingQuestion& question) = 0;

 protected:
  SiblingWatcher() = default;
  SiblingWatcher(const SiblingWatcher&) = default;
  SiblingWatcher& operator=(const SiblingWatcher&) = default;
  ~SiblingWatcher() = default;
};

class WatchedSiblings final : public Siblings {
 public:
  // Both must outlive this one.
  WatchedSiblings(Siblings& inner, SiblingWatcher& watcher) : inner_(inner), watcher_(watcher) {}

  SiblingAnswer Ask(const SiblingCall& call) override;

 private:
  Siblings& inner_;
  SiblingWatcher& watcher_;
  std::vector<Variant> subject_;  // whom the customer/supplier component was last pointed at
};

}  // namespace kal
