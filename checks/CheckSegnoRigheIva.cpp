// CheckSegnoRigheIva: the VAT lines (TipoRiga 3) of a purchase have nothing on the credit side,
// those of a sale nothing on the debit side.
//
// Other operations sum nothing and so never warn. RsRCont is left unfiltered.

#include "frame/KalCOGCheck.h"
#include "frame/modCommonCostanti.h"
#include "frame/modDatabaseUtility.h"
#include "frame/modKalErrorHandling.h"

namespace kal {

void KalCOGCheck::CheckSegnoRigheIva() {
  Trap("KalCOGCheck.CheckSegnoRigheIva", [&] {
    CreaRecordCausale(CStr(GetField(rsTesta_, "CodCausale")));
    const bool conRegistroIva{GetField(rsCausale_, "TipoRegIva") != kNessunRegistro};
    const bool libera = GetFlag(rsCausale_, "RegistrazioneLibera");
    if (!conRegistroIva && !libera) {
      return;
    }
    const Variant operazione = GetField(rsCausale_, "Operazione");
    const bool acquisto{operazione == 1};
    const bool vendita{operazione == 2};

    rsRCont_->Filter("TipoRiga = 3");
    if (RecordsetIsEmpty(rsRCont_)) {
      rsRCont_->Filter(FilterGroup::None);
      return;
    }
    Currency somma;
    Currency sommaVB;
    for (rsRCont_->MoveFirst(); !rsRCont_->Eof(); rsRCont_->MoveNext()) {
      if (acquisto) {
        somma += CCur(GetField(rsRCont_, "ImportoAvere"));
        sommaVB += CCur(GetField(rsRCont_, "ImportoAvereVB"));
      } else if (vendita) {
        somma += CCur(GetField(rsRCont_, "ImportoDare"));
        sommaVB += CCur(GetField(rsRCont_, "ImportoDareVB"));
      }
    }
    rsRCont_->Filter(FilterGroup::None);
    if (somma != Currency() || sommaVB != Currency()) {
      AddMessage(warnString_, MessageCode::SegnoRigheIva,
                 {acquisto ? "avere" : "dare", acquisto ? "acquisto" : "vendita"});
    }
  });
}

}  // namespace kal
