// What the checker asks of the other components of the accounting system.
//
// Each interface is one sibling component. The factory makes a fresh one at every use; whoever
// asked for it releases it by letting it go, at the latest when the operation ends, also on the
// error path. Any call may raise a RunTimeError of the sibling's own.

#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>

#include "platform/Recordset.h"
#include "platform/Variant.h"
#include "siblings/QueryBuilder.h"

namespace kal {

// The status component: message texts in the user's language.
class KalStatus {
 public:
  virtual ~KalStatus() = default;
  // The text of a message code; a code that it does not know gives a text of its own choice.
  [[nodiscard]] virtual std::string GetMessage(std::int32_t code) = 0;
  // The translation of the first text; the other five belong to the component's signature and are
  // handed through.
  [[nodiscard]] virtual std::string TranslateFromDict(
      std::string_view text1, std::string_view text2, std::string_view text3,
      std::string_view text4, std::string_view text5, std::string_view text6) = 0;
};

// The company settings and the fiscal years.
class CompanySettings {
 public:
  virtual ~CompanySettings() = default;
  // The setting of that name; Null when it is missing.
  [[nodiscard]] virtual Variant Setting(std::string_view name) = 0;
  // Selects the fiscal year that contains the date; False when there is none.
  [[nodiscard]] virtual bool SelectFiscalYear(const Variant& date) = 0;
  // A field of the selected fiscal year.
  [[nodiscard]] virtual Variant FiscalYearField(std::string_view name) = 0;
};

// The customer/supplier component.
class KalAnagrafiche {
 public:
  virtual ~KalAnagrafiche() = default;
  virtual void IDAnagrafica(std::int32_t id) = 0;
  // 1 customer, 2 supplier.
  virtual void TipoAnagrafica(std::int16_t type) = 0;
  // To be called once both are set, before InfoAnagrafica.
  virtual void Init() = 0;
  [[nodiscard]] virtual Variant InfoAnagrafica(std::string_view name) = 0;
};

// The VAT codes and posting templates of the master data.
class VatCodes {
 public:
  virtual ~VatCodes() = default;
  // Whether the code may stand on an entry that carries fiscal data.
  [[nodiscard]] virtual bool AdmitsFiscalData(std::string_view vatCode) = 0;
  // 1 for a code of the intra-community kind.
  [[nodiscard]] virtual std::int32_t IntraClassification(std::string_view vatCode) = 0;
  // The reference date of the settlement period of that month, a date.
  [[nodiscard]] virtual Variant PeriodReferenceDate(std::int16_t month, std::int16_t year) = 0;
  // Whether the posting template is one for variation notes.
  [[nodiscard]] virtual bool IsVariationNote(std::string_view templateCode) = 0;
};

// The period locks.
class PeriodLock {
 public:
  virtual ~PeriodLock() = default;
  // The date may be the empty text, which is never locked.
  [[nodiscard]] virtual bool IsLocked(const Variant& date) = 0;
};

// The VAT activities of a company that keeps them separately.
class VatActivities {
 public:
  virtual ~VatActivities() = default;
  // The activity code of a VAT section; "" when it has none.
  [[nodiscard]] virtual std::string ActivityCode(std::int16_t year, std::int16_t registerType,
                                                 std::int16_t section) = 0;
};

// The protocol numbering.
class ProtocolNumbering {
 public:
  virtual ~ProtocolNumbering() = default;
  // The next free protocol number of the register type and section in the date's year.
  [[nodiscard]] virtual std::int32_t NextProtocol(std::int16_t registerType, std::int16_t section,
                                                  const Variant& date) = 0;
};

// The professional fee notes.
class FeeNotes {
 public:
  virtual ~FeeNotes() = default;
  // Whether fee-note data is due for that supplier.
  [[nodiscard]] virtual bool SupplierTest(std::int32_t idAnagrafica) = 0;
  // 1 when fee-note data is due for that posting template.
  [[nodiscard]] virtual std::int16_t TemplateTest(std::string_view templateCode) = 0;
};

// Expressions of the company's database language.
class SqlFunctions {
 public:
  virtual ~SqlFunctions() = default;
  // The expression text of a function over a column; function code 4 is the year of a date.
  [[nodiscard]] virtual std::string Expression(std::int32_t functionCode,
                                               std::string_view column) = 0;
};

// Sums of columns over a record set.
class Totals {
 public:
  virtual ~Totals() = default;
  virtual void Attach(const RecordsetRef& set) = 0;
  // Column names separated by commas.
  virtual void Columns(std::string_view list) = 0;
  virtual void Compute() = 0;
  [[nodiscard]] virtual Currency Total(std::string_view column) = 0;
};

// One argument of a stored procedure. The procedure replaces the value of an output argument by
// one of the same type.
struct ProcedureArgument {
  Variant value;
  bool output = false;
};

// The way to the company database. It only reads.
class DataAccess {
 public:
  virtual ~DataAccess() = default;
  // Runs the selection and hands back its rows, on the first one; the rows stay as they are
  // whatever happens to the database afterwards.
  [[nodiscard]] virtual RecordsetRef Open(const QueryBuilder& query) = 0;
  virtual void Execute(std::string_view procedure, std::span<ProcedureArgument> arguments) = 0;
};

// Makes the sibling components. A host overrides what it has; asking for one that it does not
// have raises 429.
class SiblingFactory {
 public:
  virtual ~SiblingFactory() = default;
  [[nodiscard]] virtual std::unique_ptr<KalStatus> CreateKalStatus();
  [[nodiscard]] virtual std::unique_ptr<CompanySettings> CreateCompanySettings();
  [[nodiscard]] virtual std::unique_ptr<KalAnagrafiche> CreateKalAnagrafiche();
  [[nodiscard]] virtual std::unique_ptr<VatCodes> CreateVatCodes();
  [[nodiscard]] virtual std::unique_ptr<PeriodLock> CreatePeriodLock();
  [[nodiscard]] virtual std::unique_ptr<VatActivities> CreateVatActivities();
  [[nodiscard]] virtual std::unique_ptr<ProtocolNumbering> CreateProtocolNumbering();
  [[nodiscard]] virtual std::unique_ptr<FeeNotes> CreateFeeNotes();
  [[nodiscard]] virtual std::unique_ptr<SqlFunctions> CreateSqlFunctions();
  [[nodiscard]] virtual std::unique_ptr<Totals> CreateTotals();
  [[nodiscard]] virtual std::unique_ptr<DataAccess> CreateDataAccess();
};

}  // namespace kal
