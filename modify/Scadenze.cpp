// What hangs on a saved entry: closed installments, installments or their closings in a bank
// remittance, posted accruals. Each answers for the header's IdPrimaNota and gives no message.
//
// Some tags name another operation or component: users of the trail know them that way. The
// aliases keep their odd letter case; the database does not mind.

#include <array>

#include "frame/KalCOGCheck.h"
#include "frame/modCommonCostanti.h"
#include "frame/modDatabaseUtility.h"
#include "frame/modKalErrorHandling.h"

namespace kal {

bool KalCOGCheck::ScadenzeInDistinta() {
  return Trap({"KalCOGCheck.OkModify", "ScadenzeInDistinta"}, [&] {
    QueryBuilder query;
    query.Select("COGSCadenzeApertura.IdScadenza")
        .From("COGPrimeNoteRCont")
        .JoinWith(JoinKind::Inner, "COGScadenze AS COGSCadenzeApertura")
        .On("COGPrimeNoteRCont.IDScadenza", "COGSCadenzeApertura.IdScadenza")
        .WhereEqual("COGSCadenzeApertura.TipoRata", kRataApertura)
        .WhereEqual("COGPrimeNoteRCont.IDPrimaNota", GetField(rsTesta_, "IdPrimaNota"))
        .WhereLiteral("Not COGSCadenzeApertura.IdDistinta Is Null");
    return !RecordsetIsEmpty(Open(query));
  });
}

// Document types 23 and 24 are the collections and payments.
bool KalCOGCheck::ScadenzeInDistintaIncPag() {
  return Trap("KalCOGCheck.ScadenzeInDistintaIncPag", [&] {
    QueryBuilder query;
    query.Select("COGSCadenzeChiusura.IdScadenza")
        .From("COGPrimeNoteRCont")
        .JoinWith(JoinKind::Inner, "COGScadenze AS COGSCadenzeApertura")
        .On("COGPrimeNoteRCont.IDScadenza", "COGSCadenzeApertura.IdScadenza")
        .JoinWith(JoinKind::LeftOuter, "COGScadenze AS COGSCadenzeChiusura")
        .On("COGSCadenzeApertura.IDScadenza", "COGSCadenzeChiusura.LinkApertura")
        .On("COGSCadenzeApertura.NrRata", "COGSCadenzeChiusura.RataApertura")
        .OnAnyOf({{{"COGScadenzeChiusura.TipoDocumento", CompareWith::Equal, 23}},
                  {{"COGScadenzeChiusura.TipoDocumento", CompareWith::Equal, 24}}})
        .WhereEqual("COGSCadenzeApertura.TipoRata", kRataApertura)
        .WhereEqual("COGPrimeNoteRCont.IDPrimaNota", GetField(rsTesta_, "IdPrimaNota"))
        .WhereLiteral("isnull(COGScadenzeChiusura.IdDistinta,0) <> 0");
    return !RecordsetIsEmpty(Open(query));
  });
}

bool KalCOGCheck::ScadenzeDocChiuse() {
  return Trap("KalScadenze.ScadenzeDocChiuse", [&] {
    std::array<ProcedureArgument, 3> argomenti = {
        ProcedureArgument{GetField(rsTesta_, "IdPrimaNota")}, ProcedureArgument{std::int16_t{1}},
        ProcedureArgument{std::int32_t{0}, true}};
    siblings_.CreateDataAccess()->Execute("COGNroChiusurePrimaNota", argomenti);
    return CLng(argomenti[2].value) > 0;
  });
}

bool KalCOGCheck::RRContabilizzati() {
  return Trap("KalScadenze.RRContabilizzati", [&] {
    QueryBuilder query;
    query.Select("*")
        .From("COGRateiRisconti")
        .JoinWith(JoinKind::Inner, "COGRateiRiscontiContabilizzati")
        .On("COGRateiRisconti.IdRateoRisconto", "COGRateiRiscontiContabilizzati.IdRateoRisconto")
        .WhereEqual("IdDoc", GetField(rsTesta_, "IdPrimaNota"));
    return !RecordsetIsEmpty(Open(query));
  });
}

}  // namespace kal
