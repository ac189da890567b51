// KalCOGCheck: may this journal entry be saved, modified or deleted?
//
// The host makes one checker for an entry under edit, hands it the entry's record sets and flags,
// calls one check and reads the reasons from the result strings: ErrString holds what blocks, the
// Warn strings what the user must confirm. Messages are separated by CR LF, oldest first.
//
// Record sets are borrowed: the checker holds a reference, reads them and sets filters and
// positions, and never changes a row. Every member may raise a RunTimeError whose source is the
// trail of operations that it passed; messages given before it stay in the result strings. One
// object serves one call at a time; two objects share nothing.

#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "frame/Observer.h"
#include "frame/modCommonCostanti.h"
#include "frame/modKalCommonErrorCodes.h"
#include "frame/modKalErrorHandling.h"
#include "platform/Currency.h"
#include "platform/Recordset.h"
#include "platform/Variant.h"
#include "siblings/Siblings.h"

namespace kal {

class KalCOGCheck {
 public:
  // The factory must outlive the checker.
  explicit KalCOGCheck(SiblingFactory& siblings) : siblings_(siblings) {}
  KalCOGCheck(const KalCOGCheck&) = delete;
  KalCOGCheck& operator=(const KalCOGCheck&) = delete;
  ~KalCOGCheck() = default;

  // The members in the order of the automation interface. A property is set by the overload that
  // takes its value and read by the one without arguments.
  void TmpTableScadenze(std::string_view name);
  [[nodiscard]] std::string TmpTableScadenze() const;
  void IsFromCard(bool value);
  void IsParcella(bool value);
  [[nodiscard]] std::string IsInfragruppo() const;       // "True" or "False"
  [[nodiscard]] std::string WarnStringModifica() const;  // always ""
  [[nodiscard]] std::string WarnString() const;
  [[nodiscard]] std::string WarnDuplicatoDocString() const;
  [[nodiscard]] std::string WarnProtocolloString() const;
  [[nodiscard]] std::string WarnInfragruppoString() const;
  bool OkCancellaDoc(std::int16_t aTipologiaDoc, std::int32_t aIdDoc);
  bool OkModificaDoc(std::int16_t aTipologiaDoc, std::int32_t aIdDoc);
  [[nodiscard]] Currency ImportoPlafond() const;
  [[nodiscard]] bool ChiusuraRateInSospensione() const;
  [[nodiscard]] bool RiaperturaRateInSospensione() const;
  bool OkModifica();
  bool ScadenzeInDistinta();
  bool ScadenzeInDistintaIncPag();
  bool OkCancella();
  bool CheckDuplicatoNrDocRicevuto(const std::string& aNumeroDoc, const Variant& aDataDoc,
                                   std::int32_t aIdAnagrafica, std::int32_t aIdPrimaNota);
  bool ContabilitaChiusa();
  void RsCausale(RecordsetRef set);
  void RsScadenze(RecordsetRef set);
  [[nodiscard]] std::string ErrString() const;
  void RsTesta(RecordsetRef set);
  void RsRIva(RecordsetRef set);
  void RsRCont(RecordsetRef set);
  bool OkAggiorna(bool aCheckRegIva, bool aCheckDuplicatoDoc);
  bool LibroGiornaleStampato(const Variant& aDataReg);
  bool RegistriIvaStampati(const Variant& aDataReg, std::int16_t aTipoRegIva,
                           std::int16_t aSezionale);
  std::int32_t LeggiIdPrimaNota(std::int32_t aIdDoc, std::int16_t aTipoDoc);  // -1: none
  void RsRisconti(RecordsetRef set);
  void RsFiscalitaBL(RecordsetRef set);
  bool CheckDuplicatoNrDocEmesso(std::int16_t aTipoRegIva, std::int16_t aSezionaleIva,
                                 const std::string& aNumeroDoc, const Variant& aDataDoc,
                                 std::int32_t aIdPrimaNota);
  // A reserved entry point: does nothing and returns 0.
  std::int32_t GenericFx(std::string_view v1, const std::shared_ptr<void>& v2);

  // For native hosts alone, no member of the automation interface: who is told, from the next call
  // on, what the checker does; nullptr for nobody. The observer must outlive its use.
  void Observe(Observer* observer) { observation_ = {observer, nullptr}; }

 private:
  // What the save check knows of the entry's posting template.
  struct Causale {
    std::int16_t Operazione = 0;
    std::int16_t TipoRegIva = 0;
    bool CassaCorrispettivi = false;
    bool TipoVentilazione = false;
    std::int16_t SegnoIva = 0;
  };

  // What one run of the save check finds out on its way.
  struct Salvataggio {
    bool CheckRegIva = false;
    bool CheckDuplicatoDoc = false;
    bool AttivitaSeparateIva = false;
    Variant DataIvaControllo;  // a date, or ""
    std::int16_t SezionaleAutofattura = 0;
    std::int32_t ProtocolloCollegato = 0;  // -1: no linked entry
  };

  // save/OkAggiorna.cpp: the tests of the save check that are no check of their own
  void AzzeraMessaggi();
  [[nodiscard]] bool NessunMessaggio() const;
  void CopiaCausale();
  void TestTipoDocumento();
  void TestDateScadenza();
  void TestChiusuraContestuale();
  void TestInfragruppo();
  void TestNumeroRighe();
  void TestSezionale();
  void TestNumeroDocumento();
  void TestProtocolloMancante();
  void TestProtocolloMassimo(const Variant& protocollo, std::string_view diCosa);
  void TestBanca();
  void TestSplitPayment();
  void TestDefinitiva(Salvataggio& aRun);
  void TestParametriIva(const Salvataggio& aRun);
  void TestAutofattura(Salvataggio& aRun);
  void TestPlafondStampato(const Salvataggio& aRun);
  void TestRigheReverseCharge();
  void TestRegistroIva(const Salvataggio& aRun);
  void TestDichiarazioneIntento();
  void TestPlafondDichiarazione(const RecordsetRef& aDichiarazione);
  void TestNumeroDuplicato(const Salvataggio& aRun);
  void TestProtocolloAutofattura(const Salvataggio& aRun);
  void TestDatiFiscali();
  void TestSogliaCorrispettivi();
  void TestSospensioneNegativa();

  // checks/OkQuadratura.cpp
  void OkQuadratura();
  void SottoContoAssente(const std::string& aCodConto, bool& aAssente);
  void CreaRecordCausale(const std::string& aCodCausale);
  // checks/OkCastellettoIva.cpp
  void OkCastellettoIva();
  void CheckCongruenzaAliquote();
  void TestAliquoteFiscalitaBL(VatCodes& aCodiciIva);
  void TestAliquoteDichiarazione();
  void TestAliquoteIntra(VatCodes& aCodiciIva);
  void EseguiControlliDichiarazioneIntento(bool& aEsegui);
  void LeggiDichiarazioneIntento();
  // checks/QuadraScadenze.cpp
  void QuadraScadenze();
  void QuadraScadenzeRiga(std::int32_t aIdScadenza, Currency aImporto, Currency aImportoVB,
                          bool aInValuta, bool& aQuadra);
  // checks/ControllaCongruenzaDate.cpp
  void ControllaCongruenzaDate(const Variant& aDataReg, const Variant& aDataDoc,
                               const Variant& aDataCompetenza, std::int16_t aTipoRegIva);
  void TestEsercizioCompetenza(const Variant& aDataCompetenza, std::int16_t aTipoMovimento);
  void CheckPeriodoLiquidato(const Variant& aData, std::string& aTarget);
  // checks/CheckCodIva.cpp
  void CheckCodIva();
  // checks/CheckQuadraturaDatiFiscalitaBL.cpp
  void CheckQuadraturaDatiFiscalitaBL(bool& aOk);
  // checks/OkDivisaSuRighe.cpp
  void OkDivisaSuRighe();
  void DivisaSuRighe(Variant& aDivisaSuRighe);
  // checks/CheckChiusuraContenstualeSospensione.cpp
  void CheckChiusuraContenstualeSospensione(bool& aEsito);
  // checks/TestProtocollo.cpp
  void TestProtocollo();
  void TestProtocolloIntra(std::int32_t aIdLink, std::int32_t aProtocolloCollegato,
                           std::int16_t aSezionaleIva);
  // checks/CheckInfragruppo.cpp
  void CheckInfragruppo();
  void ContoInfragruppo(std::int16_t aTipoCliFor, const std::string& aCodConto,
                        std::int32_t aIdCliFor, bool& aInfragruppo);
  // checks/CheckBanca.cpp
  void CheckDateScadenza(bool& aOk);
  void CheckBanca(bool& aOk);
  // checks/CheckCompilazioneParcella.cpp
  void CheckCompilazioneParcella();
  // checks/CheckRateiRisconti.cpp
  void CheckRateiRisconti();
  // checks/EsisteSezionale.cpp
  void EsisteSezionale();
  // checks/ParametriIvaOk.cpp
  void ParametriIvaOk(const Variant& aData, bool& aOk);
  // checks/SezionaleIvaAutofattura.cpp
  void SezionaleIvaAutofattura(std::int16_t aTipoRegIva, std::int16_t aSezionaleIva,
                               const Variant& aData, std::int16_t& aSezionaleAutofattura);
  // checks/CheckSegnoRigheIva.cpp
  void CheckSegnoRigheIva();
  // checks/CheckPlafond.cpp
  void CheckPlafond();
  // checks/CheckIncassiInSospensione.cpp
  void CheckIncassiInSospensione();
  [[nodiscard]] RecordsetRef AperturaInSospensione() const;
  // checks/RiepilogoStampato.cpp
  Variant RiepilogoStampato(const Variant& aData, std::int16_t aTipoRegIva,
                            std::int16_t aSezionale);
  // modify/OkModifica.cpp
  bool GeneratoUnaltraRegistrazione();
  void TestFatturaElettronica();
  void TestScadenzeChiuse();
  void TestDistinte();
  void TestLibriStampati();
  void TestPeriodoIva();
  // modify/LibriStampati.cpp
  [[nodiscard]] RecordsetRef BollatiDelMese(const Variant& aData) const;
  // modify/RegistrazioniDaDocumento.cpp
  bool SuRegistrazioneDelDocumento(std::int16_t aTipologiaDoc, std::int32_t aIdDoc,
                                   bool (KalCOGCheck::*aControllo)());
  // modify/SplitPayment.cpp
  bool IsDocumentoSplitPayment();
  bool IsClienteSplitPayment();
  bool CheckEffettiSplitPayment(const std::string& aCodPagamento);
  std::size_t PrimaRataConEffetto();
  // modify/Scadenze.cpp
  bool ScadenzeDocChiuse();
  bool RRContabilizzati();

  // Shared by the checks (frame/KalCOGCheck.cpp). Each makes its sibling component afresh.
  [[nodiscard]] RecordsetRef Open(const QueryBuilder& query) const;
  // A company setting; the flag and the text read a missing one as False and "".
  [[nodiscard]] Variant Setting(std::string_view name) const;
  [[nodiscard]] bool SettingFlag(std::string_view name) const;
  [[nodiscard]] std::string SettingText(std::string_view name) const;
  // The rows of COGNumerazioniIva of one section: at most one in sound data.
  [[nodiscard]] RecordsetRef NumerazioneIva(const Variant& data, std::int16_t tipoRegIva,
                                            const Variant& sezionale) const;

  // Every operation runs in Trap, and every message passes AddMessage or AppendLiteral: there the
  // observer is told.
  template <class Body>
  decltype(auto) Trap(OperationTag tag, Body&& body) const {
    return kal::Trap(tag, std::forward<Body>(body), &observation_);
  }
  // For an operation that answers by reference.
  template <class Answer, class Body>
  void Trap(OperationTag tag, const Answer& answer, Body&& body) const {
    (void)kal::Trap(
        tag,
        [&]() -> const Answer& {
          std::forward<Body>(body)();
          return answer;
        },
        &observation_);
  }
  void AddMessage(std::string& target, MessageCode code,
                  std::initializer_list<Variant> parameters = {}) const;
  // A text of testi; what is appended may be its translation.
  void AppendLiteral(std::string& target, const testi::Letterale& literal) const {
    AppendLiteral(target, literal, literal.testo);
  }
  void AppendLiteral(std::string& target, const testi::Letterale& literal,
                     std::string_view shown) const;
  [[nodiscard]] ResultString ResultStringOf(const std::string& target) const;

  SiblingFactory& siblings_;
  mutable Observation observation_;

  RecordsetRef rsTesta_;
  RecordsetRef rsRIva_;
  RecordsetRef rsRCont_;
  std::string errString_;
  RecordsetRef rsScadenze_;
  RecordsetRef rsCausale_;
  Causale causaleCorrente_;
  bool chiusuraRateInSospensione_ = false;
  bool riaperturaRateInSospensione_ = false;
  Currency importoPlafond_;
  std::string warnString_;
  std::string warnDuplicatoDocString_;
  std::string warnProtocolloString_;
  std::string warnInfragruppoString_;
  RecordsetRef rsRisconti_;
  bool rsRiscontiImpostato_ = false;
  bool isParcella_ = false;
  bool infragruppo_ = false;
  bool isFromCard_ = false;
  RecordsetRef rsFiscalitaBL_;
  std::string tmpTableScadenze_;
};

}  // namespace kal
