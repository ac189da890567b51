// Player: siblings that answer from a conversation that was written down.
//
// A question is the same one when member, values and selection are, and what the component had been
// told before: the type of every value counts, letter case counts. Asked for the first time it has
// the first answer that was recorded to it, then the second, and so on, in whatever order other
// questions come between; behind its last one, the last one again. A question that was never
// recorded raises 445, with the source "Recording" and the question in words.

#pragma once

#include <cstddef>
#include <string>
#include <unordered_map>
#include <vector>

#include "records/CallCounts.h"
#include "records/Conversation.h"
#include "siblings/Siblings.h"

namespace kal::records {

class Player final : public Siblings {
 public:
  // The conversation must outlive this one and the record sets that it answers.
  explicit Player(const Conversation& conversation);

  SiblingAnswer Ask(const SiblingCall& call) override;

  // The questions that were not recorded, in words, in the order in which they were asked: also
  // those whose error was passed over.
  [[nodiscard]] const std::vector<std::string>& NotRecorded() const { return notRecorded_; }

 private:
  struct Told;

  // The exchanges of one question, in their order, and the one whose turn it is.
  struct Answers {
    std::vector<const Exchange*> exchanges;
    std::size_t next = 0;
  };

  [[nodiscard]] const Exchange& Answer(const SiblingCall& call, const std::vector<Variant>& about);
  void Do(const SiblingCall& call, Told* told);

  std::unordered_map<std::string, Answers> questions_;
  std::unordered_map<std::string, const Exchange*> others_;
  CallCounts counts_;
  std::vector<std::string> notRecorded_;
};

}  // namespace kal::records
