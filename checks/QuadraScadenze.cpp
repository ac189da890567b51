// QuadraScadenze: the installments of a customer or supplier line add up to exactly its amount.
//
// Lines of counterpart type 0 and 3 have no installments. A line in the base currency is compared
// in that currency alone. Opening and closing entries need no installments for a line without a
// link; any other entry looks for those without a link. An entry without a document total matches
// always. Both record sets are handed back unfiltered.

#include <string>

#include "frame/Importi.h"
#include "frame/KalCOGCheck.h"
#include "frame/modCommonCostanti.h"
#include "frame/modDatabaseUtility.h"
#include "frame/modKalErrorHandling.h"

namespace kal {

void KalCOGCheck::QuadraScadenze() {
  Trap("KalCOGCheck.QuadraScadenze", [&] {
    const Variant codDivisaBase = SettingText("CodDivisaBase");
    rsRCont_->Filter("IdCliFor <> 0 and IdCliFor <> Null and TipoCliFor <> 3 and TipoCliFor <> 0");
    if (!RecordsetIsEmpty(rsRCont_)) {
      const LettoreImporti importi(*rsRCont_);
      for (rsRCont_->MoveFirst(); !rsRCont_->Eof(); rsRCont_->MoveNext()) {
        const ImportiConSegno riga = importi.Leggi();
        const std::int32_t idScadenza = CLng(GetField(rsRCont_, "IdScadenza"));
        const Variant tipoMovimento = GetField(rsCausale_, "IdTipoMovimento");
        if (idScadenza == 0 && (tipoMovimento == 1 || tipoMovimento == 2)) {
          continue;
        }
        const bool inValuta{GetField(rsRCont_, "CodDivisa") != codDivisaBase};
        bool quadra = false;
        QuadraScadenzeRiga(idScadenza, riga.Importo, riga.ImportoVB, inValuta, quadra);
        if (!quadra) {
          AddMessage(errString_, MessageCode::ScadenzeNonQuadrano,
                     {GetField(rsRCont_, "NumeroRiga")});
        }
      }
    }
    rsRCont_->Filter("");
  });
}

void KalCOGCheck::QuadraScadenzeRiga(std::int32_t aIdScadenza, Currency aImporto,
                                     Currency aImportoVB, bool aInValuta, bool& aQuadra) {
  Trap("KalCOGCheck.QuadraScadenzeRiga", aQuadra, [&] {
    if (GetField(rsTesta_, "TotDocumentoVB") == 0) {
      aQuadra = true;
      return;
    }
    aQuadra = false;
    if (rsScadenze_.IsNothing()) {
      return;
    }
    rsScadenze_->Filter("IdScadenza = " + std::to_string(aIdScadenza));
    ImportiConSegno somma;
    if (!RecordsetIsEmpty(rsScadenze_)) {
      const LettoreImporti importi(*rsScadenze_);
      for (rsScadenze_->MoveFirst(); !rsScadenze_->Eof(); rsScadenze_->MoveNext()) {
        const ImportiConSegno rata = importi.Leggi();
        somma.Importo += rata.Importo;
        somma.ImportoVB += rata.ImportoVB;
      }
    }
    rsScadenze_->Filter("");
    aQuadra = somma.ImportoVB == aImportoVB && (!aInValuta || somma.Importo == aImporto);
  });
}

}  // namespace kal
