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
#include <string>

#include "host/JsonText.h"

namespace kal::host {

struct EntryText {
  std::string text;
  std::string place;  // "FILE" or "FILE line 17"
  std::string error;  // why there is no text, "" when there is
};

class EntryFile {
 public:
  // Reads from the stream, which must outlive it; the name is the one for messages.
  EntryFile(std::istream& stream, std::string name);

  // The next entry; nothing at the end. A read error is the last entry.
  [[nodiscard]] std::optional<EntryText> Next();

  [[nodiscard]] std::uintmax_t BytesRead() const { return bytesRead_; }

 private:
  using Ending = JsonReading::Ending;

  struct Line {
    std::string text;
    std::size_t number = 0;  // counted from 1
  };

  [[nodiscard]] std::optional<Line> ReadLine();  // the next one that is not blank
  [[nodiscard]] std::optional<EntryText> Start();
  [[nodiscard]] std::optional<EntryText> Gather(Ending ending);
  bool HoldLine();
  [[nodiscard]] bool FindWholeLine();
  [[nodiscard]] std::optional<EntryText> NextLine();
  [[nodiscard]] std::optional<EntryText> AtEnd();

  std::istream& stream_;
  std::string name_;
  std::uintmax_t bytesRead_ = 0;
  std::size_t lineNumber_ = 0;
  bool started_ = false;
  bool ended_ = false;
  bool readErrorGiven_ = false;
  JsonReader json_;
  std::deque<Line> held_;  // lines read ahead while the kind of file was in doubt
};

}  // namespace kal::host
