// CheckIncassiInSospensione: whether the entry closes, or reopens, installments of saved entries
// in VAT suspension.
//
// A closing installment closes the opening one that it points to when it stands on the opposite
// side, and reopens it when it stands on the same side. It gives no message: the host reads the
// two flags. RsScadenze is left unfiltered on its first row.

#include "frame/KalCOGCheck.h"
#include "frame/modCommonCostanti.h"
#include "frame/modDatabaseUtility.h"
#include "frame/modKalErrorHandling.h"

namespace kal {
namespace {

bool InDare(const RecordsetRef& rata) {
  return GetField(rata, "ImportoDare") != 0 || GetField(rata, "ImportoDareVB") != 0;
}

}  // namespace

void KalCOGCheck::CheckIncassiInSospensione() {
  Trap("KalCOGCheck.CheckIncassiInSospensione", [&] {
    chiusuraRateInSospensione_ = false;
    riaperturaRateInSospensione_ = false;
    if (rsScadenze_.IsNothing()) {
      return;
    }
    rsScadenze_->Filter("");
    if (rsScadenze_->RecordCount() == 0) {
      return;
    }
    for (rsScadenze_->MoveFirst(); !rsScadenze_->Eof(); rsScadenze_->MoveNext()) {
      if (!(GetField(rsScadenze_, "TipoRata") == kRataChiusura)) {
        continue;
      }
      const RecordsetRef apertura = AperturaInSospensione();
      if (RecordsetIsEmpty(apertura)) {
        continue;
      }
      if (InDare(apertura) == InDare(rsScadenze_)) {
        riaperturaRateInSospensione_ = true;
      } else {
        chiusuraRateInSospensione_ = true;
      }
    }
    rsScadenze_->MoveFirst();
  });
}

// The opening installment that the current one points to, if an entry in suspension carries it.
RecordsetRef KalCOGCheck::AperturaInSospensione() const {
  QueryBuilder query;
  query.Option(kOpzioneLettura)
      .Select("COGScadenze.ImportoDare, COGScadenze.ImportoDareVB")
      .From("COGScadenze")
      .JoinWith(JoinKind::Inner, "COGPrimeNoteRCont")
      .On("COGScadenze.IdScadenza", "COGPrimeNoteRCont.IdScadenza")
      .JoinWith(JoinKind::Inner, "COGPrimeNoteTeste")
      .On("COGPrimeNoteRCont.IdPrimaNota", "COGPrimeNoteTeste.IdPrimaNota")
      .WhereEqual("COGScadenze.IdScadenza", GetField(rsScadenze_, "LinkApertura"))
      .WhereEqual("COGScadenze.NrRata", GetField(rsScadenze_, "RataApertura"))
      .WhereEqual("COGScadenze.TipoRata", kRataApertura)
      .WhereEqual("COGPrimeNoteTeste.InSospensione", true);
  return Open(query);
}

}  // namespace kal
