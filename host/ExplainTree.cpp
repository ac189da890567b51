#include "host/ExplainTree.h"

#include <algorithm>
#include <span>

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
  std::string lines = Wrapped(Printable(text), (depth + 1) * kIndent);
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

// What is asked, as people read it: a selection or a setting as it is, else in the member's words.
std::string QuestionText(const Step& step, const MemberInfo& asked, Language language) {
  if (step.member == Member::CompanySettings_Setting) {
    return step.text.substr(1, step.text.size() - 2);  // its name without the quotes
  }
  if (asked.words.IsEmpty()) {
    return step.text;
  }
  return asked.words.In(language) + (step.text.empty() ? "" : " (" + step.text + ")");
}

// Message texts and expressions of the database language are no facts of the entry.
std::string QuestionLine(const Step& step, const ReportStyle& style) {
  const MemberInfo& asked = kMembers[static_cast<std::size_t>(step.member)];
  if (asked.component == Component::KalStatus || asked.component == Component::SqlFunctions) {
    return "";
  }
  const std::string answer = asked.kind == CallKind::Open
                                 ? (CBool(step.answer) ? Wording{": trovata", ": found"}
                                                       : Wording{": nessuna riga", ": no row"})
                                       .In(style.language)
                                 : " = " + Spoken(step.answer, style.language);
  return Line(QuestionText(step, asked, style.language) + answer, step.depth, "", style);
}

std::string FindingLine(const Finding& finding, std::size_t depth, const ReportStyle& style) {
  const bool isError = finding.string == ResultString::ErrString;
  std::string text =
      (isError ? Wording{"errore", "error"} : Wording{"avviso", "warning"}).In(style.language);
  if (finding.code) {
    text += ' ' + std::to_string(static_cast<std::int32_t>(*finding.code));
  }
  text += ' ' + std::string(finding.code ? NameOf(*finding.code) : finding.literal);
  if (finding.at.row != 0) {
    text += " (" + std::string(finding.at.set) + ' ' + Wording{"riga", "row"}.In(style.language) +
            ' ' + std::to_string(finding.at.row) + ")";
  }
  return Line(text + ": " + std::string(WithoutLineEnd(finding.text)), depth,
              isError ? kRed : kYellow, style);
}

// The checks of an order that its run passed over, each with when it applies, and those that it
// did not come to.
std::string PassedOver(const OrderRun& run, const ReportStyle& style) {
  // An error may end the run between a row and the beginning of its check.
  const std::size_t reached =
      run.applied.size() - (run.applied.back() && !run.entered ? std::size_t{1} : std::size_t{0});
  std::string lines;
  std::string notReached;
  for (std::size_t place = 0; place < run.order.size(); ++place) {
    const Passo& row = run.order[place];
    if (row.Controllo.empty()) {
      continue;
    }
    if (place >= reached) {
      notReached += (notReached.empty() ? " " : ", ") + std::string(row.Controllo);
    } else if (!run.applied[place]) {
      lines += Line(std::string(row.Controllo) + ": " + row.Quando->Parole.In(style.language), 1,
                    "", style);
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
  for (std::size_t i = 0; i < outcome.steps.size(); ++i) {
    const Step& step = outcome.steps[i];
    switch (step.kind) {
      case Step::Kind::Operation:
        tree += OperationLine(step, StepsInside(outcome.steps, i), style);
        break;
      case Step::Kind::Question:
        tree += QuestionLine(step, style);
        break;
      case Step::Kind::Message:
        tree += FindingLine(outcome.findings[step.finding], step.depth, style);
        break;
    }
  }
  for (const OrderRun& run : outcome.orders) {
    tree += PassedOver(run, style);
  }
  return tree;
}

}  // namespace kal::host
