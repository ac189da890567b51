// The order of the checks is part of what users rely on: it is the order of the messages that
// they read. It stands here and nowhere else. Each check gives its messages itself, or has a step
// beside it that does. Warnings alone also answer False: the host then asks the user.

#include "save/OkAggiorna.h"

#include "checks/Checks.h"
#include "frame/Azienda.h"
#include "frame/modCommonCostanti.h"
#include "frame/modDatabaseUtility.h"
#include "frame/modKalErrorHandling.h"
#include "modify/Modify.h"
#include "save/Passi.h"

namespace kal {
namespace {

std::int16_t TipoRegIva(const Registrazione& r) { return r.CausaleCorrente.TipoRegIva; }

bool RegistroDefinitivo(Registrazione& r) {
  return TipoRegIva(r) != kNessunRegistro && !Provvisoria(r);
}

// Only a new entry in suspension whose installments the host keeps in a table of its own.
constexpr Condizione kNuovaInSospensione = {
    [](Registrazione& r) {
      return GetFlag(r.RsTesta, "InSospensione") && TipoRegIva(r) != kNessunRegistro &&
             r.RsTesta->EditMode() == EditMode::Add && !r.TmpTableScadenze.empty();
    },
    {"solo per le nuove registrazioni IVA in sospensione con la tabella temporanea delle scadenze",
     "only for new VAT entries in suspension with the temporary installments table"}};

constexpr Condizione kGestioneInfragruppo = {
    [](Registrazione& r) { return SettingFlag(r, "GestisciPNInfragruppo"); },
    {"solo se l'azienda gestisce l'infragruppo", "only if the company keeps track of its group"}};

constexpr Condizione kSenzaRegistroOProvvisoria = {
    [](Registrazione& r) { return TipoRegIva(r) == kNessunRegistro || Provvisoria(r); },
    {"solo per le registrazioni provvisorie o senza registro IVA",
     "only for entries that are provisional or without a VAT register"}};

constexpr Condizione kFatturaVendita = {
    [](Registrazione& r) {
      constexpr std::int16_t kTipoFatturaVendita = 4;
      return static_cast<bool>(GetField(r.RsTesta, "TipoDocumento") == kTipoFatturaVendita);
    },
    {"solo per le fatture di vendita (TipoDocumento 4)",
     "only for sales invoices (TipoDocumento 4)"}};

constexpr Condizione kVendita = {[](Registrazione& r) { return TipoRegIva(r) == kVendite; },
                                 {"solo per le causali di vendita", "only for templates of sales"}};

constexpr Condizione kIva = {[](Registrazione& r) { return TipoRegIva(r) != kNessunRegistro; },
                             {"solo per le registrazioni IVA", "only for VAT entries"}};

constexpr Condizione kDefinitiva = {
    [](Registrazione& r) { return !Provvisoria(r); },
    {"solo per le registrazioni definitive", "only for definitive entries"}};

constexpr Condizione kIvaDefinitiva = {
    RegistroDefinitivo,
    {"solo per le registrazioni IVA definitive", "only for definitive VAT entries"}};

constexpr Wording kConAutofattura = {
    "solo per gli acquisti definitivi intracomunitari o in reverse charge",
    "only for definitive purchases, intra-community or in reverse charge"};

constexpr Condizione kAcquistoConAutofattura = {
    [](Registrazione& r) {
      return !Provvisoria(r) && TipoRegIva(r) == kAcquisti &&
             (GetFlag(r.RsTesta, "Intra") || GetFlag(r.RsTesta, "ReverseCharge"));
    },
    kConAutofattura};

constexpr Condizione kAutofatturaNumerata = {
    [](Registrazione& r) {
      return !Provvisoria(r) && TipoRegIva(r) == kAcquisti &&
             ((GetFlag(r.RsTesta, "Intra") && !GetFlag(r.RsTesta, "NoIntraBis")) ||
              GetFlag(r.RsTesta, "ReverseCharge"));
    },
    kConAutofattura};

constexpr Condizione kNumeroRicevutoChiesto = {
    [](Registrazione& r) {
      return RegistroDefinitivo(r) && r.Corsa.CheckDuplicatoDoc && TipoRegIva(r) == kAcquisti;
    },
    {"solo per gli acquisti definitivi, dove chiesto", "only for definitive purchases, if asked"}};

constexpr Condizione kNumeroEmessoChiesto = {
    [](Registrazione& r) {
      return RegistroDefinitivo(r) && r.Corsa.CheckDuplicatoDoc && TipoRegIva(r) != kAcquisti;
    },
    {"solo per vendite e corrispettivi definitivi, dove chiesto",
     "only for definitive sales and receipts, if asked"}};

// clang-format off
constexpr Passo kOrdine[] = {
    {kSempre,                     "",                                     Esegui<LeggiAttivitaSeparate>},
    {kSempre,                     "CreaRecordCausale",                    Esegui<CaricaCausale>},
    {kSempre,                     "",                                     Esegui<TipoDocumento>},
    {kSempre,                     "",                                     Esegui<TipoMovimento>},
    {kSempre,                     "CheckDateScadenza",                    Esegui<SegnalaDateScadenza>},
    {kSempre,                     "OkQuadratura",                         Esegui<OkQuadratura>},
    {kSempre,                     "OkDivisaSuRighe",                      Esegui<OkDivisaSuRighe>},
    {kSempre,                     "OkCastellettoIva",                     Esegui<OkCastellettoIva>},
    {kSempre,                     "QuadraScadenze",                       Esegui<QuadraScadenze>},
    {&kNuovaInSospensione,        "CheckChiusuraContenstualeSospensione", Esegui<CheckChiusuraContenstualeSospensione>},
    {kSempre,                     "CheckIncassiInSospensione",            Esegui<CheckIncassiInSospensione>},
    {kSempre,                     "CheckPlafond",                         Esegui<CheckPlafond>},
    {kSempre,                     "CheckCodIva",                          Esegui<CheckCodIva>},
    {kSempre,                     "CheckSegnoRigheIva",                   Esegui<CheckSegnoRigheIva>},
    {kSempre,                     "CheckCompilazioneParcella",            Esegui<CheckCompilazioneParcella>},
    {kSempre,                     "CheckCongruenzaAliquote",              Esegui<CheckCongruenzaAliquote>},
    {&kGestioneInfragruppo,       "CheckInfragruppo",                     Esegui<CheckInfragruppo>},
    {kSempre,                     "",                                     Esegui<NumeroRighe>},
    {&kSenzaRegistroOProvvisoria, "EsisteSezionale",                      Esegui<EsisteSezionale>},
    {&kIvaDefinitiva,             "",                                     Esegui<NumeroDocumento>},
    {kSempre,                     "",                                     Esegui<ProtocolloMancante>},
    {kSempre,                     "",                                     Esegui<ProtocolloTroppoGrande>},
    {&kFatturaVendita,            "CheckBanca",                           Esegui<SegnalaBanca>},
    {&kVendita,                   "CheckEffettiSplitPayment",             Esegui<SegnalaEffettiSplitPayment>},
    {&kVendita,                   "",                                     Esegui<SezionaleSplitPayment>},
    {kSempre,                     "ControllaCongruenzaDate",              Esegui<ControllaCongruenzaDate>},
    {kSempre,                     "",                                     Esegui<LeggiDataIvaControllo>},
    {&kDefinitiva,                "ContabilitaChiusa",                    Esegui<SegnalaContabilitaChiusa>},
    {&kDefinitiva,                "LibroGiornaleStampato",                Esegui<SegnalaLibroGiornale>},
    {&kDefinitiva,                "RegistriIvaStampati",                  Esegui<RegistroStampato>},
    {&kIvaDefinitiva,             "ParametriIvaOk",                       Esegui<SegnalaParametriIva>},
    {&kDefinitiva,                "",                                     Esegui<PeriodoBloccato>},
    {&kAcquistoConAutofattura,    "SezionaleIvaAutofattura",              Esegui<Autofattura>},
    {&kDefinitiva,                "",                                     Esegui<RegistroPlafondStampato>},
    {&kDefinitiva,                "CheckRateiRisconti",                   Esegui<CheckRateiRisconti>},
    {kSempre,                     "",                                     Esegui<RigheReverseCharge>},
    {kSempre,                     "TestEsercizioCompetenza",              Esegui<TestEsercizioCompetenza>},
    {&kIva,                       "EseguiControlliDichiarazioneIntento",  Esegui<DichiarazioneIntento>},
    {&kIvaDefinitiva,             "",                                     Esegui<SezionaleIva>},
    {&kNumeroRicevutoChiesto,     "CheckDuplicatoNrDocRicevuto",          Esegui<SegnalaNumeroRicevuto>},
    {&kNumeroEmessoChiesto,       "CheckDuplicatoNrDocEmesso",            Esegui<SegnalaNumeroEmesso>},
    {&kIvaDefinitiva,             "TestProtocollo",                       Esegui<TestProtocollo>},
    {&kAutofatturaNumerata,       "TestProtocolloIntra",                  Esegui<TestProtocolloIntra>},
    {&kAutofatturaNumerata,       "",                                     Esegui<ProtocolloAutofattura>},
    {&kIvaDefinitiva,             "CheckQuadraturaDatiFiscalitaBL",       Esegui<SegnalaDatiFiscali>},
    {&kIvaDefinitiva,             "",                                     Esegui<SogliaCorrispettivi>},
    {&kIvaDefinitiva,             "",                                     Esegui<SospensioneNegativa>},
};
// clang-format on

}  // namespace

std::span<const Passo> OrdineAggiorna() { return kOrdine; }

bool OkAggiorna(Registrazione& aRegistrazione, bool aCheckRegIva, bool aCheckDuplicatoDoc) {
  return Trap(aRegistrazione, "KalCOGCheck.OkAggiorna", [&] {
    aRegistrazione.Rilievi.Clear();
    aRegistrazione.Corsa = {};
    aRegistrazione.Corsa.CheckRegIva = aCheckRegIva;
    aRegistrazione.Corsa.CheckDuplicatoDoc = aCheckDuplicatoDoc;
    return Percorri(aRegistrazione, kOrdine) == Seguito::Avanti && aRegistrazione.Rilievi.IsEmpty();
  });
}

}  // namespace kal
