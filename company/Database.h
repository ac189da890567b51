// Database: the connection of one company, and how selections are run on it.
//
// Statements are prepared once for each shape of selection and kept. What a selection without any
// condition answered is kept as well, decoded, until the file changes: the table of VAT codes is
// read whole for every entry, and would cost more than all the other questions together.

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

  void BeginReading();
  void EndReading() noexcept;

  [[nodiscard]] bool HasTable(std::string_view name);
  void CreateTemporaryTable(const std::string& name, const RowTable& rows);
  void DropTemporaryTable(const std::string& name) noexcept;

 private:
  struct Rows {
    std::shared_ptr<const RowTable> table;
    std::int64_t version;  // of the file, when they were read
  };

  // A selection, ready to run.
  struct Selection {
    Selection(const Sqlite& connection, RenderedQuery rendered);

    SqliteStatement statement;
    std::vector<ResultColumn> columns;
    std::shared_ptr<const RowTable> none;  // what a selection without rows answers
    std::optional<Rows> kept;
    bool keepsRows = false;
    bool ofTheFile = true;  // reads tables of the company alone
  };

  struct Hash {
    using is_transparent = void;
    std::size_t operator()(std::string_view text) const {
      return std::hash<std::string_view>()(text);
    }
  };

  void RequireCompany();
  [[nodiscard]] std::int64_t FileVersion();
  [[nodiscard]] Selection& Select(const QueryBuilder& query);
  [[nodiscard]] std::vector<TableColumn> ColumnsOf(std::string_view table);
  [[nodiscard]] static std::shared_ptr<const RowTable> Read(Selection& selection);
  void FillTemporaryTable(const std::string& name, const RowTable& rows);
  void ForgetTemporarySelections();

  Sqlite connection_;  // before all statements
  std::unordered_map<std::string, Selection, Hash, std::equal_to<>> selections_;
  std::unordered_map<std::string, SqliteStatement, Hash, std::equal_to<>> prepared_;
  std::string key_;  // of the selection that is being looked up; kept for its memory
};

}  // namespace kal::company
