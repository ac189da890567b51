#include "host/ExplainTree.h"

#include <algorithm>
#include <span>

#include "frame/modKalCommonErrorCodes.h"

namespace kal::host {
namespace {

constexpr std::size_t kIndent = 2;

constexpr Wording kSilent = {"nessun rilievo", "silent"};
constexpr Wording kAccepted = {"già accettato", "accepted already"};
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

std::string_view ColourOf(TreeLine::Kind kind) {
  return kind == TreeLine::Kind::Error || kind == TreeLine::Kind::Failure ? kRed
         : kind == TreeLine::Kind::Warning                                ? kYellow
                                                                          : "";
}

// One line of text, or more where it is long. The colour paints the whole of it.
std::string Text(const TreeLine& line, const ReportStyle& style) {
  std::string lines = Wrapped(Printable(line.text), (line.depth + 1) * kIndent);
  lines.pop_back();
  return Painted(lines, ColourOf(line.kind), style) + '\n';
}

TreeLine OperationLine(const Step& step, std::span<const Step> inside, Language language) {
  std::string said;
  auto kind = TreeLine::Kind::Operation;
  if (step.error) {
    // Only the innermost operation says what happened.
    const bool innermost =
        std::ranges::none_of(inside, [](const Step& other) { return other.error.has_value(); });
    said = innermost ? kRunTimeError.In(language) + ' ' + std::to_string(step.error->Number()) +
                           ": " + step.error->Description()
                     : kStopped.In(language);
    kind = TreeLine::Kind::Failure;
  } else if (!step.answer.IsEmpty()) {
    said = Spoken(step.answer, language);
  } else if (step.findings == 0) {
    said = kSilent.In(language);
  } else {
    said = std::to_string(step.findings) + ' ' +
           (step.findings == 1 ? Wording{"rilievo", "finding"} : Wording{"rilievi", "findings"})
               .In(language);
  }
  return {step.depth, kind, std::string(step.name) + ": " + said};
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
bool IsFact(const MemberInfo& asked) {
  return asked.component != Component::KalStatus && asked.component != Component::SqlFunctions;
}

TreeLine QuestionLine(const Step& step, const MemberInfo& asked, Language language) {
  const std::string answer = asked.kind == CallKind::Open
                                 ? (CBool(step.answer) ? Wording{": trovata", ": found"}
                                                       : Wording{": nessuna riga", ": no row"})
                                       .In(language)
                                 : " = " + Spoken(step.answer, language);
  return {step.depth, TreeLine::Kind::Question, QuestionText(step, asked, language) + answer};
}

TreeLine FindingLine(const Finding& finding, bool isAccepted, std::size_t depth,
                     Language language) {
  const bool isError = finding.string == ResultString::ErrString;
  std::string text = isAccepted ? kAccepted.In(language) + ": " : "";
  text += (isError ? Wording{"errore", "error"} : Wording{"avviso", "warning"}).In(language);
  if (finding.code) {
    text += ' ' + std::to_string(static_cast<std::int32_t>(*finding.code));
  }
  text += ' ' + std::string(finding.code ? NameOf(*finding.code) : finding.literal);
  if (finding.at.row != 0) {
    text += " (" + std::string(finding.at.set) + ' ' + Wording{"riga", "row"}.In(language) + ' ' +
            std::to_string(finding.at.row) + ")";
  }
  return {depth,
          isAccepted ? TreeLine::Kind::Note
          : isError  ? TreeLine::Kind::Error
                     : TreeLine::Kind::Warning,
          text + ": " + std::string(WithoutLineEnd(finding.text))};
}

// The checks of an order that its run passed over, each with when it applies, and those that it
// did not come to.
void AddPassedOver(const OrderRun& run, Language language, std::vector<TreeLine>& lines) {
  // An error may end the run between a row and the beginning of its check.
  const std::size_t reached =
      run.applied.size() - (run.applied.back() && !run.entered ? std::size_t{1} : std::size_t{0});
  const std::size_t heading = lines.size();
  std::string notReached;
  for (std::size_t place = 0; place < run.order.size(); ++place) {
    const Passo& row = run.order[place];
    if (row.Controllo.empty()) {
      continue;
    }
    if (place >= reached) {
      notReached += (notReached.empty() ? " " : ", ") + std::string(row.Controllo);
    } else if (!run.applied[place]) {
      lines.push_back({1, TreeLine::Kind::Note,
                       std::string(row.Controllo) + ": " + row.Quando->Parole.In(language)});
    }
  }
  if (!notReached.empty()) {
    lines.push_back({1, TreeLine::Kind::Note, kNotReached.In(language) + ':' + notReached});
  }
  if (lines.size() > heading) {
    lines.insert(lines.begin() + static_cast<std::ptrdiff_t>(heading),
                 {0, TreeLine::Kind::Note, kPassedOver.In(language) + ':'});
  }
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

std::vector<TreeLine> TreeLines(const Outcome& outcome, Language language) {
  std::vector<TreeLine> lines;
  lines.reserve(outcome.steps.size());
  for (std::size_t i = 0; i < outcome.steps.size(); ++i) {
    const Step& step = outcome.steps[i];
    switch (step.kind) {
      case Step::Kind::Operation:
        lines.push_back(OperationLine(step, StepsInside(outcome.steps, i), language));
        break;
      case Step::Kind::Question:
        if (const MemberInfo& asked = kMembers[static_cast<std::size_t>(step.member)];
            IsFact(asked)) {
          lines.push_back(QuestionLine(step, asked, language));
        }
        break;
      case Step::Kind::Message:
        lines.push_back(FindingLine(outcome.findings[step.finding],
                                    outcome.IsAccepted(step.finding), step.depth, language));
        break;
    }
  }
  for (const OrderRun& run : outcome.orders) {
    AddPassedOver(run, language, lines);
  }
  return lines;
}

std::string ExplainTree(const Outcome& outcome, const ReportStyle& style) {
  std::string tree;
  for (const TreeLine& line : TreeLines(outcome, style.language)) {
    tree += Text(line, style);
  }
  return tree;
}

}  // namespace kal::host
