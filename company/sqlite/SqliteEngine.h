// SqliteEngine: a company in an SQLite file.
//
// A constant selection is prepared once and known again by its address, its name and which of its
// values are Booleans; any other is prepared for its one use. Kept as well, decoded, are the
// answers of constant selections from tables that change rarely (settings, templates, accounts, VAT
// codes): every entry asks them the same questions, and the table of VAT codes, which is read
// whole, costs more than all other questions together. They hold as long as the file does not
// change. Then each is asked for again, and what was kept stays where the file still says the same:
// most changes are entries, and comparing costs less than decoding anew. What the books answer is
// never kept, but for where they end: as long as the file does not change, the highest protocol and
// the last day of a register answer for all entries that come behind them.

#pragma once

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "company/Engine.h"
#include "company/QuerySql.h"
#include "company/SelectionUse.h"
#include "company/sqlite/Sqlite.h"

namespace kal::company {

struct FileIdentity {
  std::uint64_t device;
  std::uint64_t number;

  friend bool operator==(const FileIdentity&, const FileIdentity&) = default;
};

class SqliteEngine final : public Engine {
 public:
  // Raises an error when the file is missing, can't be read or is no company.
  explicit SqliteEngine(const std::string& path, const Patience& patience = {});

  [[nodiscard]] const std::shared_ptr<const RowTable>& Rows(const Query& query) override;
  [[nodiscard]] Variant HighestProtocol(const Variant& year, const Variant& registerType,
                                        const Variant& section) override;
  [[nodiscard]] std::int32_t Closings(const Variant& entry) override;
  void BeginReading(const Rehearsal& rehearsal) override;
  void EndReading() noexcept override;
  [[nodiscard]] std::string Database() const override;
  [[nodiscard]] bool HasTable(std::string_view name) override;
  void MakeTemporaryTable(const std::string& name, const RowTable& rows) override;
  void DropTemporaryTable(const std::string& name) noexcept override;
  [[nodiscard]] const Counters& Counted() const override { return connection_.Counted(); }
  void Record(std::vector<std::string>* target) override;

 private:
  // An answer, what was asked for it, and the version of the file that gave it.
  struct Kept {
    [[nodiscard]] bool Holds(std::int64_t now) const { return rows != nullptr && version == now; }

    std::vector<Variant> asked;
    std::shared_ptr<const RowTable> rows;  // nothing before the first answer
    std::int64_t version = 0;
    Kept* next = nullptr;  // what the same selection was asked for after it the last time
  };

  // The highest values in the rows that share these values: where the books end.
  struct Edge {
    std::vector<Variant> shared;
    std::vector<Variant> highest;  // by column; none before they were asked for
  };

  // A selection, ready to run. Its SQL depends on which of its values are Booleans: the kinds have
  // one bit for each, behind a set one.
  struct Prepared {
    Prepared(const Sqlite& connection, RenderedQuery rendered);

    SqliteStatement statement;
    std::vector<ResultColumn> columns;
    std::vector<ComparedValue> values;
    std::shared_ptr<const RowLayout> layout;
    std::shared_ptr<const RowTable> none;  // what a selection without rows answers
    bool keepsAnswers = false;
    bool ofTheFile = true;  // reads tables of the company alone
    std::size_t rows = 0;   // of the last answer: the next one has hardly more
    ByText<Kept> answers;   // by the values asked with
    Kept* latest = nullptr;
    std::optional<GreatestValues> greatest;
    std::vector<Edge> edges;
    std::int64_t edgesOf = 0;  // the version of the file that they are of
  };

  // Every check asks for much the same, in the same order: where a selection was found the last
  // time is looked at before it is searched for.
  struct Place {
    UseView use = {};
    Prepared* prepared = nullptr;
  };

  void RequireTables();
  void RequireSameFile();
  void RefuseViews();
  [[noreturn]] void RaiseNoTable(std::string_view name) const;
  // Outside of a reading it looks for what else has changed: which file has the name, and the
  // schema, with which all that is prepared and kept goes.
  [[nodiscard]] std::int64_t FileVersion();
  // A statement of this program's own, prepared at its first use. The text is the key: it must be
  // a constant.
  [[nodiscard]] SqliteStatement& Constant(std::string_view sql);
  [[nodiscard]] Prepared Prepare(const Query& query);
  [[nodiscard]] Place& PlaceOf(const Selection& selection);
  // The answer that followed the last one of this selection, where it is the one asked for.
  [[nodiscard]] Kept* Expected(const Query& query);
  [[nodiscard]] Prepared& PreparedBefore(const Query& query);
  [[nodiscard]] Kept& KeptBefore(Prepared& prepared, std::span<const Variant> values);
  [[nodiscard]] TableShape ShapeOf(std::string_view table);
  // The table given from before is the answer when it still is what the file says.
  [[nodiscard]] std::shared_ptr<const RowTable> Run(
      Prepared& prepared, const Query& query, const std::shared_ptr<const RowTable>& before = {});
  // Whether the question, within a reading, asks for nothing but what lies behind the edge of the
  // books. An edge is asked for once, until the file changes.
  [[nodiscard]] bool LiesBehind(Prepared& prepared, const Query& query);
  [[nodiscard]] std::vector<Variant> Greatest(const Prepared& prepared, const Query& query);
  [[nodiscard]] bool IsAnswered(std::string_view sql, std::string_view name);
  void ForgetAnswers();
  void ForgetPlaces() { places_.fill({}); }
  void FillTemporaryTable(const std::string& name, const RowTable& rows);
  void ForgetTemporarySelections();

  std::optional<FileIdentity> file_;
  std::chrono::steady_clock::time_point nextLook_;
  Sqlite connection_;  // before all statements
  SqliteStatement begin_;
  SqliteStatement end_;
  SqliteStatement version_;
  SqliteStatement schema_;
  std::unordered_map<Use, Prepared, UseHash, SameUse> selections_;
  static constexpr std::size_t kPlaces = 256;  // so many that few selections share one
  std::array<Place, kPlaces> places_;
  ByText<SqliteStatement> constants_;
  std::optional<std::int64_t> versionOfReading_;
  std::optional<std::int64_t> versionSeen_;  // the latest
  std::optional<std::int64_t> schemaSeen_;   // that of all that is prepared
  std::size_t keptRows_ = 0;
  std::string key_;                         // of what is being looked up; kept for its memory
  std::shared_ptr<const RowTable> answer_;  // the last one that is not kept
};

}  // namespace kal::company
