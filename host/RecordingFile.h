// RecordingFile: the recordings of one file, and the file that recordings are written to.

#pragma once

#include <cstddef>
#include <cstdint>
#include <fstream>
#include <istream>
#include <optional>
#include <string>
#include <string_view>

#include "host/EntryFile.h"

namespace kal::host {

// JSON Lines: a line is a recording, whatever stands on it. Blank lines are passed over.
class RecordingFile {
 public:
  // Reads from the stream, which must outlive it; the name is the one for messages.
  RecordingFile(std::istream& stream, std::string name) : stream_(stream), name_(std::move(name)) {}

  // The next line; nothing at the end. A read error is the last one.
  [[nodiscard]] std::optional<EntryText> Next();

  [[nodiscard]] std::uintmax_t BytesRead() const { return bytesRead_; }

 private:
  std::istream& stream_;
  std::string name_;
  std::uintmax_t bytesRead_ = 0;
  std::size_t lineNumber_ = 0;
  bool readErrorGiven_ = false;
};

class RecordingTarget {
 public:
  // What stood in the file is gone.
  explicit RecordingTarget(std::string path);

  // Whole lines, at once. Once that has failed nothing more is written; what was written before
  // stays, without a line that broke off.
  void Write(std::string_view lines);

  // Why it can't be written; "" as long as it can.
  [[nodiscard]] const std::string& Error() const { return error_; }

 private:
  void Fail();

  std::string path_;
  std::ofstream stream_;
  std::uintmax_t written_ = 0;
  std::string error_;
};

// Whether both paths name one file that is there.
[[nodiscard]] bool IsSameFile(const std::string& one, const std::string& other);

}  // namespace kal::host
