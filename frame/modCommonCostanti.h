// modCommonCostanti: constants that several checks share, and the literal message texts.

#pragma once

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

// Kinds of entry by the fiscal year (TipoMovimentoEsercizio).
inline constexpr std::int16_t kMovimentoApertura = 0;
inline constexpr std::int16_t kMovimentoAltro = 1;
inline constexpr std::int16_t kMovimentoChiusura = 2;

// Protocols have at most seven digits.
inline constexpr std::int32_t kProtocolloMassimo = 9999999;

// Messages that are texts of the component itself, known by the names of these constants, and words
// that go into other messages.
namespace testi {

struct Letterale {
  std::string_view nome;
  std::string_view testo;
};

#define KAL_LITERAL(name, check, theme, set, sample, text, ...) \
  inline constexpr Letterale k##name{#name, text};
#define KAL_WORD(name, text, translation) inline constexpr std::string_view k##name = text;
#include "messages/Messages.h"

}  // namespace testi

}  // namespace kal
