// SezionaleIvaAutofattura: the sales section in which the self-invoice of a purchase is numbered.
//
// It is the section's own where the numbering says so and names one, else the company-wide one.

#include "frame/KalCOGCheck.h"
#include "frame/modDatabaseUtility.h"
#include "frame/modKalErrorHandling.h"

namespace kal {

void KalCOGCheck::SezionaleIvaAutofattura(std::int16_t aTipoRegIva, std::int16_t aSezionaleIva,
                                          const Variant& aData,
                                          std::int16_t& aSezionaleAutofattura) {
  Trap("KalCOGCheck.SezionaleIvaAutofattura", aSezionaleAutofattura, [&] {
    QueryBuilder query;
    query.Select("COGNumerazioniIva.UsaSezAutoftSpecifico,Autofattura.SezionaleIva")
        .From("COGNumerazioniIva")
        .JoinWith(JoinKind::Inner, "COGNumerazioniIva as Autofattura")
        .On("COGNumerazioniIva.IdSezAutofatture", "Autofattura.IdNumerazione")
        .WhereEqual("COGNumerazioniIva.Anno", Year(aData))
        .WhereEqual("COGNumerazioniIva.TipoRegIva", aTipoRegIva)
        .WhereEqual("COGNumerazioniIva.SezionaleIVA", aSezionaleIva);
    const RecordsetRef numerazione = Open(query);
    if (!RecordsetIsEmpty(numerazione) && GetFlag(numerazione, "UsaSezAutoftSpecifico")) {
      aSezionaleAutofattura = CInt(GetField(numerazione, "SezionaleIva"));
      return;
    }
    const Variant sezionale = Setting("SezionaleAutofatture");
    aSezionaleAutofattura = sezionale.IsNull() ? std::int16_t{0} : CInt(sezionale);
  });
}

}  // namespace kal
