// A native host in one page: its own record set and siblings around the checker's core, with
// nothing but the C++ standard library.

#include <kal/KalCOGCheck.h>
#include <kal/MemoryRecordset.h>

#include <iostream>
#include <memory>

namespace {

// An empty company: every selection finds nothing, every message is its number.
class EmptyCompany final : public kal::Siblings {
 public:
  kal::SiblingAnswer Ask(const kal::SiblingCall& call) override {
    switch (call.member) {
      case kal::Member::DataAccess_Open:
        std::cout << "asked for " << call.query->What().Columns()[0] << " from "
                  << call.query->What().Table() << '\n';
        return {.rows = std::make_shared<kal::MemoryRecordset>(NoRows())};
      case kal::Member::KalStatus_GetMessage:
        return {.value = "message " + kal::CStr(call.values.front())};
      case kal::Member::CompanySettings_Setting:
        return {.value = kal::Null};
      default:
        return {};
    }
  }

 private:
  static std::shared_ptr<kal::RowTable> NoRows() {
    return std::make_shared<kal::RowTable>(
        std::vector<kal::Column>{{"CodCausale", kal::DataType::VarWChar}});
  }
};

}  // namespace

int main() {
  const auto header = std::make_shared<kal::RowTable>(
      std::vector<kal::Column>{{"CodCausale", kal::DataType::VarWChar}});
  header->AddRow({"FTA"});
  EmptyCompany company;
  kal::KalCOGCheck checker(company);
  checker.RsTesta(std::make_shared<kal::MemoryRecordset>(header, kal::EditMode::Add));
  const bool ok = checker.OkAggiorna(true, true);
  std::cout << (ok ? "may be saved" : "refused: " + checker.ErrString()) << '\n';
}
