#include "host/EntryFile.h"

#include <new>
#include <utility>

#include "host/EntryReader.h"

namespace kal::host {
namespace {

// Gathered lines are tried again whenever they have doubled from here: the whole object is then
// parsed a few times over at most, and a broken first line does not draw in a whole large file.
constexpr std::size_t kFirstTrial = 1U << 16U;

}  // namespace

EntryFile::EntryFile(std::istream& stream, std::string_view name, const Limits& limits)
    : name_(name), limits_(limits), lines_(stream, limits.bytes), json_(limits.json) {}

std::optional<EntryText> EntryFile::Next() {
  for (bool again = false;; again = true) {
    try {
      if (started_) {
        return NextLine();
      }
      std::optional<EntryText> first = Start();
      started_ = true;
      return first;
    } catch (const std::bad_alloc&) {
      // What kind of file it is must be known: that is tried once more.
      if (started_ || again) {
        return WithoutMemory();
      }
    }
  }
}

std::optional<EntryText> EntryFile::WithoutMemory() {
  if (std::exchange(started_, true)) {
    return EntryText{.place = {name_, lines_.PassOver()}, .foundMemory = false};
  }
  held_.clear();
  lines_.Stop();
  return EntryText{.place = {name_}, .foundMemory = false};
}

std::optional<EntryText> EntryFile::Start() {
  if (held_.empty() && !HoldLine()) {
    return AtEnd();
  }
  const Line& first = held_.front();
  const Ending ending = first.isTooLong ? Ending::Complete : json_.Read(first.text).ending;
  std::optional<EntryText> entry = ending == Ending::Complete ? NextLine() : Gather(ending);
  json_ = JsonReader(
      limits_.json);  // a large object has taken much memory, and the kind of file is known now
  return entry;
}

// Tries the lines together, the first being as it is said; those of a file that turns out to be
// JSON Lines stay held.
std::optional<EntryText> EntryFile::Gather(Ending ending) {
  std::string all;
  std::size_t lineBefore = 0;
  std::size_t taken = 0;
  const auto take = [&] {
    const Line& line = held_[taken++];
    all.append(line.number - lineBefore - 1, '\n');  // so that errors name the file's own lines
    all += line.text;
    lineBefore = line.number;
  };
  take();
  bool ended = false;
  bool tooLong = false;
  for (std::size_t trial = kFirstTrial; ending != Ending::Wrong && !ended; trial *= 2) {
    while (all.size() < trial && !ended) {
      ended = taken == held_.size() && !HoldLine();
      if (!ended) {
        take();
        tooLong = tooLong || held_[taken - 1].isTooLong || all.size() > limits_.bytes;
        ended = tooLong;
      }
    }
    ending = tooLong ? Ending::Wrong : json_.Read(all).ending;
  }
  if (ending != Ending::Complete && FindWholeLine()) {
    return NextLine();
  }
  held_.clear();
  if (tooLong || heldBytes_ > limits_.bytes) {
    lines_.Stop();
    return EntryText{.place = {name_}, .error = TooLong(limits_.bytes)};
  }
  return lines_.HasFailed() ? AtEnd() : EntryText{.text = std::move(all), .place = {name_}};
}

bool EntryFile::HoldLine() {
  held_.emplace_back();  // first, so that no line is lost where it finds no room
  std::optional<Line> line;
  try {
    line = lines_.Next();
  } catch (const std::bad_alloc&) {
    held_.pop_back();
    throw;
  }
  if (!line) {
    held_.pop_back();
    return false;
  }
  heldBytes_ += line->text.size();
  held_.back() = *std::move(line);
  return true;
}

// Whether a line behind the first is an entry by itself; reads on as far as it takes, but no more
// than one entry may be long.
bool EntryFile::FindWholeLine() {
  for (std::size_t i = 1; i < held_.size() || (heldBytes_ <= limits_.bytes && HoldLine()); ++i) {
    if (held_[i].text.starts_with('{')) {
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
    line = lines_.Next();
  } else {
    line = std::move(held_.front());
    held_.pop_front();
  }
  if (!line) {
    return AtEnd();
  }
  const Place place{name_, line->number};
  if (line->isTooLong) {
    return EntryText{.place = place, .error = TooLong(limits_.bytes)};
  }
  return EntryText{.text = std::move(line->text), .place = place};
}

std::optional<EntryText> EntryFile::AtEnd() {
  if (!lines_.HasFailed() || std::exchange(readErrorGiven_, true)) {
    return std::nullopt;
  }
  return EntryText{.place = {name_}, .error = UnreadableFile()};
}

}  // namespace kal::host
