#include "host/LineReader.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

#include "host/Limits.h"

namespace kal::host {
namespace {

constexpr std::string_view kBlanks = " \t\r\n";
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
constexpr std::size_t kChunk = 2048;
// A line that is too long is passed over as far as so many times the longest one. Behind that the
// rest of the stream, which may have no end, is left alone.
constexpr std::size_t kPassedOver = 16;

}  // namespace

std::optional<Line> LineReader::Next() {
  while (ReadWhole()) {
    line_.number = ++lines_;
    if (lines_ == 1 && line_.text.starts_with(kByteOrderMark)) {
      line_.text.erase(0, kByteOrderMark.size());
    }
    Line whole = std::exchange(line_, {});
    if (whole.isTooLong || whole.text.find_first_not_of(kBlanks) != std::string::npos) {
      return whole;
    }
  }
  return std::nullopt;
}

std::size_t LineReader::PassOver() {
  line_ = {};
  SkipRest();
  return ++lines_;
}

// False at the end. Room is made before anything is read: where there is none, nothing is lost.
bool LineReader::ReadWhole() {
  using Stream = std::istream;
  if (ended_ || (line_.text.empty() && stream_.peek() == Stream::traits_type::eof())) {
    return false;
  }
  for (;;) {
    std::string& text = line_.text;
    if (text.capacity() - text.size() < kChunk) {
      text.reserve(std::max(text.size() * 2, text.size() + kChunk));
    }
    std::array<char, kChunk> chunk;
    stream_.getline(chunk.data(), chunk.size());
    const auto taken = static_cast<std::size_t>(stream_.gcount());
    bytesRead_ += taken;
    const bool goesOn = stream_.fail() && !stream_.eof() && !stream_.bad();
    if (goesOn) {
      stream_.clear();
    }
    const bool hasLineEnd = stream_.good() && !goesOn;
    text.append(chunk.data(), taken - (hasLineEnd ? 1 : 0));
    if (text.size() > mostBytes_) {
      line_ = {.isTooLong = true};
      if (goesOn) {
        SkipRest();
      }
      return true;
    }
    if (!goesOn) {
      text += '\n';
      return !stream_.bad();
    }
  }
}

void LineReader::SkipRest() {
  const auto most = static_cast<std::streamsize>(kPassedOver * mostBytes_);
  stream_.ignore(most, '\n');
  bytesRead_ += static_cast<std::uintmax_t>(stream_.gcount());
  ended_ = stream_.gcount() == most;
}

Said TooLong(std::size_t mostBytes) {
  return Say(
      {"più lunga di % byte; con % se ne leggono di più", "longer than % bytes; % allows more"},
      {std::to_string(mostBytes), kBytesOption});
}

Said UnreadableFile() { return Say({"il file non si legge", "the file can't be read"}); }

}  // namespace kal::host
