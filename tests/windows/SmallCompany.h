// SmallCompany: a company in memory that answers for all siblings, and entries to check over it.
//
// It stands on both sides of a comparison: the core asks it directly, and automation doubles of
// the siblings ask it for the component. It writes down every question with the types of its
// values, so that two runs can be compared by what they asked.

#pragma once

#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/MemoryRecordset.h"
#include "siblings/Siblings.h"

namespace kal::test {

// Rows as text. Columns: "CodConto:t TipoConto:i" with i l m d b f t for the types; a row:
// "CodConto=0101 TipoConto=0", a column left out is Null.
struct TableText {
  std::string columns;
  std::vector<std::string> rows;
};
[[nodiscard]] std::shared_ptr<RowTable> MakeTable(const TableText& text);
[[nodiscard]] Variant MakeValue(char type, const std::string& text);

// A selection as it was described, call by call.
struct Selection {
  struct Condition {
    std::string column;
    std::string operation;
    Variant value;
  };

  std::vector<std::string> said;
  std::string table;
  std::vector<std::string> joined;
  std::vector<Condition> conditions;                 // of the selection, not of its joins
  std::vector<std::vector<Condition>> alternatives;  // of its any-of group
  bool inWhere = false;
  bool inAnyOf = false;

  void Say(std::string_view what, const std::vector<Variant>& values = {});
  void AddTable(std::string_view name);
  void AddJoin(std::int16_t kind, std::string_view name);
  void BeginWhere();
  void BeginAlternative();
  void AddCondition(std::string_view column, std::string_view operation, const Variant& value);
};
[[nodiscard]] Selection SelectionOf(const QueryBuilder& query);

class SmallCompany final : public SiblingFactory {
 public:
  // Further rows, each "TABLE Column=value ...", separated by ";".
  explicit SmallCompany(std::string_view furtherRows = "");

  [[nodiscard]] std::vector<std::string>& Questions() { return questions_; }
  // The n-th question from now on, counted from 1, fails; 0: none.
  void FailAt(int n) { failAt_ = n; }

  [[nodiscard]] std::shared_ptr<MemoryRecordset> Select(const Selection& selection);

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

  // For the siblings: a question, and the rows of a table that hold the value in the column.
  void Ask(std::string_view question, const std::vector<Variant>& values = {});
  [[nodiscard]] RecordsetRef Rows(std::string_view table, std::string_view column,
                                  const Variant& value);
  // The field of the first such row, otherwise the other value.
  [[nodiscard]] Variant Value(std::string_view table, std::string_view column, const Variant& key,
                              std::string_view field, const Variant& otherwise);

 private:
  std::map<std::string, TableText, std::less<>> tables_;
  std::vector<std::string> questions_;
  int failAt_ = 0;
};

// "purchase" or "transfer", with changes separated by ";": "T.Protocollo=0" sets a field of the
// header's row, "C2.CodConto=x" one of the second account line, "S!" hands over no such set,
// "T!Add" sets the edit mode. Letters: T RsTesta, C RsRCont, I RsRIva, S RsScadenze, K RsCausale,
// F RsFiscalitaBL, R RsRisconti.
using EntrySets = std::map<std::string, std::shared_ptr<MemoryRecordset>>;
[[nodiscard]] EntrySets MakeEntry(std::string_view kind, std::string_view changes);

[[nodiscard]] std::vector<std::string> SplitText(std::string_view text, char separator);
// The value with its type: "3:5" for the number 5 in 16 bits.
[[nodiscard]] std::string Shown(const Variant& value);

}  // namespace kal::test
