// SiblingNames: how the sibling components and their members are called.
//
// The one place to adapt where an installed system names them otherwise. Each name stands beside
// the call that it makes; arguments are handed over in the order shown.

#pragma once

#include <array>
#include <cstdint>
#include <string_view>

namespace kal::names {

using Name = const wchar_t*;

namespace status {
inline constexpr Name kProgId = L"KalStatus20.KalStatus";
inline constexpr Name kGetMessage = L"GetMessage";                // code -> text
inline constexpr Name kTranslateFromDict = L"TranslateFromDict";  // six texts -> text
}  // namespace status

namespace anagrafiche {
inline constexpr Name kProgId = L"Kal_Anagrafiche.KalAnagrafiche";
inline constexpr Name kIDAnagrafica = L"IDAnagrafica";      // property: 32-bit
inline constexpr Name kTipoAnagrafica = L"TipoAnagrafica";  // property: 16-bit
inline constexpr Name kInit = L"Init";
inline constexpr Name kInfoAnagrafica = L"InfoAnagrafica";  // name -> value
}  // namespace anagrafiche

namespace settings {
inline constexpr Name kProgId = L"Kal_CompanySettings.CompanySettings";
inline constexpr Name kSetting = L"Setting";                    // name -> value
inline constexpr Name kSelectFiscalYear = L"SelectFiscalYear";  // date -> found
inline constexpr Name kFiscalYearField = L"FiscalYearField";    // name -> value
}  // namespace settings

namespace vatCodes {
inline constexpr Name kProgId = L"Kal_Iva.VatCodes";
inline constexpr Name kAdmitsFiscalData = L"AdmitsFiscalData";        // VAT code -> boolean
inline constexpr Name kIntraClassification = L"IntraClassification";  // VAT code -> number
inline constexpr Name kPeriodReferenceDate = L"PeriodReferenceDate";  // month, year -> date
inline constexpr Name kIsVariationNote = L"IsVariationNote";          // template -> boolean
}  // namespace vatCodes

namespace periodLock {
inline constexpr Name kProgId = L"Kal_BlocchiPeriodo.PeriodLock";
inline constexpr Name kIsLocked = L"IsLocked";  // date, or "" -> boolean
}  // namespace periodLock

namespace vatActivities {
inline constexpr Name kProgId = L"Kal_AttivitaIva.VatActivities";
inline constexpr Name kActivityCode = L"ActivityCode";  // year, register, section -> text
}  // namespace vatActivities

namespace numbering {
inline constexpr Name kProgId = L"Kal_Numerazioni.ProtocolNumbering";
inline constexpr Name kNextProtocol = L"NextProtocol";  // register, section, date -> number
}  // namespace numbering

namespace feeNotes {
inline constexpr Name kProgId = L"Kal_Parcelle.FeeNotes";
inline constexpr Name kSupplierTest = L"SupplierTest";  // supplier -> boolean
inline constexpr Name kTemplateTest = L"TemplateTest";  // template -> number
}  // namespace feeNotes

namespace sqlFunctions {
inline constexpr Name kProgId = L"Kal_DataAccess.SqlFunctions";
inline constexpr Name kExpression = L"Expression";  // function code, column -> text
}  // namespace sqlFunctions

namespace totals {
inline constexpr Name kProgId = L"Kal_DataAccess.Totals";
inline constexpr Name kAttach = L"Recordset";  // property by reference: record set
inline constexpr Name kColumns = L"Columns";   // property: names separated by commas
inline constexpr Name kCompute = L"Compute";
inline constexpr Name kTotal = L"Total";  // name -> amount
}  // namespace totals

namespace dataAccess {
inline constexpr Name kProgId = L"Kal_DataAccess.DataAccess";
inline constexpr Name kOpen = L"Open";        // QueryBuilder -> record set
inline constexpr Name kExecute = L"Execute";  // procedure, its arguments (outputs by reference)
}  // namespace dataAccess

// A selection is described from top to bottom: options, fields, table, joins, conditions. The
// conditions behind a join and before the next one are its own; AddTable, called once, comes
// before them, and BeginWhere behind them. All conditions must hold, except inside of an any-of
// group: there each BeginAlternative opens a set of conditions of which one set must hold.
namespace query {
inline constexpr Name kProgId = L"Kal_DataAccess.QueryBuilder";
inline constexpr Name kOption = L"Option";        // property: number
inline constexpr Name kAddFields = L"AddFields";  // columns, separated by commas
inline constexpr Name kAddTable = L"AddTable";    // name, or "name as alias"
inline constexpr Name kAddJoin = L"AddJoin";      // kind, name or "name as alias"
inline constexpr Name kBeginWhere = L"BeginWhere";
inline constexpr Name kAddCondition = L"AddCondition";    // column, operator, value
inline constexpr Name kAddColumnPair = L"AddColumnPair";  // column, column
inline constexpr Name kAddLiteral = L"AddLiteral";        // condition in the database's words
inline constexpr Name kBeginAnyOf = L"BeginAnyOf";
inline constexpr Name kBeginAlternative = L"BeginAlternative";
inline constexpr Name kEndAnyOf = L"EndAnyOf";

// The join kinds, inner and left outer, and the operators, in the order of the core's enums.
inline constexpr std::array<std::int16_t, 2> kJoinKinds = {1, 2};
inline constexpr std::array<std::string_view, 6> kOperators = {"=", "<>", "<", "<=", ">", ">="};
}  // namespace query

}  // namespace kal::names
