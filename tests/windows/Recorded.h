// Recorded: an entry that was recorded, as a host brings it to the component: its record sets, and
// siblings that answer what was recorded of them.

#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "host/EntryReader.h"
#include "host/RecordingText.h"
#include "platform/MemoryRecordset.h"
#include "records/Player.h"
#include "records/Recorder.h"

namespace kal::test {

class Recorded {
 public:
  // The line must be the recording of an entry: std::invalid_argument.
  explicit Recorded(const std::string& line);

  host::Recording recording;
  host::Entry entry;
  std::vector<std::shared_ptr<MemoryRecordset>> sets;  // as entry.sets, on their first rows
  records::Player player;
  records::Conversation asked;  // what the siblings were asked, and answered
  records::Recorder siblings{player, asked};

 private:
  explicit Recorded(host::RecordingReading reading);
};

// A sample of the command-line host, recorded beforehand, and its siblings, which can be told to
// fail.
class Sample final : public Siblings {
 public:
  explicit Sample(std::string_view id = "Fattura di acquisto di merci, pagamento in due rate");

  SiblingAnswer Ask(const SiblingCall& call) override;

  Recorded recorded;
  int failAt = 0;  // the n-th call from now on, counted from 1 without creations; 0: none
};

}  // namespace kal::test
