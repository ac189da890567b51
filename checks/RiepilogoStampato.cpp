// RiepilogoStampato: whether the VAT summary of the date's settlement period is printed on the
// stamped books. Quarterly periods are kept under the last month of the quarter.

#include "frame/KalCOGCheck.h"
#include "frame/modDatabaseUtility.h"
#include "frame/modKalErrorHandling.h"

namespace kal {

Variant KalCOGCheck::RiepilogoStampato(const Variant& aData, std::int16_t /*aTipoRegIva*/,
                                       std::int16_t /*aSezionale*/) {
  return Trap("KalCOGCheck.RiepilogoStampato", [&]() -> Variant {
    QueryBuilder parametri;
    parametri.Select("IvaTrimestrale").From("COGParametriIva").WhereEqual("Anno", Year(aData));
    const RecordsetRef parametriIva = Open(parametri);
    if (RecordsetIsEmpty(parametriIva)) {
      return false;
    }
    const int mese = Month(aData);
    const int periodo = GetFlag(parametriIva, "IvaTrimestrale") ? (mese + 2) / 3 * 3 : mese;
    QueryBuilder query;
    query.Select("*")
        .From("COGBollati")
        .WhereEqual("Anno", Year(aData))
        .WhereEqual("Mese", periodo);
    const RecordsetRef bollati = Open(query);
    return !RecordsetIsEmpty(bollati) && GetFlag(bollati, "RiepilogoStampato");
  });
}

}  // namespace kal
