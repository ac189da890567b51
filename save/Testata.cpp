// What the save check asks of the header, its template and the number of its lines.

#include "frame/Azienda.h"
#include "frame/Ordine.h"
#include "frame/modCommonCostanti.h"
#include "frame/modDatabaseUtility.h"
#include "frame/modKalErrorHandling.h"
#include "save/Passi.h"
#include "siblings/Components.h"

namespace kal {

void LeggiAttivitaSeparate(Registrazione& aRegistrazione) {
  aRegistrazione.Corsa.AttivitaSeparateIva = SettingFlag(aRegistrazione, "AttivitaSeparateIva");
}

// Document types that only make sense in a VAT register.
void TipoDocumento(Registrazione& aRegistrazione) {
  const Variant tipo = GetField(aRegistrazione.RsTesta, "TipoDocumento");
  const bool vuoleRegistro = tipo == 4 || tipo == 5 || tipo == 6 || tipo == 13 || tipo == 14;
  if (vuoleRegistro && aRegistrazione.CausaleCorrente.TipoRegIva == kNessunRegistro) {
    AddMessage(aRegistrazione, WarnString, MessageCode::DocumentoSenzaRegistroIva);
  }
}

// The kind of entry by the fiscal year, which the template's IdTipoMovimento tells.
void TipoMovimento(Registrazione& aRegistrazione) {
  const Variant idTipoMovimento = GetField(aRegistrazione.RsCausale, "IdTipoMovimento");
  aRegistrazione.Corsa.TipoMovimentoEsercizio = idTipoMovimento == 2   ? kMovimentoApertura
                                                : idTipoMovimento == 1 ? kMovimentoChiusura
                                                                       : kMovimentoAltro;
}

// A VAT entry has no lines when it has neither account lines nor VAT lines. Record sets that were
// not handed over say nothing.
void NumeroRighe(Registrazione& aRegistrazione) {
  const RecordsetRef& rsRCont = aRegistrazione.RsRCont;
  const RecordsetRef& rsRIva = aRegistrazione.RsRIva;
  const bool conRegistroIva = aRegistrazione.CausaleCorrente.TipoRegIva != kNessunRegistro;
  if (rsRCont.IsNothing() || (conRegistroIva && rsRIva.IsNothing())) {
    return;
  }
  const std::int32_t righe = rsRCont->RecordCount();
  if (righe == 0 && (!conRegistroIva || rsRIva->RecordCount() == 0)) {
    AddMessage(aRegistrazione, WarnString, MessageCode::NessunaRiga);
  }
  if (righe == 1) {
    AddMessage(aRegistrazione, WarnString, MessageCode::UnaSolaRiga);
  }
}

void NumeroDocumento(Registrazione& aRegistrazione) {
  if (GetField(aRegistrazione.RsTesta, "NumeroDocumento") == "") {
    AddMessage(aRegistrazione, ErrString, MessageCode::NumeroDocumentoVuoto);
  }
}

// Entries outside the VAT registers are numbered too.
void ProtocolloMancante(Registrazione& aRegistrazione) {
  if (GetField(aRegistrazione.RsTesta, "Protocollo") == 0 && !Provvisoria(aRegistrazione)) {
    AddMessage(aRegistrazione, ErrString, MessageCode::ProtocolloMancante);
  }
}

void ProtocolloTroppoGrande(Registrazione& aRegistrazione) {
  if (GetField(aRegistrazione.RsTesta, "Protocollo") > kProtocolloMassimo) {
    AddMessage(aRegistrazione, WarnString, MessageCode::ProtocolloTroppoGrande,
               {TranslateText(aRegistrazione.Siblings, testi::kDelDocumento)});
  }
}

// On a sale the section and the customer must agree on split payment.
void SezionaleSplitPayment(Registrazione& aRegistrazione) {
  const RecordsetRef& rsTesta = aRegistrazione.RsTesta;
  const RecordsetRef numerazione =
      NumerazioneIva(aRegistrazione, GetField(rsTesta, "DataRegistrazione"), kVendite,
                     GetField(rsTesta, "SezionaleIva"));
  const bool sezionaleSplit =
      !RecordsetIsEmpty(numerazione) && GetFlag(numerazione, "SplitPayment");
  KalAnagrafiche anagrafiche(aRegistrazione.Siblings);
  anagrafiche.IDAnagrafica(CLng(GetField(rsTesta, "IdAnagrafica")));
  anagrafiche.TipoAnagrafica(kCliente);
  anagrafiche.Init();
  const bool clienteSplit = CBool(anagrafiche.InfoAnagrafica("SoggettoSplitPayment"));
  if (clienteSplit == sezionaleSplit) {
    return;
  }
  const testi::Letterale& letterale =
      clienteSplit ? testi::kSezionaleNonSplit : testi::kClienteNonSplit;
  std::string testo(letterale.testo);
  testo += kCrLf;  // these two texts end their line themselves
  AppendLiteral(aRegistrazione, WarnString, letterale, testo);
}

}  // namespace kal
