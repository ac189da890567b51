#include "host/HtmlPage.h"

// The optimizer sees null pointers in copies of the template library's values that are none.
#pragma GCC diagnostic ignored "-Wnull-dereference"

#include <algorithm>
#include <array>
#include <chrono>
#include <ctime>
#include <filesystem>
#include <kainjow/mustache.hpp>
#include <stdexcept>
#include <string_view>
#include <utility>

#include "cmake/Version.h"
#include "host/Digest.h"
#include "host/HtmlReport.h"
#include "host/JsonLine.h"
#include "host/PageWords.h"
#include "host/Wording.h"
#include "host/report/Parts.h"
#include "messages/Catalogue.h"

namespace kal::host {
namespace {

namespace mustache = kainjow::mustache;

// Where the template wants what is not its own, too large to pass through it.
constexpr std::string_view kDataPlace = "<!-- data -->";

// 12345 as "12.345" or "12,345".
std::string Count(std::size_t number, Language language) {
  std::string text = std::to_string(number);
  for (std::size_t at = text.size(); at > 3; at -= 3) {
    text.insert(at - 3, 1, language == Language::Italian ? '.' : ',');
  }
  return text;
}

// "12,3%"; a part that is there is never shown as nothing, nor one that is not all as all.
std::string Share(std::size_t part, std::size_t whole, Language language) {
  std::size_t tenths = whole == 0 ? 0 : (part * 1000 + whole / 2) / whole;
  if (part > 0 && part < whole) {
    tenths = std::clamp<std::size_t>(tenths, 1, 999);
  }
  return std::to_string(tenths / 10) + (language == Language::Italian ? "," : ".") +
         std::to_string(tenths % 10) + "%";
}

// As a width of a drawing.
std::string Percent(std::size_t part, std::size_t whole) {
  const std::size_t hundredths = whole == 0 ? 0 : part * 10000 / whole;
  const std::string fraction = std::to_string(hundredths % 100);
  return std::to_string(hundredths / 100) + "." + (fraction.size() == 1 ? "0" : "") + fraction;
}

std::string Capital(std::string text) {
  text[0] = text[0] >= 'a' && text[0] <= 'z' ? static_cast<char>(text[0] - 'a' + 'A') : text[0];
  return text;
}

std::string_view NameOf(Verdict verdict) {
  constexpr std::array<std::string_view, 8> kNames = {"free", "confirm", "blocked",   "refused",
                                                      "yes",  "no",      "unchecked", "accepted"};
  return kNames[static_cast<std::size_t>(verdict)];
}

std::string Now() {
  const std::time_t now = std::chrono::system_clock::to_time_t(std::chrono::system_clock::now());
  std::tm parts{};
  std::array<char, 32> text{};
  const std::size_t length =
      localtime_r(&now, &parts) == nullptr
          ? 0
          : std::strftime(text.data(), text.size(), "%d/%m/%Y %H:%M", &parts);
  return {text.data(), length};
}

// Without folders, and without what a connection's address may give away.
std::string NameOfPlace(const std::string& place) {
  if (const std::size_t scheme = place.find("://"); scheme != std::string::npos) {
    std::string rest = place.substr(scheme + 3);
    rest = rest.substr(0, rest.find('?'));
    const std::size_t user = rest.rfind('@');
    return user == std::string::npos ? rest : rest.substr(user + 1);
  }
  return std::filesystem::path(place).filename().string();
}

std::string NamesOf(const std::vector<std::string>& files) {
  constexpr std::size_t kNamed = 3;
  std::string names;
  for (std::size_t i = 0; i < std::min(files.size(), kNamed); ++i) {
    names += (i == 0 ? "" : ", ") + (files[i] == "-" ? files[i] : NameOfPlace(files[i]));
  }
  return files.size() > kNamed ? names + " +" + std::to_string(files.size() - kNamed) : names;
}

std::string CodeText(const Message& message) {
  return message.code ? std::to_string(static_cast<std::int32_t>(*message.code)) : "";
}

}  // namespace

// Writes the page from what the report has counted.
class PageMaker {
 public:
  PageMaker(const HtmlReport& report, const std::vector<std::string>& files,
            const std::string& company)
      : report_(report), language_(report.language_) {
    mustache::mustache page{std::string(report::kPage)};
    if (!page.is_valid()) {
      throw std::logic_error("the page's template: " + page.error_message());
    }
    text_ = page.render(Values(files, company));
    place_ = text_.find(kDataPlace);
    if (place_ == std::string::npos) {
      throw std::logic_error("the page's template has no place for the data");
    }
  }

  void Write(std::ostream& stream) const {
    stream << std::string_view(text_).substr(0, place_);
    WriteData(stream);
    stream << std::string_view(text_).substr(place_ + kDataPlace.size());
  }

 private:
  [[nodiscard]] mustache::data Values(const std::vector<std::string>& files,
                                      const std::string& company) const {
    mustache::data values;
    values.set("lang", language_ == Language::Italian ? "it" : "en");
    values.set("style", std::string(report::kStyle));
    values.set("styleDigest", Sha256Base64(report::kStyle));
    values.set("script", std::string(report::kScript));
    values.set("scriptDigest", Sha256Base64(report::kScript));
    mustache::data words;
    for (const PageWord& word : kPageWords) {
      words.set(std::string(word.name), word.words.In(language_));
    }
    values.set("words", words);
    values.set("madeOn", Now());
    values.set("version", KAL_VERSION);
    values.set("files", Printable(NamesOf(files)));
    values.set("company", Printable(NameOfPlace(company)));
    std::string summary = ToSummary(report_.verdicts_, language_);
    summary.pop_back();
    values.set("summary", summary);
    values.set("entryCount", Number(report_.entries_));
    values.set("totals", Totals());
    values.set("messages", Messages());
    values.set("years", Years());
    values.set("months", Months());
    values.set("registers", Registers());
    values.set("kinds", Kinds());
    if (report_.undated_.entries > 0) {
      values.set("undated", CellText(report_.undated_));
    }
    if (const HtmlReport::Cell other = OtherYears(); other.entries > 0) {
      values.set("otherYears", CellText(other));
    }
    if (report_.problems_ > report_.listed_) {
      values.set("cut", Cut());
    }
    return values;
  }

  [[nodiscard]] std::string Number(std::size_t number) const { return Count(number, language_); }

  [[nodiscard]] std::string CellText(const HtmlReport::Cell& cell) const {
    return Number(cell.problems) + ' ' + Wording{"su", "of"}.In(language_) + ' ' +
           Number(cell.entries);
  }

  [[nodiscard]] std::string Cut() const {
    const std::string most = Number(report_.listed_);
    const std::string all = Number(report_.problems_);
    return language_ == Language::Italian
               ? "L'elenco tiene le prime " + most + " delle " + all +
                     " registrazioni con rilievi, rifiutate o non controllate. Esito, messaggi e "
                     "calendario le contano tutte."
               : "The list holds the first " + most + " of " + all +
                     " entries with findings, refused or not checked. Outcome, messages and "
                     "calendar count them all.";
  }

  // In the order of weight, each with its part of the bar.
  [[nodiscard]] mustache::data Totals() const {
    constexpr std::array kOrder = {Verdict::Blocked, Verdict::Unchecked, Verdict::ToConfirm,
                                   Verdict::Refused, Verdict::Accepted,  Verdict::Free,
                                   Verdict::Yes,     Verdict::No};
    mustache::data totals{mustache::data::type::list};
    std::size_t before = 0;
    for (const Verdict verdict : kOrder) {
      const std::size_t count = report_.verdicts_[static_cast<std::size_t>(verdict)];
      if (count == 0) {
        continue;
      }
      mustache::data total;
      total.set("name", std::string(NameOf(verdict)));
      total.set("label", Capital(VerdictWords(verdict, count, language_)));
      total.set("count", Number(count));
      total.set("exact", std::to_string(count));
      total.set("share", Share(count, report_.entries_, language_));
      total.set("from", Percent(before, report_.entries_));
      total.set("width", Percent(count, report_.entries_));
      before += count;
      totals.push_back(total);
    }
    return totals;
  }

  // The text of all findings of a message, whatever each says.
  [[nodiscard]] std::string Pattern(const Message& message) const {
    std::string text = message.text.In(language_);
    for (std::size_t at = 0; (at = text.find("%s", at)) != std::string::npos;) {
      text.replace(at, 2, "\u2026");
    }
    return std::string(WithoutLineEnd(text));
  }

  // Behind the number of findings.
  [[nodiscard]] std::string Unit(const HtmlReport::MessageCount& count) const {
    const Wording findings = count.findings == 1 ? Wording{"rilievo in", "finding in"}
                                                 : Wording{"rilievi in", "findings in"};
    const Wording entries = count.entries == 1 ? Wording{"registrazione", "entry"}
                                               : Wording{"registrazioni", "entries"};
    return findings.In(language_) + ' ' + Number(count.entries) + ' ' + entries.In(language_);
  }

  // The most frequent first.
  [[nodiscard]] mustache::data Messages() const {
    std::vector<std::pair<std::size_t, HtmlReport::MessageCount>> counts(report_.messages_.begin(),
                                                                         report_.messages_.end());
    std::ranges::stable_sort(counts, [](const auto& one, const auto& other) {
      return one.second.findings > other.second.findings;
    });
    mustache::data messages{mustache::data::type::list};
    for (const auto& [place, count] : counts) {
      const Message& message = Catalogue()[place];
      mustache::data row;
      row.set("place", std::to_string(place));
      row.set("code", CodeText(message));
      row.set("name", std::string(message.name));
      row.set("text", Pattern(message));
      row.set("when", message.when.In(language_));
      row.set("remedy", message.remedy.In(language_));
      row.set("findings", Number(count.findings));
      row.set("exact", std::to_string(count.findings));
      row.set("unit", Unit(count));
      row.set("entriesExact", std::to_string(count.entries));
      row.set("width", Percent(count.findings, counts.front().second.findings));
      messages.push_back(row);
    }
    return messages;
  }

  [[nodiscard]] mustache::data MonthNames() const {
    mustache::data names{mustache::data::type::list};
    for (const Wording& month : kMonthWords) {
      mustache::data name;
      name.set("full", Capital(month.In(language_)));
      name.set("short", Capital(month.In(language_).substr(0, 3)));
      names.push_back(name);
    }
    return names;
  }

  [[nodiscard]] mustache::data Years() const {
    mustache::data years{mustache::data::type::list};
    const mustache::data names = MonthNames();
    for (const int year : report_.YearsShown()) {
      mustache::data rows{mustache::data::type::list};
      for (std::size_t book = 0; book < kRegisters; ++book) {
        if (mustache::data row = BookRow(year, book); row.get("cells") != nullptr) {
          rows.push_back(row);
        }
      }
      mustache::data shown;
      shown.set("year", std::to_string(year));
      shown.set("names", names);
      shown.set("rows", rows);
      years.push_back(shown);
    }
    return years;
  }

  // Without cells when no entry of the year stands in that register.
  [[nodiscard]] mustache::data BookRow(int year, std::size_t book) const {
    mustache::data cells{mustache::data::type::list};
    HtmlReport::Cell all;
    const std::string name = kRegisterWords[book].In(language_);
    for (int month = 0; month < 12; ++month) {
      const auto found = report_.months_.find(year * 12 + month);
      const HtmlReport::Cell cell =
          found == report_.months_.end() ? HtmlReport::Cell{} : found->second[book];
      all.entries += cell.entries;
      all.problems += cell.problems;
      mustache::data shown;
      if (cell.entries > 0) {
        mustache::data filled;
        filled.set("problems", Number(cell.problems));
        filled.set("exact", std::to_string(cell.problems));
        filled.set("entries", Number(cell.entries));
        filled.set("heat", std::to_string(Heat(cell)));
        filled.set("month", std::to_string(year * 12 + month));
        filled.set("book", std::to_string(book));
        filled.set("label", name + ", " +
                                kMonthWords[static_cast<std::size_t>(month)].In(language_) + ' ' +
                                std::to_string(year));
        shown.set(cell.problems > 0 ? "bad" : "good", filled);
      }
      cells.push_back(shown);
    }
    mustache::data row;
    row.set("name", name);
    row.set("all", CellText(all));
    if (all.entries > 0) {
      row.set("cells", cells);
    }
    return row;
  }

  // 0 none, 4 the worst; the template's legend says the same.
  [[nodiscard]] static int Heat(const HtmlReport::Cell& cell) {
    constexpr std::array<std::size_t, 3> kBounds = {2, 5, 15};  // of a hundred
    if (cell.problems == 0) {
      return 0;
    }
    const std::size_t share = cell.problems * 100 / cell.entries;
    return 1 + static_cast<int>(std::ranges::count_if(
                   kBounds, [&](std::size_t bound) { return share >= bound; }));
  }

  [[nodiscard]] HtmlReport::Cell OtherYears() const {
    const std::vector<int> years = report_.YearsShown();
    HtmlReport::Cell other;
    for (const auto& [month, books] : report_.months_) {
      if (std::ranges::find(years, month / 12) == years.end()) {
        for (const HtmlReport::Cell& cell : books) {
          other.entries += cell.entries;
          other.problems += cell.problems;
        }
      }
    }
    return other;
  }

  [[nodiscard]] static mustache::data Option(const std::string& value, const std::string& label) {
    mustache::data option;
    option.set("value", value);
    option.set("label", label);
    return option;
  }

  [[nodiscard]] mustache::data Months() const {
    const std::vector<int> years = report_.YearsShown();
    mustache::data months{mustache::data::type::list};
    for (const auto& [month, books] : report_.months_) {
      const bool isBad = std::ranges::any_of(
          books, [](const HtmlReport::Cell& cell) { return cell.problems > 0; });
      if (isBad && std::ranges::find(years, month / 12) != years.end()) {
        months.push_back(
            Option(std::to_string(month),
                   Capital(kMonthWords[static_cast<std::size_t>(month % 12)].In(language_)) + ' ' +
                       std::to_string(month / 12)));
      }
    }
    return months;
  }

  [[nodiscard]] mustache::data Registers() const {
    mustache::data registers{mustache::data::type::list};
    for (std::size_t book = 0; book < kRegisters; ++book) {
      registers.push_back(Option(std::to_string(book), kRegisterWords[book].In(language_)));
    }
    return registers;
  }

  [[nodiscard]] mustache::data Kinds() const {
    mustache::data kinds{mustache::data::type::list};
    for (std::size_t string = 0; string < kResultStringNames.size(); ++string) {
      kinds.push_back(Option(std::to_string(string),
                             Capital(KindWords(static_cast<ResultString>(string), language_))));
    }
    for (const Verdict verdict : {Verdict::Refused, Verdict::Unchecked}) {
      kinds.push_back(
          Option(std::string(NameOf(verdict)), Capital(VerdictWords(verdict, 2, language_))));
    }
    return kinds;
  }

  void WriteData(std::ostream& stream) const {
    stream << ForScript(Facts()) << ",\"lines\":[\n";
    for (const HtmlReport::Line& line : report_.lines_) {
      stream << (&line == &report_.lines_.front() ? "" : ",\n")
             << ForScript(QuotedText(std::to_string(static_cast<int>(line.kind)) +
                                     Printable(*line.text)));
    }
    stream << "],\"entries\":[\n";
    for (const std::string& entry : report_.list_) {
      stream << (&entry == &report_.list_.front() ? "" : ",\n") << entry;
    }
    stream << "]}\n";
  }

  // What the script says and knows; an object that goes on.
  [[nodiscard]] std::string Facts() const {
    JsonLine line;
    line.Open('{');
    line.Key("language").Text(language_ == Language::Italian ? "it" : "en");
    line.Key("words").Open('{');
    for (const PageWord& word : kPageWords) {
      line.Key(word.name).Text(word.words.In(language_));
    }
    line.Close('}');
    WriteList("registers", line, kRegisterWords);
    line.Key("kinds").Open('[');
    for (std::size_t string = 0; string < kResultStringNames.size(); ++string) {
      line.Text(KindWords(static_cast<ResultString>(string), language_));
    }
    line.Close(']');
    line.Key("verdicts").Open('[');
    for (std::size_t verdict = 0; verdict <= static_cast<std::size_t>(Verdict::Accepted);
         ++verdict) {
      line.Open('[');
      line.Text(NameOf(static_cast<Verdict>(verdict)));
      line.Text(VerdictWords(static_cast<Verdict>(verdict), 1, language_));
      line.Close(']');
    }
    line.Close(']');
    line.Key("messages").Open('{');
    for (const auto& [place, count] : report_.messages_) {
      const Message& message = Catalogue()[place];
      line.Key(std::to_string(place)).Open('[');
      line.Text(CodeText(message));
      line.Text(message.name);
      line.Text(message.remedy.In(language_));
      line.Close(']');
    }
    line.Close('}');
    line.Key("sets").Json(PageColumns());
    return line.Take();
  }

  template <class Words>
  void WriteList(std::string_view key, JsonLine& line, const Words& words) const {
    line.Key(key).Open('[');
    for (const Wording& word : words) {
      line.Text(word.In(language_));
    }
    line.Close(']');
  }

  const HtmlReport& report_;
  Language language_;
  std::string text_;
  std::size_t place_ = 0;
};

std::string ForScript(std::string json) {
  for (std::size_t at = 0; (at = json.find('<', at)) != std::string::npos; ++at) {
    json.replace(at, 1, "\\u003c");
  }
  return json;
}

void WriteHtmlPage(const HtmlReport& report, const std::vector<std::string>& files,
                   const std::string& company, std::ostream& stream) {
  PageMaker(report, files, company).Write(stream);
}

}  // namespace kal::host
