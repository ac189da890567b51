// PageEntry: what the report page keeps of one entry.
//
// It is made where the entry is checked, on several threads at once, and holds no more than the
// page shows: a long entry is shown with its first rows and those that its findings speak of.

#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "host/ExplainTree.h"
#include "host/Report.h"
#include "host/Runner.h"

namespace kal::host {

// The rows of the page's calendar.
enum class Register { Purchases, Sales, Receipts, None, Other };
inline constexpr std::size_t kRegisters = 5;

struct PageEntry {
  static constexpr int kNoMonth = -1;

  Verdict verdict = Verdict::Free;
  bool isProblem = false;  // it has findings that count, was refused or could not be checked
  int month = kNoMonth;    // of registration: the year times 12, and the month from 0
  Register book = Register::None;
  std::vector<std::size_t> messages{};  // of each finding that counts, its place in the catalogue
  // Of an entry that the page lists: an object of JSON without its closing bracket, and the tree.
  std::string json{};
  std::vector<TreeLine> tree{};
};

// The tree and what the list shows are made where `listed`; explain() gives the entry's steps.
[[nodiscard]] PageEntry MakePageEntry(const Outcome& outcome, Language language, bool listed,
                                      const std::function<Outcome()>& explain);

// The record sets and their columns, in their order: [{"name": "RsRCont", "columns":
// [["CodConto", "text"], …]}, …].
[[nodiscard]] std::string PageColumns();

}  // namespace kal::host
