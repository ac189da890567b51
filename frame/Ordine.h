// Ordine: the order in which an operation runs its checks, as data.
//
// An operation states its order once, as a constant column of steps: under which condition, which
// check, by which function. The run walks the column; whoever explains a run reads the same rows.

#pragma once

#include <span>
#include <string_view>
#include <type_traits>

#include "frame/Registrazione.h"
#include "platform/Wording.h"

namespace kal {

// When a step applies, and the words that say so: "only for …".
struct Condizione {
  bool (*Vale)(Registrazione& aRegistrazione);
  Wording Parole;
};

inline constexpr const Condizione* kSempre = nullptr;

// Whether the run goes on behind a step.
enum class Seguito : bool { Fine, Avanti };

struct Passo {
  const Condizione* Quando;    // kSempre: always
  std::string_view Controllo;  // the check's own name; "" for a step that is no check of its own
  Seguito (*Esegui)(Registrazione& aRegistrazione);
};

// A function over the entry as a step: one that answers Seguito decides whether the run goes on.
template <auto kFunzione>
Seguito Esegui(Registrazione& aRegistrazione) {
  if constexpr (std::is_same_v<decltype(kFunzione(aRegistrazione)), Seguito>) {
    return kFunzione(aRegistrazione);
  } else {
    static_assert(std::is_void_v<decltype(kFunzione(aRegistrazione))>,
                  "an answer would be lost: give it its message in a function of its own");
    kFunzione(aRegistrazione);
    return Seguito::Avanti;
  }
}

// Runs the steps that apply. Fine when one of them ended the run.
Seguito Percorri(Registrazione& aRegistrazione, std::span<const Passo> aOrdine);

// Whether the entry is provisional. The header is asked once in a run.
[[nodiscard]] bool Provvisoria(Registrazione& aRegistrazione);

}  // namespace kal
