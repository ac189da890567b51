// CreaRecordCausale: the posting template, on which every other check depends.
//
// A template that the host handed over, or that an earlier check found, stays. Without one nothing
// else is checked.

#include "checks/Checks.h"
#include "frame/Azienda.h"
#include "frame/modCommonCostanti.h"
#include "frame/modDatabaseUtility.h"
#include "frame/modKalErrorHandling.h"

namespace kal {
namespace {

constexpr Selection kCausale = Selection()
                                   .Option(kOpzioneLettura)
                                   .Select("*")
                                   .From("COGCausaliContabili")
                                   .WhereEqual("CodCausale");

}  // namespace

void CreaRecordCausale(Registrazione& aRegistrazione, const std::string& aCodCausale) {
  Trap(aRegistrazione, "KalCOGCheck.CreaRecordCausale", [&] {
    if (!aRegistrazione.RsCausale.IsNothing()) {
      return;
    }
    const RecordsetRef causale = Open<kCausale>(aRegistrazione, aCodCausale);
    if (!RecordsetIsEmpty(causale)) {
      aRegistrazione.RsCausale = causale;
    }
  });
}

Seguito CaricaCausale(Registrazione& aRegistrazione) {
  CreaRecordCausale(aRegistrazione, CStr(GetField(aRegistrazione.RsTesta, "CodCausale")));
  const RecordsetRef& rsCausale = aRegistrazione.RsCausale;
  if (rsCausale.IsNothing()) {
    AddMessage(aRegistrazione, ErrString, MessageCode::CausaleInesistente);
    return Seguito::Fine;
  }
  Causale& causale = aRegistrazione.CausaleCorrente;
  causale.Operazione = CInt(GetField(rsCausale, "Operazione"));
  causale.TipoRegIva = CInt(GetField(rsCausale, "TipoRegIva"));
  causale.SegnoIva = CInt(GetField(rsCausale, "SegnoIva"));
  causale.TipoVentilazione = GetFlag(rsCausale, "TipoVentilazione");
  causale.CassaCorrispettivi = GetFlag(rsCausale, "CassaCorrispettivi");
  return Seguito::Avanti;
}

}  // namespace kal
