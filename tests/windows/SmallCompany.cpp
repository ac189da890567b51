#include "tests/windows/SmallCompany.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

#include "platform/RunTimeError.h"

namespace kal::test {
namespace {

const std::string kHeaderColumns =
    "IdPrimaNota:l IdLink:l IdDoc:l IdAnagrafica:l IdDichiarazione:l Protocollo:l "
    "TipoDocumento:i TipoRegIva:i SezionaleIva:i SegnoIva:i StatoDocPA:i TipoCliFor:i "
    "DataRegistrazione:d DataDocumento:d DataCompetenza:d DataIva:d DataPlafond:d "
    "NumeroDocumento:t CodCausale:t CodPagamento:t CodAttivita:t CodProprieta:t CodDivisa:t "
    "Partita:t TotImponibile:m TotImposta:m TotDocumento:m TotImponibileVB:m TotImpostaVB:m "
    "TotDocumentoVB:m Fixing:f Provvisoria:b InSospensione:b Intra:b NoIntraBis:b "
    "ReverseCharge:b NonConsiderareAncheSeSopraLaSoglia:b FiscalitaBL:b Rettifica:b "
    "Infragruppo:b";

const std::map<std::string, TableText, std::less<>> kTables = {
    {"STDParametriAzienda",
     {"Nome:t Valore:t Flag:b",
      {"Nome=AttivitaSeparateIva Flag=0", "Nome=GestisciPNInfragruppo Flag=1",
       "Nome=BloccoInviatoSDI Flag=1", "Nome=GirocontoFatturaSplitPayment Flag=1",
       "Nome=AziendaSplitPayment Flag=0", "Nome=CodDivisaBase Valore=EUR",
       "Nome=CodIvaBolli Valore=BOL", "Nome=SezionaleAutofatture Valore=9"}}},
    {"STDEsercizi",
     {"CodEsercizio:i DataInizio:d DataFine:d EsercizioChiuso:b ContabilitaChiusa:b",
      {"CodEsercizio=2023 DataInizio=2023-01-01 DataFine=2023-12-31 EsercizioChiuso=1 "
       "ContabilitaChiusa=1",
       "CodEsercizio=2024 DataInizio=2024-01-01 DataFine=2024-12-31 EsercizioChiuso=0 "
       "ContabilitaChiusa=0"}}},
    {"STDPianoDeiConti",
     {"CodConto:t TipoConto:i Infragruppo:b",
      {"CodConto=10 TipoConto=1 Infragruppo=0", "CodConto=1001 TipoConto=0 Infragruppo=0",
       "CodConto=3001 TipoConto=0 Infragruppo=0", "CodConto=4001 TipoConto=0 Infragruppo=0",
       "CodConto=6001 TipoConto=0 Infragruppo=0", "CodConto=7001 TipoConto=0 Infragruppo=1"}}},
    {"STDIva",
     {"CodIva:t CodIvaAutoFtReverse:t PercIvaACosto:f PercIndetraibile:f AmmessaFiscalitaBL:b "
      "TipoIntra:i",
      {"CodIva=22 PercIvaACosto=0 PercIndetraibile=0 AmmessaFiscalitaBL=1 TipoIntra=0",
       "CodIva=IC CodIvaAutoFtReverse=22 PercIvaACosto=0 PercIndetraibile=0 AmmessaFiscalitaBL=0 "
       "TipoIntra=1"}}},
    {"COGCausaliContabili",
     {"CodCausale:t Operazione:i TipoRegIva:i SegnoIva:i TipoParcella:i IdTipoMovimento:l "
      "TipoVentilazione:b CassaCorrispettivi:b RegistrazioneLibera:b NotaVariazione:b",
      {"CodCausale=FTA Operazione=1 TipoRegIva=1 SegnoIva=1 TipoParcella=0 IdTipoMovimento=0 "
       "TipoVentilazione=0 CassaCorrispettivi=0 RegistrazioneLibera=0 NotaVariazione=0",
       "CodCausale=GEN Operazione=0 TipoRegIva=0 SegnoIva=1 TipoParcella=0 IdTipoMovimento=0 "
       "TipoVentilazione=0 CassaCorrispettivi=0 RegistrazioneLibera=0 NotaVariazione=0"}}},
    {"COGNumerazioniIva",
     {"IdNumerazione:l IdSezAutofatture:l Anno:i TipoRegIva:i SezionaleIva:i CodAttivita:t "
      "SplitPayment:b UsaSezAutoftSpecifico:b",
      {"IdNumerazione=1 Anno=2024 TipoRegIva=1 SezionaleIva=1 SplitPayment=0 "
       "UsaSezAutoftSpecifico=0",
       "IdNumerazione=2 Anno=2024 TipoRegIva=2 SezionaleIva=1 SplitPayment=0"}}},
    {"COGNumerazioniContabili", {"CodEsercizio:i Sezionale:i", {"CodEsercizio=2024 Sezionale=1"}}},
    {"COGParametriIva", {"Anno:i IvaTrimestrale:b", {"Anno=2024 IvaTrimestrale=0"}}},
    {"COGIvaLiquidazioni", {"Anno:i Periodo:i ValoriDefinitivi:b", {}}},
    {"STDTipologiePagamento",
     {"IdTipologiaPagamento:l Effetto:b",
      {"IdTipologiaPagamento=1 Effetto=0", "IdTipologiaPagamento=2 Effetto=1"}}},
    {"COGBollati",
     {"IdBollato:l Anno:i Mese:i GiorContStampato:b RiepilogoStampato:b",
      {"IdBollato=5 Anno=2024 Mese=1 GiorContStampato=1 RiepilogoStampato=0"}}},
    {"COGBollatiIva",
     {"IdBollato:l SezionaleIva:i AcqStampati:b VenStampati:b CorrStampati:b",
      {"IdBollato=5 SezionaleIva=1 AcqStampati=1 VenStampati=0 CorrStampati=0"}}},
    {"STDAnagraficaFornitori", {"IdAnagrafica:l SoggettoSplitPayment:b", {}}},
    {"COGPrimeNoteTeste",
     {kHeaderColumns,
      {"IdPrimaNota=7 TipoDocumento=13 IdDoc=31 TipoRegIva=1 SezionaleIva=1 Protocollo=3 "
       "DataRegistrazione=2024-02-10 DataDocumento=2024-02-01 DataIva=2024-03-10 "
       "NumeroDocumento=A/3 IdAnagrafica=20 DataCompetenza=2024-02-10 Provvisoria=0"}}},
    {"COGScadenze", {"IdScadenza:l NrRata:i TipoRata:i IdDistinta:l", {}}},
    {"COGPrimeNoteRCont", {"IdPrimaNota:l IdScadenza:l", {}}},
};

const std::map<std::string, TableText, std::less<>> kEntrySets = {
    {"T",
     {kHeaderColumns,
      {"IdPrimaNota=100 CodCausale=FTA DataRegistrazione=2024-03-15 DataDocumento=2024-03-10 "
       "DataCompetenza=2024-03-15 DataIva=2024-03-15 NumeroDocumento=F1 Protocollo=10 "
       "TipoRegIva=1 SezionaleIva=1 IdAnagrafica=20 TipoCliFor=2 Provvisoria=0 "
       "TotImponibileVB=100 TotImpostaVB=22 TotDocumentoVB=122"}}},
    {"I",
     {"NumeroRiga:l CodIva:t Imponibile:m ImponibileVB:m Imposta:m ImpostaVB:m TotaleVB:m "
      "Indetraibile:m IndetraibileVB:m ReverseCharge:b",
      {"NumeroRiga=1 CodIva=22 Imponibile=100 ImponibileVB=100 Imposta=22 ImpostaVB=22 "
       "TotaleVB=122"}}},
    {"C",
     {"NumeroRiga:l CodConto:t TipoRiga:i ImportoDare:m ImportoDareVB:m ImportoAvere:m "
      "ImportoAvereVB:m IdCliFor:l TipoCliFor:i IdScadenza:l CodDivisa:t",
      {"NumeroRiga=1 CodConto=3001 TipoRiga=1 ImportoDare=0 ImportoDareVB=0 ImportoAvere=122 "
       "ImportoAvereVB=122 IdCliFor=20 TipoCliFor=2 IdScadenza=1 CodDivisa=EUR",
       "NumeroRiga=2 CodConto=4001 TipoRiga=2 ImportoDare=100 ImportoDareVB=100 ImportoAvere=0 "
       "ImportoAvereVB=0 CodDivisa=EUR",
       "NumeroRiga=3 CodConto=6001 TipoRiga=3 ImportoDare=22 ImportoDareVB=22 ImportoAvere=0 "
       "ImportoAvereVB=0 CodDivisa=EUR"}}},
    {"S",
     {"IdScadenza:l NrRata:i TipoRata:i DataScadenza:d ImportoDare:m ImportoDareVB:m "
      "ImportoAvere:m ImportoAvereVB:m IdTipologiaPagamento:l IdBancaCliente:l LinkApertura:l "
      "RataApertura:i",
      {"IdScadenza=1 NrRata=1 TipoRata=0 DataScadenza=2024-04-30 ImportoDare=0 ImportoDareVB=0 "
       "ImportoAvere=61 ImportoAvereVB=61 IdTipologiaPagamento=1",
       "IdScadenza=1 NrRata=2 TipoRata=0 DataScadenza=2024-05-31 ImportoDare=0 ImportoDareVB=0 "
       "ImportoAvere=61 ImportoAvereVB=61 IdTipologiaPagamento=1"}}},
    {"F",
     {"BeniImponibili:m ServiziImponibili:m BeniNonImponibili:m ServiziNonImponibili:m "
      "BeniServiziEsenti:m BeniNonSoggettiIva:m ServiziNonSoggettiIva:m ImpostaBeniImponibili:m "
      "ImpostaServiziImponibili:m",
      {"BeniImponibili=99.9999 ImpostaBeniImponibili=22"}}},
    {"R", {"CodContoContropartita:t", {"CodContoContropartita=10"}}},
    {"K", kTables.at("COGCausaliContabili")},
};

const std::map<std::string, std::string, std::less<>> kSetNames = {
    {"T", "RsTesta"},   {"I", "RsRIva"},        {"C", "RsRCont"},   {"S", "RsScadenze"},
    {"K", "RsCausale"}, {"F", "RsFiscalitaBL"}, {"R", "RsRisconti"}};

DataType TypeOf(char letter) {
  switch (letter) {
    case 'i':
      return DataType::SmallInt;
    case 'l':
      return DataType::Integer;
    case 'm':
      return DataType::Currency;
    case 'd':
      return DataType::Date;
    case 'b':
      return DataType::Boolean;
    case 'f':
      return DataType::Double;
    default:
      return DataType::VarWChar;
  }
}

std::string LastPart(std::string_view name) {
  return std::string(name.substr(name.find('.') == name.npos ? 0 : name.find('.') + 1));
}

std::string FirstWord(std::string_view text) { return std::string(text.substr(0, text.find(' '))); }

bool Holds(const Variant& cell, const Selection::Condition& condition) {
  const std::string& operation = condition.operation;
  const Variant& value = condition.value;
  return static_cast<bool>(operation == "="    ? cell == value
                           : operation == "<>" ? cell != value
                           : operation == "<"  ? cell < value
                           : operation == "<=" ? cell <= value
                           : operation == ">"  ? cell > value
                                               : cell >= value);
}

// A condition on a column that the table does not have belongs to another one, and holds.
bool Matches(const RowTable& table, std::size_t row, const Selection::Condition& condition) {
  std::string column = LastPart(condition.column);
  const bool ofYear = column.starts_with("Year(");
  if (ofYear) {
    column = column.substr(5, column.size() - 6);
  }
  const auto place = table.FindColumn(column);
  if (place < 0) {
    return true;
  }
  const Variant& cell = table.Cell(row, static_cast<std::size_t>(place));
  return ofYear ? CStr(Year(cell)) == CStr(condition.value) : Holds(cell, condition);
}

bool Matches(const RowTable& table, std::size_t row, const Selection& selection) {
  const auto all = [&](const std::vector<Selection::Condition>& conditions) {
    return std::ranges::all_of(
        conditions, [&](const auto& condition) { return Matches(table, row, condition); });
  };
  return all(selection.conditions) &&
         (selection.alternatives.empty() || std::ranges::any_of(selection.alternatives, all));
}

// Each sibling asks before it answers, under the name and with the values of its members.
struct Status final : KalStatus {
  explicit Status(SmallCompany& aCompany) : company(aCompany) {}
  SmallCompany& company;

  std::string GetMessage(std::int32_t code) override {
    company.Ask("GetMessage", {code});
    return "è" + std::to_string(code);  // a letter that no single byte holds
  }
  std::string TranslateFromDict(std::string_view text1, std::string_view text2,
                                std::string_view text3, std::string_view text4,
                                std::string_view text5, std::string_view text6) override {
    company.Ask("TranslateFromDict", {text1, text2, text3, text4, text5, text6});
    return "<" + std::string(text1) + ">";
  }
};

struct Settings final : CompanySettings {
  explicit Settings(SmallCompany& aCompany) : company(aCompany) {}
  SmallCompany& company;
  RecordsetRef year;

  Variant Setting(std::string_view name) override {
    company.Ask("Setting", {name});
    const Variant flag = company.Value("STDParametriAzienda", "Nome", name, "Flag", Null);
    return flag.IsNull() ? company.Value("STDParametriAzienda", "Nome", name, "Valore", Null)
                         : flag;
  }
  bool SelectFiscalYear(const Variant& date) override {
    company.Ask("SelectFiscalYear", {date});
    if (!IsDate(date)) {
      return false;
    }
    year = company.Rows("STDEsercizi", "CodEsercizio", Year(date));
    return !year->Eof();
  }
  Variant FiscalYearField(std::string_view name) override {
    company.Ask("FiscalYearField", {name});
    return year->Fields(name).Value();
  }
};

struct Anagrafiche final : KalAnagrafiche {
  explicit Anagrafiche(SmallCompany& aCompany) : company(aCompany) {}
  SmallCompany& company;

  void IDAnagrafica(std::int32_t id) override { company.Ask("IDAnagrafica", {id}); }
  void TipoAnagrafica(std::int16_t type) override { company.Ask("TipoAnagrafica", {type}); }
  void Init() override { company.Ask("Init"); }
  Variant InfoAnagrafica(std::string_view name) override {
    company.Ask("InfoAnagrafica", {name});
    return company.Value("STDAnagraficaFornitori", "IdAnagrafica", 20, name, false);
  }
};

struct Codes final : VatCodes {
  explicit Codes(SmallCompany& aCompany) : company(aCompany) {}
  SmallCompany& company;

  bool AdmitsFiscalData(std::string_view code) override {
    company.Ask("AdmitsFiscalData", {code});
    return CBool(company.Value("STDIva", "CodIva", code, "AmmessaFiscalitaBL", false));
  }
  std::int32_t IntraClassification(std::string_view code) override {
    company.Ask("IntraClassification", {code});
    return CLng(company.Value("STDIva", "CodIva", code, "TipoIntra", 0));
  }
  Variant PeriodReferenceDate(std::int16_t month, std::int16_t year) override {
    company.Ask("PeriodReferenceDate", {month, year});
    return Date::FromYmd(year, month, 28).value();
  }
  bool IsVariationNote(std::string_view code) override {
    company.Ask("IsVariationNote", {code});
    return false;
  }
};

struct Locks final : PeriodLock {
  explicit Locks(SmallCompany& aCompany) : company(aCompany) {}
  SmallCompany& company;

  bool IsLocked(const Variant& date) override {
    company.Ask("IsLocked", {date});
    return IsDate(date) && Month(date) == 5;
  }
};

struct Activities final : VatActivities {
  explicit Activities(SmallCompany& aCompany) : company(aCompany) {}
  SmallCompany& company;

  std::string ActivityCode(std::int16_t year, std::int16_t type, std::int16_t section) override {
    company.Ask("ActivityCode", {year, type, section});
    return "AT" + std::to_string(section);
  }
};

struct Numbering final : ProtocolNumbering {
  explicit Numbering(SmallCompany& aCompany) : company(aCompany) {}
  SmallCompany& company;

  std::int32_t NextProtocol(std::int16_t type, std::int16_t section, const Variant& date) override {
    company.Ask("NextProtocol", {type, section, date});
    return 11;
  }
};

struct Fees final : FeeNotes {
  explicit Fees(SmallCompany& aCompany) : company(aCompany) {}
  SmallCompany& company;

  bool SupplierTest(std::int32_t id) override {
    company.Ask("SupplierTest", {id});
    return id == 21;
  }
  std::int16_t TemplateTest(std::string_view code) override {
    company.Ask("TemplateTest", {code});
    return 1;
  }
};

struct Functions final : SqlFunctions {
  explicit Functions(SmallCompany& aCompany) : company(aCompany) {}
  SmallCompany& company;

  std::string Expression(std::int32_t code, std::string_view column) override {
    company.Ask("Expression", {code, column});
    return "Year(" + std::string(column) + ")";
  }
};

struct Sums final : Totals {
  explicit Sums(SmallCompany& aCompany) : company(aCompany) {}
  SmallCompany& company;
  RecordsetRef set;

  void Attach(const RecordsetRef& rows) override {
    company.Ask("Attach");
    set = rows;
  }
  void Columns(std::string_view list) override { company.Ask("Columns", {list}); }
  void Compute() override { company.Ask("Compute"); }
  Currency Total(std::string_view column) override {
    company.Ask("Total", {column});
    const Variant value = set->Fields(column).Value();
    return value.IsNull() ? Currency() : CCur(value);
  }
};

struct Access final : DataAccess {
  explicit Access(SmallCompany& aCompany) : company(aCompany) {}
  SmallCompany& company;

  RecordsetRef Open(const QueryBuilder& query) override {
    return company.Select(SelectionOf(query));
  }
  void Execute(std::string_view procedure, std::span<ProcedureArgument> arguments) override {
    std::vector<Variant> values = {procedure};
    for (const ProcedureArgument& argument : arguments) {
      values.push_back(argument.value);
      values.emplace_back(argument.output);
    }
    company.Ask("Execute", values);
    const bool closed = CLng(arguments.front().value) == 300;
    arguments.back().value = std::int32_t{closed ? 2 : 0};
  }
};

}  // namespace

std::vector<std::string> SplitText(std::string_view text, char separator) {
  std::vector<std::string> parts;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find(separator), text.size());
    parts.emplace_back(text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return parts;
}

std::string Shown(const Variant& value) {
  return std::to_string(static_cast<int>(value.VarType())) + ":" +
         (value.IsNull() ? "" : CStr(value));
}

Variant MakeValue(char type, const std::string& text) {
  switch (TypeOf(type)) {
    case DataType::SmallInt:
      return CInt(text);
    case DataType::Integer:
      return CLng(text);
    case DataType::Currency:
      return Currency::FromExactText(text).value();
    case DataType::Date:
      return text.empty() ? Variant("") : Variant(Date::FromIso(text).value());
    case DataType::Boolean:
      return text == "1";
    case DataType::Double:
      return CDbl(text);
    default:
      return text;
  }
}

std::shared_ptr<RowTable> MakeTable(const TableText& text) {
  std::vector<Column> columns;
  std::string types;
  for (const std::string& column : SplitText(text.columns, ' ')) {
    const std::size_t colon = column.find(':');
    types += column.at(colon + 1);
    columns.push_back({column.substr(0, colon), TypeOf(types.back())});
  }
  auto table = std::make_shared<RowTable>(columns);
  for (const std::string& row : text.rows) {
    std::vector<Variant> cells(columns.size(), Null);
    for (const std::string& cell : SplitText(row, ' ')) {
      const std::size_t mark = cell.find('=');
      const auto place = table->FindColumn(cell.substr(0, mark));
      if (place < 0) {
        throw std::invalid_argument("no column for " + cell);
      }
      const std::string value = cell.substr(mark + 1);
      const auto at = static_cast<std::size_t>(place);
      cells[at] = value == "Null" ? Variant(Null) : MakeValue(types[at], value);
    }
    table->AddRow(std::move(cells));
  }
  return table;
}

void Selection::Say(std::string_view what, const std::vector<Variant>& values) {
  said.emplace_back(what);
  for (const Variant& value : values) {
    said.back().append(" ").append(Shown(value));
  }
}

void Selection::AddTable(std::string_view name) {
  Say("Table", {name});
  table = FirstWord(name);
}

void Selection::AddJoin(std::int16_t kind, std::string_view name) {
  Say("Join", {kind, name});
  joined.push_back(FirstWord(name));
}

void Selection::BeginWhere() {
  Say("Where");
  inWhere = true;
}

void Selection::BeginAlternative() {
  Say("Alternative");
  if (inWhere) {
    alternatives.emplace_back();
  }
}

void Selection::AddCondition(std::string_view column, std::string_view operation,
                             const Variant& value) {
  Say("Condition", {column, operation, value});
  if (inWhere) {
    (inAnyOf ? alternatives.back() : conditions)
        .push_back({std::string(column), std::string(operation), value});
  }
}

Selection SelectionOf(const QueryBuilder& query) {
  static constexpr const char* kOperators[] = {"=", "<>", "<", "<=", ">", ">="};
  Selection selection;
  const auto add = [&selection](const QueryBuilder::Condition& condition) {
    using Kind = QueryBuilder::Condition::Kind;
    if (condition.kind == Kind::Value) {
      selection.AddCondition(condition.left, kOperators[static_cast<int>(condition.operation)],
                             condition.value);
    } else if (condition.kind == Kind::Columns) {
      selection.Say("Pair", {condition.left, condition.right});
    } else if (condition.kind == Kind::Literal) {
      selection.Say("Literal", {condition.left});
    } else {
      selection.Say("AnyOf");
      selection.inAnyOf = true;
      for (const auto& alternative : condition.alternatives) {
        selection.BeginAlternative();
        for (const auto& [left, operation, value] : alternative) {
          selection.AddCondition(left, kOperators[static_cast<int>(operation)], value);
        }
      }
      selection.inAnyOf = false;
      selection.Say("End");
    }
  };
  for (const std::int32_t option : query.Options()) {
    selection.Say("Option", {option});
  }
  for (const std::string_view columns : query.Columns()) {
    selection.Say("Fields", {columns});
  }
  selection.AddTable(query.Table());
  for (const QueryBuilder::Join& join : query.Joins()) {
    selection.AddJoin(join.kind == JoinKind::Inner ? 1 : 2, join.table);
    std::ranges::for_each(join.on, add);
  }
  selection.BeginWhere();
  std::ranges::for_each(query.Conditions(), add);
  return selection;
}

SmallCompany::SmallCompany(std::string_view furtherRows) : tables_(kTables) {
  for (const std::string& row : SplitText(furtherRows, ';')) {
    const std::string table = FirstWord(row);
    tables_.at(table).rows.push_back(row.substr(table.size() + 1));
  }
}

void SmallCompany::Ask(std::string_view question, const std::vector<Variant>& values) {
  std::string text(question);
  for (const Variant& value : values) {
    text.append(" ").append(Shown(value));
  }
  questions_.push_back(text);
  if (failAt_ > 0 && --failAt_ == 0) {
    throw RunTimeError(-2147467259, "Società", "guasto n. " + std::to_string(questions_.size()));
  }
}

// Of joined tables the fields are there, without values.
std::shared_ptr<MemoryRecordset> SmallCompany::Select(const Selection& selection) {
  std::vector<Variant> said(selection.said.begin(), selection.said.end());
  Ask("Open", said);
  const auto found = tables_.find(selection.table);
  TableText text = found == tables_.end() ? TableText{"Nothing:t", {}} : found->second;
  const auto rows = MakeTable(text);
  for (const std::string& name : selection.joined) {
    const auto joined = tables_.find(name);
    text.columns +=
        " " + (joined == tables_.end() ? std::string("Nothing:t") : joined->second.columns);
  }
  std::vector<std::string> matching;
  for (std::size_t row = 0; row < rows->RowCount(); ++row) {
    if (Matches(*rows, row, selection)) {
      matching.push_back(text.rows[row]);
    }
  }
  text.rows = matching;
  return std::make_shared<MemoryRecordset>(MakeTable(text));
}

RecordsetRef SmallCompany::Rows(std::string_view table, std::string_view column,
                                const Variant& value) {
  const std::size_t before = questions_.size();
  const int fault = std::exchange(failAt_, 0);
  Selection selection;
  selection.table = table;
  selection.conditions.push_back({std::string(column), "=", value});
  RecordsetRef rows = Select(selection);
  questions_.resize(before);
  failAt_ = fault;
  return rows;
}

Variant SmallCompany::Value(std::string_view table, std::string_view column, const Variant& key,
                            std::string_view field, const Variant& otherwise) {
  const RecordsetRef rows = Rows(table, column, key);
  return rows->Eof() ? otherwise : rows->Fields(field).Value();
}

std::unique_ptr<KalStatus> SmallCompany::CreateKalStatus() {
  return std::make_unique<Status>(*this);
}
std::unique_ptr<CompanySettings> SmallCompany::CreateCompanySettings() {
  return std::make_unique<Settings>(*this);
}
std::unique_ptr<KalAnagrafiche> SmallCompany::CreateKalAnagrafiche() {
  return std::make_unique<Anagrafiche>(*this);
}
std::unique_ptr<VatCodes> SmallCompany::CreateVatCodes() { return std::make_unique<Codes>(*this); }
std::unique_ptr<PeriodLock> SmallCompany::CreatePeriodLock() {
  return std::make_unique<Locks>(*this);
}
std::unique_ptr<VatActivities> SmallCompany::CreateVatActivities() {
  return std::make_unique<Activities>(*this);
}
std::unique_ptr<ProtocolNumbering> SmallCompany::CreateProtocolNumbering() {
  return std::make_unique<Numbering>(*this);
}
std::unique_ptr<FeeNotes> SmallCompany::CreateFeeNotes() { return std::make_unique<Fees>(*this); }
std::unique_ptr<SqlFunctions> SmallCompany::CreateSqlFunctions() {
  return std::make_unique<Functions>(*this);
}
std::unique_ptr<Totals> SmallCompany::CreateTotals() { return std::make_unique<Sums>(*this); }
std::unique_ptr<DataAccess> SmallCompany::CreateDataAccess() {
  return std::make_unique<Access>(*this);
}

EntrySets MakeEntry(std::string_view kind, std::string_view changes) {
  auto texts = kEntrySets;
  std::map<std::string, EditMode> modes = {{"T", EditMode::Add}};
  std::string all = "F!;R!;K!;";
  if (kind == "transfer") {
    all +=
        "I!;S!;T.CodCausale=GEN;T.TipoRegIva=0;T.DataDocumento=Null;C1.IdScadenza=Null;C1.IdCliFor="
        "Null;C1.TipoCliFor=Null;";
  }
  for (const std::string& change : SplitText(all + std::string(changes), ';')) {
    const std::string set = change.substr(0, 1);
    const std::size_t dot = change.find('.');
    if (change.find("!+") != change.npos) {
      texts[set] = kEntrySets.at(set);
    } else if (change.back() == '!') {
      texts.erase(set);
    } else if (dot == change.npos) {
      modes[set] = change.substr(2) == "Add" ? EditMode::Add : EditMode::None;
    } else {
      const std::size_t row = dot == 1 ? 1 : std::stoul(change.substr(1, dot - 1));
      texts.at(set).rows.at(row - 1).append(" ").append(change, dot + 1);
    }
  }
  EntrySets sets;
  for (const auto& [set, text] : texts) {
    sets[kSetNames.at(set)] = std::make_shared<MemoryRecordset>(MakeTable(text), modes[set]);
  }
  return sets;
}

}  // namespace kal::test
