// CheckInfragruppo: recognises an entry made with a company of the own group, by its header or by
// the customer, supplier or account of a line, and warns when a line gave it away.
//
// The flag is reset at the start of each check and otherwise kept. A setting that is Null does
// not stop the check. RsRCont is left on its first line.

#include "checks/Checks.h"
#include "frame/Azienda.h"
#include "frame/modCommonCostanti.h"
#include "frame/modDatabaseUtility.h"
#include "frame/modKalErrorHandling.h"

namespace kal {
namespace {

constexpr Selection kInfragruppoCliente =
    Selection().Select("Infragruppo").From("STDAnagraficaClienti").WhereEqual("IdAnagrafica");
constexpr Selection kInfragruppoFornitore =
    Selection().Select("Infragruppo").From("STDAnagraficaFornitori").WhereEqual("IdAnagrafica");
constexpr Selection kInfragruppoConto =
    Selection().Select("Infragruppo").From("STDPianoDeiConti").WhereEqual("CodConto");

bool ContoInfragruppo(const Registrazione& aRegistrazione, std::int16_t aTipoCliFor,
                      const std::string& aCodConto, std::int32_t aIdCliFor) {
  return Trap(aRegistrazione, "KalCOGCheck.ContoInfragruppo", [&] {
    const RecordsetRef anagrafica =
        aTipoCliFor == kCliente     ? Open<kInfragruppoCliente>(aRegistrazione, aIdCliFor)
        : aTipoCliFor == kFornitore ? Open<kInfragruppoFornitore>(aRegistrazione, aIdCliFor)
                                    : Open<kInfragruppoConto>(aRegistrazione, aCodConto);
    return !RecordsetIsEmpty(anagrafica) && GetFlag(anagrafica, "Infragruppo");
  });
}

}  // namespace

void CheckInfragruppo(Registrazione& aRegistrazione) {
  Trap(aRegistrazione, "KalCOGCheck.CheckInfragruppo", [&] {
    const RecordsetRef& rsTesta = aRegistrazione.RsTesta;
    const RecordsetRef& rsRCont = aRegistrazione.RsRCont;
    bool& infragruppo = aRegistrazione.Infragruppo;
    infragruppo = false;
    if (RecordsetIsEmpty(rsTesta)) {
      return;
    }
    const Variant gestito = Setting(aRegistrazione, "GestisciPNInfragruppo");
    if (!gestito.IsNull() && !CBool(gestito)) {
      return;
    }
    if (GetFlag(rsTesta, "Infragruppo")) {
      infragruppo = true;
      return;
    }
    if (RecordsetIsEmpty(rsRCont)) {
      return;
    }
    Campo campoTipo(rsRCont, "TipoCliFor");
    Campo campoConto(rsRCont, "CodConto");
    Campo campoCliFor(rsRCont, "IdCliFor");
    for (rsRCont->MoveFirst(); !rsRCont->Eof() && !infragruppo; rsRCont->MoveNext()) {
      const std::int16_t tipoCliFor = CInt(GetField(campoTipo));
      const std::string codConto = CStr(GetField(campoConto));
      const std::int32_t idCliFor = CLng(GetField(campoCliFor));
      infragruppo = ContoInfragruppo(aRegistrazione, tipoCliFor, codConto, idCliFor);
    }
    if (infragruppo) {
      AddMessage(aRegistrazione, WarnInfragruppoString, MessageCode::RegistrazioneInfragruppo);
    }
    rsRCont->MoveFirst();
  });
}

}  // namespace kal
