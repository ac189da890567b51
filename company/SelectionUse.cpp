#include "company/SelectionUse.h"

namespace kal::company {
namespace {

template <class Number>
void AppendNumber(std::string& key, Number number) {
  key.append(reinterpret_cast<const char*>(&number), sizeof number);
}

}  // namespace

void AppendText(std::string& key, std::string_view text) {
  AppendNumber(key, text.size());
  key += text;
}

void AppendValue(std::string& key, const Variant& value) {
  AppendNumber(key, value.VarType());
  switch (value.VarType()) {
    case Variant::Type::Boolean:
      return AppendNumber(key, *value.As<bool>());
    case Variant::Type::SmallInt:
      return AppendNumber(key, *value.As<std::int16_t>());
    case Variant::Type::Integer:
      return AppendNumber(key, *value.As<std::int32_t>());
    case Variant::Type::Single:
      return AppendNumber(key, *value.As<float>());
    case Variant::Type::Double:
      return AppendNumber(key, *value.As<double>());
    case Variant::Type::Date:
      return AppendNumber(key, value.As<Date>()->Serial());
    case Variant::Type::Text:
      return AppendText(key, *value.AsText());
    case Variant::Type::Empty:
    case Variant::Type::NullValue:
      return;
    default:  // rarely asked for, and exact as a text
      AppendText(key, CStr(value));
  }
}

}  // namespace kal::company
