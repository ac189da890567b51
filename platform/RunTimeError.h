// Run-time errors: what automation code means by "the current error".
//
// Every failure of the portable core is one C++ exception type with the three parts that an
// automation host sees: number, source and description. Numbers below 1000 are the language's
// own, those above 3000 belong to record sets, negative ones are automation results.

#pragma once

#include <cstdint>
#include <exception>
#include <string>
#include <string_view>

namespace kal {

// The component's own name: the source of run-time errors that arise inside it, and the name
// in front of every line of an error's trail.
inline constexpr std::string_view kComponentName = "Kal_COGCheck";
// The sources of errors that arise in record sets and in the company's data access.
inline constexpr std::string_view kRecordsetSource = "ADODB.Recordset";
inline constexpr std::string_view kDataAccessSource = "DataAccess";

enum class RunTime : std::int32_t {
  Overflow = 6,
  OutOfMemory = 7,
  TypeMismatch = 13,
  InternalError = 51,
  ObjectNotSet = 91,
  InvalidUseOfNull = 94,
  CannotCreateObject = 429,
  NotSupported = 445,
  InvalidFilter = 3001,
  NoCurrentRecord = 3021,
  NoSuchField = 3265,
};

class RunTimeError : public std::exception {
 public:
  RunTimeError(std::int32_t number, std::string source, std::string description)
      : number_(number), source_(std::move(source)), description_(std::move(description)) {}

  [[nodiscard]] std::int32_t Number() const noexcept { return number_; }
  [[nodiscard]] const std::string& Source() const noexcept { return source_; }
  [[nodiscard]] const std::string& Description() const noexcept { return description_; }
  [[nodiscard]] const char* what() const noexcept override { return description_.c_str(); }

 private:
  std::int32_t number_;
  std::string source_;
  std::string description_;
};

// Throws a RunTimeError; the source is the component's own name unless given.
[[noreturn]] void Raise(RunTime number, std::string_view description,
                        std::string_view source = kComponentName);

// For a catch-all handler: what is being handled. A failure that is no RunTimeError becomes one of
// the component's own (7 for memory, 51 otherwise).
[[nodiscard]] RunTimeError CurrentError();

}  // namespace kal
