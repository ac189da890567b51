// EsisteSezionale: an entry outside the VAT registers, or a provisional one, is numbered in a
// journal section that is defined for the fiscal year of its registration date.
//
// Provisional entries have numberings of their own, and so have those whose flag is Null. Without
// a fiscal year the section is looked up all the same, for year 0.

#include "checks/Checks.h"
#include "frame/Azienda.h"
#include "frame/modDatabaseUtility.h"
#include "frame/modKalErrorHandling.h"

namespace kal {
namespace {

constexpr Selection kNumerazioneContabile = Selection()
                                                .Select("*")
                                                .From("COGNumerazioniContabili")
                                                .WhereEqual("CodEsercizio")
                                                .WhereEqual("Sezionale");
constexpr Selection kNumerazioneExtra = Selection()
                                            .Select("*")
                                            .From("COGNumerazioniExtra")
                                            .WhereEqual("CodEsercizio")
                                            .WhereEqual("Sezionale");

}  // namespace

void EsisteSezionale(Registrazione& aRegistrazione) {
  Trap(aRegistrazione, "KalCOGCheck.EsisteSezionale", [&] {
    const RecordsetRef& rsTesta = aRegistrazione.RsTesta;
    std::int16_t codEsercizio = 0;
    CompanySettings esercizio(aRegistrazione.Siblings);
    if (esercizio.SelectFiscalYear(GetField(rsTesta, "DataRegistrazione"))) {
      codEsercizio = CInt(esercizio.FiscalYearField("CodEsercizio"));
    } else {
      AddMessage(aRegistrazione, ErrString, MessageCode::EsercizioInesistente);
    }
    const Variant provvisoria = RawField(rsTesta, "Provvisoria");
    const bool definitiva = !provvisoria.IsNull() && !CBool(provvisoria);
    const Variant sezionale = GetField(rsTesta, "SezionaleIva");
    const RecordsetRef numerazione =
        definitiva ? Open<kNumerazioneContabile>(aRegistrazione, codEsercizio, sezionale)
                   : Open<kNumerazioneExtra>(aRegistrazione, codEsercizio, sezionale);
    if (RecordsetIsEmpty(numerazione)) {
      AddMessage(aRegistrazione, ErrString, MessageCode::SezionaleInesistente);
    }
  });
}

}  // namespace kal
