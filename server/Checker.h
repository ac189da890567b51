// Checker: the automation object around one KalCOGCheck.
//
// A thin table of members, one line each: convert, call, convert. Calls by name go through the
// type library, which calls the members of the table.

#pragma once

#include <atomic>
#include <utility>

#include "checker/KalCOGCheck.h"
#include "frame/modKalErrorHandling.h"
#include "server/Boundary.h"
#include "server/Conversion.h"
#include "server/DispatchSiblings.h"
#include "server/IKalCOGCheck.h"
#include "server/Module.h"

namespace kal {

class Checker final : public IKalCOGCheck, public ISupportErrorInfo, public IProvideClassInfo {
 public:
  explicit Checker(SiblingNames names) : siblings_(sets_, std::move(names)) {}
  Checker(const Checker&) = delete;
  Checker& operator=(const Checker&) = delete;

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override;
  ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
  ULONG STDMETHODCALLTYPE Release() override;

  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override;
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT index, LCID locale, ITypeInfo** info) override;
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID iid, LPOLESTR* names, UINT count, LCID locale,
                                          DISPID* ids) override;
  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID iid, LCID locale, WORD flags,
                                   DISPPARAMS* parameters, VARIANT* result, EXCEPINFO* exception,
                                   UINT* argument) override;

  HRESULT STDMETHODCALLTYPE InterfaceSupportsErrorInfo(REFIID iid) override;

  // The class: hosts ask it for the name of what they hold.
  HRESULT STDMETHODCALLTYPE GetClassInfo(ITypeInfo** info) override;

  HRESULT STDMETHODCALLTYPE put_TmpTableScadenze(BSTR name) override {
    return Run([&] { core_.TmpTableScadenze([&] { return FromBstr(name); }); });
  }
  HRESULT STDMETHODCALLTYPE get_TmpTableScadenze(BSTR* name) override {
    return Text(name, "KalCOGCheck.TmpTableScadenze", [&] { return core_.TmpTableScadenze(); });
  }
  HRESULT STDMETHODCALLTYPE put_IsFromCard(VARIANT_BOOL value) override {
    return Run([&] { core_.IsFromCard(value != VARIANT_FALSE); });
  }
  HRESULT STDMETHODCALLTYPE put_IsParcella(VARIANT_BOOL value) override {
    return Run([&] { core_.IsParcella(value != VARIANT_FALSE); });
  }
  HRESULT STDMETHODCALLTYPE get_IsInfragruppo(BSTR* text) override {
    return Text(text, "KalCOGCheck.IsInfragruppo", [&] { return core_.IsInfragruppo(); });
  }
  HRESULT STDMETHODCALLTYPE get_WarnStringModifica(BSTR* text) override {
    return Text(text, "KalCOGCheck.WarnStringModifica", [&] { return core_.WarnStringModifica(); });
  }
  HRESULT STDMETHODCALLTYPE get_WarnString(BSTR* text) override {
    return Text(text, "KalCOGCheck.WarnString", [&] { return core_.WarnString(); });
  }
  HRESULT STDMETHODCALLTYPE get_WarnDuplicatoDocString(BSTR* text) override {
    return Text(text, "KalCOGCheck.WarnDuplicatoDocString",
                [&] { return core_.WarnDuplicatoDocString(); });
  }
  HRESULT STDMETHODCALLTYPE get_WarnProtocolloString(BSTR* text) override {
    return Text(text, "KalCOGCheck.WarnProtocolloString",
                [&] { return core_.WarnProtocolloString(); });
  }
  HRESULT STDMETHODCALLTYPE get_WarnInfragruppoString(BSTR* text) override {
    return Text(text, "KalCOGCheck.WarnInfragruppoString",
                [&] { return core_.WarnInfragruppoString(); });
  }
  HRESULT STDMETHODCALLTYPE OkCancellaDoc(SHORT aTipologiaDoc, LONG aIdDoc,
                                          VARIANT_BOOL* ok) override {
    return Answer(ok, [&] { return core_.OkCancellaDoc(aTipologiaDoc, aIdDoc); });
  }
  HRESULT STDMETHODCALLTYPE OkModificaDoc(SHORT aTipologiaDoc, LONG aIdDoc,
                                          VARIANT_BOOL* ok) override {
    return Answer(ok, [&] { return core_.OkModificaDoc(aTipologiaDoc, aIdDoc); });
  }
  HRESULT STDMETHODCALLTYPE get_ImportoPlafond(CY* amount) override {
    return Answer(amount, [&] { return core_.ImportoPlafond(); });
  }
  HRESULT STDMETHODCALLTYPE get_ChiusuraRateInSospensione(VARIANT_BOOL* value) override {
    return Answer(value, [&] { return core_.ChiusuraRateInSospensione(); });
  }
  HRESULT STDMETHODCALLTYPE get_RiaperturaRateInSospensione(VARIANT_BOOL* value) override {
    return Answer(value, [&] { return core_.RiaperturaRateInSospensione(); });
  }
  HRESULT STDMETHODCALLTYPE OkModifica(VARIANT_BOOL* ok) override {
    return Answer(ok, [&] { return core_.OkModifica(); });
  }
  HRESULT STDMETHODCALLTYPE ScadenzeInDistinta(VARIANT_BOOL* found) override {
    return Answer(found, [&] { return core_.ScadenzeInDistinta(); });
  }
  HRESULT STDMETHODCALLTYPE ScadenzeInDistintaIncPag(VARIANT_BOOL* found) override {
    return Answer(found, [&] { return core_.ScadenzeInDistintaIncPag(); });
  }
  HRESULT STDMETHODCALLTYPE OkCancella(VARIANT_BOOL* ok) override {
    return Answer(ok, [&] { return core_.OkCancella(); });
  }
  HRESULT STDMETHODCALLTYPE CheckDuplicatoNrDocRicevuto(BSTR aNumeroDoc, VARIANT aDataDoc,
                                                        LONG aIdAnagrafica, LONG aIdPrimaNota,
                                                        VARIANT_BOOL* found) override {
    return Answer(found, [&] {
      return core_.CheckDuplicatoNrDocRicevuto([&] { return FromBstr(aNumeroDoc); },
                                               [&] { return FromVariant(aDataDoc); }, aIdAnagrafica,
                                               aIdPrimaNota);
    });
  }
  HRESULT STDMETHODCALLTYPE ContabilitaChiusa(VARIANT_BOOL* closed) override {
    return Answer(closed, [&] { return core_.ContabilitaChiusa(); });
  }
  HRESULT STDMETHODCALLTYPE putref_RsCausale(IDispatch* set) override {
    return Assign(set, &KalCOGCheck::RsCausale);
  }
  HRESULT STDMETHODCALLTYPE putref_RsScadenze(IDispatch* set) override {
    return Assign(set, &KalCOGCheck::RsScadenze);
  }
  HRESULT STDMETHODCALLTYPE get_ErrString(BSTR* text) override {
    return Text(text, "KalCOGCheck.ErrString", [&] { return core_.ErrString(); });
  }
  HRESULT STDMETHODCALLTYPE putref_RsTesta(IDispatch* set) override {
    return Assign(set, &KalCOGCheck::RsTesta);
  }
  HRESULT STDMETHODCALLTYPE putref_RsRIva(IDispatch* set) override {
    return Assign(set, &KalCOGCheck::RsRIva);
  }
  HRESULT STDMETHODCALLTYPE putref_RsRCont(IDispatch* set) override {
    return Assign(set, &KalCOGCheck::RsRCont);
  }
  HRESULT STDMETHODCALLTYPE OkAggiorna(VARIANT_BOOL aCheckRegIva, VARIANT_BOOL aCheckDuplicatoDoc,
                                       VARIANT_BOOL* ok) override {
    return Answer(ok, [&] {
      return core_.OkAggiorna(aCheckRegIva != VARIANT_FALSE, aCheckDuplicatoDoc != VARIANT_FALSE);
    });
  }
  HRESULT STDMETHODCALLTYPE LibroGiornaleStampato(VARIANT aDataReg,
                                                  VARIANT_BOOL* printed) override {
    return Answer(printed, [&] {
      return core_.LibroGiornaleStampato([&] { return FromVariant(aDataReg); });
    });
  }
  HRESULT STDMETHODCALLTYPE RegistriIvaStampati(VARIANT aDataReg, SHORT aTipoRegIva,
                                                SHORT aSezionale, VARIANT_BOOL* printed) override {
    return Answer(printed, [&] {
      return core_.RegistriIvaStampati([&] { return FromVariant(aDataReg); }, aTipoRegIva,
                                       aSezionale);
    });
  }
  HRESULT STDMETHODCALLTYPE LeggiIdPrimaNota(LONG aIdDoc, SHORT aTipoDoc,
                                             LONG* idPrimaNota) override {
    return Answer(idPrimaNota, [&] { return core_.LeggiIdPrimaNota(aIdDoc, aTipoDoc); });
  }
  HRESULT STDMETHODCALLTYPE putref_RsRisconti(IDispatch* set) override {
    return Assign(set, &KalCOGCheck::RsRisconti);
  }
  HRESULT STDMETHODCALLTYPE putref_RsFiscalitaBL(IDispatch* set) override {
    return Assign(set, &KalCOGCheck::RsFiscalitaBL);
  }
  HRESULT STDMETHODCALLTYPE CheckDuplicatoNrDocEmesso(SHORT aTipoRegIva, SHORT aSezionaleIva,
                                                      BSTR aNumeroDoc, VARIANT aDataDoc,
                                                      LONG aIdPrimaNota,
                                                      VARIANT_BOOL* found) override {
    return Answer(found, [&] {
      return core_.CheckDuplicatoNrDocEmesso(
          aTipoRegIva, aSezionaleIva, [&] { return FromBstr(aNumeroDoc); },
          [&] { return FromVariant(aDataDoc); }, aIdPrimaNota);
    });
  }
  HRESULT STDMETHODCALLTYPE GenericFx(BSTR /*v1*/, IDispatch* /*v2*/, LONG* nothing) override {
    return Answer(nothing, [&] { return core_.GenericFx({}, nullptr); });
  }

 private:
  ~Checker() = default;  // by its last Release

  // One member without an answer; afterwards nothing of the host's is held but record sets. What it
  // calls is the host's code, which may let go of this object meanwhile.
  template <class Body>
  HRESULT Run(Body&& body) {
    const ComPtr<Checker> held(this);
    return Guarded([&] {
      const BorrowedSets::Use use(sets_);
      body();
    });
  }
  // One member with an answer, which stays empty where an error is raised.
  template <class Out, class Body>
  HRESULT Answer(Out* answer, Body&& body) {
    if (answer == nullptr) {
      return E_POINTER;
    }
    *answer = {};
    return Run([&] { *answer = ToAutomation(body()); });
  }
  // The same for a text, which is made within the operation: memory that fails is an error with the
  // operation's tag in its trail.
  template <class Body>
  HRESULT Text(BSTR* answer, OperationTag tag, Body&& body) {
    if (answer == nullptr) {
      return E_POINTER;
    }
    *answer = nullptr;
    return Run([&] { *answer = MakeText(body(), tag); });
  }
  static BSTR MakeText(std::string_view text, OperationTag tag);
  HRESULT Assign(IDispatch* set, void (KalCOGCheck::*member)(Unread<RecordsetRef>));

  // The type description that calls by name go through, loaded when it is first needed.
  HRESULT TypeInfo(ComPtr<ITypeInfo>& info);

  ModuleUse use_;
  std::atomic<ULONG> references_{1};
  ComPtr<ITypeInfo> typeInfo_;
  BorrowedSets sets_;  // before the siblings and the core, which use what stands above them
  DispatchSiblings siblings_;
  KalCOGCheck core_{siblings_};
};

}  // namespace kal
