// CheckDateScadenza: every installment has a valid due date. RsScadenze is left unfiltered at its
// end; a set without rows stays as it is.
//
// CheckBanca: an ordinary installment paid by bill of exchange names the customer's bank. A
// payment type missing from its table is passed over. RsScadenze is left unfiltered at its end,
// or on the offending installment; where no ordinary installment is visible the filter stays set.

#include "checks/Checks.h"
#include "frame/Azienda.h"
#include "frame/Rate.h"
#include "frame/modCommonCostanti.h"
#include "frame/modDatabaseUtility.h"
#include "frame/modKalErrorHandling.h"

namespace kal {
namespace {

constexpr Selection kTipologia = Selection()
                                     .Option(kOpzioneLettura)
                                     .Select("Effetto")
                                     .From("STDTipologiePagamento")
                                     .WhereEqual("IdTipologiaPagamento");

bool SenzaBanca(const Registrazione& aRegistrazione, const RecordsetRef& aRata) {
  const RecordsetRef tipologia =
      Open<kTipologia>(aRegistrazione, GetField(aRata, "IdTipologiaPagamento"));
  if (RecordsetIsEmpty(tipologia)) {
    return false;
  }
  const bool effetto = GetFlag(tipologia, "Effetto");
  const Variant idBancaCliente = GetField(aRata, "IdBancaCliente");
  return effetto && idBancaCliente == 0;
}

}  // namespace

bool CheckDateScadenza(Registrazione& aRegistrazione) {
  return Trap(aRegistrazione, "KalCOGCheck.CheckDateScadenza", [&] {
    const RecordsetRef& rsScadenze = aRegistrazione.RsScadenze;
    bool ok = true;
    if (rsScadenze.IsNothing()) {
      return ok;
    }
    rsScadenze->Filter(FilterGroup::None);
    if (rsScadenze->RecordCount() == 0) {
      return ok;
    }
    Campo dataScadenza(rsScadenze, "DataScadenza");
    for (rsScadenze->MoveFirst(); !rsScadenze->Eof(); rsScadenze->MoveNext()) {
      if (!IsDate(dataScadenza.Value())) {
        rsScadenze->MoveLast();
        ok = false;
      }
    }
    rsScadenze->Filter(FilterGroup::None);
    VaiAllaFine(*rsScadenze);
    return ok;
  });
}

void SegnalaDateScadenza(Registrazione& aRegistrazione) {
  if (!CheckDateScadenza(aRegistrazione)) {
    AddMessage(aRegistrazione, WarnString, MessageCode::DataScadenzaNonValida);
  }
}

bool CheckBanca(Registrazione& aRegistrazione) {
  return Trap(aRegistrazione, "KalCOGCheck.CheckBanca", [&] {
    const RecordsetRef& rsScadenze = aRegistrazione.RsScadenze;
    if (rsScadenze.IsNothing()) {
      return true;
    }
    rsScadenze->Filter(kFiltroRateOrdinarie);
    if (RecordsetIsEmpty(rsScadenze)) {
      return true;
    }
    std::size_t rata = 1;
    bool ok = true;
    for (rsScadenze->MoveFirst(); !rsScadenze->Eof(); rsScadenze->MoveNext(), ++rata) {
      if (SenzaBanca(aRegistrazione, rsScadenze)) {
        ok = false;
        break;
      }
    }
    rsScadenze->Filter("");
    if (ok) {
      VaiAllaFine(*rsScadenze);
    } else {
      VaiAllaRataOrdinaria(*rsScadenze, rata);
    }
    return ok;
  });
}

void SegnalaBanca(Registrazione& aRegistrazione) {
  if (!CheckBanca(aRegistrazione)) {
    AddMessage(aRegistrazione, WarnString, MessageCode::BancaClienteMancante, {},
               aRegistrazione.RsScadenze.Riga(), "CheckBanca");
  }
}

}  // namespace kal
