#include "frame/modKalErrorHandling.h"

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

void AddMessage(SiblingFactory& siblings, std::string& target, MessageCode code,
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

void RaiseCurrentError(std::string_view tag) {
  try {
    throw;
  } catch (const RunTimeError& error) {
    RaiseError(error, tag);
  } catch (const std::bad_alloc&) {
    RaiseError({static_cast<std::int32_t>(RunTime::OutOfMemory), std::string(kComponentName),
                "Out of memory"},
               tag);
  } catch (const std::exception& error) {
    RaiseError({static_cast<std::int32_t>(RunTime::InternalError), std::string(kComponentName),
                error.what()},
               tag);
  } catch (...) {
    RaiseError({static_cast<std::int32_t>(RunTime::InternalError), std::string(kComponentName),
                "Internal error"},
               tag);
  }
}

}  // namespace kal
