#include "host/EntryFile.h"

#include <string_view>
#include <utility>

#include "host/EntryReader.h"
#include "host/JsonText.h"

namespace kal::host {
namespace {

constexpr std::string_view kBlanks = " \t\r\n";
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
// Gathered lines are tried again whenever they have doubled from here: the whole object is then
// parsed a few times over at most, and a broken first line does not draw in a whole large file.
constexpr std::size_t kFirstTrial = 1U << 16U;

}  // namespace

EntryFile::EntryFile(std::istream& stream, std::string name)
    : stream_(stream), name_(std::move(name)) {}

std::optional<EntryText> EntryFile::Next() {
  if (!started_) {
    started_ = true;
    return Start();
  }
  return NextLine();
}

std::optional<EntryFile::Line> EntryFile::ReadLine() {
  Line line;
  while (std::getline(stream_, line.text)) {
    bytesRead_ += line.text.size() + 1;
    line.number = ++lineNumber_;
    if (lineNumber_ == 1 && line.text.starts_with(kByteOrderMark)) {
      line.text.erase(0, kByteOrderMark.size());
    }
    if (line.text.find_first_not_of(kBlanks) != std::string::npos) {
      line.text += '\n';
      return line;
    }
  }
  return std::nullopt;
}

std::optional<EntryText> EntryFile::Start() {
  std::optional<Line> first = ReadLine();
  if (!first) {
    return AtEnd();
  }
  const Ending ending = json_.Read(first->text).ending;
  held_.push_back(*std::move(first));
  std::optional<EntryText> entry = ending == Ending::Complete ? NextLine() : Gather(ending);
  json_ = {};  // a large object has taken much memory, and the kind of file is known now
  return entry;
}

// Tries the lines together, the first being as it is said; those of a file that turns out to be
// JSON Lines stay held.
std::optional<EntryText> EntryFile::Gather(Ending ending) {
  std::string all(held_.front().number - 1, '\n');  // so that errors name the file's own lines
  all += held_.front().text;
  for (std::size_t trial = kFirstTrial; ending != Ending::Wrong && !ended_; trial *= 2) {
    while (all.size() < trial && HoldLine()) {
      const std::size_t before = held_[held_.size() - 2].number;
      all.append(held_.back().number - before - 1, '\n');  // the blank lines between
      all += held_.back().text;
    }
    ending = json_.Read(all).ending;
  }
  if (ending != Ending::Complete && FindWholeLine()) {
    return NextLine();
  }
  held_.clear();
  return stream_.bad() ? AtEnd() : EntryText{std::move(all), name_, ""};
}

bool EntryFile::HoldLine() {
  std::optional<Line> line = ReadLine();
  ended_ = !line;
  if (line) {
    held_.push_back(*std::move(line));
  }
  return !ended_;
}

// Whether a line behind the first is an entry by itself; reads on as far as it takes.
bool EntryFile::FindWholeLine() {
  for (std::size_t i = 1; i < held_.size() || HoldLine(); ++i) {
    if (held_[i].text.front() == '{') {
      const JsonReading line = json_.Read(held_[i].text);
      if (line.ending == Ending::Complete && HasEntryKey(*line.value)) {
        return true;
      }
    }
  }
  return false;
}

std::optional<EntryText> EntryFile::NextLine() {
  std::optional<Line> line;
  if (held_.empty()) {
    line = ReadLine();
  } else {
    line = std::move(held_.front());
    held_.pop_front();
  }
  if (!line) {
    return AtEnd();
  }
  return EntryText{std::move(line->text), name_ + " line " + std::to_string(line->number), ""};
}

std::optional<EntryText> EntryFile::AtEnd() {
  if (!stream_.bad() || readErrorGiven_) {
    return std::nullopt;
  }
  readErrorGiven_ = true;
  return EntryText{"", name_, "the file can't be read"};
}

}  // namespace kal::host
