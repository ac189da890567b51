// CheckCodIva: the VAT code of each line exists, and names a self-invoice code where the line
// needs one: an intra-community or reverse-charge line with a part that can't be deducted or that
// is charged to cost.
//
// The reserved code of ventilated receipts is never looked up. The code stands in the filter as
// it is: a quote in it makes the filter invalid, which is an error. RsRIva is left unfiltered on
// its first line.

#include <string>

#include "frame/KalCOGCheck.h"
#include "frame/modCommonCostanti.h"
#include "frame/modDatabaseUtility.h"
#include "frame/modKalErrorHandling.h"

namespace kal {

void KalCOGCheck::CheckCodIva() {
  Trap("KalCOGCheck.CheckCodIva", [&] {
    if (rsRIva_.IsNothing()) {
      return;
    }
    QueryBuilder query;
    query.Option(kOpzioneLettura).Select("*").From("STDIva");
    const RecordsetRef rsIva = Open(query);
    rsRIva_->Filter("");
    if (RecordsetIsEmpty(rsRIva_)) {
      return;
    }
    for (rsRIva_->MoveFirst(); !rsRIva_->Eof(); rsRIva_->MoveNext()) {
      const Variant codIva = GetField(rsRIva_, "CodIva");
      if (codIva == kCodIvaVentilazione) {
        continue;
      }
      rsIva->Filter("CodIva = '" + CStr(codIva) + "'");
      if (RecordsetIsEmpty(rsIva)) {
        AddMessage(errString_, MessageCode::CodIvaInesistente, {codIva});
        continue;
      }
      const bool autofattura = GetFlag(rsTesta_, "Intra") || GetFlag(rsRIva_, "ReverseCharge");
      const bool indetraibile =
          GetField(rsIva, "PercIvaACosto") != 0 || GetField(rsIva, "PercIndetraibile") != 0 ||
          GetField(rsRIva_, "IndetraibileVB") != 0 || GetField(rsRIva_, "Indetraibile") != 0;
      if (autofattura && indetraibile && GetField(rsIva, "CodIvaAutoFtReverse") == "") {
        AddMessage(errString_, MessageCode::CodIvaAutofatturaMancante,
                   {CStr(GetField(rsRIva_, "NumeroRiga"))});
      }
    }
    rsRIva_->MoveFirst();
  });
}

}  // namespace kal
