#include "frame/Rate.h"

#include "frame/modCommonCostanti.h"

namespace kal {

void VaiAllaFine(Recordset& rate) {
  rate.MoveLast();
  rate.MoveNext();
}

void VaiAllaRataOrdinaria(Recordset& rate, std::size_t n) {
  const Field& tipoRata = rate.Fields("TipoRata");
  std::size_t trovate = 0;
  for (rate.MoveFirst(); !rate.Eof(); rate.MoveNext()) {
    if (tipoRata.Value() == kRataApertura && ++trovate == n) {
      return;
    }
  }
}

}  // namespace kal
