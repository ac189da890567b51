// OkAggiorna: may this entry be saved?

#pragma once

#include <span>

#include "frame/Ordine.h"
#include "frame/Registrazione.h"

namespace kal {

// The order of the save check.
std::span<const Passo> OrdineAggiorna();

bool OkAggiorna(Registrazione& aRegistrazione, bool aCheckRegIva, bool aCheckDuplicatoDoc);

}  // namespace kal
