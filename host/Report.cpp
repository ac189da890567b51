#include "host/Report.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <optional>
#include <string_view>
#include <utility>
#include <variant>

#include "frame/modCommonCostanti.h"
#include "host/ExplainTree.h"
#include "host/JsonText.h"

namespace kal::host {
namespace {

// By Verdict.
constexpr std::array kVerdicts = {
    AnswerWording{{"libera", "free"}, {"libere", "free"}, kGreen},
    AnswerWording{
        {"da confermare", "to be confirmed"}, {"da confermare", "to be confirmed"}, kYellow},
    AnswerWording{{"bloccata", "blocked"}, {"bloccate", "blocked"}, kRed},
    AnswerWording{{"rifiutata senza rilievi", "refused without findings"},
                  {"rifiutate senza rilievi", "refused without findings"},
                  kYellow},
    AnswerWording{{"sì", "yes"}, {"sì", "yes"}, ""},
    AnswerWording{{"no", "no"}, {"no", "no"}, ""},
    AnswerWording{{"non controllata", "not checked"}, {"non controllate", "not checked"}, kRed},
};

struct FindingKind {
  Wording name;
  std::string_view colour;
};

// By ResultString.
constexpr std::array kFindingKinds = {
    FindingKind{{"errore", "error"}, kRed},
    FindingKind{{"avviso", "warning"}, kYellow},
    FindingKind{{"avviso protocollo", "protocol warning"}, kYellow},
    FindingKind{{"avviso documento duplicato", "duplicate document warning"}, kYellow},
    FindingKind{{"avviso infragruppo", "intra-group warning"}, kYellow},
};

static_assert(kVerdicts.size() == std::tuple_size_v<Tally>);

// By Verdict, in a summary for programs.
constexpr std::array<std::string_view, kVerdicts.size()> kVerdictKeys = {
    "free", "toBeConfirmed", "blocked", "refused", "yes", "no", "notChecked"};

const AnswerWording& WordingOf(Verdict verdict) {
  return kVerdicts[static_cast<std::size_t>(verdict)];
}

// The lines of an error's trail.
std::vector<std::string_view> TrailOf(std::string_view text) {
  std::vector<std::string_view> pieces;
  while (!text.empty()) {
    const std::size_t end = text.find(kCrLf);
    if (end != 0) {
      pieces.push_back(text.substr(0, end));
    }
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + kCrLf.size());
  }
  return pieces;
}

// What the numbers of run-time errors stand for, where the description is not in the language.
std::string Kind(const RunTimeError& error, Language language) {
  constexpr std::pair<RunTime, std::string_view> kItalian[] = {
      {RunTime::Overflow, "numero troppo grande"},
      {RunTime::OutOfMemory, "memoria esaurita"},
      {RunTime::TypeMismatch, "valore di un altro tipo"},
      {RunTime::InternalError, "errore interno"},
      {RunTime::ObjectNotSet, "oggetto mancante"},
      {RunTime::InvalidUseOfNull, "valore Null dove ne serve uno"},
      {RunTime::InvalidFilter, "filtro non valido"},
      {RunTime::NoCurrentRecord, "nessuna riga corrente"},
      {RunTime::NoSuchField, "campo inesistente"},
  };
  const auto* const known = std::ranges::find(kItalian, static_cast<RunTime>(error.Number()),
                                              &std::pair<RunTime, std::string_view>::first);
  return known == std::end(kItalian) || language != Language::Italian
             ? ""
             : " (" + std::string(known->second) + ")";
}

std::string Why(const Outcome& outcome, const ReportStyle& style) {
  if (!outcome.error) {
    const bool placeIsHeader = !outcome.id.name;
    return "  " +
           Printable((placeIsHeader ? "" : outcome.place.In(style.language) + ": ") +
                     outcome.inputError.In(style.language)) +
           '\n';
  }
  const RunTimeError& error = *outcome.error;
  std::string text = "  " +
                     Painted(Wording{"errore di esecuzione", "run-time error"}.In(style.language) +
                                 ' ' + std::to_string(error.Number()),
                             kRed, style) +
                     Printable(Kind(error, style.language) + ": " + error.Description()) + '\n';
  if (const auto& at = outcome.failedField) {
    text += "    " +
            Printable(Say({"% riga %, campo %", "% row %, field %"},
                          {at->set, std::to_string(at->row), at->field})
                          .In(style.language)) +
            '\n';
  }
  for (const std::string_view step : TrailOf(error.Source())) {
    text += "    " + Printable(step) + '\n';
  }
  return text;
}

// A line for each finding, in the order of the result strings.
std::string FindingLines(const Outcome& outcome, const ReportStyle& style) {
  std::string text;
  for (std::size_t string = 0; string < kFindingKinds.size(); ++string) {
    const FindingKind& kind = kFindingKinds[string];
    for (const Finding& finding : outcome.findings) {
      const std::string_view said = WithoutLineEnd(finding.text);
      if (finding.string == static_cast<ResultString>(string) && !said.empty()) {
        text += "  " + Painted(kind.name.In(style.language), kind.colour, style) + ": " +
                Printable(said) + '\n';
      }
    }
  }
  return text;
}

// The line that names the entry and its verdict, and why it could not be checked.
std::string Heading(const Outcome& outcome, const ReportStyle& style) {
  const Verdict verdict = VerdictOf(outcome);
  const std::string name = outcome.id.name.value_or(outcome.place.In(style.language));
  std::string answer = WordingOf(verdict).one.In(style.language);
  if (outcome.result && std::holds_alternative<std::int32_t>(*outcome.result)) {
    answer = std::to_string(std::get<std::int32_t>(*outcome.result));
  }
  return Painted(Printable(name), kBold, style) + "  " +
         (outcome.operation ? Printable(*outcome.operation) + ": " : "") +
         Painted(answer, WordingOf(verdict).colour, style) + '\n' +
         (verdict == Verdict::Unchecked ? Why(outcome, style) : "");
}

// One line of JSON, written from the front to the end.
class JsonLine {
 public:
  JsonLine() { text_.reserve(kUsual); }

  // A key, one of ours that needs no escapes.
  JsonLine& Key(std::string_view key) {
    Separate();
    text_ += '"';
    text_ += key;
    text_ += "\":";
    return *this;
  }
  // Either a key's value or the next one of an array.
  void Text(std::string_view text) {
    Separate();
    AppendQuoted(text, text_);
  }
  void Json(std::string_view json) {
    Separate();
    text_ += json;
  }
  void Flag(bool flag) { Json(flag ? "true" : "false"); }
  void Number(std::int64_t number) { Json(std::to_string(number)); }

  void Open(char bracket) {
    Separate();
    text_ += bracket;
  }
  void Close(char bracket) { text_ += bracket; }

  [[nodiscard]] std::string Take() { return std::move(text_); }

 private:
  void Separate() {
    if (!text_.empty() && text_.back() != '{' && text_.back() != '[' && text_.back() != ':') {
      text_ += ',';
    }
  }

  static constexpr std::size_t kUsual = 1024;  // room for an answer with few findings

  std::string text_;
};

// Whole numbers and booleans stay what they are, dates are ISO texts, all else is a text.
void WriteParameter(const Variant& value, JsonLine& line) {
  switch (value.VarType()) {
    case Variant::Type::Boolean:
      return line.Flag(CBool(value));
    case Variant::Type::TinyInt:
    case Variant::Type::SmallInt:
    case Variant::Type::Integer:
      return line.Number(CLng(value));
    case Variant::Type::Date:
      return line.Text(CDate(value).ToIso());
    default:
      return line.Text(CStr(value));
  }
}

void WriteFinding(const Finding& finding, JsonLine& line) {
  line.Open('{');
  line.Key("kind").Text(finding.string == ResultString::ErrString ? "error" : "warning");
  line.Key("string").Text(kResultStringNames[static_cast<std::size_t>(finding.string)]);
  line.Key("code");
  if (finding.code) {
    line.Number(static_cast<std::int32_t>(*finding.code));
  } else {
    line.Json("null");
  }
  line.Key("check").Text(finding.check);
  line.Key("path").Open('[');
  for (const std::string_view step : finding.path) {
    line.Text(step);
  }
  line.Close(']');
  line.Key("parameters").Open('[');
  for (const Variant& parameter : finding.parameters) {
    WriteParameter(parameter, line);
  }
  line.Close(']');
  line.Key("text").Text(finding.text);
  line.Key("at").Open('{');
  if (finding.at.row != 0) {
    line.Key(finding.at.set).Number(static_cast<std::int64_t>(finding.at.row));
  }
  line.Close('}');
  line.Close('}');
}

void WriteError(const Outcome& outcome, Language language, JsonLine& line) {
  if (!outcome.inputError.IsEmpty()) {
    line.Open('{');
    line.Key("input").Text(outcome.place.In(language) + ": " + outcome.inputError.In(language));
    line.Close('}');
  } else if (outcome.error) {
    line.Open('{');
    line.Key("number").Number(outcome.error->Number());
    line.Key("source").Text(outcome.error->Source());
    line.Key("description").Text(outcome.error->Description());
    line.Close('}');
  } else {
    line.Json("null");
  }
}

void WritePlace(const Outcome& outcome, JsonLine& line) {
  line.Key("place").Open('{');
  line.Key("file").Text(outcome.place.file);
  if (outcome.place.line != 0) {
    line.Key("line").Number(static_cast<std::int64_t>(outcome.place.line));
  }
  if (const auto& at = outcome.failedField) {
    line.Key("at").Open('{');
    line.Key(at->set).Number(static_cast<std::int64_t>(at->row));
    line.Close('}');
    line.Key("field").Text(at->field);
  }
  line.Close('}');
}

void WriteResult(const Outcome& outcome, JsonLine& line) {
  if (!outcome.result) {
    line.Json("null");
  } else if (const bool* const truth = std::get_if<bool>(&*outcome.result)) {
    line.Flag(*truth);
  } else {
    line.Number(std::get<std::int32_t>(*outcome.result));
  }
}

}  // namespace

Verdict VerdictOf(const Outcome& outcome) {
  if (!outcome.result) {
    return Verdict::Unchecked;
  }
  const bool* const truth = std::get_if<bool>(&*outcome.result);
  const bool answer = truth == nullptr || *truth;
  if (!outcome.isCheck) {
    return answer ? Verdict::Yes : Verdict::No;
  }
  if (answer) {
    return Verdict::Free;
  }
  if (!outcome.errString.empty()) {
    return Verdict::Blocked;
  }
  const bool warned = !outcome.warnString.empty() || !outcome.warnProtocolloString.empty() ||
                      !outcome.warnDuplicatoDocString.empty() ||
                      !outcome.warnInfragruppoString.empty();
  return warned ? Verdict::ToConfirm : Verdict::Refused;
}

std::string ToJson(const Outcome& outcome, Language language, PlaceToo placeToo) {
  JsonLine line;
  line.Open('{');
  line.Key("id").Json(outcome.id.json);
  line.Key("operation");
  if (outcome.operation) {
    line.Text(*outcome.operation);
  } else {
    line.Json("null");
  }
  line.Key("result");
  WriteResult(outcome, line);
  line.Key("ErrString").Text(outcome.errString);
  line.Key("WarnString").Text(outcome.warnString);
  line.Key("WarnProtocolloString").Text(outcome.warnProtocolloString);
  line.Key("WarnDuplicatoDocString").Text(outcome.warnDuplicatoDocString);
  line.Key("WarnInfragruppoString").Text(outcome.warnInfragruppoString);
  line.Key("ImportoPlafond").Text(outcome.importoPlafond.ToFixedText());
  line.Key("ChiusuraRateInSospensione").Flag(outcome.chiusuraRateInSospensione);
  line.Key("RiaperturaRateInSospensione").Flag(outcome.riaperturaRateInSospensione);
  line.Key("IsInfragruppo").Text(outcome.isInfragruppo);
  line.Key("findings").Open('[');
  for (const Finding& finding : outcome.findings) {
    WriteFinding(finding, line);
  }
  line.Close(']');
  line.Key("recordSets").Open('{');
  for (const SetState& set : outcome.sets) {
    line.Key(set.name).Open('{');
    line.Key("Filter").Text(set.filter);
    line.Key("Position").Number(static_cast<std::int64_t>(set.position));
    line.Close('}');
  }
  line.Close('}');
  line.Key("error");
  WriteError(outcome, language, line);
  if (placeToo == PlaceToo::Yes) {
    WritePlace(outcome, line);
  }
  line.Close('}');
  return line.Take();
}

std::string ToBlock(const Outcome& outcome, const ReportStyle& style) {
  return Heading(outcome, style) + FindingLines(outcome, style);
}

std::string ToExplanation(const Outcome& outcome, const ReportStyle& style) {
  return Heading(outcome, style) + ExplainTree(outcome, style);
}

std::string ToJson(const Tally& tally, int status) {
  return SummaryJson("entries", tally, kVerdictKeys, status);
}

std::string ToSummary(const Tally& tally, Language language) {
  return Summary(tally, kVerdicts, {{"registrazione", "entry"}, {"registrazioni", "entries"}, ""},
                 language);
}

}  // namespace kal::host
