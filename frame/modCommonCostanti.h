// modCommonCostanti: constants that several checks share, and the literal message texts.

#pragma once

#include <array>
#include <cstdint>
#include <string_view>

namespace kal {

inline constexpr std::string_view kCrLf = "\r\n";

// VAT register types (TipoRegIva).
inline constexpr std::int16_t kNessunRegistro = 0;
inline constexpr std::int16_t kAcquisti = 1;
inline constexpr std::int16_t kVendite = 2;
inline constexpr std::int16_t kCorrispettivi = 3;

// TipoAnagrafica: whom an IdAnagrafica names.
inline constexpr std::int16_t kCliente = 1;
inline constexpr std::int16_t kFornitore = 2;

// TipoRata: ordinary (opening) installments, and those that close another one.
inline constexpr std::int16_t kRataApertura = 0;
inline constexpr std::int16_t kRataChiusura = 1;

// The reserved VAT code of ventilated receipts, whose real rates come later.
inline constexpr std::string_view kCodIvaVentilazione = "VENT";

// The query option that the selections carry before their fields.
inline constexpr std::int32_t kOpzioneLettura = 11;

// The function code that asks SqlFunctions for the year of a date.
inline constexpr std::int32_t kFunzioneAnno = 4;

// Protocols have at most seven digits.
inline constexpr std::int32_t kProtocolloMassimo = 9999999;

// Messages that are texts of the component itself. They are known by the names of these constants.
namespace testi {

inline constexpr std::string_view kEffettiSplitPayment =
    "Il documento in Split Payment ha delle rate di tipo Effetto. Per poterle gestire nelle "
    "distinte effetti occorre utilizzare una forma di pagamento con la prima rata di sola iva";
inline constexpr std::string_view kSezionaleNonSplit =
    "Il Sezionale Vendita indicato non è idoneo alla fatturazione per il cliente split payment";
inline constexpr std::string_view kClienteNonSplit =
    "Il Sezionale Vendita indicato è un sezionale Split Payment, ma il cliente non ha la gestione "
    "abilitata";
inline constexpr std::string_view kPlafondSuperato =
    "L'importo plafond residuo per la dichiarazione d'intenti selezionata è stato superato";
inline constexpr std::string_view kDataDocumentoVuota =
    "La data del documento è vuota ma esiste una dichiarazione d'intento inserita";
inline constexpr std::string_view kDichiarazioneNonValida =
    "La validità della dichiarazione d'intento selezionata differisce dalla data del documento";
inline constexpr std::string_view kAliquoteDiverse =
    "Alcune aliquote sono diverse rispetto all'aliquota indicata in dichiarazione d'intenti";
// "uno una" is the text that users know.
inline constexpr std::string_view kGenerataDaSplitPayment =
    "Impossibile modificare il documento in quanto è stato generato a seguito di uno una prima "
    "nota in split payment";
inline constexpr std::string_view kTrasmessoSdi =
    "Attenzione! Si sta tentando di modificare un documento già trasmesso allo SDI";
inline constexpr std::string_view kXmlGenerato =
    "Attenzione! Per il documento è già stato generato un file XML. Per evitare incongruenze si "
    "consiglia, una volta effettuata la modifica, di rigenerare il file";

struct Testo {
  std::string_view nome;
  std::string_view testo;
};

inline constexpr std::array kTutti = {
    Testo{"EffettiSplitPayment", kEffettiSplitPayment},
    Testo{"SezionaleNonSplit", kSezionaleNonSplit},
    Testo{"ClienteNonSplit", kClienteNonSplit},
    Testo{"PlafondSuperato", kPlafondSuperato},
    Testo{"DataDocumentoVuota", kDataDocumentoVuota},
    Testo{"DichiarazioneNonValida", kDichiarazioneNonValida},
    Testo{"AliquoteDiverse", kAliquoteDiverse},
    Testo{"GenerataDaSplitPayment", kGenerataDaSplitPayment},
    Testo{"TrasmessoSdi", kTrasmessoSdi},
    Testo{"XmlGenerato", kXmlGenerato},
};

}  // namespace testi

}  // namespace kal
