// Doubles: automation objects for tests, around the core's own interfaces.
//
// A double knows its members by name; the first is the default one. Record sets wrap a Recordset,
// siblings ask a SmallCompany. Errors leave as automation's exceptions. All doubles are counted by
// kind, so that a test sees what the component still holds.

#pragma once

#include <functional>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Recordset.h"
#include "server/Automation.h"
#include "server/ComPtr.h"
#include "server/Conversion.h"
#include "tests/windows/SmallCompany.h"

namespace kal::test {

struct DoubleMember {
  const wchar_t* name;
  WORD kinds;
  std::size_t most;  // arguments
  std::function<ScopedVariant(std::span<VARIANT*> arguments)> call;
};

[[nodiscard]] ComPtr<IDispatch> MakeDouble(std::string_view kind, std::vector<DoubleMember> members,
                                           std::shared_ptr<void> content = nullptr);

// How many doubles of that kind live; of all kinds for "".
[[nodiscard]] long LiveDoubles(std::string_view kind = "");
// How many ids were looked up so far, and how many calls were made.
[[nodiscard]] long IdLookups();
[[nodiscard]] long Calls();
// The n-th call from now on fails with -2147467259; 0: none.
void FailCallAt(long n);

[[nodiscard]] ComPtr<IDispatch> MakeRecordsetDouble(std::shared_ptr<Recordset> set);

// The ProgIDs that a company answers for, and their class identifiers in the same order.
[[nodiscard]] const std::vector<std::wstring>& SiblingProgIds();
[[nodiscard]] GUID SiblingClassId(std::size_t index);
[[nodiscard]] ComPtr<IDispatch> MakeSiblingDouble(std::size_t index, SmallCompany& company);

// Hands out one sibling, or another object, for each request.
[[nodiscard]] ComPtr<IClassFactory> MakeClassObject(std::function<ComPtr<IDispatch>()> make);

// The classes in the registry; without a server's path for classes that live in this program.
void WriteClass(const std::wstring& progId, const GUID& classId, const std::wstring& serverPath);
void DeleteClass(const std::wstring& progId, const GUID& classId);

// Registers the siblings of this program as long as it lives; the company may change.
class SiblingsOfThisProgram {
 public:
  explicit SiblingsOfThisProgram(SmallCompany*& company);
  SiblingsOfThisProgram(const SiblingsOfThisProgram&) = delete;
  SiblingsOfThisProgram& operator=(const SiblingsOfThisProgram&) = delete;
  ~SiblingsOfThisProgram();

 private:
  std::vector<DWORD> cookies_;
};

}  // namespace kal::test
