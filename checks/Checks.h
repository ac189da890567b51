// The private checks: functions over the entry, each with what it finds added to it.
//
// A check that answers leaves its message to a step beside it (Segnala…), which asks it and speaks.
// What a check protects, and what would surprise a reader, stands at the head of its source.

#pragma once

#include <cstdint>
#include <string>

#include "frame/Ordine.h"
#include "frame/Registrazione.h"
#include "platform/Variant.h"

namespace kal {

// CreaRecordCausale.cpp
void CreaRecordCausale(Registrazione& aRegistrazione, const std::string& aCodCausale);
Seguito CaricaCausale(Registrazione& aRegistrazione);

// CheckBanca.cpp
bool CheckDateScadenza(Registrazione& aRegistrazione);
void SegnalaDateScadenza(Registrazione& aRegistrazione);
bool CheckBanca(Registrazione& aRegistrazione);
void SegnalaBanca(Registrazione& aRegistrazione);

// OkQuadratura.cpp, OkDivisaSuRighe.cpp, OkCastellettoIva.cpp, QuadraScadenze.cpp
void OkQuadratura(Registrazione& aRegistrazione);
void OkDivisaSuRighe(Registrazione& aRegistrazione);
void OkCastellettoIva(Registrazione& aRegistrazione);
void CheckCongruenzaAliquote(Registrazione& aRegistrazione);
void QuadraScadenze(Registrazione& aRegistrazione);

// DichiarazioneIntento.cpp
bool EseguiControlliDichiarazioneIntento(Registrazione& aRegistrazione);
void LeggiDichiarazioneIntento(Registrazione& aRegistrazione);

// CheckChiusuraContenstualeSospensione.cpp, CheckIncassiInSospensione.cpp, CheckPlafond.cpp
void CheckChiusuraContenstualeSospensione(Registrazione& aRegistrazione);
void CheckIncassiInSospensione(Registrazione& aRegistrazione);
void CheckPlafond(Registrazione& aRegistrazione);

// CheckCodIva.cpp, CheckSegnoRigheIva.cpp, CheckCompilazioneParcella.cpp, CheckInfragruppo.cpp
void CheckCodIva(Registrazione& aRegistrazione);
void CheckSegnoRigheIva(Registrazione& aRegistrazione);
void CheckCompilazioneParcella(Registrazione& aRegistrazione);
void CheckInfragruppo(Registrazione& aRegistrazione);

// EsisteSezionale.cpp, CheckRateiRisconti.cpp
void EsisteSezionale(Registrazione& aRegistrazione);
void CheckRateiRisconti(Registrazione& aRegistrazione);

// ControllaCongruenzaDate.cpp
void ControllaCongruenzaDate(Registrazione& aRegistrazione);
void TestEsercizioCompetenza(Registrazione& aRegistrazione);
void CheckPeriodoLiquidato(Registrazione& aRegistrazione, const Variant& aData,
                           ResultString aTarget);

// ParametriIvaOk.cpp, RiepilogoStampato.cpp
bool ParametriIvaOk(Registrazione& aRegistrazione, const Variant& aData);
void SegnalaParametriIva(Registrazione& aRegistrazione);
bool RiepilogoStampato(Registrazione& aRegistrazione, const Variant& aData,
                       std::int16_t aTipoRegIva, std::int16_t aSezionale);

// SezionaleIvaAutofattura.cpp
std::int16_t SezionaleIvaAutofattura(Registrazione& aRegistrazione, std::int16_t aTipoRegIva,
                                     std::int16_t aSezionaleIva, const Variant& aData);

// TestProtocollo.cpp
void TestProtocollo(Registrazione& aRegistrazione);
void TestProtocolloIntra(Registrazione& aRegistrazione);

// CheckQuadraturaDatiFiscalitaBL.cpp
bool CheckQuadraturaDatiFiscalitaBL(Registrazione& aRegistrazione);
void SegnalaDatiFiscali(Registrazione& aRegistrazione);

}  // namespace kal
