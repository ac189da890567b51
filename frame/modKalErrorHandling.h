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
#include <type_traits>
#include <utility>

#include "frame/Observer.h"
#include "frame/modKalCommonErrorCodes.h"
#include "platform/RunTimeError.h"
#include "platform/Variant.h"
#include "siblings/Siblings.h"

namespace kal {

// Appends the text of the code to the target, behind a CR LF unless the target is empty. Each
// parameter takes the place of the first "%s" left in the text at its turn, so a parameter that
// itself contains "%s" is filled by the next one, and a surplus parameter changes nothing. A
// capital "%S" is found but not replaced: it swallows its own parameter and all later ones.
// A Null parameter raises 94. Errors of the status component pass unchanged. Returns the text that
// was appended.
std::string AddMessage(SiblingFactory& siblings, std::string& target, MessageCode code,
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

// For a catch-all handler: what is being handled. A failure that is no RunTimeError becomes one (7
// for memory, 51 otherwise).
[[nodiscard]] RunTimeError CurrentError();

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

// One operation as its observer sees it; nothing happens where there is no observer.
class ObservedOperation {
 public:
  ObservedOperation(Observation* observation, std::string_view name)
      : observation_(observation != nullptr && observation->observer != nullptr ? observation
                                                                                : nullptr) {
    if (observation_ != nullptr) {
      Begin(name);
    }
  }
  ObservedOperation(const ObservedOperation&) = delete;
  ObservedOperation& operator=(const ObservedOperation&) = delete;
  ~ObservedOperation() {
    if (observation_ != nullptr) {
      observation_->innermost = frame_.caller;
    }
  }

  void Enter() const {
    if (observation_ != nullptr) {
      observation_->observer->Entered(frame_.name);
    }
  }
  template <class Answer>
  void Leave(const Answer& answer) const {
    if (observation_ != nullptr) {
      observation_->observer->Answered(frame_.name, answer);
    }
  }
  void Fail(const RunTimeError& error) const {
    if (observation_ != nullptr) {
      observation_->observer->Failed(frame_.name, error);
    }
  }

 private:
  void Begin(std::string_view name);

  Observation* observation_;
  OperationFrame frame_;
};

// Runs one operation. The only place where errors are trapped and raised again with the trail, and
// where an observer is told of operations.
template <class Body>
decltype(auto) Trap(OperationTag tag, Body&& body, Observation* observation = nullptr) {
  using Result = std::invoke_result_t<Body>;
  ObservedOperation operation(observation, tag.Name());
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
