#include "company/Siblings.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <optional>
#include <utility>
#include <vector>

#include "company/Schema.h"

namespace kal::company {
namespace {

[[noreturn]] void RaiseDataError(RunTime number, std::string description) {
  company::RaiseDataError(static_cast<std::int32_t>(number), std::move(description));
}

// A master-data question: one column of the row with that key.
Variant Lookup(Database& database, std::string_view table, std::string_view column,
               std::string_view key, Variant value) {
  QueryBuilder query;
  query.Select(column).From(table).WhereEqual(key, std::move(value));
  return database.FirstValue(query);
}

bool FlagOrFalse(const Variant& value) { return !value.IsNull() && CBool(value); }

std::string TextOr(const Variant& value, std::string otherwise) {
  return value.IsNull() ? std::move(otherwise) : CStr(value);
}

// The calendar day of a date as it is stored; nothing for "", Null and Empty.
std::optional<std::string> StoredDay(const Variant& date) {
  constexpr std::size_t kIsoSize = 10;
  const auto text = date.AsText();
  if (date.IsNull() || date.IsEmpty() || (text && text->empty())) {
    return std::nullopt;
  }
  return CDate(date).ToIso().substr(0, kIsoSize);
}

class Status final : public KalStatus, public Pooled {
 public:
  Status(Database& database, std::string_view language)
      : database_(database), language_(language) {}

  std::string GetMessage(std::int32_t code) override {
    QueryBuilder query;
    query.Select("Testo")
        .From("KalMessaggi")
        .WhereEqual("Codice", code)
        .WhereEqual("Lingua", language_);
    return TextOr(database_.FirstValue(query), "[" + std::to_string(code) + "]");
  }

  std::string TranslateFromDict(std::string_view text1, std::string_view /*text2*/,
                                std::string_view /*text3*/, std::string_view /*text4*/,
                                std::string_view /*text5*/, std::string_view /*text6*/) override {
    QueryBuilder query;
    query.Select("Traduzione")
        .From("KalDizionario")
        .WhereEqual("Testo", text1)
        .WhereEqual("Lingua", language_);
    return TextOr(database_.FirstValue(query), std::string(text1));
  }

 private:
  Database& database_;
  std::string_view language_;
};

// The settings that are no texts.
struct SettingType {
  std::string_view name;
  DataType type;
};
constexpr SettingType kSettingTypes[] = {
    {"AttivitaSeparateIva", DataType::Boolean},
    {"GestisciPNInfragruppo", DataType::Boolean},
    {"BloccoInviatoSDI", DataType::Boolean},
    {"GirocontoFatturaSplitPayment", DataType::Boolean},
    {"GirocontoFatturaSplitPaymentPAS", DataType::Boolean},
    {"AziendaSplitPayment", DataType::Boolean},
    {"DataInizioSplitPayment", DataType::Date},
    {"SezionaleAutofatture", DataType::SmallInt},
};

bool FlagOfText(std::string_view text) {
  if (text == "1" || text == "-1" || SameName(text, "True")) {
    return true;
  }
  if (text == "0" || SameName(text, "False")) {
    return false;
  }
  Raise(RunTime::TypeMismatch, "no boolean");
}

Variant SettingOfText(DataType type, std::string_view text) {
  switch (type) {
    case DataType::Boolean:
      return FlagOfText(text);
    case DataType::SmallInt:
      return CInt(text);
    default:
      break;
  }
  const std::optional<Date> date = Date::FromIso(text);
  if (!date) {
    Raise(RunTime::TypeMismatch, "no date");
  }
  return *date;
}

class Settings final : public CompanySettings, public Pooled {
 public:
  explicit Settings(Database& database) : database_(database) {}

  Variant Setting(std::string_view name) override {
    Variant value = Lookup(database_, "STDParametriAzienda", "Valore", "Nome", name);
    const auto text = value.AsText();
    if (!text || text->empty()) {
      return Null;
    }
    const auto* known = std::ranges::find(kSettingTypes, name, &SettingType::name);
    if (known == std::end(kSettingTypes)) {
      return value;
    }
    try {
      return SettingOfText(known->type, *text);
    } catch (const RunTimeError& error) {
      company::RaiseDataError(error.Number(), "The setting " + std::string(name) +
                                                  " can't have the value '" + std::string(*text) +
                                                  "'");
    }
  }

  // Of overlapping years the one with the lowest code.
  bool SelectFiscalYear(const Variant& date) override {
    year_ = nullptr;
    const std::optional<std::string> day = StoredDay(date);
    if (!day) {
      return false;
    }
    QueryBuilder query;
    query.Select("*").From("STDEsercizi").Where("DataInizio", CompareWith::LessOrEqual, *day);
    query.Where("DataFine", CompareWith::GreaterOrEqual, *day);
    const RecordsetRef years = database_.Open(query);
    const Field& code = years->Fields("CodEsercizio");
    std::optional<Variant> lowest;
    for (; !years->Eof(); years->MoveNext()) {
      if (!lowest || code.Value() < *lowest) {
        lowest = code.Value();
      }
    }
    if (!lowest) {
      return false;
    }
    for (years->MoveFirst(); !Identical(code.Value(), *lowest); years->MoveNext()) {
    }
    year_ = years;
    return true;
  }

  Variant FiscalYearField(std::string_view name) override {
    if (!year_) {
      RaiseDataError(RunTime::ObjectNotSet, "No fiscal year is selected");
    }
    return year_->Fields(name).Value();
  }

 private:
  Database& database_;
  RecordsetRef year_;  // on the selected year
};

class Anagrafiche final : public KalAnagrafiche, public Pooled {
 public:
  explicit Anagrafiche(Database& database) : database_(database) {}

  void IDAnagrafica(std::int32_t id) override { id_ = id; }
  void TipoAnagrafica(std::int16_t type) override { type_ = type; }

  void Init() override {
    constexpr std::int16_t kCustomer = 1;
    constexpr std::int16_t kSupplier = 2;
    if (type_ != kCustomer && type_ != kSupplier) {
      RaiseDataError(RunTime::TypeMismatch, "There is no TipoAnagrafica " + std::to_string(type_));
    }
    table_ = type_ == kCustomer ? "STDAnagraficaClienti" : "STDAnagraficaFornitori";
  }

  Variant InfoAnagrafica(std::string_view name) override {
    if (table_.empty()) {
      RaiseDataError(RunTime::ObjectNotSet, "InfoAnagrafica was called before Init");
    }
    Variant value = Lookup(database_, table_, name, "IdAnagrafica", id_);
    return value.IsNull() ? Variant(false) : value;
  }

 private:
  Database& database_;
  std::int32_t id_ = 0;
  std::int16_t type_ = 0;
  std::string_view table_;
};

class Codes final : public VatCodes, public Pooled {
 public:
  explicit Codes(Database& database) : database_(database) {}

  bool AdmitsFiscalData(std::string_view vatCode) override {
    return FlagOrFalse(Lookup(database_, "STDIva", "AmmessaFiscalitaBL", "CodIva", vatCode));
  }

  std::int32_t IntraClassification(std::string_view vatCode) override {
    const Variant type = Lookup(database_, "STDIva", "TipoIntra", "CodIva", vatCode);
    return type.IsNull() ? 0 : CLng(type);
  }

  Variant PeriodReferenceDate(std::int16_t month, std::int16_t year) override {
    constexpr int kLongestMonth = 31;
    constexpr int kShortestMonth = 28;
    for (int day = kLongestMonth; day >= kShortestMonth; --day) {
      if (const std::optional<Date> last = Date::FromYmd(year, month, day)) {
        return *last;
      }
    }
    RaiseDataError(RunTime::TypeMismatch, "There is no month " + std::to_string(month) +
                                              " of the year " + std::to_string(year));
  }

  bool IsVariationNote(std::string_view templateCode) override {
    return FlagOrFalse(
        Lookup(database_, "COGCausaliContabili", "NotaVariazione", "CodCausale", templateCode));
  }

 private:
  Database& database_;
};

class Locks final : public PeriodLock, public Pooled {
 public:
  explicit Locks(Database& database) : database_(database) {}

  bool IsLocked(const Variant& date) override {
    const std::optional<std::string> day = StoredDay(date);
    if (!day) {
      return false;
    }
    QueryBuilder query;
    query.Select("DataFine").From("COGBlocchiPeriodo");
    query.Where("DataInizio", CompareWith::LessOrEqual, *day);
    query.Where("DataFine", CompareWith::GreaterOrEqual, *day);
    return !database_.FirstValue(query).IsNull();
  }

 private:
  Database& database_;
};

class Activities final : public VatActivities, public Pooled {
 public:
  explicit Activities(Database& database) : database_(database) {}

  std::string ActivityCode(std::int16_t year, std::int16_t registerType,
                           std::int16_t section) override {
    QueryBuilder query;
    query.Select("CodAttivita").From("COGNumerazioniIva").WhereEqual("Anno", year);
    query.WhereEqual("TipoRegIva", registerType).WhereEqual("SezionaleIva", section);
    return TextOr(database_.FirstValue(query), "");
  }

 private:
  Database& database_;
};

class Numbering final : public ProtocolNumbering, public Pooled {
 public:
  explicit Numbering(Database& database) : database_(database) {}

  std::int32_t NextProtocol(std::int16_t registerType, std::int16_t section,
                            const Variant& date) override {
    StatementUse highest(database_.Prepared(kHighest));
    int parameter = 0;
    for (const Variant& value : {Variant(Year(date)), Variant(registerType), Variant(section)}) {
      highest->Bind(++parameter, value);
    }
    if (!highest->Step()) {
      return 1;
    }
    const Variant protocol = highest->Value(0, DataType::Integer, "COGPrimeNoteTeste.Protocollo");
    if (protocol.IsNull()) {
      return 1;
    }
    if (CLng(protocol) == std::numeric_limits<std::int32_t>::max()) {
      RaiseDataError(RunTime::Overflow, "There is no protocol after " + CStr(protocol));
    }
    return CLng(protocol) + 1;
  }

 private:
  // Walks the index of protocols down from the highest; Null comes last.
  static constexpr std::string_view kHighest =
      "SELECT Protocollo FROM COGPrimeNoteTeste "
      "WHERE CAST(substr(DataRegistrazione, 1, 4) AS INTEGER) = ? AND TipoRegIva = ? "
      "AND SezionaleIva = ? AND ifnull(Provvisoria, 0) = 0 ORDER BY Protocollo DESC LIMIT 1";

  Database& database_;
};

class Fees final : public FeeNotes, public Pooled {
 public:
  explicit Fees(Database& database) : database_(database) {}

  bool SupplierTest(std::int32_t idAnagrafica) override {
    return FlagOrFalse(Lookup(database_, "STDAnagraficaFornitori", "SoggettoParcella",
                              "IdAnagrafica", idAnagrafica));
  }

  std::int16_t TemplateTest(std::string_view templateCode) override {
    const Variant type =
        Lookup(database_, "COGCausaliContabili", "TipoParcella", "CodCausale", templateCode);
    return type.IsNull() ? std::int16_t{0} : CInt(type);
  }

 private:
  Database& database_;
};

class Functions final : public SqlFunctions, public Pooled {
 public:
  std::string Expression(std::int32_t functionCode, std::string_view column) override {
    constexpr std::int32_t kYear = 4;
    if (functionCode != kYear) {
      RaiseDataError(RunTime::NotSupported,
                     "There is no function with the code " + std::to_string(functionCode));
    }
    return "Year(" + std::string(column) + ")";
  }
};

class Sums final : public Totals, public Pooled {
 public:
  void Attach(const RecordsetRef& set) override { set_ = set; }

  void Columns(std::string_view list) override {
    sums_.clear();
    while (!list.empty()) {
      const std::size_t comma = std::min(list.find(','), list.size());
      std::string_view name = list.substr(0, comma);
      list.remove_prefix(std::min(comma + 1, list.size()));
      const std::size_t first = std::min(name.find_first_not_of(' '), name.size());
      name.remove_prefix(first);
      name = name.substr(0, name.find_last_not_of(' ') + 1);
      sums_.push_back({std::string(name), Currency()});
    }
  }

  void Compute() override {
    for (Sum& sum : sums_) {
      sum.total = Currency();
    }
    if (set_->RecordCount() == 0) {
      return;
    }
    for (set_->MoveFirst(); !set_->Eof(); set_->MoveNext()) {
      for (Sum& sum : sums_) {
        const Variant value = set_->Fields(sum.column).Value();
        sum.total += value.IsNull() ? Currency() : CCur(value);
      }
    }
  }

  Currency Total(std::string_view column) override {
    const auto found = std::ranges::find_if(
        sums_, [column](const Sum& sum) { return SameName(sum.column, column); });
    if (found == sums_.end()) {
      RaiseDataError(RunTime::NoSuchField, "No total was asked for " + std::string(column));
    }
    return found->total;
  }

 private:
  struct Sum {
    std::string column;
    Currency total;
  };

  RecordsetRef set_;
  std::vector<Sum> sums_;
};

class Access final : public DataAccess, public Pooled {
 public:
  explicit Access(Database& database) : database_(database) {}

  RecordsetRef Open(const QueryBuilder& query) override { return database_.Open(query); }

  // COGNroChiusurePrimaNota(entry, 1, output count).
  void Execute(std::string_view procedure, std::span<ProcedureArgument> arguments) override {
    constexpr std::size_t kArguments = 3;
    if (!SameName(procedure, "COGNroChiusurePrimaNota")) {
      company::RaiseDataError(kBadCommand,
                              "There is no stored procedure '" + std::string(procedure) + "'");
    }
    if (arguments.size() != kArguments || !arguments.back().output) {
      company::RaiseDataError(
          kBadCommand, std::string(procedure) + " takes an entry, a number and an output number");
    }
    StatementUse count(database_.Prepared(kClosings));
    count->Bind(1, arguments.front().value);
    count->Step();
    arguments.back().value = count->Value(0, DataType::Integer, procedure);
  }

 private:
  // A closing installment counts once, however many account lines carry what it closes.
  static constexpr std::string_view kClosings =
      "SELECT count(DISTINCT Chiusura.rowid) FROM COGPrimeNoteRCont AS Riga "
      "JOIN COGScadenze AS Apertura ON Apertura.IdScadenza = Riga.IdScadenza "
      "JOIN COGScadenze AS Chiusura ON Chiusura.LinkApertura = Apertura.IdScadenza "
      "AND Chiusura.RataApertura = Apertura.NrRata "
      "WHERE Riga.IdPrimaNota = ? AND Apertura.TipoRata = 0 AND Chiusura.TipoRata = 1";

  Database& database_;
};

}  // namespace

std::unique_ptr<KalStatus> CompanySiblings::CreateKalStatus() {
  return std::unique_ptr<KalStatus>(new (database_.Memory()) Status(database_, language_));
}
std::unique_ptr<CompanySettings> CompanySiblings::CreateCompanySettings() {
  return std::unique_ptr<CompanySettings>(new (database_.Memory()) Settings(database_));
}
std::unique_ptr<KalAnagrafiche> CompanySiblings::CreateKalAnagrafiche() {
  return std::unique_ptr<KalAnagrafiche>(new (database_.Memory()) Anagrafiche(database_));
}
std::unique_ptr<VatCodes> CompanySiblings::CreateVatCodes() {
  return std::unique_ptr<VatCodes>(new (database_.Memory()) Codes(database_));
}
std::unique_ptr<PeriodLock> CompanySiblings::CreatePeriodLock() {
  return std::unique_ptr<PeriodLock>(new (database_.Memory()) Locks(database_));
}
std::unique_ptr<VatActivities> CompanySiblings::CreateVatActivities() {
  return std::unique_ptr<VatActivities>(new (database_.Memory()) Activities(database_));
}
std::unique_ptr<ProtocolNumbering> CompanySiblings::CreateProtocolNumbering() {
  return std::unique_ptr<ProtocolNumbering>(new (database_.Memory()) Numbering(database_));
}
std::unique_ptr<FeeNotes> CompanySiblings::CreateFeeNotes() {
  return std::unique_ptr<FeeNotes>(new (database_.Memory()) Fees(database_));
}
std::unique_ptr<SqlFunctions> CompanySiblings::CreateSqlFunctions() {
  return std::unique_ptr<SqlFunctions>(new (database_.Memory()) Functions());
}
std::unique_ptr<Totals> CompanySiblings::CreateTotals() {
  return std::unique_ptr<Totals>(new (database_.Memory()) Sums());
}
std::unique_ptr<DataAccess> CompanySiblings::CreateDataAccess() {
  return std::unique_ptr<DataAccess>(new (database_.Memory()) Access(database_));
}

}  // namespace kal::company
