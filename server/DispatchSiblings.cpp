#include "server/DispatchSiblings.h"

#include <utility>
#include <vector>

#include "server/DispatchQuery.h"
#include "server/DispatchRecordset.h"
#include "server/LateBound.h"
#include "server/SiblingNames.h"

namespace kal {
namespace {

class Status final : public KalStatus {
 public:
  std::string GetMessage(std::int32_t code) override {
    return CStr(sibling_.Get(names::status::kGetMessage, code));
  }
  std::string TranslateFromDict(std::string_view text1, std::string_view text2,
                                std::string_view text3, std::string_view text4,
                                std::string_view text5, std::string_view text6) override {
    return CStr(
        sibling_.Get(names::status::kTranslateFromDict, text1, text2, text3, text4, text5, text6));
  }

 private:
  LateBound sibling_ = LateBound::Create(names::status::kProgId);
};

class Settings final : public CompanySettings {
 public:
  Variant Setting(std::string_view name) override {
    return sibling_.Get(names::settings::kSetting, name);
  }
  bool SelectFiscalYear(const Variant& date) override {
    return CBool(sibling_.Get(names::settings::kSelectFiscalYear, date));
  }
  Variant FiscalYearField(std::string_view name) override {
    return sibling_.Get(names::settings::kFiscalYearField, name);
  }

 private:
  LateBound sibling_ = LateBound::Create(names::settings::kProgId);
};

class Anagrafiche final : public KalAnagrafiche {
 public:
  void IDAnagrafica(std::int32_t id) override {
    sibling_.Put(names::anagrafiche::kIDAnagrafica, id);
  }
  void TipoAnagrafica(std::int16_t type) override {
    sibling_.Put(names::anagrafiche::kTipoAnagrafica, type);
  }
  void Init() override { sibling_.Do(names::anagrafiche::kInit); }
  Variant InfoAnagrafica(std::string_view name) override {
    return sibling_.Get(names::anagrafiche::kInfoAnagrafica, name);
  }

 private:
  LateBound sibling_ = LateBound::Create(names::anagrafiche::kProgId);
};

class Codes final : public VatCodes {
 public:
  bool AdmitsFiscalData(std::string_view vatCode) override {
    return CBool(sibling_.Get(names::vatCodes::kAdmitsFiscalData, vatCode));
  }
  std::int32_t IntraClassification(std::string_view vatCode) override {
    return CLng(sibling_.Get(names::vatCodes::kIntraClassification, vatCode));
  }
  Variant PeriodReferenceDate(std::int16_t month, std::int16_t year) override {
    return sibling_.Get(names::vatCodes::kPeriodReferenceDate, month, year);
  }
  bool IsVariationNote(std::string_view templateCode) override {
    return CBool(sibling_.Get(names::vatCodes::kIsVariationNote, templateCode));
  }

 private:
  LateBound sibling_ = LateBound::Create(names::vatCodes::kProgId);
};

class Locks final : public PeriodLock {
 public:
  bool IsLocked(const Variant& date) override {
    return CBool(sibling_.Get(names::periodLock::kIsLocked, date));
  }

 private:
  LateBound sibling_ = LateBound::Create(names::periodLock::kProgId);
};

class Activities final : public VatActivities {
 public:
  std::string ActivityCode(std::int16_t year, std::int16_t registerType,
                           std::int16_t section) override {
    return CStr(sibling_.Get(names::vatActivities::kActivityCode, year, registerType, section));
  }

 private:
  LateBound sibling_ = LateBound::Create(names::vatActivities::kProgId);
};

class Numbering final : public ProtocolNumbering {
 public:
  std::int32_t NextProtocol(std::int16_t registerType, std::int16_t section,
                            const Variant& date) override {
    return CLng(sibling_.Get(names::numbering::kNextProtocol, registerType, section, date));
  }

 private:
  LateBound sibling_ = LateBound::Create(names::numbering::kProgId);
};

class Fees final : public FeeNotes {
 public:
  bool SupplierTest(std::int32_t idAnagrafica) override {
    return CBool(sibling_.Get(names::feeNotes::kSupplierTest, idAnagrafica));
  }
  std::int16_t TemplateTest(std::string_view templateCode) override {
    return CInt(sibling_.Get(names::feeNotes::kTemplateTest, templateCode));
  }

 private:
  LateBound sibling_ = LateBound::Create(names::feeNotes::kProgId);
};

class Functions final : public SqlFunctions {
 public:
  std::string Expression(std::int32_t functionCode, std::string_view column) override {
    return CStr(sibling_.Get(names::sqlFunctions::kExpression, functionCode, column));
  }

 private:
  LateBound sibling_ = LateBound::Create(names::sqlFunctions::kProgId);
};

class Sums final : public Totals {
 public:
  // The component's record sets are all of them automation objects.
  void Attach(const RecordsetRef& set) override {
    sibling_.PutRef(names::totals::kAttach,
                    dynamic_cast<DispatchRecordset&>(*RecordsetRef(set)).Object());
  }
  void Columns(std::string_view list) override { sibling_.Put(names::totals::kColumns, list); }
  void Compute() override { sibling_.Do(names::totals::kCompute); }
  Currency Total(std::string_view column) override {
    return CCur(sibling_.Get(names::totals::kTotal, column));
  }

 private:
  LateBound sibling_ = LateBound::Create(names::totals::kProgId);
};

// A reference to the value that a variant holds, as typed callers pass a variable; to the whole
// variant where it holds none.
VARIANT ReferenceTo(VARIANT& value) {
  VARIANT reference{};
  if (value.vt == VT_EMPTY || value.vt == VT_NULL) {
    reference.pvarVal = &value;
    reference.vt = VT_BYREF | VT_VARIANT;
  } else {
    reference.byref = value.vt == VT_DECIMAL ? static_cast<void*>(&value.decVal) : &value.byref;
    reference.vt = static_cast<VARTYPE>(VT_BYREF | value.vt);
  }
  return reference;
}

class Access final : public DataAccess {
 public:
  explicit Access(BorrowedSets& sets) : sets_(sets) {}

  RecordsetRef Open(const QueryBuilder& query) override {
    const LateBound description = DescribeQuery(query);
    return sets_.Borrow(sibling_.GetObject(names::dataAccess::kOpen, description.Object()));
  }

  void Execute(std::string_view procedure, std::span<ProcedureArgument> arguments) override {
    std::vector<ScopedVariant> held;
    held.reserve(arguments.size());  // references to what it holds are made below
    for (const ProcedureArgument& argument : arguments) {
      held.push_back(ToVariant(argument.value));
    }
    const ScopedVariant name = ToVariant(procedure);
    std::vector<VARIANT> reversed;
    for (std::size_t at = arguments.size(); at-- > 0;) {
      reversed.push_back(arguments[at].output ? ReferenceTo(*held[at]) : *held[at]);
    }
    reversed.push_back(*name);
    sibling_.DoWith(names::dataAccess::kExecute, reversed);
    for (std::size_t at = 0; at < arguments.size(); ++at) {
      if (arguments[at].output) {
        arguments[at].value = FromVariant(*held[at]);
      }
    }
  }

 private:
  BorrowedSets& sets_;
  LateBound sibling_ = LateBound::Create(names::dataAccess::kProgId);
};

}  // namespace

std::unique_ptr<KalStatus> DispatchSiblings::CreateKalStatus() {
  return std::make_unique<Status>();
}
std::unique_ptr<CompanySettings> DispatchSiblings::CreateCompanySettings() {
  return std::make_unique<Settings>();
}
std::unique_ptr<KalAnagrafiche> DispatchSiblings::CreateKalAnagrafiche() {
  return std::make_unique<Anagrafiche>();
}
std::unique_ptr<VatCodes> DispatchSiblings::CreateVatCodes() { return std::make_unique<Codes>(); }
std::unique_ptr<PeriodLock> DispatchSiblings::CreatePeriodLock() {
  return std::make_unique<Locks>();
}
std::unique_ptr<VatActivities> DispatchSiblings::CreateVatActivities() {
  return std::make_unique<Activities>();
}
std::unique_ptr<ProtocolNumbering> DispatchSiblings::CreateProtocolNumbering() {
  return std::make_unique<Numbering>();
}
std::unique_ptr<FeeNotes> DispatchSiblings::CreateFeeNotes() { return std::make_unique<Fees>(); }
std::unique_ptr<SqlFunctions> DispatchSiblings::CreateSqlFunctions() {
  return std::make_unique<Functions>();
}
std::unique_ptr<Totals> DispatchSiblings::CreateTotals() { return std::make_unique<Sums>(); }
std::unique_ptr<DataAccess> DispatchSiblings::CreateDataAccess() {
  return std::make_unique<Access>(sets_);
}

}  // namespace kal
