// OkCastellettoIva: each VAT line carries a code, and tax without a taxable amount only as a pure
// tax line. It leaves RsRIva at its end.
//
// CheckCongruenzaAliquote: the VAT codes suit the entry: its fiscal data, its declaration of
// intent, and whether it is intra-community. The reserved code of ventilated receipts is passed
// over in both comparisons, and so is a Null code; a Null code is an error only where fiscal data
// ask about it. It leaves RsRIva on its first line.

#include "checks/Checks.h"
#include "frame/Azienda.h"
#include "frame/modCommonCostanti.h"
#include "frame/modDatabaseUtility.h"
#include "frame/modKalErrorHandling.h"

namespace kal {
namespace {

constexpr Selection kDichiarazione = Selection()
                                         .Option(kOpzioneLettura)
                                         .Select("CodIva")
                                         .From("STDDichiarazioniIntento")
                                         .WhereEqual("IdDichiarazione");

void AliquoteFiscalitaBL(Registrazione& aRegistrazione, VatCodes& aCodiciIva) {
  const HostSet& rsRIva = aRegistrazione.RsRIva;
  if (!GetFlag(aRegistrazione.RsTesta, "FiscalitaBL")) {
    return;
  }
  Campo codIva(rsRIva, "CodIva");
  for (rsRIva->MoveFirst(); !rsRIva->Eof(); rsRIva->MoveNext()) {
    if (!aCodiciIva.AdmitsFiscalData(CStr(codIva.Value()))) {
      AddMessage(aRegistrazione, ErrString, MessageCode::CodIvaNonFiscalitaBL, {}, rsRIva.Riga());
    }
  }
}

// Every line carries the declaration's code or that of stamp duty.
void AliquoteDichiarazione(Registrazione& aRegistrazione) {
  const HostSet& rsRIva = aRegistrazione.RsRIva;
  const Variant codIvaBolli = SettingText(aRegistrazione, "CodIvaBolli");
  const Variant idDichiarazione = GetField(aRegistrazione.RsTesta, "IdDichiarazione");
  if (idDichiarazione == 0) {
    return;
  }
  const RecordsetRef dichiarazione = Open<kDichiarazione>(aRegistrazione, idDichiarazione);
  if (RecordsetIsEmpty(dichiarazione)) {
    return;
  }
  const Variant codIvaDichiarazione = GetField(dichiarazione, "CodIva");
  Campo campoCodIva(rsRIva, "CodIva");
  for (rsRIva->MoveFirst(); !rsRIva->Eof(); rsRIva->MoveNext()) {
    const Variant codIva = campoCodIva.Value();
    if (codIva != kCodIvaVentilazione && codIva != codIvaDichiarazione && codIva != codIvaBolli) {
      AppendLiteral(aRegistrazione, WarnString, testi::kAliquoteDiverse, rsRIva.Riga());
    }
  }
}

// Intra-community codes belong on intra-community entries, and there only with their like.
void AliquoteIntra(Registrazione& aRegistrazione, VatCodes& aCodiciIva) {
  constexpr std::int32_t kCodiceIntra = 1;
  const HostSet& rsRIva = aRegistrazione.RsRIva;
  LeggiDichiarazioneIntento(aRegistrazione);
  const bool nonIntra = !GetFlag(aRegistrazione.RsTesta, "Intra");
  bool trovataIntra = false;
  bool trovataNonIntra = false;
  Campo campoCodIva(rsRIva, "CodIva");
  for (rsRIva->MoveFirst(); !rsRIva->Eof(); rsRIva->MoveNext()) {
    const Variant codIva = campoCodIva.Value();
    if (!(codIva != kCodIvaVentilazione)) {
      continue;
    }
    const bool codiceIntra = aCodiciIva.IntraClassification(CStr(codIva)) == kCodiceIntra;
    if (nonIntra && codiceIntra) {
      AddMessage(aRegistrazione, WarnString, MessageCode::AliquoteIntraMiste, {}, rsRIva.Riga());
    }
    trovataIntra = trovataIntra || codiceIntra;
    trovataNonIntra = trovataNonIntra || !codiceIntra;
  }
  if (!nonIntra && trovataIntra && trovataNonIntra) {
    AddMessage(aRegistrazione, WarnString, MessageCode::AliquoteIntraMiste);
  }
}

}  // namespace

void OkCastellettoIva(Registrazione& aRegistrazione) {
  Trap(aRegistrazione, "KalCOGCheck.OkCastellettoIva", [&] {
    const HostSet& rsRIva = aRegistrazione.RsRIva;
    if (aRegistrazione.CausaleCorrente.TipoRegIva == kNessunRegistro || rsRIva.IsNothing() ||
        rsRIva->RecordCount() == 0) {
      return;
    }
    Campo codIva(rsRIva, "CodIva");
    Campo imponibileVB(rsRIva, "ImponibileVB");
    Campo impostaVB(rsRIva, "ImpostaVB");
    Campo totaleVB(rsRIva, "TotaleVB");
    for (rsRIva->MoveFirst(); !rsRIva->Eof(); rsRIva->MoveNext()) {
      if (codIva.Value() == "") {
        AddMessage(aRegistrazione, ErrString, MessageCode::CodIvaMancante,
                   {GetField(rsRIva, "NumeroRiga")}, rsRIva.Riga());
      }
      const Variant imponibile = imponibileVB.Value();
      const Variant imposta = impostaVB.Value();
      if (imponibile == 0 && imposta != 0) {
        if (imposta == totaleVB.Value()) {
          AddMessage(aRegistrazione, WarnString, MessageCode::RigaSoloImposta,
                     {GetField(rsRIva, "NumeroRiga")}, rsRIva.Riga());
        } else {
          AddMessage(aRegistrazione, ErrString, MessageCode::ImpostaSenzaImponibile,
                     {GetField(rsRIva, "NumeroRiga")}, rsRIva.Riga());
        }
      }
    }
  });
}

void CheckCongruenzaAliquote(Registrazione& aRegistrazione) {
  Trap(aRegistrazione, "KalCOGCheck.CheckCongruenzaAliquote", [&] {
    if (RecordsetIsEmpty(aRegistrazione.RsRIva)) {
      return;
    }
    VatCodes codiciIva(aRegistrazione.Siblings);
    AliquoteFiscalitaBL(aRegistrazione, codiciIva);
    if (EseguiControlliDichiarazioneIntento(aRegistrazione)) {
      AliquoteDichiarazione(aRegistrazione);
    } else {
      AliquoteIntra(aRegistrazione, codiciIva);
    }
    aRegistrazione.RsRIva->MoveFirst();
  });
}

}  // namespace kal
