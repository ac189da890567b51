#include "frame/modKalErrorHandling.h"

#include <algorithm>
#include <exception>
#include <new>

#include "frame/modCommonCostanti.h"

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

}  // namespace

std::string AddMessage(SiblingFactory& siblings, std::string& target, MessageCode code,
                       std::initializer_list<Variant> parameters) {
  std::string text = siblings.CreateKalStatus()->GetMessage(static_cast<std::int32_t>(code));
  for (const Variant& parameter : parameters) {
    const std::string value = CStr(parameter);
    const std::size_t at = FindPlaceholder(text);
    if (at != std::string_view::npos && text[at + 1] == 's') {
      text.replace(at, kPlaceholder.size(), value);
    }
  }
  AppendLiteral(target, text);
  return text;
}

void AppendLiteral(std::string& target, std::string_view text) {
  std::string joined;
  joined.reserve(target.size() + kCrLf.size() + text.size());
  joined = target;
  if (!joined.empty()) {
    joined += kCrLf;
  }
  joined += text;
  target = std::move(joined);
}

std::string TranslateText(SiblingFactory& siblings, std::string_view text1, std::string_view text2,
                          std::string_view text3, std::string_view text4, std::string_view text5,
                          std::string_view text6) {
  try {
    return siblings.CreateKalStatus()->TranslateFromDict(text1, text2, text3, text4, text5, text6);
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

RunTimeError CurrentError() {
  const auto raisedHere = [](RunTime number, const std::string& description) {
    return RunTimeError(static_cast<std::int32_t>(number), std::string(kComponentName),
                        description);
  };
  try {
    throw;
  } catch (const RunTimeError& error) {
    return error;
  } catch (const std::bad_alloc&) {
    return raisedHere(RunTime::OutOfMemory, "Out of memory");
  } catch (const std::exception& error) {
    return raisedHere(RunTime::InternalError, error.what());
  } catch (...) {
    return raisedHere(RunTime::InternalError, "Internal error");
  }
}

void ObservedOperation::Begin(std::string_view name) {
  frame_ = {name, observation_->innermost};
  observation_->innermost = &frame_;
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
