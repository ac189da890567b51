// CompanySiblings: the sibling components, answered from the company's tables.
//
// Where a table has no row for a question, the answer is the one that changes nothing: False, 0,
// "" or Null.

#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "company/Database.h"
#include "siblings/Siblings.h"

namespace kal::company {

class CompanySiblings final : public SiblingFactory {
 public:
  // The database must outlive the factory, and the factory what it creates.
  CompanySiblings(Database& database, std::string_view language)
      : database_(database), language_(language) {}

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
  Database& database_;
  std::string language_;
};

}  // namespace kal::company
