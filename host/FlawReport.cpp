#include "host/FlawReport.h"

#include <algorithm>

namespace kal::host {
namespace {

using company::Flaw;
using company::FlawKind;

struct FlawWording {
  FlawKind kind;
  Wording what;
  Wording remedy;
};

constexpr FlawWording kWordings[] = {
    {FlawKind::Damaged,
     {"la banca dati è danneggiata", "the database is damaged"},
     {"ripristinare la copia di sicurezza più recente", "put back the latest copy that is whole"}},
    {FlawKind::NoTable,
     {"la tabella manca", "the table is missing"},
     {"ripristinarla da una copia, o crearla come in un'azienda nuova",
      "put it back from a copy, or make it as in a new company"}},
    {FlawKind::View,
     {"è una vista, non una tabella", "it is a view, not a table"},
     {"sostituirla con una tabella che contenga le righe della vista",
      "put a table with the view's rows in its place"}},
    {FlawKind::NoColumn,
     {"la colonna manca", "the column is missing"},
     {"aggiungerla con ALTER TABLE, e riempirla", "add it with ALTER TABLE, and fill it"}},
    {FlawKind::Declaration,
     {"la colonna è dichiarata in modo da cambiare ciò che vi si scrive",
      "the column is declared in a way that changes what is stored in it"},
     {"rifare la tabella con le colonne di un'azienda nuova, e riportarvi i valori originali",
      "make the table anew with a new company's columns, and fill in the original values"}},
    {FlawKind::NoIndex,
     {"l'indice manca: i controlli sono lenti", "the index is missing: checks are slow"},
     {"eseguire il comando qui sopra", "run the statement above"}},
    {FlawKind::Value,
     {"il valore non è del tipo della colonna, e nessun controllo lo trova",
      "the value is not of the column's kind, and no check finds it"},
     {"scriverlo come vuole la colonna: date aaaa-mm-gg, numeri come numeri, importi con al più "
      "quattro decimali",
      "store it as the column wants it: dates yyyy-mm-dd, numbers as numbers, amounts with at "
      "most four decimals"}},
    {FlawKind::Setting,
     {"l'impostazione non si legge: ogni controllo che la chiede si ferma con un errore",
      "the setting can't be read: every check that asks for it stops with an error"},
     {"scrivere 0 o 1 per un sì o no, una data come aaaa-mm-gg",
      "store 0 or 1 for a yes or no, a date as yyyy-mm-dd"}},
    {FlawKind::Duplicate,
     {"più righe hanno la stessa chiave: ne conta una sola, e non si sa quale",
      "several rows have the same key: only one counts, and it is not known which"},
     {"tenere la riga giusta ed eliminare le altre", "keep the right row and delete the others"}},
    {FlawKind::Period,
     {"il periodo finisce prima di cominciare: nessun giorno vi cade",
      "the period ends before it starts: no day is in it"},
     {"correggere le due date", "correct the two dates"}},
    {FlawKind::Overlap,
     {"i periodi si sovrappongono: conta quello di codice più basso",
      "the periods overlap: the one with the lowest code counts"},
     {"correggere le date, così che ogni giorno cada in un periodo solo",
      "correct the dates so that each day is in one period only"}},
    {FlawKind::NoText,
     {"il messaggio non ha testo: compare il suo codice tra parentesi",
      "the message has no text: its code appears in brackets"},
     {"riportare il testo da un'azienda nuova", "copy the text from a new company"}},
    {FlawKind::NoVersion,
     {"una modifica della tabella non ne cambia la versione: ogni controllo la rilegge",
      "a change of the table raises no version: every check reads it again"},
     {"riattivare i trigger della tabella, o crearli come in un'azienda nuova",
      "enable the table's triggers again, or make them as in a new company"}},
    {FlawKind::More,
     {"altre righe con difetti: qui ne sono elencate mille",
      "more rows with flaws: a thousand are listed here"},
     {"correggere queste, poi verificare di nuovo", "mend these, then verify again"}},
};

}  // namespace

std::string ToText(const Flaw& flaw, Language language) {
  const FlawWording& wording = *std::ranges::find(kWordings, flaw.kind, &FlawWording::kind);
  std::string where = flaw.table;
  if (!flaw.column.empty()) {
    where += "." + flaw.column;
  }
  if (flaw.row != 0) {
    where += Wording{", riga ", ", row "}.In(language) + std::to_string(flaw.row);
  }
  std::string text = where + (where.empty() ? "" : ": ") + wording.what.In(language);
  if (!flaw.detail.empty()) {
    text += ": " + flaw.detail;
  }
  return Wrapped(Printable(text), 0) +
         Wrapped(
             Wording{"che cosa fare: ", "what to do: "}.In(language) + wording.remedy.In(language),
             2);
}

}  // namespace kal::host
