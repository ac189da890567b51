#include "frame/modKalErrorHandling.h"

#include <algorithm>

#include "siblings/Components.h"

namespace kal {
namespace {

constexpr std::string_view kPlaceholder = "%s";

// The place of the first placeholder in either letter case, or npos.
std::size_t FindPlaceholder(std::string_view text) {
  for (std::size_t at = text.find('%'); at != std::string_view::npos; at = text.find('%', at + 1)) {
    if (at + 1 < text.size() && (text[at + 1] == 's' || text[at + 1] == 'S')) {
      return at;
    }
  }
  return std::string_view::npos;
}

// A finding knows the way on which it was found from the operations under way.
void Add(Registrazione& aRegistrazione, Finding finding) {
  const Operations& operations = aRegistrazione.Operazioni;
  finding.path = operations.innermost->Path();
  if (finding.check.empty()) {
    finding.check = finding.path.back();
  }
  aRegistrazione.Rilievi.Add(std::move(finding));
  if (operations.observer != nullptr) {
    operations.observer->Added(aRegistrazione.Rilievi.All().back());
  }
}

}  // namespace

void AddMessage(Registrazione& aRegistrazione, ResultString target, MessageCode code,
                std::initializer_list<Variant> parameters, SetRow at, std::string_view check) {
  std::string text = KalStatus(aRegistrazione.Siblings).GetMessage(static_cast<std::int32_t>(code));
  for (const Variant& parameter : parameters) {
    const std::string value = CStr(parameter);
    const std::size_t place = FindPlaceholder(text);
    if (place != std::string_view::npos && text[place + 1] == 's') {
      text.replace(place, kPlaceholder.size(), value);
    }
  }
  Add(aRegistrazione, {.string = target,
                       .code = code,
                       .literal = {},
                       .parameters = parameters,
                       .text = std::move(text),
                       .check = check,
                       .path = {},
                       .at = at});
}

void AppendLiteral(Registrazione& aRegistrazione, ResultString target,
                   const testi::Letterale& literal, std::string_view shown, SetRow at) {
  Add(aRegistrazione, {.string = target,
                       .code = std::nullopt,
                       .literal = literal.nome,
                       .parameters = {},
                       .text = std::string(shown),
                       .check = {},
                       .path = {},
                       .at = at});
}

std::string TranslateText(Siblings& siblings, std::string_view text1, std::string_view text2,
                          std::string_view text3, std::string_view text4, std::string_view text5,
                          std::string_view text6) {
  try {
    return KalStatus(siblings).TranslateFromDict(text1, text2, text3, text4, text5, text6);
  } catch (...) {  // an untranslated word is no reason to stop a check
    return {};
  }
}

std::string FormatErrorSource(std::int32_t number, std::string_view source, std::string_view tag) {
  std::string trail;
  const bool isTrail = source.find(kCrLf) != std::string_view::npos && source != kComponentName;
  if (isTrail) {
    trail = source;
  } else {
    trail = "Errore ( " + std::to_string(number) + " ) - Componente ( ";
    trail += source;
    trail += " )";
  }
  trail += kCrLf;
  trail += kComponentName;
  trail += '.';
  trail += tag;
  return trail;
}

void RaiseError(const RunTimeError& current, std::string_view tag, std::int32_t number,
                std::string_view description) {
  const std::int32_t n = number == -1 ? current.Number() : number;
  throw RunTimeError(n, FormatErrorSource(n, current.Source(), tag),
                     description.empty() ? current.Description() : std::string(description));
}

OperationUnderWay::OperationUnderWay(Operations& operations, std::string_view name)
    : operations_(operations), frame_{name, operations.innermost} {
  operations_.innermost = &frame_;
}

std::vector<std::string_view> OperationFrame::Path() const {
  std::vector<std::string_view> path;
  for (const OperationFrame* frame = this; frame != nullptr; frame = frame->caller) {
    path.push_back(frame->name);
  }
  std::ranges::reverse(path);
  return path;
}

}  // namespace kal
