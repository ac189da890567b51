// Whether a document number is already used by another definitive entry of its document year:
// received documents number by supplier, issued ones by register and section. The entry under
// edit, where it has an id, does not count.

#include "frame/Azienda.h"
#include "frame/modCommonCostanti.h"
#include "frame/modDatabaseUtility.h"
#include "frame/modKalErrorHandling.h"
#include "modify/Modify.h"

namespace kal {
namespace {

// The name that comes with each use is the year of the document date.
constexpr Selection kDellAnno =
    Selection().Select("IdPrimaNota").From("COGPrimeNoteTeste").WhereEqual(kGivenName);
constexpr Selection kRicevuto = kDellAnno.WhereEqual("IdAnagrafica")
                                    .WhereEqual("NumeroDocumento")
                                    .WhereEqual("TipoRegIva")
                                    .WhereEqual("IsNull(Provvisoria,0)");
constexpr Selection kEmesso = kDellAnno.WhereEqual("NumeroDocumento")
                                  .WhereEqual("TipoRegIva")
                                  .WhereEqual("SezionaleIva")
                                  .WhereEqual("IsNull(Provvisoria,0)");
constexpr Selection kRicevutoMenoUno = kRicevuto.Where("IdPrimaNota", CompareWith::NotEqual);
constexpr Selection kEmessoMenoUno = kEmesso.Where("IdPrimaNota", CompareWith::NotEqual);

// The keys are those by which the kind of document numbers, in the order of its selection.
template <const Selection& kTutti, const Selection& kMenoUno, class... Keys>
bool Esiste(const Registrazione& aRegistrazione, const Variant& aDataDoc, std::int32_t aIdPrimaNota,
            const Keys&... keys) {
  const Variant anno = AnnoDi(aRegistrazione, "DataDocumento");
  const std::string_view colonna = *anno.AsText();
  const std::string annoDocumento = CStr(Year(aDataDoc));
  return !RecordsetIsEmpty(
      aIdPrimaNota == 0
          ? OpenNamed<kTutti>(aRegistrazione, colonna, annoDocumento, keys..., 0)
          : OpenNamed<kMenoUno>(aRegistrazione, colonna, annoDocumento, keys..., 0, aIdPrimaNota));
}

}  // namespace

bool CheckDuplicatoNrDocRicevuto(const Registrazione& aRegistrazione,
                                 Unread<std::string> aNumeroDoc, Unread<Variant> aDataDoc,
                                 std::int32_t aIdAnagrafica, std::int32_t aIdPrimaNota) {
  return Trap(aRegistrazione, "KalCOGCheck.CheckDuplicatoNrDocRicevuto", [&] {
    const std::string numeroDoc = aNumeroDoc();
    return Esiste<kRicevuto, kRicevutoMenoUno>(aRegistrazione, aDataDoc(), aIdPrimaNota,
                                               aIdAnagrafica, numeroDoc, kAcquisti);
  });
}

bool CheckDuplicatoNrDocEmesso(const Registrazione& aRegistrazione, std::int16_t aTipoRegIva,
                               std::int16_t aSezionaleIva, Unread<std::string> aNumeroDoc,
                               Unread<Variant> aDataDoc, std::int32_t aIdPrimaNota) {
  return Trap(aRegistrazione, "KalCOGCheck.CheckDuplicatoNrDocEmesso", [&] {
    const std::string numeroDoc = aNumeroDoc();
    return Esiste<kEmesso, kEmessoMenoUno>(aRegistrazione, aDataDoc(), aIdPrimaNota, numeroDoc,
                                           aTipoRegIva, aSezionaleIva);
  });
}

void SegnalaNumeroRicevuto(Registrazione& aRegistrazione) {
  const RecordsetRef& rsTesta = aRegistrazione.RsTesta;
  const std::string numeroDocumento = CStr(GetField(rsTesta, "NumeroDocumento"));
  const Variant dataDocumento = GetField(rsTesta, "DataDocumento");
  const std::int32_t idPrimaNota = CLng(GetField(rsTesta, "IdPrimaNota"));
  const std::int32_t idAnagrafica = CLng(GetField(rsTesta, "IdAnagrafica"));
  if (CheckDuplicatoNrDocRicevuto(aRegistrazione, numeroDocumento, dataDocumento, idAnagrafica,
                                  idPrimaNota)) {
    AddMessage(aRegistrazione, WarnDuplicatoDocString, MessageCode::NumeroDocumentoDuplicato);
  }
}

void SegnalaNumeroEmesso(Registrazione& aRegistrazione) {
  const RecordsetRef& rsTesta = aRegistrazione.RsTesta;
  const std::string numeroDocumento = CStr(GetField(rsTesta, "NumeroDocumento"));
  const Variant dataDocumento = GetField(rsTesta, "DataDocumento");
  const std::int32_t idPrimaNota = CLng(GetField(rsTesta, "IdPrimaNota"));
  const std::int16_t sezionaleIva = CInt(GetField(rsTesta, "SezionaleIva"));
  if (CheckDuplicatoNrDocEmesso(aRegistrazione, aRegistrazione.CausaleCorrente.TipoRegIva,
                                sezionaleIva, numeroDocumento, dataDocumento, idPrimaNota)) {
    AddMessage(aRegistrazione, WarnDuplicatoDocString, MessageCode::NumeroDocumentoDuplicato);
  }
}

}  // namespace kal
