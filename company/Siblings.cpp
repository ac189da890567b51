#include "company/Siblings.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "company/DataError.h"
#include "company/PlaceByAddress.h"
#include "company/Schema.h"
#include "company/Settings.h"
#include "platform/LetterCase.h"

namespace kal::company {
namespace {

constexpr Selection kMessaggio =
    Selection().Select("Testo").From("KalMessaggi").WhereEqual("Codice").WhereEqual("Lingua");
constexpr Selection kTraduzione =
    Selection().Select("Traduzione").From("KalDizionario").WhereEqual("Testo").WhereEqual("Lingua");
constexpr Selection kParametro =
    Selection().Select("Valore").From("STDParametriAzienda").WhereEqual("Nome");
constexpr Selection kEsercizio = Selection()
                                     .Select("*")
                                     .From("STDEsercizi")
                                     .Where("DataInizio", CompareWith::LessOrEqual)
                                     .Where("DataFine", CompareWith::GreaterOrEqual);
// The column is the one asked for.
constexpr Selection kCliente =
    Selection().Select(kGivenName).From("STDAnagraficaClienti").WhereEqual("IdAnagrafica");
constexpr Selection kFornitore =
    Selection().Select(kGivenName).From("STDAnagraficaFornitori").WhereEqual("IdAnagrafica");
constexpr Selection kAmmessaFiscalita =
    Selection().Select("AmmessaFiscalitaBL").From("STDIva").WhereEqual("CodIva");
constexpr Selection kTipoIntra =
    Selection().Select("TipoIntra").From("STDIva").WhereEqual("CodIva");
constexpr Selection kNotaVariazione =
    Selection().Select("NotaVariazione").From("COGCausaliContabili").WhereEqual("CodCausale");
constexpr Selection kTipoParcella =
    Selection().Select("TipoParcella").From("COGCausaliContabili").WhereEqual("CodCausale");
constexpr Selection kSoggettoParcella = Selection()
                                            .Select("SoggettoParcella")
                                            .From("STDAnagraficaFornitori")
                                            .WhereEqual("IdAnagrafica");
constexpr Selection kBlocco = Selection()
                                  .Select("DataFine")
                                  .From("COGBlocchiPeriodo")
                                  .Where("DataInizio", CompareWith::LessOrEqual)
                                  .Where("DataFine", CompareWith::GreaterOrEqual);
constexpr Selection kAttivita = Selection()
                                    .Select("CodAttivita")
                                    .From("COGNumerazioniIva")
                                    .WhereEqual("Anno")
                                    .WhereEqual("TipoRegIva")
                                    .WhereEqual("SezionaleIva");

bool FlagOrFalse(const Variant& value) { return !value.IsNull() && CBool(value); }

Variant ValueOr(const Variant& value, const Variant& otherwise) {
  return value.IsNull() ? otherwise : value;
}

// A message without a text would leave its result string empty, and the entry free.
bool SaysNothing(const Variant& text) {
  return text.IsNull() || text.AsText() == std::string_view();
}

// The text of an argument, which becomes one where it is none.
std::string_view Text(Variant& argument) {
  if (!argument.AsText()) {
    argument = CStr(argument);
  }
  return *argument.AsText();
}

// The calendar day of a date; nothing for "", Null and Empty.
std::optional<Variant> DayOf(const Variant& date) {
  const auto text = date.AsText();
  if (date.IsNull() || date.IsEmpty() || (text && text->empty())) {
    return std::nullopt;
  }
  return CDate(date).WithoutTime();
}

Date LastDay(std::int16_t month, std::int16_t year) {
  constexpr int kLongestMonth = 31;
  constexpr int kShortestMonth = 28;
  for (int day = kLongestMonth; day >= kShortestMonth; --day) {
    if (const std::optional<Date> last = Date::FromYmd(year, month, day)) {
      return *last;
    }
  }
  RaiseDataError(RunTime::TypeMismatch, "There is no month " + std::to_string(month) +
                                            " of the year " + std::to_string(year));
}

}  // namespace

struct CompanySiblings::FiscalYear final : SiblingState {
  [[nodiscard]] Variant Value(std::string_view field) const {
    if (!year) {
      RaiseDataError(RunTime::ObjectNotSet, "No fiscal year is selected");
    }
    return year->Fields(field).Value();
  }

  RecordsetRef year;  // on the selected year
};

// A customer or supplier; which of them is settled by Init.
struct CompanySiblings::Person final : SiblingState {
  static constexpr std::int16_t kCustomer = 1;
  static constexpr std::int16_t kSupplier = 2;

  void Init() {
    if (type != kCustomer && type != kSupplier) {
      RaiseDataError(RunTime::TypeMismatch, "There is no TipoAnagrafica " + std::to_string(type));
    }
    settled = type;
  }

  Variant id = 0;
  std::int16_t type = 0;
  std::int16_t settled = 0;
};

struct CompanySiblings::Sums final : SiblingState {
  struct Sum {
    std::string column;
    Currency total;
  };

  void Columns(std::string_view list) {
    sums.clear();
    for (const std::string_view name : Items(list)) {
      sums.push_back({std::string(name), Currency()});
    }
  }

  void Compute() {
    for (Sum& sum : sums) {
      sum.total = Currency();
    }
    if (set->RecordCount() == 0) {
      return;
    }
    for (set->MoveFirst(); !set->Eof(); set->MoveNext()) {
      for (Sum& sum : sums) {
        const Variant value = set->Fields(sum.column).Value();
        sum.total += value.IsNull() ? Currency() : CCur(value);
      }
    }
  }

  [[nodiscard]] Currency Total(std::string_view column) const {
    const auto found = std::ranges::find_if(
        sums, [column](const Sum& sum) { return SameName(sum.column, column); });
    if (found == sums.end()) {
      RaiseDataError(RunTime::NoSuchField, "No total was asked for " + std::string(column));
    }
    return found->total;
  }

  RecordsetRef set;
  std::vector<Sum> sums;
};

template <class State>
State& CompanySiblings::StateOf(const SiblingCall& call) {
  if (call.state == nullptr) {
    call.state.reset(new State());
  }
  return static_cast<State&>(*call.state);
}

RecordsetRef CompanySiblings::Open(const Query& query) {
  const std::shared_ptr<const RowTable>& rows = engine_.Rows(query);
  const std::size_t place = PlaceByAddress<kMostSets>(rows.get());
  for (std::size_t i = 0; i < kMostSets; ++i) {
    std::shared_ptr<MemoryRecordset>& set = sets_[(place + i) % kMostSets];
    if (set == nullptr) {
      set = std::make_shared<MemoryRecordset>(rows);
      return set;
    }
    if (set.use_count() == 1) {
      set->StartOver(rows);
      return set;
    }
  }
  return std::make_shared<MemoryRecordset>(rows);
}

Variant CompanySiblings::FirstValue(const Query& query) {
  const std::shared_ptr<const RowTable>& rows = engine_.Rows(query);
  return rows->RowCount() == 0 ? Variant(Null) : rows->Cell(0, 0);
}

template <const Selection& kSelection>
Variant CompanySiblings::Find(const Variant& value) {
  return FirstValue(Query::Of<kSelection>({&value, 1}));
}

// Nearly all calls create a component, for which a company needs nothing, or open a selection.
SiblingAnswer CompanySiblings::Ask(const SiblingCall& call) {
  if (call.member == Member::Create) {
    return {};
  }
  if (call.member == Member::DataAccess_Open) {
    return {.rows = Open(*call.query)};
  }
  return AskMember(call);
}

SiblingAnswer CompanySiblings::AskMember(const SiblingCall& call) {
  const std::span<Variant> values = call.values;
  switch (call.member) {
    case Member::Create:
    case Member::DataAccess_Open:
      break;
    case Member::KalStatus_GetMessage:
      return {Message(values[0])};
    case Member::KalStatus_TranslateFromDict:
      return {Translation(values[0])};
    case Member::CompanySettings_Setting:
      return {Setting(values[0])};
    case Member::CompanySettings_SelectFiscalYear:
      return {SelectFiscalYear(StateOf<FiscalYear>(call), values[0])};
    case Member::CompanySettings_FiscalYearField:
      return {StateOf<FiscalYear>(call).Value(Text(values[0]))};
    case Member::KalAnagrafiche_IDAnagrafica:
      StateOf<Person>(call).id = CLng(values[0]);
      break;
    case Member::KalAnagrafiche_TipoAnagrafica:
      StateOf<Person>(call).type = CInt(values[0]);
      break;
    case Member::KalAnagrafiche_Init:
      StateOf<Person>(call).Init();
      break;
    case Member::KalAnagrafiche_InfoAnagrafica:
      return {InfoAnagrafica(StateOf<Person>(call), values[0])};
    case Member::VatCodes_AdmitsFiscalData:
      return {FlagOrFalse(Find<kAmmessaFiscalita>(values[0]))};
    case Member::VatCodes_IntraClassification:
      return {CLng(ValueOr(Find<kTipoIntra>(values[0]), 0))};
    case Member::VatCodes_PeriodReferenceDate:
      return {LastDay(CInt(values[0]), CInt(values[1]))};
    case Member::VatCodes_IsVariationNote:
      return {FlagOrFalse(Find<kNotaVariazione>(values[0]))};
    case Member::PeriodLock_IsLocked:
      return {IsLocked(values[0])};
    case Member::VatActivities_ActivityCode:
      return {ValueOr(FirstValue(Query::Of<kAttivita>(values)), "")};
    case Member::ProtocolNumbering_NextProtocol:
      return {NextProtocol(values)};
    case Member::FeeNotes_SupplierTest:
      return {FlagOrFalse(Find<kSoggettoParcella>(values[0]))};
    case Member::FeeNotes_TemplateTest:
      return {CInt(ValueOr(Find<kTipoParcella>(values[0]), 0))};
    case Member::SqlFunctions_Expression:
      return {Expression(CLng(values[0]), Text(values[1]))};
    case Member::Totals_Recordset:
      StateOf<Sums>(call).set = call.set;
      break;
    case Member::Totals_Columns:
      StateOf<Sums>(call).Columns(Text(values[0]));
      break;
    case Member::Totals_Compute:
      StateOf<Sums>(call).Compute();
      break;
    case Member::Totals_Total:
      return {StateOf<Sums>(call).Total(Text(values[0]))};
    case Member::DataAccess_Execute:
      return {Execute(values)};
  }
  return {};
}

Variant CompanySiblings::Message(Variant& code) {
  const std::array asked = {std::move(code), language_};
  Variant text = FirstValue(Query::Of<kMessaggio>(asked));
  return SaysNothing(text) ? Variant("[" + CStr(asked[0]) + "]") : text;
}

Variant CompanySiblings::Translation(Variant& text) {
  const std::array asked = {std::move(text), language_};
  try {
    Variant translation = FirstValue(Query::Of<kTraduzione>(asked));
    return SaysNothing(translation) ? asked[0] : translation;
  } catch (...) {  // a lost text must never make an entry free
    return asked[0];
  }
}

Variant CompanySiblings::Setting(Variant& name) {
  const std::string_view named = Text(name);
  return SettingValue(named, Find<kParametro>(name));
}

// Of overlapping years the one with the lowest code.
bool CompanySiblings::SelectFiscalYear(FiscalYear& selected, const Variant& date) {
  selected.year = nullptr;
  const std::optional<Variant> day = DayOf(date);
  if (!day) {
    return false;
  }
  const std::array asked = {*day, *day};
  const RecordsetRef years = Open(Query::Of<kEsercizio>(asked));
  const Field& code = years->Fields("CodEsercizio");
  std::optional<Variant> lowest;
  for (; !years->Eof(); years->MoveNext()) {
    if (!lowest || code.Value() < *lowest) {
      lowest = code.Value();
    }
  }
  if (!lowest) {
    return false;
  }
  for (years->MoveFirst(); !Identical(code.Value(), *lowest); years->MoveNext()) {
  }
  selected.year = years;
  return true;
}

Variant CompanySiblings::InfoAnagrafica(const Person& person, Variant& name) {
  if (person.settled == 0) {
    RaiseDataError(RunTime::ObjectNotSet, "InfoAnagrafica was called before Init");
  }
  const std::span<const Variant> id(&person.id, 1);
  return ValueOr(
      FirstValue(person.settled == Person::kCustomer ? Query::Of<kCliente>(id, Text(name))
                                                     : Query::Of<kFornitore>(id, Text(name))),
      false);
}

Variant CompanySiblings::Expression(std::int32_t functionCode, std::string_view column) {
  constexpr std::int32_t kYear = 4;
  if (functionCode != kYear) {
    RaiseDataError(RunTime::NotSupported,
                   "There is no function with the code " + std::to_string(functionCode));
  }
  expression_.assign("Year(").append(column).append(")");
  return expression_;
}

bool CompanySiblings::IsLocked(const Variant& date) {
  const std::optional<Variant> day = DayOf(date);
  if (!day) {
    return false;
  }
  const std::array asked = {*day, *day};
  return !FirstValue(Query::Of<kBlocco>(asked)).IsNull();
}

// Register type, section, date.
std::int32_t CompanySiblings::NextProtocol(std::span<const Variant> values) {
  const Variant highest = engine_.HighestProtocol(Year(values[2]), values[0], values[1]);
  if (highest.IsNull()) {
    return 1;
  }
  if (CLng(highest) == std::numeric_limits<std::int32_t>::max()) {
    RaiseDataError(RunTime::Overflow, "There is no protocol after " + CStr(highest));
  }
  return CLng(highest) + 1;
}

// COGNroChiusurePrimaNota(entry, 1, output count).
Variant CompanySiblings::Execute(std::span<Variant> values) {
  constexpr std::size_t kArguments = 3;
  const std::string_view procedure = Text(values[0]);
  if (!SameName(procedure, "COGNroChiusurePrimaNota")) {
    RaiseDataError(kBadCommand, "There is no stored procedure '" + std::string(procedure) + "'");
  }
  if (values.size() != 1 + kArguments) {
    RaiseDataError(kBadCommand,
                   std::string(procedure) + " takes an entry, a number and an output number");
  }
  return engine_.Closings(values[1]);
}

}  // namespace kal::company
