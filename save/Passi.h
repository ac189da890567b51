// The steps of the save check that are no check of their own, and those that put a lookup's answer
// into a message. Their order stands in OkAggiorna.cpp.

#pragma once

#include "frame/Registrazione.h"

namespace kal {

// Testata.cpp: the header and its template
void LeggiAttivitaSeparate(Registrazione& aRegistrazione);
void TipoDocumento(Registrazione& aRegistrazione);
void TipoMovimento(Registrazione& aRegistrazione);
void NumeroRighe(Registrazione& aRegistrazione);
void NumeroDocumento(Registrazione& aRegistrazione);
void ProtocolloMancante(Registrazione& aRegistrazione);
void ProtocolloTroppoGrande(Registrazione& aRegistrazione);
void SezionaleSplitPayment(Registrazione& aRegistrazione);

// Iva.cpp: the VAT registers
void LeggiDataIvaControllo(Registrazione& aRegistrazione);
void RegistroStampato(Registrazione& aRegistrazione);
void RegistroPlafondStampato(Registrazione& aRegistrazione);
void PeriodoBloccato(Registrazione& aRegistrazione);
void RigheReverseCharge(Registrazione& aRegistrazione);
void SezionaleIva(Registrazione& aRegistrazione);
void SogliaCorrispettivi(Registrazione& aRegistrazione);
void SospensioneNegativa(Registrazione& aRegistrazione);

// Autofattura.cpp: the self-invoice of a purchase
void Autofattura(Registrazione& aRegistrazione);
void ProtocolloAutofattura(Registrazione& aRegistrazione);

// Dichiarazione.cpp: the declaration of intent that the entry names
void DichiarazioneIntento(Registrazione& aRegistrazione);

}  // namespace kal
