#include "company/Company.h"

#include "company/DataError.h"
#include "company/Siblings.h"
#include "company/Verify.h"
#include "company/postgres/Postgres.h"
#include "company/postgres/PostgresEngine.h"
#include "company/sqlite/CompanyFile.h"
#include "company/sqlite/Sqlite.h"
#include "company/sqlite/SqliteEngine.h"

namespace kal::company {
namespace {

void RequireLanguage(std::string_view language) {
  if (language != "it" && language != "en") {
    RaiseDataError(RunTime::TypeMismatch,
                   "There are no messages in the language '" + std::string(language) + "'");
  }
}

}  // namespace

void CreateCompany(const std::string& path, bool withSample) {
  CreateCompanyFile(path, withSample);
}

void Verify(const std::string& company, const FlawReport& report) {
  return IsOnServer(company) ? VerifyServer(company, report) : VerifyFile(company, report);
}

void SpareMemoryAccounts() { SpareSqliteMemoryAccounts(); }

bool IsOnServer(std::string_view name) {
  return name.starts_with("postgresql://") || name.starts_with("postgres://");
}

std::string ShownName(const std::string& name) { return IsOnServer(name) ? ShownUri(name) : name; }

Company::Company(const std::string& name, std::string_view language) {
  RequireLanguage(language);
  if (IsOnServer(name)) {
    engine_ = std::make_unique<PostgresEngine>(name);
  } else {
    engine_ = std::make_unique<SqliteEngine>(name);
  }
  siblings_ = std::make_unique<CompanySiblings>(*engine_, language);
}

Company::~Company() = default;

Siblings& Company::Siblings() { return *siblings_; }

bool Company::HasTable(std::string_view name) { return engine_->HasTable(name); }

const Counters& Company::Counted() const { return engine_->Counted(); }

void Company::Record(std::vector<std::string>* target) { engine_->Record(target); }

bool Company::IsSameAs(const Company& other) const {
  return engine_->Database() == other.engine_->Database();
}

bool Company::WantsRehearsal() const { return engine_->WantsRehearsal(); }

Company::Reading::Reading(Company& company, const Rehearsal& rehearsal) : company_(company) {
  if (company_.readings_ == 0) {
    company_.engine_->BeginReading(rehearsal);
  }
  ++company_.readings_;
}

Company::Reading::~Reading() {
  if (--company_.readings_ == 0) {
    company_.engine_->EndReading();
  }
}

Company::TemporaryTable::TemporaryTable(Company& company, std::string_view name,
                                        const RowTable& rows)
    : company_(company), name_(name) {
  company_.engine_->MakeTemporaryTable(name_, rows);
}

Company::TemporaryTable::~TemporaryTable() { company_.engine_->DropTemporaryTable(name_); }

}  // namespace kal::company
