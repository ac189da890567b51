#include "frame/Ordine.h"

#include <cstddef>

#include "frame/modDatabaseUtility.h"

namespace kal {

Seguito Percorri(Registrazione& aRegistrazione, std::span<const Passo> aOrdine) {
  Observer* const observer = aRegistrazione.Operazioni.observer;
  for (std::size_t place = 0; place < aOrdine.size(); ++place) {
    const Passo& passo = aOrdine[place];
    const bool applies = passo.Quando == kSempre || passo.Quando->Vale(aRegistrazione);
    if (observer != nullptr) {
      observer->Reached(aOrdine, place, applies);
    }
    if (applies && passo.Esegui(aRegistrazione) == Seguito::Fine) {
      return Seguito::Fine;
    }
  }
  return Seguito::Avanti;
}

bool Provvisoria(Registrazione& aRegistrazione) {
  std::optional<bool>& provvisoria = aRegistrazione.Corsa.Provvisoria;
  if (!provvisoria) {
    provvisoria = GetFlag(aRegistrazione.RsTesta, "Provvisoria");
  }
  return *provvisoria;
}

}  // namespace kal
