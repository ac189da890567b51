// Split payment: a public body pays its supplier without the VAT, and the VAT to the treasury.
//
// IsDocumentoSplitPayment judges the saved entry, IsClienteSplitPayment the sales section of the
// entry under edit (despite its name). Each test is a reason to answer False, and a Null gives no
// reason. CheckEffettiSplitPayment finds bills of exchange under payment terms whose first
// installment is not the VAT alone; it leaves RsScadenze where its walk stopped, and filtered
// where there is no ordinary installment or the payment terms are not found.

#include "frame/Azienda.h"
#include "frame/Rate.h"
#include "frame/modCommonCostanti.h"
#include "frame/modDatabaseUtility.h"
#include "frame/modKalErrorHandling.h"
#include "modify/Modify.h"

namespace kal {
namespace {

constexpr std::int16_t kPrimoAnno = 2015;

constexpr Selection kSalvata =
    Selection()
        .Select("IdPrimaNota, DataRegistrazione, DataDocumento, DataCompetenza, NumeroDocumento")
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
        .WhereEqual("COGPrimeNoteTeste.IdPrimaNota");
constexpr Selection kSezionaleVendite = Selection()
                                            .Select("Splitpayment")
                                            .From("COGNumerazioniIva")
                                            .WhereEqual("COGNumerazioniIva.SezionaleIva")
                                            .WhereEqual("COGNumerazioniIva.TipoRegIva")
                                            .WhereEqual("COGNumerazioniIva.Anno");
constexpr Selection kCondizioni = Selection()
                                      .Select("TipoGestioneIva")
                                      .From("STDCondizioniPagamentoTeste")
                                      .WhereEqual("CodPagamento");
constexpr Selection kTipologia =
    Selection().Select("Effetto").From("STDTipologiePagamento").WhereEqual("IdTipologiaPagamento");

bool IsTrue(const Variant& value) { return !value.IsNull() && CBool(value); }
bool IsFalse(const Variant& value) { return !value.IsNull() && !CBool(value); }

bool PrimaDelRegime(const Variant& data) { return !data.IsNull() && Year(data) < kPrimoAnno; }

// The place of the first visible installment paid by bill, counted from 1, the set being left on
// it; 0 with the set at its end. A payment type missing from its table is passed over.
std::size_t PrimaRataConEffetto(const Registrazione& aRegistrazione) {
  const RecordsetRef& rsScadenze = aRegistrazione.RsScadenze;
  std::size_t rata = 1;
  for (rsScadenze->MoveFirst(); !rsScadenze->Eof(); rsScadenze->MoveNext(), ++rata) {
    const RecordsetRef tipologia =
        Open<kTipologia>(aRegistrazione, GetField(rsScadenze, "IdTipologiaPagamento"));
    if (!RecordsetIsEmpty(tipologia) && IsTrue(RawField(tipologia, "Effetto"))) {
      return rata;
    }
  }
  return 0;
}

}  // namespace

bool IsDocumentoSplitPayment(const Registrazione& aRegistrazione) {
  return Trap(aRegistrazione, "KalCOGCheck.IsDocumentoSplitPayment", [&] {
    const Variant dataInizio = Setting(aRegistrazione, "DataInizioSplitPayment");
    const bool aziendaSplit = SettingFlag(aRegistrazione, "AziendaSplitPayment");
    const RecordsetRef salvata =
        Open<kSalvata>(aRegistrazione, GetField(aRegistrazione.RsTesta, "IdPrimaNota"));
    if (RecordsetIsEmpty(salvata)) {
      return false;
    }
    const Variant tipoRegIva = RawField(salvata, "TipoRegIva");
    if (tipoRegIva == kVendite) {
      return !IsFalse(RawField(salvata, "SoggettoSplitPayment")) &&
             !PrimaDelRegime(RawField(salvata, "DataRegistrazione")) &&
             !IsFalse(RawField(salvata, "SplitPayment"));
    }
    if (tipoRegIva == kAcquisti) {
      if (dataInizio.IsNull() || dataInizio == "") {
        return aziendaSplit;
      }
      const bool primaDellInizio{RawField(salvata, "DataDocumento") < dataInizio};
      return !primaDellInizio;
    }
    return true;  // callers only ask about sales and purchases
  });
}

bool IsClienteSplitPayment(const Registrazione& aRegistrazione) {
  return Trap(aRegistrazione, "KalCOGCheck.IsClienteSplitPayment", [&] {
    const RecordsetRef& rsTesta = aRegistrazione.RsTesta;
    const std::int16_t anno = Year(GetField(rsTesta, "DataRegistrazione"));
    if (anno < kPrimoAnno) {
      return false;
    }
    const RecordsetRef numerazione =
        Open<kSezionaleVendite>(aRegistrazione, GetField(rsTesta, "SezionaleIva"), kVendite, anno);
    return !RecordsetIsEmpty(numerazione) && !IsFalse(RawField(numerazione, "SplitPayment"));
  });
}

bool CheckEffettiSplitPayment(Registrazione& aRegistrazione, const std::string& aCodPagamento) {
  return Trap(aRegistrazione, "KalCOGCheck.CheckEffettiSplitPayment", [&] {
    constexpr std::int32_t kPrimaRataSoloIva = 2;
    const RecordsetRef& rsScadenze = aRegistrazione.RsScadenze;
    if (rsScadenze.IsNothing() || !IsClienteSplitPayment(aRegistrazione)) {
      return false;
    }
    rsScadenze->Filter(kFiltroRateOrdinarie);
    if (RecordsetIsEmpty(rsScadenze)) {
      return false;
    }
    const std::size_t rata = PrimaRataConEffetto(aRegistrazione);
    if (rata == 0) {
      rsScadenze->Filter("");
      VaiAllaFine(*rsScadenze);
      return false;
    }
    const RecordsetRef condizioni = Open<kCondizioni>(aRegistrazione, aCodPagamento);
    if (RecordsetIsEmpty(condizioni)) {
      return false;
    }
    const bool problema = CLng(RawField(condizioni, "TipoGestioneIva")) != kPrimaRataSoloIva;
    rsScadenze->Filter("");
    VaiAllaRataOrdinaria(*rsScadenze, rata);
    return problema;
  });
}

void SegnalaEffettiSplitPayment(Registrazione& aRegistrazione) {
  if (CheckEffettiSplitPayment(aRegistrazione,
                               CStr(GetField(aRegistrazione.RsTesta, "CodPagamento")))) {
    AppendLiteral(aRegistrazione, WarnString, testi::kEffettiSplitPayment,
                  aRegistrazione.RsScadenze.Riga());
  }
}

}  // namespace kal
