// OkModifica: may a saved entry be modified?
//
// It looks at what hangs on the entry in the company's books. An entry that generated another one
// is refused at once. A provisional entry is never reported as freely modifiable, and any warning
// answers False: the host then asks the user. OkCancella asks the same of a deletion.

#include "frame/KalCOGCheck.h"
#include "frame/modCommonCostanti.h"
#include "frame/modDatabaseUtility.h"
#include "frame/modKalErrorHandling.h"

namespace kal {

bool KalCOGCheck::OkModifica() {
  // The tag has always been written in English.
  return Trap({"KalCOGCheck.OkModify", "OkModifica"}, [&] {
    errString_.clear();
    warnString_.clear();
    if (GeneratoUnaltraRegistrazione()) {
      return false;
    }
    TestFatturaElettronica();
    TestScadenzeChiuse();
    TestDistinte();
    if (GetFlag(rsTesta_, "Provvisoria")) {
      return false;
    }
    TestLibriStampati();
    TestPeriodoIva();
    if (RRContabilizzati()) {
      AddMessage(errString_, MessageCode::RateiContabilizzati);
    }
    return errString_.empty() && warnString_.empty();
  });
}

bool KalCOGCheck::OkCancella() {
  return Trap({"KalCOGCheck.OkDelete", "OkCancella"}, [&] { return OkModifica(); });
}

// An integration of this entry points back to it and would be left behind.
bool KalCOGCheck::GeneratoUnaltraRegistrazione() {
  QueryBuilder query;
  query.Select("IdPrimaNota, Intra, ReverseCharge")
      .From("COGPrimeNoteTeste")
      .WhereEqual("IdLink", GetField(rsTesta_, "IdPrimaNota"));
  const RecordsetRef generata = Open(query);
  if (RecordsetIsEmpty(generata)) {
    return false;
  }
  if (GetFlag(generata, "Intra")) {
    AddMessage(errString_, MessageCode::EsisteIntegrazioneIntra);
  } else if (GetFlag(generata, "ReverseCharge")) {
    AddMessage(errString_, MessageCode::EsisteIntegrazioneReverse);
  } else {
    AppendLiteral(errString_, testi::kGenerataDaSplitPayment);
  }
  return true;
}

// A purchase whose electronic invoice went to the exchange system blocks or warns, as the company
// chose; in the states 5, 6 and 7 it only warns.
void KalCOGCheck::TestFatturaElettronica() {
  if (!(GetField(rsTesta_, "TipoRegIva") == kAcquisti)) {
    return;
  }
  const Variant stato = GetField(rsTesta_, "StatoDocPA");
  const bool trasmesso = stato != 0 && stato != 1 && stato != 8 && stato != 2 && stato != 9;
  if (trasmesso) {
    const std::string testo = TranslateText(siblings_, testi::kTrasmessoSdi.testo);
    const bool soloAvviso = stato == 6 || stato == 7 || stato == 5;
    const bool blocca = !soloAvviso && Setting("BloccoInviatoSDI") == true;
    AppendLiteral(blocca ? errString_ : warnString_, testi::kTrasmessoSdi, testo);
  } else if (stato == 1) {
    AppendLiteral(warnString_, testi::kXmlGenerato,
                  TranslateText(siblings_, testi::kXmlGenerato.testo));
  }
}

// Closed installments block a split-payment document where the company transfers its VAT, and
// warn otherwise. Purchases and sales have a setting each.
void KalCOGCheck::TestScadenzeChiuse() {
  if (!ScadenzeDocChiuse()) {
    return;
  }
  const Variant tipoRegIva = GetField(rsTesta_, "TipoRegIva");
  const MessageCode codice = GetFlag(rsTesta_, "InSospensione")
                                 ? MessageCode::ScadenzeChiuseInSospensione
                                 : MessageCode::ScadenzeChiuse;
  if (tipoRegIva == kVendite || tipoRegIva == kAcquisti) {
    const bool giroconto = SettingFlag(tipoRegIva == kVendite ? "GirocontoFatturaSplitPayment"
                                                              : "GirocontoFatturaSplitPaymentPAS");
    const bool splitPayment = IsDocumentoSplitPayment();
    AddMessage(giroconto && splitPayment ? errString_ : warnString_, codice);
  } else if (tipoRegIva == kCorrispettivi) {
    AddMessage(warnString_, codice);
  }
}

void KalCOGCheck::TestDistinte() {
  const bool inDistinta = ScadenzeInDistinta();
  const bool inDistintaIncPag = ScadenzeInDistintaIncPag();
  if (inDistinta || inDistintaIncPag) {
    AddMessage(warnString_, MessageCode::ScadenzeInDistintaPresenti);
  }
}

void KalCOGCheck::TestLibriStampati() {
  if (ContabilitaChiusa()) {
    AddMessage(errString_, MessageCode::ContabilitaEsercizioChiusa);
  }
  if (LibroGiornaleStampato(GetField(rsTesta_, "DataRegistrazione"))) {
    AddMessage(errString_, MessageCode::LibroGiornaleGiaStampato);
  }
  if (RegistriIvaStampati(GetField(rsTesta_, "DataRegistrazione"),
                          CInt(GetField(rsTesta_, "TipoRegIva")),
                          CInt(GetField(rsTesta_, "SezionaleIva")))) {
    AddMessage(errString_, MessageCode::RegistroIvaGiaStampato);
  }
}

// An entry without a register of its own may still refer to a VAT date.
void KalCOGCheck::TestPeriodoIva() {
  if (GetField(rsTesta_, "TipoRegIva") == kNessunRegistro) {
    QueryBuilder query;
    query.Select("*")
        .From("COGPrimeNoteRiferimenti")
        .WhereEqual("IdPrimaNota", GetField(rsTesta_, "IdPrimaNota"))
        .WhereLiteral("DataIva Is Not Null");
    const RecordsetRef riferimenti = Open(query);
    if (!RecordsetIsEmpty(riferimenti)) {
      CheckPeriodoLiquidato(GetField(riferimenti, "DataIva"), errString_);
    }
  }
  if (siblings_.CreatePeriodLock()->IsLocked(GetField(rsTesta_, "DataIva"))) {
    AddMessage(warnString_, MessageCode::PeriodoBloccato, {"Modificando"});
  }
}

}  // namespace kal
