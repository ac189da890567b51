// Input: what the files of a command line hold, one entry after the other.

#pragma once

#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <istream>
#include <new>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "host/EntryFile.h"
#include "host/TryTwice.h"
#include "host/Workers.h"

namespace kal::host {

inline constexpr std::string_view kStandardInput = "-";

// Bytes of all files; 0 when one of them has no size, as a pipe has none.
inline std::uintmax_t SizeOf(const std::vector<std::string>& files) {
  std::uintmax_t total = 0;
  for (const std::string& file : files) {
    std::error_code none;
    const std::uintmax_t size = std::filesystem::file_size(file, none);
    if (file == kStandardInput || none) {
      return 0;
    }
    total += size;
  }
  return total;
}

// The entries of all files, one after the other. A File reads a stream: EntryFile, RecordingFile.
template <class File>
class Input {
 public:
  // The files' names stay as long as any entry.
  Input(const std::vector<std::string>& files, const Limits& limits, std::istream& standardInput)
      : files_(files), limits_(limits), standardInput_(standardInput), size_(SizeOf(files)) {}

  // Bytes of all files; 0 when it is not known.
  [[nodiscard]] std::uintmax_t Size() const { return size_; }

  // Nothing at the end.
  std::optional<Asked> Next() {
    for (;;) {
      if (entries_) {
        if (std::optional<EntryText> entry = entries_->Next()) {
          return Asked{*std::move(entry), bytesBefore_ + entries_->BytesRead()};
        }
        bytesBefore_ += entries_->BytesRead();
        entries_.reset();
      }
      if (opened_ == files_.size()) {
        return std::nullopt;
      }
      const std::string& file = files_[opened_++];
      try {
        Said why;
        TryTwice([&] { why = Open(file); });
        if (!why.IsEmpty()) {
          return Asked{{.place = {file}, .error = std::move(why)}, bytesBefore_};
        }
      } catch (const std::bad_alloc&) {
        entries_.reset();
        return Asked{{.place = {file}, .foundMemory = false}, bytesBefore_};
      }
    }
  }

  // The next entry and, from files of known size, some more: whoever feeds entries one by one
  // waits for each answer.
  std::vector<Asked> NextFew() {
    constexpr std::size_t kBytes = 1U << 15U;
    std::vector<Asked> few;
    for (std::size_t bytes = 0; bytes < kBytes; bytes += few.back().entry.text.size()) {
      if (!next_) {
        next_ = Next();
      }
      if (!next_ || !Append(few)) {
        break;
      }
      next_.reset();
      if (size_ == 0) {
        break;
      }
    }
    return few;
  }

 private:
  // Adds the next entry. Where there is no room for one more, it waits for the next turn.
  bool Append(std::vector<Asked>& few) {
    try {
      few.push_back(*std::move(next_));
    } catch (const std::bad_alloc&) {
      if (few.empty()) {
        few.push_back(*std::move(next_));
        return true;
      }
      return false;
    }
    return true;
  }

  // Why there is no reading it; empty where there is.
  Said Open(const std::string& file) {
    if (file == kStandardInput) {
      entries_.emplace(standardInput_, "standard input", limits_);
      return {};
    }
    stream_ = std::ifstream(file, std::ios::binary);
    if (!stream_) {
      return Say({"il file non si apre: %", "the file can't be opened: %"}, {std::strerror(errno)});
    }
    entries_.emplace(stream_, file, limits_);
    return {};
  }

  const std::vector<std::string>& files_;
  const Limits& limits_;
  std::istream& standardInput_;
  std::uintmax_t size_;
  std::size_t opened_ = 0;
  std::uintmax_t bytesBefore_ = 0;
  std::ifstream stream_;
  std::optional<File> entries_;
  std::optional<Asked> next_;  // read, and not handed over yet
};

}  // namespace kal::host
