// CheckCompilazioneParcella: a purchase from a professional carries its fee-note data, unless the
// host said that it is a fee note.

#include "checks/Checks.h"
#include "frame/modCommonCostanti.h"
#include "frame/modDatabaseUtility.h"
#include "frame/modKalErrorHandling.h"
#include "siblings/Components.h"

namespace kal {

void CheckCompilazioneParcella(Registrazione& aRegistrazione) {
  Trap(aRegistrazione, "KalCOGCheck.CheckCompilazioneParcella", [&] {
    constexpr std::int16_t kDocumentoParcella = 13;
    constexpr std::int16_t kCausaleParcella = 1;
    const RecordsetRef& rsTesta = aRegistrazione.RsTesta;
    if (aRegistrazione.CausaleCorrente.TipoRegIva != kAcquisti) {
      return;
    }
    FeeNotes parcelle(aRegistrazione.Siblings);
    const bool soggetto = parcelle.SupplierTest(CLng(GetField(rsTesta, "IdAnagrafica")));
    if (aRegistrazione.IsParcella || !soggetto) {
      return;
    }
    if (GetField(rsTesta, "TipoDocumento") == kDocumentoParcella) {
      AddMessage(aRegistrazione, WarnString,
                 rsTesta->EditMode() == EditMode::Add ? MessageCode::DatiParcellaMancanti
                                                      : MessageCode::DatiParcellaDaVerificare);
    } else if (parcelle.TemplateTest(CStr(GetField(rsTesta, "CodCausale"))) == kCausaleParcella) {
      AddMessage(aRegistrazione, WarnString, MessageCode::DatiParcellaMancanti);
    }
  });
}

}  // namespace kal
