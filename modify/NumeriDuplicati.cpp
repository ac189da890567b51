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

// The definitive entries that carry the number; the name that comes with each use is the year of
// the document date.
consteval Selection ConNumero() {
  return Selection()
      .Select("IdPrimaNota")
      .From("COGPrimeNoteTeste")
      .WhereEqual(kGivenName)
      .WhereEqual("NumeroDocumento")
      .WhereEqual("IsNull(Provvisoria,0)");
}
consteval Selection ConNumeroMenoUna() {
  return ConNumero().Where("IdPrimaNota", CompareWith::NotEqual);
}

constexpr Selection kRicevuto = ConNumero().WhereEqual("IdAnagrafica").WhereEqual("TipoRegIva");
constexpr Selection kRicevutoMenoUno =
    ConNumeroMenoUna().WhereEqual("IdAnagrafica").WhereEqual("TipoRegIva");
constexpr Selection kEmesso = ConNumero().WhereEqual("TipoRegIva").WhereEqual("SezionaleIva");
constexpr Selection kEmessoMenoUno =
    ConNumeroMenoUna().WhereEqual("TipoRegIva").WhereEqual("SezionaleIva");

// The keys are the two by which the kind of document numbers.
template <const Selection& kTutti, const Selection& kMenoUno, class... Keys>
bool Esiste(const Registrazione& aRegistrazione, const std::string& aNumeroDoc,
            const Variant& aDataDoc, std::int32_t aIdPrimaNota, const Keys&... keys) {
  const Variant anno = AnnoDi(aRegistrazione, "DataDocumento");
  const std::string_view colonna = *anno.AsText();
  const std::string annoDocumento = CStr(Year(aDataDoc));
  return !RecordsetIsEmpty(
      aIdPrimaNota == 0
          ? OpenNamed<kTutti>(aRegistrazione, colonna, annoDocumento, aNumeroDoc, 0, keys...)
          : OpenNamed<kMenoUno>(aRegistrazione, colonna, annoDocumento, aNumeroDoc, 0, aIdPrimaNota,
                                keys...));
}

}  // namespace

bool CheckDuplicatoNrDocRicevuto(const Registrazione& aRegistrazione,
                                 Unread<std::string> aNumeroDoc, Unread<Variant> aDataDoc,
                                 std::int32_t aIdAnagrafica, std::int32_t aIdPrimaNota) {
  return Trap(aRegistrazione, "KalCOGCheck.CheckDuplicatoNrDocRicevuto", [&] {
    return Esiste<kRicevuto, kRicevutoMenoUno>(aRegistrazione, aNumeroDoc(), aDataDoc(),
                                               aIdPrimaNota, aIdAnagrafica, kAcquisti);
  });
}

bool CheckDuplicatoNrDocEmesso(const Registrazione& aRegistrazione, std::int16_t aTipoRegIva,
                               std::int16_t aSezionaleIva, Unread<std::string> aNumeroDoc,
                               Unread<Variant> aDataDoc, std::int32_t aIdPrimaNota) {
  return Trap(aRegistrazione, "KalCOGCheck.CheckDuplicatoNrDocEmesso", [&] {
    return Esiste<kEmesso, kEmessoMenoUno>(aRegistrazione, aNumeroDoc(), aDataDoc(), aIdPrimaNota,
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
