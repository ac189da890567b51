// ParametriIvaOk: the company's VAT parameters exist for the year of the VAT date; by activity
// where the company keeps its VAT activities separately.
//
// No date, or no activity code where activities are kept separately, asks for nothing.

#include "checks/Checks.h"
#include "frame/Azienda.h"
#include "frame/modCommonCostanti.h"
#include "frame/modDatabaseUtility.h"
#include "frame/modKalErrorHandling.h"

namespace kal {
namespace {

constexpr Selection kParametri =
    Selection().Option(kOpzioneLettura).Select("*").From("COGParametriIva").WhereEqual("Anno");
constexpr Selection kParametriDiAttivita = Selection()
                                               .Option(kOpzioneLettura)
                                               .Select("*")
                                               .From("COGParametriIvaAttivitaRighe")
                                               .WhereEqual("Anno")
                                               .WhereEqual("CodAttivita");

}  // namespace

bool ParametriIvaOk(Registrazione& aRegistrazione, const Variant& aData) {
  return Trap(aRegistrazione, "KalCOGCheck.ParametriIvaOk", [&] {
    if (aData == "") {
      return true;
    }
    const bool attivitaSeparate = SettingFlag(aRegistrazione, "AttivitaSeparateIva");
    const Variant codAttivita = GetField(aRegistrazione.RsTesta, "CodAttivita");
    if (codAttivita == "" && attivitaSeparate) {
      return true;
    }
    return !RecordsetIsEmpty(
        attivitaSeparate ? Open<kParametriDiAttivita>(aRegistrazione, Year(aData), codAttivita)
                         : Open<kParametri>(aRegistrazione, Year(aData)));
  });
}

void SegnalaParametriIva(Registrazione& aRegistrazione) {
  Esecuzione& corsa = aRegistrazione.Corsa;
  corsa.ParametriOk = ParametriIvaOk(aRegistrazione, corsa.DataIvaControllo);
  if (!corsa.ParametriOk) {
    AddMessage(aRegistrazione, ErrString, MessageCode::ParametriIvaMancanti,
               {Year(corsa.DataIvaControllo)});
  }
}

}  // namespace kal
