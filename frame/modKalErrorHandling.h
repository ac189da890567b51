// modKalErrorHandling: messages for the user, and the trail of unexpected errors.
//
// What a check finds is a message, kept as a finding of the entry. Everything else that goes wrong
// is a RunTimeError: each operation that it leaves adds a line with its tag to the error's source,
// so that the host sees the way it came.

#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

#include "frame/Registrazione.h"
#include "frame/modCommonCostanti.h"
#include "frame/modKalCommonErrorCodes.h"
#include "platform/RunTimeError.h"
#include "platform/Variant.h"

namespace kal {

// Adds the message of the code to a result string. Each parameter takes the place of the first
// "%s" left in the text at its turn, so a parameter that itself contains "%s" is filled by the next
// one, and a surplus parameter changes nothing. A capital "%S" is found but not replaced: it
// swallows its own parameter and all later ones. A Null parameter raises 94. Errors of the status
// component pass unchanged. The row is the one that the message speaks of; the check is the
// operation under way unless another one is named.
void AddMessage(Registrazione& aRegistrazione, ResultString target, MessageCode code,
                std::initializer_list<Variant> parameters = {}, SetRow at = {},
                std::string_view check = {});

// Adds a text of the component's own, or what is shown in its place.
void AppendLiteral(Registrazione& aRegistrazione, ResultString target,
                   const testi::Letterale& literal, std::string_view shown, SetRow at = {});
inline void AppendLiteral(Registrazione& aRegistrazione, ResultString target,
                          const testi::Letterale& literal, SetRow at = {}) {
  AppendLiteral(aRegistrazione, target, literal, literal.testo, at);
}

// The status component's translation of the text; "" when anything goes wrong.
[[nodiscard]] std::string TranslateText(Siblings& siblings, std::string_view text1,
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

// What an operation is known by: its tag in trails, which is always written out where it is used,
// and its own name. That is the tag's last word unless the tag names another operation.
class OperationTag {
 public:
  // NOLINTNEXTLINE(google-explicit-constructor): a tag is written as its text.
  consteval OperationTag(const char* tag) : text_(tag), name_(text_.substr(text_.rfind('.') + 1)) {}
  consteval OperationTag(const char* tag, const char* name) : text_(tag), name_(name) {}

  [[nodiscard]] constexpr std::string_view Text() const { return text_; }
  [[nodiscard]] constexpr std::string_view Name() const { return name_; }

 private:
  std::string_view text_;
  std::string_view name_;
};

// One operation while it is under way, and what its observer is told of it.
class OperationUnderWay {
 public:
  OperationUnderWay(Operations& operations, std::string_view name);
  OperationUnderWay(const OperationUnderWay&) = delete;
  OperationUnderWay& operator=(const OperationUnderWay&) = delete;
  ~OperationUnderWay() { operations_.innermost = frame_.caller; }

  void Enter() {
    if (operations_.observer != nullptr) {
      operations_.observer->Entered(frame_.name);
      told_ = true;
    }
  }
  void Leave(const Variant& answer) const {
    if (told_) {
      operations_.observer->Answered(frame_.name, answer);
    }
  }
  // Not told where the observer failed to take note that the operation began.
  void Fail(const RunTimeError& error) const {
    if (told_) {
      operations_.observer->Failed(frame_.name, error);
    }
  }

 private:
  Operations& operations_;
  OperationFrame frame_;
  bool told_ = false;
};

// Runs one operation over an entry. The only place where errors are trapped and raised again with
// the trail, and where an observer is told of operations.
template <class Body>
decltype(auto) Trap(const Registrazione& aRegistrazione, OperationTag tag, Body&& body) {
  using Result = std::invoke_result_t<Body>;
  OperationUnderWay operation(aRegistrazione.Operazioni, tag.Name());
  try {
    operation.Enter();
    if constexpr (std::is_void_v<Result>) {
      std::forward<Body>(body)();
      operation.Leave(Variant());
    } else {
      Result result = std::forward<Body>(body)();
      operation.Leave(result);
      return result;
    }
  } catch (...) {
    const RunTimeError error = CurrentError();
    operation.Fail(error);
    RaiseError(error, tag.Text());
  }
}

}  // namespace kal
