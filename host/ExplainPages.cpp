// A page says when its message arises and what the user can do; what its check protects is said
// once for each check. An operation's order stands here a second time, for those checks that a run
// did not reach: a test holds it to the runs themselves.

#include "host/ExplainPages.h"

#include <algorithm>
#include <array>
#include <cstdint>

#include "company/MessageTexts.h"
#include "frame/modCommonCostanti.h"

namespace kal::host {
namespace {

struct CheckPage {
  std::string_view name;
  Wording protects;
};

constexpr CheckPage kChecks[] = {
    {"OkQuadratura",
     {"La partita doppia: ogni riga ha un conto di registrazione, e il dare è uguale all'avere "
      "senza alcuna tolleranza.",
      "Double entry: every line has a posting account, and debits equal credits without any "
      "tolerance."}},
    {"QuadraScadenze",
     {"Lo scadenzario: le rate di un cliente o fornitore valgono quanto la sua riga.",
      "The schedule of payments: the installments of a customer or supplier are worth as much as "
      "its line."}},
    {"OkCastellettoIva",
     {"Il riepilogo IVA: ogni riga ha un codice, e non c'è imposta senza imponibile.",
      "The VAT summary: every line has a code, and there is no tax without a taxable amount."}},
    {"CheckCongruenzaAliquote",
     {"I codici IVA adatti alla registrazione: dati di fiscalità privilegiata, dichiarazione "
      "d'intento, operazioni intracomunitarie.",
      "VAT codes that suit the entry: its fiscal data, its declaration of intent, intra-community "
      "trade."}},
    {"CheckCodIva",
     {"La tabella dei codici IVA: quelli delle righe esistono, e indicano il codice "
      "dell'autofattura quando serve.",
      "The table of VAT codes: those of the lines exist, and name the self-invoice code where one "
      "is needed."}},
    {"CheckSegnoRigheIva",
     {"Il lato delle righe IVA: in dare sugli acquisti, in avere sulle vendite.",
      "The side of VAT lines: debit on purchases, credit on sales."}},
    {"CheckCompilazioneParcella",
     {"I dati della parcella, dovuti per gli acquisti da professionisti.",
      "The fee-note data, due on purchases from professionals."}},
    {"CheckInfragruppo",
     {"Le operazioni fra società del gruppo, che vanno marcate come tali.",
      "Business between companies of the group, which is to be marked as such."}},
    {"CheckDateScadenza",
     {"Lo scadenzario: ogni rata scade in una data.",
      "The schedule of payments: every installment falls due on a date."}},
    {"CheckBanca",
     {"L'incasso degli effetti, che passa per la banca del cliente.",
      "The collection of bills of exchange, which runs through the customer's bank."}},
    {"CheckEffettiSplitPayment",
     {"L'incasso di una fattura in split payment: il cliente non paga l'IVA, e un effetto non deve "
      "contenerla.",
      "The collection of a split-payment invoice: the customer does not pay the VAT, and a bill "
      "must not contain it."}},
    {"EsisteSezionale",
     {"La numerazione della prima nota: il sezionale è definito per l'esercizio.",
      "The numbering of journal entries: the section is defined for the fiscal year."}},
    {"ControllaCongruenzaDate",
     {"La sequenza delle date: competenza in un esercizio noto, documento non dopo la "
      "registrazione.",
      "The sequence of dates: competence in a known fiscal year, document not after its "
      "registration."}},
    {"TestEsercizioCompetenza",
     {"L'esercizio di competenza: non si scrive in uno chiuso; aperture e chiusure stanno ai suoi "
      "estremi.",
      "The fiscal year of competence: nothing is written into a closed one; openings and closings "
      "stand at its ends."}},
    {"CheckPeriodoLiquidato",
     {"La liquidazione IVA: quando è definitiva, il suo periodo non cambia più.",
      "The VAT settlement: once it is final, its period does not change any more."}},
    {"ContabilitaChiusa",
     {"La contabilità di un esercizio già chiuso.", "The accounts of a year that is closed."}},
    {"LibroGiornaleStampato",
     {"Il libro giornale stampato in bollato, che deve restare uguale ai dati.",
      "The general journal printed on its official pages, which must stay equal to the data."}},
    {"RegistriIvaStampati",
     {"I registri IVA stampati in bollato, che devono restare uguali ai dati.",
      "The VAT registers printed on their official pages, which must stay equal to the data."}},
    {"ParametriIvaOk",
     {"I parametri IVA dell'anno, senza i quali non c'è liquidazione.",
      "The VAT parameters of the year, without which there is no settlement."}},
    {"CheckChiusuraContenstualeSospensione",
     {"L'IVA in sospensione, che diventa esigibile con un incasso registrato a parte.",
      "VAT in suspension, which becomes due with a collection that is registered by itself."}},
    {"CheckRateiRisconti",
     {"Ratei e risconti: la loro contropartita sta tra le righe della registrazione.",
      "Accruals and deferrals: their counterpart stands among the lines of the entry."}},
    {"TestProtocollo",
     {"I protocolli del registro: crescono con la data e non si ripetono.",
      "The protocols of the register: they grow with the date and are not repeated."}},
    {"TestProtocolloIntra",
     {"I protocolli delle autofatture: crescono con la data e non si ripetono.",
      "The protocols of the self-invoices: they grow with the date and are not repeated."}},
    {"CheckDuplicatoNrDocEmesso",
     {"Il numero del documento: ognuno si registra una volta sola.",
      "The number of the document: each is registered only once."}},
    {"CheckQuadraturaDatiFiscalitaBL",
     {"I dati di fiscalità privilegiata, uguali ai totali della registrazione.",
      "The fiscal data, equal to the totals of the entry."}},
    {"OkDivisaSuRighe",
     {"La divisa di ogni riga, dove la proprietà la tiene sulle righe.",
      "The currency of every line, where the entry's property keeps it on the lines."}},
    {"ScadenzeDocChiuse",
     {"Gli incassi e i pagamenti già registrati sulle rate.",
      "The collections and payments already registered on the installments."}},
    {"ScadenzeInDistinta",
     {"Le distinte già presentate in banca.", "The remittances already handed to the bank."}},
    {"RRContabilizzati",
     {"I ratei e risconti già contabilizzati a fine periodo.",
      "The accruals and deferrals already posted at the end of their period."}},
    {"CreaRecordCausale",
     {"La causale, dalla quale dipende ogni altro controllo.",
      "The posting template, on which every other check depends."}},
};

constexpr Wording kRegistri = {"I registri IVA e la loro numerazione.",
                               "The VAT registers and their numbering."};
constexpr Wording kRighe = {"Il contenuto della registrazione.", "The content of the entry."};
constexpr Wording kPeriodi = {"I periodi bloccati dall'azienda.",
                              "The periods that the company has locked."};
constexpr Wording kAutofatture = {"L'autofattura che la registrazione genera nel registro vendite.",
                                  "The self-invoice that the entry makes in the sales register."};
constexpr Wording kSplit = {"Lo split payment: sezionale e cliente devono concordare.",
                            "Split payment: section and customer must agree."};
constexpr Wording kIntento = {"La dichiarazione d'intento: importo, validità e documento.",
                              "The declaration of intent: amount, validity and document."};
constexpr Wording kSospese = {"L'IVA in sospensione, che non ammette totali negativi.",
                              "VAT in suspension, which knows no negative totals."};
constexpr Wording kSoglie = {"La comunicazione dei corrispettivi oltre soglia.",
                             "The report of receipts above the threshold."};
constexpr Wording kGenerate = {
    "Le registrazioni generate da questa, che resterebbero senza origine.",
    "The entries that this one has generated, which would be left without an origin."};
constexpr Wording kFatturaElettronica = {
    "La fattura elettronica, che deve restare uguale alla registrazione.",
    "The electronic invoice, which must stay equal to the entry."};

constexpr MessagePage kPages[] = {
    {"NumeroDocumentoVuoto",
     "OkAggiorna",
     "",
     "vendita-senza-numero",
     {"La registrazione è definitiva, la causale ha un registro IVA e il numero del documento è "
      "vuoto.",
      "The entry is definitive, its template has a VAT register and the document number is empty."},
     {"Indicare il numero del documento, o salvare la registrazione come provvisoria.",
      "Enter the document number, or save the entry as provisional."},
     kRegistri},
    {"LibroGiornaleGiaStampato",
     "LibroGiornaleStampato",
     "",
     "acquisto-registro-stampato",
     {"Il giornale del mese di registrazione risulta stampato in bollato.",
      "The journal of the registration month is marked as printed on its official pages."},
     {"Usare una data di registrazione di un mese non ancora stampato; per correggere, registrare "
      "uno storno.",
      "Use a registration date of a month that is not printed yet; to correct, register a "
      "reversal."}},
    {"RegistroIvaGiaStampato",
     "RegistriIvaStampati",
     "",
     "acquisto-registro-stampato",
     {"È stampato il registro IVA del sezionale nel mese di registrazione, o il riepilogo del suo "
      "periodo. Chi salva può chiedere di non controllarlo.",
      "The VAT register of the section is printed for the registration month, or the summary of "
      "its period. Whoever saves may ask to pass this over."},
     {"Usare una data di registrazione di un mese non ancora stampato.",
      "Use a registration date of a month that is not printed yet."}},
    {"ScadenzeNonQuadrano",
     "QuadraScadenze",
     "RsRCont",
     "acquisto-rate-non-quadrano",
     {"Le rate legate a una riga di cliente o fornitore non danno esattamente il suo importo; in "
      "divisa estera si confronta anche la divisa. Le registrazioni senza totale documento non si "
      "confrontano.",
      "The installments tied to a customer or supplier line do not give exactly its amount; in "
      "foreign currency that currency is compared too. Entries without a document total are not "
      "compared."},
     {"Correggere gli importi delle rate, o ricalcolare le scadenze dalla riga.",
      "Correct the amounts of the installments, or work them out from the line again."}},
    {"SbilancioVB",
     "OkQuadratura",
     "",
     "giroconto-sbilanciato",
     {"Tutte le righe hanno un conto, e in valuta di conto dare e avere differiscono, anche solo "
      "di 0,0001.",
      "All lines have an account, and debits and credits differ in the base currency, be it by "
      "0.0001."},
     {"Cercare la riga con l'importo o il lato sbagliato, e completare la registrazione.",
      "Look for the line with the wrong amount or side, and complete the entry."}},
    {"SbilancioDivisa",
     "OkQuadratura",
     "",
     "vendita-in-valuta-sbilanciata",
     {"Registrazione IVA o libera: quadra in valuta di conto ma non nella sua divisa.",
      "A VAT or free registration: it balances in the base currency but not in its own."},
     {"Correggere gli importi in divisa delle righe.",
      "Correct the amounts of the lines in the entry's currency."}},
    {"SbilancioRigheIva",
     "OkQuadratura",
     "",
     "vendita-tipo-riga-errato",
     {"Registrazione IVA o libera, tranne i corrispettivi: le righe dei tipi 1, 2 e 3 non si "
      "compensano tra loro.",
      "A VAT or free registration other than receipts: the lines of types 1, 2 and 3 do not make "
      "up for each other."},
     {"Verificare gli importi e il tipo di ciascuna riga.",
      "Check the amounts and the type of each line."}},
    {"SbilancioRigheTipo4",
     "OkQuadratura",
     "",
     "vendita-tipo-riga-errato",
     {"Registrazione IVA o libera, tranne i corrispettivi: le righe di tipo 4 non si compensano.",
      "A VAT or free registration other than receipts: the lines of type 4 do not make up for each "
      "other."},
     {"Completare il giroconto, o correggere il tipo delle righe.",
      "Complete the transfer, or correct the type of its lines."}},
    {"DocumentoDopoRegistrazione",
     "ControllaCongruenzaDate",
     "",
     "acquisto-documento-futuro",
     {"La data del documento segue quella di registrazione.",
      "The document date follows the registration date."},
     {"Correggere una delle due date.", "Correct one of the two dates."}},
    {"MeseDocumentoDiverso",
     "ControllaCongruenzaDate",
     "",
     "vendita-mese-diverso",
     {"Registro vendite: documento e registrazione hanno mesi diversi (si confronta il numero del "
      "mese, non l'anno).",
      "Sales register: document and registration have different months (the month's number is "
      "compared, not the year)."},
     {"Registrare la vendita nel mese del documento.",
      "Register the sale in the month of its document."}},
    {"CodIvaInesistente",
     "CheckCodIva",
     "RsRIva",
     "riga-iva-codice-inesistente",
     {"Il codice IVA di una riga non è in tabella; il codice VENT non si cerca.",
      "The VAT code of a line is not in the table; the code VENT is not looked up."},
     {"Scegliere un codice della tabella, o inserirvi quello nuovo.",
      "Choose a code of the table, or add the new one to it."}},
    {"PeriodoIvaLiquidato",
     "CheckPeriodoLiquidato",
     "",
     "modifica-incasso-iva-liquidata",
     {"Modifica o cancellazione di una registrazione senza registro IVA che si riferisce a una "
      "data IVA, e la liquidazione di quel periodo è definitiva, o non dice di non esserlo.",
      "Change or deletion of an entry without a VAT register that refers to a VAT date, and the "
      "settlement of that period is final, or does not say that it is not."},
     {"Lasciare la registrazione e rettificare in un periodo aperto.",
      "Leave the entry and adjust in an open period."}},
    {"AperturaNonInizioEsercizio",
     "TestEsercizioCompetenza",
     "",
     "apertura-data-errata",
     {"La causale è di apertura e la data di competenza non è il primo giorno dell'esercizio.",
      "The template is one for openings and the competence date is not the first day of the fiscal "
      "year."},
     {"Usare come competenza il primo giorno dell'esercizio.",
      "Use the first day of the fiscal year as competence date."}},
    {"ChiusuraNonFineEsercizio",
     "TestEsercizioCompetenza",
     "",
     "chiusura-data-errata",
     {"La causale è di chiusura e la data di competenza non è l'ultimo giorno dell'esercizio.",
      "The template is one for closings and the competence date is not the last day of the fiscal "
      "year."},
     {"Usare come competenza l'ultimo giorno dell'esercizio.",
      "Use the last day of the fiscal year as competence date."}},
    {"EsercizioCompetenzaChiuso",
     "TestEsercizioCompetenza",
     "",
     "acquisto-competenza-anno-chiuso",
     {"L'esercizio della data di competenza è chiuso. Aperture e chiusure nel loro giorno sono "
      "ammesse.",
      "The fiscal year of the competence date is closed. Openings and closings on their day are "
      "allowed."},
     {"Usare una data di competenza dell'esercizio aperto.",
      "Use a competence date of the open fiscal year."}},
    {"SezionaleIvaInesistente",
     "OkAggiorna",
     "",
     "vendita-sezionale-iva-inesistente",
     {"Registrazione IVA definitiva il cui sezionale non è tra le numerazioni IVA dell'anno.",
      "A definitive VAT entry whose section is not among the VAT numberings of the year."},
     {"Correggere il sezionale, o definirlo nelle numerazioni IVA dell'anno.",
      "Correct the section, or define it in the VAT numberings of the year."},
     kRegistri},
    {"ProtocolloNonInOrdine",
     "TestProtocollo",
     "",
     "acquisto-protocollo-fuori-ordine",
     {"Nello stesso registro, sezionale e anno c'è lo stesso protocollo, uno maggiore prima o uno "
      "minore dopo. Nello stesso giorno ogni ordine va bene.",
      "The same register, section and year holds the same protocol, a greater one before or a "
      "smaller one after. On the same day any order will do."},
     {"Verificare protocollo e data; se è voluto, confermare.",
      "Check protocol and date; if it is meant, confirm."}},
    {"NumeroDocumentoDuplicato",
     "CheckDuplicatoNrDocEmesso",
     "",
     "vendita-numero-gia-usato",
     {"Nell'anno del documento un'altra registrazione definitiva ha lo stesso numero: sugli "
      "acquisti per fornitore (CheckDuplicatoNrDocRicevuto), altrimenti per registro e sezionale.",
      "In the document's year another definitive entry has the same number: by supplier on "
      "purchases (CheckDuplicatoNrDocRicevuto), by register and section otherwise."},
     {"Controllare che il documento non sia già registrato; se è un altro, confermare.",
      "Check that the document is not registered already; if it is another one, confirm."}},
    {"ProtocolloMancante",
     "OkAggiorna",
     "",
     "giroconto-senza-protocollo",
     {"La registrazione è definitiva e il protocollo è 0, anche senza registro IVA.",
      "The entry is definitive and its protocol is 0, also without a VAT register."},
     {"Assegnare il protocollo.", "Give the entry a protocol."},
     kRegistri},
    {"ContabilitaEsercizioChiusa",
     "ContabilitaChiusa",
     "",
     "acquisto-competenza-anno-chiuso",
     {"La contabilità dell'esercizio della data di competenza è chiusa.",
      "The accounts of the fiscal year of the competence date are closed."},
     {"Usare una data di competenza di un esercizio aperto.",
      "Use a competence date of an open fiscal year."}},
    {"BancaClienteMancante",
     "CheckBanca",
     "RsScadenze",
     "vendita-effetto-senza-banca",
     {"Fattura di vendita con una rata ordinaria pagata con effetto e senza banca del cliente.",
      "A sales invoice with an ordinary installment paid by bill of exchange and no bank of the "
      "customer."},
     {"Indicare la banca sulla rata, o cambiare il tipo di pagamento.",
      "Name the bank on the installment, or change its payment type."}},
    {"PeriodoBloccato",
     "OkAggiorna",
     "",
     "acquisto-periodo-bloccato",
     {"La data IVA cade in un periodo bloccato. Vale per il salvataggio e per la modifica "
      "(modifica-periodo-bloccato).",
      "The VAT date lies in a locked period. This holds for saving and for changing "
      "(modifica-periodo-bloccato)."},
     {"Verificare la data IVA, o chiedere lo sblocco del periodo.",
      "Check the VAT date, or ask for the period to be unlocked."},
     kPeriodi},
    {"EsisteIntegrazioneIntra",
     "OkModifica",
     "",
     "modifica-acquisto-intra-integrato",
     {"Un'integrazione intracomunitaria punta a questa registrazione.",
      "An intra-community integration points to this entry."},
     {"Eliminare prima l'integrazione, poi modificare e rigenerarla.",
      "Delete the integration first, then change the entry and generate it again."},
     kGenerate},
    {"EsercizioInesistente",
     "EsisteSezionale",
     "",
     "registrazione-fuori-esercizio",
     {"Registrazione provvisoria o senza registro IVA la cui data di registrazione non cade in "
      "alcun esercizio.",
      "An entry that is provisional or without a VAT register whose registration date lies in no "
      "fiscal year."},
     {"Correggere la data, o aprire l'esercizio.", "Correct the date, or open the fiscal year."}},
    {"SezionaleInesistente",
     "EsisteSezionale",
     "",
     "registrazione-fuori-esercizio",
     {"Il sezionale non è tra le numerazioni dell'esercizio: quelle contabili per le definitive, "
      "quelle extra per le provvisorie.",
      "The section is not among the numberings of the fiscal year: the journal ones for definitive "
      "entries, the extra ones for provisional entries."},
     {"Correggere il sezionale, o definirlo per l'esercizio.",
      "Correct the section, or define it for the fiscal year."}},
    {"SezionaleAutofatturaInesistente",
     "OkAggiorna",
     "",
     "acquisto-autofatture-senza-sezionale",
     {"Acquisto definitivo intracomunitario o in reverse charge: il sezionale vendite delle "
      "autofatture non è definito per l'anno.",
      "A definitive intra-community or reverse-charge purchase: the sales section of the "
      "self-invoices is not defined for the year."},
     {"Definire il sezionale per l'anno, o correggere quello indicato per le autofatture.",
      "Define the section for the year, or correct the one named for self-invoices."},
     kAutofatture},
    {"RegistroPlafondStampato",
     "RegistriIvaStampati",
     "",
     "acquisto-plafond-registro-stampato",
     {"Acquisto definitivo con data plafond in un mese il cui registro IVA è stampato.",
      "A definitive purchase with a plafond date in a month whose VAT register is printed."},
     {"Usare una data plafond di un mese non ancora stampato.",
      "Use a plafond date of a month that is not printed yet."}},
    {"ScadenzeChiuse",
     "ScadenzeDocChiuse",
     "",
     "modifica-acquisto-pagato",
     {"Modifica o cancellazione di una registrazione IVA con rate già chiuse. Blocca i documenti "
      "in split payment se l'azienda ne gira l'IVA, altrimenti avvisa.",
      "Change or deletion of a VAT entry whose installments are closed already. It blocks "
      "split-payment documents where the company transfers their VAT, and warns otherwise."},
     {"Annullare prima l'incasso o il pagamento, o confermare sapendolo.",
      "Take back the collection or payment first, or confirm knowing of it."}},
    {"ScadenzeInDistintaPresenti",
     "ScadenzeInDistinta",
     "",
     "modifica-vendita-in-distinta",
     {"Una rata della registrazione, o un suo incasso o pagamento (ScadenzeInDistintaIncPag), è in "
      "una distinta.",
      "An installment of the entry, or a collection or payment of it (ScadenzeInDistintaIncPag), "
      "is in a remittance."},
     {"Togliere la rata dalla distinta, o confermare sapendolo.",
      "Take the installment out of the remittance, or confirm knowing of it."}},
    {"ParametriIvaMancanti",
     "ParametriIvaOk",
     "",
     "vendita-senza-parametri-iva",
     {"Registrazione IVA definitiva per il cui anno mancano i parametri IVA, dell'azienda o "
      "dell'attività.",
      "A definitive VAT entry for whose year the VAT parameters are missing, of the company or of "
      "the activity."},
     {"Inserire i parametri IVA dell'anno.", "Enter the VAT parameters of the year."}},
    {"ContoMancante",
     "OkQuadratura",
     "RsRCont",
     "riga-senza-conto",
     {"Il conto di una riga è vuoto, non esiste o è soltanto un raggruppamento. Finché manca un "
      "conto, la quadratura non si controlla.",
      "The account of a line is empty, does not exist or is only a heading. While an account is "
      "missing, the balance is not checked."},
     {"Indicare un conto di registrazione del piano dei conti.",
      "Name a posting account of the chart of accounts."}},
    {"CodIvaMancante",
     "OkCastellettoIva",
     "RsRIva",
     "riga-iva-senza-codice",
     {"Una riga IVA non ha codice.", "A VAT line has no code."},
     {"Indicare il codice IVA della riga.", "Enter the VAT code of the line."}},
    {"NessunaRiga",
     "OkAggiorna",
     "",
     "registrazione-senza-righe",
     {"Non c'è alcuna riga contabile e, con un registro IVA, nemmeno una riga IVA.",
      "There is no account line and, with a VAT register, no VAT line either."},
     {"Inserire le righe, o confermare una registrazione vuota.",
      "Enter the lines, or confirm an empty entry."},
     kRighe},
    {"EsercizioCompetenzaInesistente",
     "ControllaCongruenzaDate",
     "",
     "registrazione-fuori-esercizio",
     {"Nessun esercizio contiene la data di competenza.",
      "No fiscal year contains the competence date."},
     {"Correggere la data, o aprire l'esercizio.", "Correct the date, or open the fiscal year."}},
    {"CausaleInesistente",
     "CreaRecordCausale",
     "",
     "causale-inesistente",
     {"La causale manca o non è in tabella. Nient'altro viene controllato.",
      "The posting template is missing or not in its table. Nothing else is checked."},
     {"Scegliere una causale della tabella.", "Choose a posting template of the table."}},
    {"DivisaRigaMancante",
     "OkDivisaSuRighe",
     "RsRCont",
     "movimento-senza-divisa-sulle-righe",
     {"Senza registro IVA: la proprietà della registrazione vuole la divisa sulle righe, e una "
      "riga la lascia vuota.",
      "Without a VAT register: the entry's property wants the currency on the lines, and a line "
      "leaves it empty."},
     {"Indicare la divisa della riga.", "Enter the currency of the line."}},
    {"AutofatturaNonInOrdine",
     "TestProtocolloIntra",
     "",
     "acquisto-reverse-charge-gennaio",
     {"Il protocollo che l'autofattura ha o avrà non è in ordine di data nel suo sezionale.",
      "The protocol that the self-invoice has or will get is not in the order of dates of its "
      "section."},
     {"Verificare la data di registrazione; se è voluto, confermare.",
      "Check the registration date; if it is meant, confirm."}},
    {"RegistroAutofatturaStampato",
     "RegistriIvaStampati",
     "",
     "acquisto-reverse-charge-gennaio",
     {"È stampato il registro vendite del sezionale delle autofatture nel mese di registrazione.",
      "The sales register of the self-invoice section is printed for the registration month."},
     {"Usare una data di registrazione di un mese non ancora stampato.",
      "Use a registration date of a month that is not printed yet."}},
    {"SegnoRigheIva",
     "CheckSegnoRigheIva",
     "",
     "acquisto-iva-in-avere",
     {"Le righe di tipo 3 di un acquisto hanno importi in avere, o quelle di una vendita in dare.",
      "The lines of type 3 of a purchase have credit amounts, or those of a sale debit amounts."},
     {"Spostare l'importo sull'altro lato, o usare una causale di nota di credito.",
      "Move the amount to the other side, or use a template for credit notes."}},
    {"RettificaFuoriPeriodo",
     "ControllaCongruenzaDate",
     "",
     "rettifica-a-meta-mese",
     {"La registrazione è una rettifica e la sua competenza non è la data di riferimento del "
      "periodo IVA.",
      "The entry is an adjustment and its competence date is not the reference date of its VAT "
      "period."},
     {"Usare la data di riferimento del periodo, di regola l'ultimo giorno.",
      "Use the reference date of the period, as a rule its last day."}},
    {"DatiParcellaMancanti",
     "CheckCompilazioneParcella",
     "",
     "parcella-dati-mancanti",
     {"Acquisto da un professionista con documento o causale da parcella, senza i suoi dati.",
      "A purchase from a professional with a fee-note document or template, without its data."},
     {"Compilare i dati della parcella.", "Fill in the fee-note data."}},
    {"RegistrazioneInfragruppo",
     "CheckInfragruppo",
     "",
     "vendita-infragruppo-non-marcata",
     {"L'azienda gestisce l'infragruppo, e il cliente, il fornitore o il conto di una riga è del "
      "gruppo mentre la testata non lo dice.",
      "The company keeps track of its group, and the customer, supplier or account of a line "
      "belongs to it while the header does not say so."},
     {"Marcare la registrazione come infragruppo, o confermare.",
      "Mark the entry as intra-group, or confirm."}},
    {"DataScadenzaNonValida",
     "CheckDateScadenza",
     "",
     "acquisto-rata-senza-data",
     {"Almeno una rata non ha una data valida.", "At least one installment has no valid date."},
     {"Indicare la data di scadenza di ogni rata.", "Enter the due date of every installment."}},
    {"ContropartitaMancante",
     "CheckRateiRisconti",
     "RsRisconti",
     "acquisto-contropartita-risconto",
     {"Un rateo o risconto non indica la contropartita; quelli dopo non si controllano.",
      "An accrual or deferral names no counterpart; those behind it are not checked."},
     {"Indicare il conto di contropartita.", "Enter the counterpart account."}},
    {"ContropartitaNonInRighe",
     "CheckRateiRisconti",
     "RsRisconti",
     "acquisto-contropartita-risconto",
     {"La contropartita di un rateo o risconto non è il conto di alcuna riga.",
      "The counterpart of an accrual or deferral is the account of no line."},
     {"Correggere la contropartita, o il conto della riga.",
      "Correct the counterpart, or the account of the line."}},
    {"RateiContabilizzati",
     "RRContabilizzati",
     "",
     "modifica-risconto-contabilizzato",
     {"I ratei o risconti della registrazione sono già contabilizzati.",
      "The accruals or deferrals of the entry are already posted."},
     {"Annullare prima la loro contabilizzazione.", "Take back their posting first."}},
    {"RigaSoloImposta",
     "OkCastellettoIva",
     "RsRIva",
     "acquisto-sola-imposta",
     {"Una riga IVA ha imposta senza imponibile, e il totale è la sola imposta.",
      "A VAT line has tax without a taxable amount, and its total is the tax alone."},
     {"Se la riga è di sola imposta confermare, altrimenti inserire l'imponibile.",
      "If the line is one of tax alone confirm, otherwise enter the taxable amount."}},
    {"EsisteIntegrazioneReverse",
     "OkModifica",
     "",
     "modifica-reverse-charge-integrato",
     {"Un'integrazione in reverse charge punta a questa registrazione.",
      "A reverse-charge integration points to this entry."},
     {"Eliminare prima l'integrazione, poi modificare e rigenerarla.",
      "Delete the integration first, then change the entry and generate it again."},
     kGenerate},
    {"AliquoteIntraMiste",
     "CheckCongruenzaAliquote",
     "RsRIva",
     "nota-credito-codice-intra",
     {"Dove non valgono le dichiarazioni d'intento: un codice intracomunitario su una "
      "registrazione che non lo è, o codici intracomunitari misti ad altri su una che lo è.",
      "Where declarations of intent do not apply: an intra-community code on an entry that is "
      "none, or such codes mixed with others on one that is."},
     {"Correggere il codice IVA, o marcare la registrazione come intracomunitaria.",
      "Correct the VAT code, or mark the entry as intra-community."}},
    {"DocumentoSenzaRegistroIva",
     "OkAggiorna",
     "",
     "fattura-senza-registro-iva",
     {"Il tipo di documento (4, 5, 6, 13 o 14) vuole un registro IVA, la causale non ne ha.",
      "The document type (4, 5, 6, 13 or 14) wants a VAT register, the template has none."},
     {"Usare una causale con registro IVA, o cambiare il tipo di documento.",
      "Use a template with a VAT register, or change the document type."},
     kRegistri},
    {"CodIvaNonFiscalitaBL",
     "CheckCongruenzaAliquote",
     "RsRIva",
     "acquisto-dati-fiscali-non-quadrano",
     {"La registrazione ha dati di fiscalità privilegiata, e il codice IVA di una riga non vi è "
      "ammesso.",
      "The entry has fiscal data, and the VAT code of a line is not allowed with them."},
     {"Cambiare il codice IVA, o togliere i dati di fiscalità privilegiata.",
      "Change the VAT code, or take the fiscal data away."}},
    {"DatiFiscaliNonQuadrano",
     "CheckQuadraturaDatiFiscalitaBL",
     "",
     "acquisto-dati-fiscali-non-quadrano",
     {"La somma dei dati di fiscalità privilegiata differisce da imponibile o imposta della "
      "testata, o non ci sono righe. Le note di variazione hanno colonne proprie.",
      "The sum of the fiscal data differs from the taxable amount or the tax of the header, or "
      "there are no rows. Variation notes have columns of their own."},
     {"Correggere i dati di fiscalità privilegiata.", "Correct the fiscal data."}},
    {"RigheReverseMancanti",
     "OkAggiorna",
     "",
     "acquisto-reverse-senza-righe",
     {"La testata è in reverse charge, nessuna riga IVA lo è.",
      "The header is in reverse charge, no VAT line is."},
     {"Usare un codice in reverse charge sulle righe, o correggere la testata.",
      "Use a reverse-charge code on the lines, or correct the header."},
     kAutofatture},
    {"UnaSolaRiga",
     "OkAggiorna",
     "",
     "registrazione-una-riga",
     {"C'è una sola riga contabile.", "There is only one account line."},
     {"Completare la registrazione, o confermare.", "Complete the entry, or confirm."},
     kRighe},
    {"CorrispettivoSopraSoglia",
     "OkAggiorna",
     "",
     "corrispettivo-sopra-soglia",
     {"Corrispettivo di cliente occasionale dal 1/7/2011, di almeno 3600 in valuta di conto, non "
      "escluso dalla comunicazione.",
      "A receipt of an occasional customer since 1 July 2011, of at least 3600 in the base "
      "currency, not excluded from the report."},
     {"Indicare il cliente, o escludere la registrazione dalla comunicazione.",
      "Name the customer, or exclude the entry from the report."},
     kSoglie},
    {"ProtocolloTroppoGrande",
     "OkAggiorna",
     "",
     "vendita-protocollo-troppo-grande",
     {"Il protocollo del documento, o quello che avrà l'autofattura, supera 9999999.",
      "The protocol of the document, or the one that the self-invoice will get, exceeds 9999999."},
     {"Correggere il protocollo, o la numerazione del sezionale.",
      "Correct the protocol, or the numbering of the section."},
     kRegistri},
    {"ImpostaSenzaImponibile",
     "OkCastellettoIva",
     "RsRIva",
     "riga-iva-senza-imponibile",
     {"Una riga IVA ha imposta senza imponibile, e il totale non è la sola imposta.",
      "A VAT line has tax without a taxable amount, and its total is not the tax alone."},
     {"Inserire l'imponibile della riga.", "Enter the taxable amount of the line."}},
    {"CodIvaAutofatturaMancante",
     "CheckCodIva",
     "RsRIva",
     "acquisto-reverse-indetraibile",
     {"Riga intracomunitaria o in reverse charge con una parte indetraibile o a costo, il cui "
      "codice IVA non indica quello per l'autofattura.",
      "An intra-community or reverse-charge line with a part that can't be deducted or is charged "
      "to cost, whose VAT code names none for the self-invoice."},
     {"Completare il codice nella tabella dei codici IVA.",
      "Complete the code in the table of VAT codes."}},
    {"AttivitaAutofatturaDiversa",
     "OkAggiorna",
     "",
     "",
     {"L'azienda tiene attività IVA separate, e il sezionale dell'autofattura appartiene a "
      "un'attività diversa da quella della registrazione.",
      "The company keeps separate VAT activities, and the section of the self-invoice belongs to "
      "another activity than the entry."},
     {"Correggere l'attività della registrazione, o il sezionale delle autofatture.",
      "Correct the activity of the entry, or the section of the self-invoices."},
     kAutofatture},
    {"ChiusuraContestuale",
     "CheckChiusuraContenstualeSospensione",
     "",
     "vendita-sospensione-incasso-contestuale",
     {"Registrazione nuova in sospensione che apre rate e le chiude lei stessa.",
      "A new entry in suspension that opens installments and closes them itself."},
     {"Togliere l'incasso e registrarlo a parte.",
      "Take the collection out and register it by itself."}},
    {"SospensioneNegativa",
     "OkAggiorna",
     "",
     "sospensione-totale-negativo",
     {"Registrazione IVA definitiva in sospensione con totale negativo.",
      "A definitive VAT entry in suspension with a negative total."},
     {"Togliere la sospensione, o correggere gli importi.",
      "Take the suspension away, or correct the amounts."},
     kSospese},
    {"DatiParcellaDaVerificare",
     "CheckCompilazioneParcella",
     "",
     "parcella-da-verificare",
     {"Si modifica il documento di un professionista che dovrebbe avere i dati della parcella.",
      "A professional's document that should have fee-note data is being edited."},
     {"Verificare che i dati della parcella valgano ancora.",
      "Check that the fee-note data still hold."}},
    {"ScadenzeChiuseInSospensione",
     "ScadenzeDocChiuse",
     "",
     "modifica-vendita-sospensione-incassata",
     {"Come 10517, su una registrazione in sospensione: l'incasso ha reso esigibile l'IVA.",
      "As 10517, on an entry in suspension: the collection has made its VAT due."},
     {"Annullare prima l'incasso o il pagamento, o confermare sapendolo.",
      "Take back the collection or payment first, or confirm knowing of it."}},

    {"EffettiSplitPayment",
     "CheckEffettiSplitPayment",
     "RsScadenze",
     "vendita-ente-pubblico-effetti-errati",
     {"Vendita su un sezionale split payment con una rata pagata con effetto, e condizioni di "
      "pagamento la cui prima rata non è di sola IVA.",
      "A sale on a split-payment section with an installment paid by bill of exchange, under terms "
      "whose first installment is not the VAT alone."},
     {"Usare condizioni di pagamento con la prima rata di sola IVA.",
      "Use payment terms whose first installment is the VAT alone."}},
    {"SezionaleNonSplit",
     "OkAggiorna",
     "",
     "vendita-ente-pubblico-sezionale-errato",
     {"Il cliente è soggetto a split payment, il sezionale vendite no.",
      "The customer is subject to split payment, the sales section is not."},
     {"Usare un sezionale split payment.", "Use a split-payment section."},
     kSplit},
    {"ClienteNonSplit",
     "OkAggiorna",
     "",
     "vendita-privato-sezionale-split",
     {"Il sezionale vendite è split payment, il cliente non vi è soggetto.",
      "The sales section is one for split payment, the customer is not subject to it."},
     {"Usare un altro sezionale, o correggere l'anagrafica del cliente.",
      "Use another section, or correct the customer's master data."},
     kSplit},
    {"PlafondSuperato",
     "OkAggiorna",
     "",
     "acquisto-plafond-superato",
     {"Dichiarazione su plafond: l'usato, tolto quanto usava la registrazione salvata e aggiunto "
      "quanto usa ora, supera l'importo.",
      "A declaration with a plafond: what is used, less what the saved entry used and with what it "
      "uses now, exceeds its amount."},
     {"Verificare il residuo, o chiedere una nuova dichiarazione.",
      "Check what is left, or ask for a new declaration."},
     kIntento},
    {"DataDocumentoVuota",
     "OkAggiorna",
     "",
     "vendita-provvisoria-senza-data",
     {"Registrazione provvisoria con una dichiarazione d'intento e senza data del documento.",
      "A provisional entry with a declaration of intent and without a document date."},
     {"Indicare la data del documento.", "Enter the document date."},
     kIntento},
    {"DichiarazioneNonValida",
     "OkAggiorna",
     "",
     "vendita-dichiarazione-intento-scaduta",
     {"La data del documento è fuori dalla validità della dichiarazione d'intento.",
      "The document date lies outside the validity of the declaration of intent."},
     {"Scegliere una dichiarazione valida a quella data.",
      "Choose a declaration that is valid on that date."},
     kIntento},
    {"AliquoteDiverse",
     "CheckCongruenzaAliquote",
     "RsRIva",
     "vendita-dichiarazione-intento-aliquota",
     {"Con una dichiarazione d'intento, il codice IVA di una riga non è il suo, né quello dei "
      "bolli, né VENT.",
      "With a declaration of intent, the VAT code of a line is neither its own nor that of stamp "
      "duty nor VENT."},
     {"Usare il codice della dichiarazione, o confermare.",
      "Use the code of the declaration, or confirm."}},
    {"GenerataDaSplitPayment",
     "OkModifica",
     "",
     "modifica-split-payment-girocontata",
     {"Alla registrazione punta un giroconto dell'IVA in split payment.",
      "A transfer of split-payment VAT points to this entry."},
     {"Eliminare prima il giroconto.", "Delete the transfer first."},
     kGenerate},
    {"TrasmessoSdi",
     "OkModifica",
     "",
     "modifica-documento-trasmesso",
     {"Acquisto il cui documento elettronico è trasmesso. Blocca se l'azienda lo vuole, ma negli "
      "stati 5, 6 e 7 avvisa soltanto.",
      "A purchase whose electronic document was transmitted. It blocks where the company wants it, "
      "but in the states 5, 6 and 7 it only warns."},
     {"Registrare una nota di variazione, o confermare sapendolo.",
      "Register a variation note, or confirm knowing of it."},
     kFatturaElettronica},
    {"XmlGenerato",
     "OkModifica",
     "",
     "modifica-documento-xml",
     {"Acquisto del cui documento è generato il file XML, non ancora trasmesso.",
      "A purchase of whose document the XML file is produced and not transmitted yet."},
     {"Dopo la modifica rigenerare il file.", "Produce the file again after the change."},
     kFatturaElettronica},
};

static_assert(std::size(kPages) == kMessageCodes.size() + testi::kTutti.size() &&
                  std::ranges::equal(std::span(kPages).first(kMessageCodes.size()), kMessageCodes,
                                     {}, &MessagePage::name, &MessageName::name) &&
                  std::ranges::equal(std::span(kPages).subspan(kMessageCodes.size()), testi::kTutti,
                                     {}, &MessagePage::name, &testi::Testo::nome),
              "one page for every code and every literal text, in their order");

constexpr Wording kOnlyDefinitive = {"solo per le registrazioni definitive",
                                     "only for definitive entries"};
constexpr Wording kOnlyRegister = {"solo per le registrazioni IVA definitive",
                                   "only for definitive VAT entries"};
constexpr Wording kOnlySelfInvoice = {
    "solo per gli acquisti definitivi intracomunitari o in reverse charge",
    "only for definitive purchases, intra-community or in reverse charge"};

constexpr OrderedCheck kSaveOrder[] = {
    {"CreaRecordCausale", {}},
    {"CheckDateScadenza", {}},
    {"OkQuadratura", {}},
    {"OkDivisaSuRighe", {}},
    {"OkCastellettoIva", {}},
    {"QuadraScadenze", {}},
    {"CheckChiusuraContenstualeSospensione",
     {"solo per le nuove registrazioni IVA in sospensione con la tabella temporanea delle scadenze",
      "only for new VAT entries in suspension with the temporary installments table"}},
    {"CheckIncassiInSospensione", {}},
    {"CheckPlafond", {}},
    {"CheckCodIva", {}},
    {"CheckSegnoRigheIva", {}},
    {"CheckCompilazioneParcella", {}},
    {"CheckCongruenzaAliquote", {}},
    {"CheckInfragruppo",
     {"solo se l'azienda gestisce l'infragruppo", "only if the company keeps track of its group"}},
    {"EsisteSezionale",
     {"solo per le registrazioni provvisorie o senza registro IVA",
      "only for entries that are provisional or without a VAT register"}},
    {"CheckBanca",
     {"solo per le fatture di vendita (TipoDocumento 4)",
      "only for sales invoices (TipoDocumento 4)"}},
    {"CheckEffettiSplitPayment", {"solo per le causali di vendita", "only for templates of sales"}},
    {"ControllaCongruenzaDate", {}},
    {"ContabilitaChiusa", kOnlyDefinitive},
    {"LibroGiornaleStampato", kOnlyDefinitive},
    {"RegistriIvaStampati", kOnlyDefinitive},
    {"ParametriIvaOk", kOnlyRegister},
    {"SezionaleIvaAutofattura", kOnlySelfInvoice},
    {"CheckRateiRisconti", kOnlyDefinitive},
    {"TestEsercizioCompetenza", {}},
    {"EseguiControlliDichiarazioneIntento",
     {"solo per le registrazioni IVA", "only for VAT entries"}},
    {"CheckDuplicatoNrDocRicevuto",
     {"solo per gli acquisti definitivi, dove chiesto", "only for definitive purchases, if asked"}},
    {"CheckDuplicatoNrDocEmesso",
     {"solo per vendite e corrispettivi definitivi, dove chiesto",
      "only for definitive sales and receipts, if asked"}},
    {"TestProtocollo", kOnlyRegister},
    {"TestProtocolloIntra", kOnlySelfInvoice},
    {"CheckQuadraturaDatiFiscalitaBL", kOnlyRegister},
};

constexpr OrderedCheck kModifyOrder[] = {
    {"ScadenzeDocChiuse", {}},
    {"IsDocumentoSplitPayment",
     {"solo per acquisti e vendite con rate chiuse",
      "only for purchases and sales with closed installments"}},
    {"ScadenzeInDistinta", {}},
    {"ScadenzeInDistintaIncPag", {}},
    {"ContabilitaChiusa", kOnlyDefinitive},
    {"LibroGiornaleStampato", kOnlyDefinitive},
    {"RegistriIvaStampati", kOnlyDefinitive},
    {"CheckPeriodoLiquidato",
     {"solo senza registro IVA, se la registrazione si riferisce a una data IVA",
      "only without a VAT register, if the entry refers to a VAT date"}},
    {"RRContabilizzati", kOnlyDefinitive},
};

const Wording& ProtectsOf(const MessagePage& page) {
  const auto check = std::ranges::find(kChecks, page.check, &CheckPage::name);
  return check == std::end(kChecks) || !page.protects.IsEmpty() ? page.protects : check->protects;
}

std::string CodeText(const MessagePage& page) {
  const std::optional<MessageCode> code = CodeOf(page);
  return code ? std::to_string(static_cast<std::int32_t>(*code)) : "-";
}

// What users read, with "%s" where a parameter goes. The translation of a literal text is known
// where the component asks for one.
std::string MessageOf(const MessagePage& page, Language language) {
  if (const std::optional<MessageCode> code = CodeOf(page)) {
    const auto texts = company::MessageTexts();
    const auto text = std::ranges::find(texts, *code, &company::MessageText::code);
    return Wording{text->italian, text->english}.In(language);
  }
  const std::string_view literal =
      std::ranges::find(testi::kTutti, page.name, &testi::Testo::nome)->testo;
  const auto translations = company::Translations();
  const auto known = std::ranges::find(translations, literal, &company::Translation::italian);
  return Wording{literal, known == translations.end() ? literal : known->english}.In(language);
}

std::string Padded(std::string_view text, std::size_t width) {
  std::string padded(text);
  padded.resize(std::max(width, text.size() + 1), ' ');
  return padded;
}

}  // namespace

std::span<const MessagePage> MessagePages() { return kPages; }

const MessagePage& PageOf(std::string_view name) {
  return *std::ranges::find(kPages, name, &MessagePage::name);
}

const MessagePage* FindPage(std::string_view codeOrName) {
  const auto page = std::ranges::find_if(kPages, [&](const MessagePage& candidate) {
    return candidate.name == codeOrName || (CodeOf(candidate) && CodeText(candidate) == codeOrName);
  });
  return page == std::end(kPages) ? nullptr : page;
}

std::optional<MessageCode> CodeOf(const MessagePage& page) {
  const auto code = std::ranges::find(kMessageCodes, page.name, &MessageName::name);
  return code == kMessageCodes.end() ? std::nullopt : std::optional(code->code);
}

std::span<const OrderedCheck> OrderOf(std::string_view operation) {
  if (operation == "OkAggiorna") {
    return kSaveOrder;
  }
  if (operation == "OkModifica") {
    return kModifyOrder;
  }
  return {};
}

std::string ToText(const MessagePage& page, Language language) {
  const auto part = [&](const Wording& heading, std::string_view text) {
    return '\n' + heading.In(language) + '\n' + Wrapped(text, 2);
  };
  const std::string sample =
      page.sample.empty() ? Wording{"nessuno: l'azienda di esempio non ha attività IVA separate",
                                    "none: the sample company has no separate VAT activities"}
                                .In(language)
                          : "host/samples/" + std::string(page.sample) + ".json";
  return CodeText(page) + ' ' + std::string(page.name) + '\n' +
         Wrapped(MessageOf(page, language), 2) + part({"Controllo", "Check"}, page.check) +
         part({"Che cosa protegge", "What it protects"}, ProtectsOf(page).In(language)) +
         part({"Quando compare", "When it arises"}, page.when.In(language)) +
         part({"Che cosa fare", "What to do"}, page.remedy.In(language)) +
         part({"Esempio", "Example"}, sample);
}

std::string PageList() {
  std::string list;
  for (const MessagePage& page : kPages) {
    list += Padded(CodeText(page), 6) + Padded(page.name, 34) + Padded(page.check, 37) +
            std::string(page.sample.empty() ? "-" : page.sample) + '\n';
  }
  return list;
}

}  // namespace kal::host
