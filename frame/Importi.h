// Importi: the signed amounts of an account line or an installment.
//
// A row whose debit is not zero in either currency is a debit row and counts positive; any other
// row is a credit row and counts its credit negative. No row counts both.

#pragma once

#include "platform/Currency.h"
#include "platform/Recordset.h"

namespace kal {

struct ImportiConSegno {
  Currency Importo;    // in the entry's currency
  Currency ImportoVB;  // in the base currency
};

// Reads the current row of a set; the fields are looked up once. A Null amount is no debit, and
// raises 94 where it is the amount that counts.
class LettoreImporti {
 public:
  explicit LettoreImporti(Recordset& righe)
      : dare_(righe.Fields("ImportoDare")),
        dareVB_(righe.Fields("ImportoDareVB")),
        avere_(righe.Fields("ImportoAvere")),
        avereVB_(righe.Fields("ImportoAvereVB")) {}

  [[nodiscard]] ImportiConSegno Leggi() const {
    const Variant dare = dare_.Value();
    const Variant dareVB = dareVB_.Value();
    if (dare != 0 || dareVB != 0) {
      return {CCur(dare), CCur(dareVB)};
    }
    return {-CCur(avere_.Value()), -CCur(avereVB_.Value())};
  }

 private:
  const Field& dare_;
  const Field& dareVB_;
  const Field& avere_;
  const Field& avereVB_;
};

}  // namespace kal
