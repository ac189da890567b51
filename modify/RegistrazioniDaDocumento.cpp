// Entries generated from a sales or purchase document: may they follow when the document is
// changed or deleted?
//
// The entry's header takes the place of RsTesta, which is empty afterwards; after an error it
// stays. A document without an entry may always be changed, and leaves the result strings alone.

#include "frame/KalCOGCheck.h"
#include "frame/modDatabaseUtility.h"
#include "frame/modKalErrorHandling.h"

namespace kal {

bool KalCOGCheck::OkModificaDoc(std::int16_t aTipologiaDoc, std::int32_t aIdDoc) {
  return Trap("KalCOGCheck.OkModificaDoc", [&] {
    return SuRegistrazioneDelDocumento(aTipologiaDoc, aIdDoc, &KalCOGCheck::OkModifica);
  });
}

bool KalCOGCheck::OkCancellaDoc(std::int16_t aTipologiaDoc, std::int32_t aIdDoc) {
  return Trap("KalCOGCheck.OkCancellaDoc", [&] {
    return SuRegistrazioneDelDocumento(aTipologiaDoc, aIdDoc, &KalCOGCheck::OkCancella);
  });
}

bool KalCOGCheck::SuRegistrazioneDelDocumento(std::int16_t aTipologiaDoc, std::int32_t aIdDoc,
                                              bool (KalCOGCheck::*aControllo)()) {
  QueryBuilder query;
  query.Select("*")
      .From("COGPrimeNoteTeste")
      .WhereEqual("TipoDocumento", aTipologiaDoc)
      .WhereEqual("IdDoc", aIdDoc);
  rsTesta_ = Open(query);
  if (RecordsetIsEmpty(rsTesta_)) {
    return true;
  }
  const bool esito = (this->*aControllo)();
  rsTesta_ = nullptr;
  return esito;
}

std::int32_t KalCOGCheck::LeggiIdPrimaNota(std::int32_t aIdDoc, std::int16_t aTipoDoc) {
  return Trap("KalCOGCheck.LeggiIdPrimaNota", [&] {
    QueryBuilder query;
    query.Select("IdPrimaNota")
        .From("COGPrimeNoteTeste")
        .WhereEqual("TipoDocumento", aTipoDoc)
        .WhereEqual("IdDoc", aIdDoc);
    const RecordsetRef registrazione = Open(query);
    return RecordsetIsEmpty(registrazione) ? -1 : CLng(GetField(registrazione, "IdPrimaNota"));
  });
}

}  // namespace kal
