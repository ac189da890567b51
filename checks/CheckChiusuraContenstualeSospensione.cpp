// CheckChiusuraContenstualeSospensione: an entry in VAT suspension does not close installments
// that it opens itself.
//
// It looks into the host's own table of installments, by the name that the host gave. It answers
// nothing: the message is all that counts.

#include "checks/Checks.h"
#include "frame/Azienda.h"
#include "frame/modCommonCostanti.h"
#include "frame/modDatabaseUtility.h"
#include "frame/modKalErrorHandling.h"

namespace kal {
namespace {

constexpr Selection kChiusure = Selection()
                                    .Option(kOpzioneLettura)
                                    .Select("Chiu.IdScadenza")
                                    .From("? as Chiu")
                                    .JoinWith(JoinKind::Inner, "? as Ape")
                                    .On("Chiu.LinkApertura", "Ape.IdScadenza")
                                    .On("Chiu.RataApertura", "Ape.NrRata")
                                    .WhereEqual("Chiu.TipoRata");

}  // namespace

void CheckChiusuraContenstualeSospensione(Registrazione& aRegistrazione) {
  Trap(aRegistrazione, "KalCOGCheck.CheckChiusuraContenstualeSospensione", [&] {
    // The host may assign another name while the company is asked.
    const std::string tabella = aRegistrazione.TmpTableScadenze;
    const RecordsetRef chiusure = OpenNamed<kChiusure>(aRegistrazione, tabella, kRataChiusura);
    if (!RecordsetIsEmpty(chiusure)) {
      AddMessage(aRegistrazione, ErrString, MessageCode::ChiusuraContestuale);
    }
  });
}

}  // namespace kal
