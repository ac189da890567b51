// EsisteSezionale: an entry outside the VAT registers, or a provisional one, is numbered in a
// journal section that is defined for the fiscal year of its registration date.
//
// Provisional entries have numberings of their own, and so have those whose flag is Null. Without
// a fiscal year the section is looked up all the same, for year 0.

#include "frame/KalCOGCheck.h"
#include "frame/modDatabaseUtility.h"
#include "frame/modKalErrorHandling.h"

namespace kal {

void KalCOGCheck::EsisteSezionale() {
  Trap("KalCOGCheck.EsisteSezionale", [&] {
    std::int16_t codEsercizio = 0;
    const auto esercizio = siblings_.CreateCompanySettings();
    if (esercizio->SelectFiscalYear(GetField(rsTesta_, "DataRegistrazione"))) {
      codEsercizio = CInt(esercizio->FiscalYearField("CodEsercizio"));
    } else {
      AddMessage(errString_, MessageCode::EsercizioInesistente);
    }
    const Variant provvisoria = rsTesta_->Fields("Provvisoria").Value();
    const bool definitiva = !provvisoria.IsNull() && !CBool(provvisoria);
    QueryBuilder query;
    query.Select("*")
        .From(definitiva ? "COGNumerazioniContabili" : "COGNumerazioniExtra")
        .WhereEqual("CodEsercizio", codEsercizio)
        .WhereEqual("Sezionale", GetField(rsTesta_, "SezionaleIva"));
    if (RecordsetIsEmpty(Open(query))) {
      AddMessage(errString_, MessageCode::SezionaleInesistente);
    }
  });
}

}  // namespace kal
