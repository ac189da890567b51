// KalCOGCheck: may this journal entry be saved, modified or deleted?
//
// The host makes one checker for an entry under edit, hands it the entry's record sets and flags,
// calls one check and reads the reasons from the result strings: ErrString holds what blocks, the
// Warn strings what the user must confirm. Messages are separated by CR LF, oldest first.
//
// Record sets are borrowed: the checker holds a reference, reads them and sets filters and
// positions, and never changes a row. Every member may raise a RunTimeError whose source is the
// trail of operations that it passed; messages given before it stay in the result strings. One
// object serves one call at a time; two objects share nothing.

#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "frame/Findings.h"
#include "platform/Currency.h"
#include "platform/Recordset.h"
#include "platform/Unread.h"
#include "platform/Variant.h"
#include "siblings/Siblings.h"

namespace kal {

class Observer;
struct Registrazione;

class KalCOGCheck {
 public:
  // The siblings must outlive the checker.
  explicit KalCOGCheck(Siblings& siblings);
  KalCOGCheck(const KalCOGCheck&) = delete;
  KalCOGCheck& operator=(const KalCOGCheck&) = delete;
  ~KalCOGCheck();

  // The members in the order of the automation interface. A property is set by the overload that
  // takes its value and read by the one without arguments. What a caller may have to convert is
  // taken unread.
  void TmpTableScadenze(Unread<std::string> name);
  [[nodiscard]] std::string TmpTableScadenze() const;
  void IsFromCard(bool value);
  void IsParcella(bool value);
  [[nodiscard]] std::string IsInfragruppo() const;       // "True" or "False"
  [[nodiscard]] std::string WarnStringModifica() const;  // always ""
  [[nodiscard]] std::string WarnString() const;
  [[nodiscard]] std::string WarnDuplicatoDocString() const;
  [[nodiscard]] std::string WarnProtocolloString() const;
  [[nodiscard]] std::string WarnInfragruppoString() const;
  bool OkCancellaDoc(std::int16_t aTipologiaDoc, std::int32_t aIdDoc);
  bool OkModificaDoc(std::int16_t aTipologiaDoc, std::int32_t aIdDoc);
  [[nodiscard]] Currency ImportoPlafond() const;
  [[nodiscard]] bool ChiusuraRateInSospensione() const;
  [[nodiscard]] bool RiaperturaRateInSospensione() const;
  bool OkModifica();
  bool ScadenzeInDistinta();
  bool ScadenzeInDistintaIncPag();
  bool OkCancella();
  bool CheckDuplicatoNrDocRicevuto(Unread<std::string> aNumeroDoc, Unread<Variant> aDataDoc,
                                   std::int32_t aIdAnagrafica, std::int32_t aIdPrimaNota);
  bool ContabilitaChiusa();
  void RsCausale(Unread<RecordsetRef> set);
  void RsScadenze(Unread<RecordsetRef> set);
  [[nodiscard]] std::string ErrString() const;
  void RsTesta(Unread<RecordsetRef> set);
  void RsRIva(Unread<RecordsetRef> set);
  void RsRCont(Unread<RecordsetRef> set);
  bool OkAggiorna(bool aCheckRegIva, bool aCheckDuplicatoDoc);
  bool LibroGiornaleStampato(Unread<Variant> aDataReg);
  bool RegistriIvaStampati(Unread<Variant> aDataReg, std::int16_t aTipoRegIva,
                           std::int16_t aSezionale);
  std::int32_t LeggiIdPrimaNota(std::int32_t aIdDoc, std::int16_t aTipoDoc);  // -1: none
  void RsRisconti(Unread<RecordsetRef> set);
  void RsFiscalitaBL(Unread<RecordsetRef> set);
  bool CheckDuplicatoNrDocEmesso(std::int16_t aTipoRegIva, std::int16_t aSezionaleIva,
                                 Unread<std::string> aNumeroDoc, Unread<Variant> aDataDoc,
                                 std::int32_t aIdPrimaNota);
  // A reserved entry point: does nothing and returns 0.
  std::int32_t GenericFx(std::string_view v1, const std::shared_ptr<void>& v2);

  // For native hosts alone, no members of the automation interface: the findings that the result
  // strings join, valid until the next call; and who is told, from the next call on, what the
  // checker does (nullptr for nobody; the observer must outlive its use; its class is no part of
  // the headers that are installed).
  [[nodiscard]] const kal::Findings& Findings() const;
  void Observe(Observer* observer);

 private:
  std::unique_ptr<Registrazione> registrazione_;  // the entry, and all that is known of it
};

}  // namespace kal
