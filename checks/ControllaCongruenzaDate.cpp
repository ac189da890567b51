// ControllaCongruenzaDate: the competence date lies in a known fiscal year, an adjustment stands
// on its period's date, and the document is neither later than its registration nor, on sales,
// of another month. Only month numbers are compared, so the same month of another year passes.
// Dates are calendar days here, whatever time of day a host's record set gives them.
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
namespace {

// An empty date stays as it is.
Variant SoloGiorno(const Variant& data) {
  const auto* date = data.As<Date>();
  return date == nullptr ? data : *Date::FromYmd(date->Year(), date->Month(), date->Day());
}

}  // namespace

void KalCOGCheck::ControllaCongruenzaDate(const Variant& aDataReg, const Variant& aDataDoc,
                                          const Variant& aDataCompetenza,
                                          std::int16_t aTipoRegIva) {
  Trap("KalCOGCheck.ControllaCongruenzaDate", [&] {
    const Variant dataReg = SoloGiorno(aDataReg);
    const Variant dataDoc = SoloGiorno(aDataDoc);
    const Variant dataCompetenza = SoloGiorno(aDataCompetenza);
    QueryBuilder query;
    query.Option(kOpzioneLettura)
        .Select("CodEsercizio")
        .From("STDEsercizi")
        .Where("DataInizio", CompareWith::LessOrEqual, dataCompetenza)
        .Where("DataFine", CompareWith::GreaterOrEqual, dataCompetenza);
    if (RecordsetIsEmpty(Open(query))) {
      AddMessage(errString_, MessageCode::EsercizioCompetenzaInesistente);
    }
    if (GetFlag(rsTesta_, "Rettifica")) {
      const Variant dataPeriodo = siblings_.CreateVatCodes()->PeriodReferenceDate(
          Month(dataCompetenza), Year(dataCompetenza));
      if (SoloGiorno(dataPeriodo) != dataCompetenza) {
        AddMessage(errString_, MessageCode::RettificaFuoriPeriodo);
      }
    }
    if (dataDoc != "") {
      if (dataDoc > dataReg) {
        AddMessage(errString_, MessageCode::DocumentoDopoRegistrazione);
      }
      if (aTipoRegIva == kVendite && Month(dataReg) != Month(dataDoc)) {
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
    const Variant dataCompetenza = SoloGiorno(aDataCompetenza);
    const auto esercizio = siblings_.CreateCompanySettings();
    if (!esercizio->SelectFiscalYear(dataCompetenza)) {
      return;
    }
    if (aTipoMovimento == kApertura) {
      if (SoloGiorno(esercizio->FiscalYearField("DataInizio")) == dataCompetenza) {
        return;
      }
      AddMessage(errString_, MessageCode::AperturaNonInizioEsercizio);
    }
    if (aTipoMovimento == kChiusura) {
      if (SoloGiorno(esercizio->FiscalYearField("DataFine")) == dataCompetenza) {
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
