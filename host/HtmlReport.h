// HtmlReport: a run of check as one page to look at, complete in itself.
//
// The page counts every entry of the run, and lists the first ones that have findings, were refused
// or could not be checked: their number, and what one of them may take, bound its size and the
// memory to make it. Its parts stand in host/report/: a template, a style and a script.

#pragma once

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "host/PageEntry.h"
#include "host/Said.h"

namespace kal::host {

inline constexpr std::size_t kMostListed = 5000;
// Of the list in all; entries with long texts reach it before they are so many.
inline constexpr std::size_t kMostListedBytes = std::size_t{64} << 20U;

class HtmlReport {
 public:
  explicit HtmlReport(Language language) : language_(language) {}
  HtmlReport(const HtmlReport&) = delete;
  HtmlReport& operator=(const HtmlReport&) = delete;
  ~HtmlReport() = default;

  // Whether so many entries were listed so far that the next one is better checked with its steps
  // at once than a second time for them; on any thread.
  [[nodiscard]] bool MostAreListed() const;
  // What the page keeps of an entry; on any thread. explain() checks it again for its steps, and is
  // asked only where the entry may be listed and has none.
  [[nodiscard]] PageEntry Note(const Outcome& outcome,
                               const std::function<Outcome()>& explain) const;
  // In the order of the entries, by one thread at a time.
  void Add(const PageEntry& entry);

  // Of what was checked the page shows the names. Returns why it can't be written, empty when it
  // was.
  [[nodiscard]] Said Write(const std::string& path, const std::vector<std::string>& files,
                           const std::string& company) const;

 private:
  struct Cell {
    std::size_t entries = 0;
    std::size_t problems = 0;
  };
  using Month = std::array<Cell, kRegisters>;

  struct MessageCount {
    std::size_t findings = 0;
    std::size_t entries = 0;
  };

  void List(const PageEntry& entry);
  [[nodiscard]] std::vector<int> YearsShown() const;
  friend class PageMaker;

  Language language_;
  std::atomic<std::size_t> entries_{0};
  std::size_t problems_ = 0;
  Tally verdicts_{};
  std::map<std::size_t, MessageCount> messages_;  // by place in the catalogue
  std::map<int, Month> months_;                   // as PageEntry counts them
  Cell undated_;
  std::atomic<std::size_t> listed_{0};
  std::atomic<bool> full_{false};
  std::size_t bytes_ = 0;          // of what follows
  std::vector<std::string> list_;  // JSON, ready for the page
  // The lines of all trees, each once; a tree holds their places.
  struct Line {
    TreeLine::Kind kind;
    const std::string* text;
  };
  std::vector<Line> lines_;
  std::array<std::unordered_map<std::string, std::size_t>, kTreeLineKinds> places_;  // by kind
};

}  // namespace kal::host
