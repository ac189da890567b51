// OkDivisaSuRighe: where the entry's property keeps the currency on the lines, each line names it.
//
// It concerns entries outside the VAT registers. A property that does not say (Null) asks for the
// currency too; a Null currency on a line is no finding. RsRCont is left at its end.

#include "frame/KalCOGCheck.h"
#include "frame/modCommonCostanti.h"
#include "frame/modDatabaseUtility.h"
#include "frame/modKalErrorHandling.h"

namespace kal {

void KalCOGCheck::OkDivisaSuRighe() {
  Trap("KalCOGCheck.OkDivisaSuRighe", [&] {
    if (causaleCorrente_.TipoRegIva != kNessunRegistro || rsRCont_.IsNothing() ||
        rsRCont_->RecordCount() == 0) {
      return;
    }
    Variant divisaSuRighe;
    DivisaSuRighe(divisaSuRighe);
    if (!divisaSuRighe.IsNull() && !CBool(divisaSuRighe)) {
      return;
    }
    const Field& codDivisa = rsRCont_->Fields("CodDivisa");
    for (rsRCont_->MoveFirst(); !rsRCont_->Eof(); rsRCont_->MoveNext()) {
      if (codDivisa.Value() == "") {
        AddMessage(errString_, MessageCode::DivisaRigaMancante, {GetField(rsRCont_, "NumeroRiga")});
      }
    }
  });
}

void KalCOGCheck::DivisaSuRighe(Variant& aDivisaSuRighe) {
  Trap("KalCOGCheck.DivisaSuRighe", aDivisaSuRighe, [&] {
    aDivisaSuRighe = false;
    if (rsTesta_.IsNothing() || rsTesta_->RecordCount() == 0) {
      return;
    }
    QueryBuilder query;
    query.Option(kOpzioneLettura)
        .Select("DivisaSuRighe")
        .From("COGPrimeNoteProprieta")
        .WhereEqual("CodProprieta", GetField(rsTesta_, "CodProprieta"));
    const RecordsetRef proprieta = Open(query);
    if (!RecordsetIsEmpty(proprieta)) {
      aDivisaSuRighe = proprieta->Fields("DivisaSuRighe").Value();
    }
  });
}

}  // namespace kal
