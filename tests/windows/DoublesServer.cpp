// A DLL with the siblings and an entry to check, for script hosts: "KalDoubles.Entry" hands out the
// record sets of a sample, plays another one, and makes a question to the siblings fail.

#include "tests/windows/Doubles.h"
#include "tests/windows/Recorded.h"

namespace kal::test {
namespace {

std::unique_ptr<Sample>& Played() {
  static auto sample = std::make_unique<Sample>();
  return sample;
}

ComPtr<IDispatch> RecordSet(const std::string& name) {
  const Recorded& recorded = Played()->recorded;
  for (std::size_t at = 0; at < recorded.sets.size(); ++at) {
    if (recorded.entry.sets[at].set->name == name) {
      return MakeRecordsetDouble(recorded.sets[at]);
    }
  }
  return {};
}

ComPtr<IDispatch> MakeEntryDouble() {
  const auto text = [](Arguments in) { return CStr(FromVariant(*in[0])); };
  return MakeDouble(
      "Entry",
      {Answers("RecordSet", DISPATCH_METHOD, 1, [=](Arguments in) { return RecordSet(text(in)); }),
       Answers("Play", DISPATCH_METHOD, 1,
               [=](Arguments in) { Played() = std::make_unique<Sample>(text(in)); }),
       Answers("FailAt", DISPATCH_METHOD, 1,
               [=](Arguments in) { Played()->failAt = CLng(text(in)); }),
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
               return at == kEntryClass ? MakeEntryDouble() : MakeDoubleOf(at, *Played());
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
