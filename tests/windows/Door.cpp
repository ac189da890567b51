#include "tests/windows/Door.h"

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "platform/RunTimeError.h"
#include "server/Boundary.h"
#include "tests/windows/Doubles.h"

namespace kal::test {
namespace {

// A value as the interface's members take it, or where they are to put one.
struct Passed {
  operator VARIANT() const { return it; }
  operator BSTR() const { return it.bstrVal; }
  operator LONG() const { return it.lVal; }
  operator SHORT() const { return it.iVal; }  // a VARIANT_BOOL, too
  operator IDispatch*() const { return it.pdispVal; }
  operator VARIANT_BOOL*() const { return (it.vt = VT_BOOL, &it.boolVal); }
  operator LONG*() const { return (it.vt = VT_I4, &it.lVal); }
  operator BSTR*() const { return (it.vt = VT_BSTR, &it.bstrVal); }
  operator CY*() const { return (it.vt = VT_CY, &it.cyVal); }

  VARIANT& it;
};

template <auto member>
struct Compiled;
template <class... Arguments, HRESULT (STDMETHODCALLTYPE IKalCOGCheck::*member)(Arguments...)>
struct Compiled<member> {
  // The values are the member's arguments, the last one for its answer where it has one.
  static HRESULT Call(IKalCOGCheck& checker, std::span<ScopedVariant> values) {
    return [&]<std::size_t... at>(std::index_sequence<at...>) {
      return (checker.*member)(static_cast<Arguments>(Passed{*values[at]})...);
    }
    (std::index_sequence_for<Arguments...>());
  }
};

struct CompiledMember {
  std::string_view name;
  HRESULT (*call)(IKalCOGCheck&, std::span<ScopedVariant>);
};
// clang-format off
#define KAL_COMPILED(member) CompiledMember{#member, &Compiled<&IKalCOGCheck::member>::Call}
constexpr CompiledMember kCompiled[] = {
    KAL_COMPILED(put_TmpTableScadenze),
    KAL_COMPILED(put_IsFromCard), KAL_COMPILED(put_IsParcella), KAL_COMPILED(get_IsInfragruppo),
    KAL_COMPILED(get_WarnString), KAL_COMPILED(get_WarnDuplicatoDocString),
    KAL_COMPILED(get_WarnProtocolloString), KAL_COMPILED(get_WarnInfragruppoString),
    KAL_COMPILED(OkCancellaDoc), KAL_COMPILED(OkModificaDoc), KAL_COMPILED(get_ImportoPlafond),
    KAL_COMPILED(get_ChiusuraRateInSospensione), KAL_COMPILED(get_RiaperturaRateInSospensione),
    KAL_COMPILED(OkModifica), KAL_COMPILED(ScadenzeInDistinta),
    KAL_COMPILED(ScadenzeInDistintaIncPag), KAL_COMPILED(OkCancella),
    KAL_COMPILED(CheckDuplicatoNrDocRicevuto), KAL_COMPILED(ContabilitaChiusa),
    KAL_COMPILED(putref_RsCausale), KAL_COMPILED(putref_RsScadenze), KAL_COMPILED(get_ErrString),
    KAL_COMPILED(putref_RsTesta), KAL_COMPILED(putref_RsRIva), KAL_COMPILED(putref_RsRCont),
    KAL_COMPILED(OkAggiorna), KAL_COMPILED(LibroGiornaleStampato),
    KAL_COMPILED(RegistriIvaStampati), KAL_COMPILED(LeggiIdPrimaNota),
    KAL_COMPILED(putref_RsRisconti), KAL_COMPILED(putref_RsFiscalitaBL),
    KAL_COMPILED(CheckDuplicatoNrDocEmesso)};
// clang-format on
#undef KAL_COMPILED

[[noreturn]] void RaiseErrorObject(HRESULT result) {
  ComPtr<IErrorInfo> error;
  ScopedVariant source = ToVariant("");
  ScopedVariant description = ToVariant("");
  if (GetErrorInfo(0, error.Put()) == S_OK) {
    error->GetSource(&source->bstrVal);
    error->GetDescription(&description->bstrVal);
  }
  throw RunTimeError(NumberOfResult(result), FromBstr(source->bstrVal),
                     FromBstr(description->bstrVal));
}

}  // namespace

void Door::Call(std::string_view name, std::span<ScopedVariant> handed) {
  const auto* const member = std::ranges::find_if(kCompiled, [name](const CompiledMember& one) {
    const std::size_t mark = one.name.find('_');
    return one.name.substr(mark == one.name.npos ? 0 : mark + 1) == name;
  });
  if (const HRESULT result = member->call(*early_.Get(), handed); FAILED(result)) {
    RaiseErrorObject(result);
  }
}

Variant Door::Ask(std::string_view member, std::span<const Variant> values) {
  if (binding_ == Binding::Late) {
    return late_.Get(member, values);
  }
  std::vector<ScopedVariant> handed;
  for (const Variant& value : values) {
    handed.push_back(ToVariant(value));
  }
  handed.emplace_back();
  Call(member, handed);
  return FromVariant(*handed.back());
}

void Door::Put(std::string_view property, const Variant& value) {
  if (binding_ == Binding::Late) {
    return late_.Put(property, value);
  }
  ScopedVariant handed = ToVariant(value);
  Call(property, {&handed, 1});
}

void Door::Hand(std::string_view property, const ComPtr<IDispatch>& set) {
  if (binding_ == Binding::Late) {
    return late_.PutRef(property, set);
  }
  ScopedVariant handed = ToVariant(set);
  Call(property, {&handed, 1});
}

void Door::Hand(const Recorded& recorded) {
  for (std::size_t at = 0; at < recorded.sets.size(); ++at) {
    Hand(recorded.entry.sets[at].set->name, MakeRecordsetDouble(recorded.sets[at]));
  }
  Put("IsParcella", recorded.entry.isParcella);
  Put("IsFromCard", recorded.entry.isFromCard);
  Put("TmpTableScadenze", recorded.entry.tmpTableScadenze);
}

}  // namespace kal::test
