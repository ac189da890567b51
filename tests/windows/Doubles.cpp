#include "tests/windows/Doubles.h"

#include <algorithm>
#include <array>
#include <optional>

#include "records/SelectionMaker.h"
#include "server/Boundary.h"
#include "server/Counted.h"
#include "server/DispatchRecordset.h"
#include "server/SiblingNames.h"

namespace kal::test {
namespace {

class Double final : public Counted<IDispatch, IID_IDispatch> {
 public:
  Double(std::string_view kind, std::vector<DoubleMember> members, std::shared_ptr<void> content)
      : kind_(kind), members_(std::move(members)), content_(std::move(content)) {
    ++counts.live[kind_];
  }

  [[nodiscard]] void* Content() const { return content_.get(); }

  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override {
    *count = 0;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT, LCID,
                                          DISPID* ids) override {
    ++counts.lookups;
    const auto found = std::ranges::find_if(members_, [names](const DoubleMember& member) {
      return _wcsicmp(ToUtf16(member.name).c_str(), names[0]) == 0;
    });
    const bool known = found != members_.end();
    ids[0] = known ? static_cast<DISPID>(found - members_.begin()) : DISPID_UNKNOWN;
    return known ? S_OK : DISP_E_UNKNOWNNAME;
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID iid, LCID, WORD flags, DISPPARAMS* parameters,
                                   VARIANT* result, EXCEPINFO* exception, UINT*) override;

 private:
  ~Double() override { --counts.live[kind_]; }

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
    if (counts.eventAt > 0 && --counts.eventAt == 0) {
      counts.event();
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
  } catch (...) {
    const RunTimeError error = CurrentError();
    *exception = {};
    exception->scode =  // beyond 16 bits as it is: some objects do that
        error.Number() > 0xFFFF ? error.Number() : ResultOfNumber(error.Number());
    exception->bstrSource = ToAutomation(error.Source());
    exception->bstrDescription = ToAutomation(error.Description());
    return DISP_E_EXCEPTION;
  }
}

class ClassObject final : public Counted<IClassFactory, IID_IClassFactory> {
 public:
  explicit ClassObject(std::function<ComPtr<IDispatch>()> make) : make_(std::move(make)) {}

  HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown*, REFIID iid, void** object) override {
    try {
      return make_()->QueryInterface(iid, object);
    } catch (...) {
      return ResultOfNumber(CurrentError().Number());
    }
  }
  HRESULT STDMETHODCALLTYPE LockServer(BOOL) override { return S_OK; }

 private:
  ~ClassObject() override = default;

  std::function<ComPtr<IDispatch>()> make_;
};

constexpr WORD kCall = DISPATCH_METHOD;
constexpr WORD kGet = DISPATCH_PROPERTYGET;
constexpr WORD kPut = DISPATCH_PROPERTYPUT;
constexpr std::size_t kAny = 10;

Variant In(Arguments arguments, std::size_t at) { return FromVariant(*arguments[at]); }

ComPtr<IDispatch> MakeField(const RecordsetRef& set, const Variant& key) {
  const Field* const field = key.VarType() == Variant::Type::Text
                                 ? &set->Fields(CStr(key))
                                 : &set->Fields(static_cast<std::size_t>(CLng(key)));
  return MakeDouble("Field",
                    {Answers("Value", kGet, 0, [set, field](Arguments) { return field->Value(); }),
                     Answers("Type", kGet, 0, [set, field](Arguments) {
                       return static_cast<std::int32_t>(field->Type());
                     })});
}

// What a query builder was told so far.
struct Described {
  records::SelectionMaker maker;
  std::vector<Variant> values;
};

const VARIANT& Argument(Arguments in, std::size_t at, VARTYPE type) {
  if (at >= in.size() || in[at]->vt != type) {
    Raise(RunTime::TypeMismatch, "an argument of another type", "Double");
  }
  return *in[at];
}
std::string Text(Arguments in, std::size_t at) {
  return FromBstr(Argument(in, at, VT_BSTR).bstrVal);
}
template <class Enum, class List, class Name>
Enum Named(const List& list, const Name& name) {
  const auto found = std::ranges::find(list, name);
  if (found == list.end()) {
    Raise(RunTime::TypeMismatch, "an argument that is not known", "Double");
  }
  return static_cast<Enum>(found - list.begin());
}

void Describe(Described& it, names::QueryMember member, Arguments in) {
  using names::QueryMember;
  switch (member) {
    case QueryMember::Option:
      return it.maker.Option(Argument(in, 0, VT_I4).lVal);
    case QueryMember::AddFields:
      return it.maker.Select(Text(in, 0));
    case QueryMember::AddTable:
      return it.maker.From(Text(in, 0));
    case QueryMember::AddJoin:
      return it.maker.JoinWith(Named<JoinKind>(names::kJoinKinds, Argument(in, 0, VT_I2).iVal),
                               Text(in, 1));
    case QueryMember::BeginWhere:
      return it.maker.Where();
    case QueryMember::AddCondition:
      it.maker.Compare(Text(in, 0), Named<CompareWith>(names::kOperators, Text(in, 1)));
      it.values.push_back(In(in, 2));
      return;
    case QueryMember::AddColumnPair:
      return it.maker.Columns(Text(in, 0), Text(in, 1));
    case QueryMember::AddLiteral:
      return it.maker.Literal(Text(in, 0));
    case QueryMember::BeginAnyOf:
      return it.maker.BeginAnyOf();
    case QueryMember::BeginAlternative:
      return it.maker.BeginAlternative();
    case QueryMember::EndAnyOf:
      return it.maker.EndAnyOf();
  }
}

ComPtr<IDispatch> MakeQueryBuilder() {
  const auto told = std::make_shared<Described>();
  std::vector<DoubleMember> members;
  for (std::size_t at = 0; at < names::kQueryMembers.size(); ++at) {
    const auto member = static_cast<names::QueryMember>(at);
    members.push_back(Answers(names::kQueryMembers[at],
                              member == names::QueryMember::Option ? kPut : kCall, kAny,
                              [told, member](Arguments in) { Describe(*told, member, in); }));
  }
  return MakeDouble("Sibling", members, told);
}

// By CallKind.
constexpr WORD kKinds[] = {0, kCall | kGet, kCall, kPut, DISPATCH_PROPERTYPUTREF, kCall, kCall};

// What a sibling's double knows of itself.
struct Told {
  std::unique_ptr<SiblingState> state;
  bool isReady = false;  // whether Init or Compute were called, which answers are based on
};

// One call of a sibling's double: what automation hands over, asked of the siblings.
ScopedVariant AskInstead(Siblings& siblings, Told& told, Member member, Arguments in) {
  const MemberInfo& info = kMembers[static_cast<std::size_t>(member)];
  SiblingCall call{
      .component = info.component, .member = member, .values = {}, .state = told.state};
  told.isReady = told.isReady || info.kind == CallKind::Do;
  if (!told.isReady &&
      (member == Member::KalAnagrafiche_InfoAnagrafica || member == Member::Totals_Total)) {
    throw RunTimeError(5, "Double", "not ready");
  }
  std::vector<Variant> values;
  std::shared_ptr<const Selection> selection;
  std::optional<Query> query;
  if (info.kind == CallKind::PutSet) {
    call.set = std::make_shared<DispatchRecordset>(ComPtr<IDispatch>(in[0]->pdispVal));
  } else if (info.kind == CallKind::Open) {
    auto* const described =
        static_cast<Described*>(static_cast<Double*>(in[0]->pdispVal)->Content());
    selection = described->maker.Take();
    values = described->values;
    call.query = &query.emplace(Query::OfPassing(*selection, values, kGivenName));
  } else {
    for (const VARIANT* const value : in) {
      values.push_back(FromVariant(*value));
    }
  }
  if (!query) {
    call.values = values;
  }
  const SiblingAnswer answer = siblings.Ask(call);
  if (info.kind == CallKind::Open) {
    return ToVariant(MakeRecordsetDouble(answer.rows));
  }
  if (info.kind == CallKind::Execute) {
    for (std::size_t at = 0; at < in.size(); ++at) {
      if ((in[at]->vt == (VT_BYREF | VT_I4)) != (at + 1 == in.size())) {
        throw RunTimeError(5, "Double", "only the last argument is an output");
      }
    }
    *in.back()->plVal = CLng(answer.value);
    return {};
  }
  return ToVariant(answer.value);
}

ComPtr<IDispatch> MakeSibling(Component component, Siblings& siblings) {
  const auto told = std::make_shared<Told>();
  siblings.Ask(
      {.component = component, .member = Member::Create, .values = {}, .state = told->state});
  std::vector<DoubleMember> members;
  for (std::size_t at = 0; at < kMembers.size(); ++at) {
    const auto member = static_cast<Member>(at);
    if (kMembers[at].component == component) {
      members.push_back({names::NameOf(member), kKinds[static_cast<std::size_t>(kMembers[at].kind)],
                         kAny, [&siblings, told, member](Arguments in) {
                           return AskInstead(siblings, *told, member, in);
                         }});
    }
  }
  return MakeDouble("Sibling", members);
}

std::wstring ClassKey(std::size_t index) {
  std::array<wchar_t, 39> text{};
  StringFromGUID2(ClassIdOf(index), text.data(), static_cast<int>(text.size()));
  return std::wstring(L"CLSID\\") + text.data();
}

std::wstring ProgIdOf(std::size_t index) {
  return ToUtf16(index == kEntryClass          ? "KalDoubles.Entry"
                 : index == kQueryBuilderClass ? names::kQueryBuilderClass
                                               : names::kClasses[index].name);
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

// Fields are answered as a collection, and by name or place where an argument is given.
ComPtr<IDispatch> MakeRecordsetDouble(RecordsetRef set) {
  const auto item = [set](Arguments in) { return MakeField(set, In(in, 0)); };
  return MakeDouble(
      "Recordset",
      {Answers("Fields", kGet, 1,
               [item](Arguments in) {
                 return in.empty() ? MakeDouble("Fields", {Answers("Item", kGet, 1, item)})
                                   : item(in);
               }),
       Answers("RecordCount", kGet, 0, [set](Arguments) { return set->RecordCount(); }),
       Answers("EditMode", kGet, 0,
               [set](Arguments) { return static_cast<std::int32_t>(set->EditMode()); }),
       Answers("Filter", kPut, 1,
               [set](Arguments in) {
                 if (in[0]->vt == VT_BSTR) {
                   set->Filter(CStr(In(in, 0)));
                 } else if (CLng(In(in, 0)) == 0) {
                   set->Filter(FilterGroup::None);
                 } else {
                   Raise(RunTime::InvalidFilter, "no such group", kRecordsetSource);
                 }
               }),
       Answers("MoveFirst", kCall, 0, [set](Arguments) { set->MoveFirst(); }),
       Answers("MoveNext", kCall, 0, [set](Arguments) { set->MoveNext(); }),
       Answers("MoveLast", kCall, 0, [set](Arguments) { set->MoveLast(); }),
       Answers("EOF", kGet, 0, [set](Arguments) { return set->Eof(); })});
}

long LiveDoubles(const std::string& kind) {
  long live = 0;
  for (const auto& [name, count] : counts.live) {
    live += kind.empty() || kind == name ? count : 0;
  }
  return live;
}

std::string Shown(const Variant& value) {
  return std::to_string(static_cast<int>(value.VarType())) + ":" +
         (value.IsNull() ? "" : CStr(value));
}

std::string TextOrError(const std::function<std::string()>& call) {
  try {
    return call();
  } catch (const RunTimeError& error) {
    return "Error " + std::to_string(error.Number()) + " '" + error.Source() + "' '" +
           error.Description() + "'";
  }
}

GUID ClassIdOf(std::size_t index) {
  return {
      0xd0b1e500U + static_cast<unsigned>(index), 0x4b1d, 0x4c0a, {0x9e, 0x11, 1, 2, 3, 4, 5, 6}};
}

ComPtr<IDispatch> MakeDoubleOf(std::size_t index, Siblings& siblings) {
  return index < kQueryBuilderClass ? MakeSibling(static_cast<Component>(index), siblings)
                                    : MakeQueryBuilder();
}

ComPtr<IClassFactory> MakeClassObject(std::function<ComPtr<IDispatch>()> make) {
  return ComPtr<IClassFactory>::Attach(new ClassObject(std::move(make)));
}

void WriteClasses(const std::wstring& serverPath) {
  for (std::size_t at = 0; at <= kEntryClass; ++at) {
    WriteKey(ProgIdOf(at) + L"\\CLSID", ClassKey(at).substr(6));
    if (!serverPath.empty()) {
      WriteKey(ClassKey(at) + L"\\InprocServer32", serverPath);
    }
  }
}

void DeleteClasses() {
  for (std::size_t at = 0; at <= kEntryClass; ++at) {
    RegDeleteTreeW(HKEY_CLASSES_ROOT, ProgIdOf(at).c_str());
    RegDeleteTreeW(HKEY_CLASSES_ROOT, ClassKey(at).c_str());
  }
}

void RegisterInThisProgram(Siblings*& siblings) {
  WriteClasses(L"");
  for (std::size_t at = 0; at < kEntryClass; ++at) {
    const auto classObject =
        MakeClassObject([at, &siblings] { return MakeDoubleOf(at, *siblings); });
    DWORD cookie = 0;
    CoRegisterClassObject(ClassIdOf(at), classObject.Get(), CLSCTX_INPROC_SERVER,
                          REGCLS_MULTIPLEUSE, &cookie);
  }
}

}  // namespace kal::test
