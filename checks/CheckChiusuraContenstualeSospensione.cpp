// CheckChiusuraContenstualeSospensione: an entry in VAT suspension does not close installments
// that it opens itself.
//
// It looks into the host's own table of installments, by the name that the host gave. The answer
// is always False: only the message counts.

#include <string>

#include "frame/KalCOGCheck.h"
#include "frame/modCommonCostanti.h"
#include "frame/modDatabaseUtility.h"
#include "frame/modKalErrorHandling.h"

namespace kal {

void KalCOGCheck::CheckChiusuraContenstualeSospensione(bool& aEsito) {
  Trap("KalCOGCheck.CheckChiusuraContenstualeSospensione", [&] {
    aEsito = false;
    QueryBuilder query;
    query.Option(kOpzioneLettura)
        .Select("Chiu.IdScadenza")
        .From(tmpTableScadenze_ + " as Chiu")
        .JoinWith(JoinKind::Inner, tmpTableScadenze_ + " as Ape")
        .On("Chiu.LinkApertura", "Ape.IdScadenza")
        .On("Chiu.RataApertura", "Ape.NrRata")
        .WhereEqual("Chiu.TipoRata", kRataChiusura);
    if (!RecordsetIsEmpty(Open(query))) {
      AddMessage(errString_, MessageCode::ChiusuraContestuale);
    }
  });
}

}  // namespace kal
