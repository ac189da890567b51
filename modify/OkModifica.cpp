// OkModifica: may a saved entry be modified?
//
// It looks at what hangs on the entry in the company's books. An entry that generated another one
// is refused at once. A provisional entry is never reported as freely modifiable, and any warning
// answers False: the host then asks the user. OkCancella asks the same of a deletion.

#include "checks/Checks.h"
#include "frame/Azienda.h"
#include "frame/Ordine.h"
#include "frame/modCommonCostanti.h"
#include "frame/modDatabaseUtility.h"
#include "frame/modKalErrorHandling.h"
#include "modify/Modify.h"

namespace kal {
namespace {

constexpr Selection kGenerata = Selection()
                                    .Select("IdPrimaNota, Intra, ReverseCharge")
                                    .From("COGPrimeNoteTeste")
                                    .WhereEqual("IdLink");
constexpr Selection kRiferimenti = Selection()
                                       .Select("*")
                                       .From("COGPrimeNoteRiferimenti")
                                       .WhereEqual("IdPrimaNota")
                                       .WhereLiteral("DataIva Is Not Null");

// An integration of this entry points back to it and would be left behind.
Seguito RegistrazioneGenerata(Registrazione& aRegistrazione) {
  const RecordsetRef generata =
      Open<kGenerata>(aRegistrazione, GetField(aRegistrazione.RsTesta, "IdPrimaNota"));
  if (RecordsetIsEmpty(generata)) {
    return Seguito::Avanti;
  }
  if (GetFlag(generata, "Intra")) {
    AddMessage(aRegistrazione, ErrString, MessageCode::EsisteIntegrazioneIntra);
  } else if (GetFlag(generata, "ReverseCharge")) {
    AddMessage(aRegistrazione, ErrString, MessageCode::EsisteIntegrazioneReverse);
  } else {
    AppendLiteral(aRegistrazione, ErrString, testi::kGenerataDaSplitPayment);
  }
  return Seguito::Fine;
}

// A purchase whose electronic invoice went to the exchange system blocks or warns, as the company
// chose; in the states 5, 6 and 7 it only warns.
void FatturaElettronica(Registrazione& aRegistrazione) {
  const RecordsetRef& rsTesta = aRegistrazione.RsTesta;
  if (!(GetField(rsTesta, "TipoRegIva") == kAcquisti)) {
    return;
  }
  const Variant stato = GetField(rsTesta, "StatoDocPA");
  const bool trasmesso = stato != 0 && stato != 1 && stato != 8 && stato != 2 && stato != 9;
  const auto tradotto = [&](const testi::Letterale& letterale) {
    return TranslateText(aRegistrazione.Siblings, letterale.testo);
  };
  if (trasmesso) {
    const std::string testo = tradotto(testi::kTrasmessoSdi);
    const bool soloAvviso = stato == 6 || stato == 7 || stato == 5;
    const bool blocca = !soloAvviso && Setting(aRegistrazione, "BloccoInviatoSDI") == true;
    AppendLiteral(aRegistrazione, blocca ? ErrString : WarnString, testi::kTrasmessoSdi, testo);
  } else if (stato == 1) {
    AppendLiteral(aRegistrazione, WarnString, testi::kXmlGenerato, tradotto(testi::kXmlGenerato));
  }
}

void LeggiScadenzeChiuse(Registrazione& aRegistrazione) {
  aRegistrazione.Corsa.ScadenzeChiuse = ScadenzeDocChiuse(aRegistrazione);
}

MessageCode ScadenzeChiuseOSospese(const Registrazione& aRegistrazione) {
  return GetFlag(aRegistrazione.RsTesta, "InSospensione") ? MessageCode::ScadenzeChiuseInSospensione
                                                          : MessageCode::ScadenzeChiuse;
}

// They block a split-payment document where the company transfers its VAT, and warn otherwise.
// Purchases and sales have a setting each.
void ScadenzeChiuseConRegistro(Registrazione& aRegistrazione) {
  const bool vendita{GetField(aRegistrazione.RsTesta, "TipoRegIva") == kVendite};
  const bool giroconto = SettingFlag(
      aRegistrazione, vendita ? "GirocontoFatturaSplitPayment" : "GirocontoFatturaSplitPaymentPAS");
  const bool splitPayment = IsDocumentoSplitPayment(aRegistrazione);
  AddMessage(aRegistrazione, giroconto && splitPayment ? ErrString : WarnString,
             ScadenzeChiuseOSospese(aRegistrazione));
}

void ScadenzeChiuseCorrispettivi(Registrazione& aRegistrazione) {
  AddMessage(aRegistrazione, WarnString, ScadenzeChiuseOSospese(aRegistrazione));
}

void LeggiInDistinta(Registrazione& aRegistrazione) {
  aRegistrazione.Corsa.InDistinta = ScadenzeInDistinta(aRegistrazione);
}

void SegnalaInDistinta(Registrazione& aRegistrazione) {
  const bool inDistintaIncPag = ScadenzeInDistintaIncPag(aRegistrazione);
  if (aRegistrazione.Corsa.InDistinta || inDistintaIncPag) {
    AddMessage(aRegistrazione, WarnString, MessageCode::ScadenzeInDistintaPresenti);
  }
}

void RegistriStampati(Registrazione& aRegistrazione) {
  const RecordsetRef& rsTesta = aRegistrazione.RsTesta;
  const Variant dataRegistrazione = GetField(rsTesta, "DataRegistrazione");
  const std::int16_t tipoRegIva = CInt(GetField(rsTesta, "TipoRegIva"));
  if (RegistriIvaStampati(aRegistrazione, dataRegistrazione, tipoRegIva,
                          CInt(GetField(rsTesta, "SezionaleIva")))) {
    AddMessage(aRegistrazione, ErrString, MessageCode::RegistroIvaGiaStampato);
  }
}

void PeriodoLiquidato(Registrazione& aRegistrazione) {
  CheckPeriodoLiquidato(aRegistrazione, aRegistrazione.Corsa.DataIvaRiferita, ErrString);
}

void PeriodoBloccato(Registrazione& aRegistrazione) {
  if (PeriodLock(aRegistrazione.Siblings).IsLocked(GetField(aRegistrazione.RsTesta, "DataIva"))) {
    AddMessage(aRegistrazione, WarnString, MessageCode::PeriodoBloccato, {"Modificando"});
  }
}

void SegnalaRatei(Registrazione& aRegistrazione) {
  if (RRContabilizzati(aRegistrazione)) {
    AddMessage(aRegistrazione, ErrString, MessageCode::RateiContabilizzati);
  }
}

constexpr Condizione kConScadenzeChiuse = {
    [](Registrazione& r) {
      if (!r.Corsa.ScadenzeChiuse) {
        return false;
      }
      const Variant tipoRegIva = GetField(r.RsTesta, "TipoRegIva");
      return tipoRegIva == kVendite || tipoRegIva == kAcquisti;
    },
    {"solo per acquisti e vendite con rate chiuse",
     "only for purchases and sales with closed installments"}};

constexpr Condizione kCorrispettiviConScadenzeChiuse = {
    [](Registrazione& r) {
      return r.Corsa.ScadenzeChiuse && GetField(r.RsTesta, "TipoRegIva") == kCorrispettivi;
    },
    {"solo per corrispettivi con rate chiuse", "only for receipts with closed installments"}};

constexpr Condizione kDefinitiva = {
    [](Registrazione& r) { return !Provvisoria(r); },
    {"solo per le registrazioni definitive", "only for definitive entries"}};

// An entry without a register of its own may still refer to a VAT date.
constexpr Condizione kConDataIvaRiferita = {
    [](Registrazione& r) {
      if (Provvisoria(r) || !(GetField(r.RsTesta, "TipoRegIva") == kNessunRegistro)) {
        return false;
      }
      const RecordsetRef riferimenti = Open<kRiferimenti>(r, GetField(r.RsTesta, "IdPrimaNota"));
      if (RecordsetIsEmpty(riferimenti)) {
        return false;
      }
      r.Corsa.DataIvaRiferita = GetField(riferimenti, "DataIva");
      return true;
    },
    {"solo senza registro IVA, se la registrazione si riferisce a una data IVA",
     "only without a VAT register, if the entry refers to a VAT date"}};

// clang-format off
constexpr Passo kOrdine[] = {
    {kSempre,                          "",                         Esegui<RegistrazioneGenerata>},
    {kSempre,                          "",                         Esegui<FatturaElettronica>},
    {kSempre,                          "ScadenzeDocChiuse",        Esegui<LeggiScadenzeChiuse>},
    {&kConScadenzeChiuse,              "IsDocumentoSplitPayment",  Esegui<ScadenzeChiuseConRegistro>},
    {&kCorrispettiviConScadenzeChiuse, "",                         Esegui<ScadenzeChiuseCorrispettivi>},
    {kSempre,                          "ScadenzeInDistinta",       Esegui<LeggiInDistinta>},
    {kSempre,                          "ScadenzeInDistintaIncPag", Esegui<SegnalaInDistinta>},
    {&kDefinitiva,                     "ContabilitaChiusa",        Esegui<SegnalaContabilitaChiusa>},
    {&kDefinitiva,                     "LibroGiornaleStampato",    Esegui<SegnalaLibroGiornale>},
    {&kDefinitiva,                     "RegistriIvaStampati",      Esegui<RegistriStampati>},
    {&kConDataIvaRiferita,             "CheckPeriodoLiquidato",    Esegui<PeriodoLiquidato>},
    {&kDefinitiva,                     "",                         Esegui<PeriodoBloccato>},
    {&kDefinitiva,                     "RRContabilizzati",         Esegui<SegnalaRatei>},
};
// clang-format on

}  // namespace

std::span<const Passo> OrdineModifica() { return kOrdine; }

bool OkModifica(Registrazione& aRegistrazione) {
  // The tag has always been written in English.
  return Trap(aRegistrazione, {"KalCOGCheck.OkModify", "OkModifica"}, [&] {
    Findings& rilievi = aRegistrazione.Rilievi;
    rilievi.Clear(ErrString);
    rilievi.Clear(WarnString);
    aRegistrazione.Corsa = {};
    return Percorri(aRegistrazione, kOrdine) == Seguito::Avanti && !Provvisoria(aRegistrazione) &&
           rilievi.IsEmpty(ErrString) && rilievi.IsEmpty(WarnString);
  });
}

bool OkCancella(Registrazione& aRegistrazione) {
  return Trap(aRegistrazione, {"KalCOGCheck.OkDelete", "OkCancella"},
              [&] { return OkModifica(aRegistrazione); });
}

}  // namespace kal
