// ScriptedSiblings: siblings that answer from a list, and entries to check over them.
//
// They stand on both sides of a comparison: the core asks them directly, and automation doubles of
// the siblings ask them for the component. They write down every question with the types of its
// values, so that two runs can be compared by what they asked.

#pragma once

#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/MemoryRecordset.h"
#include "siblings/Siblings.h"

namespace kal::test {

// Rows as texts: "CodConto:t=0101 TipoConto:i=0", with i l m d b f t for the types, which the first
// row gives to all. What has no value is Null. The last of two values counts.
[[nodiscard]] std::shared_ptr<RowTable> MakeTable(const std::vector<std::string>& rows);

class ScriptedSiblings final : public Siblings {
 public:
  // Further answers, "question -> row" separated by ";". They come before the usual ones.
  explicit ScriptedSiblings(std::string_view further = "");

  // The n-th question fails.
  explicit ScriptedSiblings(int failing) : ScriptedSiblings("") { FailAt(failing); }

  // The n-th question from now on, counted from 1, fails; 0: none.
  void FailAt(int n) { failAt_ = n; }
  // Of some thousands, the last ones.
  [[nodiscard]] const std::vector<std::string>& Questions() const { return questions_; }

  SiblingAnswer Ask(const SiblingCall& call) override;

 private:
  // How a question begins, and its answer: "l=7" for a value, a row as MakeTable reads it for a
  // selection. The first that fits counts.
  std::vector<std::pair<std::string, std::string>> answers_;
  std::vector<std::string> questions_;
  int failAt_ = 0;
};

// A purchase, with changes separated by ";": "T.Protocollo=0" sets a field of the header's row,
// "C2.CodConto=x" one of the second account line, "S!" hands over no such set, "F+" one that is not
// there otherwise, "T=2" sets the edit mode. Letters: T RsTesta, C RsRCont, I RsRIva, S RsScadenze,
// K RsCausale, F RsFiscalitaBL, R RsRisconti.
using EntrySets = std::map<std::string, std::shared_ptr<MemoryRecordset>>;
[[nodiscard]] EntrySets MakeEntry(std::string_view changes);

[[nodiscard]] std::vector<std::string> SplitText(std::string_view text, std::string_view separator);

}  // namespace kal::test
