// Rate: how the checks walk the ordinary installments and hand the set back.

#pragma once

#include <cstddef>
#include <string_view>

#include "platform/Recordset.h"

namespace kal {

// The filter under which only ordinary installments are visible.
inline constexpr std::string_view kFiltroRateOrdinarie = "TipoRata = 0";

// Moves an unfiltered set behind its last row.
void VaiAllaFine(Recordset& rate);

// Moves an unfiltered set to its n-th ordinary installment, counted from 1: clearing the filter
// went back to the first row, and a walk hands the set back where it stopped.
void VaiAllaRataOrdinaria(Recordset& rate, std::size_t n);

}  // namespace kal
