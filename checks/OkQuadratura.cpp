// OkQuadratura: every line names a posting account, and debits equal credits.
//
// All lines balance in the base currency; those of a VAT or free registration also in the entry's
// own currency and by line type, except in the receipts register. No tolerance: a difference of
// 0.0001 counts. An entry with a missing account is not weighed at all. RsRCont is left at its
// end. A Null account code, or a Null amount on the side that counts, is an error, not a finding.

#include <array>
#include <cstddef>
#include <functional>
#include <memory_resource>
#include <string>
#include <string_view>
#include <unordered_map>

#include "checks/Checks.h"
#include "frame/Azienda.h"
#include "frame/Importi.h"
#include "frame/modCommonCostanti.h"
#include "frame/modDatabaseUtility.h"
#include "frame/modKalErrorHandling.h"

namespace kal {
namespace {

constexpr Currency kZero;

constexpr Selection kSottoConto = Selection()
                                      .Select("CodConto")
                                      .From("STDPianoDeiConti")
                                      .WhereEqual("CodConto")
                                      .WhereEqual("TipoConto");

// TipoConto 0 marks posting accounts: a code that only exists as a heading is absent too.
bool SottoContoAssente(const Registrazione& aRegistrazione, std::string_view aCodConto) {
  return Trap(aRegistrazione, "KalCOGCheck.SottoContoAssente",
              [&] { return RecordsetIsEmpty(Open<kSottoConto>(aRegistrazione, aCodConto, 0)); });
}

// Finds a text without a copy of it.
struct HashTesto {
  using is_transparent = void;
  std::size_t operator()(std::string_view testo) const {
    return std::hash<std::string_view>()(testo);
  }
};

// The accounts of one run: each is asked about once, however many lines carry it.
class Conti {
 public:
  explicit Conti(const Registrazione& aRegistrazione) : registrazione_(aRegistrazione) {}

  bool Assente(const Variant& aCodConto) {
    if (const auto testo = aCodConto.AsText()) {
      return testo->empty() || AssenteIlConto(*testo);
    }
    return bool{aCodConto == ""} || AssenteIlConto(CStr(aCodConto));
  }

 private:
  bool AssenteIlConto(std::string_view aCodConto) {
    auto conto = assenti_.find(aCodConto);
    if (conto == assenti_.end()) {
      conto = assenti_.try_emplace(std::pmr::string(aCodConto, &memoria_), false).first;
      conto->second = SottoContoAssente(registrazione_, aCodConto);
    }
    return conto->second;
  }

  const Registrazione& registrazione_;
  std::array<std::byte, 1024> spazio_;  // the accounts of most entries fit in here
  std::pmr::monotonic_buffer_resource memoria_{spazio_.data(), spazio_.size()};
  std::pmr::unordered_map<std::pmr::string, bool, HashTesto, std::equal_to<>> assenti_{&memoria_};
};

struct Saldi {
  Currency SaldoVB;
  Currency Saldo;
  Currency SaldoTipo1;
  Currency SaldoTipo2;
  Currency SaldoTipo3;
  Currency SaldoTipo4;

  void AggiungiTipo(const Variant& tipoRiga, Currency importo) {
    if (tipoRiga == 1) {
      SaldoTipo1 += importo;
    } else if (tipoRiga == 2) {
      SaldoTipo2 += importo;
    } else if (tipoRiga == 3) {
      SaldoTipo3 += importo;
    } else if (tipoRiga == 4) {
      SaldoTipo4 += importo;
    }
  }
};

void SegnalaSbilanci(Registrazione& aRegistrazione, const Saldi& aSaldi, bool aIvaOLibera) {
  if (aSaldi.SaldoVB != kZero) {
    AddMessage(aRegistrazione, ErrString, MessageCode::SbilancioVB);
  }
  if (!aIvaOLibera) {
    return;
  }
  if (aSaldi.Saldo != kZero && aSaldi.SaldoVB == kZero) {
    AddMessage(aRegistrazione, ErrString, MessageCode::SbilancioDivisa);
  }
  if (GetField(aRegistrazione.RsCausale, "TipoRegIva") != kCorrispettivi) {
    if (aSaldi.SaldoTipo1 + aSaldi.SaldoTipo2 + aSaldi.SaldoTipo3 != kZero) {
      AddMessage(aRegistrazione, ErrString, MessageCode::SbilancioRigheIva);
    }
    if (aSaldi.SaldoTipo4 != kZero) {
      AddMessage(aRegistrazione, ErrString, MessageCode::SbilancioRigheTipo4);
    }
  }
}

}  // namespace

void OkQuadratura(Registrazione& aRegistrazione) {
  Trap(aRegistrazione, "KalCOGCheck.OkQuadratura", [&] {
    const HostSet& rsRCont = aRegistrazione.RsRCont;
    CreaRecordCausale(aRegistrazione, CStr(GetField(aRegistrazione.RsTesta, "CodCausale")));
    const bool conRegistroIva{GetField(aRegistrazione.RsCausale, "TipoRegIva") != kNessunRegistro};
    const bool libera = GetFlag(aRegistrazione.RsCausale, "RegistrazioneLibera");
    const bool ivaOLibera = conRegistroIva || libera;
    if (rsRCont.IsNothing() || rsRCont->RecordCount() == 0) {
      return;
    }

    Saldi saldi;
    Conti conti(aRegistrazione);
    bool contoMancante = false;
    LettoreImporti importi(rsRCont);
    Campo codConto(rsRCont, "CodConto");
    Campo tipoRiga(rsRCont, "TipoRiga");
    for (rsRCont->MoveFirst(); !rsRCont->Eof(); rsRCont->MoveNext()) {
      if (conti.Assente(codConto.Value())) {
        AddMessage(aRegistrazione, ErrString, MessageCode::ContoMancante,
                   {GetField(rsRCont, "NumeroRiga")}, rsRCont.Riga());
        contoMancante = true;
      }
      const ImportiConSegno riga = importi.Leggi();
      saldi.SaldoVB += riga.ImportoVB;
      if (ivaOLibera) {
        saldi.Saldo += riga.Importo;
        saldi.AggiungiTipo(GetField(tipoRiga), riga.Importo);
      }
    }
    if (!contoMancante) {
      SegnalaSbilanci(aRegistrazione, saldi, ivaOLibera);
    }
  });
}

}  // namespace kal
