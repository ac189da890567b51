// CheckIncassiInSospensione: whether the entry closes, or reopens, installments of saved entries
// in VAT suspension.
//
// A closing installment closes the opening one that it points to when it stands on the opposite
// side, and reopens it when it stands on the same side. It gives no message: the host reads the
// two flags. RsScadenze is left unfiltered on its first row.

#include "checks/Checks.h"
#include "frame/Azienda.h"
#include "frame/modCommonCostanti.h"
#include "frame/modDatabaseUtility.h"
#include "frame/modKalErrorHandling.h"

namespace kal {
namespace {

constexpr Selection kAperturaInSospensione =
    Selection()
        .Option(kOpzioneLettura)
        .Select("COGScadenze.ImportoDare, COGScadenze.ImportoDareVB")
        .From("COGScadenze")
        .JoinWith(JoinKind::Inner, "COGPrimeNoteRCont")
        .On("COGScadenze.IdScadenza", "COGPrimeNoteRCont.IdScadenza")
        .JoinWith(JoinKind::Inner, "COGPrimeNoteTeste")
        .On("COGPrimeNoteRCont.IdPrimaNota", "COGPrimeNoteTeste.IdPrimaNota")
        .WhereEqual("COGScadenze.IdScadenza")
        .WhereEqual("COGScadenze.NrRata")
        .WhereEqual("COGScadenze.TipoRata")
        .WhereEqual("COGPrimeNoteTeste.InSospensione");

bool InDare(const RecordsetRef& rata) {
  return GetField(rata, "ImportoDare") != 0 || GetField(rata, "ImportoDareVB") != 0;
}

// The opening installment that the current one points to, if an entry in suspension carries it.
RecordsetRef AperturaInSospensione(const Registrazione& aRegistrazione) {
  const RecordsetRef& rsScadenze = aRegistrazione.RsScadenze;
  const Variant linkApertura = GetField(rsScadenze, "LinkApertura");
  const Variant rataApertura = GetField(rsScadenze, "RataApertura");
  return Open<kAperturaInSospensione>(aRegistrazione, linkApertura, rataApertura, kRataApertura,
                                      true);
}

}  // namespace

void CheckIncassiInSospensione(Registrazione& aRegistrazione) {
  Trap(aRegistrazione, "KalCOGCheck.CheckIncassiInSospensione", [&] {
    const RecordsetRef& rsScadenze = aRegistrazione.RsScadenze;
    aRegistrazione.ChiusuraRateInSospensione = false;
    aRegistrazione.RiaperturaRateInSospensione = false;
    if (rsScadenze.IsNothing()) {
      return;
    }
    rsScadenze->Filter("");
    if (rsScadenze->RecordCount() == 0) {
      return;
    }
    Campo tipoRata(rsScadenze, "TipoRata");
    for (rsScadenze->MoveFirst(); !rsScadenze->Eof(); rsScadenze->MoveNext()) {
      if (!(GetField(tipoRata) == kRataChiusura)) {
        continue;
      }
      const RecordsetRef apertura = AperturaInSospensione(aRegistrazione);
      if (RecordsetIsEmpty(apertura)) {
        continue;
      }
      if (InDare(apertura) == InDare(rsScadenze)) {
        aRegistrazione.RiaperturaRateInSospensione = true;
      } else {
        aRegistrazione.ChiusuraRateInSospensione = true;
      }
    }
    rsScadenze->MoveFirst();
  });
}

}  // namespace kal
