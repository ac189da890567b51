// Whether a document number is already used by another definitive entry of its document year:
// received documents number by supplier, issued ones by register and section. The entry under
// edit, where it has an id, does not count.

#include <string>

#include "frame/KalCOGCheck.h"
#include "frame/modCommonCostanti.h"
#include "frame/modDatabaseUtility.h"
#include "frame/modKalErrorHandling.h"

namespace kal {
namespace {

// The definitive entries of the document's year that carry the number, less the one under edit.
void CercaNumero(QueryBuilder& query, SiblingFactory& siblings, const std::string& numeroDoc,
                 const Variant& dataDoc, std::int32_t idPrimaNota) {
  const std::string anno =
      siblings.CreateSqlFunctions()->Expression(kFunzioneAnno, "DataDocumento");
  query.Select("IdPrimaNota")
      .From("COGPrimeNoteTeste")
      .WhereEqual(anno, CStr(Year(dataDoc)))
      .WhereEqual("NumeroDocumento", numeroDoc)
      .WhereEqual("IsNull(Provvisoria,0)", 0);
  if (idPrimaNota != 0) {
    query.Where("IdPrimaNota", CompareWith::NotEqual, idPrimaNota);
  }
}

}  // namespace

bool KalCOGCheck::CheckDuplicatoNrDocRicevuto(const std::string& aNumeroDoc,
                                              const Variant& aDataDoc, std::int32_t aIdAnagrafica,
                                              std::int32_t aIdPrimaNota) {
  return Trap("KalCOGCheck.CheckDuplicatoNrDocRicevuto", [&] {
    QueryBuilder query;
    CercaNumero(query, siblings_, aNumeroDoc, aDataDoc, aIdPrimaNota);
    query.WhereEqual("IdAnagrafica", aIdAnagrafica).WhereEqual("TipoRegIva", kAcquisti);
    return !RecordsetIsEmpty(Open(query));
  });
}

bool KalCOGCheck::CheckDuplicatoNrDocEmesso(std::int16_t aTipoRegIva, std::int16_t aSezionaleIva,
                                            const std::string& aNumeroDoc, const Variant& aDataDoc,
                                            std::int32_t aIdPrimaNota) {
  return Trap("KalCOGCheck.CheckDuplicatoNrDocEmesso", [&] {
    QueryBuilder query;
    CercaNumero(query, siblings_, aNumeroDoc, aDataDoc, aIdPrimaNota);
    query.WhereEqual("TipoRegIva", aTipoRegIva).WhereEqual("SezionaleIva", aSezionaleIva);
    return !RecordsetIsEmpty(Open(query));
  });
}

}  // namespace kal
