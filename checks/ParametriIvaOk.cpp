// ParametriIvaOk: the company's VAT parameters exist for the year of the VAT date; by activity
// where the company keeps its VAT activities separately.
//
// No date, or no activity code where activities are kept separately, asks for nothing.

#include "frame/KalCOGCheck.h"
#include "frame/modCommonCostanti.h"
#include "frame/modDatabaseUtility.h"
#include "frame/modKalErrorHandling.h"

namespace kal {

void KalCOGCheck::ParametriIvaOk(const Variant& aData, bool& aOk) {
  Trap("KalCOGCheck.ParametriIvaOk", aOk, [&] {
    aOk = true;
    if (aData == "") {
      return;
    }
    const bool attivitaSeparate = SettingFlag("AttivitaSeparateIva");
    const Variant codAttivita = GetField(rsTesta_, "CodAttivita");
    if (codAttivita == "" && attivitaSeparate) {
      return;
    }
    QueryBuilder query;
    query.Option(kOpzioneLettura)
        .Select("*")
        .From(attivitaSeparate ? "COGParametriIvaAttivitaRighe" : "COGParametriIva")
        .WhereEqual("Anno", Year(aData));
    if (attivitaSeparate) {
      query.WhereEqual("CodAttivita", codAttivita);
    }
    aOk = !RecordsetIsEmpty(Open(query));
  });
}

}  // namespace kal
