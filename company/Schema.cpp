#include "company/Schema.h"

#include <algorithm>

#include "platform/LetterCase.h"
#include "platform/Trimmed.h"

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

// The two indexes of protocols serve one question from both ends: higher numbers with earlier
// dates, and later dates with lower numbers.
constexpr SchemaIndex kIndexes[] = {
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

constexpr SchemaKey kKeys[] = {
    {"COGPrimeNoteTeste", "IdPrimaNota"},
    {"COGPrimeNoteProprieta", "CodProprieta"},
    {"COGCausaliContabili", "CodCausale"},
    {"COGNumerazioniIva", "IdNumerazione"},
    {"COGNumerazioniIva", "Anno,TipoRegIva,SezionaleIva"},
    {"COGBollati", "IdBollato"},
    {"COGBollatiIva", "IdBollato,SezionaleIva"},
    {"COGParametriIva", "Anno"},
    {"COGParametriIvaAttivitaRighe", "Anno,CodAttivita"},
    {"COGIvaLiquidazioni", "Anno,Periodo"},
    {"STDPianoDeiConti", "CodConto"},
    {"STDEsercizi", "CodEsercizio"},
    {"STDIva", "CodIva"},
    {"STDAnagraficaClienti", "IdAnagrafica"},
    {"STDAnagraficaFornitori", "IdAnagrafica"},
    {"STDDichiarazioniIntento", "IdDichiarazione"},
    {"STDTipologiePagamento", "IdTipologiaPagamento"},
    {"STDCondizioniPagamentoTeste", "CodPagamento"},
    {"STDParametriAzienda", "Nome"},
    {"KalMessaggi", "Codice,Lingua"},
    {"KalDizionario", "Testo,Lingua"},
};

constexpr SchemaPeriod kPeriods[] = {
    {"STDEsercizi", "DataInizio", "DataFine", "CodEsercizio"},
    {"COGBlocchiPeriodo", "DataInizio", "DataFine", ""},
    {"STDDichiarazioniIntento", "DataInizioValidita", "DataFineValidita", ""},
};

template <class Named>
const Named* FindNamed(std::span<const Named> all, std::string_view name) {
  const auto found =
      std::ranges::find_if(all, [name](const Named& one) { return SameName(one.name, name); });
  return found == all.end() ? nullptr : &*found;
}

}  // namespace

std::span<const SchemaTable> Tables() { return kTables; }

std::span<const SchemaIndex> Indexes() { return kIndexes; }

std::span<const SchemaKey> Keys() { return kKeys; }

std::span<const SchemaPeriod> Periods() { return kPeriods; }

std::vector<std::string_view> Items(std::string_view list) {
  std::vector<std::string_view> items;
  while (!list.empty()) {
    const std::size_t comma = std::min(list.find(','), list.size());
    items.push_back(Trimmed(list.substr(0, comma)));
    list.remove_prefix(std::min(comma + 1, list.size()));
  }
  return items;
}

std::vector<IndexedColumn> ColumnsOf(const SchemaIndex& index) {
  constexpr std::string_view kYear = "Year(";
  std::vector<IndexedColumn> columns;
  for (std::string_view item : Items(index.columns)) {
    const bool isYear = item.starts_with(kYear);
    if (isYear) {
      item = item.substr(kYear.size(), item.size() - kYear.size() - 1);
    }
    columns.push_back({item, isYear});
  }
  return columns;
}

std::string NameOf(const SchemaIndex& index) {
  std::string name(index.table);
  for (const IndexedColumn& column : ColumnsOf(index)) {
    name.append(column.isYear ? "_Year" : "_").append(column.name);
  }
  return name;
}

const SchemaTable* FindTable(std::string_view name) { return FindNamed(Tables(), name); }

const SchemaColumn* FindColumn(const SchemaTable& table, std::string_view name) {
  return FindNamed(table.columns, name);
}

}  // namespace kal::company
