// CheckQuadraturaDatiFiscalitaBL: the fiscal data of the entry add up to its header's taxable and
// tax totals. Variation notes have columns of their own.
//
// A header total that is Null agrees with anything; fiscal data without rows agree with nothing.
// RsFiscalitaBL is left on its first row.

#include <array>
#include <span>
#include <string_view>

#include "checks/Checks.h"
#include "frame/modDatabaseUtility.h"
#include "frame/modKalErrorHandling.h"
#include "siblings/Components.h"

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

bool CheckQuadraturaDatiFiscalitaBL(Registrazione& aRegistrazione) {
  return Trap(aRegistrazione, "KalCOGCheck.CheckQuadraturaDatiFiscalitaBL", [&] {
    const RecordsetRef& rsTesta = aRegistrazione.RsTesta;
    const RecordsetRef& rsFiscalitaBL = aRegistrazione.RsFiscalitaBL;
    if (rsFiscalitaBL.IsNothing()) {
      return true;
    }
    if (!RecordsetIsEmpty(rsTesta) && RecordsetIsEmpty(rsFiscalitaBL)) {
      return false;
    }
    Totals totali(aRegistrazione.Siblings);
    totali.Recordset(rsFiscalitaBL);
    const std::string codCausale = CStr(GetField(rsTesta, "CodCausale"));
    const Colonne& colonne = VatCodes(aRegistrazione.Siblings).IsVariationNote(codCausale)
                                 ? kNoteVariazione
                                 : kDocumento;
    totali.Columns(colonne.elenco);
    totali.Compute();
    const Variant imponibile = Somma(totali, colonne.imponibili);
    const Variant imposta = Somma(totali, colonne.imposte);
    const bool diversi = RawField(rsTesta, "TotImponibileVB") != imponibile ||
                         RawField(rsTesta, "TotImpostaVB") != imposta;
    rsFiscalitaBL->MoveFirst();
    return !diversi;
  });
}

void SegnalaDatiFiscali(Registrazione& aRegistrazione) {
  if (!CheckQuadraturaDatiFiscalitaBL(aRegistrazione)) {
    AddMessage(aRegistrazione, WarnString, MessageCode::DatiFiscaliNonQuadrano);
  }
}

}  // namespace kal
