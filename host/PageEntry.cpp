#include "host/PageEntry.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <optional>
#include <string_view>
#include <unordered_map>
#include <utility>

#include "frame/modCommonCostanti.h"
#include "frame/modKalCommonErrorCodes.h"
#include "host/EntryFields.h"
#include "host/JsonLine.h"
#include "host/Utf8.h"
#include "host/Wording.h"
#include "messages/Catalogue.h"

namespace kal::host {
namespace {

// What one entry may take of the page.
constexpr std::size_t kMostFindings = 100;
constexpr std::size_t kMostRows = 40;
constexpr std::size_t kMostSteps = 400;
constexpr std::size_t kLongestText = 1000;

// No more of a text than the page shows.
std::string_view Start(std::string_view text) {
  std::size_t cut = std::min(text.size(), kLongestText);
  while (cut > 0 && cut < text.size() && (static_cast<unsigned char>(text[cut]) & 0xC0U) == 0x80U) {
    --cut;
  }
  return text.substr(0, cut);
}

// As the page shows it: nothing in it steers the reader's eye, and it has an end.
std::string Shown(std::string_view text) {
  const std::string_view start = Start(text);
  return Printable(start) + (start.size() < text.size() ? "\u2026" : "");
}

// The place in the catalogue of what a finding says.
std::optional<std::size_t> MessageOf(const Finding& finding) {
  static const auto places = [] {
    std::unordered_map<std::string_view, std::size_t> byName;
    for (std::size_t place = 0; place < Catalogue().size(); ++place) {
      byName.emplace(Catalogue()[place].name, place);
    }
    return byName;
  }();
  const auto found = places.find(finding.code ? NameOf(*finding.code) : finding.literal);
  return found == places.end() ? std::nullopt : std::optional(found->second);
}

const SuppliedSet* FindSet(const Outcome& outcome, std::string_view name) {
  if (!outcome.entry) {
    return nullptr;
  }
  const auto found = std::ranges::find_if(
      outcome.entry->sets, [&](const SuppliedSet& set) { return set.set->name == name; });
  return found == outcome.entry->sets.end() ? nullptr : &*found;
}

// The header's fields; Null where there is no header.
class Header {
 public:
  explicit Header(const Outcome& outcome) {
    const SuppliedSet* const set = FindSet(outcome, "RsTesta");
    rows_ = set != nullptr && set->rows->RowCount() > 0 ? set->rows.get() : nullptr;
  }

  [[nodiscard]] Variant operator[](std::string_view field) const {
    return rows_ == nullptr ? Variant(Null)
                            : rows_->Cell(0, static_cast<std::size_t>(rows_->FindColumn(field)));
  }

 private:
  const RowTable* rows_ = nullptr;
};

Register BookOf(const Variant& type) {
  const auto* const number = type.As<std::int16_t>();
  if (number == nullptr || *number == kNessunRegistro) {
    return Register::None;
  }
  return *number == kAcquisti        ? Register::Purchases
         : *number == kVendite       ? Register::Sales
         : *number == kCorrispettivi ? Register::Receipts
                                     : Register::Other;
}

void WriteValue(const Variant& value, JsonLine& line) {
  if (value.IsNull()) {
    line.Json("null");
  } else if (value.VarType() == Variant::Type::Text) {
    line.Text(Shown(CStr(value)));
  } else {
    line.Value(value);
  }
}

void WriteFacts(const Header& header, JsonLine& line) {
  constexpr std::array<std::string_view, 12> kFacts = {
      "CodCausale",   "DataRegistrazione", "TipoRegIva",    "SezionaleIva",
      "Protocollo",   "NumeroDocumento",   "DataDocumento", "TipoCliFor",
      "IdAnagrafica", "TotDocumento",      "CodDivisa",     "Provvisoria"};
  line.Key("facts").Open('{');
  for (const std::string_view fact : kFacts) {
    if (const Variant value = header[fact]; !value.IsNull()) {
      line.Key(fact);
      WriteValue(value, line);
    }
  }
  line.Close('}');
}

void WriteFindings(const Outcome& outcome, JsonLine& line) {
  std::size_t count = 0;
  line.Key("findings").Open('[');
  for (std::size_t place = 0; place < outcome.findings.size(); ++place) {
    const Finding& finding = outcome.findings[place];
    const std::optional<std::size_t> message = MessageOf(finding);
    if (outcome.IsAccepted(place) || !message || ++count > kMostFindings) {
      continue;
    }
    line.Open('[');
    line.Number(static_cast<std::int64_t>(*message));
    line.Number(static_cast<std::int64_t>(finding.string));
    line.Text(Shown(WithoutLineEnd(finding.text)));
    line.Text(finding.at.row == 0 ? "" : finding.at.set);
    line.Number(static_cast<std::int64_t>(finding.at.row));
    line.Close(']');
  }
  line.Close(']');
  if (count > kMostFindings) {
    line.Key("moreFindings").Number(static_cast<std::int64_t>(count - kMostFindings));
  }
}

// The rows of a set that are shown: those that findings speak of and the first ones, in order.
std::vector<std::size_t> RowsShown(const Outcome& outcome, const SuppliedSet& set) {
  const std::size_t count = set.rows->RowCount();
  std::vector<std::size_t> rows;
  for (std::size_t place = 0; place < outcome.findings.size() && rows.size() < kMostRows; ++place) {
    const SetRow& at = outcome.findings[place].at;
    if (at.row != 0 && at.row <= count && at.set == set.set->name && !outcome.IsAccepted(place) &&
        std::ranges::find(rows, at.row - 1) == rows.end()) {
      rows.push_back(at.row - 1);
    }
  }
  const std::vector<std::size_t> meant = rows;
  for (std::size_t row = 0; row < count && rows.size() < kMostRows; ++row) {
    if (std::ranges::find(meant, row) == meant.end()) {
      rows.push_back(row);
    }
  }
  std::ranges::sort(rows);
  return rows;
}

// Null, zero and False say nothing in a table of rows.
bool Says(const Variant& value) {
  switch (value.VarType()) {
    case Variant::Type::Boolean:
      return CBool(value);
    case Variant::Type::Currency:
      return *value.As<Currency>() != Currency();
    default:
      return !value.IsNull();
  }
}

// [set, rows in all, the places of the columns shown, [[row, its values …], …]]
void WriteRows(const Outcome& outcome, const SuppliedSet& set, std::size_t place, JsonLine& line) {
  const RowTable& table = *set.rows;
  const std::vector<std::size_t> rows = RowsShown(outcome, set);
  std::vector<std::size_t> columns;
  for (std::size_t column = 0; column < table.Columns().size(); ++column) {
    if (std::ranges::any_of(rows, [&](std::size_t row) { return Says(table.Cell(row, column)); })) {
      columns.push_back(column);
    }
  }
  line.Open('[');
  line.Number(static_cast<std::int64_t>(place));
  line.Number(static_cast<std::int64_t>(table.RowCount()));
  line.Open('[');
  for (const std::size_t column : columns) {
    line.Number(static_cast<std::int64_t>(column));
  }
  line.Close(']');
  line.Open('[');
  for (const std::size_t row : rows) {
    line.Open('[');
    line.Number(static_cast<std::int64_t>(row + 1));
    for (const std::size_t column : columns) {
      WriteValue(table.Cell(row, column), line);
    }
    line.Close(']');
  }
  line.Close(']');
  line.Close(']');
}

// The header's facts stand above, and the template is looked up by its code.
bool IsShown(std::string_view set) { return set != "RsTesta" && set != "RsCausale"; }

void WriteSets(const Outcome& outcome, JsonLine& line) {
  line.Key("sets").Open('[');
  if (outcome.entry) {
    for (const SuppliedSet& set : outcome.entry->sets) {
      if (IsShown(set.set->name) && set.rows->RowCount() > 0) {
        WriteRows(outcome, set, static_cast<std::size_t>(set.set - EntrySets().data()), line);
      }
    }
  }
  line.Close(']');
}

void WriteError(const Outcome& outcome, Language language, JsonLine& line) {
  if (outcome.error) {
    line.Key("error").Open('{');
    line.Key("number").Number(outcome.error->Number());
    line.Key("text").Text(Shown(outcome.error->Description()));
    line.Key("trail").Text(Shown(outcome.error->Source()));
    line.Close('}');
  } else if (!outcome.inputError.IsEmpty()) {
    line.Key("error").Open('{');
    line.Key("text").Text(Shown(outcome.inputError.In(language)));
    line.Close('}');
  }
}

// An object that is not closed yet: the tree follows where the lines of all trees are known.
std::string Json(const Outcome& outcome, const PageEntry& page, const Header& header,
                 Language language) {
  JsonLine line;
  line.Open('{');
  const std::string place = std::filesystem::path(outcome.place.In(language)).filename().string();
  line.Key("id").Text(Shown(outcome.id.name.value_or(place)));
  line.Key("place").Text(Shown(place));
  line.Key("operation").Text(Shown(outcome.operation.value_or("")));
  line.Key("verdict").Number(static_cast<std::int64_t>(page.verdict));
  line.Key("month").Number(page.month);
  line.Key("book").Number(static_cast<std::int64_t>(page.book));
  WriteFacts(header, line);
  WriteFindings(outcome, line);
  WriteSets(outcome, line);
  WriteError(outcome, language, line);
  return line.Take();
}

std::vector<TreeLine> Tree(const Outcome& steps, Language language) {
  std::vector<TreeLine> lines = TreeLines(steps, language);
  if (lines.size() > kMostSteps) {
    lines.resize(kMostSteps);
    lines.push_back({0, TreeLine::Kind::Note, "\u2026"});
  }
  for (TreeLine& line : lines) {
    line.text.resize(Start(line.text).size());
  }
  return lines;
}

// The same of a second check, whose findings are those of the first.
std::vector<TreeLine> TreeOf(Outcome again, const std::vector<bool>& accepted, Language language) {
  again.accepted = accepted;
  return Tree(again, language);
}

std::string_view KindOf(DataType type) {
  switch (type) {
    case DataType::Currency:
      return "amount";
    case DataType::Date:
      return "date";
    case DataType::Boolean:
      return "flag";
    case DataType::VarWChar:
      return "text";
    default:
      return "number";
  }
}

}  // namespace

PageEntry MakePageEntry(const Outcome& outcome, Language language, bool listed,
                        const std::function<Outcome()>& explain) {
  const Header header(outcome);
  PageEntry page{.verdict = VerdictOf(outcome)};
  if (const Variant day = header["DataRegistrazione"]; !day.IsNull()) {
    const Date date = CDate(day);
    page.month = date.Year() * 12 + date.Month() - 1;
  }
  page.book = BookOf(header["TipoRegIva"]);
  for (std::size_t place = 0; place < outcome.findings.size(); ++place) {
    const std::optional<std::size_t> message = MessageOf(outcome.findings[place]);
    if (message && !outcome.IsAccepted(place)) {
      page.messages.push_back(*message);
    }
  }
  page.isProblem = !page.messages.empty() || page.verdict == Verdict::Refused ||
                   page.verdict == Verdict::Unchecked;
  if (listed && page.isProblem) {
    page.json = Json(outcome, page, header, language);
    if (outcome.isDecided) {
      page.tree = outcome.steps.empty() ? TreeOf(explain(), outcome.accepted, language)
                                        : Tree(outcome, language);
    }
  }
  return page;
}

std::string PageColumns() {
  JsonLine line;
  line.Open('[');
  for (const EntrySet& set : EntrySets()) {
    line.Open('{');
    line.Key("name").Text(set.name);
    line.Key("columns").Open('[');
    for (const Column& column : NewRowTable(set)->Columns()) {
      line.Open('[');
      line.Text(column.name);
      line.Text(KindOf(column.type));
      line.Close(']');
    }
    line.Close(']');
    line.Close('}');
  }
  line.Close(']');
  return line.Take();
}

}  // namespace kal::host
