// Split payment: a public body pays its supplier without the VAT, and the VAT to the treasury.
//
// IsDocumentoSplitPayment judges the saved entry, IsClienteSplitPayment the sales section of the
// entry under edit (despite its name). Each test is a reason to answer False, and a Null gives no
// reason. CheckEffettiSplitPayment finds bills of exchange under payment terms whose first
// installment is not the VAT alone; it leaves RsScadenze where its walk stopped, and filtered
// where there is no ordinary installment or the payment terms are not found.

#include "frame/KalCOGCheck.h"
#include "frame/Rate.h"
#include "frame/modCommonCostanti.h"
#include "frame/modDatabaseUtility.h"
#include "frame/modKalErrorHandling.h"

namespace kal {
namespace {

constexpr std::int16_t kPrimoAnno = 2015;

bool IsTrue(const Variant& value) { return !value.IsNull() && CBool(value); }
bool IsFalse(const Variant& value) { return !value.IsNull() && !CBool(value); }

bool PrimaDelRegime(const Variant& data) { return !data.IsNull() && Year(data) < kPrimoAnno; }

}  // namespace

bool KalCOGCheck::IsDocumentoSplitPayment() {
  return Trap("KalCOGCheck.IsDocumentoSplitPayment", [&] {
    const Variant dataInizio = Setting("DataInizioSplitPayment");
    const bool aziendaSplit = SettingFlag("AziendaSplitPayment");
    QueryBuilder query;
    query.Select("IdPrimaNota, DataRegistrazione, DataDocumento, DataCompetenza, NumeroDocumento")
        .Select("TotImposta, TotDocumento, TotImpostaVB, TotDocumentoVB")
        .Select("SegnoIVA, Partita, COGPrimeNoteTeste.TipoRegIva, CodDivisa, Fixing")
        .Select("IdLink, COGPrimeNoteTeste.SezionaleIva, Splitpayment, SoggettoSplitPayment")
        .From("COGPrimeNoteTeste")
        .JoinWith(JoinKind::Inner, "COGCausaliContabili")
        .On("COGPrimeNoteTeste.CodCausale", "COGCausaliContabili.CodCausale")
        .JoinWith(JoinKind::LeftOuter, "STDAnagraficaClienti")
        .On("COGPrimeNoteTeste.IdAnagrafica", "STDAnagraficaClienti.IdAnagrafica")
        .JoinWith(JoinKind::LeftOuter, "COGNumerazioniIva")
        .On("COGPrimeNoteTeste.SezionaleIva", "COGNumerazioniIva.SezionaleIva")
        .On("COGPrimeNoteTeste.TipoRegIva", "COGNumerazioniIva.TipoRegIva")
        .On("Year(COGPrimeNoteTeste.DataRegistrazione)", "COGNumerazioniIva.Anno")
        .WhereEqual("COGPrimeNoteTeste.IdPrimaNota", GetField(rsTesta_, "IdPrimaNota"));
    const RecordsetRef salvata = Open(query);
    if (RecordsetIsEmpty(salvata)) {
      return false;
    }
    const Variant tipoRegIva = salvata->Fields("TipoRegIva").Value();
    if (tipoRegIva == kVendite) {
      return !IsFalse(salvata->Fields("SoggettoSplitPayment").Value()) &&
             !PrimaDelRegime(salvata->Fields("DataRegistrazione").Value()) &&
             !IsFalse(salvata->Fields("SplitPayment").Value());
    }
    if (tipoRegIva == kAcquisti) {
      if (dataInizio.IsNull() || dataInizio == "") {
        return aziendaSplit;
      }
      const bool primaDellInizio{salvata->Fields("DataDocumento").Value() < dataInizio};
      return !primaDellInizio;
    }
    return true;  // callers only ask about sales and purchases
  });
}

bool KalCOGCheck::IsClienteSplitPayment() {
  return Trap("KalCOGCheck.IsClienteSplitPayment", [&] {
    const std::int16_t anno = Year(GetField(rsTesta_, "DataRegistrazione"));
    if (anno < kPrimoAnno) {
      return false;
    }
    QueryBuilder query;
    query.Select("Splitpayment")
        .From("COGNumerazioniIva")
        .WhereEqual("COGNumerazioniIva.SezionaleIva", GetField(rsTesta_, "SezionaleIva"))
        .WhereEqual("COGNumerazioniIva.TipoRegIva", kVendite)
        .WhereEqual("COGNumerazioniIva.Anno", anno);
    const RecordsetRef numerazione = Open(query);
    return !RecordsetIsEmpty(numerazione) && !IsFalse(numerazione->Fields("SplitPayment").Value());
  });
}

bool KalCOGCheck::CheckEffettiSplitPayment(const std::string& aCodPagamento) {
  return Trap("KalCOGCheck.CheckEffettiSplitPayment", [&] {
    constexpr std::int32_t kPrimaRataSoloIva = 2;
    if (rsScadenze_.IsNothing() || !IsClienteSplitPayment()) {
      return false;
    }
    rsScadenze_->Filter(kFiltroRateOrdinarie);
    if (RecordsetIsEmpty(rsScadenze_)) {
      return false;
    }
    const std::size_t rata = PrimaRataConEffetto();
    if (rata == 0) {
      rsScadenze_->Filter("");
      VaiAllaFine(*rsScadenze_);
      return false;
    }
    QueryBuilder query;
    query.Select("TipoGestioneIva")
        .From("STDCondizioniPagamentoTeste")
        .WhereEqual("CodPagamento", aCodPagamento);
    const RecordsetRef condizioni = Open(query);
    if (RecordsetIsEmpty(condizioni)) {
      return false;
    }
    const bool problema = CLng(condizioni->Fields("TipoGestioneIva").Value()) != kPrimaRataSoloIva;
    rsScadenze_->Filter("");
    VaiAllaRataOrdinaria(*rsScadenze_, rata);
    return problema;
  });
}

// The place of the first visible installment paid by bill, counted from 1, the set being left on
// it; 0 with the set at its end. A payment type missing from its table is passed over.
std::size_t KalCOGCheck::PrimaRataConEffetto() {
  QueryBuilder query;
  query.Select("Effetto").From("STDTipologiePagamento");
  std::size_t rata = 1;
  for (rsScadenze_->MoveFirst(); !rsScadenze_->Eof(); rsScadenze_->MoveNext(), ++rata) {
    query.ClearConditions().WhereEqual("IdTipologiaPagamento",
                                       GetField(rsScadenze_, "IdTipologiaPagamento"));
    const RecordsetRef tipologia = Open(query);
    if (!RecordsetIsEmpty(tipologia) && IsTrue(tipologia->Fields("Effetto").Value())) {
      return rata;
    }
  }
  return 0;
}

}  // namespace kal
