#include "host/RecordingFile.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <new>
#include <system_error>
#include <utility>

#include "host/TryTwice.h"

namespace kal::host {

std::optional<EntryText> RecordingFile::Next() {
  try {
    if (std::optional<Line> line = lines_.Next()) {
      const Place place{name_, line->number};
      return line->isTooLong ? EntryText{.place = place, .error = TooLong(mostBytes_)}
                             : EntryText{.text = std::move(line->text), .place = place};
    }
  } catch (const std::bad_alloc&) {
    return EntryText{.place = {name_, lines_.PassOver()}, .foundMemory = false};
  }
  if (!lines_.HasFailed() || std::exchange(readErrorGiven_, true)) {
    return std::nullopt;
  }
  return EntryText{.place = {name_}, .error = UnreadableFile()};
}

RecordingTarget::RecordingTarget(std::string path)
    : path_(std::move(path)), stream_(path_, std::ios::binary) {
  if (!stream_) {
    Fail();
  }
}

void RecordingTarget::Write(std::span<const Answered> answers) {
  if (!error_.IsEmpty()) {
    return;
  }
  errno = 0;
  std::uintmax_t bytes = 0;
  for (const Answered& answer : answers) {
    stream_ << answer.recording;
    bytes += answer.recording.size();
  }
  if (stream_ << std::flush) {
    written_ += bytes;
    return;
  }
  Fail();
  stream_.close();
  std::error_code none;  // a device, for instance, has no size
  std::filesystem::resize_file(path_, written_, none);
}

void RecordingTarget::Fail() {
  TryTwice([this, why = std::strerror(errno)] {
    error_ = Say({"non si può scrivere %: %", "the recording % can't be written: %"}, {path_, why});
  });
}

bool IsSameFile(const std::string& one, const std::string& other) {
  std::error_code none;
  return std::filesystem::equivalent(one, other, none);
}

}  // namespace kal::host
