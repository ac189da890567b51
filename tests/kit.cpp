#include "tests/kit.h"

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <atomic>
#include <cstdlib>
#include <fstream>
#include <nlohmann/json.hpp>
#include <random>
#include <regex>
#include <sstream>
#include <stdexcept>
#include <utility>

#include "host/CommandLine.h"
#include "host/RecordingText.h"
#include "host/Report.h"
#include "host/Runner.h"
#include "platform/RunTimeError.h"
#include "records/Player.h"
#include "records/Recorder.h"

namespace kal::test {
namespace {

constexpr const char* kBaseCompany = R"sql(
INSERT INTO STDEsercizi VALUES (2023,'2023-01-01','2023-12-31',1,1), (2024,'2024-01-01','2024-12-31',0,0);
INSERT INTO STDPianoDeiConti (CodConto,TipoConto,Infragruppo) VALUES
  ('10',1,0), ('1001',0,0), ('2001',0,0), ('3001',0,0), ('4001',0,0), ('5001',0,0), ('6001',0,0), ('7001',0,1);
INSERT INTO COGCausaliContabili (CodCausale,Operazione,TipoRegIva,SegnoIva,TipoParcella,IdTipoMovimento,
    TipoVentilazione,CassaCorrispettivi,RegistrazioneLibera,NotaVariazione) VALUES
  ('GEN',0,0,1,0,0,0,0,0,0), ('LIB',0,0,1,0,0,0,0,1,0), ('APE',0,0,1,0,2,0,0,0,0), ('CHI',0,0,1,0,1,0,0,0,0),
  ('FTA',1,1,1,0,0,0,0,0,0), ('PAR',1,1,1,1,0,0,0,0,0), ('NCA',1,1,-1,0,0,0,0,0,1), ('ACQ',0,1,1,0,0,0,0,0,0),
  ('FTV',2,2,1,0,0,0,0,0,0), ('VEN',0,2,1,0,0,0,0,0,0),
  ('COR',2,3,1,0,0,0,0,0,0), ('COV',2,3,1,0,0,1,0,0,0), ('COC',2,3,1,0,0,0,1,0,0);
INSERT INTO STDIva (CodIva,CodIvaAutoFtReverse,PercIvaACosto,PercIndetraibile,AmmessaFiscalitaBL,TipoIntra) VALUES
  ('22',NULL,0,0,1,0), ('10',NULL,0,0,0,0), ('IC','22',0,0,0,1), ('RC','22',0,50,0,0), ('IND',NULL,0,50,0,0),
  ('COS','',100,0,0,0), ('DI','',0,0,0,0);
INSERT INTO STDAnagraficaClienti VALUES (10,0,0), (11,1,0), (12,0,1);
INSERT INTO STDAnagraficaFornitori VALUES (20,0,0,0), (21,0,0,1), (22,0,1,0);
INSERT INTO COGNumerazioniIva (IdNumerazione,IdSezAutofatture,Anno,TipoRegIva,SezionaleIva,CodAttivita,SplitPayment,UsaSezAutoftSpecifico) VALUES
  (1,NULL,2024,1,1,'A1',0,0), (2,NULL,2024,2,1,'A1',0,0), (3,NULL,2024,2,2,'A1',1,0), (4,NULL,2024,2,9,'A9',0,0),
  (5,NULL,2024,3,1,'A1',0,0), (6,7,2024,1,2,'A1',0,1), (7,NULL,2024,2,8,'A8',0,0);
INSERT INTO COGNumerazioniContabili VALUES (2024,1);
INSERT INTO COGNumerazioniExtra VALUES (2024,5);
INSERT INTO COGParametriIva VALUES (2024,0), (2023,1);
INSERT INTO STDTipologiePagamento VALUES (1,0), (2,1);
INSERT INTO STDCondizioniPagamentoTeste VALUES ('RB',1), ('SOLOIVA',2);
INSERT INTO STDDichiarazioniIntento (IdDichiarazione,IdAnagrafica,TipoAnagrafica,TipoDichiarazione,CodIva,ImportoPlafond,Importo,DataInizioValidita,DataFineValidita,Annullata) VALUES
  (1,10,1,1,'DI','0','1000','2024-01-01','2024-12-31',0), (2,20,2,2,'22','500','1000','2024-01-01','2024-12-31',0);
INSERT INTO STDParametriAzienda VALUES ('CodDivisaBase','EUR'), ('CodIvaBolli','BOL'), ('SezionaleAutofatture','9');
)sql";

constexpr const char* kAcquisto = R"json({"operation": "OkAggiorna",
 "RsTesta": {"EditMode": 2, "rows": [{"IdPrimaNota": 100, "CodCausale": "FTA", "DataRegistrazione": "2024-03-15",
   "DataDocumento": "2024-03-10", "DataCompetenza": "2024-03-15", "DataIva": "2024-03-15", "NumeroDocumento": "F1",
   "Protocollo": 10, "TipoRegIva": 1, "SezionaleIva": 1, "IdAnagrafica": 20, "TipoCliFor": 2, "Provvisoria": false,
   "TotImponibileVB": "100", "TotImpostaVB": "22", "TotDocumentoVB": "122"}]},
 "RsRIva": {"rows": [{"NumeroRiga": 1, "CodIva": "22", "Imponibile": "100", "ImponibileVB": "100", "Imposta": "22",
   "ImpostaVB": "22", "TotaleVB": "122"}]},
 "RsRCont": {"rows": [
   {"NumeroRiga": 1, "CodConto": "3001", "TipoRiga": 1, "ImportoAvere": "122", "ImportoAvereVB": "122",
    "ImportoDare": "0", "ImportoDareVB": "0", "IdCliFor": 20, "TipoCliFor": 2, "IdScadenza": 1, "CodDivisa": "EUR"},
   {"NumeroRiga": 2, "CodConto": "4001", "TipoRiga": 2, "ImportoAvere": "0", "ImportoAvereVB": "0",
    "ImportoDare": "100", "ImportoDareVB": "100", "CodDivisa": "EUR"},
   {"NumeroRiga": 3, "CodConto": "6001", "TipoRiga": 3, "ImportoAvere": "0", "ImportoAvereVB": "0",
    "ImportoDare": "22", "ImportoDareVB": "22", "CodDivisa": "EUR"}]},
 "RsScadenze": {"rows": [
   {"IdScadenza": 1, "NrRata": 1, "TipoRata": 0, "DataScadenza": "2024-04-30", "ImportoAvere": "61", "ImportoAvereVB": "61",
    "ImportoDare": "0", "ImportoDareVB": "0", "IdTipologiaPagamento": 1},
   {"IdScadenza": 1, "NrRata": 2, "TipoRata": 0, "DataScadenza": "2024-05-31", "ImportoAvere": "61", "ImportoAvereVB": "61",
    "ImportoDare": "0", "ImportoDareVB": "0", "IdTipologiaPagamento": 1}]}})json";

constexpr const char* kGiroconto = R"json({"operation": "OkAggiorna",
 "RsTesta": {"EditMode": 2, "rows": [{"IdPrimaNota": 100, "CodCausale": "GEN", "DataRegistrazione": "2024-03-15",
   "DataCompetenza": "2024-03-15", "Protocollo": 10, "TipoRegIva": 0, "SezionaleIva": 1, "Provvisoria": false}]},
 "RsRCont": {"rows": [
   {"NumeroRiga": 1, "CodConto": "1001", "TipoRiga": 1, "ImportoDare": "100", "ImportoDareVB": "100",
    "ImportoAvere": "0", "ImportoAvereVB": "0", "CodDivisa": "EUR"},
   {"NumeroRiga": 2, "CodConto": "2001", "TipoRiga": 1, "ImportoDare": "0", "ImportoDareVB": "0",
    "ImportoAvere": "100", "ImportoAvereVB": "100", "CodDivisa": "EUR"}]}})json";

// A sale is the purchase with both sides and the customer exchanged.
constexpr const char* kVendita =
    "T.CodCausale=\"FTV\";T.TipoRegIva=2;T.IdAnagrafica=10;T.TipoCliFor=1;T.DataDocumento=\"2024-"
    "03-15\";"
    "C1.IdCliFor=10;C1.TipoCliFor=1;C1.CodConto=\"2001\";C2.CodConto=\"5001\";"
    "C1.ImportoDare=\"122\";C1.ImportoDareVB=\"122\";C1.ImportoAvere=\"0\";C1.ImportoAvereVB=\"0\";"
    "C2.ImportoAvere=\"100\";C2.ImportoAvereVB=\"100\";C2.ImportoDare=\"0\";C2.ImportoDareVB=\"0\";"
    "C3.ImportoAvere=\"22\";C3.ImportoAvereVB=\"22\";C3.ImportoDare=\"0\";C3.ImportoDareVB=\"0\";"
    "S1.ImportoDare=\"61\";S1.ImportoDareVB=\"61\";S1.ImportoAvere=\"0\";S1.ImportoAvereVB=\"0\";"
    "S2.ImportoDare=\"61\";S2.ImportoDareVB=\"61\";S2.ImportoAvere=\"0\";S2.ImportoAvereVB=\"0\"";

// Receipts are a sale over the counter.
constexpr const char* kCorrispettivi =
    "T.CodCausale=\"COR\";T.TipoRegIva=3;T.TipoCliFor=3;T.IdAnagrafica=null;C1.IdCliFor=null;"
    "C1.TipoCliFor=0;C1.CodConto=\"1001\";S!";

void Execute(const std::filesystem::path& path, std::string_view sql) {
  // No case outlives a crash of the machine, so none waits for the disk.
  // Some store what no company of this program takes.
  const std::string kNoWaiting = "PRAGMA synchronous = OFF; PRAGMA ignore_check_constraints = ON;";
  sqlite3* db = nullptr;
  char* message = nullptr;
  if (sqlite3_open(path.c_str(), &db) != SQLITE_OK ||
      sqlite3_exec(db, (kNoWaiting + std::string(sql)).c_str(), nullptr, nullptr, &message) !=
          SQLITE_OK) {
    const std::string why = message != nullptr ? message : sqlite3_errmsg(db);
    sqlite3_free(message);
    sqlite3_close(db);
    throw std::runtime_error("test company: " + why);
  }
  sqlite3_close(db);
}

// Some operations have a tag of their own.
std::string_view TagOf(std::string_view operation) {
  if (operation == "OkModifica" || operation == "ScadenzeInDistinta") return "OkModify";
  return operation == "OkCancella" ? "OkDelete" : operation;
}

// The company that every test company is a copy of.
const std::filesystem::path& BaseCompany() {
  static const ScratchPath kPath;
  static const bool kMade = [] {
    company::CreateCompany(kPath.Text(), false);
    Execute(kPath.Path(), kBaseCompany);
    return true;
  }();
  (void)kMade;
  return kPath.Path();
}

const char* SetName(char letter) {
  switch (letter) {
    case 'T':
      return "RsTesta";
    case 'C':
      return "RsRCont";
    case 'I':
      return "RsRIva";
    case 'S':
      return "RsScadenze";
    case 'K':
      return "RsCausale";
    case 'R':
      return "RsRisconti";
    case 'F':
      return "RsFiscalitaBL";
    default:
      throw std::invalid_argument(std::string("no record set ") + letter);
  }
}

void Change(nlohmann::ordered_json& entry, const std::string& change) {
  static const std::regex kField(R"(\s*([TCISKRF])(\d*)\.(\w+)=(.*))");
  static const std::regex kAdd(R"(\s*([TCISKRF])\+(\{.*\}))");
  static const std::regex kTake(R"(\s*([TCISKRF])(\d+)-)");
  static const std::regex kNothing(R"(\s*([TCISKRF])!)");
  static const std::regex kEditMode(R"(\s*([TCISKRF])!EditMode=(\d+))");
  static const std::regex kKey(R"(\s*(\w+)=(.*))");
  using nlohmann::ordered_json;
  std::smatch part;
  const auto set = [&]() -> ordered_json& { return entry[SetName(part.str(1)[0])]; };
  if (std::regex_match(change, part, kField)) {
    const std::size_t row = part.str(2).empty() ? 1 : std::stoul(part.str(2));
    ordered_json& rows = set()["rows"];
    rows[row - 1][part.str(3)] = ordered_json::parse(part.str(4));
  } else if (std::regex_match(change, part, kAdd)) {
    set()["rows"].push_back(ordered_json::parse(part.str(2)));
  } else if (std::regex_match(change, part, kTake)) {
    set()["rows"].erase(std::stoul(part.str(2)) - 1);
  } else if (std::regex_match(change, part, kNothing)) {
    entry.erase(SetName(part.str(1)[0]));
  } else if (std::regex_match(change, part, kEditMode)) {
    set()["EditMode"] = std::stoi(part.str(2));
  } else if (std::regex_match(change, part, kKey)) {
    entry[part.str(1)] = ordered_json::parse(part.str(2));
  } else {
    throw std::invalid_argument("no change: " + change);
  }
}

void ChangeAll(nlohmann::ordered_json& entry, std::string_view changes) {
  std::string rest(changes);
  while (!rest.empty()) {
    const std::size_t end = rest.find(';');
    const std::string change = rest.substr(0, end);
    rest = end == std::string::npos ? "" : rest.substr(end + 1);
    if (change.find_first_not_of(" \n") != std::string::npos) {
      Change(entry, change);
    }
  }
}

}  // namespace

ScratchPath::ScratchPath() {
  static const std::string kRun = std::to_string(std::random_device{}());
  static std::atomic<int> number{0};
  path_ = std::filesystem::temp_directory_path() /
          ("kalcogcheck-test-" + kRun + "-" + std::to_string(++number));
}

ScratchPath::~ScratchPath() {
  std::error_code ignored;
  for (const char* of : {"", "-wal", "-shm"}) {  // what SQLite leaves beside it
    std::filesystem::remove_all(path_.string() + of, ignored);
  }
}

TestCompany::TestCompany(std::string_view sql) {
  std::filesystem::copy_file(BaseCompany(), Path());
  Execute(sql);
}

void TestCompany::Execute(std::string_view sql) const { test::Execute(Path(), sql); }

namespace {

// Siblings answer in the morning, hosts hand over in the evening.
constexpr double kMorning = 0.25;
constexpr double kEvening = 0.75;

Variant WithTime(const Variant& value, double time) {
  const auto* date = value.As<Date>();
  if (date == nullptr) return value;
  const double serial = date->WithoutTime().Serial();
  return *Date::FromSerial(serial < 0 ? serial - time : serial + time);
}

class ForeignRecordset final : public WrappedRecordset {
 public:
  ForeignRecordset(RecordsetRef inner, double time, std::string lacks = "")
      : WrappedRecordset(std::move(inner)), time_(time), lacks_(std::move(lacks)) {}
  std::shared_ptr<const RowTable> AllRows() const override { return inner_->AllRows(); }

 private:
  void Through(std::string_view /*member*/, std::string_view of, const Call& call) override {
    if (!of.empty() && of == lacks_) {
      Raise(RunTime::NoSuchField, lacks_, kRecordsetSource);
    }
    call();
  }
  Variant Read(const Field& field, bool isFirst) override {
    Variant value = WithTime(field.Value(), time_);
    if (isFirst) Raise(RunTime::TypeMismatch, "can't be represented", kRecordsetSource);
    return value;
  }

  double time_;
  std::string lacks_;
};

}  // namespace

SiblingAnswer CodedSiblings::Ask(const SiblingCall& call) {
  const auto isDay = [](const Variant& value) {
    const auto* date = value.As<Date>();
    return date == nullptr || date->Serial() == date->WithoutTime().Serial();
  };
  EXPECT_TRUE(std::ranges::all_of(call.values, isDay)) << call.Name();
  EXPECT_TRUE(!call.query || std::ranges::all_of(call.query->Values(), isDay)) << call.Name();
  if (call.member != Member::Create && failAt > 0 && --failAt == 0) {
    throw RunTimeError(-2147467259, "Società", "guasto");
  }
  if (call.member == Member::KalStatus_TranslateFromDict) {
    return {"{" + CStr(call.values[0]) + "}"};
  }
  if (call.member != Member::KalStatus_GetMessage) {
    SiblingAnswer answer = inner_.Ask(call);
    if (ofAnotherMake) answer.value = WithTime(answer.value, kMorning);
    if (ofAnotherMake && answer.rows) {
      answer.rows = std::make_shared<ForeignRecordset>(answer.rows, kMorning);
    }
    return answer;
  }
  std::string shown = CStr(call.values[0]);
  const std::string text = CStr(inner_.Ask(call).value);
  // As many placeholders as the real text has.
  for (std::size_t at = text.find("%s"); at != std::string::npos; at = text.find("%s", at + 2)) {
    shown += "(%s)";
  }
  return {shown};
}

std::string Replaced(std::string text, std::string_view from, std::string_view to) {
  for (std::size_t at = text.find(from); at != std::string::npos;
       at = text.find(from, at + to.size())) {
    text.replace(at, from.size(), to);
  }
  return text;
}

std::string EntryText(std::string_view kind, std::string_view changes) {
  nlohmann::ordered_json entry =
      nlohmann::ordered_json::parse(kind == "giroconto" ? kGiroconto : kAcquisto);
  if (kind == "vendita" || kind == "corrispettivi") {
    ChangeAll(entry, kVendita);
  }
  if (kind == "corrispettivi") {
    ChangeAll(entry, kCorrispettivi);
  }
  ChangeAll(entry, changes);
  return entry.dump();
}

Checked::Checked(Siblings& siblings, const std::string& entryText) : checker(siblings) {
  auto json = nlohmann::ordered_json::parse(entryText);
  lacks = json.value("lacks", "");
  json.erase("lacks");
  host::EntryReading reading = host::ReadEntry(json.dump());
  if (!reading.entry) {
    throw std::invalid_argument(reading.error.english + " in " + entryText);
  }
  entry = *std::move(reading.entry);
  lacks.empty() ? Hand() : HandAsAnotherHost();
  checker.IsParcella(entry.isParcella);
  checker.IsFromCard(entry.isFromCard);
  checker.TmpTableScadenze(entry.tmpTableScadenze);
}

void Checked::Hand(const Wrap& wrap) {
  sets.clear();
  for (const host::EntrySet& set : host::EntrySets()) {
    (checker.*set.assign)(nullptr);
  }
  for (const host::SuppliedSet& supplied : entry.sets) {
    sets.push_back(std::make_shared<MemoryRecordset>(supplied.rows, supplied.editMode));
    (checker.*supplied.set->assign)(wrap ? wrap(sets.back()) : RecordsetRef(sets.back()));
  }
}

void Checked::HandAsAnotherHost() {
  for (Variant& argument : entry.arguments) argument = WithTime(argument, kEvening);
  Hand([this](const RecordsetRef& set) {
    return RecordsetRef(std::make_shared<ForeignRecordset>(set, kEvening, lacks));
  });
}

std::string Checked::Run() {
  std::string answer;
  try {
    const host::OperationResult result = entry.operation->call(checker, entry.arguments);
    answer = std::holds_alternative<bool>(result) ? (std::get<bool>(result) ? "True" : "False")
                                                  : std::to_string(std::get<std::int32_t>(result));
  } catch (const RunTimeError& error) {
    std::string tags =
        error.Source().substr(std::min(error.Source().find("\r\n"), error.Source().size()));
    for (const std::string module : {"KalCOGCheck.", "modDataBaseUtility.", "KalScadenze."}) {
      const std::string shown = module == "KalScadenze." ? module : "";
      tags = Replaced(tags, "\r\nKal_COGCheck." + module, " < " + shown);
    }
    const std::string own = " < " + std::string(TagOf(entry.operation->name));
    EXPECT_TRUE(tags.ends_with(own)) << tags;
    tags.erase(tags.size() - std::min(own.size(), tags.size()));
    answer = "Error " + std::to_string(error.Number()) + " in " +
             (tags.empty() ? "itself" : tags.substr(3));
  }
  const std::string findings = Findings();
  return answer == "False" && !findings.empty() ? findings.substr(1) : answer + findings;
}

std::string Checked::Findings() const {
  const std::pair<const char*, std::string> strings[] = {
      {" Err: ", checker.ErrString()},
      {" Warn: ", checker.WarnString()},
      {" Modifica: ", checker.WarnStringModifica()},
      {" Prot: ", checker.WarnProtocolloString()},
      {" Dup: ", checker.WarnDuplicatoDocString()},
      {" Group: ", checker.WarnInfragruppoString()}};
  std::string shown;
  for (const auto& [name, text] : strings) {
    shown += text.empty() ? "" : name + Replaced(text, "\r\n", " / ");
  }
  return shown;
}

std::string Checked::State(char letter) const {
  if (letter == 'P') return CStr(checker.ImportoPlafond());
  if (letter == 'X') {
    const std::string closes = checker.ChiusuraRateInSospensione() ? "closes" : "";
    const std::string reopens = checker.RiaperturaRateInSospensione() ? "reopens" : "";
    return closes.empty() && reopens.empty() ? "none" : closes + reopens;
  }
  for (std::size_t i = 0; i < sets.size(); ++i) {
    if (entry.sets[i].set->name == SetName(letter)) {
      const std::size_t position = sets[i]->Position();
      const std::string& filter = sets[i]->FilterText();
      return (position == 0 ? std::string("end") : std::to_string(position)) +
             (filter.empty() ? "" : " where " + filter);
    }
  }
  return "Nothing";
}

std::vector<std::vector<std::string>> TableRows(std::string_view table) {
  static const std::regex kRowEnd(R"(\n(?! ))");
  static const std::regex kFieldEnd(R"(\s*\|\s*)");
  static const std::regex kLineEnd(R"(\n\s+)");
  const std::string text(table);
  std::vector<std::vector<std::string>> rows;
  for (std::sregex_token_iterator row(text.begin(), text.end(), kRowEnd, -1), end; row != end;
       ++row) {
    const std::string line = std::regex_replace(row->str(), kLineEnd, " ");
    if (!line.empty()) {
      rows.emplace_back(std::sregex_token_iterator(line.begin(), line.end(), kFieldEnd, -1), end);
    }
  }
  return rows;
}

std::string Written(std::string text) {
  static constexpr std::pair<const char*, const char*> kMessages[] = {
      {"<effetti>",
       "Il documento in Split Payment ha delle rate di tipo Effetto. Per poterle gestire nelle "
       "distinte effetti occorre utilizzare una forma di pagamento con la prima rata di sola iva"},
      {"<sezionale>",
       "Il Sezionale Vendita indicato non è idoneo alla fatturazione per il cliente split payment"
       " / "},
      {"<cliente>",
       "Il Sezionale Vendita indicato è un sezionale Split Payment, ma il cliente non ha la "
       "gestione abilitata / "},
      {"<plafond>",
       "L'importo plafond residuo per la dichiarazione d'intenti selezionata è stato superato"},
      {"<vuota>", "La data del documento è vuota ma esiste una dichiarazione d'intento inserita"},
      {"<validità>",
       "La validità della dichiarazione d'intento selezionata differisce dalla data del documento"},
      {"<aliquote>",
       "Alcune aliquote sono diverse rispetto all'aliquota indicata in dichiarazione d'intenti"},
      {"<generata>",
       "Impossibile modificare il documento in quanto è stato generato a seguito di uno una prima "
       "nota in split payment"},
      {"<sdi>", "{Attenzione! Si sta tentando di modificare un documento già trasmesso allo SDI}"},
      {"<xml>",
       "{Attenzione! Per il documento è già stato generato un file XML. Per evitare incongruenze "
       "si consiglia, una volta effettuata la modifica, di rigenerare il file}"},
  };
  for (const auto& [name, full] : kMessages) {
    text = Replaced(std::move(text), name, full);
  }
  return text;
}

records::Conversation WrittenAndRead(const records::Conversation& conversation) {
  std::string line;
  host::AppendRecording(line, "{}", conversation, "{}");
  host::RecordingReading reading = host::ReadRecording(line);
  if (!reading.recording) throw std::invalid_argument(reading.error + " in " + line);
  return std::move(reading.recording->conversation);
}

namespace {

struct TableCase {
  std::string name;
  std::string kind;
  std::string changes;
  std::string sql;
  std::string expected;
};

// What the entry comes to over these siblings, with what the row asks of the record sets.
std::string Answered(Siblings& siblings, const TableCase& row, bool anotherHost) {
  Checked checked(siblings, EntryText(row.kind, row.changes));
  if (anotherHost) checked.HandAsAnotherHost();
  std::string shown = checked.Run();
  for (std::size_t at = row.expected.find(" @ "); at != std::string::npos;
       at = row.expected.find(", ", at + 3)) {
    const std::size_t set = row.expected.find_first_not_of(" @,", at);
    shown += row.expected.substr(at, set - at + 2) + checked.State(row.expected[set]);
  }
  return shown;
}

// Adds the case to the file of recordings that was asked for, as it is and with a question that
// fails, another one from case to case. A True that the host alone refuses, since the failure took
// a text, is left out: the component itself answers it.
void Record(CodedSiblings& siblings, const TableCase& row) {
  static std::size_t cases = 0;
  constexpr std::size_t kQuestions = 40;
  constexpr auto kInternalError = static_cast<std::int32_t>(RunTime::InternalError);
  const char* const file = std::getenv("KAL_RECORD_TABLES");
  if (file == nullptr) return;
  const std::string entry = EntryText(row.kind, row.changes);
  for (const std::size_t failing : {std::size_t{0}, 1 + cases++ % kQuestions}) {
    siblings.failAt = failing;
    records::Conversation conversation;
    records::Recorder recorder(siblings, conversation);
    const host::Outcome outcome = host::DecideAgain(entry, recorder);
    std::string line;
    host::AppendRecording(line, entry, conversation, ToJson(outcome));
    const bool refused = outcome.error && outcome.error->Number() == kInternalError;
    if (outcome.isDecided && !refused) {
      std::ofstream(file, std::ios::app | std::ios::binary) << line;
    }
  }
  siblings.failAt = 0;
}

// The answer is the same again over what was recorded of it.
void RunTableCase(const TableCase& row) {
  SCOPED_TRACE(row.name);
  static const std::regex kLost(R"((\w+)!)");
  OpenedCompany books(std::regex_replace(row.sql, kLost, "ALTER TABLE $1 RENAME TO Perduta"));
  Record(books.siblings, row);
  for (const bool anotherHost : {false, true}) {
    SCOPED_TRACE(anotherHost ? "from another host" : "");
    books.siblings.ofAnotherMake = anotherHost;
    records::Conversation conversation;
    records::Recorder recorder(books.siblings, conversation);
    EXPECT_EQ(Answered(recorder, row, anotherHost), row.expected);
    const records::Conversation read = WrittenAndRead(conversation);
    records::Player player(read);
    EXPECT_EQ(Answered(player, row, anotherHost), row.expected) << "played back";
    EXPECT_EQ(player.NotRecorded(), std::vector<std::string>());
  }
}

}  // namespace

HostRun RunHost(const std::vector<std::string>& arguments, const std::string& input) {
  std::vector<const char*> given = {"kalcogcheck"};
  for (const std::string& argument : arguments) given.push_back(argument.c_str());
  std::istringstream in(input);
  std::ostringstream out;
  std::ostringstream err;
  const int status = host::Run(static_cast<int>(given.size()), given.data(), in, out, err);
  return {status, out.str(), err.str()};
}

void RunTable(std::string_view table) {
  TableCase heading;
  std::vector<std::pair<std::string, std::string>> names = {
      {"<set>", "INSERT INTO STDParametriAzienda VALUES"}, {"<missed>", "Error -2147217865 in"}};
  for (std::vector<std::string>& row : TableRows(table)) {
    for (std::string& field : row) {
      for (const auto& [name, full] : names) {
        field = Replaced(std::move(field), name, full);
      }
    }
    const std::size_t fields = row.size();
    if (row[0].starts_with('[')) {
      heading = {"", row[0].substr(1, row[0].size() - 2), fields > 1 ? row[1] + ";" : "",
                 fields > 2 ? row[2] + ";" : "", ""};
    } else if (const std::size_t sign = row[0].find("> = "); sign != std::string::npos) {
      names.emplace_back(row[0].substr(0, sign + 1), row[0].substr(sign + 4));
    } else {
      RunTableCase({row[0], heading.kind, heading.changes + row.at(1),
                    heading.sql + (fields == 4 ? row[2] : ""), Written(row.back())});
    }
  }
}

}  // namespace kal::test
