// SezionaleIvaAutofattura: the sales section in which the self-invoice of a purchase is numbered.
//
// It is the section's own where the numbering says so and names one, else the company-wide one.

#include "checks/Checks.h"
#include "frame/Azienda.h"
#include "frame/modDatabaseUtility.h"
#include "frame/modKalErrorHandling.h"

namespace kal {
namespace {

constexpr Selection kNumerazione =
    Selection()
        .Select("COGNumerazioniIva.UsaSezAutoftSpecifico,Autofattura.SezionaleIva")
        .From("COGNumerazioniIva")
        .JoinWith(JoinKind::Inner, "COGNumerazioniIva as Autofattura")
        .On("COGNumerazioniIva.IdSezAutofatture", "Autofattura.IdNumerazione")
        .WhereEqual("COGNumerazioniIva.Anno")
        .WhereEqual("COGNumerazioniIva.TipoRegIva")
        .WhereEqual("COGNumerazioniIva.SezionaleIVA");

}  // namespace

std::int16_t SezionaleIvaAutofattura(Registrazione& aRegistrazione, std::int16_t aTipoRegIva,
                                     std::int16_t aSezionaleIva, const Variant& aData) {
  return Trap(aRegistrazione, "KalCOGCheck.SezionaleIvaAutofattura", [&] {
    const RecordsetRef numerazione =
        Open<kNumerazione>(aRegistrazione, Year(aData), aTipoRegIva, aSezionaleIva);
    if (!RecordsetIsEmpty(numerazione) && GetFlag(numerazione, "UsaSezAutoftSpecifico")) {
      return CInt(GetField(numerazione, "SezionaleIva"));
    }
    const Variant sezionale = Setting(aRegistrazione, "SezionaleAutofatture");
    return sezionale.IsNull() ? std::int16_t{0} : CInt(sezionale);
  });
}

}  // namespace kal
