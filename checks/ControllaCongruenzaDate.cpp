// ControllaCongruenzaDate: the competence date lies in a known fiscal year, an adjustment stands
// on its period's date, and the document is neither later than its registration nor, on sales,
// of another month. Only month numbers are compared, so the same month of another year passes.
//
// TestEsercizioCompetenza: opening entries are dated on the first day of their fiscal year and
// closing entries on the last; the year is not closed. An opening or closing entry on its day may
// enter a closed year.
//
// CheckPeriodoLiquidato: the VAT settlement of the date's month or quarter is not final yet. A
// settlement that does not say counts as final.

#include "checks/Checks.h"
#include "frame/Azienda.h"
#include "frame/modCommonCostanti.h"
#include "frame/modDatabaseUtility.h"
#include "frame/modKalErrorHandling.h"

namespace kal {
namespace {

constexpr Selection kEsercizio = Selection()
                                     .Option(kOpzioneLettura)
                                     .Select("CodEsercizio")
                                     .From("STDEsercizi")
                                     .Where("DataInizio", CompareWith::LessOrEqual)
                                     .Where("DataFine", CompareWith::GreaterOrEqual);
constexpr Selection kParametriIva = Selection()
                                        .Option(kOpzioneLettura)
                                        .Select("IvaTrimestrale")
                                        .From("COGParametriIva")
                                        .WhereEqual("Anno");
constexpr Selection kLiquidazione = Selection()
                                        .Option(kOpzioneLettura)
                                        .Select("ValoriDefinitivi")
                                        .From("COGIvaLiquidazioni")
                                        .WhereEqual("Anno")
                                        .WhereEqual("Periodo");

}  // namespace

void ControllaCongruenzaDate(Registrazione& aRegistrazione) {
  const RecordsetRef& rsTesta = aRegistrazione.RsTesta;
  const Variant dataReg = GetField(rsTesta, "DataRegistrazione");
  const Variant dataDoc = GetField(rsTesta, "DataDocumento");
  const Variant dataCompetenza = GetField(rsTesta, "DataCompetenza");
  Trap(aRegistrazione, "KalCOGCheck.ControllaCongruenzaDate", [&] {
    if (RecordsetIsEmpty(Open<kEsercizio>(aRegistrazione, dataCompetenza, dataCompetenza))) {
      AddMessage(aRegistrazione, ErrString, MessageCode::EsercizioCompetenzaInesistente);
    }
    if (GetFlag(rsTesta, "Rettifica")) {
      const Variant dataPeriodo =
          VatCodes(aRegistrazione.Siblings)
              .PeriodReferenceDate(Month(dataCompetenza), Year(dataCompetenza));
      if (dataPeriodo != dataCompetenza) {
        AddMessage(aRegistrazione, ErrString, MessageCode::RettificaFuoriPeriodo);
      }
    }
    if (dataDoc != "") {
      if (dataDoc > dataReg) {
        AddMessage(aRegistrazione, ErrString, MessageCode::DocumentoDopoRegistrazione);
      }
      if (aRegistrazione.CausaleCorrente.TipoRegIva == kVendite &&
          Month(dataReg) != Month(dataDoc)) {
        AddMessage(aRegistrazione, ErrString, MessageCode::MeseDocumentoDiverso);
      }
    }
  });
}

void TestEsercizioCompetenza(Registrazione& aRegistrazione) {
  const Variant dataCompetenza = GetField(aRegistrazione.RsTesta, "DataCompetenza");
  Trap(aRegistrazione, "KalCOGCheck.TestEsercizioCompetenza", [&] {
    const std::int16_t tipoMovimento = aRegistrazione.Corsa.TipoMovimentoEsercizio;
    CompanySettings esercizio(aRegistrazione.Siblings);
    if (!esercizio.SelectFiscalYear(dataCompetenza)) {
      return;
    }
    if (tipoMovimento == kMovimentoApertura) {
      if (esercizio.FiscalYearField("DataInizio") == dataCompetenza) {
        return;
      }
      AddMessage(aRegistrazione, ErrString, MessageCode::AperturaNonInizioEsercizio);
    }
    if (tipoMovimento == kMovimentoChiusura) {
      if (esercizio.FiscalYearField("DataFine") == dataCompetenza) {
        return;
      }
      AddMessage(aRegistrazione, ErrString, MessageCode::ChiusuraNonFineEsercizio);
    }
    const Variant chiuso = esercizio.FiscalYearField("EsercizioChiuso");
    if (!chiuso.IsNull() && CBool(chiuso)) {
      AddMessage(aRegistrazione, ErrString, MessageCode::EsercizioCompetenzaChiuso);
    }
  });
}

void CheckPeriodoLiquidato(Registrazione& aRegistrazione, const Variant& aData,
                           ResultString aTarget) {
  Trap(aRegistrazione, "KalCOGCheck.CheckPeriodoLiquidato", [&] {
    const int mese = Month(aData);
    const std::int16_t anno = Year(aData);
    const RecordsetRef parametriIva = Open<kParametriIva>(aRegistrazione, anno);
    if (RecordsetIsEmpty(parametriIva)) {
      return;
    }
    const int periodo = GetFlag(parametriIva, "IvaTrimestrale") ? (mese - 1) / 3 + 1 : mese;
    const RecordsetRef liquidazione = Open<kLiquidazione>(aRegistrazione, anno, periodo);
    if (RecordsetIsEmpty(liquidazione)) {
      return;
    }
    const Variant definitivi = RawField(liquidazione, "ValoriDefinitivi");
    if (definitivi.IsNull() || CBool(definitivi)) {
      AddMessage(aRegistrazione, aTarget, MessageCode::PeriodoIvaLiquidato);
    }
  });
}

}  // namespace kal
