// LineReader: the lines of a stream, none of them longer than is allowed.

#pragma once

#include <cstddef>
#include <cstdint>
#include <istream>
#include <optional>
#include <string>

#include "host/Said.h"

namespace kal::host {

struct Line {
  std::string text{};      // with a line end
  std::size_t number = 0;  // counted from 1
  bool isTooLong = false;  // then without its text
};

class LineReader {
 public:
  // Reads from the stream, which must outlive it.
  LineReader(std::istream& stream, std::size_t mostBytes)
      : stream_(stream), mostBytes_(mostBytes) {}

  // The next line that is not blank, without a byte order mark; nothing at the end. Where memory
  // runs out (std::bad_alloc) what was read of the line is kept: the next call goes on with it.
  [[nodiscard]] std::optional<Line> Next();

  // Passes over the rest of the line for which there was no memory, and tells its number.
  [[nodiscard]] std::size_t PassOver();

  // Nothing more is read.
  void Stop() { ended_ = true; }

  // Whether the lines ended because the stream could not be read, or one of them went on and on.
  [[nodiscard]] bool HasFailed() const { return stream_.bad(); }
  [[nodiscard]] std::uintmax_t BytesRead() const { return bytesRead_; }

 private:
  [[nodiscard]] bool ReadWhole();
  void SkipRest();

  std::istream& stream_;
  std::size_t mostBytes_;
  std::uintmax_t bytesRead_ = 0;
  std::size_t lines_ = 0;
  bool ended_ = false;
  Line line_;  // the one that is being read
};

// Why a line is refused that is longer than so many bytes.
[[nodiscard]] Said TooLong(std::size_t mostBytes);
[[nodiscard]] Said UnreadableFile();

}  // namespace kal::host
