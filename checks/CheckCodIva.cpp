// CheckCodIva: the VAT code of each line exists, and names a self-invoice code where the line
// needs one: an intra-community or reverse-charge line with a part that can't be deducted or that
// is charged to cost.
//
// The reserved code of ventilated receipts is never looked up. The code stands in the filter as
// it is: a quote in it makes the filter invalid, which is an error. RsRIva is left unfiltered on
// its first line.

#include <string>

#include "checks/Checks.h"
#include "frame/Azienda.h"
#include "frame/modCommonCostanti.h"
#include "frame/modDatabaseUtility.h"
#include "frame/modKalErrorHandling.h"

namespace kal {
namespace {

constexpr Selection kCodiciIva = Selection().Option(kOpzioneLettura).Select("*").From("STDIva");

bool AutofatturaMancante(const RecordsetRef& aTesta, const RecordsetRef& aRigaIva,
                         const RecordsetRef& aCodiceIva) {
  const bool autofattura = GetFlag(aTesta, "Intra") || GetFlag(aRigaIva, "ReverseCharge");
  const bool indetraibile =
      GetField(aCodiceIva, "PercIvaACosto") != 0 || GetField(aCodiceIva, "PercIndetraibile") != 0 ||
      GetField(aRigaIva, "IndetraibileVB") != 0 || GetField(aRigaIva, "Indetraibile") != 0;
  return autofattura && indetraibile && GetField(aCodiceIva, "CodIvaAutoFtReverse") == "";
}

}  // namespace

void CheckCodIva(Registrazione& aRegistrazione) {
  Trap(aRegistrazione, "KalCOGCheck.CheckCodIva", [&] {
    const HostSet& rsRIva = aRegistrazione.RsRIva;
    if (rsRIva.IsNothing()) {
      return;
    }
    const RecordsetRef codiciIva = Open<kCodiciIva>(aRegistrazione);
    rsRIva->Filter("");
    if (RecordsetIsEmpty(rsRIva)) {
      return;
    }
    for (rsRIva->MoveFirst(); !rsRIva->Eof(); rsRIva->MoveNext()) {
      const Variant codIva = GetField(rsRIva, "CodIva");
      if (codIva == kCodIvaVentilazione) {
        continue;
      }
      codiciIva->Filter("CodIva = '" + CStr(codIva) + "'");
      if (RecordsetIsEmpty(codiciIva)) {
        AddMessage(aRegistrazione, ErrString, MessageCode::CodIvaInesistente, {codIva},
                   rsRIva.Riga());
      } else if (AutofatturaMancante(aRegistrazione.RsTesta, rsRIva, codiciIva)) {
        AddMessage(aRegistrazione, ErrString, MessageCode::CodIvaAutofatturaMancante,
                   {CStr(GetField(rsRIva, "NumeroRiga"))}, rsRIva.Riga());
      }
    }
    rsRIva->MoveFirst();
  });
}

}  // namespace kal
