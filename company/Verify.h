// Verify: whether a company itself is sound.
//
// A check finds only what is stored as it should be. What is not may be an entry's duplicate, a
// locked period or a closed year that nobody sees: one pass over everything shows it.

#pragma once

#include <cstdint>
#include <functional>
#include <string>

namespace kal::company {

enum class FlawKind : std::uint8_t {
  Damaged,      // the database itself is not in order
  NoTable,      // a table is missing
  View,         // a view stands in the place of a table
  NoColumn,     // a column is missing
  Declaration,  // a column is declared as something that changes what is stored in it
  NoIndex,      // an index is missing
  Value,        // a stored value is not of its column's kind
  Setting,      // what is stored for a setting can't be read
  Duplicate,    // rows that should be one
  Period,       // a period that ends before it starts
  Overlap,      // periods that overlap
  NoText,       // a message has no text
  NoVersion,    // on a server: a change of the table raises no version
  More,         // the table has further flaws of its rows
};

struct Flaw {
  FlawKind kind;
  std::string table;
  std::string column;    // or several, separated by commas
  std::int64_t row = 0;  // its rowid, or its place where rows have none; 0 where no row is meant,
                         // or on a server
  std::string detail;    // the value, the rows' key, the database's own words, or the statement
                         // that makes what is missing
};

using FlawReport = std::function<void(const Flaw&)>;

// Hands over each flaw as it is found, at most a thousand of the rows of each table. Raises an
// error when the company can't be opened or is none of this program.
void Verify(const std::string& company, const FlawReport& report);
// The same of each engine.
void VerifyFile(const std::string& path, const FlawReport& report);
void VerifyServer(const std::string& uri, const FlawReport& report);

}  // namespace kal::company
