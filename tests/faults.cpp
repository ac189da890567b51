// Faults: every public operation, with the Nth call that leaves the checker failing, for every N,
// once and from then on; and with the Nth allocation failing.
//
// The wire stands between the checker and everything else: sibling components, the record sets
// that they open, and the host's own. It counts the calls that cross it, notes what they were and
// fails the one that it is told to fail.

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <algorithm>
#include <cstdlib>
#include <iostream>
#include <new>
#include <optional>
#include <set>

#include "platform/RunTimeError.h"
#include "tests/kit.h"

namespace {

// How many allocations of this thread still succeed; negative while none is to fail.
thread_local std::int64_t allocationsLeft = -1;
thread_local bool staysScarce = false;
thread_local bool wasScarce = false;

// Memory for a size, or for a size and an alignment.
void* Allocated(std::size_t size, std::size_t alignment = 0) {
  if (allocationsLeft >= 0 && allocationsLeft-- == 0) {
    allocationsLeft = staysScarce ? 0 : -1;
    wasScarce = true;
    return nullptr;
  }
  return alignment <= alignof(std::max_align_t)
             ? std::malloc(size == 0 ? 1 : size)
             : std::aligned_alloc(alignment, (size + alignment - 1) / alignment * alignment);
}

void* Required(void* memory) { return memory != nullptr ? memory : throw std::bad_alloc(); }

// While it lives, so many allocations succeed and one, or every further one, fails.
class ScarceMemory {
 public:
  ScarceMemory(std::int64_t allocations, bool always) {
    staysScarce = always;
    wasScarce = false;
    allocationsLeft = allocations;
  }
  ScarceMemory(const ScarceMemory&) = delete;
  ScarceMemory& operator=(const ScarceMemory&) = delete;
  ~ScarceMemory() { allocationsLeft = -1; }
};

}  // namespace

void* operator new(std::size_t size) { return Required(Allocated(size)); }
void* operator new(std::size_t size, std::align_val_t alignment) {
  return Required(Allocated(size, static_cast<std::size_t>(alignment)));
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept { return Allocated(size); }
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }
void operator delete(void* memory, std::align_val_t) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t, std::align_val_t) noexcept { std::free(memory); }
void operator delete(void* memory, const std::nothrow_t&) noexcept { std::free(memory); }

namespace kal::test {
namespace {

constexpr std::int32_t kNumber = 31999;

struct Wire {
  // Silent: the call answers as if there were nothing, no row or no text, and raises no error.
  enum class Fault { None, Once, FromThenOn, Silent };

  // Raises the fault when it is due; answers whether the call is to be silent.
  bool Cross(std::string what) {
    log.push_back(std::move(what));
    const bool due = fault == Fault::FromThenOn ? log.size() >= at : log.size() == at;
    if (due && (fault == Fault::Once || fault == Fault::FromThenOn)) {
      raised = log.size();
      throw RunTimeError(kNumber, "Guasto", "Injected");
    }
    return due && fault == Fault::Silent;
  }

  Fault fault = Fault::None;
  std::size_t at = 0;      // counted from 1
  std::size_t raised = 0;  // the call that failed last
  std::vector<std::string> log;
  int siblings = 0;  // sibling components alive
  int sets = 0;      // record sets alive, the host's own included
};

class Counted {
 public:
  explicit Counted(int& alive) : alive_(alive) { ++alive_; }
  Counted(const Counted&) = delete;
  Counted& operator=(const Counted&) = delete;
  ~Counted() { --alive_; }

 private:
  int& alive_;
};

class WiredField final : public Field {
 public:
  WiredField(Wire& wire, std::string name, const Field& inner)
      : wire_(wire), name_(std::move(name)), inner_(inner) {}
  kal::Variant Value() const override { return wire_.Cross("Value " + name_), inner_.Value(); }
  DataType Type() const override { return wire_.Cross("Type " + name_), inner_.Type(); }

 private:
  Wire& wire_;
  std::string name_;
  const Field& inner_;
};

class WiredRecordset final : public Recordset {
 public:
  WiredRecordset(Wire& wire, RecordsetRef inner)
      : wire_(wire), alive_(wire.sets), inner_(std::move(inner)) {}
  const Field& Fields(std::string_view name) override {
    wire_.Cross("Fields " + std::string(name));
    return Keep(std::string(name), inner_->Fields(name));
  }
  const Field& Fields(std::size_t index) override {
    wire_.Cross("Fields #");
    return Keep("#", inner_->Fields(index));
  }
  std::int32_t RecordCount() override { return wire_.Cross("RecordCount"), inner_->RecordCount(); }
  kal::EditMode EditMode() override { return wire_.Cross("EditMode"), inner_->EditMode(); }
  void Filter(std::string_view text) override { wire_.Cross("Filter"), inner_->Filter(text); }
  void Filter(FilterGroup group) override { wire_.Cross("Filter"), inner_->Filter(group); }
  void MoveFirst() override { wire_.Cross("MoveFirst"), inner_->MoveFirst(); }
  void MoveNext() override { wire_.Cross("MoveNext"), inner_->MoveNext(); }
  void MoveLast() override { wire_.Cross("MoveLast"), inner_->MoveLast(); }
  bool Eof() override { return wire_.Cross("Eof"), inner_->Eof(); }
  bool HasCurrentRow() noexcept override {
    try {
      return !wire_.Cross("HasCurrentRow") && inner_->HasCurrentRow();
    } catch (const RunTimeError&) {
      return false;
    }
  }

 private:
  const Field& Keep(std::string name, const Field& inner) {
    return *fields_.emplace_back(std::make_unique<WiredField>(wire_, std::move(name), inner));
  }

  Wire& wire_;
  Counted alive_;
  RecordsetRef inner_;
  std::vector<std::unique_ptr<WiredField>> fields_;
};

// A sibling component on the wire.
template <class Sibling>
struct Wired : Sibling {
  Wired(Wire& w, std::unique_ptr<Sibling> component)
      : wire(w), alive(w.siblings), inner(std::move(component)) {}
  Wire& wire;
  Counted alive;
  std::unique_ptr<Sibling> inner;
};

struct WiredStatus final : Wired<KalStatus> {
  using Wired::Wired;
  std::string GetMessage(std::int32_t c) override {
    return wire.Cross("GetMessage"), inner->GetMessage(c);
  }
  std::string TranslateFromDict(std::string_view a, std::string_view b, std::string_view c,
                                std::string_view d, std::string_view e,
                                std::string_view f) override {
    return wire.Cross("Translate") ? "" : inner->TranslateFromDict(a, b, c, d, e, f);
  }
};
struct WiredSettings final : Wired<CompanySettings> {
  using Wired::Wired;
  Variant Setting(std::string_view n) override { return wire.Cross("Setting"), inner->Setting(n); }
  bool SelectFiscalYear(const Variant& date) override {
    return wire.Cross("SelectFiscalYear"), inner->SelectFiscalYear(date);
  }
  Variant FiscalYearField(std::string_view name) override {
    return wire.Cross("FiscalYearField"), inner->FiscalYearField(name);
  }
};
struct WiredAnagrafiche final : Wired<KalAnagrafiche> {
  using Wired::Wired;
  void IDAnagrafica(std::int32_t id) override { wire.Cross("Id"), inner->IDAnagrafica(id); }
  void TipoAnagrafica(std::int16_t t) override { wire.Cross("Tipo"), inner->TipoAnagrafica(t); }
  void Init() override { wire.Cross("Init"), inner->Init(); }
  Variant InfoAnagrafica(std::string_view name) override {
    return wire.Cross("InfoAnagrafica"), inner->InfoAnagrafica(name);
  }
};
struct WiredVatCodes final : Wired<VatCodes> {
  using Wired::Wired;
  bool AdmitsFiscalData(std::string_view code) override {
    return wire.Cross("AdmitsFiscalData"), inner->AdmitsFiscalData(code);
  }
  std::int32_t IntraClassification(std::string_view code) override {
    return wire.Cross("IntraClassification"), inner->IntraClassification(code);
  }
  Variant PeriodReferenceDate(std::int16_t month, std::int16_t year) override {
    return wire.Cross("PeriodReferenceDate"), inner->PeriodReferenceDate(month, year);
  }
  bool IsVariationNote(std::string_view code) override {
    return wire.Cross("IsVariationNote"), inner->IsVariationNote(code);
  }
};
struct WiredLock final : Wired<PeriodLock> {
  using Wired::Wired;
  bool IsLocked(const Variant& date) override {
    return wire.Cross("IsLocked"), inner->IsLocked(date);
  }
};
struct WiredActivities final : Wired<VatActivities> {
  using Wired::Wired;
  std::string ActivityCode(std::int16_t y, std::int16_t type, std::int16_t section) override {
    return wire.Cross("ActivityCode"), inner->ActivityCode(y, type, section);
  }
};
struct WiredNumbering final : Wired<ProtocolNumbering> {
  using Wired::Wired;
  std::int32_t NextProtocol(std::int16_t type, std::int16_t s, const Variant& date) override {
    return wire.Cross("NextProtocol"), inner->NextProtocol(type, s, date);
  }
};
struct WiredFeeNotes final : Wired<FeeNotes> {
  using Wired::Wired;
  bool SupplierTest(std::int32_t id) override {
    return wire.Cross("SupplierTest"), inner->SupplierTest(id);
  }
  std::int16_t TemplateTest(std::string_view code) override {
    return wire.Cross("TemplateTest"), inner->TemplateTest(code);
  }
};
struct WiredFunctions final : Wired<SqlFunctions> {
  using Wired::Wired;
  std::string Expression(std::int32_t code, std::string_view column) override {
    return wire.Cross("Expression"), inner->Expression(code, column);
  }
};
struct WiredTotals final : Wired<Totals> {
  using Wired::Wired;
  void Attach(const RecordsetRef& set) override { wire.Cross("Attach"), inner->Attach(set); }
  void Columns(std::string_view list) override { wire.Cross("Columns"), inner->Columns(list); }
  void Compute() override { wire.Cross("Compute"), inner->Compute(); }
  Currency Total(std::string_view c) override { return wire.Cross("Total"), inner->Total(c); }
};
struct WiredDataAccess final : Wired<DataAccess> {
  using Wired::Wired;
  RecordsetRef Open(const QueryBuilder& query) override {
    wire.Cross("Open");
    return std::make_shared<WiredRecordset>(wire, inner->Open(query));
  }
  void Execute(std::string_view name, std::span<ProcedureArgument> arguments) override {
    wire.Cross("Execute"), inner->Execute(name, arguments);
  }
};

class WiredSiblings final : public ForwardingSiblings {
 public:
  WiredSiblings(SiblingFactory& inner, Wire& wire) : ForwardingSiblings(inner), wire_(wire) {}
  std::unique_ptr<KalStatus> CreateKalStatus() override {
    return Create<WiredStatus>("Status", &SiblingFactory::CreateKalStatus);
  }
  std::unique_ptr<CompanySettings> CreateCompanySettings() override {
    return Create<WiredSettings>("Settings", &SiblingFactory::CreateCompanySettings);
  }
  std::unique_ptr<KalAnagrafiche> CreateKalAnagrafiche() override {
    return Create<WiredAnagrafiche>("Anagrafiche", &SiblingFactory::CreateKalAnagrafiche);
  }
  std::unique_ptr<VatCodes> CreateVatCodes() override {
    return Create<WiredVatCodes>("VatCodes", &SiblingFactory::CreateVatCodes);
  }
  std::unique_ptr<PeriodLock> CreatePeriodLock() override {
    return Create<WiredLock>("PeriodLock", &SiblingFactory::CreatePeriodLock);
  }
  std::unique_ptr<VatActivities> CreateVatActivities() override {
    return Create<WiredActivities>("Activities", &SiblingFactory::CreateVatActivities);
  }
  std::unique_ptr<ProtocolNumbering> CreateProtocolNumbering() override {
    return Create<WiredNumbering>("Numbering", &SiblingFactory::CreateProtocolNumbering);
  }
  std::unique_ptr<FeeNotes> CreateFeeNotes() override {
    return Create<WiredFeeNotes>("FeeNotes", &SiblingFactory::CreateFeeNotes);
  }
  std::unique_ptr<SqlFunctions> CreateSqlFunctions() override {
    return Create<WiredFunctions>("Functions", &SiblingFactory::CreateSqlFunctions);
  }
  std::unique_ptr<Totals> CreateTotals() override {
    return Create<WiredTotals>("Totals", &SiblingFactory::CreateTotals);
  }
  std::unique_ptr<DataAccess> CreateDataAccess() override {
    return Create<WiredDataAccess>("DataAccess", &SiblingFactory::CreateDataAccess);
  }

 private:
  template <class Kind, class Sibling>
  std::unique_ptr<Sibling> Create(const char* name,
                                  std::unique_ptr<Sibling> (SiblingFactory::*create)()) {
    wire_.Cross(std::string("Create") + name);
    return std::make_unique<Kind>(wire_, (inner_.*create)());
  }

  Wire& wire_;
};

// What a call came to: its answer, the five result strings, the rest of what the host reads.
struct Answered {
  std::string answer;
  std::vector<std::string> texts;
  std::string state;
  std::optional<RunTimeError> error;
  bool outOfMemory = false;  // left the checker as such

  [[nodiscard]] bool Same(const Answered& other) const {
    return answer == other.answer && texts == other.texts && state == other.state &&
           error.has_value() == other.error.has_value();
  }
  // Message by message in each string.
  [[nodiscard]] bool PrefixOf(const Answered& whole) const {
    for (std::size_t i = 0; i < texts.size(); ++i) {
      const std::string& other = whole.texts[i];
      if (!other.starts_with(texts[i]) || !(texts[i].empty() || texts[i] == other ||
                                            other.substr(texts[i].size()).starts_with("\r\n"))) {
        return false;
      }
    }
    return true;
  }
};

std::ostream& operator<<(std::ostream& out, const Answered& shown) {
  out << shown.answer << " " << shown.state;
  for (const std::string& text : shown.texts) {
    out << " [" << text << "]";
  }
  return out << (shown.error ? shown.error->Source() : "");
}

// A checker with an entry's record sets, on the wire where there is one.
class Subject {
 public:
  Subject(SiblingFactory& siblings, const host::Entry& entry, Wire* wire = nullptr)
      : wire_(wire), entry_(entry), checker_(siblings) {
    Hand();
  }

  // Every record set of the entry afresh; those that it lacks are Nothing.
  void Hand() {
    for (const host::EntrySet& set : host::EntrySets()) {
      (checker_.*set.assign)(nullptr);
    }
    for (const host::SuppliedSet& supplied : entry_.sets) {
      RecordsetRef set = std::make_shared<MemoryRecordset>(supplied.rows, supplied.editMode);
      (checker_.*supplied.set->assign)(
          wire_ == nullptr ? set : std::make_shared<WiredRecordset>(*wire_, set));
    }
    checker_.TmpTableScadenze(entry_.tmpTableScadenze);
  }

  Answered Call(std::int64_t allocations = -1, bool always = false) {
    Answered answered;
    try {
      const ScarceMemory scarce(allocations, always);
      const host::Answer answer = entry_.operation->call(checker_, entry_.arguments);
      answered.answer =
          answer.index() == 0 ? CStr(std::get<bool>(answer)) : CStr(std::get<std::int32_t>(answer));
    } catch (const RunTimeError& error) {
      answered.error = error;
    } catch (const std::bad_alloc&) {
      answered.outOfMemory = true;
    }
    const std::size_t crossed = wire_ == nullptr ? 0 : wire_->log.size();
    if (wire_ != nullptr) {
      wire_->fault = Wire::Fault::None;
    }
    answered.texts = {checker_.ErrString(), checker_.WarnString(), checker_.WarnProtocolloString(),
                      checker_.WarnDuplicatoDocString(), checker_.WarnInfragruppoString()};
    answered.state = checker_.ImportoPlafond().ToText() + checker_.IsInfragruppo() +
                     CStr(checker_.ChiusuraRateInSospensione()) +
                     CStr(checker_.RiaperturaRateInSospensione());
    if (wire_ != nullptr) {
      wire_->log.resize(crossed);
    }
    return answered;
  }

 private:
  Wire* wire_;
  const host::Entry& entry_;
  KalCOGCheck checker_;
};

constexpr const char* kBooks = R"(
INSERT INTO STDParametriAzienda VALUES ('GestisciPNInfragruppo','1'), ('AttivitaSeparateIva','1'),
  ('GirocontoFatturaSplitPayment','1'), ('BloccoInviatoSDI','1');
INSERT INTO COGParametriIvaAttivitaRighe VALUES (2024,'A1');
INSERT INTO COGBollati VALUES (1,2024,3,1,0);
INSERT INTO COGBollatiIva VALUES (1,1,1,1,1), (1,2,1,1,1), (1,9,1,1,1);
INSERT INTO COGBlocchiPeriodo VALUES ('2024-03-15','2024-03-15');
INSERT INTO COGPrimeNoteProprieta VALUES ('P',1);
INSERT INTO COGIvaLiquidazioni VALUES (2024,3,1);
INSERT INTO COGPrimeNoteRiferimenti VALUES (100,'2024-03-10'), (101,'2024-03-10');
INSERT INTO COGPrimeNoteTeste (IdPrimaNota,IdLink,TipoDocumento,IdDoc,TipoRegIva,SezionaleIva,Protocollo,
    NumeroDocumento,IdAnagrafica,DataDocumento,DataRegistrazione,DataCompetenza,CodCausale,InSospensione) VALUES
  (100,NULL,5,7,2,2,10,'F1',11,'2024-03-10','2024-03-15','2024-03-15','FTV',0),
  (101,NULL,5,8,0,1,10,NULL,NULL,NULL,'2024-03-15','2024-03-15','GEN',0),
  (99,NULL,0,0,1,1,11,'F1',21,'2024-03-10','2024-03-14','2024-03-14','FTA',1),
  (98,NULL,0,0,2,9,9999999,'A1',10,'2024-03-10','2024-03-16','2024-03-16','FTV',0),
  (97,96,0,0,2,2,12,'F1',11,'2024-03-10','2024-03-14','2024-03-14','FTV',0);
INSERT INTO COGPrimeNoteRCont VALUES (100,5), (99,5);
INSERT INTO COGScadenze (IdScadenza,NrRata,TipoRata,LinkApertura,RataApertura,IdDistinta,ImportoDare) VALUES
  (5,1,0,NULL,NULL,7,'10'), (6,1,1,5,1,NULL,NULL);
INSERT INTO COGRateiRisconti VALUES (1,100);
INSERT INTO COGRateiRiscontiContabilizzati VALUES (1);
)";

struct Row {
  const char* name;
  const char* kind;
  const char* changes;
  // The operation's tag, and the operations inside it through which errors come, in the order in
  // which they first do; ">" leads to one inside another.
  const char* ways;
};

constexpr Row kRows[] = {
    {"self-invoiced purchase of a professional", "acquisto",
     "T.ReverseCharge=true;T.CodAttivita=\"A1\";T.DataPlafond=\"2024-03-10\";T.IdDichiarazione=2;"
     "T.FiscalitaBL=true;T.Rettifica=true;T.IdAnagrafica=21;T.TipoDocumento=13;"
     "T.Protocollo=10000000;T.IdLink=98;I1.ReverseCharge=true;I1.CodIva=\"RC\";I+{\"CodIva\":\"9\","
     "\"NumeroRiga\":2,\"Imposta\":1,\"ImpostaVB\":1,\"TotaleVB\":1,\"ImponibileVB\":0};"
     "C3-;C2.CodConto=\"7001\";C2.TipoRiga=3;C2.ImportoAvere=1;R+{\"CodContoContropartita\":\"9\"};"
     "R+{};F+{\"BeniImponibili\":1};S1.DataScadenza=null;S2-;"
     "S+{\"IdScadenza\":2,\"TipoRata\":1,\"ImportoAvere\":1,\"ImportoAvereVB\":1,"
     "\"LinkApertura\":5,\"RataApertura\":1}",
     "OkAggiorna CreaRecordCausale CheckDateScadenza OkQuadratura "
     "OkQuadratura>SottoContoAssente OkCastellettoIva QuadraScadenze "
     "QuadraScadenze>QuadraScadenzeRiga CheckIncassiInSospensione CheckPlafond CheckCodIva "
     "CheckSegnoRigheIva CheckCompilazioneParcella CheckCongruenzaAliquote CheckInfragruppo "
     "CheckInfragruppo>ContoInfragruppo ControllaCongruenzaDate ContabilitaChiusa "
     "LibroGiornaleStampato RegistriIvaStampati>RiepilogoStampato RegistriIvaStampati "
     "ParametriIvaOk SezionaleIvaAutofattura CheckRateiRisconti TestEsercizioCompetenza "
     "CheckDuplicatoNrDocRicevuto TestProtocollo TestProtocolloIntra "
     "CheckQuadraturaDatiFiscalitaBL"},
    {"self-invoice to be numbered", "acquisto",
     "T.CodCausale=\"ACQ\";T.Intra=true;I1.CodIva=\"IC\";C1-;C1-;C1-;S!;T.NumeroDocumento=\"\"",
     "OkAggiorna CreaRecordCausale OkQuadratura OkCastellettoIva QuadraScadenze CheckPlafond "
     "CheckCodIva CheckSegnoRigheIva CheckCompilazioneParcella CheckCongruenzaAliquote "
     "CheckCongruenzaAliquote>LeggiDichiarazioneIntento CheckInfragruppo "
     "ControllaCongruenzaDate ContabilitaChiusa LibroGiornaleStampato "
     "RegistriIvaStampati>RiepilogoStampato RegistriIvaStampati ParametriIvaOk "
     "SezionaleIvaAutofattura CheckRateiRisconti TestEsercizioCompetenza "
     "CheckDuplicatoNrDocRicevuto TestProtocollo TestProtocolloIntra"},
    {"split-payment sale in suspension", "vendita",
     "T.InSospensione=true;TmpTableScadenze=\"COGScadenze\";T.TipoDocumento=4;T.IdAnagrafica=11;"
     "T.SezionaleIva=2;T.CodPagamento=\"RB\";S2.IdTipologiaPagamento=2;T.IdDichiarazione=1;"
     "T.TotDocumentoVB=-1;T.DataDocumento=\"2024-02-10\";T.Provvisoria=false;C3-",
     "OkAggiorna CreaRecordCausale CheckDateScadenza OkQuadratura "
     "OkQuadratura>SottoContoAssente OkCastellettoIva QuadraScadenze "
     "QuadraScadenze>QuadraScadenzeRiga CheckChiusuraContenstualeSospensione "
     "CheckIncassiInSospensione CheckPlafond CheckCodIva CheckSegnoRigheIva "
     "CheckCongruenzaAliquote CheckInfragruppo CheckInfragruppo>ContoInfragruppo CheckBanca "
     "CheckEffettiSplitPayment>IsClienteSplitPayment CheckEffettiSplitPayment "
     "ControllaCongruenzaDate ContabilitaChiusa LibroGiornaleStampato "
     "RegistriIvaStampati>RiepilogoStampato RegistriIvaStampati ParametriIvaOk "
     "CheckRateiRisconti TestEsercizioCompetenza CheckDuplicatoNrDocEmesso TestProtocollo"},
    {"receipts above the threshold", "corrispettivi", "T.TotDocumentoVB=3600;C3-",
     "OkAggiorna CreaRecordCausale OkQuadratura OkQuadratura>SottoContoAssente "
     "OkCastellettoIva QuadraScadenze CheckPlafond CheckCodIva CheckSegnoRigheIva "
     "CheckCongruenzaAliquote CheckInfragruppo CheckInfragruppo>ContoInfragruppo "
     "ControllaCongruenzaDate ContabilitaChiusa LibroGiornaleStampato "
     "RegistriIvaStampati>RiepilogoStampato RegistriIvaStampati ParametriIvaOk "
     "CheckRateiRisconti TestEsercizioCompetenza CheckDuplicatoNrDocEmesso TestProtocollo"},
    {"line currencies", "giroconto",
     "T.CodProprieta=\"P\";C2.CodDivisa=\"\";C2.CodConto=\"x\";T.CodCausale=\"APE\"",
     "OkAggiorna CreaRecordCausale OkQuadratura OkQuadratura>SottoContoAssente "
     "OkDivisaSuRighe OkDivisaSuRighe>DivisaSuRighe QuadraScadenze CheckPlafond "
     "CheckSegnoRigheIva CheckInfragruppo CheckInfragruppo>ContoInfragruppo EsisteSezionale "
     "ControllaCongruenzaDate ContabilitaChiusa LibroGiornaleStampato CheckRateiRisconti "
     "TestEsercizioCompetenza"},
    {"unknown template", "giroconto", "T.CodCausale=\"?\"", "OkAggiorna CreaRecordCausale"},
    {"modified sale", "vendita", "operation=\"OkModifica\"",
     "OkModify ScadenzeDocChiuse IsDocumentoSplitPayment ScadenzeInDistintaIncPag "
     "ContabilitaChiusa LibroGiornaleStampato RegistriIvaStampati>RiepilogoStampato "
     "RegistriIvaStampati RRContabilizzati"},
    {"modified purchase", "acquisto",
     "operation=\"OkModifica\";T.StatoDocPA=3;T.InSospensione=true;T.DataCompetenza=\"2023-03-15\"",
     "OkModify ScadenzeDocChiuse IsDocumentoSplitPayment ScadenzeInDistintaIncPag "
     "ContabilitaChiusa LibroGiornaleStampato RegistriIvaStampati>RiepilogoStampato "
     "RegistriIvaStampati RRContabilizzati"},
    {"made another entry", "acquisto", "operation=\"OkModifica\";T.IdPrimaNota=96", "OkModify"},
    {"deleted entry", "giroconto", "operation=\"OkCancella\"",
     "OkDelete>OkModify ScadenzeDocChiuse OkModify ScadenzeInDistintaIncPag ContabilitaChiusa "
     "LibroGiornaleStampato CheckPeriodoLiquidato RRContabilizzati"},
    {"modified document", "giroconto", "operation=\"OkModificaDoc\";arguments=[5,7]",
     "OkModificaDoc OkModify OkModify>ScadenzeDocChiuse OkModify>IsDocumentoSplitPayment "
     "OkModify>OkModify OkModify>ScadenzeInDistintaIncPag OkModify>ContabilitaChiusa "
     "OkModify>LibroGiornaleStampato OkModify>RegistriIvaStampati>RiepilogoStampato "
     "OkModify>RegistriIvaStampati OkModify>RRContabilizzati"},
    {"deleted document", "giroconto", "operation=\"OkCancellaDoc\";arguments=[5,8]",
     "OkCancellaDoc OkDelete>OkModify OkDelete>OkModify>ScadenzeDocChiuse "
     "OkDelete>OkModify>OkModify OkDelete>OkModify>ScadenzeInDistintaIncPag "
     "OkDelete>OkModify>ContabilitaChiusa OkDelete>OkModify>LibroGiornaleStampato "
     "OkDelete>OkModify>CheckPeriodoLiquidato OkDelete>OkModify>RRContabilizzati"},
    {"entry of a document", "giroconto", "operation=\"LeggiIdPrimaNota\";arguments=[7,5]",
     "LeggiIdPrimaNota"},
    {"remitted", "vendita", "operation=\"ScadenzeInDistinta\"", "OkModify"},
    {"remitted payments", "vendita", "operation=\"ScadenzeInDistintaIncPag\"",
     "ScadenzeInDistintaIncPag"},
    {"closed year", "giroconto", "operation=\"ContabilitaChiusa\"", "ContabilitaChiusa"},
    {"journal", "giroconto", "operation=\"LibroGiornaleStampato\";arguments=[\"2024-03-15\"]",
     "LibroGiornaleStampato"},
    {"register", "giroconto", "operation=\"RegistriIvaStampati\";arguments=[\"2024-03-15\",1,1]",
     "RegistriIvaStampati>RiepilogoStampato RegistriIvaStampati"},
    {"received number", "giroconto",
     "operation=\"CheckDuplicatoNrDocRicevuto\";arguments=[\"F1\",\"2024-03-10\",21,5]",
     "CheckDuplicatoNrDocRicevuto"},
    {"issued number", "giroconto",
     "operation=\"CheckDuplicatoNrDocEmesso\";arguments=[2,2,\"F1\",\"2024-03-10\",5]",
     "CheckDuplicatoNrDocEmesso"},
};

// The tags of an error's trail, outermost first.
std::vector<std::string> Tags(const RunTimeError& error, std::string_view source) {
  std::vector<std::string> tags;
  std::string line = "Errore ( " + std::to_string(error.Number()) + " ) - Componente ( ";
  line.append(source).append(" )");
  std::string rest = error.Source() + "\r\n";
  EXPECT_TRUE(rest.starts_with(line + "\r\n")) << rest;
  while (rest.erase(0, line.size() + 2), !rest.empty()) {
    line = rest.substr(0, rest.find("\r\n"));
    EXPECT_TRUE(line.starts_with("Kal_COGCheck.")) << rest;
    tags.insert(tags.begin(), line.substr(line.find('.') + 1));
  }
  EXPECT_FALSE(tags.empty());
  return tags;
}

// Adds the way of an injected error. The reading of a field, which comes innermost, is left out
// and must be that of the call that failed.
void AddWay(std::vector<std::string>& ways, const RunTimeError& error, const std::string& failed) {
  EXPECT_EQ(error.Number(), kNumber);
  EXPECT_EQ(error.Description(), "Injected");
  std::vector<std::string> tags = Tags(error, "Guasto");
  if (tags.back().starts_with("modDataBaseUtility.GetField")) {
    EXPECT_EQ(tags.back(), "modDataBaseUtility.GetField ( Field: " +
                               failed.substr(failed.find(' ') + 1) + " ) ");
    tags.pop_back();
  }
  std::string way;
  for (const std::string& tag : tags) {
    way += (way.empty() ? "" : ">") + tag.substr(tag.find('.') + 1);
  }
  if (!ways.empty() && way.starts_with(ways[0] + ">")) {
    way.erase(0, ways[0].size() + 1);
  }
  if (std::ranges::find(ways, way) == ways.end()) {
    ways.push_back(way);
  }
}

// The place of the call whose silence is what a swallowed failure of the Nth call comes to: no
// current row where RecordsetIsEmpty asks, no text where TranslateText does. 0 when the failure
// must be raised.
std::size_t SilentPlace(const std::vector<std::string>& log, std::size_t n) {
  const auto at = [&](std::size_t place) {
    return place >= 1 && place <= log.size() ? log[place - 1] : std::string();
  };
  if (at(n) == "CreateStatus" && at(n + 1) == "Translate") return n + 1;
  return at(n) == "Translate" || at(n) == "HasCurrentRow" ? n : 0;
}

class Faults : public testing::Test {
 protected:
  Answered Run(const host::Entry& entry, Wire::Fault fault, std::size_t at) {
    Wire wire;
    wire.fault = fault;
    wire.at = at;
    WiredSiblings siblings(company_.Siblings(), wire);
    Answered answered = Subject(siblings, entry, &wire).Call();
    EXPECT_EQ(wire.siblings + wire.sets, 0);
    log_ = std::move(wire.log);
    return answered;
  }

  // One failure and everything that must hold after it. Adds the way that the error came.
  void Fail(const host::Entry& entry, Wire::Fault fault, std::size_t n,
            const std::vector<std::string>& log, const Answered& whole, const Answered& silence,
            std::vector<std::string>& ways) {
    const bool mayPass = SilentPlace(log, n) != 0;
    const bool mustPass = mayPass && fault == Wire::Fault::Once;
    Wire wire;
    WiredSiblings siblings(company_.Siblings(), wire);
    Subject subject(siblings, entry, &wire);
    const int handed = wire.sets;
    wire.fault = fault;
    wire.at = n;
    const Answered failed = subject.Call();
    EXPECT_EQ(wire.siblings, 0);
    EXPECT_TRUE(failed.PrefixOf(silence)) << failed << "\n" << silence;
    EXPECT_TRUE(failed.error ? !mustPass : mayPass && failed.Same(silence)) << failed;
    if (failed.error) {
      AddWay(ways, *failed.error, wire.log.at(wire.raised - 1));
    }
    if (fault == Wire::Fault::Once) {
      subject.Hand();
      EXPECT_EQ(wire.sets, handed);
      const Answered again = subject.Call();
      EXPECT_TRUE(again.Same(whole)) << again << "\n" << whole;
    }
  }

  // Whether one silent call leads to that outcome.
  bool ComesOfSilence(const host::Entry& entry, const Answered& outcome) {
    (void)Run(entry, Wire::Fault::None, 0);
    const std::vector<std::string> log = log_;
    for (std::size_t n = 1; n <= log.size(); ++n) {
      if (SilentPlace(log, n) == n && Run(entry, Wire::Fault::Silent, n).Same(outcome)) {
        return true;
      }
    }
    return false;
  }

  TestCompany file_{kBooks};
  company::Company company_{file_.Path().string()};
  std::vector<std::string> log_;
};

TEST_F(Faults, OfEveryCall) {
  for (const Row& row : kRows) {
    SCOPED_TRACE(row.name);
    const Checked built(company_.Siblings(), EntryText(row.kind, row.changes));
    const Answered whole = Run(built.entry, Wire::Fault::None, 0);
    const std::vector<std::string> log = log_;
    ASSERT_FALSE(whole.error) << whole;
    std::vector<std::string> ways;
    for (std::size_t n = 1; n <= log.size() && !HasFailure(); ++n) {
      SCOPED_TRACE("call " + std::to_string(n) + ": " + log[n - 1]);
      const std::size_t silent = SilentPlace(log, n);
      const Answered silence = silent == 0 ? whole : Run(built.entry, Wire::Fault::Silent, silent);
      Fail(built.entry, Wire::Fault::Once, n, log, whole, silence, ways);
      Fail(built.entry, Wire::Fault::FromThenOn, n, log, whole, silence, ways);
    }
    std::string shown;
    for (const std::string& way : ways) {
      shown += (shown.empty() ? "" : " ") + way;
    }
    EXPECT_EQ(shown, row.ways);
  }
}

// Without memory the answer is error 7 with its trail, or, where even that finds none, the
// exception itself; where failures are swallowed by rule, it is that of the silence. Company and
// object answer as before once there is memory again.
TEST_F(Faults, OfEveryAllocation) {
  for (const Row& row : kRows) {
    SCOPED_TRACE(row.name);
    const Checked built(company_.Siblings(), EntryText(row.kind, row.changes));
    const Answered whole = Run(built.entry, Wire::Fault::None, 0);
    for (const bool always : {false, true}) {
      bool scarce = true;
      for (std::int64_t n = 0; scarce && !HasFailure(); ++n) {
        SCOPED_TRACE("allocation " + std::to_string(n + 1));
        Subject subject(company_.Siblings(), built.entry);
        const Answered failed = subject.Call(n, always);
        scarce = wasScarce;
        if (failed.error) {
          EXPECT_EQ(failed.error->Number(), 7);
          Tags(*failed.error, kComponentName);
          EXPECT_TRUE(failed.PrefixOf(whole)) << failed << whole;
        } else {
          EXPECT_TRUE(failed.outOfMemory
                          ? always
                          : failed.Same(whole) || ComesOfSilence(built.entry, failed))
              << failed << whole;
        }
        subject.Hand();
        EXPECT_TRUE(subject.Call().Same(whole));
      }
    }
  }
}

// The same for a company that has not answered anything yet, at some of the allocations.
TEST_F(Faults, OfAllocationsOfANewCompany) {
  const Checked built(company_.Siblings(), EntryText(kRows[0].kind, kRows[0].changes));
  const Answered whole = Run(built.entry, Wire::Fault::None, 0);
  bool scarce = true;
  for (std::int64_t n = 0; scarce && !HasFailure(); n += 1 + n / 8) {
    SCOPED_TRACE("allocation " + std::to_string(n + 1));
    company::Company fresh(file_.Path().string());
    Subject subject(fresh.Siblings(), built.entry);
    const Answered failed = subject.Call(n, n % 2 == 1);
    scarce = wasScarce;
    EXPECT_TRUE(failed.error ? failed.error->Number() == 7
                             : failed.outOfMemory || failed.Same(whole))
        << failed;
    subject.Hand();
    EXPECT_TRUE(subject.Call().Same(whole));
  }
}

// The same where SQLite finds no memory, at any depth of opening a company and asking it.
TEST_F(Faults, OfTheDatabasesMemory) {
  const Checked built(company_.Siblings(), EntryText(kRows[0].kind, kRows[0].changes));
  const Answered whole = Run(built.entry, Wire::Fault::None, 0);
  bool scarce = true;
  for (std::int64_t room = 0; scarce && !HasFailure(); room += 512 + room / 64) {
    SCOPED_TRACE(std::to_string(room) + " bytes");
    std::optional<company::Company> fresh;
    std::optional<Answered> answered;
    std::int32_t error = 0;
    sqlite3_hard_heap_limit64(sqlite3_memory_used() + room);
    try {
      fresh.emplace(file_.Path().string());
      answered = Subject(fresh->Siblings(), built.entry).Call();
    } catch (const RunTimeError& refused) {
      error = refused.Number();
    }
    sqlite3_hard_heap_limit64(0);
    scarce = !answered || answered->error;
    if (answered && answered->error) {
      error = answered->error->Number();
      Tags(*answered->error, kDataAccessSource);
      EXPECT_TRUE(Subject(fresh->Siblings(), built.entry).Call().Same(whole));
    } else if (answered) {
      EXPECT_TRUE(answered->Same(whole)) << *answered << whole;
    }
    EXPECT_EQ(error, scarce ? 7 : 0);
  }
}

// What an entry costs once its company has answered one like it: the books are asked (duplicate
// number, protocol order), everything else is known.
TEST_F(Faults, AnEntryTakesFewQuestionsAndLittleMemory) {
  constexpr std::int64_t kPlenty = 1'000'000;
  const auto allocations = [&] {
    Checked entry(company_.Siblings(), EntryText("acquisto", ""));
    const company::Company::Reading books(company_);
    const ScarceMemory plenty(kPlenty, true);
    entry.entry.operation->call(entry.checker, entry.entry.arguments);
    return kPlenty - allocationsLeft;
  };
  allocations();
  const company::Company::Counters before = company_.Counted();
  EXPECT_LE(allocations(), 50);
  const company::Company::Counters after = company_.Counted();
  EXPECT_EQ(after.queries - before.queries, 2);
  EXPECT_EQ(after.prepared - before.prepared, 0);
  EXPECT_EQ(after.transactions - before.transactions, 1);
}

}  // namespace
}  // namespace kal::test
