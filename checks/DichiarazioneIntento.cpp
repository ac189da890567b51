// EseguiControlliDichiarazioneIntento: whether declarations of intent apply to the entry. They do
// unless a purchase or sale has no operation, or receipts are ventilated or from the till.
//
// LeggiDichiarazioneIntento: the declaration in force for the entry's customer or supplier.
// Nothing compares it with the lines yet; that it can be read is all that is asked.

#include "checks/Checks.h"
#include "frame/Azienda.h"
#include "frame/modCommonCostanti.h"
#include "frame/modDatabaseUtility.h"
#include "frame/modKalErrorHandling.h"

namespace kal {
namespace {

constexpr Selection kInVigore = Selection()
                                    .Option(kOpzioneLettura)
                                    .Select("CodIva")
                                    .From("STDDichiarazioniIntento")
                                    .WhereEqual("IdAnagrafica")
                                    .WhereEqual("TipoAnagrafica")
                                    .WhereEqual("IsNull(Annullata,0)")
                                    .Where("DataInizioValidita", CompareWith::LessOrEqual)
                                    .Where("DataFineValidita", CompareWith::GreaterOrEqual);

}  // namespace

bool EseguiControlliDichiarazioneIntento(Registrazione& aRegistrazione) {
  return Trap(aRegistrazione, "KalCOGCheck.EseguiControlliDichiarazioneIntento", [&] {
    const Causale& causale = aRegistrazione.CausaleCorrente;
    switch (causale.TipoRegIva) {
      case kAcquisti:
      case kVendite:
        return causale.Operazione != 0;
      case kCorrispettivi:
        return !causale.TipoVentilazione && !causale.CassaCorrispettivi;
      default:
        return true;
    }
  });
}

void LeggiDichiarazioneIntento(Registrazione& aRegistrazione) {
  Trap(aRegistrazione, "KalCOGCheck.LeggiDichiarazioneIntento", [&] {
    const RecordsetRef& rsTesta = aRegistrazione.RsTesta;
    const Variant dataDocumento = GetField(rsTesta, "DataDocumento");
    const Variant idAnagrafica = GetField(rsTesta, "IdAnagrafica");
    const Variant tipoCliFor = GetField(rsTesta, "TipoCliFor");
    (void)Open<kInVigore>(aRegistrazione, idAnagrafica, tipoCliFor, 0, dataDocumento,
                          dataDocumento);
  });
}

}  // namespace kal
