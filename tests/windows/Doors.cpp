#include "tests/windows/Doors.h"

#include <algorithm>
#include <functional>
#include <iterator>
#include <map>
#include <set>
#include <variant>

#include "platform/RunTimeError.h"
#include "server/Boundary.h"
#include "server/Conversion.h"
#include "server/LateBound.h"
#include "server/modClassIdGenerator.h"
#include "tests/windows/Doubles.h"

namespace kal::test {
namespace {

constexpr const char* kProperties[] = {"ErrString",
                                       "WarnString",
                                       "WarnProtocolloString",
                                       "WarnDuplicatoDocString",
                                       "WarnInfragruppoString",
                                       "WarnStringModifica",
                                       "TmpTableScadenze",
                                       "IsInfragruppo",
                                       "ImportoPlafond",
                                       "ChiusuraRateInSospensione",
                                       "RiaperturaRateInSospensione"};

// What a compiled caller makes of a failed result.
void RequireSuccess(HRESULT result) {
  if (SUCCEEDED(result)) {
    return;
  }
  ComPtr<IErrorInfo> error;
  BSTR source = nullptr;
  BSTR description = nullptr;
  if (GetErrorInfo(0, error.Put()) == S_OK) {
    error->GetSource(&source);
    error->GetDescription(&description);
  }
  const RunTimeError raised(NumberOfResult(result), FromBstr(source), FromBstr(description));
  SysFreeString(source);
  SysFreeString(description);
  throw raised;
}

class CoreDoor final : public Door {
 public:
  explicit CoreDoor(SmallCompany& company) : checker_(company) {}

  void Assign(std::string_view member, const std::shared_ptr<Recordset>& set) override {
    static const std::map<std::string_view, void (KalCOGCheck::*)(RecordsetRef)> kMembers = {
        {"RsTesta", &KalCOGCheck::RsTesta},
        {"RsRIva", &KalCOGCheck::RsRIva},
        {"RsRCont", &KalCOGCheck::RsRCont},
        {"RsScadenze", &KalCOGCheck::RsScadenze},
        {"RsCausale", &KalCOGCheck::RsCausale},
        {"RsRisconti", &KalCOGCheck::RsRisconti},
        {"RsFiscalitaBL", &KalCOGCheck::RsFiscalitaBL}};
    (checker_.*kMembers.at(member))(set);
  }
  void AssignText(std::string_view text) override { checker_.TmpTableScadenze(text); }
  Variant Call(const host::Operation& operation, const std::vector<Variant>& arguments) override {
    return std::visit([](auto answer) { return Variant(answer); },
                      operation.call(checker_, arguments));
  }
  Variant Get(std::string_view property) override {
    static const std::map<std::string_view, std::function<Variant(KalCOGCheck&)>> kGetters = {
        {"ErrString", &KalCOGCheck::ErrString},
        {"WarnString", &KalCOGCheck::WarnString},
        {"WarnProtocolloString", &KalCOGCheck::WarnProtocolloString},
        {"WarnDuplicatoDocString", &KalCOGCheck::WarnDuplicatoDocString},
        {"WarnInfragruppoString", &KalCOGCheck::WarnInfragruppoString},
        {"WarnStringModifica", &KalCOGCheck::WarnStringModifica},
        {"TmpTableScadenze", [](KalCOGCheck& it) { return it.TmpTableScadenze(); }},
        {"IsInfragruppo", &KalCOGCheck::IsInfragruppo},
        {"ImportoPlafond", &KalCOGCheck::ImportoPlafond},
        {"ChiusuraRateInSospensione", &KalCOGCheck::ChiusuraRateInSospensione},
        {"RiaperturaRateInSospensione", &KalCOGCheck::RiaperturaRateInSospensione}};
    return kGetters.at(property)(checker_);
  }

 private:
  KalCOGCheck checker_;
};

class EarlyDoor final : public Door {
 public:
  void Assign(std::string_view member, const std::shared_ptr<Recordset>& set) override {
    static const std::map<std::string_view, HRESULT (STDMETHODCALLTYPE IKalCOGCheck::*)(IDispatch*)>
        kMembers = {{"RsTesta", &IKalCOGCheck::putref_RsTesta},
                    {"RsRIva", &IKalCOGCheck::putref_RsRIva},
                    {"RsRCont", &IKalCOGCheck::putref_RsRCont},
                    {"RsScadenze", &IKalCOGCheck::putref_RsScadenze},
                    {"RsCausale", &IKalCOGCheck::putref_RsCausale},
                    {"RsRisconti", &IKalCOGCheck::putref_RsRisconti},
                    {"RsFiscalitaBL", &IKalCOGCheck::putref_RsFiscalitaBL}};
    const auto rows = set ? MakeRecordsetDouble(set) : ComPtr<IDispatch>();
    RequireSuccess((checker_.Get()->*kMembers.at(member))(rows.Get()));
  }
  void AssignText(std::string_view text) override {
    const ScopedVariant held = ToVariant(text);
    RequireSuccess(checker_->put_TmpTableScadenze(held->bstrVal));
  }
  Variant Call(const host::Operation& operation, const std::vector<Variant>& arguments) override;
  Variant Get(std::string_view property) override;

 private:
  ComPtr<IKalCOGCheck> checker_ = MakeChecker();
};

using Arguments = std::vector<ScopedVariant>;
using EarlyCall = std::function<HRESULT(IKalCOGCheck&, const Arguments&, VARIANT_BOOL*)>;

Variant EarlyDoor::Call(const host::Operation& operation, const std::vector<Variant>& arguments) {
  static const std::map<std::string_view, EarlyCall> kCalls = {
      {"OkCancellaDoc",
       [](IKalCOGCheck& it, const Arguments& in, VARIANT_BOOL* ok) {
         return it.OkCancellaDoc(in[0]->iVal, in[1]->lVal, ok);
       }},
      {"OkModificaDoc",
       [](IKalCOGCheck& it, const Arguments& in, VARIANT_BOOL* ok) {
         return it.OkModificaDoc(in[0]->iVal, in[1]->lVal, ok);
       }},
      {"OkModifica",
       [](IKalCOGCheck& it, const Arguments&, VARIANT_BOOL* ok) { return it.OkModifica(ok); }},
      {"ScadenzeInDistinta", [](IKalCOGCheck& it, const Arguments&,
                                VARIANT_BOOL* ok) { return it.ScadenzeInDistinta(ok); }},
      {"ScadenzeInDistintaIncPag",
       [](IKalCOGCheck& it, const Arguments&, VARIANT_BOOL* ok) {
         return it.ScadenzeInDistintaIncPag(ok);
       }},
      {"OkCancella",
       [](IKalCOGCheck& it, const Arguments&, VARIANT_BOOL* ok) { return it.OkCancella(ok); }},
      {"CheckDuplicatoNrDocRicevuto",
       [](IKalCOGCheck& it, const Arguments& in, VARIANT_BOOL* ok) {
         return it.CheckDuplicatoNrDocRicevuto(in[0]->bstrVal, *in[1], in[2]->lVal, in[3]->lVal,
                                               ok);
       }},
      {"ContabilitaChiusa", [](IKalCOGCheck& it, const Arguments&,
                               VARIANT_BOOL* ok) { return it.ContabilitaChiusa(ok); }},
      {"OkAggiorna",
       [](IKalCOGCheck& it, const Arguments& in, VARIANT_BOOL* ok) {
         return it.OkAggiorna(in[0]->boolVal, in[1]->boolVal, ok);
       }},
      {"LibroGiornaleStampato",
       [](IKalCOGCheck& it, const Arguments& in, VARIANT_BOOL* ok) {
         return it.LibroGiornaleStampato(*in[0], ok);
       }},
      {"RegistriIvaStampati",
       [](IKalCOGCheck& it, const Arguments& in, VARIANT_BOOL* ok) {
         return it.RegistriIvaStampati(*in[0], in[1]->iVal, in[2]->iVal, ok);
       }},
      {"CheckDuplicatoNrDocEmesso", [](IKalCOGCheck& it, const Arguments& in, VARIANT_BOOL* ok) {
         return it.CheckDuplicatoNrDocEmesso(in[0]->iVal, in[1]->iVal, in[2]->bstrVal, *in[3],
                                             in[4]->lVal, ok);
       }}};
  Arguments in;
  std::ranges::transform(arguments, std::back_inserter(in),
                         [](const Variant& argument) { return ToVariant(argument); });
  if (operation.name == "LeggiIdPrimaNota") {
    LONG id = 0;
    RequireSuccess(checker_->LeggiIdPrimaNota(in[0]->lVal, in[1]->iVal, &id));
    return static_cast<std::int32_t>(id);
  }
  VARIANT_BOOL ok = VARIANT_TRUE;
  RequireSuccess(kCalls.at(operation.name)(*checker_.Get(), in, &ok));
  return ok != VARIANT_FALSE;
}

Variant EarlyDoor::Get(std::string_view property) {
  using TextGetter = HRESULT (STDMETHODCALLTYPE IKalCOGCheck::*)(BSTR*);
  using FlagGetter = HRESULT (STDMETHODCALLTYPE IKalCOGCheck::*)(VARIANT_BOOL*);
  static const std::map<std::string_view, TextGetter> kTexts = {
      {"ErrString", &IKalCOGCheck::get_ErrString},
      {"WarnString", &IKalCOGCheck::get_WarnString},
      {"WarnProtocolloString", &IKalCOGCheck::get_WarnProtocolloString},
      {"WarnDuplicatoDocString", &IKalCOGCheck::get_WarnDuplicatoDocString},
      {"WarnInfragruppoString", &IKalCOGCheck::get_WarnInfragruppoString},
      {"WarnStringModifica", &IKalCOGCheck::get_WarnStringModifica},
      {"TmpTableScadenze", &IKalCOGCheck::get_TmpTableScadenze},
      {"IsInfragruppo", &IKalCOGCheck::get_IsInfragruppo}};
  static const std::map<std::string_view, FlagGetter> kFlags = {
      {"ChiusuraRateInSospensione", &IKalCOGCheck::get_ChiusuraRateInSospensione},
      {"RiaperturaRateInSospensione", &IKalCOGCheck::get_RiaperturaRateInSospensione}};
  ScopedVariant value;
  if (const auto text = kTexts.find(property); text != kTexts.end()) {
    RequireSuccess((checker_.Get()->*text->second)(&value->bstrVal));
    value->vt = VT_BSTR;
  } else if (const auto flag = kFlags.find(property); flag != kFlags.end()) {
    RequireSuccess((checker_.Get()->*flag->second)(&value->boolVal));
    value->vt = VT_BOOL;
  } else {
    RequireSuccess(checker_->get_ImportoPlafond(&value->cyVal));
    value->vt = VT_CY;
  }
  return FromVariant(*value);
}

class LateDoor final : public Door {
 public:
  void Assign(std::string_view member, const std::shared_ptr<Recordset>& set) override {
    checker_.PutRef(Name(member), set ? MakeRecordsetDouble(set) : ComPtr<IDispatch>());
  }
  void AssignText(std::string_view text) override { checker_.Put(L"TmpTableScadenze", text); }
  Variant Call(const host::Operation& operation, const std::vector<Variant>& in) override {
    const wchar_t* const name = Name(operation.name);
    switch (in.size()) {
      case 0:
        return checker_.Get(name);
      case 1:
        return checker_.Get(name, in[0]);
      case 2:
        return checker_.Get(name, in[0], in[1]);
      case 3:
        return checker_.Get(name, in[0], in[1], in[2]);
      case 4:
        return checker_.Get(name, in[0], in[1], in[2], in[3]);
      default:
        return checker_.Get(name, in[0], in[1], in[2], in[3], in[4]);
    }
  }
  Variant Get(std::string_view property) override { return checker_.Get(Name(property)); }

 private:
  // Names must live as long as what calls them.
  const wchar_t* Name(std::string_view name) {
    return names_.emplace(ToUtf16(name)).first->c_str();
  }

  std::set<std::wstring> names_;
  LateBound checker_{ComPtr<IDispatch>(MakeChecker().Get()), "nobody"};
};

Variant ArgumentOf(host::ArgumentKind kind, const std::string& text) {
  switch (kind) {
    case host::ArgumentKind::Flag:
      return text == "true";
    case host::ArgumentKind::Short:
      return CInt(text);
    case host::ArgumentKind::Long:
      return CLng(text);
    case host::ArgumentKind::Day:
      return text == "null" ? Variant(Null) : MakeValue('d', text == "''" ? "" : text);
    default:
      return text;
  }
}

}  // namespace

std::wstring ServerPath() {
  std::wstring path(32768, L'\0');
  path.resize(GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size())));
  return path.substr(0, path.rfind(L'\\') + 1) + L"KalCOGCheck20.dll";
}

FARPROC ServerFunction(const char* name) {
  static HMODULE const server = LoadLibraryW(ServerPath().c_str());
  return GetProcAddress(server, name);
}

ComPtr<IKalCOGCheck> MakeChecker() {
  using GetClassObject = HRESULT(STDAPICALLTYPE*)(REFCLSID, REFIID, void**);
  const auto getClassObject = reinterpret_cast<GetClassObject>(
      reinterpret_cast<void*>(ServerFunction("DllGetClassObject")));
  ComPtr<IClassFactory> classObject;
  ComPtr<IKalCOGCheck> checker;
  RequireSuccess(
      getClassObject(kClassId, IID_IClassFactory, reinterpret_cast<void**>(classObject.Put())));
  RequireSuccess(
      classObject->CreateInstance(nullptr, kInterfaceId, reinterpret_cast<void**>(checker.Put())));
  return checker;
}

const char* NameOf(Way way) {
  return way == Way::Core ? "core" : way == Way::Early ? "early" : "late";
}

std::unique_ptr<Door> Open(Way way, SmallCompany& company) {
  if (way == Way::Core) {
    return std::make_unique<CoreDoor>(company);
  }
  return way == Way::Early ? std::unique_ptr<Door>(std::make_unique<EarlyDoor>())
                           : std::make_unique<LateDoor>();
}

OperationCall::OperationCall(std::string_view text) {
  const std::vector<std::string> words = SplitText(text, ' ');
  operation = host::FindOperation(words.at(0));
  for (std::size_t at = 0; at < operation->arguments.size(); ++at) {
    arguments.push_back(ArgumentOf(operation->arguments[at], words.at(at + 1)));
  }
}

std::string Ask(Door& door, const OperationCall& call) {
  std::string shown;
  const auto attempt = [&shown](const std::function<Variant()>& ask) {
    try {
      return CStr(ask());
    } catch (const RunTimeError& error) {
      return "Error " + std::to_string(error.Number()) + " '" + error.Source() + "' '" +
             error.Description() + "'";
    }
  };
  shown = attempt([&] { return door.Call(*call.operation, call.arguments); });
  for (const char* const property : kProperties) {
    const std::string value = attempt([&] { return door.Get(property); });
    if (!value.empty() && value != "False" && value != "0") {
      shown += std::string(" ") + property + ": " + value;
    }
  }
  return shown;
}

}  // namespace kal::test
