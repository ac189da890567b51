// The type library that the DLL carries, member by member as it was promised to hosts.

#include <gtest/gtest.h>

#include <map>
#include <string>

#include "server/Conversion.h"
#include "tests/windows/ServerFile.h"

namespace kal::test {
namespace {

// By id: the two sides of TmpTableScadenze share the first. The order is that of the vtable.
constexpr std::string_view kPromised =
    "library Kal_COGCheck 5.5 {F1E7C4F0-47C0-4B78-A24C-B1581465E9B7}\n"
    "class KalCOGCheck creatable {5D5E9CCA-889B-4AC2-8C4B-81176561C0FA}\n"
    "default interface IKalCOGCheck dual {7484295E-BB37-4AE5-B6C6-BD112EAB8657}\n"
    "1 put TmpTableScadenze(text)\n"
    "1 get TmpTableScadenze text\n"
    "3 put IsFromCard(boolean)\n"
    "4 put IsParcella(boolean)\n"
    "5 get IsInfragruppo text\n"
    "6 get WarnStringModifica text\n"
    "7 get WarnString text\n"
    "8 get WarnDuplicatoDocString text\n"
    "9 get WarnProtocolloString text\n"
    "10 get WarnInfragruppoString text\n"
    "11 call OkCancellaDoc(aTipologiaDoc short, aIdDoc long) boolean\n"
    "12 call OkModificaDoc(aTipologiaDoc short, aIdDoc long) boolean\n"
    "13 get ImportoPlafond currency\n"
    "14 get ChiusuraRateInSospensione boolean\n"
    "15 get RiaperturaRateInSospensione boolean\n"
    "16 call OkModifica boolean\n"
    "17 call ScadenzeInDistinta boolean\n"
    "18 call ScadenzeInDistintaIncPag boolean\n"
    "19 call OkCancella boolean\n"
    "20 call CheckDuplicatoNrDocRicevuto(aNumeroDoc text, aDataDoc variant, aIdAnagrafica long, "
    "aIdPrimaNota long) boolean\n"
    "21 call ContabilitaChiusa boolean\n"
    "22 set RsCausale(object)\n"
    "23 set RsScadenze(object)\n"
    "24 get ErrString text\n"
    "25 set RsTesta(object)\n"
    "26 set RsRIva(object)\n"
    "27 set RsRCont(object)\n"
    "28 call OkAggiorna(CheckRegIva boolean, CheckDuplicatoDoc boolean) boolean\n"
    "29 call LibroGiornaleStampato(aDataReg variant) boolean\n"
    "30 call RegistriIvaStampati(aDataReg variant, aTipoRegIva short, aSezionale short) boolean\n"
    "31 call LeggiIdPrimaNota(aIdDoc long, aTipoDoc short) long\n"
    "32 set RsRisconti(object)\n"
    "33 set RsFiscalitaBL(object)\n"
    "34 call CheckDuplicatoNrDocEmesso(aTipoRegIva short, aSezionaleIva short, aNumeroDoc text, "
    "aDataDoc variant, aIdPrimaNota long) boolean\n"
    "35 call GenericFx(v1 text, v2 object) long\n";

const std::map<int, std::string> kKinds = {{INVOKE_FUNC, " call "},
                                           {INVOKE_PROPERTYGET, " get "},
                                           {INVOKE_PROPERTYPUT, " put "},
                                           {INVOKE_PROPERTYPUTREF, " set "}};
const std::map<int, std::string> kTypes = {
    {VT_BSTR, "text"},   {VT_BOOL, "boolean"},    {VT_I2, "short"},        {VT_I4, "long"},
    {VT_CY, "currency"}, {VT_VARIANT, "variant"}, {VT_DISPATCH, "object"}, {VT_VOID, ""}};

std::string Braced(const GUID& id) {
  wchar_t text[39];
  StringFromGUID2(id, text, 39);
  return ToUtf8(text) + "\n";
}

// The name of a library, a type or a member. Everything has a help text.
template <class Described>
std::string NameOf(Described& it, MEMBERID member = MEMBERID_NIL) {
  ScopedVariant name = ToVariant("");
  ScopedVariant help = ToVariant("");
  it->GetDocumentation(member, &name->bstrVal, &help->bstrVal, nullptr, nullptr);
  EXPECT_GT(SysStringLen(help->bstrVal), 0U) << member;
  return CStr(FromVariant(*name));
}

std::string Shown(const ComPtr<ITypeInfo>& info, const FUNCDESC& member) {
  BSTR names[8] = {};
  UINT count = 0;
  info->GetNames(member.memid, names, 8, &count);
  std::string arguments;
  for (SHORT at = 0; at < member.cParams; ++at) {
    const std::string name = FromBstr(names[at + 1]);  // a property's has none
    arguments += (at == 0 ? "(" : ", ") + name + (name.empty() ? "" : " ") +
                 kTypes.at(member.lprgelemdescParam[at].tdesc.vt);
  }
  for (BSTR const name : names) {
    SysFreeString(name);
  }
  const std::string answer = kTypes.at(member.elemdescFunc.tdesc.vt);
  return std::to_string(member.memid) + kKinds.at(member.invkind) + NameOf(info, member.memid) +
         arguments + (arguments.empty() ? "" : ")") + (answer.empty() ? "" : " ") + answer + "\n";
}

TEST(TypeLibrary, IsAsPromised) {
  ComPtr<ITypeLib> library;
  ComPtr<ITypeInfo> coclass;
  ComPtr<ITypeInfo> info;
  TLIBATTR* ofLibrary = nullptr;
  TYPEATTR* attributes = nullptr;
  HREFTYPE reference = 0;
  int flags = 0;
  ASSERT_EQ(LoadTypeLibEx(ServerPath().c_str(), REGKIND_NONE, library.Put()), S_OK);
  EXPECT_EQ(library->GetTypeInfoCount(), 2U);  // nothing of stdole
  library->GetLibAttr(&ofLibrary);
  std::string found = "library " + NameOf(library) + " " + std::to_string(ofLibrary->wMajorVerNum) +
                      "." + std::to_string(ofLibrary->wMinorVerNum) + " " + Braced(ofLibrary->guid);
  library->ReleaseTLibAttr(ofLibrary);
  ASSERT_EQ(library->GetTypeInfoOfGuid(kClassId, coclass.Put()), S_OK);
  coclass->GetTypeAttr(&attributes);
  found += "class " + NameOf(coclass) +
           ((attributes->wTypeFlags & TYPEFLAG_FCANCREATE) != 0 ? " creatable " : " ") +
           Braced(attributes->guid);
  coclass->ReleaseTypeAttr(attributes);
  coclass->GetImplTypeFlags(0, &flags);
  coclass->GetRefTypeOfImplType(0, &reference);
  ASSERT_EQ(coclass->GetRefTypeInfo(reference, info.Put()), S_OK);
  info->GetTypeAttr(&attributes);
  found += ((flags & IMPLTYPEFLAG_FDEFAULT) != 0 ? "default interface " : "interface ") +
           NameOf(info) + ((attributes->wTypeFlags & TYPEFLAG_FDUAL) != 0 ? " dual " : " ") +
           Braced(attributes->guid);
  for (UINT slot = 7; slot < attributes->cFuncs; ++slot) {  // after those of IUnknown and IDispatch
    FUNCDESC* member = nullptr;
    ASSERT_EQ(info->GetFuncDesc(slot, &member), S_OK);
    EXPECT_EQ(static_cast<std::size_t>(member->oVft), slot * sizeof(void*));
    found += Shown(info, *member);
    info->ReleaseFuncDesc(member);
  }
  info->ReleaseTypeAttr(attributes);
  EXPECT_EQ(found, kPromised);
}

}  // namespace
}  // namespace kal::test
