#include "bench/Entries.h"

#include <nlohmann/json.hpp>
#include <stdexcept>

#include "bench/LargeCompany.h"
#include "host/EntryReader.h"

namespace kal::bench {
namespace {

constexpr int kUsedAccounts = 300;
constexpr int kGroup = 4;  // lines of a group: a supplier line and the costs that it pays

std::string AccountCode(int number) {
  const std::string digits = std::to_string(number % kUsedAccounts + 1);
  return std::string(6 - digits.size(), '0') + digits;
}

nlohmann::ordered_json Line(int number, bool supplier, int group) {
  nlohmann::ordered_json line = {{"NumeroRiga", number},
                                 {"CodConto", AccountCode(number)},
                                 {"TipoRiga", supplier ? 1 : 2},
                                 {"CodDivisa", "EUR"}};
  for (const char* column : {"ImportoDare", "ImportoDareVB"}) {
    line[column] = supplier ? "0" : "100";
  }
  for (const char* column : {"ImportoAvere", "ImportoAvereVB"}) {
    line[column] = supplier ? "300" : "0";
  }
  if (supplier) {
    line.update({{"IdCliFor", 7}, {"TipoCliFor", 2}, {"IdScadenza", group}});
  }
  return line;
}

}  // namespace

std::string Purchase::Json() const {
  using nlohmann::ordered_json;
  const int groups = lines / kGroup;
  const std::string total = std::to_string(groups * 300);
  ordered_json entry;
  entry["id"] = protocol;
  entry["RsTesta"] = {{"EditMode", 2},
                      {"rows",
                       {{{"CodCausale", "FTA"},
                         {"IdPrimaNota", 0},
                         {"TipoRegIva", 1},
                         {"SezionaleIva", 1},
                         {"Protocollo", protocol},
                         {"NumeroDocumento", "X" + std::to_string(protocol)},
                         {"DataRegistrazione", date},
                         {"DataDocumento", date},
                         {"DataCompetenza", date},
                         {"DataIva", date},
                         {"IdAnagrafica", 7},
                         {"TipoCliFor", 2},
                         {"TotDocumentoVB", total}}}}};
  entry["RsRIva"] = {{"rows",
                      {{{"NumeroRiga", 1},
                        {"CodIva", "022"},
                        {"Imponibile", total},
                        {"ImponibileVB", total},
                        {"Imposta", "0"},
                        {"ImpostaVB", "0"},
                        {"TotaleVB", total}}}}};
  entry["RsRCont"]["rows"] = ordered_json::array();
  entry["RsScadenze"]["rows"] = ordered_json::array();
  for (int number = 1; number <= groups * kGroup; ++number) {
    const int group = (number + kGroup - 1) / kGroup;
    const bool supplier = number % kGroup == 1;
    entry["RsRCont"]["rows"].push_back(Line(number, supplier, group));
    entry["RsScadenze"]["rows"].push_back({{"IdScadenza", group},
                                           {"NrRata", (number - 1) % kGroup + 1},
                                           {"TipoRata", 0},
                                           {"DataScadenza", "2025-01-31"},
                                           {"ImportoDare", "0"},
                                           {"ImportoDareVB", "0"},
                                           {"ImportoAvere", "75"},
                                           {"ImportoAvereVB", "75"},
                                           {"IdTipologiaPagamento", 1}});
  }
  return entry.dump();
}

Purchase::Sets Purchase::Fresh() const {
  const host::EntryReading reading = host::ReadEntry(Json());
  if (!reading.entry) {
    throw std::runtime_error(reading.error.english);
  }
  const auto set = [&](std::size_t place) -> RecordsetRef {
    const host::SuppliedSet& supplied = reading.entry->sets.at(place);
    return std::make_shared<MemoryRecordset>(supplied.rows, supplied.editMode);
  };
  return {set(0), set(1), set(2), set(3)};
}

bool Check(Siblings& siblings, const Purchase::Sets& sets, Observer* observer) {
  KalCOGCheck checker(siblings);
  checker.Observe(observer);
  checker.RsTesta(sets.testa);
  checker.RsRIva(sets.rIva);
  checker.RsRCont(sets.rCont);
  checker.RsScadenze(sets.scadenze);
  const bool ok = checker.OkAggiorna(true, true);
  if (!ok) {
    throw std::runtime_error("the entry has findings: " + checker.ErrString() + " | " +
                             checker.WarnString() + " | " + checker.WarnProtocolloString());
  }
  return ok;
}

}  // namespace kal::bench
