// Messages: everything about every message, once, in both languages. A table to be included as
// often as wanted, so it has no include guard: whoever includes it first defines those of these
// macros whose lines it wants, and finds all of them undefined again behind it.
//
// KAL_CHECK(name, protects it, en)
//   what an operation that checks one thing protects
// KAL_THEME(name, protects it, en)
//   the same for messages whose check is an operation that looks after many things
// KAL_WORD(name, text, translation)
//   a text that the component has translated and puts into messages
// KAL_MESSAGE(number, name, check, theme, set, sample, text it, en, when it, en, remedy it, en)
//   a message that is known by its number
// KAL_LITERAL(name, check, theme, set, sample, text, translation, when it, en, remedy it, en)
//   a message that is a text of the component's own
//
// Check: the operation that finds it. Theme: "" where the check's own line says what is protected.
// Set: the record set of whose rows the message speaks, "" for the whole entry. Sample: the file of
// host/samples/ that gives it, without ".json"; "" where the sample company can't. A text says what
// is wrong and where it can be put right; "%s" stands where the check puts a parameter. A
// translation is "" where the component never asks for one.

// clang-format off

#ifndef KAL_CHECK
#define KAL_CHECK(...)
#endif
#ifndef KAL_THEME
#define KAL_THEME(...)
#endif
#ifndef KAL_WORD
#define KAL_WORD(...)
#endif
#ifndef KAL_MESSAGE
#define KAL_MESSAGE(...)
#endif
#ifndef KAL_LITERAL
#define KAL_LITERAL(...)
#endif

// What each check protects.

KAL_CHECK("OkQuadratura",
  "La partita doppia: ogni riga ha un conto di registrazione, e il dare è uguale all'avere senza "
    "alcuna tolleranza.",
  "Double entry: every line has a posting account, and debits equal credits without any tolerance.")
KAL_CHECK("QuadraScadenze",
  "Lo scadenzario: le rate di un cliente o fornitore valgono quanto la sua riga.",
  "The schedule of payments: the installments of a customer or supplier are worth as much as its "
    "line.")
KAL_CHECK("OkCastellettoIva",
  "Il riepilogo IVA: ogni riga ha un codice, e non c'è imposta senza imponibile.",
  "The VAT summary: every line has a code, and there is no tax without a taxable amount.")
KAL_CHECK("CheckCongruenzaAliquote",
  "I codici IVA adatti alla registrazione: dati di fiscalità privilegiata, dichiarazione "
    "d'intento, operazioni intracomunitarie.",
  "VAT codes that suit the entry: its fiscal data, its declaration of intent, intra-community "
    "trade.")
KAL_CHECK("CheckCodIva",
  "La tabella dei codici IVA: quelli delle righe esistono, e indicano il codice dell'autofattura "
    "quando serve.",
  "The table of VAT codes: those of the lines exist, and name the self-invoice code where one is "
    "needed.")
KAL_CHECK("CheckSegnoRigheIva",
  "Il lato delle righe IVA: in dare sugli acquisti, in avere sulle vendite.",
  "The side of VAT lines: debit on purchases, credit on sales.")
KAL_CHECK("CheckCompilazioneParcella",
  "I dati della parcella, dovuti per gli acquisti da professionisti.",
  "The fee-note data, due on purchases from professionals.")
KAL_CHECK("CheckInfragruppo",
  "Le operazioni fra società del gruppo, che vanno marcate come tali.",
  "Business between companies of the group, which is to be marked as such.")
KAL_CHECK("CheckDateScadenza",
  "Lo scadenzario: ogni rata scade in una data.",
  "The schedule of payments: every installment falls due on a date.")
KAL_CHECK("CheckBanca",
  "L'incasso degli effetti, che passa per la banca del cliente.",
  "The collection of bills of exchange, which runs through the customer's bank.")
KAL_CHECK("CheckEffettiSplitPayment",
  "L'incasso di una fattura in split payment: il cliente non paga l'IVA, e un effetto non deve "
    "contenerla.",
  "The collection of a split-payment invoice: the customer does not pay the VAT, and a bill must "
    "not contain it.")
KAL_CHECK("EsisteSezionale",
  "La numerazione della prima nota: il sezionale è definito per l'esercizio.",
  "The numbering of journal entries: the section is defined for the fiscal year.")
KAL_CHECK("ControllaCongruenzaDate",
  "La sequenza delle date: competenza in un esercizio noto, documento non dopo la registrazione.",
  "The sequence of dates: competence in a known fiscal year, document not after its registration.")
KAL_CHECK("TestEsercizioCompetenza",
  "L'esercizio di competenza: non si scrive in uno chiuso; aperture e chiusure stanno ai suoi "
    "estremi.",
  "The fiscal year of competence: nothing is written into a closed one; openings and closings "
    "stand at its ends.")
KAL_CHECK("CheckPeriodoLiquidato",
  "La liquidazione IVA: quando è definitiva, il suo periodo non cambia più.",
  "The VAT settlement: once it is final, its period does not change any more.")
KAL_CHECK("ContabilitaChiusa",
  "La contabilità di un esercizio già chiuso.",
  "The accounts of a year that is closed.")
KAL_CHECK("LibroGiornaleStampato",
  "Il libro giornale stampato in bollato, che deve restare uguale ai dati.",
  "The general journal printed on its official pages, which must stay equal to the data.")
KAL_CHECK("RegistriIvaStampati",
  "I registri IVA stampati in bollato, che devono restare uguali ai dati.",
  "The VAT registers printed on their official pages, which must stay equal to the data.")
KAL_CHECK("ParametriIvaOk",
  "I parametri IVA dell'anno, senza i quali non c'è liquidazione.",
  "The VAT parameters of the year, without which there is no settlement.")
KAL_CHECK("CheckChiusuraContenstualeSospensione",
  "L'IVA in sospensione, che diventa esigibile con un incasso registrato a parte.",
  "VAT in suspension, which becomes due with a collection that is registered by itself.")
KAL_CHECK("CheckRateiRisconti",
  "Ratei e risconti: la loro contropartita sta tra le righe della registrazione.",
  "Accruals and deferrals: their counterpart stands among the lines of the entry.")
KAL_CHECK("TestProtocollo",
  "I protocolli del registro: crescono con la data e non si ripetono.",
  "The protocols of the register: they grow with the date and are not repeated.")
KAL_CHECK("TestProtocolloIntra",
  "I protocolli delle autofatture: crescono con la data e non si ripetono.",
  "The protocols of the self-invoices: they grow with the date and are not repeated.")
KAL_CHECK("CheckDuplicatoNrDocEmesso",
  "Il numero del documento: ognuno si registra una volta sola.",
  "The number of the document: each is registered only once.")
KAL_CHECK("CheckQuadraturaDatiFiscalitaBL",
  "I dati di fiscalità privilegiata, uguali ai totali della registrazione.",
  "The fiscal data, equal to the totals of the entry.")
KAL_CHECK("OkDivisaSuRighe",
  "La divisa di ogni riga, dove la proprietà la tiene sulle righe.",
  "The currency of every line, where the entry's property keeps it on the lines.")
KAL_CHECK("ScadenzeDocChiuse",
  "Gli incassi e i pagamenti già registrati sulle rate.",
  "The collections and payments already registered on the installments.")
KAL_CHECK("ScadenzeInDistinta",
  "Le distinte già presentate in banca.",
  "The remittances already handed to the bank.")
KAL_CHECK("RRContabilizzati",
  "I ratei e risconti già contabilizzati a fine periodo.",
  "The accruals and deferrals already posted at the end of their period.")
KAL_CHECK("CreaRecordCausale",
  "La causale, dalla quale dipende ogni altro controllo.",
  "The posting template, on which every other check depends.")

KAL_CHECK("CheckIncassiInSospensione",
  "L'IVA in sospensione: se la registrazione chiude, o riapre, rate di registrazioni in "
    "sospensione.",
  "VAT in suspension: whether the entry closes, or reopens, installments of entries in suspension.")
KAL_CHECK("CheckPlafond",
  "Il plafond: quanto ne usa un acquisto con dichiarazione d'intento.",
  "The plafond: how much of it a purchase with a declaration of intent uses.")
KAL_CHECK("SezionaleIvaAutofattura",
  "Il sezionale vendite in cui si numera l'autofattura.",
  "The sales section in which the self-invoice is numbered.")
KAL_CHECK("EseguiControlliDichiarazioneIntento",
  "La dichiarazione d'intento, dove ce n'è una: importo, validità e documento.",
  "The declaration of intent, where there is one: amount, validity and document.")
KAL_CHECK("CheckDuplicatoNrDocRicevuto",
  "Il numero del documento ricevuto: per ogni fornitore si registra una volta sola.",
  "The number of the document received: it is registered only once for each supplier.")
KAL_CHECK("IsDocumentoSplitPayment",
  "Gli incassi e i pagamenti già registrati su un documento in split payment, di cui l'azienda "
    "gira l'IVA.",
  "The collections and payments already registered on a split-payment document, whose VAT the "
    "company transfers.")
KAL_CHECK("ScadenzeInDistintaIncPag",
  "Le distinte già presentate in banca con gli incassi e i pagamenti delle rate.",
  "The remittances already handed to the bank with the collections and payments of the "
    "installments.")

// What the messages protect whose check is an operation with several concerns.

KAL_THEME("Registri",
  "I registri IVA e la loro numerazione.",
  "The VAT registers and their numbering.")
KAL_THEME("Righe",
  "Il contenuto della registrazione.",
  "The content of the entry.")
KAL_THEME("Periodi",
  "I periodi bloccati dall'azienda.",
  "The periods that the company has locked.")
KAL_THEME("Autofatture",
  "L'autofattura che la registrazione genera nel registro vendite.",
  "The self-invoice that the entry makes in the sales register.")
KAL_THEME("SplitPayment",
  "Lo split payment: sezionale e cliente devono concordare.",
  "Split payment: section and customer must agree.")
KAL_THEME("DichiarazioniIntento",
  "La dichiarazione d'intento: importo, validità e documento.",
  "The declaration of intent: amount, validity and document.")
KAL_THEME("Sospensione",
  "L'IVA in sospensione, che non ammette totali negativi.",
  "VAT in suspension, which knows no negative totals.")
KAL_THEME("Soglie",
  "La comunicazione dei corrispettivi oltre soglia.",
  "The report of receipts above the threshold.")
KAL_THEME("Generate",
  "Le registrazioni generate da questa, che resterebbero senza origine.",
  "The entries that this one has generated, which would be left without an origin.")
KAL_THEME("FatturaElettronica",
  "La fattura elettronica, che deve restare uguale alla registrazione.",
  "The electronic invoice, which must stay equal to the entry.")

// Words that the component asks to be translated and hands to messages.

KAL_WORD(DelDocumento, "del documento", "of the document")
KAL_WORD(DellAutofattura, "dell'autofattura", "of the self-invoice")

// The coded messages, ascending.

KAL_MESSAGE(10485, NumeroDocumentoVuoto,
  "OkAggiorna", "Registri", "", "vendita-senza-numero",
  "Numero documento mancante: è obbligatorio sulle registrazioni IVA definitive",
  "Document number missing: a definitive VAT entry needs one",
  "La registrazione è definitiva, la causale ha un registro IVA e il numero del documento è vuoto.",
  "The entry is definitive, its template has a VAT register and the document number is empty.",
  "Indicare il numero del documento, o salvare la registrazione come provvisoria.",
  "Enter the document number, or save the entry as provisional.")

KAL_MESSAGE(10486, LibroGiornaleGiaStampato,
  "LibroGiornaleStampato", "", "", "acquisto-registro-stampato",
  "Il libro giornale del mese di registrazione è già stampato in bollato: cambiare la data di "
    "registrazione",
  "The general journal of the registration month is already printed: change the registration date",
  "Il giornale del mese di registrazione risulta stampato in bollato.",
  "The journal of the registration month is marked as printed on its official pages.",
  "Usare una data di registrazione di un mese non ancora stampato; per correggere, registrare uno "
    "storno.",
  "Use a registration date of a month that is not printed yet; to correct, register a reversal.")

KAL_MESSAGE(10487, RegistroIvaGiaStampato,
  "RegistriIvaStampati", "", "", "acquisto-registro-stampato",
  "Il registro IVA del mese di registrazione è già stampato in bollato per questo sezionale",
  "The VAT register of the registration month is already printed for this section",
  "È stampato il registro IVA del sezionale nel mese di registrazione, o il riepilogo del suo "
    "periodo. Chi salva può chiedere di non controllarlo.",
  "The VAT register of the section is printed for the registration month, or the summary of its "
    "period. Whoever saves may ask to pass this over.",
  "Usare una data di registrazione di un mese non ancora stampato.",
  "Use a registration date of a month that is not printed yet.")

KAL_MESSAGE(10489, ScadenzeNonQuadrano,
  "QuadraScadenze", "", "RsRCont", "acquisto-rate-non-quadrano",
  "Riga %s: la somma delle rate non corrisponde all'importo della riga; correggere le scadenze",
  "Line %s: the installments do not add up to the amount of the line; correct the installments",
  "Le rate legate a una riga di cliente o fornitore non danno esattamente il suo importo; in "
    "divisa estera si confronta anche la divisa. Le registrazioni senza totale documento non si "
    "confrontano.",
  "The installments tied to a customer or supplier line do not give exactly its amount; in foreign "
    "currency that currency is compared too. Entries without a document total are not compared.",
  "Correggere gli importi delle rate, o ricalcolare le scadenze dalla riga.",
  "Correct the amounts of the installments, or work them out from the line again.")

KAL_MESSAGE(10492, SbilancioVB,
  "OkQuadratura", "", "", "giroconto-sbilanciato",
  "La registrazione non quadra: dare e avere in valuta di conto sono diversi",
  "The entry does not balance: debits and credits differ in the base currency",
  "Tutte le righe hanno un conto, e in valuta di conto dare e avere differiscono, anche solo di "
    "0,0001.",
  "All lines have an account, and debits and credits differ in the base currency, be it by 0.0001.",
  "Cercare la riga con l'importo o il lato sbagliato, e completare la registrazione.",
  "Look for the line with the wrong amount or side, and complete the entry.")

KAL_MESSAGE(10493, SbilancioDivisa,
  "OkQuadratura", "", "", "vendita-in-valuta-sbilanciata",
  "La registrazione non quadra nella divisa del documento, pur quadrando in valuta di conto",
  "The entry does not balance in its own currency, though it does in the base currency",
  "Registrazione IVA o libera: quadra in valuta di conto ma non nella sua divisa.",
  "A VAT or free registration: it balances in the base currency but not in its own.",
  "Correggere gli importi in divisa delle righe.",
  "Correct the amounts of the lines in the entry's currency.")

KAL_MESSAGE(10494, SbilancioRigheIva,
  "OkQuadratura", "", "", "vendita-tipo-riga-errato",
  "Le righe cliente/fornitore, contropartita e IVA non quadrano tra loro: verificare importi e "
    "tipo riga",
  "Customer/supplier, counterpart and VAT lines do not balance: check amounts and line types",
  "Registrazione IVA o libera, tranne i corrispettivi: le righe dei tipi 1, 2 e 3 non si "
    "compensano tra loro.",
  "A VAT or free registration other than receipts: the lines of types 1, 2 and 3 do not make up "
    "for each other.",
  "Verificare gli importi e il tipo di ciascuna riga.",
  "Check the amounts and the type of each line.")

KAL_MESSAGE(10495, SbilancioRigheTipo4,
  "OkQuadratura", "", "", "vendita-tipo-riga-errato",
  "Le righe di giroconto (tipo 4) non quadrano tra loro: verificare importi e tipo riga",
  "The transfer lines (type 4) do not balance: check amounts and line types",
  "Registrazione IVA o libera, tranne i corrispettivi: le righe di tipo 4 non si compensano.",
  "A VAT or free registration other than receipts: the lines of type 4 do not make up for each "
    "other.",
  "Completare il giroconto, o correggere il tipo delle righe.",
  "Complete the transfer, or correct the type of its lines.")

KAL_MESSAGE(10496, DocumentoDopoRegistrazione,
  "ControllaCongruenzaDate", "", "", "acquisto-documento-futuro",
  "La data del documento è successiva alla data di registrazione",
  "The document date is later than the registration date",
  "La data del documento segue quella di registrazione.",
  "The document date follows the registration date.",
  "Correggere una delle due date.",
  "Correct one of the two dates.")

KAL_MESSAGE(10497, MeseDocumentoDiverso,
  "ControllaCongruenzaDate", "", "", "vendita-mese-diverso",
  "Il mese del documento emesso è diverso dal mese di registrazione: registrare la vendita nel "
    "mese del documento",
  "The issued document is of another month than its registration: register the sale in the month "
    "of the document",
  "Registro vendite: documento e registrazione hanno mesi diversi (si confronta il numero del "
    "mese, non l'anno).",
  "Sales register: document and registration have different months (the month's number is "
    "compared, not the year).",
  "Registrare la vendita nel mese del documento.",
  "Register the sale in the month of its document.")

KAL_MESSAGE(10498, CodIvaInesistente,
  "CheckCodIva", "", "RsRIva", "riga-iva-codice-inesistente",
  "Il codice IVA '%s' non esiste nella tabella dei codici IVA",
  "VAT code '%s' is not in the table of VAT codes",
  "Il codice IVA di una riga non è in tabella; il codice VENT non si cerca.",
  "The VAT code of a line is not in the table; the code VENT is not looked up.",
  "Scegliere un codice della tabella, o inserirvi quello nuovo.",
  "Choose a code of the table, or add the new one to it.")

KAL_MESSAGE(10500, PeriodoIvaLiquidato,
  "CheckPeriodoLiquidato", "", "", "modifica-incasso-iva-liquidata",
  "La liquidazione IVA del periodo è già definitiva: la registrazione non è modificabile",
  "The VAT settlement of the period is final: the entry can't be changed",
  "Modifica o cancellazione di una registrazione senza registro IVA che si riferisce a una data "
    "IVA, e la liquidazione di quel periodo è definitiva, o non dice di non esserlo.",
  "Change or deletion of an entry without a VAT register that refers to a VAT date, and the "
    "settlement of that period is final, or does not say that it is not.",
  "Lasciare la registrazione e rettificare in un periodo aperto.",
  "Leave the entry and adjust in an open period.")

KAL_MESSAGE(10502, AperturaNonInizioEsercizio,
  "TestEsercizioCompetenza", "", "", "apertura-data-errata",
  "La data di competenza di un'apertura dev'essere il primo giorno dell'esercizio",
  "The competence date of an opening entry must be the first day of the fiscal year",
  "La causale è di apertura e la data di competenza non è il primo giorno dell'esercizio.",
  "The template is one for openings and the competence date is not the first day of the fiscal "
    "year.",
  "Usare come competenza il primo giorno dell'esercizio.",
  "Use the first day of the fiscal year as competence date.")

KAL_MESSAGE(10503, ChiusuraNonFineEsercizio,
  "TestEsercizioCompetenza", "", "", "chiusura-data-errata",
  "La data di competenza di una chiusura dev'essere l'ultimo giorno dell'esercizio",
  "The competence date of a closing entry must be the last day of the fiscal year",
  "La causale è di chiusura e la data di competenza non è l'ultimo giorno dell'esercizio.",
  "The template is one for closings and the competence date is not the last day of the fiscal "
    "year.",
  "Usare come competenza l'ultimo giorno dell'esercizio.",
  "Use the last day of the fiscal year as competence date.")

KAL_MESSAGE(10504, EsercizioCompetenzaChiuso,
  "TestEsercizioCompetenza", "", "", "acquisto-competenza-anno-chiuso",
  "L'esercizio della data di competenza è chiuso",
  "The fiscal year of the competence date is closed",
  "L'esercizio della data di competenza è chiuso. Aperture e chiusure nel loro giorno sono "
    "ammesse.",
  "The fiscal year of the competence date is closed. Openings and closings on their day are "
    "allowed.",
  "Usare una data di competenza dell'esercizio aperto.",
  "Use a competence date of the open fiscal year.")

KAL_MESSAGE(10505, SezionaleIvaInesistente,
  "OkAggiorna", "Registri", "", "vendita-sezionale-iva-inesistente",
  "Il sezionale IVA non è definito per l'anno di registrazione: inserirlo nelle numerazioni IVA",
  "The VAT section is not defined for the registration year: add it to the VAT numberings",
  "Registrazione IVA definitiva il cui sezionale non è tra le numerazioni IVA dell'anno.",
  "A definitive VAT entry whose section is not among the VAT numberings of the year.",
  "Correggere il sezionale, o definirlo nelle numerazioni IVA dell'anno.",
  "Correct the section, or define it in the VAT numberings of the year.")

KAL_MESSAGE(10506, ProtocolloNonInOrdine,
  "TestProtocollo", "", "", "acquisto-protocollo-fuori-ordine",
  "Protocollo non in ordine: sullo stesso registro c'è già, in data %s, il protocollo %s",
  "Protocol out of order: the same register already holds, dated %s, protocol %s",
  "Nello stesso registro, sezionale e anno c'è lo stesso protocollo, uno maggiore prima o uno "
    "minore dopo. Nello stesso giorno ogni ordine va bene.",
  "The same register, section and year holds the same protocol, a greater one before or a smaller "
    "one after. On the same day any order will do.",
  "Verificare protocollo e data; se è voluto, confermare.",
  "Check protocol and date; if it is meant, confirm.")

KAL_MESSAGE(10507, NumeroDocumentoDuplicato,
  "CheckDuplicatoNrDocEmesso", "", "", "vendita-numero-gia-usato",
  "Il numero del documento è già usato da un'altra registrazione dell'anno",
  "The document number is already used by another entry of the year",
  "Nell'anno del documento un'altra registrazione definitiva ha lo stesso numero: sugli acquisti "
    "per fornitore (CheckDuplicatoNrDocRicevuto), altrimenti per registro e sezionale.",
  "In the document's year another definitive entry has the same number: by supplier on purchases "
    "(CheckDuplicatoNrDocRicevuto), by register and section otherwise.",
  "Controllare che il documento non sia già registrato; se è un altro, confermare.",
  "Check that the document is not registered already; if it is another one, confirm.")

KAL_MESSAGE(10508, ProtocolloMancante,
  "OkAggiorna", "Registri", "", "giroconto-senza-protocollo",
  "Numero di protocollo mancante: è obbligatorio sulle registrazioni definitive",
  "Protocol number missing: a definitive entry needs one",
  "La registrazione è definitiva e il protocollo è 0, anche senza registro IVA.",
  "The entry is definitive and its protocol is 0, also without a VAT register.",
  "Assegnare il protocollo.",
  "Give the entry a protocol.")

KAL_MESSAGE(10509, ContabilitaEsercizioChiusa,
  "ContabilitaChiusa", "", "", "acquisto-competenza-anno-chiuso",
  "La contabilità dell'esercizio di competenza è già chiusa",
  "The accounts of the entry's fiscal year are already closed",
  "La contabilità dell'esercizio della data di competenza è chiusa.",
  "The accounts of the fiscal year of the competence date are closed.",
  "Usare una data di competenza di un esercizio aperto.",
  "Use a competence date of an open fiscal year.")

KAL_MESSAGE(10510, BancaClienteMancante,
  "CheckBanca", "", "RsScadenze", "vendita-effetto-senza-banca",
  "Manca la banca del cliente su una rata da incassare con effetto: indicarla nelle scadenze",
  "An installment to be collected by bill of exchange lacks the customer's bank: add it to the "
    "installments",
  "Fattura di vendita con una rata ordinaria pagata con effetto e senza banca del cliente.",
  "A sales invoice with an ordinary installment paid by bill of exchange and no bank of the "
    "customer.",
  "Indicare la banca sulla rata, o cambiare il tipo di pagamento.",
  "Name the bank on the installment, or change its payment type.")

KAL_MESSAGE(10511, PeriodoBloccato,
  "OkAggiorna", "Periodi", "", "acquisto-periodo-bloccato",
  "%s la registrazione si interviene su un periodo bloccato: verificare la data IVA",
  "%s: the entry touches a locked period; check the VAT date",
  "La data IVA cade in un periodo bloccato. Vale per il salvataggio e per la modifica "
    "(modifica-periodo-bloccato).",
  "The VAT date lies in a locked period. This holds for saving and for changing "
    "(modifica-periodo-bloccato).",
  "Verificare la data IVA, o chiedere lo sblocco del periodo.",
  "Check the VAT date, or ask for the period to be unlocked.")

KAL_MESSAGE(10512, EsisteIntegrazioneIntra,
  "OkModifica", "Generate", "", "modifica-acquisto-intra-integrato",
  "La registrazione ha generato un'integrazione intracomunitaria: eliminare prima quella",
  "The entry has generated an intra-community integration: delete that one first",
  "Un'integrazione intracomunitaria punta a questa registrazione.",
  "An intra-community integration points to this entry.",
  "Eliminare prima l'integrazione, poi modificare e rigenerarla.",
  "Delete the integration first, then change the entry and generate it again.")

KAL_MESSAGE(10513, EsercizioInesistente,
  "EsisteSezionale", "", "", "registrazione-fuori-esercizio",
  "Nessun esercizio contiene la data di registrazione",
  "No fiscal year contains the registration date",
  "Registrazione provvisoria o senza registro IVA la cui data di registrazione non cade in alcun "
    "esercizio.",
  "An entry that is provisional or without a VAT register whose registration date lies in no "
    "fiscal year.",
  "Correggere la data, o aprire l'esercizio.",
  "Correct the date, or open the fiscal year.")

KAL_MESSAGE(10514, SezionaleInesistente,
  "EsisteSezionale", "", "", "registrazione-fuori-esercizio",
  "Il sezionale non è definito per l'esercizio: inserirlo nelle numerazioni di prima nota",
  "The journal section is not defined for the fiscal year: add it to the journal numberings",
  "Il sezionale non è tra le numerazioni dell'esercizio: quelle contabili per le definitive, "
    "quelle extra per le provvisorie.",
  "The section is not among the numberings of the fiscal year: the journal ones for definitive "
    "entries, the extra ones for provisional entries.",
  "Correggere il sezionale, o definirlo per l'esercizio.",
  "Correct the section, or define it for the fiscal year.")

KAL_MESSAGE(10515, SezionaleAutofatturaInesistente,
  "OkAggiorna", "Autofatture", "", "acquisto-autofatture-senza-sezionale",
  "Il sezionale vendite dell'autofattura non è definito per l'anno di registrazione",
  "The sales section of the self-invoice is not defined for the registration year",
  "Acquisto definitivo intracomunitario o in reverse charge: il sezionale vendite delle "
    "autofatture non è definito per l'anno.",
  "A definitive intra-community or reverse-charge purchase: the sales section of the self-invoices "
    "is not defined for the year.",
  "Definire il sezionale per l'anno, o correggere quello indicato per le autofatture.",
  "Define the section for the year, or correct the one named for self-invoices.")

KAL_MESSAGE(10516, RegistroPlafondStampato,
  "RegistriIvaStampati", "", "", "acquisto-plafond-registro-stampato",
  "Il registro IVA del mese di utilizzo del plafond è già stampato in bollato: cambiare la data "
    "plafond",
  "The VAT register of the month in which the plafond is used is already printed: change the "
    "plafond date",
  "Acquisto definitivo con data plafond in un mese il cui registro IVA è stampato.",
  "A definitive purchase with a plafond date in a month whose VAT register is printed.",
  "Usare una data plafond di un mese non ancora stampato.",
  "Use a plafond date of a month that is not printed yet.")

KAL_MESSAGE(10517, ScadenzeChiuse,
  "ScadenzeDocChiuse", "", "", "modifica-acquisto-pagato",
  "La registrazione ha rate già chiuse da incassi o pagamenti",
  "Installments of the entry are already closed by collections or payments",
  "Modifica o cancellazione di una registrazione IVA con rate già chiuse. Blocca i documenti in "
    "split payment se l'azienda ne gira l'IVA, altrimenti avvisa.",
  "Change or deletion of a VAT entry whose installments are closed already. It blocks "
    "split-payment documents where the company transfers their VAT, and warns otherwise.",
  "Annullare prima l'incasso o il pagamento, o confermare sapendolo.",
  "Take back the collection or payment first, or confirm knowing of it.")

KAL_MESSAGE(10518, ScadenzeInDistintaPresenti,
  "ScadenzeInDistinta", "", "", "modifica-vendita-in-distinta",
  "La registrazione ha rate già inserite in una distinta",
  "Installments of the entry are already in a remittance",
  "Una rata della registrazione, o un suo incasso o pagamento (ScadenzeInDistintaIncPag), è in una "
    "distinta.",
  "An installment of the entry, or a collection or payment of it (ScadenzeInDistintaIncPag), is in "
    "a remittance.",
  "Togliere la rata dalla distinta, o confermare sapendolo.",
  "Take the installment out of the remittance, or confirm knowing of it.")

KAL_MESSAGE(10519, ParametriIvaMancanti,
  "ParametriIvaOk", "", "", "vendita-senza-parametri-iva",
  "Mancano i parametri IVA dell'anno %s: inserirli prima di salvare",
  "The VAT parameters of year %s are missing: enter them before saving",
  "Registrazione IVA definitiva per il cui anno mancano i parametri IVA, dell'azienda o "
    "dell'attività.",
  "A definitive VAT entry for whose year the VAT parameters are missing, of the company or of the "
    "activity.",
  "Inserire i parametri IVA dell'anno.",
  "Enter the VAT parameters of the year.")

KAL_MESSAGE(10520, ContoMancante,
  "OkQuadratura", "", "RsRCont", "riga-senza-conto",
  "Riga %s: il conto manca o non è un conto di registrazione del piano dei conti",
  "Line %s: the account is missing or is no posting account of the chart of accounts",
  "Il conto di una riga è vuoto, non esiste o è soltanto un raggruppamento. Finché manca un conto, "
    "la quadratura non si controlla.",
  "The account of a line is empty, does not exist or is only a heading. While an account is "
    "missing, the balance is not checked.",
  "Indicare un conto di registrazione del piano dei conti.",
  "Name a posting account of the chart of accounts.")

KAL_MESSAGE(10521, CodIvaMancante,
  "OkCastellettoIva", "", "RsRIva", "riga-iva-senza-codice",
  "Riga IVA %s: manca il codice IVA",
  "VAT line %s: the VAT code is missing",
  "Una riga IVA non ha codice.",
  "A VAT line has no code.",
  "Indicare il codice IVA della riga.",
  "Enter the VAT code of the line.")

KAL_MESSAGE(10522, NessunaRiga,
  "OkAggiorna", "Righe", "", "registrazione-senza-righe",
  "La registrazione non contiene righe",
  "The entry has no lines",
  "Non c'è alcuna riga contabile e, con un registro IVA, nemmeno una riga IVA.",
  "There is no account line and, with a VAT register, no VAT line either.",
  "Inserire le righe, o confermare una registrazione vuota.",
  "Enter the lines, or confirm an empty entry.")

KAL_MESSAGE(10523, EsercizioCompetenzaInesistente,
  "ControllaCongruenzaDate", "", "", "registrazione-fuori-esercizio",
  "Nessun esercizio contiene la data di competenza",
  "No fiscal year contains the competence date",
  "Nessun esercizio contiene la data di competenza.",
  "No fiscal year contains the competence date.",
  "Correggere la data, o aprire l'esercizio.",
  "Correct the date, or open the fiscal year.")

KAL_MESSAGE(10525, CausaleInesistente,
  "CreaRecordCausale", "", "", "causale-inesistente",
  "La causale contabile manca o non esiste: indicare una causale in tabella",
  "The posting template is missing or unknown: choose one from the table",
  "La causale manca o non è in tabella. Nient'altro viene controllato.",
  "The posting template is missing or not in its table. Nothing else is checked.",
  "Scegliere una causale della tabella.",
  "Choose a posting template of the table.")

KAL_MESSAGE(10578, DivisaRigaMancante,
  "OkDivisaSuRighe", "", "RsRCont", "movimento-senza-divisa-sulle-righe",
  "Riga %s: manca la divisa, obbligatoria su ogni riga con questa proprietà",
  "Line %s: the currency is missing, which this entry property wants on every line",
  "Senza registro IVA: la proprietà della registrazione vuole la divisa sulle righe, e una riga la "
    "lascia vuota.",
  "Without a VAT register: the entry's property wants the currency on the lines, and a line leaves "
    "it empty.",
  "Indicare la divisa della riga.",
  "Enter the currency of the line.")

KAL_MESSAGE(10587, AutofatturaNonInOrdine,
  "TestProtocolloIntra", "", "", "acquisto-reverse-charge-gennaio",
  "Protocollo dell'autofattura non in ordine: nel suo sezionale c'è già, in data %s, il protocollo "
    "%s",
  "Self-invoice protocol out of order: its section already holds, dated %s, protocol %s",
  "Il protocollo che l'autofattura ha o avrà non è in ordine di data nel suo sezionale.",
  "The protocol that the self-invoice has or will get is not in the order of dates of its section.",
  "Verificare la data di registrazione; se è voluto, confermare.",
  "Check the registration date; if it is meant, confirm.")

KAL_MESSAGE(10588, RegistroAutofatturaStampato,
  "RegistriIvaStampati", "", "", "acquisto-reverse-charge-gennaio",
  "Il registro vendite delle autofatture, sezionale %s, è già stampato in bollato per il mese di "
    "registrazione",
  "The sales register of the self-invoices, section %s, is already printed for the registration "
    "month",
  "È stampato il registro vendite del sezionale delle autofatture nel mese di registrazione.",
  "The sales register of the self-invoice section is printed for the registration month.",
  "Usare una data di registrazione di un mese non ancora stampato.",
  "Use a registration date of a month that is not printed yet.")

KAL_MESSAGE(10590, SegnoRigheIva,
  "CheckSegnoRigheIva", "", "", "acquisto-iva-in-avere",
  "Ci sono righe IVA in %s su una registrazione di %s: verificare il segno delle righe",
  "There are VAT lines on the side \"%s\" of an entry of the kind \"%s\": check the sides of the "
    "lines",
  "Le righe di tipo 3 di un acquisto hanno importi in avere, o quelle di una vendita in dare.",
  "The lines of type 3 of a purchase have credit amounts, or those of a sale debit amounts.",
  "Spostare l'importo sull'altro lato, o usare una causale di nota di credito.",
  "Move the amount to the other side, or use a template for credit notes.")

KAL_MESSAGE(10594, RettificaFuoriPeriodo,
  "ControllaCongruenzaDate", "", "", "rettifica-a-meta-mese",
  "La data di competenza di una rettifica dev'essere quella di riferimento del suo periodo IVA",
  "The competence date of an adjustment must be the reference date of its VAT period",
  "La registrazione è una rettifica e la sua competenza non è la data di riferimento del periodo "
    "IVA.",
  "The entry is an adjustment and its competence date is not the reference date of its VAT period.",
  "Usare la data di riferimento del periodo, di regola l'ultimo giorno.",
  "Use the reference date of the period, as a rule its last day.")

KAL_MESSAGE(10624, DatiParcellaMancanti,
  "CheckCompilazioneParcella", "", "", "parcella-dati-mancanti",
  "Il fornitore è un professionista: compilare i dati della parcella",
  "The supplier is a professional: fill in the fee-note data",
  "Acquisto da un professionista con documento o causale da parcella, senza i suoi dati.",
  "A purchase from a professional with a fee-note document or template, without its data.",
  "Compilare i dati della parcella.",
  "Fill in the fee-note data.")

KAL_MESSAGE(10656, RegistrazioneInfragruppo,
  "CheckInfragruppo", "", "", "vendita-infragruppo-non-marcata",
  "La registrazione movimenta una società del gruppo ma non è marcata come infragruppo",
  "The entry concerns a company of the group but is not marked as intra-group",
  "L'azienda gestisce l'infragruppo, e il cliente, il fornitore o il conto di una riga è del "
    "gruppo mentre la testata non lo dice.",
  "The company keeps track of its group, and the customer, supplier or account of a line belongs "
    "to it while the header does not say so.",
  "Marcare la registrazione come infragruppo, o confermare.",
  "Mark the entry as intra-group, or confirm.")

KAL_MESSAGE(10657, DataScadenzaNonValida,
  "CheckDateScadenza", "", "", "acquisto-rata-senza-data",
  "Almeno una rata non ha una data di scadenza valida",
  "At least one installment has no valid due date",
  "Almeno una rata non ha una data valida.",
  "At least one installment has no valid date.",
  "Indicare la data di scadenza di ogni rata.",
  "Enter the due date of every installment.")

KAL_MESSAGE(10659, ContropartitaMancante,
  "CheckRateiRisconti", "", "RsRisconti", "acquisto-contropartita-risconto",
  "Ratei e risconti: manca il conto di contropartita",
  "Accruals and deferrals: the counterpart account is missing",
  "Un rateo o risconto non indica la contropartita; quelli dopo non si controllano.",
  "An accrual or deferral names no counterpart; those behind it are not checked.",
  "Indicare il conto di contropartita.",
  "Enter the counterpart account.")

KAL_MESSAGE(10660, ContropartitaNonInRighe,
  "CheckRateiRisconti", "", "RsRisconti", "acquisto-contropartita-risconto",
  "Ratei e risconti: la contropartita %s non compare nelle righe della registrazione",
  "Accruals and deferrals: counterpart account %s is on no line of the entry",
  "La contropartita di un rateo o risconto non è il conto di alcuna riga.",
  "The counterpart of an accrual or deferral is the account of no line.",
  "Correggere la contropartita, o il conto della riga.",
  "Correct the counterpart, or the account of the line.")

KAL_MESSAGE(10661, RateiContabilizzati,
  "RRContabilizzati", "", "", "modifica-risconto-contabilizzato",
  "I ratei e risconti della registrazione sono già contabilizzati",
  "The accruals and deferrals of the entry are already posted",
  "I ratei o risconti della registrazione sono già contabilizzati.",
  "The accruals or deferrals of the entry are already posted.",
  "Annullare prima la loro contabilizzazione.",
  "Take back their posting first.")

KAL_MESSAGE(10666, RigaSoloImposta,
  "OkCastellettoIva", "", "RsRIva", "acquisto-sola-imposta",
  "Riga IVA %s: c'è la sola imposta, senza imponibile; verificare che sia voluto",
  "VAT line %s: tax alone, without a taxable amount; check that this is meant",
  "Una riga IVA ha imposta senza imponibile, e il totale è la sola imposta.",
  "A VAT line has tax without a taxable amount, and its total is the tax alone.",
  "Se la riga è di sola imposta confermare, altrimenti inserire l'imponibile.",
  "If the line is one of tax alone confirm, otherwise enter the taxable amount.")

KAL_MESSAGE(10668, EsisteIntegrazioneReverse,
  "OkModifica", "Generate", "", "modifica-reverse-charge-integrato",
  "La registrazione ha generato un'integrazione in reverse charge: eliminare prima quella",
  "The entry has generated a reverse-charge integration: delete that one first",
  "Un'integrazione in reverse charge punta a questa registrazione.",
  "A reverse-charge integration points to this entry.",
  "Eliminare prima l'integrazione, poi modificare e rigenerarla.",
  "Delete the integration first, then change the entry and generate it again.")

KAL_MESSAGE(10695, AliquoteIntraMiste,
  "CheckCongruenzaAliquote", "", "RsRIva", "nota-credito-codice-intra",
  "Codici IVA intracomunitari su una registrazione non intracomunitaria, o misti ad altri codici",
  "Intra-community VAT codes on an entry that is not intra-community, or mixed with other codes",
  "Dove non valgono le dichiarazioni d'intento: un codice intracomunitario su una registrazione "
    "che non lo è, o codici intracomunitari misti ad altri su una che lo è.",
  "Where declarations of intent do not apply: an intra-community code on an entry that is none, or "
    "such codes mixed with others on one that is.",
  "Correggere il codice IVA, o marcare la registrazione come intracomunitaria.",
  "Correct the VAT code, or mark the entry as intra-community.")

KAL_MESSAGE(10699, DocumentoSenzaRegistroIva,
  "OkAggiorna", "Registri", "", "fattura-senza-registro-iva",
  "Il tipo di documento richiede un registro IVA, ma la causale non ne prevede alcuno",
  "The type of document needs a VAT register, but the posting template has none",
  "Il tipo di documento (4, 5, 6, 13 o 14) vuole un registro IVA, la causale non ne ha.",
  "The document type (4, 5, 6, 13 or 14) wants a VAT register, the template has none.",
  "Usare una causale con registro IVA, o cambiare il tipo di documento.",
  "Use a template with a VAT register, or change the document type.")

KAL_MESSAGE(10726, CodIvaNonFiscalitaBL,
  "CheckCongruenzaAliquote", "", "RsRIva", "acquisto-dati-fiscali-non-quadrano",
  "Un codice IVA della registrazione non è ammesso in presenza di dati di fiscalità privilegiata",
  "A VAT code of the entry is not allowed together with fiscal data",
  "La registrazione ha dati di fiscalità privilegiata, e il codice IVA di una riga non vi è "
    "ammesso.",
  "The entry has fiscal data, and the VAT code of a line is not allowed with them.",
  "Cambiare il codice IVA, o togliere i dati di fiscalità privilegiata.",
  "Change the VAT code, or take the fiscal data away.")

KAL_MESSAGE(10727, DatiFiscaliNonQuadrano,
  "CheckQuadraturaDatiFiscalitaBL", "", "", "acquisto-dati-fiscali-non-quadrano",
  "I dati di fiscalità privilegiata non quadrano con imponibile e imposta della registrazione",
  "The fiscal data do not agree with the taxable amount and tax of the entry",
  "La somma dei dati di fiscalità privilegiata differisce da imponibile o imposta della testata, o "
    "non ci sono righe. Le note di variazione hanno colonne proprie.",
  "The sum of the fiscal data differs from the taxable amount or the tax of the header, or there "
    "are no rows. Variation notes have columns of their own.",
  "Correggere i dati di fiscalità privilegiata.",
  "Correct the fiscal data.")

KAL_MESSAGE(10731, RigheReverseMancanti,
  "OkAggiorna", "Autofatture", "", "acquisto-reverse-senza-righe",
  "Registrazione in reverse charge senza righe IVA in reverse charge: verificare i codici IVA",
  "Reverse-charge entry without reverse-charge VAT lines: check the VAT codes",
  "La testata è in reverse charge, nessuna riga IVA lo è.",
  "The header is in reverse charge, no VAT line is.",
  "Usare un codice in reverse charge sulle righe, o correggere la testata.",
  "Use a reverse-charge code on the lines, or correct the header.")

KAL_MESSAGE(10734, UnaSolaRiga,
  "OkAggiorna", "Righe", "", "registrazione-una-riga",
  "La registrazione contiene una sola riga",
  "The entry has only one line",
  "C'è una sola riga contabile.",
  "There is only one account line.",
  "Completare la registrazione, o confermare.",
  "Complete the entry, or confirm.")

KAL_MESSAGE(10735, CorrispettivoSopraSoglia,
  "OkAggiorna", "Soglie", "", "corrispettivo-sopra-soglia",
  "Corrispettivo pari o superiore alla soglia di comunicazione: indicare il cliente o escluderlo",
  "Receipt at or above the reporting threshold: name the customer or exclude it",
  "Corrispettivo di cliente occasionale dal 1/7/2011, di almeno 3600 in valuta di conto, non "
    "escluso dalla comunicazione.",
  "A receipt of an occasional customer since 1 July 2011, of at least 3600 in the base currency, "
    "not excluded from the report.",
  "Indicare il cliente, o escludere la registrazione dalla comunicazione.",
  "Name the customer, or exclude the entry from the report.")

KAL_MESSAGE(10738, ProtocolloTroppoGrande,
  "OkAggiorna", "Registri", "", "vendita-protocollo-troppo-grande",
  "Il numero di protocollo %s supera le sette cifre",
  "The protocol number %s has more than seven digits",
  "Il protocollo del documento, o quello che avrà l'autofattura, supera 9999999.",
  "The protocol of the document, or the one that the self-invoice will get, exceeds 9999999.",
  "Correggere il protocollo, o la numerazione del sezionale.",
  "Correct the protocol, or the numbering of the section.")

KAL_MESSAGE(10742, ImpostaSenzaImponibile,
  "OkCastellettoIva", "", "RsRIva", "riga-iva-senza-imponibile",
  "Riga IVA %s: c'è l'imposta ma manca l'imponibile",
  "VAT line %s: there is tax but no taxable amount",
  "Una riga IVA ha imposta senza imponibile, e il totale non è la sola imposta.",
  "A VAT line has tax without a taxable amount, and its total is not the tax alone.",
  "Inserire l'imponibile della riga.",
  "Enter the taxable amount of the line.")

KAL_MESSAGE(10743, CodIvaAutofatturaMancante,
  "CheckCodIva", "", "RsRIva", "acquisto-reverse-indetraibile",
  "Riga IVA %s: il codice IVA è indetraibile e non indica il codice per l'autofattura; completarlo "
    "nella tabella dei codici IVA",
  "VAT line %s: the VAT code is non-deductible and names no self-invoice code; complete it in the "
    "table of VAT codes",
  "Riga intracomunitaria o in reverse charge con una parte indetraibile o a costo, il cui codice "
    "IVA non indica quello per l'autofattura.",
  "An intra-community or reverse-charge line with a part that can't be deducted or is charged to "
    "cost, whose VAT code names none for the self-invoice.",
  "Completare il codice nella tabella dei codici IVA.",
  "Complete the code in the table of VAT codes.")

KAL_MESSAGE(10753, AttivitaAutofatturaDiversa,
  "OkAggiorna", "Autofatture", "", "",
  "Il sezionale dell'autofattura appartiene a un'attività IVA diversa da quella della "
    "registrazione",
  "The section of the self-invoice belongs to another VAT activity than the entry",
  "L'azienda tiene attività IVA separate, e il sezionale dell'autofattura appartiene a un'attività "
    "diversa da quella della registrazione.",
  "The company keeps separate VAT activities, and the section of the self-invoice belongs to "
    "another activity than the entry.",
  "Correggere l'attività della registrazione, o il sezionale delle autofatture.",
  "Correct the activity of the entry, or the section of the self-invoices.")

KAL_MESSAGE(10754, ChiusuraContestuale,
  "CheckChiusuraContenstualeSospensione", "", "", "vendita-sospensione-incasso-contestuale",
  "Una registrazione in sospensione d'imposta non può aprire e chiudere le stesse rate: registrare "
    "l'incasso a parte",
  "An entry in tax suspension can't open and close the same installments: register the collection "
    "by itself",
  "Registrazione nuova in sospensione che apre rate e le chiude lei stessa.",
  "A new entry in suspension that opens installments and closes them itself.",
  "Togliere l'incasso e registrarlo a parte.",
  "Take the collection out and register it by itself.")

KAL_MESSAGE(10767, SospensioneNegativa,
  "OkAggiorna", "Sospensione", "", "sospensione-totale-negativo",
  "Una registrazione in sospensione d'imposta non può avere un totale negativo",
  "An entry in tax suspension can't have a negative total",
  "Registrazione IVA definitiva in sospensione con totale negativo.",
  "A definitive VAT entry in suspension with a negative total.",
  "Togliere la sospensione, o correggere gli importi.",
  "Take the suspension away, or correct the amounts.")

KAL_MESSAGE(10772, DatiParcellaDaVerificare,
  "CheckCompilazioneParcella", "", "", "parcella-da-verificare",
  "Il fornitore è un professionista: verificare i dati della parcella dopo la modifica",
  "The supplier is a professional: check the fee-note data after the change",
  "Si modifica il documento di un professionista che dovrebbe avere i dati della parcella.",
  "A professional's document that should have fee-note data is being edited.",
  "Verificare che i dati della parcella valgano ancora.",
  "Check that the fee-note data still hold.")

KAL_MESSAGE(10774, ScadenzeChiuseInSospensione,
  "ScadenzeDocChiuse", "", "", "modifica-vendita-sospensione-incassata",
  "La registrazione è in sospensione d'imposta e ha rate già chiuse da incassi o pagamenti",
  "The entry is in tax suspension and has installments already closed by collections or payments",
  "Come 10517, su una registrazione in sospensione: l'incasso ha reso esigibile l'IVA.",
  "As 10517, on an entry in suspension: the collection has made its VAT due.",
  "Annullare prima l'incasso o il pagamento, o confermare sapendolo.",
  "Take back the collection or payment first, or confirm knowing of it.")

// The literal messages.

KAL_LITERAL(EffettiSplitPayment,
  "CheckEffettiSplitPayment", "", "RsScadenze", "vendita-ente-pubblico-effetti-errati",
  "Il documento in Split Payment ha delle rate di tipo Effetto. Per poterle gestire nelle distinte "
    "effetti occorre utilizzare una forma di pagamento con la prima rata di sola iva",
  "",
  "Vendita su un sezionale split payment con una rata pagata con effetto, e condizioni di "
    "pagamento la cui prima rata non è di sola IVA.",
  "A sale on a split-payment section with an installment paid by bill of exchange, under terms "
    "whose first installment is not the VAT alone.",
  "Usare condizioni di pagamento con la prima rata di sola IVA.",
  "Use payment terms whose first installment is the VAT alone.")

KAL_LITERAL(SezionaleNonSplit,
  "OkAggiorna", "SplitPayment", "", "vendita-ente-pubblico-sezionale-errato",
  "Il Sezionale Vendita indicato non è idoneo alla fatturazione per il cliente split payment",
  "",
  "Il cliente è soggetto a split payment, il sezionale vendite no.",
  "The customer is subject to split payment, the sales section is not.",
  "Usare un sezionale split payment.",
  "Use a split-payment section.")

KAL_LITERAL(ClienteNonSplit,
  "OkAggiorna", "SplitPayment", "", "vendita-privato-sezionale-split",
  "Il Sezionale Vendita indicato è un sezionale Split Payment, ma il cliente non ha la gestione "
    "abilitata",
  "",
  "Il sezionale vendite è split payment, il cliente non vi è soggetto.",
  "The sales section is one for split payment, the customer is not subject to it.",
  "Usare un altro sezionale, o correggere l'anagrafica del cliente.",
  "Use another section, or correct the customer's master data.")

KAL_LITERAL(PlafondSuperato,
  "OkAggiorna", "DichiarazioniIntento", "", "acquisto-plafond-superato",
  "L'importo plafond residuo per la dichiarazione d'intenti selezionata è stato superato",
  "",
  "Dichiarazione su plafond: l'usato, tolto quanto usava la registrazione salvata e aggiunto "
    "quanto usa ora, supera l'importo.",
  "A declaration with a plafond: what is used, less what the saved entry used and with what it "
    "uses now, exceeds its amount.",
  "Verificare il residuo, o chiedere una nuova dichiarazione.",
  "Check what is left, or ask for a new declaration.")

KAL_LITERAL(DataDocumentoVuota,
  "OkAggiorna", "DichiarazioniIntento", "", "vendita-provvisoria-senza-data",
  "La data del documento è vuota ma esiste una dichiarazione d'intento inserita",
  "",
  "Registrazione provvisoria con una dichiarazione d'intento e senza data del documento.",
  "A provisional entry with a declaration of intent and without a document date.",
  "Indicare la data del documento.",
  "Enter the document date.")

KAL_LITERAL(DichiarazioneNonValida,
  "OkAggiorna", "DichiarazioniIntento", "", "vendita-dichiarazione-intento-scaduta",
  "La validità della dichiarazione d'intento selezionata differisce dalla data del documento",
  "",
  "La data del documento è fuori dalla validità della dichiarazione d'intento.",
  "The document date lies outside the validity of the declaration of intent.",
  "Scegliere una dichiarazione valida a quella data.",
  "Choose a declaration that is valid on that date.")

KAL_LITERAL(AliquoteDiverse,
  "CheckCongruenzaAliquote", "", "RsRIva", "vendita-dichiarazione-intento-aliquota",
  "Alcune aliquote sono diverse rispetto all'aliquota indicata in dichiarazione d'intenti",
  "",
  "Con una dichiarazione d'intento, il codice IVA di una riga non è il suo, né quello dei bolli, "
    "né VENT.",
  "With a declaration of intent, the VAT code of a line is neither its own nor that of stamp duty "
    "nor VENT.",
  "Usare il codice della dichiarazione, o confermare.",
  "Use the code of the declaration, or confirm.")

// "uno una" is the text that users know.
KAL_LITERAL(GenerataDaSplitPayment,
  "OkModifica", "Generate", "", "modifica-split-payment-girocontata",
  "Impossibile modificare il documento in quanto è stato generato a seguito di uno una prima nota "
    "in split payment",
  "",
  "Alla registrazione punta un giroconto dell'IVA in split payment.",
  "A transfer of split-payment VAT points to this entry.",
  "Eliminare prima il giroconto.",
  "Delete the transfer first.")

KAL_LITERAL(TrasmessoSdi,
  "OkModifica", "FatturaElettronica", "", "modifica-documento-trasmesso",
  "Attenzione! Si sta tentando di modificare un documento già trasmesso allo SDI",
  "Warning! You are about to change a document already transmitted to the exchange system",
  "Acquisto il cui documento elettronico è trasmesso. Blocca se l'azienda lo vuole, ma negli stati "
    "5, 6 e 7 avvisa soltanto.",
  "A purchase whose electronic document was transmitted. It blocks where the company wants it, but "
    "in the states 5, 6 and 7 it only warns.",
  "Registrare una nota di variazione, o confermare sapendolo.",
  "Register a variation note, or confirm knowing of it.")

KAL_LITERAL(XmlGenerato,
  "OkModifica", "FatturaElettronica", "", "modifica-documento-xml",
  "Attenzione! Per il documento è già stato generato un file XML. Per evitare incongruenze si "
    "consiglia, una volta effettuata la modifica, di rigenerare il file",
  "Warning! An XML file has already been produced for the document. To keep both in step, produce "
    "the file again once the change is made",
  "Acquisto del cui documento è generato il file XML, non ancora trasmesso.",
  "A purchase of whose document the XML file is produced and not transmitted yet.",
  "Dopo la modifica rigenerare il file.",
  "Produce the file again after the change.")

#undef KAL_CHECK
#undef KAL_THEME
#undef KAL_WORD
#undef KAL_MESSAGE
#undef KAL_LITERAL

// clang-format on
