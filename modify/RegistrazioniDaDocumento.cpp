// Entries generated from a sales or purchase document: may they follow when the document is
// changed or deleted?
//
// The entry's header takes the place of RsTesta, which is empty afterwards; after an error it
// stays. A document without an entry may always be changed, and leaves the result strings alone.

#include "frame/Azienda.h"
#include "frame/modDatabaseUtility.h"
#include "frame/modKalErrorHandling.h"
#include "modify/Modify.h"

namespace kal {
namespace {

constexpr Selection kRegistrazione = Selection()
                                         .Select("*")
                                         .From("COGPrimeNoteTeste")
                                         .WhereEqual("TipoDocumento")
                                         .WhereEqual("IdDoc");
constexpr Selection kIdRegistrazione = Selection()
                                           .Select("IdPrimaNota")
                                           .From("COGPrimeNoteTeste")
                                           .WhereEqual("TipoDocumento")
                                           .WhereEqual("IdDoc");

bool SuRegistrazioneDelDocumento(Registrazione& aRegistrazione, std::int16_t aTipologiaDoc,
                                 std::int32_t aIdDoc, bool (*aControllo)(Registrazione&)) {
  aRegistrazione.RsTesta = Open<kRegistrazione>(aRegistrazione, aTipologiaDoc, aIdDoc);
  if (RecordsetIsEmpty(aRegistrazione.RsTesta)) {
    return true;
  }
  const bool esito = aControllo(aRegistrazione);
  aRegistrazione.RsTesta = nullptr;
  return esito;
}

}  // namespace

bool OkModificaDoc(Registrazione& aRegistrazione, std::int16_t aTipologiaDoc, std::int32_t aIdDoc) {
  return Trap(aRegistrazione, "KalCOGCheck.OkModificaDoc", [&] {
    return SuRegistrazioneDelDocumento(aRegistrazione, aTipologiaDoc, aIdDoc, &OkModifica);
  });
}

bool OkCancellaDoc(Registrazione& aRegistrazione, std::int16_t aTipologiaDoc, std::int32_t aIdDoc) {
  return Trap(aRegistrazione, "KalCOGCheck.OkCancellaDoc", [&] {
    return SuRegistrazioneDelDocumento(aRegistrazione, aTipologiaDoc, aIdDoc, &OkCancella);
  });
}

std::int32_t LeggiIdPrimaNota(const Registrazione& aRegistrazione, std::int32_t aIdDoc,
                              std::int16_t aTipoDoc) {
  return Trap(aRegistrazione, "KalCOGCheck.LeggiIdPrimaNota", [&] {
    const RecordsetRef registrazione = Open<kIdRegistrazione>(aRegistrazione, aTipoDoc, aIdDoc);
    return RecordsetIsEmpty(registrazione) ? -1 : CLng(GetField(registrazione, "IdPrimaNota"));
  });
}

}  // namespace kal
