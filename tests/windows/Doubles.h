// Doubles: automation objects for tests, which stand for what the component finds on a host.
//
// A double knows its members by name; the first is the default one. There is one for any sibling
// component, whose members are those of siblings/Members.h and ask a kal::Siblings, one for the
// query builder, which puts the selection together, and one for a record set. Errors leave as
// automation's exceptions. All doubles are counted by kind, so that a test sees what the component
// still holds.

#pragma once

#include <functional>
#include <map>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Recordset.h"
#include "platform/RunTimeError.h"
#include "server/Automation.h"
#include "server/ComPtr.h"
#include "server/Conversion.h"
#include "siblings/Siblings.h"

namespace kal::test {

using Arguments = std::span<VARIANT*>;

struct DoubleMember {
  std::string_view name;
  WORD kinds;
  std::size_t most;  // arguments
  std::function<ScopedVariant(Arguments)> call;
};

// A member that answers what the call does: a value, an object or nothing.
template <class Call>
DoubleMember Answers(std::string_view name, WORD kinds, std::size_t most, Call call) {
  return {name, kinds, most, [call](Arguments in) {
            if constexpr (std::is_void_v<decltype(call(in))>) {
              call(in);
              return ScopedVariant();
            } else {
              return ToVariant(call(in));
            }
          }};
}

[[nodiscard]] ComPtr<IDispatch> MakeDouble(std::string_view kind, std::vector<DoubleMember> members,
                                           std::shared_ptr<void> content = nullptr);
[[nodiscard]] ComPtr<IDispatch> MakeRecordsetDouble(RecordsetRef set);

// What was asked of all doubles so far.
struct Counts {
  std::map<std::string, long> live;  // by kind
  long lookups = 0;                  // of members' ids
  long calls = 0;
  long eventAt = 0;  // what happens in the n-th call from now on, before it does anything; 0: none
  std::function<void()> event = [] {
    throw RunTimeError(-2147467259, "Ospite", "guasto dell'ospite");
  };
};
inline Counts counts;
// How many doubles of that kind live; of all kinds for "".
[[nodiscard]] long LiveDoubles(const std::string& kind = "");

// The value with its type: "3:5" for the number 5 in 16 bits.
[[nodiscard]] std::string Shown(const Variant& value);
// The text that the call answers, or "Error 94 'source' 'description'".
[[nodiscard]] std::string TextOrError(const std::function<std::string()>& call);

// The classes that doubles stand for: the siblings by Component, the query builder, and
// "KalDoubles.Entry", which only the DLL for script hosts makes.
inline constexpr std::size_t kQueryBuilderClass = kComponentNames.size();
inline constexpr std::size_t kEntryClass = kQueryBuilderClass + 1;
[[nodiscard]] GUID ClassIdOf(std::size_t index);
[[nodiscard]] ComPtr<IDispatch> MakeDoubleOf(std::size_t index, Siblings& siblings);
// Hands out another object for each request.
[[nodiscard]] ComPtr<IClassFactory> MakeClassObject(std::function<ComPtr<IDispatch>()> make);

// The classes in the registry; without a server's path for those that live in this program.
void WriteClasses(const std::wstring& serverPath);
void DeleteClasses();

// The siblings of this program, until it ends; who answers for them may change.
void RegisterInThisProgram(Siblings*& siblings);

}  // namespace kal::test
