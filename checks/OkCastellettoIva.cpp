// OkCastellettoIva: each VAT line carries a code, and tax without a taxable amount only as a pure
// tax line. It leaves RsRIva at its end.
//
// CheckCongruenzaAliquote: the VAT codes suit the entry: its fiscal data, its declaration of
// intent, and whether it is intra-community. The reserved code of ventilated receipts is passed
// over in both comparisons, and so is a Null code; a Null code is an error only where fiscal data
// ask about it. It leaves RsRIva on its first line.

#include "frame/KalCOGCheck.h"
#include "frame/modCommonCostanti.h"
#include "frame/modDatabaseUtility.h"
#include "frame/modKalErrorHandling.h"

namespace kal {

void KalCOGCheck::OkCastellettoIva() {
  Trap("KalCOGCheck.OkCastellettoIva", [&] {
    if (causaleCorrente_.TipoRegIva == kNessunRegistro || rsRIva_.IsNothing() ||
        rsRIva_->RecordCount() == 0) {
      return;
    }
    const Field& codIva = rsRIva_->Fields("CodIva");
    const Field& imponibileVB = rsRIva_->Fields("ImponibileVB");
    const Field& impostaVB = rsRIva_->Fields("ImpostaVB");
    const Field& totaleVB = rsRIva_->Fields("TotaleVB");
    for (rsRIva_->MoveFirst(); !rsRIva_->Eof(); rsRIva_->MoveNext()) {
      if (codIva.Value() == "") {
        AddMessage(errString_, MessageCode::CodIvaMancante, {GetField(rsRIva_, "NumeroRiga")});
      }
      const Variant imposta = impostaVB.Value();
      if (imponibileVB.Value() == 0 && imposta != 0) {
        if (imposta == totaleVB.Value()) {
          AddMessage(warnString_, MessageCode::RigaSoloImposta, {GetField(rsRIva_, "NumeroRiga")});
        } else {
          AddMessage(errString_, MessageCode::ImpostaSenzaImponibile,
                     {GetField(rsRIva_, "NumeroRiga")});
        }
      }
    }
  });
}

void KalCOGCheck::CheckCongruenzaAliquote() {
  Trap("KalCOGCheck.CheckCongruenzaAliquote", [&] {
    if (RecordsetIsEmpty(rsRIva_)) {
      return;
    }
    const auto codiciIva = siblings_.CreateVatCodes();
    TestAliquoteFiscalitaBL(*codiciIva);
    bool controlliDichiarazione = false;
    EseguiControlliDichiarazioneIntento(controlliDichiarazione);
    if (controlliDichiarazione) {
      TestAliquoteDichiarazione();
    } else {
      TestAliquoteIntra(*codiciIva);
    }
    rsRIva_->MoveFirst();
  });
}

void KalCOGCheck::TestAliquoteFiscalitaBL(VatCodes& aCodiciIva) {
  if (!GetFlag(rsTesta_, "FiscalitaBL")) {
    return;
  }
  const Field& codIva = rsRIva_->Fields("CodIva");
  for (rsRIva_->MoveFirst(); !rsRIva_->Eof(); rsRIva_->MoveNext()) {
    if (!aCodiciIva.AdmitsFiscalData(CStr(codIva.Value()))) {
      AddMessage(errString_, MessageCode::CodIvaNonFiscalitaBL);
    }
  }
}

// Every line carries the declaration's code or that of stamp duty.
void KalCOGCheck::TestAliquoteDichiarazione() {
  const Variant codIvaBolli = SettingText("CodIvaBolli");
  const Variant idDichiarazione = GetField(rsTesta_, "IdDichiarazione");
  if (idDichiarazione == 0) {
    return;
  }
  QueryBuilder query;
  query.Option(kOpzioneLettura)
      .Select("CodIva")
      .From("STDDichiarazioniIntento")
      .WhereEqual("IdDichiarazione", idDichiarazione);
  const RecordsetRef dichiarazione = Open(query);
  if (RecordsetIsEmpty(dichiarazione)) {
    return;
  }
  const Variant codIvaDichiarazione = GetField(dichiarazione, "CodIva");
  const Field& campoCodIva = rsRIva_->Fields("CodIva");
  for (rsRIva_->MoveFirst(); !rsRIva_->Eof(); rsRIva_->MoveNext()) {
    const Variant codIva = campoCodIva.Value();
    if (codIva != kCodIvaVentilazione && codIva != codIvaDichiarazione && codIva != codIvaBolli) {
      AppendLiteral(warnString_, testi::kAliquoteDiverse);
    }
  }
}

// Intra-community codes belong on intra-community entries, and there only with their like.
void KalCOGCheck::TestAliquoteIntra(VatCodes& aCodiciIva) {
  constexpr std::int32_t kCodiceIntra = 1;
  LeggiDichiarazioneIntento();
  const bool nonIntra = !GetFlag(rsTesta_, "Intra");
  bool trovataIntra = false;
  bool trovataNonIntra = false;
  const Field& campoCodIva = rsRIva_->Fields("CodIva");
  for (rsRIva_->MoveFirst(); !rsRIva_->Eof(); rsRIva_->MoveNext()) {
    const Variant codIva = campoCodIva.Value();
    if (!(codIva != kCodIvaVentilazione)) {
      continue;
    }
    const bool codiceIntra = aCodiciIva.IntraClassification(CStr(codIva)) == kCodiceIntra;
    if (nonIntra && codiceIntra) {
      AddMessage(warnString_, MessageCode::AliquoteIntraMiste);
    }
    trovataIntra = trovataIntra || codiceIntra;
    trovataNonIntra = trovataNonIntra || !codiceIntra;
  }
  if (!nonIntra && trovataIntra && trovataNonIntra) {
    AddMessage(warnString_, MessageCode::AliquoteIntraMiste);
  }
}

// Declarations apply unless a purchase or sale has no operation, or receipts are ventilated or
// from the till.
void KalCOGCheck::EseguiControlliDichiarazioneIntento(bool& aEsegui) {
  Trap("KalCOGCheck.EseguiControlliDichiarazioneIntento", aEsegui, [&] {
    switch (causaleCorrente_.TipoRegIva) {
      case kAcquisti:
      case kVendite:
        aEsegui = causaleCorrente_.Operazione != 0;
        break;
      case kCorrispettivi:
        aEsegui = !causaleCorrente_.TipoVentilazione && !causaleCorrente_.CassaCorrispettivi;
        break;
      default:
        aEsegui = true;
    }
  });
}

// The declaration in force for the entry's customer or supplier. Nothing compares it with the
// lines yet; that it can be read is all that is asked.
void KalCOGCheck::LeggiDichiarazioneIntento() {
  Trap("KalCOGCheck.LeggiDichiarazioneIntento", [&] {
    const Variant dataDocumento = GetField(rsTesta_, "DataDocumento");
    QueryBuilder query;
    query.Option(kOpzioneLettura)
        .Select("CodIva")
        .From("STDDichiarazioniIntento")
        .WhereEqual("IdAnagrafica", GetField(rsTesta_, "IdAnagrafica"))
        .WhereEqual("TipoAnagrafica", GetField(rsTesta_, "TipoCliFor"))
        .WhereEqual("IsNull(Annullata,0)", 0)
        .Where("DataInizioValidita", CompareWith::LessOrEqual, dataDocumento)
        .Where("DataFineValidita", CompareWith::GreaterOrEqual, dataDocumento);
    (void)Open(query);
  });
}

}  // namespace kal
