// CheckSegnoRigheIva: the VAT lines (TipoRiga 3) of a purchase have nothing on the credit side,
// those of a sale nothing on the debit side.
//
// Other operations sum nothing and so never warn. RsRCont is left unfiltered.

#include "checks/Checks.h"
#include "frame/modCommonCostanti.h"
#include "frame/modDatabaseUtility.h"
#include "frame/modKalErrorHandling.h"

namespace kal {

void CheckSegnoRigheIva(Registrazione& aRegistrazione) {
  Trap(aRegistrazione, "KalCOGCheck.CheckSegnoRigheIva", [&] {
    const RecordsetRef& rsCausale = aRegistrazione.RsCausale;
    const RecordsetRef& rsRCont = aRegistrazione.RsRCont;
    CreaRecordCausale(aRegistrazione, CStr(GetField(aRegistrazione.RsTesta, "CodCausale")));
    const bool conRegistroIva{GetField(rsCausale, "TipoRegIva") != kNessunRegistro};
    const bool libera = GetFlag(rsCausale, "RegistrazioneLibera");
    if (!conRegistroIva && !libera) {
      return;
    }
    const Variant operazione = GetField(rsCausale, "Operazione");
    const bool acquisto{operazione == 1};
    const bool vendita{operazione == 2};

    rsRCont->Filter("TipoRiga = 3");
    if (RecordsetIsEmpty(rsRCont)) {
      rsRCont->Filter(FilterGroup::None);
      return;
    }
    Currency somma;
    Currency sommaVB;
    for (rsRCont->MoveFirst(); !rsRCont->Eof(); rsRCont->MoveNext()) {
      if (acquisto) {
        somma += CCur(GetField(rsRCont, "ImportoAvere"));
        sommaVB += CCur(GetField(rsRCont, "ImportoAvereVB"));
      } else if (vendita) {
        somma += CCur(GetField(rsRCont, "ImportoDare"));
        sommaVB += CCur(GetField(rsRCont, "ImportoDareVB"));
      }
    }
    rsRCont->Filter(FilterGroup::None);
    if (somma != Currency() || sommaVB != Currency()) {
      AddMessage(aRegistrazione, WarnString, MessageCode::SegnoRigheIva,
                 {acquisto ? "avere" : "dare", acquisto ? "acquisto" : "vendita"});
    }
  });
}

}  // namespace kal
