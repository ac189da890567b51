// Doors: the three ways to a checker, with one face: the core itself, the automation object through
// its vtable, and the automation object by member names.

#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "host/Operations.h"
#include "platform/MemoryRecordset.h"
#include "server/Automation.h"
#include "server/ComPtr.h"
#include "server/IKalCOGCheck.h"
#include "tests/windows/SmallCompany.h"

namespace kal::test {

// A checker straight from the DLL that stands beside this program; the DLL stays loaded.
[[nodiscard]] ComPtr<IKalCOGCheck> MakeChecker();
[[nodiscard]] std::wstring ServerPath();
// An exported function of the DLL.
[[nodiscard]] FARPROC ServerFunction(const char* name);

class Door {
 public:
  Door() = default;
  Door(const Door&) = delete;
  Door& operator=(const Door&) = delete;
  virtual ~Door() = default;

  // Assigns a record set, or Nothing, to the member of that name.
  virtual void Assign(std::string_view member, const std::shared_ptr<Recordset>& set) = 0;
  virtual void AssignText(std::string_view text) = 0;  // TmpTableScadenze
  // Raises what the checker raises.
  virtual Variant Call(const host::Operation& operation, const std::vector<Variant>& arguments) = 0;
  virtual Variant Get(std::string_view property) = 0;
};

enum class Way { Core, Early, Late };
[[nodiscard]] const char* NameOf(Way way);
[[nodiscard]] std::unique_ptr<Door> Open(Way way, SmallCompany& company);

// "OkAggiorna true true": an operation with its arguments, as they stand in a table of cases.
struct OperationCall {
  explicit OperationCall(std::string_view text);

  const host::Operation* operation;
  std::vector<Variant> arguments;
};

// Runs it: "True", or "Error 94 'source' 'description'", then every result that is not empty.
[[nodiscard]] std::string Ask(Door& door, const OperationCall& call);

}  // namespace kal::test
