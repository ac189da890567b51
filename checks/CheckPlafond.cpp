// CheckPlafond: how much of the plafond of the supplier's declaration of intent a purchase uses.
//
// It gives no message: the host reads ImportoPlafond. Reversing templates use it negative. RsRIva
// is left on its first row when it was walked.

#include "frame/KalCOGCheck.h"
#include "frame/modCommonCostanti.h"
#include "frame/modDatabaseUtility.h"
#include "frame/modKalErrorHandling.h"

namespace kal {

void KalCOGCheck::CheckPlafond() {
  Trap("KalCOGCheck.CheckPlafond", [&] {
    importoPlafond_ = Currency();
    const Variant idDichiarazione = GetField(rsTesta_, "IdDichiarazione");
    if (causaleCorrente_.TipoRegIva != kAcquisti || GetField(rsTesta_, "DataPlafond") == "" ||
        idDichiarazione == 0 || rsRIva_.IsNothing() || rsRIva_->RecordCount() == 0) {
      return;
    }
    QueryBuilder query;
    query.Select("CodIva")
        .From("STDDichiarazioniIntento")
        .WhereEqual("IdDichiarazione", idDichiarazione)
        .WhereEqual("TipoAnagrafica", kFornitore);
    const RecordsetRef dichiarazione = Open(query);
    if (RecordsetIsEmpty(dichiarazione)) {
      return;
    }
    const Variant codIva = GetField(dichiarazione, "CodIva");
    Currency somma;
    for (rsRIva_->MoveFirst(); !rsRIva_->Eof(); rsRIva_->MoveNext()) {
      if (GetField(rsRIva_, "CodIva") == codIva) {
        somma += CCur(GetField(rsRIva_, "Imponibile"));
      }
    }
    rsRIva_->MoveFirst();
    importoPlafond_ = causaleCorrente_.SegnoIva == -1 ? -somma : somma;
  });
}

}  // namespace kal
