// Whether a date of the ledger is frozen: its general journal or VAT register printed on the
// official pages, its fiscal year closed. The lookups give no message. A printed flag that is
// Null is an error: nobody may guess whether a book is printed.

#include "frame/KalCOGCheck.h"
#include "frame/modCommonCostanti.h"
#include "frame/modDatabaseUtility.h"
#include "frame/modKalErrorHandling.h"

namespace kal {
namespace {

// The column of COGBollatiIva that tells of a register; "" for a type that has no register.
std::string_view ColonnaStampati(std::int16_t tipoRegIva) {
  switch (tipoRegIva) {
    case kAcquisti:
      return "AcqStampati";
    case kVendite:
      return "VenStampati";
    case kCorrispettivi:
      return "CorrStampati";
    default:
      return "";
  }
}

}  // namespace

bool KalCOGCheck::LibroGiornaleStampato(const Variant& aDataReg) {
  return Trap("KalCOGCheck.LibroGiornaleStampato", [&] {
    const RecordsetRef bollati = BollatiDelMese(aDataReg);
    return !RecordsetIsEmpty(bollati) && CBool(bollati->Fields("GiorContStampato").Value());
  });
}

bool KalCOGCheck::RegistriIvaStampati(const Variant& aDataReg, std::int16_t aTipoRegIva,
                                      std::int16_t aSezionale) {
  return Trap("KalCOGCheck.RegistriIvaStampati", [&] {
    if (aTipoRegIva == kNessunRegistro) {
      return false;
    }
    if (CBool(RiepilogoStampato(aDataReg, aTipoRegIva, aSezionale))) {
      return true;
    }
    const RecordsetRef bollati = BollatiDelMese(aDataReg);
    if (RecordsetIsEmpty(bollati)) {
      return false;
    }
    QueryBuilder query;
    query.Select("*")
        .From("COGBollatiIva")
        .WhereEqual("IdBollato", CLng(GetField(bollati, "IdBollato")))
        .WhereEqual("SezionaleIva", aSezionale);
    const RecordsetRef bollatiIva = Open(query);
    const std::string_view colonna = ColonnaStampati(aTipoRegIva);
    if (RecordsetIsEmpty(bollatiIva) || colonna.empty()) {
      return false;
    }
    return CBool(bollatiIva->Fields(colonna).Value());
  });
}

bool KalCOGCheck::ContabilitaChiusa() {
  return Trap("KalCOGCheck.ContabilitaChiusa", [&] {
    const auto esercizio = siblings_.CreateCompanySettings();
    if (!esercizio->SelectFiscalYear(GetField(rsTesta_, "DataCompetenza"))) {
      return false;
    }
    return CBool(esercizio->FiscalYearField("ContabilitaChiusa"));
  });
}

RecordsetRef KalCOGCheck::BollatiDelMese(const Variant& aData) const {
  QueryBuilder query;
  query.Select("*")
      .From("COGBollati")
      .WhereEqual("Anno", Year(aData))
      .WhereEqual("Mese", Month(aData));
  return Open(query);
}

}  // namespace kal
