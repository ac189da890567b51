// LateBound: an automation object whose members are called by name.
//
// The id of a member is looked up once for each object. What the object raises becomes a
// RunTimeError with its number, source and description; an error without a source is given the
// one that the object was taken with.

#pragma once

#include <initializer_list>
#include <span>
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
  using Values = std::span<const Variant>;

  LateBound(ComPtr<IDispatch> object, std::string_view source)
      : object_(std::move(object)), source_(source) {}

  // A new object of that class. Raises 429 where there is none, and what the system answers where
  // it can't be made.
  [[nodiscard]] static LateBound Create(std::string_view progId);

  [[nodiscard]] const ComPtr<IDispatch>& Object() const { return object_; }
  // Whether the object knows a member of that name.
  [[nodiscard]] bool Has(std::string_view member);

  // Calls a method, or reads a property. Values are in the order of the member's declaration.
  [[nodiscard]] Variant Get(std::string_view member, Values values = {});
  [[nodiscard]] Variant Get(std::string_view member, std::initializer_list<Variant> values) {
    return Get(member, Values(values.begin(), values.size()));
  }
  // The same for a value of any kind, also of one that FromVariant refuses.
  [[nodiscard]] ScopedVariant GetAsItIs(std::string_view member);
  // The same for a member that answers an object, which may be Nothing. Raises 424 for a value.
  [[nodiscard]] ComPtr<IDispatch> GetObject(std::string_view member, Values values = {});
  [[nodiscard]] ComPtr<IDispatch> GetObject(std::string_view member,
                                            const ComPtr<IDispatch>& argument);
  void Do(std::string_view member, Values values = {});
  void Do(std::string_view member, std::initializer_list<Variant> values) {
    Do(member, Values(values.begin(), values.size()));
  }
  // Calls a method whose last argument is an output: it is handed over by reference, with a value
  // of its type. Returns what it became.
  [[nodiscard]] Variant DoForOutput(std::string_view member, Values values);
  // Assigns a property: a value, or an object by reference.
  void Put(std::string_view member, const Variant& value);
  void PutRef(std::string_view member, const ComPtr<IDispatch>& object);
  // The value of the default property.
  [[nodiscard]] ScopedVariant DefaultValue();

 private:
  ScopedVariant CallWith(std::string_view member, WORD kind, Values values);
  HRESULT LookUp(std::string_view member, DISPID& id);
  [[nodiscard]] DISPID IdOf(std::string_view member);
  // Arguments in automation's order: the last one first. They stay the caller's.
  ScopedVariant Invoke(DISPID id, std::string_view member, WORD kind, std::span<VARIANT> reversed);
  [[nodiscard]] ComPtr<IDispatch> ObjectOf(const VARIANT& value) const;
  [[noreturn]] void RaiseFailure(HRESULT result, const EXCEPINFO& info,
                                 std::string_view member) const;

  ComPtr<IDispatch> object_;
  std::string source_;
  std::vector<std::pair<std::string, DISPID>> ids_;
};

}  // namespace kal
