#include "host/Replay.h"

#include <algorithm>
#include <new>
#include <optional>
#include <string_view>
#include <utility>

#include "host/RecordingText.h"
#include "host/Report.h"
#include "host/Runner.h"
#include "records/Player.h"

namespace kal::host {
namespace {

using Kind = JsonDocument::Kind;

// Where the entry stood is no part of the decision.
void ForgetPlace(JsonDocument& result) {
  const auto place = std::ranges::find(result.keys, "place");
  if (place != result.keys.end()) {
    result.items.erase(result.items.begin() + (place - result.keys.begin()));
    result.keys.erase(place);
  }
}

// The result as what it was, or nothing.
std::optional<JsonDocument> ReadResult(std::string_view text) {
  JsonDocumentReading json = ReadDocument(text);
  if (!json.error.empty() || json.value.kind != Kind::Object) {
    return std::nullopt;
  }
  ForgetPlace(json.value);
  return std::move(json.value);
}

// The player; but a message that was not needed then is answered with its code, as a company does
// that has no text for it, so that a finding that is new is shown as one.
class PlayerWithCodes final : public Siblings {
 public:
  explicit PlayerWithCodes(records::Player& player) : player_(player) {}

  SiblingAnswer Ask(const SiblingCall& call) override {
    const std::size_t before = player_.NotRecorded().size();
    try {
      return player_.Ask(call);
    } catch (const RunTimeError&) {
      if (call.member != Member::KalStatus_GetMessage || player_.NotRecorded().size() == before) {
        throw;
      }
      return {"[" + CStr(call.values.front()) + "]"};
    }
  }

 private:
  records::Player& player_;
};

Replayed Unreadable(Replayed replayed, Said error) {
  replayed.again = Again::Unreadable;
  replayed.error = std::move(error);
  return replayed;
}

Replayed DecideRecorded(const EntryText& line, const Limits& limits) {
  Replayed replayed{.place = line.place};
  if (!line.error.IsEmpty()) {
    return Unreadable(std::move(replayed), line.error);
  }
  const RecordingReading reading = ReadRecording(line.text, limits.json);
  if (!reading.recording) {
    return Unreadable(std::move(replayed),
                      Say({"la decisione registrata non si legge: %", "%"}, {reading.error}));
  }
  records::Player player(reading.recording->conversation);
  PlayerWithCodes siblings(player);
  const Outcome outcome = DecideAgain(reading.recording->entry, siblings, limits);
  replayed.id = outcome.id;
  if (!outcome.inputError.IsEmpty()) {
    return Unreadable(std::move(replayed),
                      Say({"la registrazione contabile: %", "the entry: %"}, {outcome.inputError}));
  }
  replayed.notRecorded = player.NotRecorded();
  const std::string now = ToJson(outcome);
  if (now == reading.recording->result && replayed.notRecorded.empty()) {
    return replayed;
  }
  std::optional<JsonDocument> recorded = ReadResult(reading.recording->result);
  if (!recorded) {
    return Unreadable(std::move(replayed),
                      Say({"il risultato non è un oggetto JSON", "the result is no JSON object"}));
  }
  replayed.recorded = *std::move(recorded);
  replayed.now = *ReadResult(now);
  Compare(replayed);
  return replayed;
}

}  // namespace

Replayed Replay(const EntryText& line, const Limits& limits) {
  try {
    if (line.foundMemory) {
      return DecideRecorded(line, limits);
    }
  } catch (const std::bad_alloc&) {
    // As if there had been none from the start.
  }
  return Unreadable({.place = line.place}, Say({"memoria esaurita", "out of memory"}));
}

}  // namespace kal::host
