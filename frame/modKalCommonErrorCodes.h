// modKalCommonErrorCodes: the messages that the checks can give.
//
// A coded message is known by its number alone; its text, in the user's language, belongs to the
// status component. A few messages are literal texts of the component's own: they stand in
// modCommonCostanti.

#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <string_view>

namespace kal {

// clang-format off
#define KAL_MESSAGES(M)                                                                          \
  /* Save check: the entry as a whole */                                                         \
  M(NumeroDocumentoVuoto, 10485)           /* definitive VAT entry without a document number */  \
  M(LibroGiornaleGiaStampato, 10486)       /* the general journal of the month is printed */     \
  M(RegistroIvaGiaStampato, 10487)         /* the VAT register of the month is printed */        \
  M(ScadenzeNonQuadrano, 10489)            /* installments do not add up to their line */        \
  M(SbilancioVB, 10492)                    /* debits and credits differ in base currency */      \
  M(SbilancioDivisa, 10493)                /* they differ in the entry's own currency only */    \
  M(SbilancioRigheIva, 10494)              /* lines of types 1, 2 and 3 do not balance */        \
  M(SbilancioRigheTipo4, 10495)            /* lines of type 4 do not balance */                  \
  M(DocumentoDopoRegistrazione, 10496)     /* document date after registration date */           \
  M(MeseDocumentoDiverso, 10497)           /* sale registered in another month number */         \
  M(CodIvaInesistente, 10498)              /* VAT code of a line is not in the table */          \
  M(PeriodoIvaLiquidato, 10500)            /* VAT settlement of the period is final */           \
  M(AperturaNonInizioEsercizio, 10502)     /* opening entry not on the year's first day */       \
  M(ChiusuraNonFineEsercizio, 10503)       /* closing entry not on the year's last day */        \
  M(EsercizioCompetenzaChiuso, 10504)      /* fiscal year of the competence date is closed */    \
  M(SezionaleIvaInesistente, 10505)        /* VAT section is not defined for the year */         \
  M(ProtocolloNonInOrdine, 10506)          /* protocol out of step with a saved entry */         \
  M(NumeroDocumentoDuplicato, 10507)       /* document number already used */                    \
  M(ProtocolloMancante, 10508)             /* definitive entry without a protocol */             \
  M(ContabilitaEsercizioChiusa, 10509)     /* accounting of the entry's year is closed */        \
  M(BancaClienteMancante, 10510)           /* bill-of-exchange installment without a bank */     \
  M(PeriodoBloccato, 10511)                /* the VAT date lies in a locked period */            \
  M(EsisteIntegrazioneIntra, 10512)        /* entry generated an intra-community integration */  \
  M(EsercizioInesistente, 10513)           /* no fiscal year for the registration date */        \
  M(SezionaleInesistente, 10514)           /* journal section is not defined for the year */     \
  M(SezionaleAutofatturaInesistente, 10515) /* section of the self-invoice is not defined */     \
  M(RegistroPlafondStampato, 10516)        /* VAT register of the plafond date is printed */     \
  M(ScadenzeChiuse, 10517)                 /* installments of the entry are closed */            \
  M(ScadenzeInDistintaPresenti, 10518)     /* installments of the entry are in a remittance */   \
  M(ParametriIvaMancanti, 10519)           /* no VAT parameters for the year */                  \
  M(ContoMancante, 10520)                  /* line without a posting account */                  \
  M(CodIvaMancante, 10521)                 /* VAT line without a VAT code */                     \
  M(NessunaRiga, 10522)                    /* entry without lines */                             \
  M(EsercizioCompetenzaInesistente, 10523) /* no fiscal year for the competence date */          \
  M(CausaleInesistente, 10525)             /* posting template not found */                      \
  M(DivisaRigaMancante, 10578)             /* line without the currency it must name */          \
  M(AutofatturaNonInOrdine, 10587)         /* self-invoice protocol out of step */               \
  M(RegistroAutofatturaStampato, 10588)    /* VAT register of the self-invoice is printed */     \
  M(SegnoRigheIva, 10590)                  /* VAT lines on the wrong side */                     \
  M(RettificaFuoriPeriodo, 10594)          /* adjustment not on its period's date */             \
  M(DatiParcellaMancanti, 10624)           /* fee-note data due on a new entry */                \
  M(RegistrazioneInfragruppo, 10656)       /* a line belongs to a company of the group */        \
  M(DataScadenzaNonValida, 10657)          /* installment without a valid due date */            \
  M(ContropartitaMancante, 10659)          /* accrual without a counterpart account */           \
  M(ContropartitaNonInRighe, 10660)        /* its counterpart is on no account line */           \
  M(RateiContabilizzati, 10661)            /* accruals of the entry are already posted */        \
  M(RigaSoloImposta, 10666)                /* VAT line of tax alone */                           \
  M(EsisteIntegrazioneReverse, 10668)      /* entry generated a reverse-charge integration */    \
  M(AliquoteIntraMiste, 10695)             /* intra-community codes where they do not belong */  \
  M(DocumentoSenzaRegistroIva, 10699)      /* document type that needs a VAT register */         \
  M(CodIvaNonFiscalitaBL, 10726)           /* VAT code not allowed with fiscal data */           \
  M(DatiFiscaliNonQuadrano, 10727)         /* fiscal data differ from the header totals */       \
  M(RigheReverseMancanti, 10731)           /* reverse-charge entry without such VAT lines */     \
  M(UnaSolaRiga, 10734)                    /* entry of one line */                               \
  M(CorrispettivoSopraSoglia, 10735)       /* receipt at or above the reporting threshold */     \
  M(ProtocolloTroppoGrande, 10738)         /* protocol of more than seven digits */              \
  M(ImpostaSenzaImponibile, 10742)         /* tax without a taxable amount */                    \
  M(CodIvaAutofatturaMancante, 10743)      /* VAT code names no self-invoice code */             \
  M(AttivitaAutofatturaDiversa, 10753)     /* self-invoice section of another activity */        \
  M(ChiusuraContestuale, 10754)            /* suspended entry opens and closes installments */   \
  M(SospensioneNegativa, 10767)            /* suspended entry with a negative total */           \
  M(DatiParcellaDaVerificare, 10772)       /* fee-note data due on an entry being edited */      \
  M(ScadenzeChiuseInSospensione, 10774)    /* installments closed, entry in suspension */
// clang-format on

enum class MessageCode : std::int32_t {
#define KAL_MESSAGE_ENUM(name, number) name = (number),
  KAL_MESSAGES(KAL_MESSAGE_ENUM)
#undef KAL_MESSAGE_ENUM
};

struct MessageName {
  MessageCode code;
  std::string_view name;
};

// Every message code, ascending.
inline constexpr std::array kMessageCodes = {
#define KAL_MESSAGE_ROW(name, number) MessageName{MessageCode::name, #name},
    KAL_MESSAGES(KAL_MESSAGE_ROW)
#undef KAL_MESSAGE_ROW
};

static_assert(std::ranges::adjacent_find(kMessageCodes, std::ranges::greater_equal{},
                                         &MessageName::code) == kMessageCodes.end(),
              "message codes stand in ascending order, each once");

}  // namespace kal
