// The texts say what is wrong and where it can be put right. "%s" stands where the check puts a
// parameter; both languages take the same ones in the same order.

#include "company/MessageTexts.h"

#include <algorithm>

#include "frame/modCommonCostanti.h"

namespace kal::company {
namespace {

using enum MessageCode;

constexpr MessageText kMessageTexts[] = {
    {NumeroDocumentoVuoto,
     "Numero documento mancante: è obbligatorio sulle registrazioni IVA definitive",
     "Document number missing: a definitive VAT entry needs one"},
    {LibroGiornaleGiaStampato,
     "Il libro giornale del mese di registrazione è già stampato in bollato: cambiare la data di "
     "registrazione",
     "The general journal of the registration month is already printed: change the registration "
     "date"},
    {RegistroIvaGiaStampato,
     "Il registro IVA del mese di registrazione è già stampato in bollato per questo sezionale",
     "The VAT register of the registration month is already printed for this section"},
    {ScadenzeNonQuadrano,
     "Riga %s: la somma delle rate non corrisponde all'importo della riga; correggere le scadenze",
     "Line %s: the installments do not add up to the amount of the line; correct the installments"},
    {SbilancioVB, "La registrazione non quadra: dare e avere in valuta di conto sono diversi",
     "The entry does not balance: debits and credits differ in the base currency"},
    {SbilancioDivisa,
     "La registrazione non quadra nella divisa del documento, pur quadrando in valuta di conto",
     "The entry does not balance in its own currency, though it does in the base currency"},
    {SbilancioRigheIva,
     "Le righe cliente/fornitore, contropartita e IVA non quadrano tra loro: verificare importi e "
     "tipo riga",
     "Customer/supplier, counterpart and VAT lines do not balance: check amounts and line types"},
    {SbilancioRigheTipo4,
     "Le righe di giroconto (tipo 4) non quadrano tra loro: verificare importi e tipo riga",
     "The transfer lines (type 4) do not balance: check amounts and line types"},
    {DocumentoDopoRegistrazione, "La data del documento è successiva alla data di registrazione",
     "The document date is later than the registration date"},
    {MeseDocumentoDiverso,
     "Il mese del documento emesso è diverso dal mese di registrazione: registrare la vendita nel "
     "mese del documento",
     "The issued document is of another month than its registration: register the sale in the "
     "month of the document"},
    {CodIvaInesistente, "Il codice IVA '%s' non esiste nella tabella dei codici IVA",
     "VAT code '%s' is not in the table of VAT codes"},
    {PeriodoIvaLiquidato,
     "La liquidazione IVA del periodo è già definitiva: la registrazione non è modificabile",
     "The VAT settlement of the period is final: the entry can't be changed"},
    {AperturaNonInizioEsercizio,
     "La data di competenza di un'apertura dev'essere il primo giorno dell'esercizio",
     "The competence date of an opening entry must be the first day of the fiscal year"},
    {ChiusuraNonFineEsercizio,
     "La data di competenza di una chiusura dev'essere l'ultimo giorno dell'esercizio",
     "The competence date of a closing entry must be the last day of the fiscal year"},
    {EsercizioCompetenzaChiuso, "L'esercizio della data di competenza è chiuso",
     "The fiscal year of the competence date is closed"},
    {SezionaleIvaInesistente,
     "Il sezionale IVA non è definito per l'anno di registrazione: inserirlo nelle numerazioni IVA",
     "The VAT section is not defined for the registration year: add it to the VAT numberings"},
    {ProtocolloNonInOrdine,
     "Protocollo non in ordine: sullo stesso registro c'è già, in data %s, il protocollo %s",
     "Protocol out of order: the same register already holds, dated %s, protocol %s"},
    {NumeroDocumentoDuplicato,
     "Il numero del documento è già usato da un'altra registrazione dell'anno",
     "The document number is already used by another entry of the year"},
    {ProtocolloMancante,
     "Numero di protocollo mancante: è obbligatorio sulle registrazioni definitive",
     "Protocol number missing: a definitive entry needs one"},
    {ContabilitaEsercizioChiusa, "La contabilità dell'esercizio di competenza è già chiusa",
     "The accounts of the entry's fiscal year are already closed"},
    {BancaClienteMancante,
     "Manca la banca del cliente su una rata da incassare con effetto: indicarla nelle scadenze",
     "An installment to be collected by bill of exchange lacks the customer's bank: add it to the "
     "installments"},
    {PeriodoBloccato,
     "%s la registrazione si interviene su un periodo bloccato: verificare la data IVA",
     "%s: the entry touches a locked period; check the VAT date"},
    {EsisteIntegrazioneIntra,
     "La registrazione ha generato un'integrazione intracomunitaria: eliminare prima quella",
     "The entry has generated an intra-community integration: delete that one first"},
    {EsercizioInesistente, "Nessun esercizio contiene la data di registrazione",
     "No fiscal year contains the registration date"},
    {SezionaleInesistente,
     "Il sezionale non è definito per l'esercizio: inserirlo nelle numerazioni di prima nota",
     "The journal section is not defined for the fiscal year: add it to the journal numberings"},
    {SezionaleAutofatturaInesistente,
     "Il sezionale vendite dell'autofattura non è definito per l'anno di registrazione",
     "The sales section of the self-invoice is not defined for the registration year"},
    {RegistroPlafondStampato,
     "Il registro IVA del mese di utilizzo del plafond è già stampato in bollato: cambiare la data "
     "plafond",
     "The VAT register of the month in which the plafond is used is already printed: change the "
     "plafond date"},
    {ScadenzeChiuse, "La registrazione ha rate già chiuse da incassi o pagamenti",
     "Installments of the entry are already closed by collections or payments"},
    {ScadenzeInDistintaPresenti, "La registrazione ha rate già inserite in una distinta",
     "Installments of the entry are already in a remittance"},
    {ParametriIvaMancanti, "Mancano i parametri IVA dell'anno %s: inserirli prima di salvare",
     "The VAT parameters of year %s are missing: enter them before saving"},
    {ContoMancante, "Riga %s: il conto manca o non è un conto di registrazione del piano dei conti",
     "Line %s: the account is missing or is no posting account of the chart of accounts"},
    {CodIvaMancante, "Riga IVA %s: manca il codice IVA", "VAT line %s: the VAT code is missing"},
    {NessunaRiga, "La registrazione non contiene righe", "The entry has no lines"},
    {EsercizioCompetenzaInesistente, "Nessun esercizio contiene la data di competenza",
     "No fiscal year contains the competence date"},
    {CausaleInesistente, "La causale contabile manca o non esiste: indicare una causale in tabella",
     "The posting template is missing or unknown: choose one from the table"},
    {DivisaRigaMancante, "Riga %s: manca la divisa, obbligatoria su ogni riga con questa proprietà",
     "Line %s: the currency is missing, which this entry property wants on every line"},
    {AutofatturaNonInOrdine,
     "Protocollo dell'autofattura non in ordine: nel suo sezionale c'è già, in data %s, il "
     "protocollo %s",
     "Self-invoice protocol out of order: its section already holds, dated %s, protocol %s"},
    {RegistroAutofatturaStampato,
     "Il registro vendite delle autofatture, sezionale %s, è già stampato in bollato per il mese "
     "di "
     "registrazione",
     "The sales register of the self-invoices, section %s, is already printed for the registration "
     "month"},
    {SegnoRigheIva,
     "Ci sono righe IVA in %s su una registrazione di %s: verificare il segno delle righe",
     "There are VAT lines on the side \"%s\" of an entry of the kind \"%s\": check the sides of "
     "the "
     "lines"},
    {RettificaFuoriPeriodo,
     "La data di competenza di una rettifica dev'essere quella di riferimento del suo periodo IVA",
     "The competence date of an adjustment must be the reference date of its VAT period"},
    {DatiParcellaMancanti, "Il fornitore è un professionista: compilare i dati della parcella",
     "The supplier is a professional: fill in the fee-note data"},
    {RegistrazioneInfragruppo,
     "La registrazione movimenta una società del gruppo ma non è marcata come infragruppo",
     "The entry concerns a company of the group but is not marked as intra-group"},
    {DataScadenzaNonValida, "Almeno una rata non ha una data di scadenza valida",
     "At least one installment has no valid due date"},
    {ContropartitaMancante, "Ratei e risconti: manca il conto di contropartita",
     "Accruals and deferrals: the counterpart account is missing"},
    {ContropartitaNonInRighe,
     "Ratei e risconti: la contropartita %s non compare nelle righe della registrazione",
     "Accruals and deferrals: counterpart account %s is on no line of the entry"},
    {RateiContabilizzati, "I ratei e risconti della registrazione sono già contabilizzati",
     "The accruals and deferrals of the entry are already posted"},
    {RigaSoloImposta,
     "Riga IVA %s: c'è la sola imposta, senza imponibile; verificare che sia voluto",
     "VAT line %s: tax alone, without a taxable amount; check that this is meant"},
    {EsisteIntegrazioneReverse,
     "La registrazione ha generato un'integrazione in reverse charge: eliminare prima quella",
     "The entry has generated a reverse-charge integration: delete that one first"},
    {AliquoteIntraMiste,
     "Codici IVA intracomunitari su una registrazione non intracomunitaria, o misti ad altri "
     "codici",
     "Intra-community VAT codes on an entry that is not intra-community, or mixed with other "
     "codes"},
    {DocumentoSenzaRegistroIva,
     "Il tipo di documento richiede un registro IVA, ma la causale non ne prevede alcuno",
     "The type of document needs a VAT register, but the posting template has none"},
    {CodIvaNonFiscalitaBL,
     "Un codice IVA della registrazione non è ammesso in presenza di dati di fiscalità "
     "privilegiata",
     "A VAT code of the entry is not allowed together with fiscal data"},
    {DatiFiscaliNonQuadrano,
     "I dati di fiscalità privilegiata non quadrano con imponibile e imposta della registrazione",
     "The fiscal data do not agree with the taxable amount and tax of the entry"},
    {RigheReverseMancanti,
     "Registrazione in reverse charge senza righe IVA in reverse charge: verificare i codici IVA",
     "Reverse-charge entry without reverse-charge VAT lines: check the VAT codes"},
    {UnaSolaRiga, "La registrazione contiene una sola riga", "The entry has only one line"},
    {CorrispettivoSopraSoglia,
     "Corrispettivo pari o superiore alla soglia di comunicazione: indicare il cliente o "
     "escluderlo",
     "Receipt at or above the reporting threshold: name the customer or exclude it"},
    {ProtocolloTroppoGrande, "Il numero di protocollo %s supera le sette cifre",
     "The protocol number %s has more than seven digits"},
    {ImpostaSenzaImponibile, "Riga IVA %s: c'è l'imposta ma manca l'imponibile",
     "VAT line %s: there is tax but no taxable amount"},
    {CodIvaAutofatturaMancante,
     "Riga IVA %s: il codice IVA è indetraibile e non indica il codice per l'autofattura; "
     "completarlo nella tabella dei codici IVA",
     "VAT line %s: the VAT code is non-deductible and names no self-invoice code; complete it in "
     "the table of VAT codes"},
    {AttivitaAutofatturaDiversa,
     "Il sezionale dell'autofattura appartiene a un'attività IVA diversa da quella della "
     "registrazione",
     "The section of the self-invoice belongs to another VAT activity than the entry"},
    {ChiusuraContestuale,
     "Una registrazione in sospensione d'imposta non può aprire e chiudere le stesse rate: "
     "registrare l'incasso a parte",
     "An entry in tax suspension can't open and close the same installments: register the "
     "collection by itself"},
    {SospensioneNegativa,
     "Una registrazione in sospensione d'imposta non può avere un totale negativo",
     "An entry in tax suspension can't have a negative total"},
    {DatiParcellaDaVerificare,
     "Il fornitore è un professionista: verificare i dati della parcella dopo la modifica",
     "The supplier is a professional: check the fee-note data after the change"},
    {ScadenzeChiuseInSospensione,
     "La registrazione è in sospensione d'imposta e ha rate già chiuse da incassi o pagamenti",
     "The entry is in tax suspension and has installments already closed by collections or "
     "payments"},
};

static_assert(std::ranges::equal(kMessageTexts, kMessageCodes, {}, &MessageText::code,
                                 &MessageName::code),
              "one text for every message code, in their order");

// Only the texts that the checks hand to the translation; the other literal messages never ask
// for one.
constexpr Translation kTranslations[] = {
    {"del documento", "of the document"},
    {"dell'autofattura", "of the self-invoice"},
    {testi::kTrasmessoSdi,
     "Warning! You are about to change a document already transmitted to the exchange system"},
    {testi::kXmlGenerato,
     "Warning! An XML file has already been produced for the document. To keep both in step, "
     "produce the file again once the change is made"},
};

}  // namespace

std::span<const MessageText> MessageTexts() { return kMessageTexts; }

std::span<const Translation> Translations() { return kTranslations; }

}  // namespace kal::company
