#include "host/Operations.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <type_traits>
#include <utility>

#include "platform/RunTimeError.h"

namespace kal::host {
namespace {

// One argument type of the checker: its kind, and how the variant of that kind is handed over.
template <class T>
struct Argument;
template <>
struct Argument<Variant> {
  static constexpr ArgumentKind kKind = ArgumentKind::Day;
  static const Variant& Take(const Variant& value) { return value; }
};
template <class Held>
auto Require(Held held) {
  if (!held) {
    Raise(RunTime::TypeMismatch, "Type mismatch: an argument of another type");
  }
  return *held;
}
template <class T, ArgumentKind kind>
struct HeldArgument {
  static constexpr ArgumentKind kKind = kind;
  static T Take(const Variant& value) { return Require(value.As<T>()); }
};
template <>
struct Argument<bool> : HeldArgument<bool, ArgumentKind::Flag> {};
template <>
struct Argument<std::int16_t> : HeldArgument<std::int16_t, ArgumentKind::Short> {};
template <>
struct Argument<std::int32_t> : HeldArgument<std::int32_t, ArgumentKind::Long> {};
template <>
struct Argument<std::string> {
  static constexpr ArgumentKind kKind = ArgumentKind::Text;
  static std::string Take(const Variant& value) { return std::string(Require(value.AsText())); }
};
template <class T>
struct Argument<Unread<T>> : Argument<T> {};

// An operation made from the member itself, so that the table can't disagree with the checker
// about arguments.
template <auto member>
struct Member;
template <class Result, class... Args, Result (KalCOGCheck::*member)(Args...)>
struct Member<member> {
  static constexpr std::array<ArgumentKind, sizeof...(Args)> kKinds = {
      Argument<std::remove_cvref_t<Args>>::kKind...};

  static OperationResult Call(KalCOGCheck& checker, std::span<const Variant> arguments) {
    return [&]<std::size_t... i>(std::index_sequence<i...>)->OperationResult {
      return (checker.*member)(Argument<std::remove_cvref_t<Args>>::Take(arguments[i])...);
    }
    (std::index_sequence_for<Args...>());
  }
};

template <auto member>
constexpr Operation Check(std::string_view name) {
  return {name, true, Member<member>::kKinds, &Member<member>::Call};
}
template <auto member>
constexpr Operation Lookup(std::string_view name) {
  return {name, false, Member<member>::kKinds, &Member<member>::Call};
}

constexpr std::array kOperations = {
    Check<&KalCOGCheck::OkCancellaDoc>("OkCancellaDoc"),
    Check<&KalCOGCheck::OkModificaDoc>("OkModificaDoc"),
    Check<&KalCOGCheck::OkModifica>("OkModifica"),
    Lookup<&KalCOGCheck::ScadenzeInDistinta>("ScadenzeInDistinta"),
    Lookup<&KalCOGCheck::ScadenzeInDistintaIncPag>("ScadenzeInDistintaIncPag"),
    Check<&KalCOGCheck::OkCancella>("OkCancella"),
    Lookup<&KalCOGCheck::CheckDuplicatoNrDocRicevuto>("CheckDuplicatoNrDocRicevuto"),
    Lookup<&KalCOGCheck::ContabilitaChiusa>("ContabilitaChiusa"),
    Check<&KalCOGCheck::OkAggiorna>("OkAggiorna"),
    Lookup<&KalCOGCheck::LibroGiornaleStampato>("LibroGiornaleStampato"),
    Lookup<&KalCOGCheck::RegistriIvaStampati>("RegistriIvaStampati"),
    Lookup<&KalCOGCheck::LeggiIdPrimaNota>("LeggiIdPrimaNota"),
    Lookup<&KalCOGCheck::CheckDuplicatoNrDocEmesso>("CheckDuplicatoNrDocEmesso"),
};

}  // namespace

std::span<const Operation> Operations() { return kOperations; }

const Operation* FindOperation(std::string_view name) {
  const auto found = std::ranges::find(kOperations, name, &Operation::name);
  return found == kOperations.end() ? nullptr : &*found;
}

}  // namespace kal::host
