#include "host/ExplainTree.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <span>

#include "host/ExplainPages.h"

namespace kal::host {
namespace {

constexpr std::size_t kIndent = 2;

constexpr Wording kSilent = {"nessun rilievo", "silent"};
constexpr Wording kStopped = {"interrotto", "stopped"};
constexpr Wording kRunTimeError = {"errore di esecuzione", "run-time error"};
constexpr Wording kNotReached = {"non raggiunti", "not reached"};
constexpr Wording kPassedOver = {"Controlli non raggiunti o che non riguardano la registrazione",
                                 "Checks that were not reached or do not apply"};

std::string Spoken(const Variant& value, Language language) {
  if (value.VarType() == Variant::Type::Boolean) {
    return (CBool(value) ? Wording{"sì", "yes"} : Wording{"no", "no"}).In(language);
  }
  if (value.IsNull()) {
    return "Null";
  }
  return value.VarType() == Variant::Type::Text ? "'" + CStr(value) + "'" : CStr(value);
}

// One line, or more where it is long. The colour paints the whole of it.
std::string Line(std::string_view text, std::size_t depth, std::string_view colour,
                 const ReportStyle& style) {
  std::string lines = Wrapped(Shown(text), (depth + 1) * kIndent);
  lines.pop_back();
  return Painted(lines, colour, style) + '\n';
}

std::string OperationLine(const Step& step, std::span<const Step> inside,
                          const ReportStyle& style) {
  std::string said;
  std::string_view colour;
  if (step.error) {
    // Only the innermost operation says what happened.
    const bool innermost =
        std::ranges::none_of(inside, [](const Step& other) { return other.error.has_value(); });
    said = innermost ? kRunTimeError.In(style.language) + ' ' +
                           std::to_string(step.error->Number()) + ": " + step.error->Description()
                     : kStopped.In(style.language);
    colour = kRed;
  } else if (!step.answer.IsEmpty()) {
    said = Spoken(step.answer, style.language);
  } else if (step.findings == 0) {
    said = kSilent.In(style.language);
  } else {
    said = std::to_string(step.findings) + ' ' +
           (step.findings == 1 ? Wording{"rilievo", "finding"} : Wording{"rilievi", "findings"})
               .In(style.language);
  }
  return Line(std::string(step.name) + ": " + said, step.depth, colour, style);
}

// What siblings are asked besides settings and selections; their arguments follow.
struct QuestionWording {
  std::string_view name;
  Wording words;
};

constexpr std::array kQuestions = {
    QuestionWording{"SelectFiscalYear", {"esercizio della data", "fiscal year of the date"}},
    QuestionWording{"FiscalYearField", {"dell'esercizio", "of the fiscal year"}},
    QuestionWording{"InfoAnagrafica", {"dell'anagrafica", "of the customer or supplier"}},
    QuestionWording{"AdmitsFiscalData",
                    {"codice IVA ammesso con dati fiscali", "VAT code allowed with fiscal data"}},
    QuestionWording{"IntraClassification",
                    {"tipo intracomunitario del codice IVA", "intra-community kind of VAT code"}},
    QuestionWording{"PeriodReferenceDate",
                    {"data di riferimento del mese", "reference date of the month"}},
    QuestionWording{"IsVariationNote",
                    {"causale di nota di variazione", "template for variation notes"}},
    QuestionWording{"IsLocked", {"periodo bloccato alla data", "period locked at the date"}},
    QuestionWording{
        "ActivityCode",
        {"attività di anno, registro, sezionale", "activity of year, register, section"}},
    QuestionWording{"NextProtocol",
                    {"prossimo protocollo di registro, sezionale, data",
                     "next protocol of register, section, date"}},
    QuestionWording{"SupplierTest", {"fornitore soggetto a parcella", "supplier with fee notes"}},
    QuestionWording{"TemplateTest", {"causale da parcella", "template of fee notes"}},
    QuestionWording{"Total", {"somma della colonna", "sum of the column"}},
};

std::string QuestionText(const Step& step, Language language) {
  const std::string_view name = std::string_view(step.text).substr(0, step.text.find(' '));
  const auto known = std::ranges::find(kQuestions, name, &QuestionWording::name);
  return known == kQuestions.end() ? step.text
                                   : known->words.In(language) + step.text.substr(name.size());
}

// Message texts and expressions of the database language are no facts of the entry.
std::string QuestionLine(const Step& step, const ReportStyle& style) {
  if (step.name == "KalStatus" || step.name == "SqlFunctions") {
    return "";
  }
  const bool isSelection =
      step.name == "DataAccess" && step.answer.VarType() == Variant::Type::Boolean;
  const std::string answer = isSelection
                                 ? (CBool(step.answer) ? Wording{": trovata", ": found"}
                                                       : Wording{": nessuna riga", ": no row"})
                                       .In(style.language)
                                 : " = " + Spoken(step.answer, style.language);
  return Line(QuestionText(step, style.language) + answer, step.depth, "", style);
}

std::string FindingLine(const Finding& finding, std::size_t depth, const ReportStyle& style) {
  const bool isError = finding.string == ResultString::ErrString;
  std::string text =
      (isError ? Wording{"errore", "error"} : Wording{"avviso", "warning"}).In(style.language);
  if (finding.code) {
    text += ' ' + std::to_string(static_cast<std::int32_t>(*finding.code));
  }
  text += ' ' + std::string(finding.name);
  if (finding.row != 0) {
    text += " (" + std::string(finding.set) + ' ' + Wording{"riga", "row"}.In(style.language) +
            ' ' + std::to_string(finding.row) + ")";
  }
  std::string_view said = finding.text;
  while (said.ends_with("\r\n")) {
    said.remove_suffix(2);
  }
  return Line(text + ": " + std::string(said), depth, isError ? kRed : kYellow, style);
}

// The checks of one operation's order that its run did not enter. A check that always applies and
// was not entered shows that the run ended early: then what stands behind was not reached.
std::string PassedOver(const Step& operation, std::span<const Step> inside,
                       const ReportStyle& style) {
  const std::span<const OrderedCheck> order = OrderOf(operation.name);
  std::vector<bool> entered;
  for (const OrderedCheck& check : order) {
    entered.push_back(std::ranges::any_of(inside, [&](const Step& step) {
      return step.kind == Step::Kind::Operation && step.name == check.name;
    }));
  }
  bool endedEarly = operation.error.has_value();
  std::size_t last = 0;
  for (std::size_t i = 0; i < order.size(); ++i) {
    endedEarly = endedEarly || (!entered[i] && order[i].applies.IsEmpty());
    last = entered[i] ? i : last;
  }
  std::string lines;
  std::string notReached;
  for (std::size_t i = 0; i < order.size(); ++i) {
    if (entered[i]) {
      continue;
    }
    if (endedEarly && i >= last) {
      notReached += (notReached.empty() ? " " : ", ") + std::string(order[i].name);
    } else {
      lines += Line(std::string(order[i].name) + ": " + order[i].applies.In(style.language), 1, "",
                    style);
    }
  }
  if (!notReached.empty()) {
    lines += Line(kNotReached.In(style.language) + ':' + notReached, 1, "", style);
  }
  return lines.empty() ? lines : Line(kPassedOver.In(style.language) + ':', 0, "", style) + lines;
}

// The steps inside the operation at that place.
std::span<const Step> StepsInside(const std::vector<Step>& steps, std::size_t place) {
  std::size_t end = place + 1;
  while (end < steps.size() && steps[end].depth > steps[place].depth) {
    ++end;
  }
  return std::span(steps).subspan(place + 1, end - place - 1);
}

}  // namespace

std::string ExplainTree(const Outcome& outcome, const ReportStyle& style) {
  std::string tree;
  std::string passedOver;
  for (std::size_t i = 0; i < outcome.steps.size(); ++i) {
    const Step& step = outcome.steps[i];
    switch (step.kind) {
      case Step::Kind::Operation:
        tree += OperationLine(step, StepsInside(outcome.steps, i), style);
        passedOver += PassedOver(step, StepsInside(outcome.steps, i), style);
        break;
      case Step::Kind::Question:
        tree += QuestionLine(step, style);
        break;
      case Step::Kind::Message:
        tree += FindingLine(outcome.findings[step.finding], step.depth, style);
        break;
    }
  }
  return tree + passedOver;
}

}  // namespace kal::host
