#include <cstddef>
#include <new>
#include <span>

#include "host/Answering.h"
#include "host/RecordingFile.h"
#include "host/Replay.h"

namespace kal::host {
namespace {

// One run of replay.
class ReplayRun final : public Answering<RecordingFile> {
 public:
  using Answering::Answering;

  int Replay() {
    AnswerAll();
    const auto came = [this](Again again) { return tally_[static_cast<std::size_t>(again)] != 0; };
    const int status = came(Again::Unreadable)  ? kExitTrouble
                       : came(Again::Different) ? kExitSomeFalse
                                                : kExitAllTrue;
    return End(options_.json ? ToJson(tally_, status) + '\n' : ToSummary(tally_, style_.language),
               status);
  }

 private:
  Answered Answer(std::size_t /*worker*/, const EntryText& text) override {
    const auto told = [this](const Replayed& replayed) -> Answered {
      return {static_cast<std::size_t>(replayed.again),
              options_.json ? ToJson(replayed, style_.language) + '\n' : ToBlock(replayed, style_)};
    };
    try {
      return told(host::Replay(text, options_.limits));
    } catch (const std::bad_alloc&) {
      return told(host::Replay({.place = text.place, .foundMemory = false}));
    }
  }
  void EndTurn(std::size_t /*worker*/) override {}
  [[nodiscard]] std::size_t Ready(std::size_t workers) override { return workers; }
  void Note(std::span<const Answered> answers) override {
    for (const Answered& answer : answers) {
      ++tally_[answer.verdict];
    }
  }

  ReplayTally tally_{};
};

}  // namespace

int ReplayAll(const Options& options, const Streams& streams) {
  return ReplayRun(options, streams).Replay();
}

}  // namespace kal::host
