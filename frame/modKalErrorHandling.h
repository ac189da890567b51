// modKalErrorHandling: messages for the user, and the trail of unexpected errors.
//
// Findings are messages, appended to a result string. Everything else that goes wrong is a
// RunTimeError: each operation that it leaves adds a line with its tag to the error's source, so
// that the host sees the way it came.

#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>

#include "frame/modKalCommonErrorCodes.h"
#include "platform/RunTimeError.h"
#include "platform/Variant.h"
#include "siblings/Siblings.h"

namespace kal {

// Appends the text of the code to the target, behind a CR LF unless the target is empty. Each
// parameter takes the place of the first "%s" left in the text at its turn, so a parameter that
// itself contains "%s" is filled by the next one, and a surplus parameter changes nothing. A
// capital "%S" is found but not replaced: it swallows its own parameter and all later ones.
// A Null parameter raises 94. Errors of the status component pass unchanged.
void AddMessage(SiblingFactory& siblings, std::string& target, MessageCode code,
                std::initializer_list<Variant> parameters = {});

// Appends a text of the component's own, joined as AddMessage joins.
void AppendLiteral(std::string& target, std::string_view text);

// The status component's translation of the text; "" when anything goes wrong.
[[nodiscard]] std::string TranslateText(SiblingFactory& siblings, std::string_view text1,
                                        std::string_view text2 = "", std::string_view text3 = "",
                                        std::string_view text4 = "", std::string_view text5 = "",
                                        std::string_view text6 = "");

// The trail: "Errore ( number ) - Componente ( source )" unless the source is a trail already,
// then CR LF, the component's name, a point and the tag.
[[nodiscard]] std::string FormatErrorSource(std::int32_t number, std::string_view source,
                                            std::string_view tag);

// Raises the error again with the tag added to its trail. Number -1 and an empty description
// keep those of the error.
[[noreturn]] void RaiseError(const RunTimeError& current, std::string_view tag,
                             std::int32_t number = -1, std::string_view description = "");

// For a catch-all handler: raises what is being handled again with the tag added to its trail.
// A failure that is no RunTimeError becomes one (7 for memory, 51 otherwise).
[[noreturn]] void RaiseCurrentError(std::string_view tag);

// Runs one operation. The only place where errors are trapped and raised again with the trail.
template <class Body>
decltype(auto) Trap(std::string_view tag, Body&& body) {
  try {
    return std::forward<Body>(body)();
  } catch (...) {
    RaiseCurrentError(tag);
  }
}

}  // namespace kal
