#include "host/Report.h"

#include <array>
#include <cstdint>
#include <nlohmann/json.hpp>
#include <string_view>
#include <utility>
#include <variant>

#include "frame/modCommonCostanti.h"

namespace kal::host {
namespace {

using nlohmann::ordered_json;

// A word or two in both languages.
struct Wording {
  std::string_view italian;
  std::string_view english;

  [[nodiscard]] std::string In(Language language) const {
    return std::string(language == Language::Italian ? italian : english);
  }
};

constexpr std::string_view kRed = "\x1b[31m";
constexpr std::string_view kGreen = "\x1b[32m";
constexpr std::string_view kYellow = "\x1b[33m";
constexpr std::string_view kBold = "\x1b[1m";
constexpr std::string_view kPlain = "\x1b[0m";

struct VerdictWording {
  Wording one;
  Wording many;  // in the summary
  std::string_view colour;
};

// By Verdict.
constexpr std::array kVerdicts = {
    VerdictWording{{"libera", "free"}, {"libere", "free"}, kGreen},
    VerdictWording{
        {"da confermare", "to be confirmed"}, {"da confermare", "to be confirmed"}, kYellow},
    VerdictWording{{"bloccata", "blocked"}, {"bloccate", "blocked"}, kRed},
    VerdictWording{{"rifiutata senza rilievi", "refused without findings"},
                   {"rifiutate senza rilievi", "refused without findings"},
                   kYellow},
    VerdictWording{{"sì", "yes"}, {"sì", "yes"}, ""},
    VerdictWording{{"no", "no"}, {"no", "no"}, ""},
    VerdictWording{{"non controllata", "not checked"}, {"non controllate", "not checked"}, kRed},
};

struct FindingKind {
  std::string Outcome::*findings;
  Wording name;
  std::string_view colour;
};

constexpr std::array kFindings = {
    FindingKind{&Outcome::errString, {"errore", "error"}, kRed},
    FindingKind{&Outcome::warnString, {"avviso", "warning"}, kYellow},
    FindingKind{&Outcome::warnProtocolloString, {"avviso protocollo", "protocol warning"}, kYellow},
    FindingKind{&Outcome::warnDuplicatoDocString,
                {"avviso documento duplicato", "duplicate document warning"},
                kYellow},
    FindingKind{
        &Outcome::warnInfragruppoString, {"avviso infragruppo", "intra-group warning"}, kYellow},
};

const VerdictWording& WordingOf(Verdict verdict) {
  return kVerdicts[static_cast<std::size_t>(verdict)];
}

// A text from outside must not steer the terminal.
std::string Shown(std::string_view text) {
  std::string shown(text);
  for (char& c : shown) {
    const auto byte = static_cast<unsigned char>(c);
    c = byte < 0x20U || byte == 0x7FU ? '?' : c;
  }
  return shown;
}

std::string Painted(const std::string& text, std::string_view colour, const ReportStyle& style) {
  if (!style.colours || colour.empty()) {
    return text;
  }
  return std::string(colour) + text + std::string(kPlain);
}

// The messages of a result string, or the lines of an error's trail.
std::vector<std::string_view> Pieces(std::string_view text) {
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

std::string Why(const Outcome& outcome, const ReportStyle& style) {
  if (!outcome.error) {
    const bool placeIsHeader = outcome.id.kind == JsonValue::Kind::Null;
    return "  " + Shown((placeIsHeader ? "" : outcome.place + ": ") + outcome.inputError) + '\n';
  }
  const RunTimeError& error = *outcome.error;
  std::string text = "  " +
                     Painted(Wording{"errore di esecuzione", "run-time error"}.In(style.language) +
                                 ' ' + std::to_string(error.Number()),
                             kRed, style) +
                     ": " + Shown(error.Description()) + '\n';
  for (const std::string_view step : Pieces(error.Source())) {
    text += "    " + Shown(step) + '\n';
  }
  return text;
}

std::string Findings(const Outcome& outcome, const ReportStyle& style) {
  std::string text;
  for (const FindingKind& kind : kFindings) {
    for (const std::string_view finding : Pieces(outcome.*kind.findings)) {
      text += "  " + Painted(kind.name.In(style.language), kind.colour, style) + ": " +
              Shown(finding) + '\n';
    }
  }
  return text;
}

ordered_json ErrorJson(const Outcome& outcome) {
  if (!outcome.inputError.empty()) {
    return {{"input", outcome.place + ": " + outcome.inputError}};
  }
  if (!outcome.error) {
    return nullptr;
  }
  return {{"number", outcome.error->Number()},
          {"source", outcome.error->Source()},
          {"description", outcome.error->Description()}};
}

ordered_json ResultJson(const Outcome& outcome) {
  if (!outcome.result) {
    return nullptr;
  }
  return std::visit([](auto answer) { return ordered_json(answer); }, *outcome.result);
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

std::string ToJson(const Outcome& outcome) {
  ordered_json sets = ordered_json::object();
  for (const SetState& set : outcome.sets) {
    sets[std::string(set.name)] = {{"Filter", set.filter}, {"Position", set.position}};
  }
  const ordered_json rest = {
      {"operation", outcome.operation ? ordered_json(*outcome.operation) : ordered_json()},
      {"result", ResultJson(outcome)},
      {"ErrString", outcome.errString},
      {"WarnString", outcome.warnString},
      {"WarnProtocolloString", outcome.warnProtocolloString},
      {"WarnDuplicatoDocString", outcome.warnDuplicatoDocString},
      {"WarnInfragruppoString", outcome.warnInfragruppoString},
      {"ImportoPlafond", outcome.importoPlafond.ToFixedText()},
      {"ChiusuraRateInSospensione", outcome.chiusuraRateInSospensione},
      {"RiaperturaRateInSospensione", outcome.riaperturaRateInSospensione},
      {"IsInfragruppo", outcome.isInfragruppo},
      {"recordSets", sets},
      {"error", ErrorJson(outcome)}};
  // The id goes out with its digits as they came in, which the library would not keep.
  const std::string text = rest.dump(-1, ' ', false, ordered_json::error_handler_t::replace);
  return "{\"id\":" + ToText(outcome.id) + ',' + text.substr(1);
}

std::string ToBlock(const Outcome& outcome, const ReportStyle& style) {
  const Verdict verdict = VerdictOf(outcome);
  std::string name = outcome.place;
  if (outcome.id.kind != JsonValue::Kind::Null) {
    name = outcome.id.kind == JsonValue::Kind::Text ? outcome.id.text : ToText(outcome.id);
  }
  std::string answer = WordingOf(verdict).one.In(style.language);
  if (outcome.result && std::holds_alternative<std::int32_t>(*outcome.result)) {
    answer = std::to_string(std::get<std::int32_t>(*outcome.result));
  }
  std::string block = Painted(Shown(name), kBold, style) + "  " +
                      (outcome.operation ? Shown(*outcome.operation) + ": " : "") +
                      Painted(answer, WordingOf(verdict).colour, style) + '\n';
  if (verdict == Verdict::Unchecked) {
    block += Why(outcome, style);
  }
  return block + Findings(outcome, style);
}

std::string ToSummary(const Tally& tally, Language language) {
  std::size_t all = 0;
  std::string parts;
  for (const auto& [verdict, count] : tally) {
    const VerdictWording& wording = WordingOf(verdict);
    all += count;
    parts += (parts.empty() ? ": " : ", ") + std::to_string(count) + ' ' +
             (count == 1 ? wording.one : wording.many).In(language);
  }
  const Wording noun =
      all == 1 ? Wording{"registrazione", "entry"} : Wording{"registrazioni", "entries"};
  return std::to_string(all) + ' ' + noun.In(language) + parts + '\n';
}

}  // namespace kal::host
