// DispatchSiblings: the sibling components of the installed system, called by member names.
//
// Each is created fresh by its ProgID when it is asked for, and released with what is handed out.
// Raises 429 for one that is not installed.

#pragma once

#include <memory>

#include "server/DispatchRecordset.h"
#include "siblings/Siblings.h"

namespace kal {

class DispatchSiblings final : public SiblingFactory {
 public:
  // The sets must outlive the factory and what it makes.
  explicit DispatchSiblings(BorrowedSets& sets) : sets_(sets) {}

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
  BorrowedSets& sets_;
};

}  // namespace kal
