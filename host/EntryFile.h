// EntryFile: the entries of one file, one after the other.
//
// A file is JSON Lines, one object a line, or one object over any number of lines. JSON Lines are
// read as a stream, and a line that is no entry stands in its place among the others. A first line
// (of those that are not blank) that is a whole value makes the file JSON Lines. Otherwise lines
// are gathered until they make one object; when they never can, a later line that is not indented
// and is an entry by itself, as a row of a record set is not, makes the file JSON Lines whose
// first lines are bad; without such a line it is one bad entry.

#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <istream>
#include <optional>
#include <string_view>

#include "host/EntryText.h"
#include "host/JsonText.h"
#include "host/Limits.h"
#include "host/LineReader.h"

namespace kal::host {

class EntryFile {
 public:
  // Reads from the stream, which must outlive it; the name, which stays as long as any entry, is
  // the one for messages.
  EntryFile(std::istream& stream, std::string_view name, const Limits& limits = {});

  // The next entry; nothing at the end. A read error is the last entry.
  [[nodiscard]] std::optional<EntryText> Next();

  [[nodiscard]] std::uintmax_t BytesRead() const { return lines_.BytesRead(); }

 private:
  using Ending = JsonReading::Ending;

  [[nodiscard]] std::optional<EntryText> Start();
  [[nodiscard]] std::optional<EntryText> Gather(Ending ending);
  [[nodiscard]] bool HoldLine();
  [[nodiscard]] bool FindWholeLine();
  [[nodiscard]] std::optional<EntryText> NextLine();
  [[nodiscard]] std::optional<EntryText> AtEnd();
  [[nodiscard]] std::optional<EntryText> WithoutMemory();

  std::string_view name_;
  Limits limits_;
  LineReader lines_;
  bool started_ = false;
  bool readErrorGiven_ = false;
  JsonReader json_;
  std::deque<Line> held_;  // lines read ahead while the kind of file was in doubt
  std::size_t heldBytes_ = 0;
};

}  // namespace kal::host
