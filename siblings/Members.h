// The sibling components and their members: the one list of what the checker asks of others.
//
// Each row names the component, the member, how it is called, and the words with which an
// explanation asks the question (none where the member's own name, or nothing, is shown).

#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "platform/Wording.h"

namespace kal {

enum class Component : std::uint8_t {
  KalStatus,          // message texts in the user's language
  CompanySettings,    // the company's settings and fiscal years
  KalAnagrafiche,     // customers and suppliers
  VatCodes,           // VAT codes and posting templates
  PeriodLock,         // the locked periods
  VatActivities,      // the activities of a company that keeps them separately
  ProtocolNumbering,  // the next protocol numbers
  FeeNotes,           // the professional fee notes
  SqlFunctions,       // expressions of the database's language
  Totals,             // sums of columns over a record set
  DataAccess,         // the way to the database, which is only read
};

inline constexpr std::array<std::string_view, 11> kComponentNames = {
    "KalStatus",    "CompanySettings", "KalAnagrafiche",    "VatCodes",
    "PeriodLock",   "VatActivities",   "ProtocolNumbering", "FeeNotes",
    "SqlFunctions", "Totals",          "DataAccess"};

enum class CallKind : std::uint8_t {
  Create,   // the component itself, before anything else is asked of it
  Get,      // a member that answers a value
  Do,       // one that answers nothing
  Put,      // a property that takes a value
  PutSet,   // a property that takes a record set, by reference
  Open,     // a selection; answers a record set
  Execute,  // a stored procedure: its name, then its arguments; answers the last, an output
};

// What comes with a call, in the order of its values, and what it answers. Whole numbers are 16-bit
// where that is said, else 32-bit; a date may be anything that converts to one, and "".
//
//   KalStatus          GetMessage (code): the text; TranslateFromDict (text, five more texts): text
//   CompanySettings    Setting (name): a value, Null for none; SelectFiscalYear (date): whether
//                      there is one; FiscalYearField (name): a value of the year selected before
//   KalAnagrafiche     IDAnagrafica (id), TipoAnagrafica (16-bit: 1 customer, 2 supplier), Init;
//                      then InfoAnagrafica (name): a value
//   VatCodes           AdmitsFiscalData (code): boolean; IntraClassification (code): number;
//                      PeriodReferenceDate (month, year, both 16-bit): date;
//                      IsVariationNote (code of a posting template): boolean
//   PeriodLock         IsLocked (date): boolean
//   VatActivities      ActivityCode (year, register type, section, all 16-bit): text, "" for none
//   ProtocolNumbering  NextProtocol (register type, section, both 16-bit, date): number
//   FeeNotes           SupplierTest (id): boolean; TemplateTest (code of a template): 16-bit
//   SqlFunctions       Expression (function, 4 being the year of a date; column): text
//   Totals             Recordset (a set), Columns (names separated by commas), Compute;
//                      then Total (name): amount
//   DataAccess         Open (a query): rows; Execute (name of a procedure, its arguments, the last
//                      of which is its output): what the output became
//
// clang-format off
#define KAL_SIBLING_MEMBERS(M)                                                                     \
  M(KalStatus, GetMessage, Get, "", "")                                                            \
  M(KalStatus, TranslateFromDict, Get, "", "")                                                     \
  M(CompanySettings, Setting, Get, "", "")                                                         \
  M(CompanySettings, SelectFiscalYear, Get, "esercizio della data", "fiscal year of the date")     \
  M(CompanySettings, FiscalYearField, Get, "dell'esercizio", "of the fiscal year")                 \
  M(KalAnagrafiche, IDAnagrafica, Put, "", "")                                                     \
  M(KalAnagrafiche, TipoAnagrafica, Put, "", "")                                                   \
  M(KalAnagrafiche, Init, Do, "", "")                                                              \
  M(KalAnagrafiche, InfoAnagrafica, Get, "dell'anagrafica", "of the customer or supplier")         \
  M(VatCodes, AdmitsFiscalData, Get, "codice IVA ammesso con dati fiscali",                        \
    "VAT code allowed with fiscal data")                                                           \
  M(VatCodes, IntraClassification, Get, "tipo intracomunitario del codice IVA",                    \
    "intra-community kind of VAT code")                                                            \
  M(VatCodes, PeriodReferenceDate, Get, "data di riferimento del mese",                            \
    "reference date of the month")                                                                 \
  M(VatCodes, IsVariationNote, Get, "causale di nota di variazione",                               \
    "template for variation notes")                                                                \
  M(PeriodLock, IsLocked, Get, "periodo bloccato alla data", "period locked at the date")          \
  M(VatActivities, ActivityCode, Get, "attività di anno, registro, sezionale",                     \
    "activity of year, register, section")                                                         \
  M(ProtocolNumbering, NextProtocol, Get, "prossimo protocollo di registro, sezionale, data",      \
    "next protocol of register, section, date")                                                    \
  M(FeeNotes, SupplierTest, Get, "fornitore soggetto a parcella", "supplier with fee notes")       \
  M(FeeNotes, TemplateTest, Get, "causale da parcella", "template of fee notes")                   \
  M(SqlFunctions, Expression, Get, "", "")                                                         \
  M(Totals, Recordset, PutSet, "", "")                                                             \
  M(Totals, Columns, Put, "", "")                                                                  \
  M(Totals, Compute, Do, "", "")                                                                   \
  M(Totals, Total, Get, "somma della colonna", "sum of the column")                                \
  M(DataAccess, Open, Open, "", "")                                                                \
  M(DataAccess, Execute, Execute, "", "")
// clang-format on

enum class Member : std::uint8_t {
#define KAL_MEMBER_ENUM(component, name, kind, italian, english) component##_##name,
  KAL_SIBLING_MEMBERS(KAL_MEMBER_ENUM)
#undef KAL_MEMBER_ENUM
      Create,  // of any component
};

struct MemberInfo {
  Component component;
  std::string_view name;
  CallKind kind;
  Wording words;
};

// By Member.
inline constexpr std::array kMembers = {
#define KAL_MEMBER_ROW(component, name, kind, italian, english) \
  MemberInfo{Component::component, #name, CallKind::kind, {italian, english}},
    KAL_SIBLING_MEMBERS(KAL_MEMBER_ROW)
#undef KAL_MEMBER_ROW
};

[[nodiscard]] constexpr std::string_view NameOf(Component component) {
  return kComponentNames[static_cast<std::size_t>(component)];
}

}  // namespace kal
