// Engine: what a company asks of the database that holds its tables.
//
// An engine is one connection, for one thread. It knows selections and no sibling component. It
// only reads, temporary tables aside. Its failures are described in company/DataError.h.

#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/MemoryRecordset.h"
#include "siblings/Selection.h"

namespace kal::company {

// What a connection has done so far.
struct Counters {
  std::uint64_t queries = 0;       // selections and procedures that the database ran
  std::uint64_t prepared = 0;      // statements prepared
  std::uint64_t transactions = 0;  // states of the books that were held
  // Of a server: how often it was waited for, and for how many questions by themselves, because
  // nobody had foreseen them.
  std::uint64_t roundTrips = 0;
  std::uint64_t unforeseen = 0;
};

// Does what will be done inside a reading, for nobody to see: see Company::Reading.
using Rehearsal = std::function<void()>;

class Engine {
 public:
  Engine() = default;
  Engine(const Engine&) = delete;
  Engine& operator=(const Engine&) = delete;
  virtual ~Engine() = default;

  // The rows of a selection, which stay as they are whatever happens to the database afterwards.
  // The reference is valid until the next question.
  [[nodiscard]] virtual const std::shared_ptr<const RowTable>& Rows(const Query& query) = 0;
  // The highest protocol of the definitive entries of that year of registration, register type and
  // section; Null when there is none.
  [[nodiscard]] virtual Variant HighestProtocol(const Variant& year, const Variant& registerType,
                                                const Variant& section) = 0;
  // How many closing installments point to installments that the entry's account lines carry. One
  // counts once, however many lines carry what it closes.
  [[nodiscard]] virtual std::int32_t Closings(const Variant& entry) = 0;

  // From Begin to End everything is read from one state of the books; outside of them, every
  // question sees the books as they are when it is asked. An engine for which questions cost more
  // than what asks them runs the rehearsal first, if there is one: as often as it likes, answering
  // from belief, to ask everything at once. Whatever the rehearsal throws is ignored.
  virtual void BeginReading(const Rehearsal& rehearsal) = 0;
  [[nodiscard]] virtual bool WantsRehearsal() const { return false; }
  virtual void EndReading() noexcept = 0;

  // What tells the database from every other one, whatever its name.
  [[nodiscard]] virtual std::string Database() const = 0;
  [[nodiscard]] virtual bool HasTable(std::string_view name) = 0;
  // A table of this connection alone; the name may be any text.
  virtual void MakeTemporaryTable(const std::string& name, const RowTable& rows) = 0;
  virtual void DropTemporaryTable(const std::string& name) noexcept = 0;

  [[nodiscard]] virtual const Counters& Counted() const = 0;
  // For measuring: every selection that the database runs from now on is added to the target as it
  // is run, with its values, until the target is nullptr.
  virtual void Record(std::vector<std::string>* target) = 0;
};

}  // namespace kal::company
