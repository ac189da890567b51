#include "company/Schema.h"

#include <algorithm>

#include "company/QuerySql.h"

namespace kal::company {
namespace {

constexpr DataType kText = DataType::VarWChar;
constexpr DataType kShort = DataType::SmallInt;
constexpr DataType kLong = DataType::Integer;
constexpr DataType kAmount = DataType::Currency;
constexpr DataType kDay = DataType::Date;
constexpr DataType kFlag = DataType::Boolean;
constexpr DataType kFloat = DataType::Double;

constexpr SchemaColumn kPrimeNoteTeste[] = {
    {"IdPrimaNota", kLong},
    {"IdLink", kLong},
    {"IdDoc", kLong},
    {"IdAnagrafica", kLong},
    {"IdDichiarazione", kLong},
    {"Protocollo", kLong},
    {"TipoDocumento", kShort},
    {"TipoRegIva", kShort},
    {"SezionaleIva", kShort},
    {"SegnoIva", kShort},
    {"StatoDocPA", kShort},
    {"TipoCliFor", kShort},
    {"DataRegistrazione", kDay},
    {"DataDocumento", kDay},
    {"DataCompetenza", kDay},
    {"DataIva", kDay},
    {"DataPlafond", kDay},
    {"NumeroDocumento", kText},
    {"CodCausale", kText},
    {"CodPagamento", kText},
    {"CodAttivita", kText},
    {"CodProprieta", kText},
    {"CodDivisa", kText},
    {"Partita", kText},
    {"TotImponibile", kAmount},
    {"TotImposta", kAmount},
    {"TotDocumento", kAmount},
    {"TotImponibileVB", kAmount},
    {"TotImpostaVB", kAmount},
    {"TotDocumentoVB", kAmount},
    {"Fixing", kFloat},
    {"Provvisoria", kFlag},
    {"InSospensione", kFlag},
    {"Intra", kFlag},
    {"NoIntraBis", kFlag},
    {"ReverseCharge", kFlag},
    {"NonConsiderareAncheSeSopraLaSoglia", kFlag},
    {"FiscalitaBL", kFlag},
    {"Rettifica", kFlag},
    {"Infragruppo", kFlag},
};
constexpr SchemaColumn kPrimeNoteRiferimenti[] = {{"IdPrimaNota", kLong}, {"DataIva", kDay}};
constexpr SchemaColumn kPrimeNoteRCont[] = {{"IdPrimaNota", kLong}, {"IdScadenza", kLong}};
constexpr SchemaColumn kPrimeNoteProprieta[] = {{"CodProprieta", kText}, {"DivisaSuRighe", kFlag}};
constexpr SchemaColumn kCausaliContabili[] = {
    {"CodCausale", kText},       {"Operazione", kShort},        {"TipoRegIva", kShort},
    {"SegnoIva", kShort},        {"TipoParcella", kShort},      {"IdTipoMovimento", kLong},
    {"TipoVentilazione", kFlag}, {"CassaCorrispettivi", kFlag}, {"RegistrazioneLibera", kFlag},
    {"NotaVariazione", kFlag},
};
constexpr SchemaColumn kNumerazioniIva[] = {
    {"IdNumerazione", kLong}, {"IdSezAutofatture", kLong},      {"Anno", kShort},
    {"TipoRegIva", kShort},   {"SezionaleIva", kShort},         {"CodAttivita", kText},
    {"SplitPayment", kFlag},  {"UsaSezAutoftSpecifico", kFlag},
};
constexpr SchemaColumn kNumerazioniContabili[] = {{"CodEsercizio", kShort}, {"Sezionale", kShort}};
constexpr SchemaColumn kScadenze[] = {
    {"IdScadenza", kLong},     {"LinkApertura", kLong},     {"IdDistinta", kLong},
    {"NrRata", kShort},        {"RataApertura", kShort},    {"TipoRata", kShort},
    {"TipoDocumento", kShort}, {"ImportoDare", kAmount},    {"ImportoDareVB", kAmount},
    {"ImportoAvere", kAmount}, {"ImportoAvereVB", kAmount},
};
constexpr SchemaColumn kRateiRisconti[] = {{"IdRateoRisconto", kLong}, {"IdDoc", kLong}};
constexpr SchemaColumn kRateiContabilizzati[] = {{"IdRateoRisconto", kLong}};
constexpr SchemaColumn kBollati[] = {
    {"IdBollato", kLong},         {"Anno", kShort}, {"Mese", kShort}, {"GiorContStampato", kFlag},
    {"RiepilogoStampato", kFlag},
};
constexpr SchemaColumn kBollatiIva[] = {
    {"IdBollato", kLong},   {"SezionaleIva", kShort}, {"AcqStampati", kFlag},
    {"VenStampati", kFlag}, {"CorrStampati", kFlag},
};
constexpr SchemaColumn kParametriIva[] = {{"Anno", kShort}, {"IvaTrimestrale", kFlag}};
constexpr SchemaColumn kParametriIvaAttivitaRighe[] = {{"Anno", kShort}, {"CodAttivita", kText}};
constexpr SchemaColumn kIvaLiquidazioni[] = {
    {"Anno", kShort}, {"Periodo", kShort}, {"ValoriDefinitivi", kFlag}};
constexpr SchemaColumn kBlocchiPeriodo[] = {{"DataInizio", kDay}, {"DataFine", kDay}};
constexpr SchemaColumn kPianoDeiConti[] = {
    {"CodConto", kText}, {"TipoConto", kShort}, {"Infragruppo", kFlag}};
constexpr SchemaColumn kEsercizi[] = {
    {"CodEsercizio", kShort},   {"DataInizio", kDay},         {"DataFine", kDay},
    {"EsercizioChiuso", kFlag}, {"ContabilitaChiusa", kFlag},
};
constexpr SchemaColumn kIva[] = {
    {"CodIva", kText},
    {"CodIvaAutoFtReverse", kText},
    {"PercIvaACosto", kFloat},
    {"PercIndetraibile", kFloat},
    {"AmmessaFiscalitaBL", kFlag},
    {"TipoIntra", kShort},
};
constexpr SchemaColumn kAnagraficaClienti[] = {
    {"IdAnagrafica", kLong}, {"SoggettoSplitPayment", kFlag}, {"Infragruppo", kFlag}};
constexpr SchemaColumn kAnagraficaFornitori[] = {{"IdAnagrafica", kLong},
                                                 {"SoggettoSplitPayment", kFlag},
                                                 {"Infragruppo", kFlag},
                                                 {"SoggettoParcella", kFlag}};
constexpr SchemaColumn kDichiarazioniIntento[] = {
    {"IdDichiarazione", kLong}, {"IdAnagrafica", kLong},
    {"TipoAnagrafica", kShort}, {"TipoDichiarazione", kShort},
    {"CodIva", kText},          {"ImportoPlafond", kAmount},
    {"Importo", kAmount},       {"DataInizioValidita", kDay},
    {"DataFineValidita", kDay}, {"Annullata", kFlag},
};
constexpr SchemaColumn kTipologiePagamento[] = {{"IdTipologiaPagamento", kLong},
                                                {"Effetto", kFlag}};
constexpr SchemaColumn kCondizioniPagamento[] = {{"CodPagamento", kText},
                                                 {"TipoGestioneIva", kShort}};
constexpr SchemaColumn kParametriAzienda[] = {{"Nome", kText}, {"Valore", kText}};
constexpr SchemaColumn kMessaggi[] = {{"Codice", kLong}, {"Lingua", kText}, {"Testo", kText}};
constexpr SchemaColumn kDizionario[] = {{"Testo", kText}, {"Lingua", kText}, {"Traduzione", kText}};

constexpr SchemaTable kTables[] = {
    {"COGPrimeNoteTeste", kPrimeNoteTeste, true},
    {"COGPrimeNoteRiferimenti", kPrimeNoteRiferimenti, true},
    {"COGPrimeNoteRCont", kPrimeNoteRCont, true},
    {"COGPrimeNoteProprieta", kPrimeNoteProprieta},
    {"COGCausaliContabili", kCausaliContabili},
    {"COGNumerazioniIva", kNumerazioniIva},
    {"COGNumerazioniContabili", kNumerazioniContabili},
    {"COGNumerazioniExtra", kNumerazioniContabili},
    {"COGScadenze", kScadenze, true},
    {"COGRateiRisconti", kRateiRisconti, true},
    {"COGRateiRiscontiContabilizzati", kRateiContabilizzati, true},
    {"COGBollati", kBollati},
    {"COGBollatiIva", kBollatiIva},
    {"COGParametriIva", kParametriIva},
    {"COGParametriIvaAttivitaRighe", kParametriIvaAttivitaRighe},
    {"COGIvaLiquidazioni", kIvaLiquidazioni},
    {"COGBlocchiPeriodo", kBlocchiPeriodo},
    {"STDPianoDeiConti", kPianoDeiConti},
    {"STDEsercizi", kEsercizi},
    {"STDIva", kIva},
    {"STDAnagraficaClienti", kAnagraficaClienti},
    {"STDAnagraficaFornitori", kAnagraficaFornitori},
    {"STDDichiarazioniIntento", kDichiarazioniIntento},
    {"STDTipologiePagamento", kTipologiePagamento},
    {"STDCondizioniPagamentoTeste", kCondizioniPagamento},
    {"STDParametriAzienda", kParametriAzienda},
    {"KalMessaggi", kMessaggi},
    {"KalDizionario", kDizionario},
};

struct Index {
  std::string_view table;
  std::string_view columns;  // separated by commas; Year(x) is the year of a date column
  bool unique = false;
};

// The two indexes of protocols serve one question from both ends: higher numbers with earlier
// dates, and later dates with lower numbers.
constexpr Index kIndexes[] = {
    {"COGPrimeNoteTeste", "IdPrimaNota"},
    {"COGPrimeNoteTeste", "IdLink"},
    {"COGPrimeNoteTeste", "IdDoc,TipoDocumento"},
    {"COGPrimeNoteTeste",
     "Year(DataRegistrazione),TipoRegIva,SezionaleIva,Protocollo,DataRegistrazione"},
    {"COGPrimeNoteTeste",
     "Year(DataRegistrazione),TipoRegIva,SezionaleIva,DataRegistrazione,Protocollo"},
    {"COGPrimeNoteTeste", "NumeroDocumento,TipoRegIva,IdAnagrafica"},
    {"COGPrimeNoteTeste", "NumeroDocumento,TipoRegIva,SezionaleIva"},
    {"COGPrimeNoteRiferimenti", "IdPrimaNota"},
    {"COGPrimeNoteRCont", "IdPrimaNota,IdScadenza"},
    {"COGPrimeNoteRCont", "IdScadenza,IdPrimaNota"},
    {"COGPrimeNoteProprieta", "CodProprieta"},
    {"COGCausaliContabili", "CodCausale"},
    {"COGNumerazioniIva", "Anno,TipoRegIva,SezionaleIva"},
    {"COGNumerazioniIva", "IdNumerazione"},
    {"COGNumerazioniContabili", "CodEsercizio,Sezionale"},
    {"COGNumerazioniExtra", "CodEsercizio,Sezionale"},
    {"COGScadenze", "IdScadenza,NrRata,TipoRata"},
    {"COGScadenze", "LinkApertura,RataApertura,TipoRata"},
    {"COGRateiRisconti", "IdDoc"},
    {"COGRateiRiscontiContabilizzati", "IdRateoRisconto"},
    {"COGBollati", "Anno,Mese"},
    {"COGBollatiIva", "IdBollato,SezionaleIva"},
    {"COGParametriIva", "Anno"},
    {"COGParametriIvaAttivitaRighe", "Anno,CodAttivita"},
    {"COGIvaLiquidazioni", "Anno,Periodo"},
    {"COGBlocchiPeriodo", "DataFine,DataInizio"},
    {"STDPianoDeiConti", "CodConto,TipoConto"},
    {"STDEsercizi", "DataFine,DataInizio"},
    {"STDIva", "CodIva"},
    {"STDAnagraficaClienti", "IdAnagrafica"},
    {"STDAnagraficaFornitori", "IdAnagrafica"},
    {"STDDichiarazioniIntento", "IdDichiarazione", true},
    {"STDDichiarazioniIntento", "IdAnagrafica,TipoAnagrafica"},
    {"STDTipologiePagamento", "IdTipologiaPagamento"},
    {"STDCondizioniPagamentoTeste", "CodPagamento"},
    {"STDParametriAzienda", "Nome"},
    {"KalMessaggi", "Codice,Lingua"},
    {"KalDizionario", "Testo,Lingua"},
};

// How a column of each type is declared. Amounts and dates are kept as texts: the word TEXT in the
// declaration stops SQLite from turning "0.10" or a large amount into a rounded number.
struct Declaration {
  DataType type;
  std::string_view text;
};
constexpr Declaration kDeclarations[] = {
    {kText, "TEXT"},     {kShort, "SMALLINT"}, {kLong, "INTEGER"}, {kAmount, "AMOUNT_TEXT"},
    {kDay, "DATE_TEXT"}, {kFlag, "BOOLEAN"},   {kFloat, "DOUBLE"},
};

char Lower(char letter) {
  return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

std::string TableSql(const SchemaTable& table) {
  std::string sql = "CREATE TABLE " + QuoteName(table.name) + " (";
  std::string_view separator;
  for (const SchemaColumn& column : table.columns) {
    sql.append(separator).append(QuoteName(column.name)).append(" ");
    sql += DeclarationOfType(column.type);
    separator = ", ";
  }
  return sql + ");\n";
}

// The index is named after its table and columns.
std::string IndexSql(const Index& index) {
  constexpr std::string_view kYear = "Year(";
  std::string name(index.table);
  std::string columns;
  for (std::string_view rest = index.columns; !rest.empty();) {
    const std::size_t comma = std::min(rest.find(','), rest.size());
    const std::string_view item = rest.substr(0, comma);
    rest.remove_prefix(std::min(comma + 1, rest.size()));
    columns += columns.empty() ? "" : ", ";
    name += '_';
    if (item.starts_with(kYear)) {
      const std::string_view column = item.substr(kYear.size(), item.size() - kYear.size() - 1);
      columns += YearExpression(QuoteName(column));
      name.append("Year").append(column);
    } else {
      columns += QuoteName(item);
      name += item;
    }
  }
  return std::string(index.unique ? "CREATE UNIQUE INDEX " : "CREATE INDEX ") + QuoteName(name) +
         " ON " + QuoteName(index.table) + " (" + columns + ");\n";
}

}  // namespace

std::span<const SchemaTable> Tables() { return kTables; }

const SchemaTable* FindTable(std::string_view name) {
  const auto found = std::ranges::find_if(
      kTables, [name](const SchemaTable& table) { return SameName(table.name, name); });
  return found == std::end(kTables) ? nullptr : &*found;
}

bool SameName(std::string_view left, std::string_view right) {
  return std::ranges::equal(left, right, {}, Lower, Lower);
}

std::string SchemaSql() {
  std::string sql;
  for (const SchemaTable& table : kTables) {
    sql += TableSql(table);
  }
  for (const Index& index : kIndexes) {
    sql += IndexSql(index);
  }
  return sql;
}

DataType TypeOfDeclaration(std::string_view declaration) {
  const auto found =
      std::ranges::find_if(kDeclarations, [declaration](const Declaration& candidate) {
        return SameName(candidate.text, declaration);
      });
  return found == std::end(kDeclarations) ? kText : found->type;
}

std::string_view DeclarationOfType(DataType type) {
  switch (type) {
    case DataType::TinyInt:
      return DeclarationOfType(kShort);
    case DataType::Single:
      return DeclarationOfType(kFloat);
    default:
      break;
  }
  const auto found = std::ranges::find(kDeclarations, type, &Declaration::type);
  return found == std::end(kDeclarations) ? DeclarationOfType(kText) : found->text;
}

}  // namespace kal::company
