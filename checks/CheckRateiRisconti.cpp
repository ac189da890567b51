// CheckRateiRisconti: every accrual or deferral names a counterpart account that stands on an
// account line of the entry.
//
// The walk ends at the first row without an account. The account stands in the filter as it is,
// compared with "like": a wildcard in it matches as the platform does, a quote in it is an error.
// RsRisconti is left on its first row, RsRCont unfiltered.

#include <string>

#include "frame/KalCOGCheck.h"
#include "frame/modDatabaseUtility.h"
#include "frame/modKalErrorHandling.h"

namespace kal {

void KalCOGCheck::CheckRateiRisconti() {
  Trap("KalCOGCheck.CheckRateiRisconti", [&] {
    if (rsRCont_.IsNothing() || rsRCont_->RecordCount() == 0 || rsRisconti_.IsNothing() ||
        rsRisconti_->RecordCount() == 0) {
      return;
    }
    for (rsRisconti_->MoveFirst(); !rsRisconti_->Eof(); rsRisconti_->MoveNext()) {
      const std::string contropartita = CStr(GetField(rsRisconti_, "CodContoContropartita"));
      if (contropartita.empty()) {
        AddMessage(errString_, MessageCode::ContropartitaMancante);
        rsRisconti_->MoveLast();
        continue;
      }
      rsRCont_->Filter("CodConto like '" + contropartita + "'");
      if (rsRCont_->RecordCount() == 0) {
        AddMessage(errString_, MessageCode::ContropartitaNonInRighe, {contropartita});
      }
    }
    rsRisconti_->MoveFirst();
    rsRCont_->Filter(FilterGroup::None);
  });
}

}  // namespace kal
