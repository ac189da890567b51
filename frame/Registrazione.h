// Registrazione: one journal entry under check, and all that is known of it.
//
// It is what every check works with: the record sets that the host handed over, its flags, the
// sibling components, and what the checks have found so far. KalCOGCheck holds one, and the checks
// are functions over it.
//
// Record sets are borrowed: they are read, filtered and moved, and never change a row.

#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "frame/Findings.h"
#include "frame/Observer.h"
#include "platform/Currency.h"
#include "platform/Recordset.h"
#include "platform/Variant.h"
#include "siblings/Siblings.h"

namespace kal {

// A record set of the host's, or Nothing, with the name by which the entry knows it.
class HostSet : public RecordsetRef {
 public:
  explicit HostSet(std::string_view name) : name_(name) {}
  HostSet& operator=(RecordsetRef set) {
    RecordsetRef::operator=(std::move(set));
    return *this;
  }

  // Where it stands, for a message about that row.
  [[nodiscard]] SetRow Riga() const {
    return {name_, IsNothing() ? std::size_t{0} : (*this)->Row()};
  }

 private:
  std::string_view name_;
};

// What the save check knows of the entry's posting template.
struct Causale {
  std::int16_t Operazione = 0;
  std::int16_t TipoRegIva = 0;
  bool CassaCorrispettivi = false;
  bool TipoVentilazione = false;
  std::int16_t SegnoIva = 0;
};

// What one run of a check finds out on its way, for the steps that follow.
struct Esecuzione {
  // OkAggiorna
  bool CheckRegIva = false;
  bool CheckDuplicatoDoc = false;
  bool AttivitaSeparateIva = false;
  std::int16_t TipoMovimentoEsercizio = 0;
  Variant DataIvaControllo;  // a date, or ""
  bool ParametriOk = true;
  std::int16_t SezionaleAutofattura = 0;
  std::int32_t ProtocolloCollegato = 0;  // -1: no linked entry
  // OkModifica
  bool ScadenzeChiuse = false;
  bool InDistinta = false;
  Variant DataIvaRiferita;  // of an entry without a register of its own
  // Both: the header's flag, read when it is first asked for.
  std::optional<bool> Provvisoria;
};

struct Registrazione {
  explicit Registrazione(kal::Siblings& siblings) : Siblings(siblings) {}

  kal::Siblings& Siblings;

  HostSet RsTesta{"RsTesta"};
  HostSet RsRIva{"RsRIva"};
  HostSet RsRCont{"RsRCont"};
  HostSet RsScadenze{"RsScadenze"};
  HostSet RsCausale{"RsCausale"};
  HostSet RsRisconti{"RsRisconti"};
  HostSet RsFiscalitaBL{"RsFiscalitaBL"};
  bool IsParcella = false;
  bool IsFromCard = false;
  std::string TmpTableScadenze;

  Causale CausaleCorrente;
  bool Infragruppo = false;
  Currency ImportoPlafond;
  bool ChiusuraRateInSospensione = false;
  bool RiaperturaRateInSospensione = false;
  Esecuzione Corsa;

  Findings Rilievi;
  mutable Operations Operazioni;
};

}  // namespace kal
