#include "host/RecordingFile.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <system_error>
#include <utility>

namespace kal::host {

std::optional<EntryText> RecordingFile::Next() {
  EntryText line;
  while (std::getline(stream_, line.text)) {
    bytesRead_ += line.text.size() + 1;
    ++lineNumber_;
    if (line.text.find_first_not_of(" \t\r") != std::string::npos) {
      line.place = name_ + " line " + std::to_string(lineNumber_);
      return line;
    }
  }
  if (!stream_.bad() || readErrorGiven_) {
    return std::nullopt;
  }
  readErrorGiven_ = true;
  return EntryText{"", name_, "the file can't be read"};
}

RecordingTarget::RecordingTarget(std::string path)
    : path_(std::move(path)), stream_(path_, std::ios::binary) {
  if (!stream_) {
    Fail();
  }
}

void RecordingTarget::Write(std::string_view lines) {
  if (!error_.empty() || lines.empty()) {
    return;
  }
  errno = 0;
  if (stream_ << lines << std::flush) {
    written_ += lines.size();
    return;
  }
  Fail();
  stream_.close();
  std::error_code none;  // a device, for instance, has no size
  std::filesystem::resize_file(path_, written_, none);
}

void RecordingTarget::Fail() {
  error_ = "the recording " + path_ + " can't be written: " + std::strerror(errno);
}

bool IsSameFile(const std::string& one, const std::string& other) {
  std::error_code none;
  return std::filesystem::equivalent(one, other, none);
}

}  // namespace kal::host
