// The type library that the DLL carries, member by member as docs/windows.md promises it to hosts.

#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <sstream>
#include <string>

#include "server/Conversion.h"
#include "tests/windows/ServerFile.h"

namespace kal::test {
namespace {

// What the document promises to hosts.
std::string Promised() {
  std::ifstream file(KAL_ROOT "/docs/windows.md", std::ios::binary);
  std::ostringstream all;
  all << file.rdbuf();
  const std::string text = all.str();
  const std::string begin = "<!-- interface -->\n```text\n";
  const std::size_t at = text.find(begin) + begin.size();
  return text.substr(at, text.find("```", at) - at);
}

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
  EXPECT_EQ(found, Promised());
}

}  // namespace
}  // namespace kal::test
