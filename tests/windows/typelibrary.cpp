// The type library inside the DLL, member by member and slot by slot, and the file's version. The
// 32-bit DLL is looked at as well where KAL_SERVER32 names it: its library can be read by anyone.

#include <gtest/gtest.h>

#include <cstdlib>
#include <vector>

#include "server/Conversion.h"
#include "server/modClassIdGenerator.h"
#include "tests/windows/Doors.h"

namespace kal::test {
namespace {

struct MemberRow {
  std::wstring name;
  int kind;
  VARTYPE answer;  // VT_VOID: none
  std::vector<VARTYPE> arguments;
};

constexpr int kLet = INVOKE_PROPERTYPUT;
constexpr int kSet = INVOKE_PROPERTYPUTREF;
constexpr int kGet = INVOKE_PROPERTYGET;
constexpr int kCall = INVOKE_FUNC;

// In interface order.
const MemberRow kMembers[] = {
    {L"TmpTableScadenze", kLet, VT_VOID, {VT_BSTR}},
    {L"TmpTableScadenze", kGet, VT_BSTR, {}},
    {L"IsFromCard", kLet, VT_VOID, {VT_BOOL}},
    {L"IsParcella", kLet, VT_VOID, {VT_BOOL}},
    {L"IsInfragruppo", kGet, VT_BSTR, {}},
    {L"WarnStringModifica", kGet, VT_BSTR, {}},
    {L"WarnString", kGet, VT_BSTR, {}},
    {L"WarnDuplicatoDocString", kGet, VT_BSTR, {}},
    {L"WarnProtocolloString", kGet, VT_BSTR, {}},
    {L"WarnInfragruppoString", kGet, VT_BSTR, {}},
    {L"OkCancellaDoc", kCall, VT_BOOL, {VT_I2, VT_I4}},
    {L"OkModificaDoc", kCall, VT_BOOL, {VT_I2, VT_I4}},
    {L"ImportoPlafond", kGet, VT_CY, {}},
    {L"ChiusuraRateInSospensione", kGet, VT_BOOL, {}},
    {L"RiaperturaRateInSospensione", kGet, VT_BOOL, {}},
    {L"OkModifica", kCall, VT_BOOL, {}},
    {L"ScadenzeInDistinta", kCall, VT_BOOL, {}},
    {L"ScadenzeInDistintaIncPag", kCall, VT_BOOL, {}},
    {L"OkCancella", kCall, VT_BOOL, {}},
    {L"CheckDuplicatoNrDocRicevuto", kCall, VT_BOOL, {VT_BSTR, VT_VARIANT, VT_I4, VT_I4}},
    {L"ContabilitaChiusa", kCall, VT_BOOL, {}},
    {L"RsCausale", kSet, VT_VOID, {VT_DISPATCH}},
    {L"RsScadenze", kSet, VT_VOID, {VT_DISPATCH}},
    {L"ErrString", kGet, VT_BSTR, {}},
    {L"RsTesta", kSet, VT_VOID, {VT_DISPATCH}},
    {L"RsRIva", kSet, VT_VOID, {VT_DISPATCH}},
    {L"RsRCont", kSet, VT_VOID, {VT_DISPATCH}},
    {L"OkAggiorna", kCall, VT_BOOL, {VT_BOOL, VT_BOOL}},
    {L"LibroGiornaleStampato", kCall, VT_BOOL, {VT_VARIANT}},
    {L"RegistriIvaStampati", kCall, VT_BOOL, {VT_VARIANT, VT_I2, VT_I2}},
    {L"LeggiIdPrimaNota", kCall, VT_I4, {VT_I4, VT_I2}},
    {L"RsRisconti", kSet, VT_VOID, {VT_DISPATCH}},
    {L"RsFiscalitaBL", kSet, VT_VOID, {VT_DISPATCH}},
    {L"CheckDuplicatoNrDocEmesso", kCall, VT_BOOL, {VT_I2, VT_I2, VT_BSTR, VT_VARIANT, VT_I4}},
    {L"GenericFx", kCall, VT_I4, {VT_BSTR, VT_DISPATCH}},
};

std::vector<std::wstring> Servers() {
  std::vector<std::wstring> paths = {ServerPath()};
  if (const wchar_t* const other = _wgetenv(L"KAL_SERVER32")) {
    paths.emplace_back(other);
  }
  return paths;
}

// What a member looks like to a caller by name.
MemberRow Described(ITypeInfo& info, const FUNCDESC& member) {
  MemberRow row{L"", member.invkind, member.elemdescFunc.tdesc.vt, {}};
  for (SHORT at = 0; at < member.cParams; ++at) {
    row.arguments.push_back(member.lprgelemdescParam[at].tdesc.vt);
  }
  BSTR name = nullptr;
  UINT count = 0;
  info.GetNames(member.memid, &name, 1, &count);
  row.name = name;
  SysFreeString(name);
  return row;
}

TEST(TypeLibrary, HasTheMembersInInterfaceOrder) {
  for (const std::wstring& path : Servers()) {
    SCOPED_TRACE(ToUtf8(path));
    ComPtr<ITypeLib> library;
    ComPtr<ITypeInfo> info;
    ASSERT_EQ(LoadTypeLibEx(path.c_str(), REGKIND_NONE, library.Put()), S_OK);
    ASSERT_EQ(library->GetTypeInfoOfGuid(kInterfaceId, info.Put()), S_OK);
    TYPEATTR* attributes = nullptr;
    ASSERT_EQ(info->GetTypeAttr(&attributes), S_OK);
    EXPECT_EQ(attributes->wTypeFlags & TYPEFLAG_FDUAL, TYPEFLAG_FDUAL);
    constexpr UINT kOfDispatch = 7;  // the slots of IUnknown and IDispatch
    ASSERT_EQ(attributes->cFuncs, std::size(kMembers) + kOfDispatch);
    for (UINT at = 0; at < std::size(kMembers); ++at) {
      const MemberRow& expected = kMembers[at];
      SCOPED_TRACE(ToUtf8(expected.name));
      FUNCDESC* member = nullptr;
      ASSERT_EQ(info->GetFuncDesc(at + kOfDispatch, &member), S_OK);
      const MemberRow found = Described(*info.Get(), *member);
      EXPECT_EQ(found.name, expected.name);
      EXPECT_EQ(found.kind, expected.kind);
      EXPECT_EQ(found.answer, expected.answer);
      EXPECT_EQ(found.arguments, expected.arguments);
      EXPECT_EQ(member->memid, at == 1 ? 1 : static_cast<MEMBERID>(at + 1));
      EXPECT_EQ(static_cast<std::size_t>(member->oVft), (at + kOfDispatch) * sizeof(void*));
      info->ReleaseFuncDesc(member);
    }
    info->ReleaseTypeAttr(attributes);
  }
}

TEST(TypeLibrary, CarriesTheIdentifiers) {
  for (const std::wstring& path : Servers()) {
    SCOPED_TRACE(ToUtf8(path));
    ComPtr<ITypeLib> library;
    ComPtr<ITypeInfo> coclass;
    TLIBATTR* attributes = nullptr;
    BSTR name = nullptr;
    ASSERT_EQ(LoadTypeLibEx(path.c_str(), REGKIND_NONE, library.Put()), S_OK);
    ASSERT_EQ(library->GetLibAttr(&attributes), S_OK);
    EXPECT_TRUE(attributes->guid == kLibraryId);
    EXPECT_EQ(attributes->wMajorVerNum, kLibraryMajor);
    EXPECT_EQ(attributes->wMinorVerNum, kLibraryMinor);
    library->ReleaseTLibAttr(attributes);
    ASSERT_EQ(library->GetDocumentation(-1, &name, nullptr, nullptr, nullptr), S_OK);
    EXPECT_STREQ(name, L"Kal_COGCheck");
    SysFreeString(name);
    ASSERT_EQ(library->GetTypeInfoOfGuid(kClassId, coclass.Put()), S_OK);
    ASSERT_EQ(coclass->GetDocumentation(-1, &name, nullptr, nullptr, nullptr), S_OK);
    EXPECT_STREQ(name, L"KalCOGCheck");
    SysFreeString(name);
    EXPECT_EQ(library->GetTypeInfoCount(), 2U);  // the interface and the class, nothing of stdole
  }
}

TEST(VersionResource, SaysTheVersionOfFileAndProduct) {
  for (const std::wstring& path : Servers()) {
    SCOPED_TRACE(ToUtf8(path));
    DWORD ignored = 0;
    std::vector<char> resource(GetFileVersionInfoSizeW(path.c_str(), &ignored));
    ASSERT_FALSE(resource.empty());
    ASSERT_TRUE(
        GetFileVersionInfoW(path.c_str(), 0, static_cast<DWORD>(resource.size()), resource.data()));
    for (const wchar_t* const key : {L"FileVersion", L"ProductVersion"}) {
      wchar_t* text = nullptr;
      UINT length = 0;
      const std::wstring query = std::wstring(L"\\StringFileInfo\\040904B0\\") + key;
      ASSERT_TRUE(
          VerQueryValueW(resource.data(), query.c_str(), reinterpret_cast<void**>(&text), &length));
      EXPECT_STREQ(text, L"5.05.0017");
    }
  }
}

}  // namespace
}  // namespace kal::test
