// A DLL with the siblings and an entry to check, for script hosts: "KalDoubles.Entry" hands out the
// record sets of an entry, takes changes of it, and makes a question to the siblings fail.

#include "tests/windows/Doubles.h"
#include "tests/windows/ScriptedSiblings.h"

namespace kal::test {
namespace {

ScriptedSiblings& TheSiblings() {
  static ScriptedSiblings siblings(
      "Open COGBollati 2024 1 -> GiorContStampato:b=1;Open COGPrimeNoteTeste 13 31 -> "
      "IdPrimaNota:l=7");
  return siblings;
}

ComPtr<IDispatch> MakeEntryDouble() {
  const auto changes = std::make_shared<std::string>();
  const auto text = [](Arguments in) { return CStr(FromVariant(*in[0])); };
  return MakeDouble(
      "Entry",
      {Answers("RecordSet", DISPATCH_METHOD, 1,
               [=](Arguments in) { return MakeRecordsetDouble(MakeEntry(*changes).at(text(in))); }),
       Answers("Change", DISPATCH_METHOD, 1, [=](Arguments in) { *changes += text(in) + ";"; }),
       Answers("FailAt", DISPATCH_METHOD, 1,
               [=](Arguments in) { TheSiblings().FailAt(CLng(text(in))); }),
       Answers("Live", DISPATCH_PROPERTYGET, 0,
               [](Arguments) { return static_cast<std::int32_t>(LiveDoubles()); })});
}

}  // namespace
}  // namespace kal::test

using namespace kal::test;

STDAPI DllGetClassObject(REFCLSID classId, REFIID iid, void** object) {
  for (std::size_t at = 0; at <= kEntryClass; ++at) {
    if (classId == ClassIdOf(at)) {
      return MakeClassObject([at] {
               return at == kEntryClass ? MakeEntryDouble() : MakeDoubleOf(at, TheSiblings());
             })
          ->QueryInterface(iid, object);
    }
  }
  return CLASS_E_CLASSNOTAVAILABLE;
}

STDAPI DllCanUnloadNow() { return S_FALSE; }

STDAPI DllRegisterServer() {
  std::wstring path(MAX_PATH, L'\0');
  path.resize(GetModuleFileNameW(GetModuleHandleW(L"KalDoubles.dll"), path.data(), MAX_PATH));
  WriteClasses(path);
  return S_OK;
}

STDAPI DllUnregisterServer() {
  DeleteClasses();
  return S_OK;
}
