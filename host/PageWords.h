// PageWords: what the report page says, in both languages. The template and the script know each
// text by its name; fields of record sets have theirs.

#pragma once

#include <array>
#include <string_view>

#include "platform/Wording.h"

namespace kal::host {

struct PageWord {
  std::string_view name;
  Wording words;
};

inline constexpr auto kPageWords = std::to_array<PageWord>({
    {"title", {"Controllo delle registrazioni", "Check of the journal entries"}},
    {"skip", {"Vai all'elenco", "Go to the list"}},
    {"madeOn", {"Fatto il", "Made on"}},
    {"checked", {"Controllato", "Checked"}},
    {"company", {"Azienda", "Company"}},
    {"totals", {"Esito", "Outcome"}},
    {"entries", {"Registrazioni", "Entries"}},
    {"byMessage", {"Rilievi per messaggio", "Findings by message"}},
    {"byMessageHint",
     {"Dal più frequente. Un messaggio, scelto, filtra l'elenco.",
      "The most frequent first. Choosing a message filters the list."}},
    {"whatToDo", {"Che cosa fare", "What to do"}},
    {"whenArises", {"Quando compare", "When it arises"}},
    {"allMessages", {"Mostra tutti i messaggi", "Show all messages"}},
    {"noFindings", {"Nessun rilievo.", "No findings."}},
    {"calendar", {"Mesi e registri", "Months and registers"}},
    {"calendarHint",
     {"Registrazioni con rilievi, per mese di registrazione, su quante ne sono state controllate. "
      "Una casella, scelta, filtra l'elenco.",
      "Entries with findings, by month of registration, of those that were checked. Choosing a "
      "cell filters the list."}},
    {"register", {"Registro", "Register"}},
    {"year", {"Anno", "Year"}},
    {"of", {"su", "of"}},
    {"withFindings", {"con rilievi", "with findings"}},
    {"undated", {"Senza data di registrazione", "Without a registration date"}},
    {"otherYears", {"Altri anni", "Other years"}},
    {"legend", {"Quota con rilievi", "Share with findings"}},
    {"list", {"Registrazioni con rilievi", "Entries with findings"}},
    {"listHint",
     {"Con rilievi, rifiutate o non controllate, nell'ordine in cui sono state lette.",
      "With findings, refused or not checked, in the order in which they were read."}},
    {"filters", {"Filtri", "Filters"}},
    {"filterText", {"Testo", "Text"}},
    {"filterTextHint", {"id, documento, conto, messaggio…", "id, document, account, message…"}},
    {"filterMessage", {"Messaggio", "Message"}},
    {"filterMonth", {"Mese", "Month"}},
    {"filterKind", {"Genere", "Kind"}},
    {"any", {"Tutti", "All"}},
    {"clear", {"Togli i filtri", "Clear the filters"}},
    {"more", {"Mostrane altre", "Show more"}},
    {"shown", {"Mostrate", "Shown"}},
    {"none", {"Nessuna registrazione corrisponde ai filtri.", "No entry matches the filters."}},
    {"script",
     {"L'elenco delle registrazioni si apre con JavaScript attivo.",
      "The list of entries opens with JavaScript switched on."}},
    {"decision", {"Come si è deciso", "How it was decided"}},
    {"row", {"Riga", "Row"}},
    {"line", {"riga", "line"}},
    {"moreFindings", {"altri rilievi", "more findings"}},
    {"moreRows",
     {"righe in tutto; qui le prime e quelle con rilievi",
      "rows in all; here the first ones and those with findings"}},
    {"meant", {"riga con rilievi", "row with findings"}},
    {"notChecked", {"Non controllata", "Not checked"}},
    {"runTimeError", {"Errore di esecuzione", "Run-time error"}},
    {"trail", {"Percorso", "Trail"}},
    {"yes", {"sì", "yes"}},
    {"no", {"no", "no"}},
    {"customer", {"Cliente", "Customer"}},
    {"supplier", {"Fornitore", "Supplier"}},
    {"party", {"Anagrafica", "Party"}},
    {"date", {"Data", "Date"}},
    {"dated", {"del", "of"}},
    {"provisional", {"provvisoria", "provisional"}},
    {"protocol", {"Protocollo", "Protocol"}},
    {"section", {"Sezionale", "Section"}},
    {"document", {"Documento", "Document"}},
    {"total", {"Totale", "Total"}},
    {"template", {"Causale", "Template"}},
    {"RsRIva", {"Righe IVA", "VAT lines"}},
    {"RsRCont", {"Righe contabili", "Account lines"}},
    {"RsScadenze", {"Scadenze", "Installments"}},
    {"RsRisconti", {"Risconti", "Deferrals"}},
    {"RsFiscalitaBL", {"Dati di fiscalità privilegiata", "Fiscal data"}},
    {"NumeroRiga", {"N.", "No."}},
    {"CodIva", {"Codice IVA", "VAT code"}},
    {"Imponibile", {"Imponibile", "Taxable"}},
    {"ImponibileVB", {"Imponibile VB", "Taxable, base"}},
    {"Imposta", {"Imposta", "Tax"}},
    {"ImpostaVB", {"Imposta VB", "Tax, base"}},
    {"TotaleVB", {"Totale VB", "Total, base"}},
    {"Indetraibile", {"Indetraibile", "Not deductible"}},
    {"IndetraibileVB", {"Indetraibile VB", "Not deductible, base"}},
    {"ReverseCharge", {"Reverse charge", "Reverse charge"}},
    {"CodConto", {"Conto", "Account"}},
    {"TipoRiga", {"Tipo", "Type"}},
    {"ImportoDare", {"Dare", "Debit"}},
    {"ImportoDareVB", {"Dare VB", "Debit, base"}},
    {"ImportoAvere", {"Avere", "Credit"}},
    {"ImportoAvereVB", {"Avere VB", "Credit, base"}},
    {"IdCliFor", {"Cliente/fornitore", "Customer/supplier"}},
    {"TipoCliFor", {"Tipo anagrafica", "Party type"}},
    {"IdScadenza", {"Scadenza", "Installment"}},
    {"CodDivisa", {"Divisa", "Currency"}},
    {"NrRata", {"Rata", "Installment no."}},
    {"TipoRata", {"Tipo rata", "Installment type"}},
    {"DataScadenza", {"Scade il", "Due on"}},
    {"IdTipologiaPagamento", {"Pagamento", "Payment"}},
    {"IdBancaCliente", {"Banca cliente", "Customer's bank"}},
    {"LinkApertura", {"Apertura", "Opening"}},
    {"RataApertura", {"Rata di apertura", "Opening no."}},
    {"CodContoContropartita", {"Contropartita", "Counterpart"}},
});

inline constexpr std::array<Wording, 5> kRegisterWords = {{
    {"Acquisti", "Purchases"},
    {"Vendite", "Sales"},
    {"Corrispettivi", "Receipts"},
    {"Senza registro IVA", "Without a VAT register"},
    {"Altri registri", "Other registers"},
}};

inline constexpr std::array<Wording, 12> kMonthWords = {{
    {"gennaio", "January"},
    {"febbraio", "February"},
    {"marzo", "March"},
    {"aprile", "April"},
    {"maggio", "May"},
    {"giugno", "June"},
    {"luglio", "July"},
    {"agosto", "August"},
    {"settembre", "September"},
    {"ottobre", "October"},
    {"novembre", "November"},
    {"dicembre", "December"},
}};

}  // namespace kal::host
