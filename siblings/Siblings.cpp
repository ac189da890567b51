#include "siblings/Siblings.h"

#include "platform/RunTimeError.h"

namespace kal {
namespace {

[[noreturn]] void CannotCreate(std::string_view component) {
  Raise(RunTime::CannotCreateObject, "This host has no component " + std::string(component));
}

}  // namespace

std::unique_ptr<KalStatus> SiblingFactory::CreateKalStatus() { CannotCreate("KalStatus"); }

std::unique_ptr<CompanySettings> SiblingFactory::CreateCompanySettings() {
  CannotCreate("CompanySettings");
}

std::unique_ptr<KalAnagrafiche> SiblingFactory::CreateKalAnagrafiche() {
  CannotCreate("KalAnagrafiche");
}

std::unique_ptr<VatCodes> SiblingFactory::CreateVatCodes() { CannotCreate("VatCodes"); }

std::unique_ptr<PeriodLock> SiblingFactory::CreatePeriodLock() { CannotCreate("PeriodLock"); }

std::unique_ptr<VatActivities> SiblingFactory::CreateVatActivities() {
  CannotCreate("VatActivities");
}

std::unique_ptr<ProtocolNumbering> SiblingFactory::CreateProtocolNumbering() {
  CannotCreate("ProtocolNumbering");
}

std::unique_ptr<FeeNotes> SiblingFactory::CreateFeeNotes() { CannotCreate("FeeNotes"); }

std::unique_ptr<SqlFunctions> SiblingFactory::CreateSqlFunctions() { CannotCreate("SqlFunctions"); }

std::unique_ptr<Totals> SiblingFactory::CreateTotals() { CannotCreate("Totals"); }

std::unique_ptr<DataAccess> SiblingFactory::CreateDataAccess() { CannotCreate("DataAccess"); }

}  // namespace kal
