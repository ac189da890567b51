// Findings: what the checks have found, kept as data.
//
// A finding is what was known when it was added: in which result string it stands, what it is
// about, which check found it on which way, and on which row of which record set. The result
// strings are what reading them joins.

#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/Variant.h"

namespace kal {

// The number of a coded message; what each means is told by `kalcogcheck explain`. The codes have
// names in frame/modKalCommonErrorCodes.h, for the component's own sources.
enum class MessageCode : std::int32_t;

// The five result strings, and their names by this order. The first one blocks, the others warn.
enum class ResultString : std::uint8_t {
  ErrString,
  WarnString,
  WarnProtocolloString,
  WarnDuplicatoDocString,
  WarnInfragruppoString,
};
using enum ResultString;
inline constexpr std::array<std::string_view, 5> kResultStringNames = {
    "ErrString", "WarnString", "WarnProtocolloString", "WarnDuplicatoDocString",
    "WarnInfragruppoString"};

// A row of a record set of the entry; row 0 stands for the entry as a whole.
struct SetRow {
  std::string_view set;
  std::size_t row = 0;  // counted from 1 among all rows of the set
};

struct Finding {
  ResultString string = ResultString::ErrString;
  std::optional<MessageCode> code;     // nothing for a literal text
  std::string_view literal;            // the name of the literal text; "" for a code
  std::vector<Variant> parameters;     // of a code
  std::string text;                    // as it was appended, with the line end that two bring along
  std::string_view check;              // the operation that found it
  std::vector<std::string_view> path;  // the operations under way, outermost first
  SetRow at;
};

class Findings {
 public:
  void Add(Finding finding) { findings_.push_back(std::move(finding)); }
  void Clear() { findings_.clear(); }
  void Clear(ResultString string);

  // Oldest first.
  [[nodiscard]] const std::vector<Finding>& All() const { return findings_; }
  // The messages of a result string, joined by CR LF.
  [[nodiscard]] std::string Text(ResultString string) const;
  // Whether that text, or each of the five, is empty.
  [[nodiscard]] bool IsEmpty(ResultString string) const;
  [[nodiscard]] bool IsEmpty() const;

 private:
  std::vector<Finding> findings_;
};

}  // namespace kal
