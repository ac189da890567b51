// QuadraScadenze: the installments of a customer or supplier line add up to exactly its amount.
//
// Lines of counterpart type 0 and 3 have no installments. A line in the base currency is compared
// in that currency alone. Opening and closing entries need no installments for a line without a
// link; any other entry looks for those without a link. An entry without a document total matches
// always. Both record sets are handed back unfiltered.

#include <string>

#include "checks/Checks.h"
#include "frame/Azienda.h"
#include "frame/Importi.h"
#include "frame/modCommonCostanti.h"
#include "frame/modDatabaseUtility.h"
#include "frame/modKalErrorHandling.h"

namespace kal {
namespace {

// What every line with installments reads beside its own row.
struct Lettura {
  explicit Lettura(const Registrazione& aRegistrazione)
      : totDocumentoVB(aRegistrazione.RsTesta, "TotDocumentoVB"),
        tipoMovimento(aRegistrazione.RsCausale, "IdTipoMovimento"),
        rate(aRegistrazione.RsScadenze) {}

  Campo totDocumentoVB;
  Campo tipoMovimento;
  LettoreImporti rate;
  std::string filtro;  // kept for its memory
};

bool QuadraScadenzeRiga(const Registrazione& aRegistrazione, Lettura& aLettura,
                        std::int32_t aIdScadenza, const ImportiConSegno& aRiga, bool aInValuta) {
  return Trap(aRegistrazione, "KalCOGCheck.QuadraScadenzeRiga", [&] {
    const RecordsetRef& rsScadenze = aRegistrazione.RsScadenze;
    if (GetField(aLettura.totDocumentoVB) == 0) {
      return true;
    }
    if (rsScadenze.IsNothing()) {
      return false;
    }
    aLettura.filtro.assign("IdScadenza = ").append(std::to_string(aIdScadenza));
    rsScadenze->Filter(aLettura.filtro);
    ImportiConSegno somma;
    if (!RecordsetIsEmpty(rsScadenze)) {
      for (rsScadenze->MoveFirst(); !rsScadenze->Eof(); rsScadenze->MoveNext()) {
        const ImportiConSegno rata = aLettura.rate.Leggi();
        somma.Importo += rata.Importo;
        somma.ImportoVB += rata.ImportoVB;
      }
    }
    rsScadenze->Filter("");
    return somma.ImportoVB == aRiga.ImportoVB && (!aInValuta || somma.Importo == aRiga.Importo);
  });
}

}  // namespace

void QuadraScadenze(Registrazione& aRegistrazione) {
  Trap(aRegistrazione, "KalCOGCheck.QuadraScadenze", [&] {
    const HostSet& rsRCont = aRegistrazione.RsRCont;
    const Variant codDivisaBase = SettingText(aRegistrazione, "CodDivisaBase");
    rsRCont->Filter("IdCliFor <> 0 and IdCliFor <> Null and TipoCliFor <> 3 and TipoCliFor <> 0");
    if (!RecordsetIsEmpty(rsRCont)) {
      Lettura lettura(aRegistrazione);
      LettoreImporti importi(rsRCont);
      Campo campoScadenza(rsRCont, "IdScadenza");
      Campo campoDivisa(rsRCont, "CodDivisa");
      for (rsRCont->MoveFirst(); !rsRCont->Eof(); rsRCont->MoveNext()) {
        const ImportiConSegno riga = importi.Leggi();
        const std::int32_t idScadenza = CLng(GetField(campoScadenza));
        const Variant tipoMovimento = GetField(lettura.tipoMovimento);
        if (idScadenza == 0 && (tipoMovimento == 1 || tipoMovimento == 2)) {
          continue;
        }
        const bool inValuta{GetField(campoDivisa) != codDivisaBase};
        if (!QuadraScadenzeRiga(aRegistrazione, lettura, idScadenza, riga, inValuta)) {
          AddMessage(aRegistrazione, ErrString, MessageCode::ScadenzeNonQuadrano,
                     {GetField(rsRCont, "NumeroRiga")}, rsRCont.Riga());
        }
      }
    }
    rsRCont->Filter("");
  });
}

}  // namespace kal
