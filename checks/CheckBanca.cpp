// CheckDateScadenza: every installment has a valid due date. RsScadenze is left unfiltered at its
// end; a set without rows stays as it is.
//
// CheckBanca: an ordinary installment paid by bill of exchange names the customer's bank. A
// payment type missing from its table is passed over. RsScadenze is left unfiltered at its end,
// or on the offending installment; where no ordinary installment is visible the filter stays set.

#include "frame/KalCOGCheck.h"
#include "frame/Rate.h"
#include "frame/modCommonCostanti.h"
#include "frame/modDatabaseUtility.h"
#include "frame/modKalErrorHandling.h"

namespace kal {

void KalCOGCheck::CheckDateScadenza(bool& aOk) {
  Trap("KalCOGCheck.CheckDateScadenza", aOk, [&] {
    aOk = true;
    if (rsScadenze_.IsNothing()) {
      return;
    }
    rsScadenze_->Filter(FilterGroup::None);
    if (rsScadenze_->RecordCount() == 0) {
      return;
    }
    const Field& dataScadenza = rsScadenze_->Fields("DataScadenza");
    for (rsScadenze_->MoveFirst(); !rsScadenze_->Eof(); rsScadenze_->MoveNext()) {
      if (!IsDate(dataScadenza.Value())) {
        rsScadenze_->MoveLast();
        aOk = false;
      }
    }
    rsScadenze_->Filter(FilterGroup::None);
    VaiAllaFine(*rsScadenze_);
  });
}

void KalCOGCheck::CheckBanca(bool& aOk) {
  Trap("KalCOGCheck.CheckBanca", aOk, [&] {
    aOk = true;
    if (rsScadenze_.IsNothing()) {
      return;
    }
    rsScadenze_->Filter(kFiltroRateOrdinarie);
    if (RecordsetIsEmpty(rsScadenze_)) {
      return;
    }
    QueryBuilder query;
    query.Option(kOpzioneLettura).Select("Effetto").From("STDTipologiePagamento");
    std::size_t rata = 1;
    for (rsScadenze_->MoveFirst(); !rsScadenze_->Eof(); rsScadenze_->MoveNext(), ++rata) {
      query.ClearConditions().WhereEqual("IdTipologiaPagamento",
                                         GetField(rsScadenze_, "IdTipologiaPagamento"));
      const RecordsetRef tipologia = Open(query);
      if (RecordsetIsEmpty(tipologia)) {
        continue;
      }
      const bool effetto = GetFlag(tipologia, "Effetto");
      const Variant idBancaCliente = GetField(rsScadenze_, "IdBancaCliente");
      if (effetto && idBancaCliente == 0) {
        aOk = false;
        break;
      }
    }
    rsScadenze_->Filter("");
    if (aOk) {
      VaiAllaFine(*rsScadenze_);
    } else {
      VaiAllaRataOrdinaria(*rsScadenze_, rata);
    }
  });
}

}  // namespace kal
