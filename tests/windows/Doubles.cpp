#include "tests/windows/Doubles.h"

#include <array>
#include <map>

#include "platform/RunTimeError.h"
#include "server/Boundary.h"
#include "server/DispatchRecordset.h"
#include "server/SiblingNames.h"

namespace kal::test {
namespace {

struct Counts {
  std::map<std::string, long, std::less<>> live;
  long lookups = 0;
  long calls = 0;
  long failAt = 0;
};
Counts counts;

template <class Interface>
class Counted : public Interface {
 public:
  Counted() = default;
  Counted(const Counted&) = delete;
  Counted& operator=(const Counted&) = delete;

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
    *object = iid == IID_IUnknown || iid == Own() ? this : nullptr;
    if (*object == nullptr) {
      return E_NOINTERFACE;
    }
    AddRef();
    return S_OK;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
  ULONG STDMETHODCALLTYPE Release() override {
    const ULONG left = --references_;
    if (left == 0) {
      delete this;
    }
    return left;
  }

 protected:
  virtual ~Counted() = default;
  virtual const IID& Own() const = 0;

 private:
  ULONG references_ = 1;
};

class Double final : public Counted<IDispatch> {
 public:
  Double(std::string_view kind, std::vector<DoubleMember> members, std::shared_ptr<void> content)
      : kind_(kind), members_(std::move(members)), content_(std::move(content)) {
    ++counts.live[kind_];
  }

  [[nodiscard]] const std::shared_ptr<void>& Content() const { return content_; }

  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override {
    *count = 0;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT, LCID,
                                          DISPID* ids) override {
    ++counts.lookups;
    for (std::size_t at = 0; at < members_.size(); ++at) {
      if (_wcsicmp(members_[at].name, names[0]) == 0) {
        ids[0] = static_cast<DISPID>(at);
        return S_OK;
      }
    }
    ids[0] = DISPID_UNKNOWN;
    return DISP_E_UNKNOWNNAME;
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID iid, LCID, WORD flags, DISPPARAMS* parameters,
                                   VARIANT* result, EXCEPINFO* exception, UINT*) override;

 private:
  ~Double() override { --counts.live[kind_]; }
  const IID& Own() const override { return IID_IDispatch; }

  std::string kind_;
  std::vector<DoubleMember> members_;
  std::shared_ptr<void> content_;
};

HRESULT STDMETHODCALLTYPE Double::Invoke(DISPID id, REFIID iid, LCID, WORD flags,
                                         DISPPARAMS* parameters, VARIANT* result,
                                         EXCEPINFO* exception, UINT*) {
  const auto at = static_cast<std::size_t>(id);
  if (iid != IID_NULL) {
    return DISP_E_UNKNOWNINTERFACE;
  }
  if (at >= members_.size() || (members_[at].kinds & flags) == 0) {
    return DISP_E_MEMBERNOTFOUND;
  }
  const bool assigns = (flags & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) != 0;
  if (assigns !=
      (parameters->cNamedArgs == 1 && parameters->rgdispidNamedArgs[0] == DISPID_PROPERTYPUT)) {
    return DISP_E_PARAMNOTFOUND;
  }
  if (parameters->cArgs > members_[at].most) {
    return DISP_E_BADPARAMCOUNT;
  }
  try {
    ++counts.calls;
    if (counts.failAt > 0 && --counts.failAt == 0) {
      throw RunTimeError(-2147467259, "Ospite", "guasto dell'ospite");
    }
    std::vector<VARIANT*> arguments;
    for (UINT argument = parameters->cArgs; argument-- > 0;) {
      arguments.push_back(&parameters->rgvarg[argument]);
    }
    ScopedVariant answer = members_[at].call(arguments);
    if (result != nullptr) {
      std::swap(*result, *answer);
    }
    return S_OK;
  } catch (const RunTimeError& error) {
    *exception = {};
    exception->scode = ResultOfNumber(error.Number());
    exception->bstrSource = ToAutomation(error.Source());
    exception->bstrDescription = ToAutomation(error.Description());
    return DISP_E_EXCEPTION;
  }
}

class ClassObject final : public Counted<IClassFactory> {
 public:
  explicit ClassObject(std::function<ComPtr<IDispatch>()> make) : make_(std::move(make)) {}

  HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown*, REFIID iid, void** object) override {
    return make_()->QueryInterface(iid, object);
  }
  HRESULT STDMETHODCALLTYPE LockServer(BOOL) override { return S_OK; }

 private:
  ~ClassObject() override = default;
  const IID& Own() const override { return IID_IClassFactory; }

  std::function<ComPtr<IDispatch>()> make_;
};

constexpr WORD kCall = DISPATCH_METHOD;
constexpr WORD kGet = DISPATCH_PROPERTYGET;
constexpr WORD kPut = DISPATCH_PROPERTYPUT;
using Arguments = std::span<VARIANT*>;

Variant In(Arguments arguments, std::size_t at) { return FromVariant(*arguments[at]); }
std::string Text(Arguments arguments, std::size_t at) { return CStr(In(arguments, at)); }
std::int16_t Short(Arguments arguments, std::size_t at) { return CInt(In(arguments, at)); }

// A member that answers a value, one that answers nothing, and one that answers an object.
DoubleMember Answers(const wchar_t* name, WORD kinds, std::size_t most,
                     std::function<Variant(Arguments)> call) {
  return {name, kinds, most,
          [call = std::move(call)](Arguments arguments) { return ToVariant(call(arguments)); }};
}
DoubleMember Does(const wchar_t* name, WORD kinds, std::size_t most,
                  std::function<void(Arguments)> call) {
  return {name, kinds, most, [call = std::move(call)](Arguments arguments) {
            call(arguments);
            return ScopedVariant();
          }};
}
DoubleMember Gives(const wchar_t* name, WORD kinds, std::size_t most,
                   std::function<ComPtr<IDispatch>(Arguments)> call) {
  return {name, kinds, most,
          [call = std::move(call)](Arguments arguments) { return ToVariant(call(arguments)); }};
}

ComPtr<IDispatch> MakeField(const std::shared_ptr<Recordset>& set, const Variant& key) {
  const Field* const field = key.VarType() == Variant::Type::Text
                                 ? &set->Fields(CStr(key))
                                 : &set->Fields(static_cast<std::size_t>(CLng(key)));
  return MakeDouble("Field",
                    {Answers(L"Value", kGet, 0, [set, field](Arguments) { return field->Value(); }),
                     Answers(L"Type", kGet, 0, [set, field](Arguments) {
                       return static_cast<std::int32_t>(field->Type());
                     })});
}

using namespace names;  // the table that the component goes by

std::vector<DoubleMember> QueryMembers(const std::shared_ptr<Selection>& selection) {
  const auto say = [selection](const wchar_t* name, const char* what, std::size_t count) {
    return Does(name, kCall, count, [selection, what](Arguments arguments) {
      std::vector<Variant> values;
      for (std::size_t at = 0; at < arguments.size(); ++at) {
        values.push_back(In(arguments, at));
      }
      selection->Say(what, values);
    });
  };
  const auto anyOf = [selection](const wchar_t* name, const char* what, bool begins) {
    return Does(name, kCall, 0, [selection, what, begins](Arguments) {
      selection->Say(what);
      selection->inAnyOf = begins;
    });
  };
  return {
      Does(query::kOption, kPut, 1,
           [selection](Arguments values) { selection->Say("Option", {In(values, 0)}); }),
      say(query::kAddFields, "Fields", 1),
      Does(query::kAddTable, kCall, 1,
           [selection](Arguments values) { selection->AddTable(Text(values, 0)); }),
      Does(
          query::kAddJoin, kCall, 2,
          [selection](Arguments values) { selection->AddJoin(Short(values, 0), Text(values, 1)); }),
      Does(query::kBeginWhere, kCall, 0, [selection](Arguments) { selection->BeginWhere(); }),
      Does(query::kAddCondition, kCall, 3,
           [selection](Arguments values) {
             selection->AddCondition(Text(values, 0), Text(values, 1), In(values, 2));
           }),
      say(query::kAddColumnPair, "Pair", 2),
      say(query::kAddLiteral, "Literal", 1),
      anyOf(query::kBeginAnyOf, "AnyOf", true),
      Does(query::kBeginAlternative, kCall, 0,
           [selection](Arguments) { selection->BeginAlternative(); }),
      anyOf(query::kEndAnyOf, "End", false),
  };
}

std::vector<DoubleMember> AccessMembers(SmallCompany& company) {
  return {
      Gives(dataAccess::kOpen, kCall, 1,
            [&company](Arguments values) {
              const auto& content = static_cast<Double*>(values[0]->pdispVal)->Content();
              return MakeRecordsetDouble(company.Select(*static_cast<Selection*>(content.get())));
            }),
      Does(dataAccess::kExecute, kCall, 9,
           [&company](Arguments values) {
             std::vector<ProcedureArgument> arguments;
             for (VARIANT* const value : values.subspan(1)) {
               arguments.push_back({FromVariant(*value), (value->vt & VT_BYREF) != 0});
             }
             company.CreateDataAccess()->Execute(Text(values, 0), arguments);
             for (std::size_t at = 0; at < arguments.size(); ++at) {
               if (values[at + 1]->vt == (VT_BYREF | VT_I4)) {
                 *values[at + 1]->plVal = CLng(arguments[at].value);
               }
             }
           }),
  };
}

// One sibling: its ProgID, and its members over what the company creates for one request.
struct Sibling {
  const wchar_t* progId;
  std::function<std::vector<DoubleMember>(SmallCompany&)> members;
};

const std::vector<Sibling>& Siblings() {
  constexpr WORD kAsk = kCall | kGet;
  static const std::vector<Sibling> kSiblings = {
      {status::kProgId,
       [](SmallCompany& company) -> std::vector<DoubleMember> {
         const std::shared_ptr<KalStatus> it = company.CreateKalStatus();
         return {Answers(status::kGetMessage, kAsk, 1,
                         [it](Arguments in) { return it->GetMessage(CLng(In(in, 0))); }),
                 Answers(status::kTranslateFromDict, kAsk, 6, [it](Arguments in) {
                   return it->TranslateFromDict(Text(in, 0), Text(in, 1), Text(in, 2), Text(in, 3),
                                                Text(in, 4), Text(in, 5));
                 })};
       }},
      {settings::kProgId,
       [](SmallCompany& company) -> std::vector<DoubleMember> {
         const std::shared_ptr<CompanySettings> it = company.CreateCompanySettings();
         return {Answers(settings::kSetting, kAsk, 1,
                         [it](Arguments in) { return it->Setting(Text(in, 0)); }),
                 Answers(settings::kSelectFiscalYear, kAsk, 1,
                         [it](Arguments in) { return it->SelectFiscalYear(In(in, 0)); }),
                 Answers(settings::kFiscalYearField, kAsk, 1,
                         [it](Arguments in) { return it->FiscalYearField(Text(in, 0)); })};
       }},
      {anagrafiche::kProgId,
       [](SmallCompany& company) -> std::vector<DoubleMember> {
         const std::shared_ptr<KalAnagrafiche> it = company.CreateKalAnagrafiche();
         return {Does(anagrafiche::kIDAnagrafica, kPut, 1,
                      [it](Arguments in) { it->IDAnagrafica(CLng(In(in, 0))); }),
                 Does(anagrafiche::kTipoAnagrafica, kPut, 1,
                      [it](Arguments in) { it->TipoAnagrafica(Short(in, 0)); }),
                 Does(anagrafiche::kInit, kCall, 0, [it](Arguments) { it->Init(); }),
                 Answers(anagrafiche::kInfoAnagrafica, kAsk, 1,
                         [it](Arguments in) { return it->InfoAnagrafica(Text(in, 0)); })};
       }},
      {vatCodes::kProgId,
       [](SmallCompany& company) -> std::vector<DoubleMember> {
         const std::shared_ptr<VatCodes> it = company.CreateVatCodes();
         return {Answers(vatCodes::kAdmitsFiscalData, kAsk, 1,
                         [it](Arguments in) { return it->AdmitsFiscalData(Text(in, 0)); }),
                 Answers(vatCodes::kIntraClassification, kAsk, 1,
                         [it](Arguments in) { return it->IntraClassification(Text(in, 0)); }),
                 Answers(vatCodes::kPeriodReferenceDate, kAsk, 2,
                         [it](Arguments in) {
                           return it->PeriodReferenceDate(Short(in, 0), Short(in, 1));
                         }),
                 Answers(vatCodes::kIsVariationNote, kAsk, 1,
                         [it](Arguments in) { return it->IsVariationNote(Text(in, 0)); })};
       }},
      {periodLock::kProgId,
       [](SmallCompany& company) -> std::vector<DoubleMember> {
         const std::shared_ptr<PeriodLock> it = company.CreatePeriodLock();
         return {Answers(periodLock::kIsLocked, kAsk, 1,
                         [it](Arguments in) { return it->IsLocked(In(in, 0)); })};
       }},
      {vatActivities::kProgId,
       [](SmallCompany& company) -> std::vector<DoubleMember> {
         const std::shared_ptr<VatActivities> it = company.CreateVatActivities();
         return {Answers(vatActivities::kActivityCode, kAsk, 3, [it](Arguments in) {
           return it->ActivityCode(Short(in, 0), Short(in, 1), Short(in, 2));
         })};
       }},
      {numbering::kProgId,
       [](SmallCompany& company) -> std::vector<DoubleMember> {
         const std::shared_ptr<ProtocolNumbering> it = company.CreateProtocolNumbering();
         return {Answers(numbering::kNextProtocol, kAsk, 3, [it](Arguments in) {
           return it->NextProtocol(Short(in, 0), Short(in, 1), In(in, 2));
         })};
       }},
      {feeNotes::kProgId,
       [](SmallCompany& company) -> std::vector<DoubleMember> {
         const std::shared_ptr<FeeNotes> it = company.CreateFeeNotes();
         return {Answers(feeNotes::kSupplierTest, kAsk, 1,
                         [it](Arguments in) { return it->SupplierTest(CLng(In(in, 0))); }),
                 Answers(feeNotes::kTemplateTest, kAsk, 1,
                         [it](Arguments in) { return it->TemplateTest(Text(in, 0)); })};
       }},
      {sqlFunctions::kProgId,
       [](SmallCompany& company) -> std::vector<DoubleMember> {
         const std::shared_ptr<SqlFunctions> it = company.CreateSqlFunctions();
         return {Answers(sqlFunctions::kExpression, kAsk, 2, [it](Arguments in) {
           return it->Expression(CLng(In(in, 0)), Text(in, 1));
         })};
       }},
      {totals::kProgId,
       [](SmallCompany& company) -> std::vector<DoubleMember> {
         const std::shared_ptr<Totals> it = company.CreateTotals();
         return {Does(totals::kAttach, DISPATCH_PROPERTYPUTREF, 1,
                      [it](Arguments in) {
                        it->Attach(std::make_shared<DispatchRecordset>(
                            ComPtr<IDispatch>(in[0]->pdispVal)));
                      }),
                 Does(totals::kColumns, kPut, 1, [it](Arguments in) { it->Columns(Text(in, 0)); }),
                 Does(totals::kCompute, kCall, 0, [it](Arguments) { it->Compute(); }),
                 Answers(totals::kTotal, kAsk, 1,
                         [it](Arguments in) { return it->Total(Text(in, 0)); })};
       }},
      {dataAccess::kProgId, AccessMembers},
  };
  return kSiblings;
}

std::wstring ClassText(const GUID& id) {
  std::array<wchar_t, 39> text{};
  StringFromGUID2(id, text.data(), static_cast<int>(text.size()));
  return text.data();
}

void WriteKey(const std::wstring& name, const std::wstring& value) {
  RegSetValueW(HKEY_CLASSES_ROOT, name.c_str(), REG_SZ, value.c_str(),
               static_cast<DWORD>(value.size() * sizeof(wchar_t)));
}

}  // namespace

ComPtr<IDispatch> MakeDouble(std::string_view kind, std::vector<DoubleMember> members,
                             std::shared_ptr<void> content) {
  return ComPtr<IDispatch>::Attach(new Double(kind, std::move(members), std::move(content)));
}

long LiveDoubles(std::string_view kind) {
  long live = 0;
  for (const auto& [name, count] : counts.live) {
    live += kind.empty() || kind == name ? count : 0;
  }
  return live;
}
long IdLookups() { return counts.lookups; }
long Calls() { return counts.calls; }
void FailCallAt(long n) { counts.failAt = n; }

// Fields are answered as a collection, and by name or place where an argument is given.
ComPtr<IDispatch> MakeRecordsetDouble(std::shared_ptr<Recordset> set) {
  const auto item = [set](Arguments in) { return MakeField(set, In(in, 0)); };
  return MakeDouble(
      "Recordset",
      {Gives(L"Fields", kGet, 1,
             [item](Arguments in) {
               return in.empty() ? MakeDouble("Fields", {Gives(L"Item", kGet, 1, item)}) : item(in);
             }),
       Answers(L"RecordCount", kGet, 0, [set](Arguments) { return set->RecordCount(); }),
       Answers(L"EditMode", kGet, 0,
               [set](Arguments) { return static_cast<std::int32_t>(set->EditMode()); }),
       Does(L"Filter", kPut, 1,
            [set](Arguments in) {
              if (in[0]->vt == VT_BSTR) {
                set->Filter(Text(in, 0));
              } else {
                set->Filter(static_cast<FilterGroup>(CLng(In(in, 0))));
              }
            }),
       Does(L"MoveFirst", kCall, 0, [set](Arguments) { set->MoveFirst(); }),
       Does(L"MoveNext", kCall, 0, [set](Arguments) { set->MoveNext(); }),
       Does(L"MoveLast", kCall, 0, [set](Arguments) { set->MoveLast(); }),
       Answers(L"EOF", kGet, 0, [set](Arguments) { return set->Eof(); })});
}

const std::vector<std::wstring>& SiblingProgIds() {
  static const std::vector<std::wstring> kIds = [] {
    std::vector<std::wstring> ids;
    for (const Sibling& sibling : Siblings()) {
      ids.emplace_back(sibling.progId);
    }
    ids.emplace_back(query::kProgId);
    return ids;
  }();
  return kIds;
}

GUID SiblingClassId(std::size_t index) {
  return {
      0xd0b1e500U + static_cast<unsigned>(index), 0x4b1d, 0x4c0a, {0x9e, 0x11, 1, 2, 3, 4, 5, 6}};
}

ComPtr<IDispatch> MakeSiblingDouble(std::size_t index, SmallCompany& company) {
  if (index < Siblings().size()) {
    return MakeDouble("Sibling", Siblings()[index].members(company));
  }
  const auto selection = std::make_shared<Selection>();
  return MakeDouble("Sibling", QueryMembers(selection), selection);
}

ComPtr<IClassFactory> MakeClassObject(std::function<ComPtr<IDispatch>()> make) {
  return ComPtr<IClassFactory>::Attach(new ClassObject(std::move(make)));
}

void WriteClass(const std::wstring& progId, const GUID& classId, const std::wstring& serverPath) {
  WriteKey(progId + L"\\CLSID", ClassText(classId));
  WriteKey(L"CLSID\\" + ClassText(classId), progId);
  if (!serverPath.empty()) {
    WriteKey(L"CLSID\\" + ClassText(classId) + L"\\InprocServer32", serverPath);
  }
}

void DeleteClass(const std::wstring& progId, const GUID& classId) {
  RegDeleteTreeW(HKEY_CLASSES_ROOT, progId.c_str());
  RegDeleteTreeW(HKEY_CLASSES_ROOT, (L"CLSID\\" + ClassText(classId)).c_str());
}

SiblingsOfThisProgram::SiblingsOfThisProgram(SmallCompany*& company) {
  for (std::size_t at = 0; at < SiblingProgIds().size(); ++at) {
    WriteClass(SiblingProgIds()[at], SiblingClassId(at), L"");
    const auto classObject =
        MakeClassObject([at, &company] { return MakeSiblingDouble(at, *company); });
    DWORD cookie = 0;
    CoRegisterClassObject(SiblingClassId(at), classObject.Get(), CLSCTX_INPROC_SERVER,
                          REGCLS_MULTIPLEUSE, &cookie);
    cookies_.push_back(cookie);
  }
}

SiblingsOfThisProgram::~SiblingsOfThisProgram() {
  for (std::size_t at = 0; at < cookies_.size(); ++at) {
    CoRevokeClassObject(cookies_[at]);
    DeleteClass(SiblingProgIds()[at], SiblingClassId(at));
  }
}

}  // namespace kal::test
