// A DLL with the siblings and an entry to check, for script hosts: "KalDoubles.Entry" hands out the
// record sets of an entry, takes changes of it, and makes a question to the siblings fail.

#include "server/Boundary.h"
#include "server/Conversion.h"
#include "tests/windows/Doubles.h"
#include "tests/windows/SmallCompany.h"

namespace kal::test {
namespace {

constexpr const wchar_t* kEntry = L"KalDoubles.Entry";

SmallCompany& Company() {
  static SmallCompany company;
  return company;
}

ComPtr<IDispatch> MakeEntryDouble() {
  const auto changes = std::make_shared<std::string>();
  return MakeDouble("Entry",
                    {{L"RecordSet", DISPATCH_METHOD, 1,
                      [changes](std::span<VARIANT*> in) {
                        const EntrySets sets = MakeEntry("purchase", *changes);
                        return ToVariant(MakeRecordsetDouble(sets.at(CStr(FromVariant(*in[0])))));
                      }},
                     {L"Change", DISPATCH_METHOD, 1,
                      [changes](std::span<VARIANT*> in) {
                        *changes += CStr(FromVariant(*in[0])) + ";";
                        return ScopedVariant();
                      }},
                     {L"FailAt", DISPATCH_METHOD, 1,
                      [](std::span<VARIANT*> in) {
                        Company().FailAt(CLng(FromVariant(*in[0])));
                        return ScopedVariant();
                      }},
                     {L"Live", DISPATCH_PROPERTYGET, 0, [](std::span<VARIANT*>) {
                        return ToVariant(static_cast<std::int32_t>(LiveDoubles()));
                      }}});
}

std::wstring OwnPath() {
  HMODULE module = nullptr;
  GetModuleHandleExW(
      GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
      reinterpret_cast<LPCWSTR>(&kEntry), &module);
  std::wstring path(MAX_PATH, L'\0');
  path.resize(GetModuleFileNameW(module, path.data(), MAX_PATH));
  return path;
}

// The siblings' classes, and the entry's behind them.
std::vector<std::wstring> ProgIds() {
  std::vector<std::wstring> ids = SiblingProgIds();
  ids.emplace_back(kEntry);
  return ids;
}

}  // namespace
}  // namespace kal::test

using namespace kal::test;

STDAPI DllGetClassObject(REFCLSID classId, REFIID iid, void** object) {
  const std::size_t siblings = SiblingProgIds().size();
  for (std::size_t at = 0; at <= siblings; ++at) {
    if (classId == SiblingClassId(at)) {
      return MakeClassObject([at, siblings] {
               return at < siblings ? MakeSiblingDouble(at, Company()) : MakeEntryDouble();
             })
          ->QueryInterface(iid, object);
    }
  }
  return CLASS_E_CLASSNOTAVAILABLE;
}

STDAPI DllCanUnloadNow() { return S_FALSE; }

STDAPI DllRegisterServer() {
  const auto ids = ProgIds();
  for (std::size_t at = 0; at < ids.size(); ++at) {
    WriteClass(ids[at], SiblingClassId(at), OwnPath());
  }
  return S_OK;
}

STDAPI DllUnregisterServer() {
  const auto ids = ProgIds();
  for (std::size_t at = 0; at < ids.size(); ++at) {
    DeleteClass(ids[at], SiblingClassId(at));
  }
  return S_OK;
}
