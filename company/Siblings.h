// CompanySiblings: the sibling components, answered from the company's tables.
//
// Where a table has no row for a question, the answer is the one that changes nothing: False, 0,
// "" or Null.

#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>

#include "company/Engine.h"
#include "siblings/Siblings.h"

namespace kal::company {

class CompanySiblings final : public Siblings {
 public:
  // The engine must outlive the siblings, and these must outlive the states of their components.
  CompanySiblings(Engine& engine, std::string_view language)
      : engine_(engine), language_(language) {}

  SiblingAnswer Ask(const SiblingCall& call) override;

 private:
  struct FiscalYear;
  struct Person;
  struct Sums;

  // The component's state, made at its first use.
  template <class State>
  [[nodiscard]] State& StateOf(const SiblingCall& call);

  [[nodiscard]] SiblingAnswer AskMember(const SiblingCall& call);
  [[nodiscard]] RecordsetRef Open(const Query& query);
  // The first column of the first row; Null when there is no row.
  [[nodiscard]] Variant FirstValue(const Query& query);
  // The value that a constant selection finds for one value.
  template <const Selection& kSelection>
  [[nodiscard]] Variant Find(const Variant& value);

  [[nodiscard]] Variant Message(Variant& code);
  [[nodiscard]] Variant Translation(Variant& text);
  [[nodiscard]] Variant Setting(Variant& name);
  [[nodiscard]] bool SelectFiscalYear(FiscalYear& selected, const Variant& date);
  [[nodiscard]] Variant InfoAnagrafica(const Person& person, Variant& name);
  [[nodiscard]] Variant Expression(std::int32_t functionCode, std::string_view column);
  [[nodiscard]] bool IsLocked(const Variant& date);
  [[nodiscard]] std::int32_t NextProtocol(std::span<const Variant> values);
  [[nodiscard]] Variant Execute(std::span<Variant> values);

  Engine& engine_;
  Variant language_;
  std::string expression_;  // the last one; kept for its memory
  // A check opens some twenty small record sets, few of them at a time, mostly over the rows that
  // the last check saw: a set that everybody else has let go of is handed out again, by its table.
  static constexpr std::size_t kMostSets = 32;
  std::array<std::shared_ptr<MemoryRecordset>, kMostSets> sets_;
};

}  // namespace kal::company
