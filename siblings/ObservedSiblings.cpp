#include "siblings/ObservedSiblings.h"

#include <array>
#include <initializer_list>
#include <span>
#include <utility>

namespace kal {
namespace {

std::string ValueInWords(const Variant& value) {
  if (value.IsNull()) {
    return "Null";
  }
  const std::string text = CStr(value);
  return value.VarType() == Variant::Type::Text ? "'" + text + "'" : text;
}

std::string ComparisonInWords(std::string_view left, CompareWith operation, const Variant& value) {
  constexpr std::array kSigns = {" = ", " <> ", " < ", " <= ", " > ", " >= "};
  return std::string(left) + kSigns[static_cast<std::size_t>(operation)] + ValueInWords(value);
}

void Add(std::string& list, std::string_view separator, std::string_view item) {
  list += list.empty() ? "" : separator;
  list += item;
}

std::string ConditionInWords(const QueryBuilder::Condition& condition) {
  using Kind = QueryBuilder::Condition::Kind;
  switch (condition.kind) {
    case Kind::Columns:
    case Kind::Literal:
      return std::string(condition.left);
    case Kind::Value:
      return ComparisonInWords(condition.left, condition.operation, condition.value);
    case Kind::AnyOf:
      break;
  }
  std::string any;
  for (const auto& all : condition.alternatives) {
    std::string words;
    for (const QueryBuilder::Comparison& comparison : all) {
      Add(words, ", ", ComparisonInWords(comparison.left, comparison.operation, comparison.value));
    }
    Add(any, " | ", words);
  }
  return "(" + any + ")";
}

std::string ConditionsInWords(const std::pmr::vector<QueryBuilder::Condition>& conditions) {
  std::string words;
  for (const QueryBuilder::Condition& condition : conditions) {
    if (condition.kind != QueryBuilder::Condition::Kind::Columns) {
      Add(words, ", ", ConditionInWords(condition));
    }
  }
  return words.empty() ? words : " (" + words + ")";
}

// One sibling and whom to tell of its questions.
template <class Sibling>
class Observed : public Sibling {
 public:
  Observed(std::unique_ptr<Sibling> inner, SiblingObserver& observer)
      : inner_(std::move(inner)), observer_(observer) {}

 protected:
  void Tell(std::string_view component, const std::string& text, Variant answer) {
    observer_.Asked({component, text, std::move(answer)});
  }

  // "name (first, second)", without parentheses where there is nothing to tell.
  static std::string Call(std::string_view name, std::initializer_list<Variant> arguments) {
    std::string words;
    for (const Variant& argument : arguments) {
      Add(words, ", ", ValueInWords(argument));
    }
    return std::string(name) + (words.empty() ? "" : " (" + words + ")");
  }

  // Tells the answer to a call, and hands it on.
  template <class Answer>
  Answer Told(std::string_view component, const std::string& text, Answer answer) {
    Tell(component, text, answer);
    return answer;
  }

  std::unique_ptr<Sibling> inner_;
  SiblingObserver& observer_;
};

class ObservedStatus final : public Observed<KalStatus> {
 public:
  using Observed::Observed;
  std::string GetMessage(std::int32_t code) override {
    return Told("KalStatus", Call("GetMessage", {code}), inner_->GetMessage(code));
  }
  std::string TranslateFromDict(std::string_view text1, std::string_view text2,
                                std::string_view text3, std::string_view text4,
                                std::string_view text5, std::string_view text6) override {
    return Told("KalStatus", Call("TranslateFromDict", {text1}),
                inner_->TranslateFromDict(text1, text2, text3, text4, text5, text6));
  }
};

class ObservedSettings final : public Observed<CompanySettings> {
 public:
  using Observed::Observed;
  Variant Setting(std::string_view name) override {
    return Told("CompanySettings", std::string(name), inner_->Setting(name));
  }
  bool SelectFiscalYear(const Variant& date) override {
    return Told("CompanySettings", Call("SelectFiscalYear", {date}),
                inner_->SelectFiscalYear(date));
  }
  Variant FiscalYearField(std::string_view name) override {
    return Told("CompanySettings", Call("FiscalYearField", {name}), inner_->FiscalYearField(name));
  }
};

class ObservedAnagrafiche final : public Observed<KalAnagrafiche> {
 public:
  using Observed::Observed;
  void IDAnagrafica(std::int32_t id) override {
    id_ = id;
    inner_->IDAnagrafica(id);
  }
  void TipoAnagrafica(std::int16_t type) override {
    type_ = type;
    inner_->TipoAnagrafica(type);
  }
  void Init() override { inner_->Init(); }
  Variant InfoAnagrafica(std::string_view name) override {
    return Told("KalAnagrafiche", Call("InfoAnagrafica", {name, id_, type_}),
                inner_->InfoAnagrafica(name));
  }

 private:
  std::int32_t id_ = 0;
  std::int16_t type_ = 0;
};

class ObservedVatCodes final : public Observed<VatCodes> {
 public:
  using Observed::Observed;
  bool AdmitsFiscalData(std::string_view vatCode) override {
    return Told("VatCodes", Call("AdmitsFiscalData", {vatCode}), inner_->AdmitsFiscalData(vatCode));
  }
  std::int32_t IntraClassification(std::string_view vatCode) override {
    return Told("VatCodes", Call("IntraClassification", {vatCode}),
                inner_->IntraClassification(vatCode));
  }
  Variant PeriodReferenceDate(std::int16_t month, std::int16_t year) override {
    return Told("VatCodes", Call("PeriodReferenceDate", {month, year}),
                inner_->PeriodReferenceDate(month, year));
  }
  bool IsVariationNote(std::string_view templateCode) override {
    return Told("VatCodes", Call("IsVariationNote", {templateCode}),
                inner_->IsVariationNote(templateCode));
  }
};

class ObservedPeriodLock final : public Observed<PeriodLock> {
 public:
  using Observed::Observed;
  bool IsLocked(const Variant& date) override {
    return Told("PeriodLock", Call("IsLocked", {date}), inner_->IsLocked(date));
  }
};

class ObservedVatActivities final : public Observed<VatActivities> {
 public:
  using Observed::Observed;
  std::string ActivityCode(std::int16_t year, std::int16_t registerType,
                           std::int16_t section) override {
    return Told("VatActivities", Call("ActivityCode", {year, registerType, section}),
                inner_->ActivityCode(year, registerType, section));
  }
};

class ObservedNumbering final : public Observed<ProtocolNumbering> {
 public:
  using Observed::Observed;
  std::int32_t NextProtocol(std::int16_t registerType, std::int16_t section,
                            const Variant& date) override {
    return Told("ProtocolNumbering", Call("NextProtocol", {registerType, section, date}),
                inner_->NextProtocol(registerType, section, date));
  }
};

class ObservedFeeNotes final : public Observed<FeeNotes> {
 public:
  using Observed::Observed;
  bool SupplierTest(std::int32_t idAnagrafica) override {
    return Told("FeeNotes", Call("SupplierTest", {idAnagrafica}),
                inner_->SupplierTest(idAnagrafica));
  }
  std::int16_t TemplateTest(std::string_view templateCode) override {
    return Told("FeeNotes", Call("TemplateTest", {templateCode}),
                inner_->TemplateTest(templateCode));
  }
};

class ObservedSqlFunctions final : public Observed<SqlFunctions> {
 public:
  using Observed::Observed;
  std::string Expression(std::int32_t functionCode, std::string_view column) override {
    return Told("SqlFunctions", Call("Expression", {functionCode, column}),
                inner_->Expression(functionCode, column));
  }
};

class ObservedTotals final : public Observed<Totals> {
 public:
  using Observed::Observed;
  void Attach(const RecordsetRef& set) override { inner_->Attach(set); }
  void Columns(std::string_view list) override { inner_->Columns(list); }
  void Compute() override { inner_->Compute(); }
  Currency Total(std::string_view column) override {
    return Told("Totals", Call("Total", {column}), inner_->Total(column));
  }
};

class ObservedDataAccess final : public Observed<DataAccess> {
 public:
  using Observed::Observed;
  RecordsetRef Open(const QueryBuilder& query) override {
    RecordsetRef rows = inner_->Open(query);
    Tell("DataAccess", InWords(query), !rows.IsNothing() && !rows->Eof());
    return rows;
  }
  // The last output argument is the answer.
  void Execute(std::string_view procedure, std::span<ProcedureArgument> arguments) override {
    inner_->Execute(procedure, arguments);
    std::string words;
    Variant answer;
    for (const ProcedureArgument& argument : arguments) {
      if (argument.output) {
        answer = argument.value;
      } else {
        Add(words, ", ", ValueInWords(argument.value));
      }
    }
    Tell("DataAccess", std::string(procedure) + " (" + words + ")", answer);
  }
};

}  // namespace

std::string InWords(const QueryBuilder& query) {
  std::string words(query.Table());
  for (const QueryBuilder::Join& join : query.Joins()) {
    words += " + " + std::string(join.table) + ConditionsInWords(join.on);
  }
  return words + ConditionsInWords(query.Conditions());
}

std::unique_ptr<KalStatus> ObservedSiblings::CreateKalStatus() {
  return std::make_unique<ObservedStatus>(inner_.CreateKalStatus(), observer_);
}

std::unique_ptr<CompanySettings> ObservedSiblings::CreateCompanySettings() {
  return std::make_unique<ObservedSettings>(inner_.CreateCompanySettings(), observer_);
}

std::unique_ptr<KalAnagrafiche> ObservedSiblings::CreateKalAnagrafiche() {
  return std::make_unique<ObservedAnagrafiche>(inner_.CreateKalAnagrafiche(), observer_);
}

std::unique_ptr<VatCodes> ObservedSiblings::CreateVatCodes() {
  return std::make_unique<ObservedVatCodes>(inner_.CreateVatCodes(), observer_);
}

std::unique_ptr<PeriodLock> ObservedSiblings::CreatePeriodLock() {
  return std::make_unique<ObservedPeriodLock>(inner_.CreatePeriodLock(), observer_);
}

std::unique_ptr<VatActivities> ObservedSiblings::CreateVatActivities() {
  return std::make_unique<ObservedVatActivities>(inner_.CreateVatActivities(), observer_);
}

std::unique_ptr<ProtocolNumbering> ObservedSiblings::CreateProtocolNumbering() {
  return std::make_unique<ObservedNumbering>(inner_.CreateProtocolNumbering(), observer_);
}

std::unique_ptr<FeeNotes> ObservedSiblings::CreateFeeNotes() {
  return std::make_unique<ObservedFeeNotes>(inner_.CreateFeeNotes(), observer_);
}

std::unique_ptr<SqlFunctions> ObservedSiblings::CreateSqlFunctions() {
  return std::make_unique<ObservedSqlFunctions>(inner_.CreateSqlFunctions(), observer_);
}

std::unique_ptr<Totals> ObservedSiblings::CreateTotals() {
  return std::make_unique<ObservedTotals>(inner_.CreateTotals(), observer_);
}

std::unique_ptr<DataAccess> ObservedSiblings::CreateDataAccess() {
  return std::make_unique<ObservedDataAccess>(inner_.CreateDataAccess(), observer_);
}

}  // namespace kal
