// LateBound: an automation object whose members are called by name.
//
// The id of a member is looked up once for each object. What the object raises becomes a
// RunTimeError with its number, source and description; an error without a source is given the
// one that the object was taken with.

#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/Variant.h"
#include "server/Automation.h"
#include "server/ComPtr.h"
#include "server/Conversion.h"

namespace kal {

class LateBound {
 public:
  LateBound(ComPtr<IDispatch> object, std::string_view source)
      : object_(std::move(object)), source_(source) {}

  // A new object of that class. Raises 429 where there is none.
  [[nodiscard]] static LateBound Create(const wchar_t* progId);

  [[nodiscard]] const ComPtr<IDispatch>& Object() const { return object_; }

  // Calls a method, or reads a property. Arguments are variants or automation objects, in the
  // order of the member's declaration. Member names live as long as the program.
  template <class... Args>
  [[nodiscard]] Variant Get(const wchar_t* member, const Args&... args) {
    return FromVariant(*Call(member, DISPATCH_METHOD | DISPATCH_PROPERTYGET, args...));
  }
  // The same for a member that answers an object, which may be Nothing. Raises 424 for a value.
  template <class... Args>
  [[nodiscard]] ComPtr<IDispatch> GetObject(const wchar_t* member, const Args&... args) {
    return ObjectOf(*Call(member, DISPATCH_METHOD | DISPATCH_PROPERTYGET, args...));
  }
  template <class... Args>
  void Do(const wchar_t* member, const Args&... args) {
    Call(member, DISPATCH_METHOD, args...);
  }
  // Assigns a property: a value, or an object by reference.
  void Put(const wchar_t* member, const Variant& value) {
    Call(member, DISPATCH_PROPERTYPUT, value);
  }
  void PutRef(const wchar_t* member, const ComPtr<IDispatch>& object) {
    Call(member, DISPATCH_PROPERTYPUTREF, object);
  }
  // Calls a method with arguments in automation's order: the last one first. They stay the
  // caller's.
  void DoWith(const wchar_t* member, std::vector<VARIANT>& reversed) {
    Invoke(IdOf(member), member, DISPATCH_METHOD, reversed.data(), reversed.size());
  }
  // The value of the default property.
  [[nodiscard]] ScopedVariant DefaultValue();

 private:
  template <class... Args>
  ScopedVariant Call(const wchar_t* member, WORD kind, const Args&... args) {
    const std::array<ScopedVariant, sizeof...(Args)> owned = {ToVariant(args)...};
    std::array<VARIANT, sizeof...(Args) + 1> reversed{};  // one more, for calls without any
    std::size_t at = owned.size();
    for (const ScopedVariant& argument : owned) {
      reversed[--at] = *argument;
    }
    return Invoke(IdOf(member), member, kind, reversed.data(), owned.size());
  }

  [[nodiscard]] DISPID IdOf(const wchar_t* member);
  ScopedVariant Invoke(DISPID id, const wchar_t* member, WORD kind, VARIANT* reversed,
                       std::size_t count);
  [[nodiscard]] ComPtr<IDispatch> ObjectOf(const VARIANT& value) const;
  [[noreturn]] void RaiseFailure(HRESULT result, const EXCEPINFO& info,
                                 const wchar_t* member) const;

  ComPtr<IDispatch> object_;
  std::string source_;
  std::vector<std::pair<const wchar_t*, DISPID>> ids_;
};

}  // namespace kal
