// Database: the connection of one company, and how selections are run on it.
//
// Statements are prepared once for each shape of selection and kept. So are the answers, decoded,
// of the selections from tables that change rarely (settings, templates, accounts, VAT codes):
// every entry asks them the same questions, and the table of VAT codes, which is read whole, costs
// more than all other questions together. They hold as long as the file does not change. Then
// each is asked for again, and what was kept stays where the file still says the same: most
// changes are entries, and comparing costs less than decoding anew. What the books answer is never
// kept.

#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "company/Pool.h"
#include "company/QuerySql.h"
#include "company/Sqlite.h"
#include "platform/MemoryRecordset.h"
#include "siblings/QueryBuilder.h"

namespace kal::company {

class Database {
 public:
  static constexpr int kBusyMilliseconds = 5000;

  // Raises an error when the file is missing, can't be read or is no company.
  explicit Database(const std::string& path, int busyMilliseconds = kBusyMilliseconds);

  [[nodiscard]] std::shared_ptr<MemoryRecordset> Open(const QueryBuilder& query);
  // The first column of the first row; Null when there is no row.
  [[nodiscard]] Variant FirstValue(const QueryBuilder& query);
  // A statement of this program's own, prepared at its first use. The text is the key: it must be
  // a constant.
  [[nodiscard]] SqliteStatement& Prepared(std::string_view constantSql);

  [[nodiscard]] const Company::Counters& Counted() const { return connection_.Counted(); }
  void Record(std::vector<std::string>* target);

  void BeginReading();
  void EndReading() noexcept;

  // For the sibling components over this database.
  [[nodiscard]] Pool& Memory() { return *pool_; }

  [[nodiscard]] bool HasTable(std::string_view name);
  void CreateTemporaryTable(const std::string& name, const RowTable& rows);
  void DropTemporaryTable(const std::string& name) noexcept;

 private:
  struct Hash {
    using is_transparent = void;
    std::size_t operator()(std::string_view text) const {
      return std::hash<std::string_view>()(text);
    }
  };

  template <class Value>
  using ByText = std::unordered_map<std::string, Value, Hash, std::equal_to<>>;

  // An answer, and the version of the file that gave it.
  struct Kept {
    std::shared_ptr<const RowTable> rows;  // nothing before the first answer
    std::int64_t version = 0;
  };

  // A selection, ready to run.
  struct Selection {
    Selection(const Sqlite& connection, RenderedQuery rendered);

    SqliteStatement statement;
    std::vector<ResultColumn> columns;
    std::shared_ptr<const RowLayout> layout;
    std::shared_ptr<const RowTable> none;  // what a selection without rows answers
    bool keepsAnswers = false;
    std::size_t rows = 0;   // of the last answer: the next one has hardly more
    bool ofTheFile = true;  // reads tables of the company alone
    ByText<Kept> answers;   // by the values asked with
  };

  void RequireCompany();
  [[nodiscard]] std::int64_t FileVersion();
  void RunOnce(std::string_view constantSql);
  [[nodiscard]] Selection& Select(const QueryBuilder& query);
  [[nodiscard]] std::vector<TableColumn> ColumnsOf(std::string_view table);
  [[nodiscard]] std::shared_ptr<const RowTable> Answer(const QueryBuilder& query);
  [[nodiscard]] std::shared_ptr<const RowTable> Run(Selection& selection, const QueryBuilder& query,
                                                    std::shared_ptr<const RowTable> before);
  void ForgetAnswers();
  void FillTemporaryTable(const std::string& name, const RowTable& rows);
  void ForgetTemporarySelections();

  std::shared_ptr<Pool> pool_ = std::make_shared<Pool>();
  Sqlite connection_;  // before all statements
  ByText<Selection> selections_;
  ByText<SqliteStatement> prepared_;
  std::optional<std::int64_t> versionOfReading_;
  std::size_t keptRows_ = 0;
  std::string key_;  // of what is being looked up; kept for its memory
};

}  // namespace kal::company
