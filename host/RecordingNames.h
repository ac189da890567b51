// RecordingNames: what recordings call things by, for their writer and their reader.

#pragma once

#include <array>
#include <string_view>

#include "platform/Recordset.h"

namespace kal::host {

// By CompareWith.
inline constexpr std::array<std::string_view, 6> kOperators = {"=", "<>", "<", "<=", ">", ">="};
// By JoinKind.
inline constexpr std::array<std::string_view, 2> kJoinKinds = {"inner", "left"};
// By SetMoves::To.
inline constexpr std::array<std::string_view, 3> kPlaces = {"", "first", "last"};

// Types of columns with a letter; all others are written as their number.
struct TypeLetter {
  DataType type;
  std::string_view letter;
};
inline constexpr std::array kTypes = {
    TypeLetter{DataType::VarWChar, "t"}, TypeLetter{DataType::SmallInt, "i"},
    TypeLetter{DataType::Integer, "l"},  TypeLetter{DataType::Currency, "m"},
    TypeLetter{DataType::Date, "d"},     TypeLetter{DataType::Boolean, "b"},
    TypeLetter{DataType::Double, "f"},   TypeLetter{DataType::Single, "s"},
    TypeLetter{DataType::Decimal, "n"},  TypeLetter{DataType::BigInt, "q"},
    TypeLetter{DataType::TinyInt, "y"},
};

}  // namespace kal::host
