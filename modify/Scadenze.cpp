// What hangs on a saved entry: closed installments, installments or their closings in a bank
// remittance, posted accruals. Each answers for the header's IdPrimaNota and gives no message.
//
// Some tags name another operation or component: users of the trail know them that way. The
// aliases keep their odd letter case; the database does not mind.

#include "frame/Azienda.h"
#include "frame/modCommonCostanti.h"
#include "frame/modDatabaseUtility.h"
#include "frame/modKalErrorHandling.h"
#include "modify/Modify.h"

namespace kal {
namespace {

constexpr Selection kInDistinta =
    Selection()
        .Select("COGSCadenzeApertura.IdScadenza")
        .From("COGPrimeNoteRCont")
        .JoinWith(JoinKind::Inner, "COGScadenze AS COGSCadenzeApertura")
        .On("COGPrimeNoteRCont.IDScadenza", "COGSCadenzeApertura.IdScadenza")
        .WhereEqual("COGSCadenzeApertura.TipoRata")
        .WhereEqual("COGPrimeNoteRCont.IDPrimaNota")
        .WhereLiteral("Not COGSCadenzeApertura.IdDistinta Is Null");

constexpr Selection kChiusureInDistinta =
    Selection()
        .Select("COGSCadenzeChiusura.IdScadenza")
        .From("COGPrimeNoteRCont")
        .JoinWith(JoinKind::Inner, "COGScadenze AS COGSCadenzeApertura")
        .On("COGPrimeNoteRCont.IDScadenza", "COGSCadenzeApertura.IdScadenza")
        .JoinWith(JoinKind::LeftOuter, "COGScadenze AS COGSCadenzeChiusura")
        .On("COGSCadenzeApertura.IDScadenza", "COGSCadenzeChiusura.LinkApertura")
        .On("COGSCadenzeApertura.NrRata", "COGSCadenzeChiusura.RataApertura")
        .OnAnyOf({{{"COGScadenzeChiusura.TipoDocumento"}}, {{"COGScadenzeChiusura.TipoDocumento"}}})
        .WhereEqual("COGSCadenzeApertura.TipoRata")
        .WhereEqual("COGPrimeNoteRCont.IDPrimaNota")
        .WhereLiteral("isnull(COGScadenzeChiusura.IdDistinta,0) <> 0");

constexpr Selection kRateiContabilizzati =
    Selection()
        .Select("*")
        .From("COGRateiRisconti")
        .JoinWith(JoinKind::Inner, "COGRateiRiscontiContabilizzati")
        .On("COGRateiRisconti.IdRateoRisconto", "COGRateiRiscontiContabilizzati.IdRateoRisconto")
        .WhereEqual("IdDoc");

}  // namespace

bool ScadenzeInDistinta(const Registrazione& aRegistrazione) {
  return Trap(aRegistrazione, {"KalCOGCheck.OkModify", "ScadenzeInDistinta"}, [&] {
    return !RecordsetIsEmpty(Open<kInDistinta>(aRegistrazione, kRataApertura,
                                               GetField(aRegistrazione.RsTesta, "IdPrimaNota")));
  });
}

bool ScadenzeInDistintaIncPag(const Registrazione& aRegistrazione) {
  return Trap(aRegistrazione, "KalCOGCheck.ScadenzeInDistintaIncPag", [&] {
    constexpr std::int32_t kIncasso = 23;
    constexpr std::int32_t kPagamento = 24;
    return !RecordsetIsEmpty(
        Open<kChiusureInDistinta>(aRegistrazione, kIncasso, kPagamento, kRataApertura,
                                  GetField(aRegistrazione.RsTesta, "IdPrimaNota")));
  });
}

bool ScadenzeDocChiuse(const Registrazione& aRegistrazione) {
  return Trap(aRegistrazione, "KalScadenze.ScadenzeDocChiuse", [&] {
    const Variant idPrimaNota = GetField(aRegistrazione.RsTesta, "IdPrimaNota");
    const Variant chiusure =
        DataAccess(aRegistrazione.Siblings)
            .Execute("COGNroChiusurePrimaNota", idPrimaNota, std::int16_t{1}, std::int32_t{0});
    return CLng(chiusure) > 0;
  });
}

bool RRContabilizzati(const Registrazione& aRegistrazione) {
  return Trap(aRegistrazione, "KalScadenze.RRContabilizzati", [&] {
    return !RecordsetIsEmpty(Open<kRateiContabilizzati>(
        aRegistrazione, GetField(aRegistrazione.RsTesta, "IdPrimaNota")));
  });
}

}  // namespace kal
