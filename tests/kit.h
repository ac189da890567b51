// The tests' kit: a small company, a valid entry of each kind, and one line that changes them.
//
// A case names an entry, what is changed in it and in the company, and what the check then
// answers. Messages are shown as their codes with the parameters behind, so that a table of cases
// reads as a table of findings in order.

#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "company/Company.h"
#include "frame/KalCOGCheck.h"
#include "host/EntryReader.h"
#include "siblings/Siblings.h"

namespace kal::test {

// A copy of the base company in a file of its own, with further SQL run on it.
class TestCompany {
 public:
  explicit TestCompany(std::string_view sql = "");
  TestCompany(const TestCompany&) = delete;
  TestCompany& operator=(const TestCompany&) = delete;
  ~TestCompany();

  [[nodiscard]] const std::filesystem::path& Path() const { return path_; }
  void Execute(std::string_view sql) const;

 private:
  std::filesystem::path path_;
};

// Hands every request through; a test overrides what it watches.
class ForwardingSiblings : public SiblingFactory {
 public:
  explicit ForwardingSiblings(SiblingFactory& inner) : inner_(inner) {}
  std::unique_ptr<KalStatus> CreateKalStatus() override { return inner_.CreateKalStatus(); }
  std::unique_ptr<CompanySettings> CreateCompanySettings() override {
    return inner_.CreateCompanySettings();
  }
  std::unique_ptr<KalAnagrafiche> CreateKalAnagrafiche() override {
    return inner_.CreateKalAnagrafiche();
  }
  std::unique_ptr<VatCodes> CreateVatCodes() override { return inner_.CreateVatCodes(); }
  std::unique_ptr<PeriodLock> CreatePeriodLock() override { return inner_.CreatePeriodLock(); }
  std::unique_ptr<VatActivities> CreateVatActivities() override {
    return inner_.CreateVatActivities();
  }
  std::unique_ptr<ProtocolNumbering> CreateProtocolNumbering() override {
    return inner_.CreateProtocolNumbering();
  }
  std::unique_ptr<FeeNotes> CreateFeeNotes() override { return inner_.CreateFeeNotes(); }
  std::unique_ptr<SqlFunctions> CreateSqlFunctions() override {
    return inner_.CreateSqlFunctions();
  }
  std::unique_ptr<Totals> CreateTotals() override { return inner_.CreateTotals(); }
  std::unique_ptr<DataAccess> CreateDataAccess() override { return inner_.CreateDataAccess(); }

 protected:
  SiblingFactory& inner_;
};

// The company's siblings with a status component whose texts are the codes: "10520(%s)".
class CodedSiblings : public ForwardingSiblings {
 public:
  using ForwardingSiblings::ForwardingSiblings;
  std::unique_ptr<KalStatus> CreateKalStatus() override;
};

// An entry as JSON text: one of acquisto, vendita, corrispettivi, giroconto, with changes, one
// after another, separated by ";". T stands for RsTesta, C for RsRCont, I for RsRIva, S for
// RsScadenze, K for RsCausale, R for RsRisconti, F for RsFiscalitaBL; rows count from 1:
//   T.Protocollo=0   C2.CodConto="x"   set a field (the header needs no row number)
//   C+{...}          add a row           C2-   take a row away
//   S!               hand over no such set   T!EditMode=2   set its edit mode
//   operation="OkModifica"   arguments=[1,2]   set a key of the entry
[[nodiscard]] std::string EntryText(std::string_view kind, std::string_view changes = "");

// An entry's checker with its record sets.
struct Checked {
  explicit Checked(SiblingFactory& siblings, const std::string& entryText);

  // Runs the entry's operation: "True", "False" or a number, followed by each result string that
  // is not empty: "False Err: 10520(1) / 10492 Warn: 10734". A run-time error shows its number and
  // the tags that it passed, innermost first: "Error 94 in OkQuadratura < OkAggiorna".
  std::string Run();
  [[nodiscard]] std::string Findings() const;  // the result strings as Run shows them
  // The position and filter of a supplied set: "2", "end", "1 where TipoRata = 0".
  [[nodiscard]] std::string State(std::string_view set) const;

  host::Entry entry;
  KalCOGCheck checker;
  std::vector<std::shared_ptr<MemoryRecordset>> sets;  // as entry.sets
};

// Cases as a text, one a row: "name | changes | expected", or "name | changes | sql | expected". An
// indented row goes on with the one above. What is expected may end with the state that sets are
// left in: "True @ C 1, S 2 where TipoRata = 0". A row in brackets names the kind of entry of those
// below it, and may give them changes and SQL: "[acquisto] | changes | sql". A row such as
// "<locked> = text" gives a text a name; those of the literal messages are known, and so are <set>
// for a company setting, <gone> behind ALTER TABLE and <missed> before the trail of its error.
void RunTable(std::string_view table);
[[nodiscard]] std::vector<std::vector<std::string>> TableRows(std::string_view table);
// The text with the names of literal messages replaced.
[[nodiscard]] std::string Written(std::string text);

}  // namespace kal::test
