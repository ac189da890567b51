// CheckInfragruppo: recognises an entry made with a company of the own group, by its header or by
// the customer, supplier or account of a line, and warns when a line gave it away.
//
// The flag is reset at the start of each check and otherwise kept. A setting that is Null does
// not stop the check. RsRCont is left on its first line.

#include "frame/KalCOGCheck.h"
#include "frame/modCommonCostanti.h"
#include "frame/modDatabaseUtility.h"
#include "frame/modKalErrorHandling.h"

namespace kal {

void KalCOGCheck::CheckInfragruppo() {
  Trap("KalCOGCheck.CheckInfragruppo", [&] {
    infragruppo_ = false;
    if (RecordsetIsEmpty(rsTesta_)) {
      return;
    }
    const Variant gestito = Setting("GestisciPNInfragruppo");
    if (!gestito.IsNull() && !CBool(gestito)) {
      return;
    }
    if (GetFlag(rsTesta_, "Infragruppo")) {
      infragruppo_ = true;
      return;
    }
    if (RecordsetIsEmpty(rsRCont_)) {
      return;
    }
    for (rsRCont_->MoveFirst(); !rsRCont_->Eof() && !infragruppo_; rsRCont_->MoveNext()) {
      const std::int16_t tipoCliFor = CInt(GetField(rsRCont_, "TipoCliFor"));
      const std::string codConto = CStr(GetField(rsRCont_, "CodConto"));
      const std::int32_t idCliFor = CLng(GetField(rsRCont_, "IdCliFor"));
      ContoInfragruppo(tipoCliFor, codConto, idCliFor, infragruppo_);
    }
    if (infragruppo_) {
      AddMessage(warnInfragruppoString_, MessageCode::RegistrazioneInfragruppo);
    }
    rsRCont_->MoveFirst();
  });
}

void KalCOGCheck::ContoInfragruppo(std::int16_t aTipoCliFor, const std::string& aCodConto,
                                   std::int32_t aIdCliFor, bool& aInfragruppo) {
  Trap("KalCOGCheck.ContoInfragruppo", aInfragruppo, [&] {
    aInfragruppo = false;
    QueryBuilder query;
    query.Select("Infragruppo");
    switch (aTipoCliFor) {
      case kCliente:
        query.From("STDAnagraficaClienti").WhereEqual("IdAnagrafica", aIdCliFor);
        break;
      case kFornitore:
        query.From("STDAnagraficaFornitori").WhereEqual("IdAnagrafica", aIdCliFor);
        break;
      default:
        query.From("STDPianoDeiConti").WhereEqual("CodConto", aCodConto);
    }
    const RecordsetRef anagrafica = Open(query);
    if (!RecordsetIsEmpty(anagrafica)) {
      aInfragruppo = GetFlag(anagrafica, "Infragruppo");
    }
  });
}

}  // namespace kal
