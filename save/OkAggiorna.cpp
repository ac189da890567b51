// OkAggiorna: may this entry be saved?
//
// The order of the checks is part of what users rely on: it is the order of the messages that
// they read. It stands here and nowhere else. Each check gives its messages itself; what follows
// the column are the tests that are no check of their own. Warnings alone also answer False: the
// host then asks the user.

#include "frame/KalCOGCheck.h"
#include "frame/modCommonCostanti.h"
#include "frame/modDatabaseUtility.h"
#include "frame/modKalErrorHandling.h"

namespace kal {
namespace {

// TestEsercizioCompetenza's kinds of entry, by the template's IdTipoMovimento.
std::int16_t TipoMovimentoEsercizio(const Variant& idTipoMovimento) {
  constexpr std::int16_t kApertura = 0;
  constexpr std::int16_t kAltro = 1;
  constexpr std::int16_t kChiusura = 2;
  if (idTipoMovimento == 2) {
    return kApertura;
  }
  return idTipoMovimento == 1 ? kChiusura : kAltro;
}

}  // namespace

bool KalCOGCheck::OkAggiorna(bool aCheckRegIva, bool aCheckDuplicatoDoc) {
  return Trap("KalCOGCheck.OkAggiorna", [&] {
    Salvataggio run;
    run.CheckRegIva = aCheckRegIva;
    run.CheckDuplicatoDoc = aCheckDuplicatoDoc;
    AzzeraMessaggi();
    run.AttivitaSeparateIva = SettingFlag("AttivitaSeparateIva");
    CreaRecordCausale(CStr(GetField(rsTesta_, "CodCausale")));
    if (rsCausale_.IsNothing()) {
      AddMessage(errString_, MessageCode::CausaleInesistente);
      return false;
    }
    CopiaCausale();
    const bool conRegistroIva = causaleCorrente_.TipoRegIva != kNessunRegistro;

    TestTipoDocumento();
    const std::int16_t tipoMovimento =
        TipoMovimentoEsercizio(GetField(rsCausale_, "IdTipoMovimento"));
    TestDateScadenza();
    OkQuadratura();
    OkDivisaSuRighe();
    OkCastellettoIva();
    QuadraScadenze();
    TestChiusuraContestuale();
    CheckIncassiInSospensione();
    CheckPlafond();
    CheckCodIva();
    CheckSegnoRigheIva();
    CheckCompilazioneParcella();
    CheckCongruenzaAliquote();
    TestInfragruppo();
    TestNumeroRighe();
    TestSezionale();
    TestNumeroDocumento();
    TestProtocolloMancante();
    TestProtocolloMassimo(GetField(rsTesta_, "Protocollo"), testi::kDelDocumento);
    TestBanca();
    TestSplitPayment();
    ControllaCongruenzaDate(GetField(rsTesta_, "DataRegistrazione"),
                            GetField(rsTesta_, "DataDocumento"),
                            GetField(rsTesta_, "DataCompetenza"), causaleCorrente_.TipoRegIva);
    run.DataIvaControllo = conRegistroIva ? GetField(rsTesta_, "DataIva") : Variant("");
    TestDefinitiva(run);
    TestRigheReverseCharge();
    TestEsercizioCompetenza(GetField(rsTesta_, "DataCompetenza"), tipoMovimento);
    if (conRegistroIva) {
      TestDichiarazioneIntento();
      TestRegistroIva(run);
    }
    return NessunMessaggio();
  });
}

// A definitive entry: what is closed or printed, and what its self-invoice needs.
void KalCOGCheck::TestDefinitiva(Salvataggio& aRun) {
  if (GetFlag(rsTesta_, "Provvisoria")) {
    return;
  }
  const Variant dataRegistrazione = GetField(rsTesta_, "DataRegistrazione");
  if (ContabilitaChiusa()) {
    AddMessage(errString_, MessageCode::ContabilitaEsercizioChiusa);
  }
  if (LibroGiornaleStampato(dataRegistrazione)) {
    AddMessage(errString_, MessageCode::LibroGiornaleGiaStampato);
  }
  if (RegistriIvaStampati(dataRegistrazione, causaleCorrente_.TipoRegIva,
                          CInt(GetField(rsTesta_, "SezionaleIva"))) &&
      aRun.CheckRegIva) {
    AddMessage(errString_, MessageCode::RegistroIvaGiaStampato);
  }
  TestParametriIva(aRun);
  TestAutofattura(aRun);
  TestPlafondStampato(aRun);
  CheckRateiRisconti();
}

// A definitive entry of a VAT register: its section, its numbers, its totals.
void KalCOGCheck::TestRegistroIva(const Salvataggio& aRun) {
  if (GetFlag(rsTesta_, "Provvisoria")) {
    return;
  }
  if (RecordsetIsEmpty(NumerazioneIva(GetField(rsTesta_, "DataRegistrazione"),
                                      causaleCorrente_.TipoRegIva,
                                      GetField(rsTesta_, "SezionaleIva")))) {
    AddMessage(errString_, MessageCode::SezionaleIvaInesistente);
  }
  TestNumeroDuplicato(aRun);
  TestProtocollo();
  TestProtocolloAutofattura(aRun);
  TestDatiFiscali();
  TestSogliaCorrispettivi();
  TestSospensioneNegativa();
}

void KalCOGCheck::AzzeraMessaggi() {
  errString_.clear();
  warnString_.clear();
  warnDuplicatoDocString_.clear();
  warnProtocolloString_.clear();
  warnInfragruppoString_.clear();
}

bool KalCOGCheck::NessunMessaggio() const {
  return errString_.empty() && warnString_.empty() && warnDuplicatoDocString_.empty() &&
         warnProtocolloString_.empty() && warnInfragruppoString_.empty();
}

void KalCOGCheck::CopiaCausale() {
  causaleCorrente_.Operazione = CInt(GetField(rsCausale_, "Operazione"));
  causaleCorrente_.TipoRegIva = CInt(GetField(rsCausale_, "TipoRegIva"));
  causaleCorrente_.SegnoIva = CInt(GetField(rsCausale_, "SegnoIva"));
  causaleCorrente_.TipoVentilazione = GetFlag(rsCausale_, "TipoVentilazione");
  causaleCorrente_.CassaCorrispettivi = GetFlag(rsCausale_, "CassaCorrispettivi");
}

// Document types that only make sense in a VAT register.
void KalCOGCheck::TestTipoDocumento() {
  const Variant tipo = GetField(rsTesta_, "TipoDocumento");
  const bool vuoleRegistro = tipo == 4 || tipo == 5 || tipo == 6 || tipo == 13 || tipo == 14;
  if (vuoleRegistro && causaleCorrente_.TipoRegIva == kNessunRegistro) {
    AddMessage(warnString_, MessageCode::DocumentoSenzaRegistroIva);
  }
}

void KalCOGCheck::TestDateScadenza() {
  bool dateValide = false;
  CheckDateScadenza(dateValide);
  if (!dateValide) {
    AddMessage(warnString_, MessageCode::DataScadenzaNonValida);
  }
}

// Only a new entry in suspension whose installments the host keeps in a table of its own.
void KalCOGCheck::TestChiusuraContestuale() {
  if (GetFlag(rsTesta_, "InSospensione") && causaleCorrente_.TipoRegIva != kNessunRegistro &&
      rsTesta_->EditMode() == EditMode::Add && !tmpTableScadenze_.empty()) {
    bool esito = false;
    CheckChiusuraContenstualeSospensione(esito);
  }
}

void KalCOGCheck::TestInfragruppo() {
  if (SettingFlag("GestisciPNInfragruppo")) {
    CheckInfragruppo();
  }
}

// A VAT entry has no lines when it has neither account lines nor VAT lines. Record sets that were
// not handed over say nothing.
void KalCOGCheck::TestNumeroRighe() {
  const bool conRegistroIva = causaleCorrente_.TipoRegIva != kNessunRegistro;
  if (rsRCont_.IsNothing() || (conRegistroIva && rsRIva_.IsNothing())) {
    return;
  }
  const std::int32_t righe = rsRCont_->RecordCount();
  if (righe == 0 && (!conRegistroIva || rsRIva_->RecordCount() == 0)) {
    AddMessage(warnString_, MessageCode::NessunaRiga);
  }
  if (righe == 1) {
    AddMessage(warnString_, MessageCode::UnaSolaRiga);
  }
}

void KalCOGCheck::TestSezionale() {
  if (causaleCorrente_.TipoRegIva == kNessunRegistro || GetFlag(rsTesta_, "Provvisoria")) {
    EsisteSezionale();
  }
}

void KalCOGCheck::TestNumeroDocumento() {
  if (causaleCorrente_.TipoRegIva != kNessunRegistro && !GetFlag(rsTesta_, "Provvisoria") &&
      GetField(rsTesta_, "NumeroDocumento") == "") {
    AddMessage(errString_, MessageCode::NumeroDocumentoVuoto);
  }
}

// Entries outside the VAT registers are numbered too.
void KalCOGCheck::TestProtocolloMancante() {
  if (GetField(rsTesta_, "Protocollo") == 0 && !GetFlag(rsTesta_, "Provvisoria")) {
    AddMessage(errString_, MessageCode::ProtocolloMancante);
  }
}

void KalCOGCheck::TestProtocolloMassimo(const Variant& protocollo, std::string_view diCosa) {
  if (protocollo > kProtocolloMassimo) {
    AddMessage(warnString_, MessageCode::ProtocolloTroppoGrande,
               {TranslateText(siblings_, diCosa)});
  }
}

void KalCOGCheck::TestBanca() {
  constexpr std::int16_t kFatturaVendita = 4;
  if (!(GetField(rsTesta_, "TipoDocumento") == kFatturaVendita)) {
    return;
  }
  bool bancaPresente = false;
  CheckBanca(bancaPresente);
  if (!bancaPresente) {
    AddMessage(warnString_, MessageCode::BancaClienteMancante);
  }
}

// A sale: the section and the customer must agree on split payment.
void KalCOGCheck::TestSplitPayment() {
  if (causaleCorrente_.TipoRegIva != kVendite) {
    return;
  }
  if (CheckEffettiSplitPayment(CStr(GetField(rsTesta_, "CodPagamento")))) {
    AppendLiteral(warnString_, testi::kEffettiSplitPayment);
  }
  const RecordsetRef numerazione = NumerazioneIva(GetField(rsTesta_, "DataRegistrazione"), kVendite,
                                                  GetField(rsTesta_, "SezionaleIva"));
  const bool sezionaleSplit =
      !RecordsetIsEmpty(numerazione) && GetFlag(numerazione, "SplitPayment");
  const auto anagrafiche = siblings_.CreateKalAnagrafiche();
  anagrafiche->IDAnagrafica(CLng(GetField(rsTesta_, "IdAnagrafica")));
  anagrafiche->TipoAnagrafica(kCliente);
  anagrafiche->Init();
  const bool clienteSplit = CBool(anagrafiche->InfoAnagrafica("SoggettoSplitPayment"));
  if (clienteSplit == sezionaleSplit) {
    return;
  }
  const testi::Letterale& letterale =
      clienteSplit ? testi::kSezionaleNonSplit : testi::kClienteNonSplit;
  std::string testo(letterale.testo);
  testo += kCrLf;  // these two texts end their line themselves
  AppendLiteral(warnString_, letterale, testo);
}

// The VAT parameters of the year, and the period lock once they are there.
void KalCOGCheck::TestParametriIva(const Salvataggio& aRun) {
  if (causaleCorrente_.TipoRegIva != kNessunRegistro) {
    bool parametriOk = false;
    ParametriIvaOk(aRun.DataIvaControllo, parametriOk);
    if (!parametriOk) {
      AddMessage(errString_, MessageCode::ParametriIvaMancanti, {Year(aRun.DataIvaControllo)});
      return;
    }
  }
  if (siblings_.CreatePeriodLock()->IsLocked(aRun.DataIvaControllo)) {
    AddMessage(warnString_, MessageCode::PeriodoBloccato, {"Salvando"});
  }
}

// An intra-community or reverse-charge purchase makes a self-invoice in a sales section.
void KalCOGCheck::TestAutofattura(Salvataggio& aRun) {
  if (causaleCorrente_.TipoRegIva != kAcquisti ||
      !(GetFlag(rsTesta_, "Intra") || GetFlag(rsTesta_, "ReverseCharge"))) {
    return;
  }
  const Variant dataRegistrazione = GetField(rsTesta_, "DataRegistrazione");
  SezionaleIvaAutofattura(CInt(GetField(rsTesta_, "TipoRegIva")),
                          CInt(GetField(rsTesta_, "SezionaleIva")), dataRegistrazione,
                          aRun.SezionaleAutofattura);
  if (RecordsetIsEmpty(NumerazioneIva(dataRegistrazione, kVendite, aRun.SezionaleAutofattura))) {
    AddMessage(errString_, MessageCode::SezionaleAutofatturaInesistente);
  } else if (aRun.AttivitaSeparateIva) {
    const Variant attivita = siblings_.CreateVatActivities()->ActivityCode(
        Year(dataRegistrazione), kVendite, aRun.SezionaleAutofattura);
    if (attivita != GetField(rsTesta_, "CodAttivita")) {
      AddMessage(errString_, MessageCode::AttivitaAutofatturaDiversa);
    }
  }
  if (RegistriIvaStampati(dataRegistrazione, kVendite, aRun.SezionaleAutofattura) &&
      aRun.CheckRegIva) {
    AddMessage(errString_, MessageCode::RegistroAutofatturaStampato, {aRun.SezionaleAutofattura});
  }
  QueryBuilder query;
  query.Select("Protocollo")
      .From("COGPrimeNoteTeste")
      .WhereEqual("IdPrimaNota", CLng(GetField(rsTesta_, "IdLink")));
  const RecordsetRef collegata = Open(query);
  aRun.ProtocolloCollegato =
      RecordsetIsEmpty(collegata) ? -1 : CLng(GetField(collegata, "Protocollo"));
}

void KalCOGCheck::TestPlafondStampato(const Salvataggio& aRun) {
  const Variant dataPlafond = GetField(rsTesta_, "DataPlafond");
  if (dataPlafond != "" && causaleCorrente_.TipoRegIva == kAcquisti &&
      RegistriIvaStampati(dataPlafond, causaleCorrente_.TipoRegIva,
                          CInt(GetField(rsTesta_, "SezionaleIva"))) &&
      aRun.CheckRegIva) {
    AddMessage(errString_, MessageCode::RegistroPlafondStampato);
  }
}

void KalCOGCheck::TestRigheReverseCharge() {
  if (!GetFlag(rsTesta_, "ReverseCharge")) {
    return;
  }
  rsRIva_->Filter("ReverseCharge = 1");
  if (RecordsetIsEmpty(rsRIva_)) {
    AddMessage(errString_, MessageCode::RigheReverseMancanti);
  }
  rsRIva_->Filter(FilterGroup::None);
}

// The declaration of intent that the entry names, where such declarations apply. Leaves RsRIva at
// its end when it weighs a plafond.
void KalCOGCheck::TestDichiarazioneIntento() {
  bool controlliDichiarazione = false;
  EseguiControlliDichiarazioneIntento(controlliDichiarazione);
  if (!controlliDichiarazione || causaleCorrente_.SegnoIva == -1) {
    return;
  }
  const Variant idDichiarazione = GetField(rsTesta_, "IdDichiarazione");
  QueryBuilder query;
  query.Select("TipoDichiarazione, CodIva, ImportoPlafond, Importo")
      .Select("DataInizioValidita, DataFineValidita")
      .From("STDDichiarazioniIntento")
      .WhereEqual("IdDichiarazione", idDichiarazione)
      .WhereEqual("TipoAnagrafica",
                  causaleCorrente_.TipoRegIva == kAcquisti ? kFornitore : kCliente);
  const RecordsetRef dichiarazione = Open(query);
  if (RecordsetIsEmpty(dichiarazione)) {
    return;
  }
  if (GetField(dichiarazione, "TipoDichiarazione") == 2) {
    TestPlafondDichiarazione(dichiarazione);
  }
  const Variant dataDocumento = GetField(rsTesta_, "DataDocumento");
  if (GetFlag(rsTesta_, "Provvisoria") && dataDocumento == "" && idDichiarazione != 0) {
    AppendLiteral(warnString_, testi::kDataDocumentoVuota);
  } else if (dataDocumento < GetField(dichiarazione, "DataInizioValidita") ||
             dataDocumento > GetField(dichiarazione, "DataFineValidita")) {
    AppendLiteral(warnString_, testi::kDichiarazioneNonValida);
  }
}

// What the declaration has used, without what this entry used when it was last saved, and with
// what it uses now: taxable minus tax on both sides.
void KalCOGCheck::TestPlafondDichiarazione(const RecordsetRef& aDichiarazione) {
  QueryBuilder query;
  query.Select("TotImponibile, TotImposta")
      .From("COGPrimeNoteTeste")
      .WhereEqual("IdPrimaNota", GetField(rsTesta_, "IdPrimaNota"))
      .WhereEqual("Provvisoria", false);
  const RecordsetRef salvata = Open(query);
  Currency totPrecedente;
  if (!RecordsetIsEmpty(salvata)) {
    totPrecedente =
        CCur(GetField(salvata, "TotImponibile")) - CCur(GetField(salvata, "TotImposta"));
  }
  const Variant codIva = GetField(aDichiarazione, "CodIva");
  Currency totCorrente;
  for (rsRIva_->MoveFirst(); !rsRIva_->Eof(); rsRIva_->MoveNext()) {
    if (GetField(rsRIva_, "CodIva") == codIva) {
      totCorrente += CCur(GetField(rsRIva_, "Imponibile")) - CCur(GetField(rsRIva_, "Imposta"));
    }
  }
  if (CCur(GetField(aDichiarazione, "ImportoPlafond")) - totPrecedente + totCorrente >
      CCur(GetField(aDichiarazione, "Importo"))) {
    AppendLiteral(warnString_, testi::kPlafondSuperato);
  }
}

// Purchases number by supplier, everything else by register and section.
void KalCOGCheck::TestNumeroDuplicato(const Salvataggio& aRun) {
  if (!aRun.CheckDuplicatoDoc) {
    return;
  }
  const std::string numeroDocumento = CStr(GetField(rsTesta_, "NumeroDocumento"));
  const Variant dataDocumento = GetField(rsTesta_, "DataDocumento");
  const std::int32_t idPrimaNota = CLng(GetField(rsTesta_, "IdPrimaNota"));
  const bool duplicato =
      causaleCorrente_.TipoRegIva == kAcquisti
          ? CheckDuplicatoNrDocRicevuto(numeroDocumento, dataDocumento,
                                        CLng(GetField(rsTesta_, "IdAnagrafica")), idPrimaNota)
          : CheckDuplicatoNrDocEmesso(causaleCorrente_.TipoRegIva,
                                      CInt(GetField(rsTesta_, "SezionaleIva")), numeroDocumento,
                                      dataDocumento, idPrimaNota);
  if (duplicato) {
    AddMessage(warnDuplicatoDocString_, MessageCode::NumeroDocumentoDuplicato);
  }
}

void KalCOGCheck::TestProtocolloAutofattura(const Salvataggio& aRun) {
  const bool conAutofattura = causaleCorrente_.TipoRegIva == kAcquisti &&
                              ((GetFlag(rsTesta_, "Intra") && !GetFlag(rsTesta_, "NoIntraBis")) ||
                               GetFlag(rsTesta_, "ReverseCharge"));
  if (!conAutofattura) {
    return;
  }
  TestProtocolloIntra(CLng(GetField(rsTesta_, "IdLink")), aRun.ProtocolloCollegato,
                      aRun.SezionaleAutofattura);
  if (aRun.ProtocolloCollegato == -1) {
    TestProtocolloMassimo(
        siblings_.CreateProtocolNumbering()->NextProtocol(kVendite, aRun.SezionaleAutofattura,
                                                          GetField(rsTesta_, "DataRegistrazione")),
        testi::kDellAutofattura);
  }
}

void KalCOGCheck::TestDatiFiscali() {
  bool quadrano = false;
  CheckQuadraturaDatiFiscalitaBL(quadrano);
  if (!quadrano) {
    AddMessage(warnString_, MessageCode::DatiFiscaliNonQuadrano);
  }
}

// Receipts at or above the threshold are reported by customer, unless the entry opts out.
void KalCOGCheck::TestSogliaCorrispettivi() {
  constexpr std::int16_t kClienteOccasionale = 3;
  const Currency soglia = Currency::FromInteger(3600);
  const Date dataSoglia = *Date::FromYmd(2011, 7, 1);
  if (causaleCorrente_.TipoRegIva == kCorrispettivi &&
      !GetFlag(rsTesta_, "NonConsiderareAncheSeSopraLaSoglia") &&
      GetField(rsTesta_, "TipoCliFor") == kClienteOccasionale &&
      GetField(rsTesta_, "DataRegistrazione") >= dataSoglia &&
      GetField(rsTesta_, "TotDocumentoVB") >= soglia) {
    AddMessage(warnString_, MessageCode::CorrispettivoSopraSoglia);
  }
}

void KalCOGCheck::TestSospensioneNegativa() {
  if (GetFlag(rsTesta_, "InSospensione") && GetField(rsTesta_, "TotDocumentoVB") < 0) {
    AddMessage(errString_, MessageCode::SospensioneNegativa);
  }
}

}  // namespace kal
