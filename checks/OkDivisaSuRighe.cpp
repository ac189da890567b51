// OkDivisaSuRighe: where the entry's property keeps the currency on the lines, each line names it.
//
// It concerns entries outside the VAT registers. A property that does not say (Null) asks for the
// currency too; a Null currency on a line is no finding. RsRCont is left at its end.

#include "checks/Checks.h"
#include "frame/Azienda.h"
#include "frame/modCommonCostanti.h"
#include "frame/modDatabaseUtility.h"
#include "frame/modKalErrorHandling.h"

namespace kal {
namespace {

constexpr Selection kProprieta = Selection()
                                     .Option(kOpzioneLettura)
                                     .Select("DivisaSuRighe")
                                     .From("COGPrimeNoteProprieta")
                                     .WhereEqual("CodProprieta");

Variant DivisaSuRighe(const Registrazione& aRegistrazione) {
  return Trap(aRegistrazione, "KalCOGCheck.DivisaSuRighe", [&]() -> Variant {
    const RecordsetRef& rsTesta = aRegistrazione.RsTesta;
    if (rsTesta.IsNothing() || rsTesta->RecordCount() == 0) {
      return false;
    }
    const RecordsetRef proprieta =
        Open<kProprieta>(aRegistrazione, GetField(rsTesta, "CodProprieta"));
    if (RecordsetIsEmpty(proprieta)) {
      return false;
    }
    return RawField(proprieta, "DivisaSuRighe");
  });
}

}  // namespace

void OkDivisaSuRighe(Registrazione& aRegistrazione) {
  Trap(aRegistrazione, "KalCOGCheck.OkDivisaSuRighe", [&] {
    const HostSet& rsRCont = aRegistrazione.RsRCont;
    if (aRegistrazione.CausaleCorrente.TipoRegIva != kNessunRegistro || rsRCont.IsNothing() ||
        rsRCont->RecordCount() == 0) {
      return;
    }
    const Variant divisaSuRighe = DivisaSuRighe(aRegistrazione);
    if (!divisaSuRighe.IsNull() && !CBool(divisaSuRighe)) {
      return;
    }
    Campo codDivisa(rsRCont, "CodDivisa");
    for (rsRCont->MoveFirst(); !rsRCont->Eof(); rsRCont->MoveNext()) {
      if (codDivisa.Value() == "") {
        AddMessage(aRegistrazione, ErrString, MessageCode::DivisaRigaMancante,
                   {GetField(rsRCont, "NumeroRiga")}, rsRCont.Riga());
      }
    }
  });
}

}  // namespace kal
