// What the DLL carries beside its code: the type library, slot by slot, and the file's version. The
// 32-bit DLL is looked at as well where KAL_SERVER32 names it: its library can be read by anyone.

#include <gtest/gtest.h>

#include <cstdlib>
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

// A member's id is its place in the interface, so that ids and slots can't go apart unseen.
TEST(TypeLibrary, HasTheInterfaceInItsOrderAndTheClass) {
  for (const std::wstring& path : Servers()) {
    SCOPED_TRACE(ToUtf8(path));
    ComPtr<ITypeLib> library;
    ComPtr<ITypeInfo> coclass;
    ComPtr<ITypeInfo> info;
    ASSERT_EQ(LoadTypeLibEx(path.c_str(), REGKIND_NONE, library.Put()), S_OK);
    EXPECT_EQ(library->GetTypeInfoCount(), 2U);  // the interface and the class, nothing of stdole
    EXPECT_EQ(library->GetTypeInfoOfGuid(kClassId, coclass.Put()), S_OK);
    ASSERT_EQ(library->GetTypeInfoOfGuid(kInterfaceId, info.Put()), S_OK);
    TYPEATTR* attributes = nullptr;
    ASSERT_EQ(info->GetTypeAttr(&attributes), S_OK);
    EXPECT_EQ(attributes->wTypeFlags & TYPEFLAG_FDUAL, TYPEFLAG_FDUAL);
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
      info->ReleaseFuncDesc(member);
    }
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
