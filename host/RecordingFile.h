// RecordingFile: the recordings of one file, and the file that recordings are written to.

#pragma once

#include <cstddef>
#include <cstdint>
#include <fstream>
#include <istream>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "host/EntryFile.h"
#include "host/Workers.h"

namespace kal::host {

// JSON Lines: a line is a recording, whatever stands on it. Blank lines are passed over.
class RecordingFile {
 public:
  // Reads from the stream, which must outlive it; the name, which stays as long as any entry, is
  // the one for messages.
  RecordingFile(std::istream& stream, std::string_view name, const Limits& limits)
      : name_(name), mostBytes_(limits.bytes), lines_(stream, limits.bytes) {}

  // The next line; nothing at the end. A read error is the last one.
  [[nodiscard]] std::optional<EntryText> Next();

  [[nodiscard]] std::uintmax_t BytesRead() const { return lines_.BytesRead(); }

 private:
  std::string_view name_;
  std::size_t mostBytes_;
  LineReader lines_;
  bool readErrorGiven_ = false;
};

class RecordingTarget {
 public:
  // What stood in the file is gone.
  explicit RecordingTarget(std::string path);

  // The lines of those answers, at once. Once that has failed nothing more is written; what was
  // written before stays, without a line that broke off.
  void Write(std::span<const Answered> answers);

  // Why it can't be written; empty as long as it can.
  [[nodiscard]] const Said& Error() const { return error_; }

 private:
  void Fail();

  std::string path_;
  std::ofstream stream_;
  std::uintmax_t written_ = 0;
  Said error_;
};

// Whether both paths name one file that is there.
[[nodiscard]] bool IsSameFile(const std::string& one, const std::string& other);

}  // namespace kal::host
