// Importi: the signed amounts of an account line or an installment.
//
// A row whose debit is not zero in either currency is a debit row and counts positive; any other
// row is a credit row and counts its credit negative. No row counts both.

#pragma once

#include "frame/modDatabaseUtility.h"
#include "platform/Currency.h"
#include "platform/Recordset.h"

namespace kal {

struct ImportiConSegno {
  Currency Importo;    // in the entry's currency
  Currency ImportoVB;  // in the base currency
};

// Reads the current row of a set, and of its four amounts those that count. A Null amount is no
// debit, and raises 94 where it is the amount that counts.
class LettoreImporti {
 public:
  explicit LettoreImporti(const RecordsetRef& righe)
      : dare_(righe, "ImportoDare"),
        dareVB_(righe, "ImportoDareVB"),
        avere_(righe, "ImportoAvere"),
        avereVB_(righe, "ImportoAvereVB") {}

  [[nodiscard]] ImportiConSegno Leggi() {
    const Variant dare = dare_.Value();
    const Variant dareVB = dareVB_.Value();
    if (dare != 0 || dareVB != 0) {
      return {CCur(dare), CCur(dareVB)};
    }
    const Variant avere = avere_.Value();
    return {-CCur(avere), -CCur(avereVB_.Value())};
  }

 private:
  Campo dare_;
  Campo dareVB_;
  Campo avere_;
  Campo avereVB_;
};

}  // namespace kal
