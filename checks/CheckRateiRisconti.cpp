// CheckRateiRisconti: every accrual or deferral names a counterpart account that stands on an
// account line of the entry.
//
// The walk ends at the first row without an account. The account stands in the filter as it is,
// compared with "like": a wildcard in it matches as the platform does, a quote in it is an error.
// RsRisconti is left on its first row, RsRCont unfiltered.

#include <string>

#include "checks/Checks.h"
#include "frame/modDatabaseUtility.h"
#include "frame/modKalErrorHandling.h"

namespace kal {

void CheckRateiRisconti(Registrazione& aRegistrazione) {
  Trap(aRegistrazione, "KalCOGCheck.CheckRateiRisconti", [&] {
    const RecordsetRef& rsRCont = aRegistrazione.RsRCont;
    const HostSet& rsRisconti = aRegistrazione.RsRisconti;
    if (rsRCont.IsNothing() || rsRCont->RecordCount() == 0 || rsRisconti.IsNothing() ||
        rsRisconti->RecordCount() == 0) {
      return;
    }
    for (rsRisconti->MoveFirst(); !rsRisconti->Eof(); rsRisconti->MoveNext()) {
      const std::string contropartita = CStr(GetField(rsRisconti, "CodContoContropartita"));
      if (contropartita.empty()) {
        AddMessage(aRegistrazione, ErrString, MessageCode::ContropartitaMancante, {},
                   rsRisconti.Riga());
        rsRisconti->MoveLast();
        continue;
      }
      rsRCont->Filter("CodConto like '" + contropartita + "'");
      if (rsRCont->RecordCount() == 0) {
        AddMessage(aRegistrazione, ErrString, MessageCode::ContropartitaNonInRighe, {contropartita},
                   rsRisconti.Riga());
      }
    }
    rsRisconti->MoveFirst();
    rsRCont->Filter(FilterGroup::None);
  });
}

}  // namespace kal
