// The declaration of intent that the entry names, where such declarations apply: its plafond, and
// its validity on the document's date. RsRIva is left at its end when a plafond is weighed.

#include "checks/Checks.h"
#include "frame/Azienda.h"
#include "frame/Ordine.h"
#include "frame/modCommonCostanti.h"
#include "frame/modDatabaseUtility.h"
#include "frame/modKalErrorHandling.h"
#include "save/Passi.h"

namespace kal {
namespace {

constexpr std::int16_t kConPlafond = 2;  // TipoDichiarazione

constexpr Selection kDichiarazione =
    Selection()
        .Select("TipoDichiarazione, CodIva, ImportoPlafond, Importo")
        .Select("DataInizioValidita, DataFineValidita")
        .From("STDDichiarazioniIntento")
        .WhereEqual("IdDichiarazione")
        .WhereEqual("TipoAnagrafica");
constexpr Selection kSalvata = Selection()
                                   .Select("TotImponibile, TotImposta")
                                   .From("COGPrimeNoteTeste")
                                   .WhereEqual("IdPrimaNota")
                                   .WhereEqual("Provvisoria");

// What the declaration has used, without what this entry used when it was last saved, and with
// what it uses now: taxable minus tax on both sides.
void Plafond(Registrazione& aRegistrazione, const RecordsetRef& aDichiarazione) {
  const RecordsetRef& rsRIva = aRegistrazione.RsRIva;
  const RecordsetRef salvata =
      Open<kSalvata>(aRegistrazione, GetField(aRegistrazione.RsTesta, "IdPrimaNota"), false);
  Currency totPrecedente;
  if (!RecordsetIsEmpty(salvata)) {
    totPrecedente =
        CCur(GetField(salvata, "TotImponibile")) - CCur(GetField(salvata, "TotImposta"));
  }
  const Variant codIva = GetField(aDichiarazione, "CodIva");
  Currency totCorrente;
  for (rsRIva->MoveFirst(); !rsRIva->Eof(); rsRIva->MoveNext()) {
    if (GetField(rsRIva, "CodIva") == codIva) {
      totCorrente += CCur(GetField(rsRIva, "Imponibile")) - CCur(GetField(rsRIva, "Imposta"));
    }
  }
  if (CCur(GetField(aDichiarazione, "ImportoPlafond")) - totPrecedente + totCorrente >
      CCur(GetField(aDichiarazione, "Importo"))) {
    AppendLiteral(aRegistrazione, WarnString, testi::kPlafondSuperato);
  }
}

}  // namespace

void DichiarazioneIntento(Registrazione& aRegistrazione) {
  if (!EseguiControlliDichiarazioneIntento(aRegistrazione) ||
      aRegistrazione.CausaleCorrente.SegnoIva == -1) {
    return;
  }
  const RecordsetRef& rsTesta = aRegistrazione.RsTesta;
  const Variant idDichiarazione = GetField(rsTesta, "IdDichiarazione");
  const std::int16_t tipoAnagrafica =
      aRegistrazione.CausaleCorrente.TipoRegIva == kAcquisti ? kFornitore : kCliente;
  const RecordsetRef dichiarazione =
      Open<kDichiarazione>(aRegistrazione, idDichiarazione, tipoAnagrafica);
  if (RecordsetIsEmpty(dichiarazione)) {
    return;
  }
  if (GetField(dichiarazione, "TipoDichiarazione") == kConPlafond) {
    Plafond(aRegistrazione, dichiarazione);
  }
  const Variant dataDocumento = GetField(rsTesta, "DataDocumento");
  if (Provvisoria(aRegistrazione) && dataDocumento == "" && idDichiarazione != 0) {
    AppendLiteral(aRegistrazione, WarnString, testi::kDataDocumentoVuota);
  } else if (dataDocumento < GetField(dichiarazione, "DataInizioValidita") ||
             dataDocumento > GetField(dichiarazione, "DataFineValidita")) {
    AppendLiteral(aRegistrazione, WarnString, testi::kDichiarazioneNonValida);
  }
}

}  // namespace kal
