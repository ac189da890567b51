// What the DLL carries beside its code: the type library, slot by slot, and the file's version. The
// 32-bit DLL is looked at as well where KAL_SERVER32 names it: its library can be read by anyone.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include "cmake/Version.h"
#include "server/Conversion.h"
#include "tests/windows/ServerFile.h"

namespace kal::test {
namespace {

std::vector<std::wstring> Servers() {
  std::vector<std::wstring> paths = {ServerPath()};
  if (const wchar_t* const other = _wgetenv(L"KAL_SERVER32")) {
    paths.emplace_back(other);
  }
  return paths;
}

// The methods with arguments, by which names script hosts and compiled ones may hand them over.
constexpr std::wstring_view kMethods =
    L"OkCancellaDoc aTipologiaDoc aIdDoc\nOkModificaDoc aTipologiaDoc aIdDoc\n"
    L"CheckDuplicatoNrDocRicevuto aNumeroDoc aDataDoc aIdAnagrafica aIdPrimaNota\n"
    L"OkAggiorna CheckRegIva CheckDuplicatoDoc\nLibroGiornaleStampato aDataReg\n"
    L"RegistriIvaStampati aDataReg aTipoRegIva aSezionale\nLeggiIdPrimaNota aIdDoc aTipoDoc\n"
    L"CheckDuplicatoNrDocEmesso aTipoRegIva aSezionaleIva aNumeroDoc aDataDoc aIdPrimaNota\n"
    L"GenericFx v1 v2\n";

// The method's name and those of its arguments; nothing for one that takes none.
std::wstring NamesOf(ITypeInfo& info, const FUNCDESC& member) {
  BSTR names[8] = {};
  UINT count = 0;
  info.GetNames(member.memid, names, 8, &count);
  const auto inputs = static_cast<UINT>(std::count_if(
      member.lprgelemdescParam, member.lprgelemdescParam + member.cParams,
      [](const ELEMDESC& one) { return (one.paramdesc.wParamFlags & PARAMFLAG_FRETVAL) == 0; }));
  std::wstring joined;
  for (UINT at = 0; at < count; ++at) {
    joined += at > inputs ? L"" : (at == 0 ? L"" : L" ") + std::wstring(names[at]);
    SysFreeString(names[at]);
  }
  return member.invkind == INVOKE_FUNC && inputs > 0 ? joined + L"\n" : L"";
}

// What is made by its name is the class, and what it then is by default is the interface.
void ExpectCreatable(ITypeInfo& coclass) {
  TYPEATTR* attributes = nullptr;
  int flags = 0;
  HREFTYPE reference = 0;
  ComPtr<ITypeInfo> first;
  ASSERT_EQ(coclass.GetTypeAttr(&attributes), S_OK);
  EXPECT_EQ(attributes->wTypeFlags & TYPEFLAG_FCANCREATE, TYPEFLAG_FCANCREATE);
  coclass.ReleaseTypeAttr(attributes);
  ASSERT_EQ(coclass.GetImplTypeFlags(0, &flags), S_OK);
  EXPECT_EQ(flags & IMPLTYPEFLAG_FDEFAULT, IMPLTYPEFLAG_FDEFAULT);
  ASSERT_EQ(coclass.GetRefTypeOfImplType(0, &reference), S_OK);
  ASSERT_EQ(coclass.GetRefTypeInfo(reference, first.Put()), S_OK);
  ASSERT_EQ(first->GetTypeAttr(&attributes), S_OK);
  EXPECT_EQ(attributes->guid, kInterfaceId);
  first->ReleaseTypeAttr(attributes);
}

// A member's id is its place in the interface, so that ids and slots can't go apart unseen.
TEST(TypeLibrary, HasTheInterfaceInItsOrderAndTheClass) {
  for (const std::wstring& path : Servers()) {
    SCOPED_TRACE(ToUtf8(path));
    ComPtr<ITypeLib> library;
    ComPtr<ITypeInfo> coclass;
    ComPtr<ITypeInfo> info;
    ASSERT_EQ(LoadTypeLibEx(path.c_str(), REGKIND_NONE, library.Put()), S_OK);
    EXPECT_EQ(library->GetTypeInfoCount(), 2U);  // the interface and the class, nothing of stdole
    ASSERT_EQ(library->GetTypeInfoOfGuid(kClassId, coclass.Put()), S_OK);
    ExpectCreatable(*coclass.Get());
    ASSERT_EQ(library->GetTypeInfoOfGuid(kInterfaceId, info.Put()), S_OK);
    TYPEATTR* attributes = nullptr;
    ASSERT_EQ(info->GetTypeAttr(&attributes), S_OK);
    EXPECT_EQ(attributes->wTypeFlags & TYPEFLAG_FDUAL, TYPEFLAG_FDUAL);
    std::wstring methods;
    constexpr UINT kOfDispatch = 7;  // the slots of IUnknown and IDispatch
    EXPECT_EQ(attributes->cFuncs, 35 + kOfDispatch);
    for (UINT slot = kOfDispatch; slot < attributes->cFuncs; ++slot) {
      FUNCDESC* member = nullptr;
      ASSERT_EQ(info->GetFuncDesc(slot, &member), S_OK);
      const auto place = static_cast<MEMBERID>(slot - kOfDispatch + 1);
      EXPECT_EQ(member->memid, place == 2 ? 1 : place);  // the first two are one property
      EXPECT_EQ(static_cast<std::size_t>(member->oVft), slot * sizeof(void*));
      ScopedVariant help = ToVariant("");
      info->GetDocumentation(member->memid, nullptr, &help->bstrVal, nullptr, nullptr);
      EXPECT_NE(CStr(FromVariant(*help)), "") << place;
      methods += NamesOf(*info.Get(), *member);
      info->ReleaseFuncDesc(member);
    }
    EXPECT_EQ(ToUtf8(methods), ToUtf8(kMethods));
    info->ReleaseTypeAttr(attributes);
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
      EXPECT_EQ(ToUtf8(text), KAL_VERSION);
    }
  }
}

}  // namespace
}  // namespace kal::test
