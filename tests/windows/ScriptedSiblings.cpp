#include "tests/windows/ScriptedSiblings.h"

#include <algorithm>

#include "platform/RunTimeError.h"
#include "server/DispatchQuery.h"
#include "tests/windows/Doubles.h"

namespace kal::test {
namespace {

// What is not listed is answered by False, and by no row.
// clang-format off
const std::vector<std::pair<std::string, std::string>> kAnswers = {
    {"Setting GestisciPNInfragruppo", "b=1"},
    {"Setting BloccoInviatoSDI", "b=1"},
    {"Setting CodDivisaBase", "t=EUR"},
    {"Setting", "t"},
    {"SelectFiscalYear", "b=1"},
    {"FiscalYearField CodEsercizio", "i=2024"},
    {"Expression 4 DataDocumento", "t=Year(DataDocumento)"},
    {"Expression 4 DataRegistrazione", "t=Year(DataRegistrazione)"},
    {"Execute COGNroChiusurePrimaNota 300", "l=2"},
    {"Execute", "l=0"},
    {"AdmitsFiscalData 22", "i=1"},
    {"Open COGCausaliContabili FTA", "CodCausale:t=FTA Operazione:i=1 TipoRegIva:i=1 SegnoIva:i=1 TipoParcella:i=0 IdTipoMovimento:l=0 TipoVentilazione:b=0 CassaCorrispettivi:b=0 RegistrazioneLibera:b=0 NotaVariazione:b=0"},
    {"Open STDPianoDeiConti 7001", "Infragruppo:b=1"},
    {"Open STDPianoDeiConti", "Infragruppo:b=0"},
    {"Open STDIva", "CodIva:t=22 CodIvaAutoFtReverse:t PercIvaACosto:f=0 PercIndetraibile:f=0"},
    {"Open COGNumerazioniContabili", "CodEsercizio:i=2024 Sezionale:i=1"},
    {"Open COGNumerazioniIva", "IdNumerazione:l=1 CodAttivita:t SplitPayment:b=0"},
    {"Open COGParametriIva", "Anno:i=2024 IvaTrimestrale:b=0"},
    {"Open STDEsercizi", "CodEsercizio:i=2024 DataInizio:d=2024-01-01 DataFine:d=2024-12-31"},
};
// clang-format on

const std::map<std::string, std::vector<std::string>, std::less<>> kEntrySets = {
    {"T",
     {"IdPrimaNota:l=100 IdLink:l IdDoc:l IdAnagrafica:l=20 IdDichiarazione:l Protocollo:l=10 "
      "TipoDocumento:i TipoRegIva:i=1 SezionaleIva:i=1 SegnoIva:i StatoDocPA:i TipoCliFor:i=2 "
      "DataRegistrazione:d=2024-03-15 DataDocumento:d=2024-03-10 DataCompetenza:d=2024-03-15 "
      "DataIva:d=2024-03-15 DataPlafond:d NumeroDocumento:t=F1 CodCausale:t=FTA CodPagamento:t "
      "CodAttivita:t CodProprieta:t CodDivisa:t Partita:t TotImponibile:m TotImposta:m "
      "TotDocumento:m TotImponibileVB:m=100 TotImpostaVB:m=22 TotDocumentoVB:m=122 Fixing:f "
      "Provvisoria:b=0 InSospensione:b Intra:b NoIntraBis:b ReverseCharge:b "
      "NonConsiderareAncheSeSopraLaSoglia:b FiscalitaBL:b Rettifica:b Infragruppo:b"}},
    {"I",
     {"NumeroRiga:l=1 CodIva:t=22 Imponibile:m=100 ImponibileVB:m=100 Imposta:m=22 ImpostaVB:m=22 "
      "TotaleVB:m=122 Indetraibile:m IndetraibileVB:m ReverseCharge:b"}},
    {"C",
     {"NumeroRiga:l=1 CodConto:t=3001 TipoRiga:i=1 ImportoDare:m=0 ImportoDareVB:m=0 "
      "ImportoAvere:m=122 ImportoAvereVB:m=122 IdCliFor:l=20 TipoCliFor:i=2 IdScadenza:l=1 "
      "CodDivisa:t=EUR",
      "NumeroRiga=2 CodConto=4001 TipoRiga=2 ImportoDare=100 ImportoDareVB=100 ImportoAvere=0 "
      "ImportoAvereVB=0 CodDivisa=EUR",
      "NumeroRiga=3 CodConto=6001 TipoRiga=3 ImportoDare=22 ImportoDareVB=22 ImportoAvere=0 "
      "ImportoAvereVB=0 CodDivisa=EUR"}},
    {"S",
     {"IdScadenza:l=1 NrRata:i=1 TipoRata:i=0 DataScadenza:d=2024-04-30 ImportoDare:m=0 "
      "ImportoDareVB:m=0 ImportoAvere:m=61 ImportoAvereVB:m=61 IdTipologiaPagamento:l=1 "
      "IdBancaCliente:l LinkApertura:l RataApertura:i",
      "IdScadenza=1 NrRata=2 TipoRata=0 DataScadenza=2024-05-31 ImportoDare=0 ImportoDareVB=0 "
      "ImportoAvere=61 ImportoAvereVB=61 IdTipologiaPagamento=1"}},
    {"F",
     {"BeniImponibili:m=99.9999 ServiziImponibili:m BeniNonImponibili:m ServiziNonImponibili:m "
      "BeniServiziEsenti:m BeniNonSoggettiIva:m ServiziNonSoggettiIva:m ImpostaBeniImponibili:m=22 "
      "ImpostaServiziImponibili:m"}},
    {"R", {"CodContoContropartita:t=10"}},
    {"K",
     {"CodCausale:t=FTA Operazione:i=1 TipoRegIva:i=1 SegnoIva:i=1 TipoParcella:i=0 "
      "IdTipoMovimento:l=0 TipoVentilazione:b=0 CassaCorrispettivi:b=0 RegistrazioneLibera:b=0 "
      "NotaVariazione:b=0"}},
};

const std::map<char, std::string> kSetNames = {
    {'T', "RsTesta"},   {'I', "RsRIva"},        {'C', "RsRCont"},   {'S', "RsScadenze"},
    {'K', "RsCausale"}, {'F', "RsFiscalitaBL"}, {'R', "RsRisconti"}};

struct CellType {
  DataType type;
  Variant (*make)(const std::string& text);
};
const std::map<char, CellType> kTypes = {
    {'i', {DataType::SmallInt, [](const std::string& text) { return Variant(CInt(text)); }}},
    {'l', {DataType::Integer, [](const std::string& text) { return Variant(CLng(text)); }}},
    {'m', {DataType::Currency, [](const std::string& text) { return Variant(CCur(text)); }}},
    {'d', {DataType::Date, [](const std::string& text) { return Variant(CDate(text)); }}},
    {'b', {DataType::Boolean, [](const std::string& text) { return Variant(text == "1"); }}},
    {'f', {DataType::Double, [](const std::string& text) { return Variant(CDbl(text)); }}},
    {'t', {DataType::VarWChar, [](const std::string& text) { return Variant(text); }}}};

// The record set that the totals component was given.
struct Attached final : SiblingState {
  RecordsetRef set;
};

}  // namespace

std::vector<std::string> SplitText(std::string_view text, std::string_view separator) {
  std::vector<std::string> parts;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find(separator), text.size());
    parts.emplace_back(text.substr(0, end));
    text.remove_prefix(std::min(end + separator.size(), text.size()));
  }
  return parts;
}

std::shared_ptr<RowTable> MakeTable(const std::vector<std::string>& rows) {
  std::vector<Column> columns;
  std::vector<CellType> types;
  for (const std::string& cell : SplitText(rows.front(), " ")) {
    if (const std::size_t colon = cell.find(':'); colon != cell.npos) {
      types.push_back(kTypes.at(cell.at(colon + 1)));
      columns.push_back({cell.substr(0, colon), types.back().type});
    }
  }
  auto table = std::make_shared<RowTable>(columns);
  for (const std::string& row : rows) {
    std::vector<Variant> cells(columns.size(), Null);
    for (const std::string& cell : SplitText(row, " ")) {
      const auto place =
          static_cast<std::size_t>(table->FindColumn(cell.substr(0, cell.find_first_of(":="))));
      const std::size_t mark = cell.find('=');
      cells.at(place) =
          mark == cell.npos ? Variant(Null) : types[place].make(cell.substr(mark + 1));
    }
    table->AddRow(std::move(cells));
  }
  return table;
}

ScriptedSiblings::ScriptedSiblings(std::string_view further) {
  for (const std::string& one : SplitText(further, ";")) {
    const std::vector<std::string> parts = SplitText(one, " -> ");
    answers_.emplace_back(parts.at(0), parts.at(1));
  }
  answers_.insert(answers_.end(), kAnswers.begin(), kAnswers.end());
}

SiblingAnswer ScriptedSiblings::Ask(const SiblingCall& call) {
  if (call.member == Member::Create) {
    return {};
  }
  std::vector<Variant> values(call.values.begin(), call.values.end());
  if (call.query != nullptr) {
    values = ToldTo(DescribeQuery(*call.query).Object());
  }
  constexpr std::size_t kMostQuestions = 10000;  // hosts may play thousands of entries
  if (questions_.size() == kMostQuestions) {
    questions_.clear();
  }
  std::string question(call.Name());
  questions_.push_back(question);
  for (const Variant& value : values) {
    question += " " + (value.IsNull() ? "" : CStr(value));
    questions_.back() += " " + Shown(value);
  }
  if (failAt_ > 0 && --failAt_ == 0) {
    throw RunTimeError(-2147467259, "Società", "guasto n. " + std::to_string(questions_.size()));
  }
  switch (call.member) {
    case Member::KalStatus_GetMessage:
      return {.value = "è" + CStr(values[0])};  // a letter that no single byte holds
    case Member::KalStatus_TranslateFromDict:
      return {.value = "<" + CStr(values[0]) + ">"};
    case Member::Totals_Recordset: {
      auto attached = std::make_unique<Attached>();
      attached->set = call.set;
      call.state = std::move(attached);
      return {};
    }
    case Member::Totals_Total: {
      const Variant value =
          static_cast<Attached&>(*call.state).set->Fields(CStr(values[0])).Value();
      return {.value = value.IsNull() ? Variant(Currency()) : value};
    }
    default:
      break;
  }
  if (call.Kind() == CallKind::Do || call.Kind() == CallKind::Put) {
    return {};
  }
  const auto answer = std::ranges::find_if(answers_, [&question](const auto& one) {
    return (question + " ").starts_with(one.first + " ");
  });
  const bool found = answer != answers_.end();
  if (call.Kind() == CallKind::Open) {
    const auto rows =
        found ? MakeTable({answer->second}) : std::make_shared<RowTable>(std::vector<Column>());
    return {.rows = std::make_shared<MemoryRecordset>(rows)};
  }
  return {.value = found ? MakeTable({"Answer:" + answer->second})->Cell(0, 0) : Variant(false)};
}

EntrySets MakeEntry(std::string_view changes) {
  auto rows = kEntrySets;
  std::map<std::string, EditMode, std::less<>> modes = {{"T", EditMode::Add}};
  std::vector<std::string> handed = {"T", "I", "C", "S"};
  for (const std::string& change : SplitText(changes, ";")) {
    const std::string set = change.substr(0, 1);
    if (const std::size_t dot = change.find('.'); dot != change.npos) {
      const std::size_t row = dot == 1 ? 1 : std::stoul(change.substr(1, dot - 1));
      rows.at(set).at(row - 1).append(" ").append(change, dot + 1);
    } else if (change.at(1) == '+') {
      handed.push_back(set);
    } else if (change.at(1) == '!') {
      std::erase(handed, set);
    } else {
      modes[set] = static_cast<EditMode>(std::stoi(change.substr(2)));
    }
  }
  EntrySets sets;
  for (const std::string& set : handed) {
    sets[kSetNames.at(set[0])] =
        std::make_shared<MemoryRecordset>(MakeTable(rows[set]), modes[set]);
  }
  return sets;
}

}  // namespace kal::test
