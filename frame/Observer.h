// Observer: told what a checker does while it does it, for hosts that explain its answers.
//
// A native host hands one to the checker (KalCOGCheck::Observe); it is no part of the automation
// interface. Operations are told by their own names, which last as long as the program; all else
// is valid during the call. An observer reads and does not touch: it leaves checker and record
// sets alone. What it throws is an error of the operation.

#pragma once

#include <cstddef>
#include <span>
#include <string_view>
#include <vector>

#include "frame/Findings.h"
#include "platform/RunTimeError.h"
#include "platform/Variant.h"

namespace kal {

struct Passo;

class Observer {
 public:
  Observer() = default;
  Observer(const Observer&) = delete;
  Observer& operator=(const Observer&) = delete;
  virtual ~Observer() = default;

  virtual void Entered(std::string_view /*operation*/) {}
  // An operation without an answer hands over Empty.
  virtual void Answered(std::string_view /*operation*/, const Variant& /*answer*/) {}
  // The operation was left with a run-time error; the trail is that of the operations inside it.
  virtual void Failed(std::string_view /*operation*/, const RunTimeError& /*error*/) {}
  virtual void Added(const Finding& /*finding*/) {}
  // The run of an order has come to the row at that place. It applies, or is passed over.
  virtual void Reached(std::span<const Passo> /*order*/, std::size_t /*place*/, bool /*applies*/) {}
};

// An operation under way and the one that called it.
struct OperationFrame {
  std::string_view name;
  const OperationFrame* caller = nullptr;

  // The names from the outermost operation to this one.
  [[nodiscard]] std::vector<std::string_view> Path() const;
};

// The operations under way, and who is told of them: an observer, or nobody.
struct Operations {
  Observer* observer = nullptr;
  const OperationFrame* innermost = nullptr;
};

}  // namespace kal
