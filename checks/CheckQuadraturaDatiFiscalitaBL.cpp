// CheckQuadraturaDatiFiscalitaBL: the fiscal data of the entry add up to its header's taxable and
// tax totals. Variation notes have columns of their own.
//
// A header total that is Null agrees with anything; fiscal data without rows agree with nothing.
// RsFiscalitaBL is left on its first row.

#include <array>
#include <span>
#include <string_view>

#include "frame/KalCOGCheck.h"
#include "frame/modDatabaseUtility.h"
#include "frame/modKalErrorHandling.h"

namespace kal {
namespace {

struct Colonne {
  std::string_view elenco;  // as the totals object takes it
  std::span<const std::string_view> imponibili;
  std::span<const std::string_view> imposte;
};

constexpr std::array<std::string_view, 4> kImponibiliVariazione = {
    "NoteVariazioneBeni", "NoteVariazioneServizi", "NoteVariazioneBeniAnnoPrec",
    "NoteVariazioneServiziAnnoPrec"};
constexpr std::array<std::string_view, 4> kImposteVariazione = {
    "ImpostaNoteVariazioneBeni", "ImpostaNoteVariazioneServizi",
    "ImpostaNoteVariazioneBeniAnnoPrec", "ImpostaNoteVariazioneServiziAnnoPrec"};
constexpr Colonne kNoteVariazione = {
    "NoteVariazioneBeni, ImpostaNoteVariazioneBeni, NoteVariazioneServizi, "
    "ImpostaNoteVariazioneServizi, NoteVariazioneBeniAnnoPrec, ImpostaNoteVariazioneBeniAnnoPrec, "
    "NoteVariazioneServiziAnnoPrec, ImpostaNoteVariazioneServiziAnnoPrec",
    kImponibiliVariazione, kImposteVariazione};

constexpr std::array<std::string_view, 7> kImponibiliDocumento = {
    "BeniImponibili",    "ServiziImponibili",  "BeniNonImponibili",    "ServiziNonImponibili",
    "BeniServiziEsenti", "BeniNonSoggettiIva", "ServiziNonSoggettiIva"};
constexpr std::array<std::string_view, 2> kImposteDocumento = {"ImpostaBeniImponibili",
                                                               "ImpostaServiziImponibili"};
constexpr Colonne kDocumento = {
    "BeniImponibili, ServiziImponibili, BeniNonImponibili, ServiziNonImponibili, "
    "BeniServiziEsenti,"
    "BeniNonSoggettiIva, ServiziNonSoggettiIva, ImpostaBeniImponibili, ImpostaServiziImponibili",
    kImponibiliDocumento, kImposteDocumento};

Currency Somma(Totals& totali, std::span<const std::string_view> colonne) {
  Currency somma;
  for (const std::string_view colonna : colonne) {
    somma += totali.Total(colonna);
  }
  return somma;
}

}  // namespace

void KalCOGCheck::CheckQuadraturaDatiFiscalitaBL(bool& aOk) {
  Trap("KalCOGCheck.CheckQuadraturaDatiFiscalitaBL", aOk, [&] {
    aOk = true;
    if (rsFiscalitaBL_.IsNothing()) {
      return;
    }
    if (!RecordsetIsEmpty(rsTesta_) && RecordsetIsEmpty(rsFiscalitaBL_)) {
      aOk = false;
      return;
    }
    const auto totali = siblings_.CreateTotals();
    totali->Attach(rsFiscalitaBL_);
    const std::string codCausale = CStr(GetField(rsTesta_, "CodCausale"));
    const Colonne& colonne =
        siblings_.CreateVatCodes()->IsVariationNote(codCausale) ? kNoteVariazione : kDocumento;
    totali->Columns(colonne.elenco);
    totali->Compute();
    const Variant imponibile = Somma(*totali, colonne.imponibili);
    const Variant imposta = Somma(*totali, colonne.imposte);
    if (rsTesta_->Fields("TotImponibileVB").Value() != imponibile ||
        rsTesta_->Fields("TotImpostaVB").Value() != imposta) {
      aOk = false;
    }
    rsFiscalitaBL_->MoveFirst();
  });
}

}  // namespace kal
