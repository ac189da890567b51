#include "platform/FilterValue.h"

#include <algorithm>
#include <bit>
#include <cstddef>
#include <string>

#include "platform/Compare.h"
#include "platform/LetterCase.h"

namespace kal {
namespace {

enum class Kind : std::uint8_t { None, Number, Text, Date, Any };

Kind KindOf(const Variant& value) {
  switch (value.VarType()) {
    case Variant::Type::Empty:
    case Variant::Type::NullValue:
      return Kind::None;
    case Variant::Type::Text:
      return Kind::Text;
    case Variant::Type::Date:
      return Kind::Date;
    default:
      return Kind::Number;
  }
}

Kind KindOf(DataType column) {
  switch (column) {
    case DataType::Text:
    case DataType::Char:
    case DataType::WChar:
    case DataType::VarChar:
    case DataType::LongVarChar:
    case DataType::VarWChar:
    case DataType::LongVarWChar:
      return Kind::Text;
    case DataType::Date:
    case DataType::DBTime:
    case DataType::DBTimeStamp:
      return Kind::Date;
    case DataType::Variant:
      return Kind::Any;
    default:
      return Kind::Number;
  }
}

Variant ZeroOrOne(bool value) { return static_cast<std::int16_t>(value ? 1 : 0); }

// The byte at that place in lower case. À to Þ are the byte C3 followed by 80 to 9E, of which 97
// is the multiplication sign; their lower-case letters lie 20 higher.
char Folded(std::string_view text, std::size_t at) {
  const auto byte = static_cast<unsigned char>(text[at]);
  if (byte < 0x80) {
    return FoldedAscii(text[at]);
  }
  const bool capital = byte <= 0x9E && byte != 0x97 && at > 0 && text[at - 1] == '\xC3';
  return capital ? static_cast<char>(byte + 0x20) : text[at];
}

std::strong_ordering CompareFolded(std::string_view left, std::string_view right) {
  const std::size_t common = std::min(left.size(), right.size());
  for (std::size_t i = 0; i < common; ++i) {
    const char a = Folded(left, i);
    const char b = Folded(right, i);
    if (a != b) {
      return static_cast<unsigned char>(a) <=> static_cast<unsigned char>(b);
    }
  }
  return left.size() <=> right.size();
}

// Spreads the bits over the whole word.
std::uint64_t Mixed(std::uint64_t bits) {
  bits = (bits ^ (bits >> 31U)) * 0x9E3779B97F4A7C15U;
  bits = (bits ^ (bits >> 29U)) * 0xBF58476D1CE4E5B9U;
  return bits ^ (bits >> 32U);
}

}  // namespace

const Variant* FilterConstantOfAny(DataType column, const Variant& value, Variant& room) {
  const Kind kind = KindOf(value);
  const Kind wanted = KindOf(column);
  if (kind == Kind::None || (kind != wanted && wanted != Kind::Any)) {
    return nullptr;
  }
  if (column == DataType::Boolean) {
    room = CBool(value);
    return &room;
  }
  if (const auto* boolean = value.As<bool>()) {
    room = ZeroOrOne(*boolean);
    return &room;
  }
  // A constant must lose as many digits as the cells did, or 0.1 would be found in no such column.
  if (column == DataType::Single) {
    room = static_cast<float>(CDbl(value));
    return &room;
  }
  return &value;
}

std::partial_ordering CompareOfAnyKind(const Variant& cell, const Variant& constant) {
  const Kind kind = KindOf(cell);
  if (kind != KindOf(constant)) {
    return std::partial_ordering::unordered;
  }
  if (const auto text = cell.AsText()) {
    const auto other = constant.AsText();
    return !other ? std::partial_ordering::unordered : CompareFolded(*text, *other);
  }
  if (const auto* boolean = constant.As<bool>()) {
    return static_cast<int>(CBool(cell)) <=> static_cast<int>(*boolean);
  }
  if (const auto* boolean = cell.As<bool>()) {
    return CompareValues(ZeroOrOne(*boolean), constant);
  }
  return CompareValues(cell, constant);
}

std::uint64_t HashInFilter(const Variant& value) {
  if (const auto whole = value.AsInteger()) {
    return Mixed(std::bit_cast<std::uint64_t>(static_cast<double>(*whole)));
  }
  if (const auto text = value.AsText()) {
    std::uint64_t hash = 0xCBF29CE484222325U;
    for (std::size_t i = 0; i < text->size(); ++i) {
      hash = (hash ^ static_cast<unsigned char>(Folded(*text, i))) * 0x100000001B3U;
    }
    return Mixed(hash);
  }
  const auto* boolean = value.As<bool>();
  const double number = boolean != nullptr ? (*boolean ? 1.0 : 0.0) : CDbl(value);
  return Mixed(std::bit_cast<std::uint64_t>(number == 0.0 ? 0.0 : number));
}

bool IsTextColumn(DataType column) { return KindOf(column) == Kind::Text; }

bool StartsWithFolded(std::string_view text, std::string_view start) {
  return text.size() >= start.size() && CompareFolded(text.substr(0, start.size()), start) == 0;
}

bool ContainsFolded(std::string_view text, std::string_view part) {
  for (std::size_t at = 0; at + part.size() <= text.size(); ++at) {
    if (StartsWithFolded(text.substr(at), part)) {
      return true;
    }
  }
  return false;
}

}  // namespace kal
