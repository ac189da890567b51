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

#include "frame/KalCOGCheck.h"
#include "frame/modCommonCostanti.h"
#include "frame/modDatabaseUtility.h"
#include "frame/modKalErrorHandling.h"

namespace kal {

void KalCOGCheck::ControllaCongruenzaDate(const Variant& aDataReg, const Variant& aDataDoc,
                                          const Variant& aDataCompetenza,
                                          std::int16_t aTipoRegIva) {
  Trap("KalCOGCheck.ControllaCongruenzaDate", [&] {
    QueryBuilder query;
    query.Option(kOpzioneLettura)
        .Select("CodEsercizio")
        .From("STDEsercizi")
        .Where("DataInizio", CompareWith::LessOrEqual, aDataCompetenza)
        .Where("DataFine", CompareWith::GreaterOrEqual, aDataCompetenza);
    if (RecordsetIsEmpty(Open(query))) {
      AddMessage(errString_, MessageCode::EsercizioCompetenzaInesistente);
    }
    if (GetFlag(rsTesta_, "Rettifica")) {
      const Variant dataPeriodo = siblings_.CreateVatCodes()->PeriodReferenceDate(
          Month(aDataCompetenza), Year(aDataCompetenza));
      if (dataPeriodo != aDataCompetenza) {
        AddMessage(errString_, MessageCode::RettificaFuoriPeriodo);
      }
    }
    if (aDataDoc != "") {
      if (aDataDoc > aDataReg) {
        AddMessage(errString_, MessageCode::DocumentoDopoRegistrazione);
      }
      if (aTipoRegIva == kVendite && Month(aDataReg) != Month(aDataDoc)) {
        AddMessage(errString_, MessageCode::MeseDocumentoDiverso);
      }
    }
  });
}

void KalCOGCheck::TestEsercizioCompetenza(const Variant& aDataCompetenza,
                                          std::int16_t aTipoMovimento) {
  Trap("KalCOGCheck.TestEsercizioCompetenza", [&] {
    constexpr std::int16_t kApertura = 0;
    constexpr std::int16_t kChiusura = 2;
    const auto esercizio = siblings_.CreateCompanySettings();
    if (!esercizio->SelectFiscalYear(aDataCompetenza)) {
      return;
    }
    if (aTipoMovimento == kApertura) {
      if (esercizio->FiscalYearField("DataInizio") == aDataCompetenza) {
        return;
      }
      AddMessage(errString_, MessageCode::AperturaNonInizioEsercizio);
    }
    if (aTipoMovimento == kChiusura) {
      if (esercizio->FiscalYearField("DataFine") == aDataCompetenza) {
        return;
      }
      AddMessage(errString_, MessageCode::ChiusuraNonFineEsercizio);
    }
    const Variant chiuso = esercizio->FiscalYearField("EsercizioChiuso");
    if (!chiuso.IsNull() && CBool(chiuso)) {
      AddMessage(errString_, MessageCode::EsercizioCompetenzaChiuso);
    }
  });
}

void KalCOGCheck::CheckPeriodoLiquidato(const Variant& aData, std::string& aTarget) {
  Trap("KalCOGCheck.CheckPeriodoLiquidato", [&] {
    const int mese = Month(aData);
    const std::int16_t anno = Year(aData);
    QueryBuilder parametri;
    parametri.Option(kOpzioneLettura)
        .Select("IvaTrimestrale")
        .From("COGParametriIva")
        .WhereEqual("Anno", anno);
    const RecordsetRef parametriIva = Open(parametri);
    if (RecordsetIsEmpty(parametriIva)) {
      return;
    }
    const int periodo = GetFlag(parametriIva, "IvaTrimestrale") ? (mese - 1) / 3 + 1 : mese;
    QueryBuilder query;
    query.Option(kOpzioneLettura)
        .Select("ValoriDefinitivi")
        .From("COGIvaLiquidazioni")
        .WhereEqual("Anno", anno)
        .WhereEqual("Periodo", periodo);
    const RecordsetRef liquidazione = Open(query);
    if (RecordsetIsEmpty(liquidazione)) {
      return;
    }
    const Variant definitivi = liquidazione->Fields("ValoriDefinitivi").Value();
    if (definitivi.IsNull() || CBool(definitivi)) {
      AddMessage(aTarget, MessageCode::PeriodoIvaLiquidato);
    }
  });
}

}  // namespace kal
