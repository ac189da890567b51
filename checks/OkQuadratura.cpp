// OkQuadratura: every line names a posting account, and debits equal credits.
//
// All lines balance in the base currency; those of a VAT or free registration also in the entry's
// own currency and by line type, except in the receipts register. No tolerance: a difference of
// 0.0001 counts. An entry with a missing account is not weighed at all. RsRCont is left at its
// end. A Null account code, or a Null amount on the side that counts, is an error, not a finding.

#include <string>
#include <unordered_map>

#include "frame/Importi.h"
#include "frame/KalCOGCheck.h"
#include "frame/modCommonCostanti.h"
#include "frame/modDatabaseUtility.h"
#include "frame/modKalErrorHandling.h"

namespace kal {
namespace {

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

constexpr Currency kZero;

}  // namespace

void KalCOGCheck::OkQuadratura() {
  Trap("KalCOGCheck.OkQuadratura", [&] {
    CreaRecordCausale(CStr(GetField(rsTesta_, "CodCausale")));
    const bool conRegistroIva{GetField(rsCausale_, "TipoRegIva") != kNessunRegistro};
    const bool libera = GetFlag(rsCausale_, "RegistrazioneLibera");
    const bool ivaOLibera = conRegistroIva || libera;
    if (rsRCont_.IsNothing() || rsRCont_->RecordCount() == 0) {
      return;
    }

    Saldi saldi;
    bool contoMancante = false;
    std::unordered_map<std::string, bool> assenti;  // the answer for each account met in this run
    const LettoreImporti importi(*rsRCont_);
    const Field& campoConto = rsRCont_->Fields("CodConto");
    for (rsRCont_->MoveFirst(); !rsRCont_->Eof(); rsRCont_->MoveNext()) {
      const Variant codConto = campoConto.Value();
      bool assente = true;
      if (!(codConto == "")) {
        const auto [conto, nuovo] = assenti.try_emplace(CStr(codConto), false);
        if (nuovo) {
          SottoContoAssente(conto->first, conto->second);
        }
        assente = conto->second;
      }
      if (assente) {
        AddMessage(errString_, MessageCode::ContoMancante, {GetField(rsRCont_, "NumeroRiga")});
        contoMancante = true;
      }
      const ImportiConSegno riga = importi.Leggi();
      saldi.SaldoVB += riga.ImportoVB;
      if (ivaOLibera) {
        saldi.Saldo += riga.Importo;
        saldi.AggiungiTipo(GetField(rsRCont_, "TipoRiga"), riga.Importo);
      }
    }
    if (contoMancante) {
      return;
    }

    if (saldi.SaldoVB != kZero) {
      AddMessage(errString_, MessageCode::SbilancioVB);
    }
    if (!ivaOLibera) {
      return;
    }
    if (saldi.Saldo != kZero && saldi.SaldoVB == kZero) {
      AddMessage(errString_, MessageCode::SbilancioDivisa);
    }
    if (GetField(rsCausale_, "TipoRegIva") != kCorrispettivi) {
      if (saldi.SaldoTipo1 + saldi.SaldoTipo2 + saldi.SaldoTipo3 != kZero) {
        AddMessage(errString_, MessageCode::SbilancioRigheIva);
      }
      if (saldi.SaldoTipo4 != kZero) {
        AddMessage(errString_, MessageCode::SbilancioRigheTipo4);
      }
    }
  });
}

// TipoConto 0 marks posting accounts: a code that only exists as a heading is absent too.
void KalCOGCheck::SottoContoAssente(const std::string& aCodConto, bool& aAssente) {
  Trap("KalCOGCheck.SottoContoAssente", aAssente, [&] {
    QueryBuilder query;
    query.Select("CodConto")
        .From("STDPianoDeiConti")
        .WhereEqual("CodConto", aCodConto)
        .WhereEqual("TipoConto", 0);
    aAssente = RecordsetIsEmpty(Open(query));
  });
}

// A template that the host handed over, or that an earlier check found, stays.
void KalCOGCheck::CreaRecordCausale(const std::string& aCodCausale) {
  Trap("KalCOGCheck.CreaRecordCausale", [&] {
    if (!rsCausale_.IsNothing()) {
      return;
    }
    QueryBuilder query;
    query.Option(kOpzioneLettura)
        .Select("*")
        .From("COGCausaliContabili")
        .WhereEqual("CodCausale", aCodCausale);
    RecordsetRef causale = Open(query);
    if (!RecordsetIsEmpty(causale)) {
      rsCausale_ = causale;
    }
  });
}

}  // namespace kal
