// Recordings: an entry with its conversation, written down and read again, decides as it did over
// the company.

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "host/EntryFile.h"
#include "host/RecordingText.h"
#include "host/Report.h"
#include "host/Runner.h"
#include "platform/WrappedRecordset.h"
#include "records/Player.h"
#include "records/Recorder.h"
#include "tests/kit.h"

namespace kal::host {
namespace {

namespace fs = std::filesystem;

// The line that is written for an entry, "" where it came to no decision.
std::string RecordedLine(company::Company& company, const EntryText& text, std::string& answer) {
  records::Conversation conversation;
  const Outcome outcome = CheckEntry(company, text, Detail::Findings, &conversation);
  answer = ToJson(outcome);
  std::string line;
  if (outcome.isDecided) AppendRecording(line, text.text, conversation, answer);
  return line;
}

TEST(Records, SamplesDecideTheSameAgain) {
  const test::ScratchPath path;
  company::CreateCompany(path.Text(), true);
  company::Company company(path.Text());
  for (const fs::path& file : fs::directory_iterator(fs::path(KAL_SOURCE_DIR) / "host/samples")) {
    std::ifstream stream(file);
    EntryFile entries(stream, file.stem().string());
    while (const auto entry = entries.Next()) {
      std::string answer;
      const std::string line = RecordedLine(company, *entry, answer);
      ASSERT_NE(line, "");
      const RecordingReading reading = ReadRecording(line);
      ASSERT_TRUE(reading.recording) << reading.error << line;
      EXPECT_EQ(reading.recording->result, answer);
      records::Player player(reading.recording->conversation);
      EXPECT_EQ(ToJson(DecideAgain(reading.recording->entry, player)), answer) << line;
      EXPECT_TRUE(player.NotRecorded().empty());
    }
  }
}

}  // namespace
}  // namespace kal::host
