// CheckPlafond: how much of the plafond of the supplier's declaration of intent a purchase uses.
//
// It gives no message: the host reads ImportoPlafond. Reversing templates use it negative. RsRIva
// is left on its first row when it was walked.

#include "checks/Checks.h"
#include "frame/Azienda.h"
#include "frame/modCommonCostanti.h"
#include "frame/modDatabaseUtility.h"
#include "frame/modKalErrorHandling.h"

namespace kal {
namespace {

constexpr Selection kDichiarazione = Selection()
                                         .Select("CodIva")
                                         .From("STDDichiarazioniIntento")
                                         .WhereEqual("IdDichiarazione")
                                         .WhereEqual("TipoAnagrafica");

}  // namespace

void CheckPlafond(Registrazione& aRegistrazione) {
  Trap(aRegistrazione, "KalCOGCheck.CheckPlafond", [&] {
    const RecordsetRef& rsTesta = aRegistrazione.RsTesta;
    const RecordsetRef& rsRIva = aRegistrazione.RsRIva;
    aRegistrazione.ImportoPlafond = Currency();
    const Variant idDichiarazione = GetField(rsTesta, "IdDichiarazione");
    if (aRegistrazione.CausaleCorrente.TipoRegIva != kAcquisti ||
        GetField(rsTesta, "DataPlafond") == "" || idDichiarazione == 0 || rsRIva.IsNothing() ||
        rsRIva->RecordCount() == 0) {
      return;
    }
    const RecordsetRef dichiarazione =
        Open<kDichiarazione>(aRegistrazione, idDichiarazione, kFornitore);
    if (RecordsetIsEmpty(dichiarazione)) {
      return;
    }
    const Variant codIva = GetField(dichiarazione, "CodIva");
    Currency somma;
    for (rsRIva->MoveFirst(); !rsRIva->Eof(); rsRIva->MoveNext()) {
      if (GetField(rsRIva, "CodIva") == codIva) {
        somma += CCur(GetField(rsRIva, "Imponibile"));
      }
    }
    rsRIva->MoveFirst();
    aRegistrazione.ImportoPlafond = aRegistrazione.CausaleCorrente.SegnoIva == -1 ? -somma : somma;
  });
}

}  // namespace kal
