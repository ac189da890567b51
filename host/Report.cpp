#include "host/Report.h"

#include <array>
#include <cstdint>
#include <nlohmann/json.hpp>
#include <string_view>
#include <utility>
#include <variant>

#include "frame/modCommonCostanti.h"
#include "host/ExplainTree.h"

namespace kal::host {
namespace {

using nlohmann::ordered_json;

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

const VerdictWording& WordingOf(Verdict verdict) {
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

std::string Why(const Outcome& outcome, const ReportStyle& style) {
  if (!outcome.error) {
    const bool placeIsHeader = outcome.id.kind == JsonValue::Kind::Null;
    return "  " + Printable((placeIsHeader ? "" : outcome.place + ": ") + outcome.inputError) +
           '\n';
  }
  const RunTimeError& error = *outcome.error;
  std::string text = "  " +
                     Painted(Wording{"errore di esecuzione", "run-time error"}.In(style.language) +
                                 ' ' + std::to_string(error.Number()),
                             kRed, style) +
                     ": " + Printable(error.Description()) + '\n';
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
  std::string name = outcome.place;
  if (outcome.id.kind != JsonValue::Kind::Null) {
    name = outcome.id.kind == JsonValue::Kind::Text ? outcome.id.text : ToText(outcome.id);
  }
  std::string answer = WordingOf(verdict).one.In(style.language);
  if (outcome.result && std::holds_alternative<std::int32_t>(*outcome.result)) {
    answer = std::to_string(std::get<std::int32_t>(*outcome.result));
  }
  return Painted(Printable(name), kBold, style) + "  " +
         (outcome.operation ? Printable(*outcome.operation) + ": " : "") +
         Painted(answer, WordingOf(verdict).colour, style) + '\n' +
         (verdict == Verdict::Unchecked ? Why(outcome, style) : "");
}

// Whole numbers and booleans stay what they are, dates are ISO texts, all else is a text.
ordered_json ParameterJson(const Variant& value) {
  switch (value.VarType()) {
    case Variant::Type::Boolean:
      return CBool(value);
    case Variant::Type::TinyInt:
    case Variant::Type::SmallInt:
    case Variant::Type::Integer:
      return CLng(value);
    case Variant::Type::Date:
      return CDate(value).ToIso();
    default:
      return CStr(value);
  }
}

ordered_json FindingJson(const Finding& finding) {
  ordered_json parameters = ordered_json::array();
  for (const Variant& parameter : finding.parameters) {
    parameters.push_back(ParameterJson(parameter));
  }
  ordered_json at = ordered_json::object();
  if (finding.at.row != 0) {
    at[std::string(finding.at.set)] = finding.at.row;
  }
  return {{"kind", finding.string == ResultString::ErrString ? "error" : "warning"},
          {"string", kResultStringNames[static_cast<std::size_t>(finding.string)]},
          {"code", finding.code ? ordered_json(static_cast<std::int32_t>(*finding.code)) : nullptr},
          {"check", finding.check},
          {"path", finding.path},
          {"parameters", std::move(parameters)},
          {"text", finding.text},
          {"at", std::move(at)}};
}

ordered_json FindingsJson(const std::vector<Finding>& findings) {
  ordered_json list = ordered_json::array();
  for (const Finding& finding : findings) {
    list.push_back(FindingJson(finding));
  }
  return list;
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
  return std::visit([](auto result) { return ordered_json(result); }, *outcome.result);
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
  ordered_json rest;
  rest.emplace("operation", outcome.operation ? ordered_json(*outcome.operation) : ordered_json());
  rest.emplace("result", ResultJson(outcome));
  rest.emplace("ErrString", outcome.errString);
  rest.emplace("WarnString", outcome.warnString);
  rest.emplace("WarnProtocolloString", outcome.warnProtocolloString);
  rest.emplace("WarnDuplicatoDocString", outcome.warnDuplicatoDocString);
  rest.emplace("WarnInfragruppoString", outcome.warnInfragruppoString);
  rest.emplace("ImportoPlafond", outcome.importoPlafond.ToFixedText());
  rest.emplace("ChiusuraRateInSospensione", outcome.chiusuraRateInSospensione);
  rest.emplace("RiaperturaRateInSospensione", outcome.riaperturaRateInSospensione);
  rest.emplace("IsInfragruppo", outcome.isInfragruppo);
  rest.emplace("findings", FindingsJson(outcome.findings));
  rest.emplace("recordSets", std::move(sets));
  rest.emplace("error", ErrorJson(outcome));
  // The id goes out with its digits as they came in, which the library would not keep.
  const std::string text = rest.dump(-1, ' ', false, ordered_json::error_handler_t::replace);
  return "{\"id\":" + ToText(outcome.id) + ',' + text.substr(1);
}

std::string ToBlock(const Outcome& outcome, const ReportStyle& style) {
  return Heading(outcome, style) + FindingLines(outcome, style);
}

std::string ToExplanation(const Outcome& outcome, const ReportStyle& style) {
  return Heading(outcome, style) + ExplainTree(outcome, style);
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
