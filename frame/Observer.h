// Observer: told what a checker does while it does it, for hosts that explain its answers.
//
// A native host hands one to the checker (KalCOGCheck::Observe); it is no part of the automation
// interface. Operations are told by their own names, which last as long as the program; all else
// is valid during the call. The host's record sets stand on the row that was looked at, so a host
// that knows their positions can say which line a message is about. An observer reads and does not
// touch: it leaves checker and record sets alone. What it throws is an error of the operation.

#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "frame/modKalCommonErrorCodes.h"
#include "platform/RunTimeError.h"
#include "platform/Variant.h"
#include "siblings/ObservedSiblings.h"

namespace kal {

// The five result strings, and their names by this order.
enum class ResultString : std::uint8_t {
  ErrString,
  WarnString,
  WarnProtocolloString,
  WarnDuplicatoDocString,
  WarnInfragruppoString,
};
inline constexpr std::array<std::string_view, 5> kResultStringNames = {
    "ErrString", "WarnString", "WarnProtocolloString", "WarnDuplicatoDocString",
    "WarnInfragruppoString"};

// An operation under way and the one that called it.
struct OperationFrame {
  std::string_view name;
  const OperationFrame* caller = nullptr;

  // The names from the outermost operation to this one.
  [[nodiscard]] std::vector<std::string_view> Path() const;
};

struct ObservedMessage {
  ResultString target;
  std::optional<MessageCode> code;  // nothing for a literal text
  std::string_view name;            // of the code or of the literal text, without its "k"
  std::span<const Variant> parameters;
  std::string_view text;  // as it was appended, with the line end that two texts bring along
  const OperationFrame& operation;
};

class Observer : public SiblingObserver {
 public:
  virtual void Entered(std::string_view /*operation*/) {}
  // An operation without an answer hands over Empty. Private checks that answer by reference are
  // told with the value that they leave.
  virtual void Answered(std::string_view /*operation*/, const Variant& /*answer*/) {}
  // The operation was left with a run-time error; the trail is that of the operations inside it.
  virtual void Failed(std::string_view /*operation*/, const RunTimeError& /*error*/) {}
  virtual void Added(const ObservedMessage& /*message*/) {}
};

// An observer, or none, and the operations under way while there is one.
struct Observation {
  Observer* observer = nullptr;
  const OperationFrame* innermost = nullptr;
};

}  // namespace kal
