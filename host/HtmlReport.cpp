#include "host/HtmlReport.h"

#include <algorithm>
#include <ostream>
#include <utility>

#include "host/HtmlPage.h"
#include "host/WholeFile.h"

namespace kal::host {
namespace {

constexpr std::size_t kMostYears = 6;

}  // namespace

bool HtmlReport::MostAreListed() const { return listed_ < kMostListed && listed_ * 2 > entries_; }

PageEntry HtmlReport::Note(const Outcome& outcome, const std::function<Outcome()>& explain) const {
  // Answers come in order: when the list is full, it is so with entries before this one.
  return MakePageEntry(outcome, language_, !full_, explain);
}

void HtmlReport::Add(const PageEntry& entry) {
  ++entries_;
  ++verdicts_[static_cast<std::size_t>(entry.verdict)];
  problems_ += entry.isProblem ? 1 : 0;
  Cell& cell = entry.month == PageEntry::kNoMonth
                   ? undated_
                   : months_[entry.month][static_cast<std::size_t>(entry.book)];
  ++cell.entries;
  cell.problems += entry.isProblem ? 1 : 0;
  for (auto message = entry.messages.begin(); message != entry.messages.end(); ++message) {
    MessageCount& count = messages_[*message];
    ++count.findings;
    count.entries += std::find(entry.messages.begin(), message, *message) == message ? 1U : 0U;
  }
  if (entry.isProblem && !full_) {
    List(entry);
    full_ = ++listed_ == kMostListed || bytes_ >= kMostListedBytes;
  }
}

void HtmlReport::List(const PageEntry& entry) {
  std::string json = entry.json + ",\"tree\":[";
  for (const TreeLine& line : entry.tree) {
    auto& places = places_[static_cast<std::size_t>(line.kind)];
    auto found = places.find(line.text);
    if (found == places.end()) {
      found = places.emplace(line.text, lines_.size()).first;
      lines_.push_back({line.kind, &found->first});
      bytes_ += line.text.size();
    }
    json += std::to_string(line.depth);
    json += ',';
    json += std::to_string(found->second);
    json += ',';
  }
  if (json.back() == ',') {
    json.pop_back();
  }
  json += "]}";
  list_.push_back(ForScript(std::move(json)));
  bytes_ += list_.back().size();
}

// The years of the calendar: those with the most entries, in order.
std::vector<int> HtmlReport::YearsShown() const {
  std::map<int, std::size_t> entries;
  for (const auto& [month, books] : months_) {
    for (const Cell& cell : books) {
      entries[month / 12] += cell.entries;
    }
  }
  std::vector<int> years;
  years.reserve(entries.size());
  for (const auto& [year, count] : entries) {
    years.push_back(year);
  }
  std::ranges::stable_sort(years,
                           [&](int one, int other) { return entries[one] > entries[other]; });
  years.resize(std::min(years.size(), kMostYears));
  std::ranges::sort(years);
  return years;
}

Said HtmlReport::Write(const std::string& path, const std::vector<std::string>& files,
                       const std::string& company) const {
  const std::string why = WriteWholeFile(
      path, [&](std::ostream& stream) { WriteHtmlPage(*this, files, company, stream); });
  return why.empty()
             ? Said()
             : Say({"non si può scrivere la pagina %: %", "the report % can't be written: %"},
                   {path, why});
}

}  // namespace kal::host
