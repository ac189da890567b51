#include "host/Baseline.h"

#include <algorithm>
#include <fstream>
#include <stdexcept>

#include "host/Digest.h"
#include "host/JsonDocument.h"
#include "host/JsonLine.h"
#include "host/WholeFile.h"

namespace kal::host {
namespace {

void WriteSet(const SuppliedSet& supplied, JsonLine& line) {
  const RowTable& rows = *supplied.rows;
  line.Key(supplied.set->name).Open('{');
  line.Key("EditMode").Number(static_cast<std::int64_t>(supplied.editMode));
  line.Key("rows").Open('[');
  for (std::size_t row = 0; row < rows.RowCount(); ++row) {
    line.Open('{');
    for (std::size_t column = 0; column < rows.Columns().size(); ++column) {
      const Variant& value = rows.Cell(row, column);
      if (!value.IsNull()) {
        line.Key(rows.Columns()[column].name).Value(value);
      }
    }
    line.Close('}');
  }
  line.Close(']');
  line.Close('}');
}

// All that the entry holds but its id, in one way of writing it.
std::string Content(const Entry& entry) {
  JsonLine line;
  line.Open('{');
  line.Key("operation").Text(entry.operation->name);
  line.Key("arguments").Open('[');
  for (const Variant& argument : entry.arguments) {
    if (argument.IsNull()) {
      line.Json("null");
    } else {
      line.Value(argument);
    }
  }
  line.Close(']');
  line.Key("IsParcella").Flag(entry.isParcella);
  line.Key("IsFromCard").Flag(entry.isFromCard);
  line.Key("TmpTableScadenze").Text(entry.tmpTableScadenze);
  for (const SuppliedSet& supplied : entry.sets) {
    WriteSet(supplied, line);
  }
  line.Close('}');
  return line.Take();
}

constexpr std::string_view kId = "id";
constexpr std::string_view kCode = "code";
constexpr std::string_view kLiteral = "literal";
constexpr std::string_view kParameters = "parameters";
constexpr std::string_view kContent = "content";

// The line of a finding that was read, as we write it; "" when it is none.
std::string Rewritten(const JsonDocument& read) {
  const bool isCode = read.Find(kCode) != nullptr;
  JsonLine line;
  line.Open('{');
  for (const std::string_view key : {kId, isCode ? kCode : kLiteral, kParameters, kContent}) {
    const JsonDocument* const value = read.Find(key);
    if (value == nullptr) {
      return "";
    }
    line.Key(key).Json(ToText(*value));
  }
  line.Close('}');
  return read.keys.size() == 4 ? line.Take() : "";
}

}  // namespace

std::vector<std::string> BaselineLines(const Outcome& outcome) {
  std::vector<std::string> lines;
  if (outcome.findings.empty() || !outcome.entry) {
    return lines;
  }
  const std::string digest = Sha256Hex(Content(*outcome.entry));
  for (const Finding& finding : outcome.findings) {
    JsonLine line;
    line.Open('{');
    line.Key(kId).Json(outcome.id.json);
    if (finding.code) {
      line.Key(kCode).Number(static_cast<std::int32_t>(*finding.code));
    } else {
      line.Key(kLiteral).Text(finding.literal);
    }
    line.Key(kParameters).Values(finding.parameters);
    line.Key(kContent).Text(digest);
    line.Close('}');
    lines.push_back(line.Take());
  }
  return lines;
}

Baseline::Baseline(const std::string& path) {
  std::ifstream stream(path, std::ios::binary);
  if (!stream) {
    throw BadBaseline{
        Say({"non si possono aprire i rilievi accettati in %", "the baseline % can't be opened"},
            {path})};
  }
  std::string text;
  for (std::size_t number = 1; std::getline(stream, text); ++number) {
    if (text.find_first_not_of(" \t\r") == std::string::npos) {
      continue;
    }
    const JsonDocumentReading reading = ReadDocument(text);
    std::string line = reading.error.empty() ? Rewritten(reading.value) : "";
    if (line.empty()) {
      throw BadBaseline{
          Say({"rilievi accettati in %, riga %: %", "the baseline % line %: %"},
              {path, std::to_string(number),
               reading.error.empty()
                   ? SaidPart(
                         Wording{"un rilievo accettato ha id, code o literal, parameters e content",
                                 "an accepted finding has id, code or literal, parameters and "
                                 "content"})
                   : SaidPart(reading.error)})};
    }
    lines_.insert(std::move(line));
  }
  if (stream.bad()) {
    throw BadBaseline{
        Say({"non si possono leggere i rilievi accettati in %", "the baseline % can't be read"},
            {path})};
  }
}

void Baseline::Mark(Outcome& outcome, const std::vector<std::string>& lines) const {
  outcome.accepted.clear();
  for (const std::string& line : lines) {
    outcome.accepted.push_back(lines_.contains(line));
  }
}

Said NewBaseline::Write(const std::string& path) const {
  const std::string why = WriteWholeFile(path, [this](std::ostream& stream) {
    for (const std::string& line : lines_) {
      stream << line << '\n';
    }
  });
  return why.empty() ? Said()
                     : Say({"non si possono scrivere i rilievi accettati in %: %",
                            "the baseline % can't be written: %"},
                           {path, why});
}

}  // namespace kal::host
