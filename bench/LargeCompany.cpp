#include "bench/LargeCompany.h"

#include <random>
#include <stdexcept>

#include "company/Company.h"

namespace kal::bench {
namespace {

std::string Rows(int count) {
  return "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < " +
         std::to_string(count) + ") ";
}

std::string Filling(int savedEntries) {
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
         Rows(savedEntries) +
         "INSERT INTO COGPrimeNoteTeste (IdPrimaNota, IdAnagrafica, Protocollo, TipoDocumento, "
         "TipoRegIva, SezionaleIva, DataRegistrazione, DataDocumento, DataCompetenza, DataIva, "
         "NumeroDocumento, CodCausale, Provvisoria, TotDocumentoVB) SELECT i, i % 1000 + 1, i, 1, "
         "1, 1, d, d, d, d, 'N' || i, 'FTA', 0, '122.00' FROM (SELECT i, date('2024-01-01', "
         "'+' || (i * 365 / " +
         std::to_string(savedEntries) + ") || ' days') AS d FROM n);" + Rows(savedEntries / 25) +
         "INSERT INTO COGPrimeNoteRCont SELECT i * 25, i FROM n;" + Rows(savedEntries / 25) +
         "INSERT INTO COGScadenze (IdScadenza, NrRata, TipoRata, ImportoAvere, ImportoAvereVB) "
         "SELECT i, 1, 0, '122.00', '122.00' FROM n;"
         "COMMIT; ANALYZE;";
}

}  // namespace

LargeCompany::LargeCompany(int savedEntries)
    : path_(std::filesystem::temp_directory_path() /
            ("kalcogcheck-bench-" + std::to_string(std::random_device{}()) + ".db")) {
  company::CreateCompany(Path(), false);
  Open();
  // Nothing here has to outlive a power failure.
  Execute("PRAGMA synchronous = OFF");
  Execute(Filling(savedEntries));
  sqlite3_stmt* change = nullptr;
  if (sqlite3_prepare_v2(
          database_.get(),
          "UPDATE STDParametriAzienda SET Valore = random() WHERE Nome = 'CodIvaBolli'", -1,
          &change, nullptr) != SQLITE_OK) {
    Fail();
  }
  change_.reset(change);
}

LargeCompany::~LargeCompany() {
  change_.reset();
  database_.reset();
  std::error_code ignored;
  std::filesystem::remove(path_, ignored);
}

void LargeCompany::Change() {
  const int result = sqlite3_step(change_.get());
  sqlite3_reset(change_.get());
  if (result != SQLITE_DONE) {
    Fail();
  }
}

void LargeCompany::Open() {
  sqlite3* handle = nullptr;
  const int result = sqlite3_open(path_.c_str(), &handle);
  database_.reset(handle);
  if (result != SQLITE_OK) {
    Fail();
  }
}

void LargeCompany::Execute(const std::string& sql) const {
  if (sqlite3_exec(database_.get(), sql.c_str(), nullptr, nullptr, nullptr) != SQLITE_OK) {
    Fail();
  }
}

void LargeCompany::Fail() const { throw std::runtime_error(sqlite3_errmsg(database_.get())); }

}  // namespace kal::bench
