// A native host in one page: its own record set and siblings around the checker's core, with
// nothing but the C++ standard library.

#include <iostream>
#include <memory>

#include "frame/KalCOGCheck.h"
#include "platform/MemoryRecordset.h"

namespace {

struct Status : kal::KalStatus {
  std::string GetMessage(std::int32_t code) override { return "message " + std::to_string(code); }
  std::string TranslateFromDict(std::string_view text, std::string_view, std::string_view,
                                std::string_view, std::string_view, std::string_view) override {
    return std::string(text);
  }
};

struct Settings : kal::CompanySettings {
  kal::Variant Setting(std::string_view) override { return kal::Null; }
  bool SelectFiscalYear(const kal::Variant&) override { return false; }
  kal::Variant FiscalYearField(std::string_view) override { return kal::Null; }
};

// An empty company: every selection finds nothing.
struct Database : kal::DataAccess {
  kal::RecordsetRef Open(const kal::QueryBuilder& query) override {
    std::cout << "asked for " << query.Columns().front() << " from " << query.Table() << '\n';
    const auto nothing = std::make_shared<kal::RowTable>(
        std::vector<kal::Column>{{"CodCausale", kal::DataType::VarWChar}});
    return std::make_shared<kal::MemoryRecordset>(nothing);
  }
  void Execute(std::string_view, std::span<kal::ProcedureArgument>) override {}
};

struct Siblings : kal::SiblingFactory {
  std::unique_ptr<kal::KalStatus> CreateKalStatus() override { return std::make_unique<Status>(); }
  std::unique_ptr<kal::CompanySettings> CreateCompanySettings() override {
    return std::make_unique<Settings>();
  }
  std::unique_ptr<kal::DataAccess> CreateDataAccess() override {
    return std::make_unique<Database>();
  }
};

}  // namespace

int main() {
  const auto header = std::make_shared<kal::RowTable>(
      std::vector<kal::Column>{{"CodCausale", kal::DataType::VarWChar}});
  header->AddRow({"FTA"});
  Siblings siblings;
  kal::KalCOGCheck checker(siblings);
  checker.RsTesta(std::make_shared<kal::MemoryRecordset>(header, kal::EditMode::Add));
  const bool ok = checker.OkAggiorna(true, true);
  std::cout << (ok ? "may be saved" : "refused: " + checker.ErrString()) << '\n';
}
