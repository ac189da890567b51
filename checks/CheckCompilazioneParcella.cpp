// CheckCompilazioneParcella: a purchase from a professional carries its fee-note data, unless the
// host said that it is a fee note.

#include "frame/KalCOGCheck.h"
#include "frame/modCommonCostanti.h"
#include "frame/modDatabaseUtility.h"
#include "frame/modKalErrorHandling.h"

namespace kal {

void KalCOGCheck::CheckCompilazioneParcella() {
  Trap("KalCOGCheck.CheckCompilazioneParcella", [&] {
    constexpr std::int16_t kDocumentoParcella = 13;
    constexpr std::int16_t kCausaleParcella = 1;
    if (causaleCorrente_.TipoRegIva != kAcquisti) {
      return;
    }
    const auto parcelle = siblings_.CreateFeeNotes();
    const bool soggetto = parcelle->SupplierTest(CLng(GetField(rsTesta_, "IdAnagrafica")));
    if (isParcella_ || !soggetto) {
      return;
    }
    if (GetField(rsTesta_, "TipoDocumento") == kDocumentoParcella) {
      AddMessage(warnString_, rsTesta_->EditMode() == EditMode::Add
                                  ? MessageCode::DatiParcellaMancanti
                                  : MessageCode::DatiParcellaDaVerificare);
    } else if (parcelle->TemplateTest(CStr(GetField(rsTesta_, "CodCausale"))) == kCausaleParcella) {
      AddMessage(warnString_, MessageCode::DatiParcellaMancanti);
    }
  });
}

}  // namespace kal
