#include "bench/LargeCompany.h"

#include <sqlite3.h>

#include <random>
#include <stdexcept>

#include "company/Company.h"

namespace kal::bench {
namespace {

std::string Rows(int count) {
  return "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < " +
         std::to_string(count) + ") ";
}

std::string Filling() {
  return "BEGIN;"
         "INSERT INTO STDEsercizi VALUES (2024, '2024-01-01', '2024-12-31', 0, 0);"
         "INSERT INTO COGParametriIva VALUES (2024, 0);"
         "INSERT INTO STDParametriAzienda VALUES ('CodDivisaBase', 'EUR'), ('CodIvaBolli', 'BOL');"
         "INSERT INTO COGCausaliContabili (CodCausale, Operazione, TipoRegIva, SegnoIva, "
         "IdTipoMovimento, TipoVentilazione, CassaCorrispettivi, RegistrazioneLibera) VALUES "
         "('FTA', 1, 1, 1, 0, 0, 0, 0);"
         "INSERT INTO COGNumerazioniIva (IdNumerazione, Anno, TipoRegIva, SezionaleIva, "
         "SplitPayment) VALUES (1, 2024, 1, 1, 0);"
         "INSERT INTO STDTipologiePagamento VALUES (1, 0);" +
         Rows(kAccounts) + "INSERT INTO STDPianoDeiConti SELECT printf('%06d', i), 0, 0 FROM n;" +
         Rows(kVatCodes) + "INSERT INTO STDIva SELECT printf('%03d', i), NULL, 0, 0, 1, 0 FROM n;" +
         Rows(1000) +
         "INSERT INTO STDAnagraficaFornitori (IdAnagrafica, SoggettoSplitPayment, "
         "SoggettoParcella, Infragruppo) SELECT i, 0, 0, 0 FROM n;" +
         Rows(kSavedEntries) +
         "INSERT INTO COGPrimeNoteTeste (IdPrimaNota, IdAnagrafica, Protocollo, TipoDocumento, "
         "TipoRegIva, SezionaleIva, DataRegistrazione, DataDocumento, DataCompetenza, DataIva, "
         "NumeroDocumento, CodCausale, Provvisoria, TotDocumentoVB) SELECT i, i % 1000 + 1, i, 1, "
         "1, 1, d, d, d, d, 'N' || i, 'FTA', 0, '122.00' FROM (SELECT i, date('2024-01-01', "
         "'+' || (i * 365 / " +
         std::to_string(kSavedEntries) + ") || ' days') AS d FROM n);" + Rows(kSavedEntries / 25) +
         "INSERT INTO COGPrimeNoteRCont SELECT i * 25, i FROM n;" + Rows(kSavedEntries / 25) +
         "INSERT INTO COGScadenze (IdScadenza, NrRata, TipoRata, ImportoAvere, ImportoAvereVB) "
         "SELECT i, 1, 0, '122.00', '122.00' FROM n;"
         "COMMIT; ANALYZE;";
}

}  // namespace

LargeCompany::LargeCompany()
    : path_(std::filesystem::temp_directory_path() /
            ("kalcogcheck-bench-" + std::to_string(std::random_device{}()) + ".db")) {
  company::CreateCompany(Path(), false);
  Execute(Filling());
}

LargeCompany::~LargeCompany() {
  std::error_code ignored;
  std::filesystem::remove(path_, ignored);
}

void LargeCompany::Execute(const std::string& sql) const {
  sqlite3* db = nullptr;
  if (sqlite3_open(path_.c_str(), &db) != SQLITE_OK ||
      sqlite3_exec(db, sql.c_str(), nullptr, nullptr, nullptr) != SQLITE_OK) {
    const std::string why = sqlite3_errmsg(db);
    sqlite3_close(db);
    throw std::runtime_error(why);
  }
  sqlite3_close(db);
}

}  // namespace kal::bench
