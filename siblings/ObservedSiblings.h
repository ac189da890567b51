// ObservedSiblings: a factory that hands every request through and tells an observer of each
// question to a sibling component, with its answer.
//
// It is for hosts that show how a decision came about. A question that raises an error is not
// told: the error tells of itself.

#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "platform/Variant.h"
#include "siblings/QueryBuilder.h"
#include "siblings/Siblings.h"

namespace kal {

// Valid during the call that tells of it.
struct SiblingQuestion {
  std::string_view component;  // as the factory names it: "DataAccess", "CompanySettings"
  std::string_view text;       // what was asked, in words
  Variant answer;              // of a selection: whether a row came back
};

class SiblingObserver {
 public:
  virtual ~SiblingObserver() = default;
  virtual void Asked(const SiblingQuestion& /*question*/) {}

 protected:
  SiblingObserver() = default;
  SiblingObserver(const SiblingObserver&) = default;
  SiblingObserver& operator=(const SiblingObserver&) = default;
};

// The tables, joined ones behind "+", each with its conditions in parentheses: "," is "and", "|"
// is "or". Which columns join two tables is left out. "STDPianoDeiConti (CodConto = '0101',
// TipoConto = 0)".
[[nodiscard]] std::string InWords(const QueryBuilder& query);

class ObservedSiblings final : public SiblingFactory {
 public:
  // Both must outlive the factory and what it creates.
  ObservedSiblings(SiblingFactory& inner, SiblingObserver& observer)
      : inner_(inner), observer_(observer) {}

  [[nodiscard]] std::unique_ptr<KalStatus> CreateKalStatus() override;
  [[nodiscard]] std::unique_ptr<CompanySettings> CreateCompanySettings() override;
  [[nodiscard]] std::unique_ptr<KalAnagrafiche> CreateKalAnagrafiche() override;
  [[nodiscard]] std::unique_ptr<VatCodes> CreateVatCodes() override;
  [[nodiscard]] std::unique_ptr<PeriodLock> CreatePeriodLock() override;
  [[nodiscard]] std::unique_ptr<VatActivities> CreateVatActivities() override;
  [[nodiscard]] std::unique_ptr<ProtocolNumbering> CreateProtocolNumbering() override;
  [[nodiscard]] std::unique_ptr<FeeNotes> CreateFeeNotes() override;
  [[nodiscard]] std::unique_ptr<SqlFunctions> CreateSqlFunctions() override;
  [[nodiscard]] std::unique_ptr<Totals> CreateTotals() override;
  [[nodiscard]] std::unique_ptr<DataAccess> CreateDataAccess() override;

 private:
  SiblingFactory& inner_;
  SiblingObserver& observer_;
};

}  // namespace kal
