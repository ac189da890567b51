// The modify, delete and document checks, and the lookups that other screens use.
//
// Lookups answer for the entry or for their arguments and give no message. Where the save check
// wants one, a step beside the lookup asks it and speaks (Segnala…).

#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "frame/Ordine.h"
#include "frame/Registrazione.h"
#include "platform/Unread.h"
#include "platform/Variant.h"

namespace kal {

// OkModifica.cpp
std::span<const Passo> OrdineModifica();
bool OkModifica(Registrazione& aRegistrazione);
bool OkCancella(Registrazione& aRegistrazione);

// RegistrazioniDaDocumento.cpp
bool OkModificaDoc(Registrazione& aRegistrazione, std::int16_t aTipologiaDoc, std::int32_t aIdDoc);
bool OkCancellaDoc(Registrazione& aRegistrazione, std::int16_t aTipologiaDoc, std::int32_t aIdDoc);
std::int32_t LeggiIdPrimaNota(const Registrazione& aRegistrazione, std::int32_t aIdDoc,
                              std::int16_t aTipoDoc);  // -1: none

// LibriStampati.cpp
bool LibroGiornaleStampato(const Registrazione& aRegistrazione, Unread<Variant> aDataReg);
void SegnalaLibroGiornale(Registrazione& aRegistrazione);
bool RegistriIvaStampati(Registrazione& aRegistrazione, Unread<Variant> aDataReg,
                         std::int16_t aTipoRegIva, std::int16_t aSezionale);
bool ContabilitaChiusa(const Registrazione& aRegistrazione);
void SegnalaContabilitaChiusa(Registrazione& aRegistrazione);

// NumeriDuplicati.cpp
bool CheckDuplicatoNrDocRicevuto(const Registrazione& aRegistrazione,
                                 Unread<std::string> aNumeroDoc, Unread<Variant> aDataDoc,
                                 std::int32_t aIdAnagrafica, std::int32_t aIdPrimaNota);
bool CheckDuplicatoNrDocEmesso(const Registrazione& aRegistrazione, std::int16_t aTipoRegIva,
                               std::int16_t aSezionaleIva, Unread<std::string> aNumeroDoc,
                               Unread<Variant> aDataDoc, std::int32_t aIdPrimaNota);
void SegnalaNumeroRicevuto(Registrazione& aRegistrazione);
void SegnalaNumeroEmesso(Registrazione& aRegistrazione);

// Scadenze.cpp
bool ScadenzeInDistinta(const Registrazione& aRegistrazione);
bool ScadenzeInDistintaIncPag(const Registrazione& aRegistrazione);
bool ScadenzeDocChiuse(const Registrazione& aRegistrazione);
bool RRContabilizzati(const Registrazione& aRegistrazione);

// SplitPayment.cpp
bool IsDocumentoSplitPayment(const Registrazione& aRegistrazione);
bool IsClienteSplitPayment(const Registrazione& aRegistrazione);
bool CheckEffettiSplitPayment(Registrazione& aRegistrazione, const std::string& aCodPagamento);
void SegnalaEffettiSplitPayment(Registrazione& aRegistrazione);

}  // namespace kal
