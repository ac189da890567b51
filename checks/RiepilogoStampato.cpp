// RiepilogoStampato: whether the VAT summary of the date's settlement period is printed on the
// stamped books. Quarterly periods are kept under the last month of the quarter.

#include "checks/Checks.h"
#include "frame/Azienda.h"
#include "frame/modDatabaseUtility.h"
#include "frame/modKalErrorHandling.h"

namespace kal {
namespace {

constexpr Selection kParametriIva =
    Selection().Select("IvaTrimestrale").From("COGParametriIva").WhereEqual("Anno");
constexpr Selection kBollati =
    Selection().Select("*").From("COGBollati").WhereEqual("Anno").WhereEqual("Mese");

}  // namespace

bool RiepilogoStampato(Registrazione& aRegistrazione, const Variant& aData,
                       std::int16_t /*aTipoRegIva*/, std::int16_t /*aSezionale*/) {
  return Trap(aRegistrazione, "KalCOGCheck.RiepilogoStampato", [&] {
    const RecordsetRef parametriIva = Open<kParametriIva>(aRegistrazione, Year(aData));
    if (RecordsetIsEmpty(parametriIva)) {
      return false;
    }
    const int mese = Month(aData);
    const int periodo = GetFlag(parametriIva, "IvaTrimestrale") ? (mese + 2) / 3 * 3 : mese;
    const RecordsetRef bollati = Open<kBollati>(aRegistrazione, Year(aData), periodo);
    return !RecordsetIsEmpty(bollati) && GetFlag(bollati, "RiepilogoStampato");
  });
}

}  // namespace kal
