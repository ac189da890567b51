// The sibling components as the checks see them: typed faces over Siblings::Ask.
//
// A face stands for one component from its creation to its end. It converts what goes in and what
// comes out, dates to calendar days, and does nothing else.

#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <utility>

#include "siblings/Siblings.h"

namespace kal {

class SiblingComponent {
 public:
  SiblingComponent(const SiblingComponent&) = delete;
  SiblingComponent& operator=(const SiblingComponent&) = delete;

 protected:
  SiblingComponent(Siblings& siblings, Component component)
      : siblings_(siblings), component_(component) {
    siblings_.Ask(
        {.component = component_, .member = Member::Create, .values = {}, .state = state_});
  }
  ~SiblingComponent() = default;

  template <class... Values>
  Variant Call(Member member, Values&&... values) {
    std::array<Variant, sizeof...(Values)> held = {Variant(std::forward<Values>(values))...};
    Variant value =
        siblings_.Ask({.component = component_, .member = member, .values = held, .state = state_})
            .value;
    DropTime(value);
    return value;
  }
  // The value as a text, without a copy where it is one.
  static Variant AsText(Variant value) {
    return value.AsText() ? std::move(value) : Variant(CStr(value));
  }
  RecordsetRef CallForRows(Member member, const Query& query) {
    return siblings_
        .Ask({.component = component_,
              .member = member,
              .values = {},
              .query = &query,
              .state = state_})
        .rows;
  }
  void CallWithSet(Member member, const RecordsetRef& set) {
    siblings_.Ask(
        {.component = component_, .member = member, .values = {}, .set = set, .state = state_});
  }

 private:
  Siblings& siblings_;
  Component component_;
  std::unique_ptr<SiblingState> state_;
};

// The status component: message texts in the user's language.
class KalStatus : SiblingComponent {
 public:
  explicit KalStatus(Siblings& siblings) : SiblingComponent(siblings, Component::KalStatus) {}
  // The text of a message code; a code that it does not know gives a text of its own choice.
  [[nodiscard]] std::string GetMessage(std::int32_t code) {
    return CStr(Call(Member::KalStatus_GetMessage, code));
  }
  // The translation of the first text; the other five belong to the component's signature.
  [[nodiscard]] std::string TranslateFromDict(std::string_view text1, std::string_view text2,
                                              std::string_view text3, std::string_view text4,
                                              std::string_view text5, std::string_view text6) {
    return CStr(
        Call(Member::KalStatus_TranslateFromDict, text1, text2, text3, text4, text5, text6));
  }
};

// The company settings and the fiscal years.
class CompanySettings : SiblingComponent {
 public:
  explicit CompanySettings(Siblings& siblings)
      : SiblingComponent(siblings, Component::CompanySettings) {}
  // The setting of that name; Null when it is missing.
  [[nodiscard]] Variant Setting(std::string_view name) {
    return Call(Member::CompanySettings_Setting, name);
  }
  // Selects the fiscal year that contains the date; False when there is none.
  [[nodiscard]] bool SelectFiscalYear(const Variant& date) {
    return CBool(Call(Member::CompanySettings_SelectFiscalYear, date));
  }
  // A field of the selected fiscal year.
  [[nodiscard]] Variant FiscalYearField(std::string_view name) {
    return Call(Member::CompanySettings_FiscalYearField, name);
  }
};

// The customer/supplier component.
class KalAnagrafiche : SiblingComponent {
 public:
  explicit KalAnagrafiche(Siblings& siblings)
      : SiblingComponent(siblings, Component::KalAnagrafiche) {}
  void IDAnagrafica(std::int32_t id) { Call(Member::KalAnagrafiche_IDAnagrafica, id); }
  // 1 customer, 2 supplier.
  void TipoAnagrafica(std::int16_t type) { Call(Member::KalAnagrafiche_TipoAnagrafica, type); }
  // To be called once both are set, before InfoAnagrafica.
  void Init() { Call(Member::KalAnagrafiche_Init); }
  [[nodiscard]] Variant InfoAnagrafica(std::string_view name) {
    return Call(Member::KalAnagrafiche_InfoAnagrafica, name);
  }
};

// The VAT codes and posting templates of the master data.
class VatCodes : SiblingComponent {
 public:
  explicit VatCodes(Siblings& siblings) : SiblingComponent(siblings, Component::VatCodes) {}
  // Whether the code may stand on an entry that carries fiscal data.
  [[nodiscard]] bool AdmitsFiscalData(std::string_view vatCode) {
    return CBool(Call(Member::VatCodes_AdmitsFiscalData, vatCode));
  }
  // 1 for a code of the intra-community kind.
  [[nodiscard]] std::int32_t IntraClassification(std::string_view vatCode) {
    return CLng(Call(Member::VatCodes_IntraClassification, vatCode));
  }
  // The reference date of the settlement period of that month, a date.
  [[nodiscard]] Variant PeriodReferenceDate(std::int16_t month, std::int16_t year) {
    return Call(Member::VatCodes_PeriodReferenceDate, month, year);
  }
  // Whether the posting template is one for variation notes.
  [[nodiscard]] bool IsVariationNote(std::string_view templateCode) {
    return CBool(Call(Member::VatCodes_IsVariationNote, templateCode));
  }
};

// The period locks.
class PeriodLock : SiblingComponent {
 public:
  explicit PeriodLock(Siblings& siblings) : SiblingComponent(siblings, Component::PeriodLock) {}
  // The date may be the empty text, which is never locked.
  [[nodiscard]] bool IsLocked(const Variant& date) {
    return CBool(Call(Member::PeriodLock_IsLocked, date));
  }
};

// The VAT activities of a company that keeps them separately.
class VatActivities : SiblingComponent {
 public:
  explicit VatActivities(Siblings& siblings)
      : SiblingComponent(siblings, Component::VatActivities) {}
  // The activity code of a VAT section; "" when it has none.
  [[nodiscard]] std::string ActivityCode(std::int16_t year, std::int16_t registerType,
                                         std::int16_t section) {
    return CStr(Call(Member::VatActivities_ActivityCode, year, registerType, section));
  }
};

// The protocol numbering.
class ProtocolNumbering : SiblingComponent {
 public:
  explicit ProtocolNumbering(Siblings& siblings)
      : SiblingComponent(siblings, Component::ProtocolNumbering) {}
  // The next free protocol number of the register type and section in the date's year.
  [[nodiscard]] std::int32_t NextProtocol(std::int16_t registerType, std::int16_t section,
                                          const Variant& date) {
    return CLng(Call(Member::ProtocolNumbering_NextProtocol, registerType, section, date));
  }
};

// The professional fee notes.
class FeeNotes : SiblingComponent {
 public:
  explicit FeeNotes(Siblings& siblings) : SiblingComponent(siblings, Component::FeeNotes) {}
  // Whether fee-note data is due for that supplier.
  [[nodiscard]] bool SupplierTest(std::int32_t idAnagrafica) {
    return CBool(Call(Member::FeeNotes_SupplierTest, idAnagrafica));
  }
  // 1 when fee-note data is due for that posting template.
  [[nodiscard]] std::int16_t TemplateTest(std::string_view templateCode) {
    return CInt(Call(Member::FeeNotes_TemplateTest, templateCode));
  }
};

// Expressions of the company's database language.
class SqlFunctions : SiblingComponent {
 public:
  explicit SqlFunctions(Siblings& siblings) : SiblingComponent(siblings, Component::SqlFunctions) {}
  // The expression text of a function over a column; function code 4 is the year of a date.
  [[nodiscard]] Variant Expression(std::int32_t functionCode, std::string_view column) {
    return AsText(Call(Member::SqlFunctions_Expression, functionCode, column));
  }
};

// Sums of columns over a record set.
class Totals : SiblingComponent {
 public:
  explicit Totals(Siblings& siblings) : SiblingComponent(siblings, Component::Totals) {}
  void Recordset(const RecordsetRef& set) { CallWithSet(Member::Totals_Recordset, set); }
  // Column names separated by commas.
  void Columns(std::string_view list) { Call(Member::Totals_Columns, list); }
  void Compute() { Call(Member::Totals_Compute); }
  [[nodiscard]] Currency Total(std::string_view column) {
    return CCur(Call(Member::Totals_Total, column));
  }
};

// The way to the company database. It only reads.
class DataAccess : SiblingComponent {
 public:
  explicit DataAccess(Siblings& siblings) : SiblingComponent(siblings, Component::DataAccess) {}
  // Runs the selection and hands back its rows, on the first one; the rows stay as they are
  // whatever happens to the database afterwards.
  [[nodiscard]] RecordsetRef Open(const Query& query) {
    return CallForRows(Member::DataAccess_Open, query);
  }
  // Runs a stored procedure whose last argument is an output, handed over with a value of its
  // type; returns what it became.
  template <class... Arguments>
  [[nodiscard]] Variant Execute(std::string_view procedure, Arguments&&... arguments) {
    return Call(Member::DataAccess_Execute, procedure, std::forward<Arguments>(arguments)...);
  }
};

// One use of a constant selection, with a value for each of its comparisons.
template <const Selection& kSelection, class... Values>
[[nodiscard]] RecordsetRef Open(Siblings& siblings, Values&&... values) {
  static_assert(sizeof...(Values) == kSelection.ValueCount(),
                "a value for each comparison of the selection");
  static_assert(!kSelection.WantsName(), "this selection is used with a name");
  const std::array<Variant, sizeof...(Values)> held = {Variant(std::forward<Values>(values))...};
  return DataAccess(siblings).Open(Query::Of<kSelection>(held));
}

// The same, with the name that stands for the selection's "?".
template <const Selection& kSelection, class... Values>
[[nodiscard]] RecordsetRef OpenNamed(Siblings& siblings, std::string_view name,
                                     Values&&... values) {
  static_assert(sizeof...(Values) == kSelection.ValueCount(),
                "a value for each comparison of the selection");
  static_assert(kSelection.WantsName(), "this selection is used without a name");
  const std::array<Variant, sizeof...(Values)> held = {Variant(std::forward<Values>(values))...};
  return DataAccess(siblings).Open(Query::Of<kSelection>(held, name));
}

}  // namespace kal
