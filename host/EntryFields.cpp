#include "host/EntryFields.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include "company/Schema.h"
#include "host/PerThread.h"

namespace kal::host {
namespace {

using company::SchemaColumn;

constexpr std::array kSets = {
    EntrySet{"RsTesta", &KalCOGCheck::RsTesta},
    EntrySet{"RsRIva", &KalCOGCheck::RsRIva},
    EntrySet{"RsRCont", &KalCOGCheck::RsRCont},
    EntrySet{"RsScadenze", &KalCOGCheck::RsScadenze},
    EntrySet{"RsCausale", &KalCOGCheck::RsCausale},
    EntrySet{"RsRisconti", &KalCOGCheck::RsRisconti},
    EntrySet{"RsFiscalitaBL", &KalCOGCheck::RsFiscalitaBL},
};

constexpr DataType kText = DataType::VarWChar;
constexpr DataType kShort = DataType::SmallInt;
constexpr DataType kLong = DataType::Integer;
constexpr DataType kAmount = DataType::Currency;
constexpr DataType kDay = DataType::Date;
constexpr DataType kFlag = DataType::Boolean;

constexpr SchemaColumn kRigheIva[] = {{"NumeroRiga", kLong},       {"CodIva", kText},
                                      {"Imponibile", kAmount},     {"ImponibileVB", kAmount},
                                      {"Imposta", kAmount},        {"ImpostaVB", kAmount},
                                      {"TotaleVB", kAmount},       {"Indetraibile", kAmount},
                                      {"IndetraibileVB", kAmount}, {"ReverseCharge", kFlag}};

constexpr SchemaColumn kRigheContabili[] = {
    {"NumeroRiga", kLong},       {"CodConto", kText},        {"TipoRiga", kShort},
    {"ImportoDare", kAmount},    {"ImportoDareVB", kAmount}, {"ImportoAvere", kAmount},
    {"ImportoAvereVB", kAmount}, {"IdCliFor", kLong},        {"TipoCliFor", kShort},
    {"IdScadenza", kLong},       {"CodDivisa", kText}};

constexpr SchemaColumn kScadenze[] = {
    {"IdScadenza", kLong},     {"NrRata", kShort},          {"TipoRata", kShort},
    {"DataScadenza", kDay},    {"ImportoDare", kAmount},    {"ImportoDareVB", kAmount},
    {"ImportoAvere", kAmount}, {"ImportoAvereVB", kAmount}, {"IdTipologiaPagamento", kLong},
    {"IdBancaCliente", kLong}, {"LinkApertura", kLong},     {"RataApertura", kShort}};

constexpr SchemaColumn kRisconti[] = {{"CodContoContropartita", kText}};

constexpr SchemaColumn kFiscalitaBL[] = {{"BeniImponibili", kAmount},
                                         {"ServiziImponibili", kAmount},
                                         {"BeniNonImponibili", kAmount},
                                         {"ServiziNonImponibili", kAmount},
                                         {"BeniServiziEsenti", kAmount},
                                         {"BeniNonSoggettiIva", kAmount},
                                         {"ServiziNonSoggettiIva", kAmount},
                                         {"ImpostaBeniImponibili", kAmount},
                                         {"ImpostaServiziImponibili", kAmount},
                                         {"NoteVariazioneBeni", kAmount},
                                         {"ImpostaNoteVariazioneBeni", kAmount},
                                         {"NoteVariazioneServizi", kAmount},
                                         {"ImpostaNoteVariazioneServizi", kAmount},
                                         {"NoteVariazioneBeniAnnoPrec", kAmount},
                                         {"ImpostaNoteVariazioneBeniAnnoPrec", kAmount},
                                         {"NoteVariazioneServiziAnnoPrec", kAmount},
                                         {"ImpostaNoteVariazioneServiziAnnoPrec", kAmount}};

std::span<const SchemaColumn> ColumnsOf(std::string_view set) {
  if (set == "RsTesta") {
    return company::FindTable("COGPrimeNoteTeste")->columns;
  }
  if (set == "RsCausale") {
    return company::FindTable("COGCausaliContabili")->columns;
  }
  if (set == "RsRIva") {
    return kRigheIva;
  }
  if (set == "RsRCont") {
    return kRigheContabili;
  }
  if (set == "RsScadenze") {
    return kScadenze;
  }
  if (set == "RsRisconti") {
    return kRisconti;
  }
  return kFiscalitaBL;
}

template <class T>
Variant WholeNumber(const JsonValue& value) {
  T number{};
  const char* const end = value.text.data() + value.text.size();
  const auto [stop, error] = std::from_chars(value.text.data(), end, number);
  if (value.kind != JsonValue::Kind::Number || error != std::errc() || stop != end) {
    return {};
  }
  return number;
}

Variant FloatingNumber(const JsonValue& value) {
  if (value.kind != JsonValue::Kind::Number) {
    return {};
  }
  // The parser has refused what is too large; what is too small to hold stays 0.
  double number = 0;
  (void)std::from_chars(value.text.data(), value.text.data() + value.text.size(), number);
  return number;
}

// A number with an exponent, whose mark stands there, written out: "12.5e-1" is "1.25". Nothing
// when its digits reach beyond what an amount can hold, so that no exponent makes a long text.
std::optional<std::string> WithoutExponent(std::string_view number, std::size_t mark) {
  constexpr int kMostDigits = 40;
  const bool negative = number.front() == '-';
  const std::string_view mantissa = number.substr(negative ? 1 : 0, mark - (negative ? 1 : 0));
  const std::size_t point = std::min(mantissa.find('.'), mantissa.size());
  std::string digits(mantissa);
  digits.erase(point, 1);
  const std::size_t first = digits.find_first_not_of('0');
  if (first == std::string::npos) {
    return "0";
  }
  std::string_view exponentText = number.substr(mark + 1);
  exponentText.remove_prefix(exponentText.front() == '+' ? 1 : 0);
  std::int16_t exponent = 0;
  const auto parsed =
      std::from_chars(exponentText.data(), exponentText.data() + exponentText.size(), exponent);
  if (parsed.ec != std::errc() || digits.size() > kMostDigits || exponent > kMostDigits ||
      exponent < -kMostDigits) {
    return std::nullopt;
  }
  // Room on both sides of the point, then the point goes where the exponent says.
  const std::string room(static_cast<std::size_t>(kMostDigits), '0');
  std::string plain = room + digits + room;
  const auto place = static_cast<std::ptrdiff_t>(room.size() + point) + exponent;
  plain.insert(static_cast<std::size_t>(place), 1, '.');
  plain.erase(0, std::min(plain.find_first_not_of('0'), plain.find('.') - 1));
  plain.erase(plain.find_last_not_of('0') + 1);
  plain.erase(plain.find_last_not_of('.') + 1);
  return (negative ? "-" : "") + plain;
}

Variant Amount(const JsonValue& value) {
  std::optional<Currency> amount;
  const std::size_t mark = value.kind == JsonValue::Kind::Number ? value.text.find_first_of("eE")
                                                                 : std::string_view::npos;
  if (mark != std::string_view::npos) {
    const std::optional<std::string> plain = WithoutExponent(value.text, mark);
    amount = plain ? Currency::FromExactText(*plain) : std::nullopt;
  } else if (value.kind == JsonValue::Kind::Number || value.kind == JsonValue::Kind::Text) {
    amount = Currency::FromExactText(value.text);
  }
  return amount ? Variant(*amount) : Variant();
}

Variant CalendarDay(const JsonValue& value) {
  const auto day = value.kind == JsonValue::Kind::Text ? Date::FromIso(value.text) : std::nullopt;
  return day ? Variant(*day) : Variant();
}

}  // namespace

std::span<const EntrySet> EntrySets() { return kSets; }

std::shared_ptr<RowTable> NewRowTable(const EntrySet& set) {
  // Made once for each thread; threads that shared them would count their uses at each other's
  // cost.
  using Layouts = std::array<std::shared_ptr<const RowLayout>, kSets.size()>;
  auto& layouts = OfThisThread<Layouts>();
  std::shared_ptr<const RowLayout>& layout = layouts[static_cast<std::size_t>(&set - kSets.data())];
  if (layout == nullptr) {
    std::vector<Column> columns;
    for (const SchemaColumn& column : ColumnsOf(set.name)) {
      columns.push_back({std::string(column.name), column.type});
    }
    layout = std::make_shared<RowLayout>(std::move(columns));
  }
  return std::make_shared<RowTable>(layout);
}

Variant FieldValue(const JsonValue& value, DataType type) {
  if (value.kind == JsonValue::Kind::Null) {
    return Null;
  }
  switch (type) {
    case DataType::SmallInt:
      return WholeNumber<std::int16_t>(value);
    case DataType::Integer:
      return WholeNumber<std::int32_t>(value);
    case DataType::Double:
      return FloatingNumber(value);
    case DataType::Currency:
      return Amount(value);
    case DataType::Date:
      return CalendarDay(value);
    case DataType::Boolean:
      return value.kind == JsonValue::Kind::Boolean ? Variant(value.boolean) : Variant();
    default:
      return value.kind == JsonValue::Kind::Text ? Variant(value.text) : Variant();
  }
}

Wording WantedValue(DataType type) {
  switch (type) {
    case DataType::SmallInt:
      return {"un numero intero da -32768 a 32767", "a whole number from -32768 to 32767"};
    case DataType::Integer:
      return {"un numero intero da -2147483648 a 2147483647",
              "a whole number from -2147483648 to 2147483647"};
    case DataType::Double:
      return {"un numero", "a number"};
    case DataType::Currency:
      return {"un importo con al più quattro decimali", "an amount with up to four decimals"};
    case DataType::Date:
      return {"una data (aaaa-mm-gg)", "a date (yyyy-mm-dd)"};
    case DataType::Boolean:
      return {"true o false", "true or false"};
    default:
      return {"un testo", "a text"};
  }
}

}  // namespace kal::host
