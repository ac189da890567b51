// An operation's order stands here a second time, for those checks that a run did not reach: a test
// holds it to the runs themselves.

#include "host/ExplainPages.h"

#include <algorithm>
#include <cstdint>

#include "host/Wording.h"

namespace kal::host {
namespace {

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

std::string CodeText(const Message& message) {
  return message.code ? std::to_string(static_cast<std::int32_t>(*message.code)) : "-";
}

std::string Padded(std::string_view text, std::size_t width) {
  std::string padded(text);
  padded.resize(std::max(width, text.size() + 1), ' ');
  return padded;
}

}  // namespace

const Message* FindPage(std::string_view codeOrName) {
  const std::span<const Message> messages = Catalogue();
  const auto found = std::ranges::find_if(messages, [&](const Message& message) {
    return message.name == codeOrName || (message.code && CodeText(message) == codeOrName);
  });
  return found == messages.end() ? nullptr : &*found;
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

std::string ToText(const Message& message, Language language) {
  const auto part = [&](const Wording& heading, std::string_view text) {
    return '\n' + heading.In(language) + '\n' + Wrapped(text, 2);
  };
  const std::string sample =
      message.sample.empty() ? Wording{"nessuno: l'azienda di esempio non ha attività IVA separate",
                                       "none: the sample company has no separate VAT activities"}
                                   .In(language)
                             : "host/samples/" + std::string(message.sample) + ".json";
  return CodeText(message) + ' ' + std::string(message.name) + '\n' +
         Wrapped(message.text.In(language), 2) + part({"Controllo", "Check"}, message.check) +
         part({"Che cosa protegge", "What it protects"}, message.protects.In(language)) +
         part({"Quando compare", "When it arises"}, message.when.In(language)) +
         part({"Che cosa fare", "What to do"}, message.remedy.In(language)) +
         part({"Esempio", "Example"}, sample);
}

std::string PageList() {
  std::string list;
  for (const Message& message : Catalogue()) {
    list += Padded(CodeText(message), 6) + Padded(message.name, 34) + Padded(message.check, 37) +
            std::string(message.sample.empty() ? "-" : message.sample) + '\n';
  }
  return list;
}

}  // namespace kal::host
