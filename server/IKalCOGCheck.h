// IKalCOGCheck: the component's interface as compiled callers see it, slot by slot.
//
// The order is that of Kal_COGCheck.idl and never changes. Texts are handed over and received as
// usual in automation: the callee copies what it is given, the caller frees what it receives.

#pragma once

#include "server/Automation.h"

namespace kal {

struct IKalCOGCheck : IDispatch {
  virtual HRESULT STDMETHODCALLTYPE put_TmpTableScadenze(BSTR name) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_TmpTableScadenze(BSTR* name) = 0;
  virtual HRESULT STDMETHODCALLTYPE put_IsFromCard(VARIANT_BOOL value) = 0;
  virtual HRESULT STDMETHODCALLTYPE put_IsParcella(VARIANT_BOOL value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_IsInfragruppo(BSTR* text) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_WarnStringModifica(BSTR* text) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_WarnString(BSTR* text) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_WarnDuplicatoDocString(BSTR* text) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_WarnProtocolloString(BSTR* text) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_WarnInfragruppoString(BSTR* text) = 0;
  virtual HRESULT STDMETHODCALLTYPE OkCancellaDoc(SHORT aTipologiaDoc, LONG aIdDoc,
                                                  VARIANT_BOOL* ok) = 0;
  virtual HRESULT STDMETHODCALLTYPE OkModificaDoc(SHORT aTipologiaDoc, LONG aIdDoc,
                                                  VARIANT_BOOL* ok) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_ImportoPlafond(CY* amount) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_ChiusuraRateInSospensione(VARIANT_BOOL* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_RiaperturaRateInSospensione(VARIANT_BOOL* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE OkModifica(VARIANT_BOOL* ok) = 0;
  virtual HRESULT STDMETHODCALLTYPE ScadenzeInDistinta(VARIANT_BOOL* found) = 0;
  virtual HRESULT STDMETHODCALLTYPE ScadenzeInDistintaIncPag(VARIANT_BOOL* found) = 0;
  virtual HRESULT STDMETHODCALLTYPE OkCancella(VARIANT_BOOL* ok) = 0;
  virtual HRESULT STDMETHODCALLTYPE CheckDuplicatoNrDocRicevuto(BSTR aNumeroDoc, VARIANT aDataDoc,
                                                                LONG aIdAnagrafica,
                                                                LONG aIdPrimaNota,
                                                                VARIANT_BOOL* found) = 0;
  virtual HRESULT STDMETHODCALLTYPE ContabilitaChiusa(VARIANT_BOOL* closed) = 0;
  virtual HRESULT STDMETHODCALLTYPE putref_RsCausale(IDispatch* set) = 0;
  virtual HRESULT STDMETHODCALLTYPE putref_RsScadenze(IDispatch* set) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_ErrString(BSTR* text) = 0;
  virtual HRESULT STDMETHODCALLTYPE putref_RsTesta(IDispatch* set) = 0;
  virtual HRESULT STDMETHODCALLTYPE putref_RsRIva(IDispatch* set) = 0;
  virtual HRESULT STDMETHODCALLTYPE putref_RsRCont(IDispatch* set) = 0;
  virtual HRESULT STDMETHODCALLTYPE OkAggiorna(VARIANT_BOOL aCheckRegIva,
                                               VARIANT_BOOL aCheckDuplicatoDoc,
                                               VARIANT_BOOL* ok) = 0;
  virtual HRESULT STDMETHODCALLTYPE LibroGiornaleStampato(VARIANT aDataReg,
                                                          VARIANT_BOOL* printed) = 0;
  virtual HRESULT STDMETHODCALLTYPE RegistriIvaStampati(VARIANT aDataReg, SHORT aTipoRegIva,
                                                        SHORT aSezionale,
                                                        VARIANT_BOOL* printed) = 0;
  virtual HRESULT STDMETHODCALLTYPE LeggiIdPrimaNota(LONG aIdDoc, SHORT aTipoDoc,
                                                     LONG* idPrimaNota) = 0;
  virtual HRESULT STDMETHODCALLTYPE putref_RsRisconti(IDispatch* set) = 0;
  virtual HRESULT STDMETHODCALLTYPE putref_RsFiscalitaBL(IDispatch* set) = 0;
  virtual HRESULT STDMETHODCALLTYPE CheckDuplicatoNrDocEmesso(SHORT aTipoRegIva,
                                                              SHORT aSezionaleIva, BSTR aNumeroDoc,
                                                              VARIANT aDataDoc, LONG aIdPrimaNota,
                                                              VARIANT_BOOL* found) = 0;
  virtual HRESULT STDMETHODCALLTYPE GenericFx(BSTR v1, IDispatch* v2, LONG* nothing) = 0;

 protected:
  ~IKalCOGCheck() = default;  // callers release what they hold
};

}  // namespace kal
