// Whether a date of the ledger is frozen: its general journal or VAT register printed on the
// official pages, its fiscal year closed. A printed flag that is Null is an error: nobody may
// guess whether a book is printed.

#include "checks/Checks.h"
#include "frame/Azienda.h"
#include "frame/modCommonCostanti.h"
#include "frame/modDatabaseUtility.h"
#include "frame/modKalErrorHandling.h"
#include "modify/Modify.h"

namespace kal {
namespace {

constexpr Selection kBollati =
    Selection().Select("*").From("COGBollati").WhereEqual("Anno").WhereEqual("Mese");
constexpr Selection kBollatiIva = Selection()
                                      .Select("*")
                                      .From("COGBollatiIva")
                                      .WhereEqual("IdBollato")
                                      .WhereEqual("SezionaleIva");

RecordsetRef BollatiDelMese(const Registrazione& aRegistrazione, const Variant& aData) {
  const std::int16_t anno = Year(aData);
  return Open<kBollati>(aRegistrazione, anno, Month(aData));
}

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

bool LibroGiornaleStampato(const Registrazione& aRegistrazione, Unread<Variant> aDataReg) {
  return Trap(aRegistrazione, "KalCOGCheck.LibroGiornaleStampato", [&] {
    const RecordsetRef bollati = BollatiDelMese(aRegistrazione, aDataReg());
    return !RecordsetIsEmpty(bollati) && CBool(RawField(bollati, "GiorContStampato"));
  });
}

void SegnalaLibroGiornale(Registrazione& aRegistrazione) {
  if (LibroGiornaleStampato(aRegistrazione,
                            GetField(aRegistrazione.RsTesta, "DataRegistrazione"))) {
    AddMessage(aRegistrazione, ErrString, MessageCode::LibroGiornaleGiaStampato);
  }
}

bool RegistriIvaStampati(Registrazione& aRegistrazione, Unread<Variant> aDataReg,
                         std::int16_t aTipoRegIva, std::int16_t aSezionale) {
  return Trap(aRegistrazione, "KalCOGCheck.RegistriIvaStampati", [&] {
    if (aTipoRegIva == kNessunRegistro) {
      return false;
    }
    const Variant dataReg = aDataReg();
    if (RiepilogoStampato(aRegistrazione, dataReg, aTipoRegIva, aSezionale)) {
      return true;
    }
    const RecordsetRef bollati = BollatiDelMese(aRegistrazione, dataReg);
    if (RecordsetIsEmpty(bollati)) {
      return false;
    }
    const RecordsetRef bollatiIva =
        Open<kBollatiIva>(aRegistrazione, CLng(GetField(bollati, "IdBollato")), aSezionale);
    const std::string_view colonna = ColonnaStampati(aTipoRegIva);
    if (RecordsetIsEmpty(bollatiIva) || colonna.empty()) {
      return false;
    }
    return CBool(RawField(bollatiIva, colonna));
  });
}

bool ContabilitaChiusa(const Registrazione& aRegistrazione) {
  return Trap(aRegistrazione, "KalCOGCheck.ContabilitaChiusa", [&] {
    CompanySettings esercizio(aRegistrazione.Siblings);
    if (!esercizio.SelectFiscalYear(GetField(aRegistrazione.RsTesta, "DataCompetenza"))) {
      return false;
    }
    return CBool(esercizio.FiscalYearField("ContabilitaChiusa"));
  });
}

void SegnalaContabilitaChiusa(Registrazione& aRegistrazione) {
  if (ContabilitaChiusa(aRegistrazione)) {
    AddMessage(aRegistrazione, ErrString, MessageCode::ContabilitaEsercizioChiusa);
  }
}

}  // namespace kal
