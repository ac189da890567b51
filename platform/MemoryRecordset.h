// MemoryRecordset: a record set over rows held in memory, with ADO's cursor and filter rules.
//
// The rows live in a RowTable, which any number of record sets may share: each set has its own
// position and filter, the rows never change while shared. Filter texts know = <> < <= > >= and
// like, joined by and/or with parentheses around groups; values are numbers, 'texts' (a quote
// inside doubled), #dates# (dd/mm/yyyy or yyyy-mm-dd), True, False and Null. Names may stand in
// [brackets]. A value must be of its column's kind, number, text or date; anything else makes the
// filter invalid. Texts compare without regard to letter case (A to Z and the accented letters of
// Latin-1); booleans read as 0 and 1, and on a boolean column any number but 0 is 1. "= Null" and
// "<> Null" ask for Null, any other comparison with a Null field does not match. "like" takes *
// and % as the last, or as the first and the last character of its text, and makes the filter
// invalid elsewhere.
//
// When a set is filtered by an equality on the same column for the second time, the answer comes
// from an index over that column: a walk that filters a large set once for every row of another
// stays proportional to their sizes, and a single filter costs no more than a look at each row.
//
// A RowTable builds its indexes under const; tables shared between threads must be copied first.

#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <new>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Recordset.h"

namespace kal {

struct Column {
  std::string name;
  DataType type;
};

// The columns of a table and how to find them by name; any number of tables may share one.
class RowLayout {
 public:
  explicit RowLayout(std::vector<Column> columns);

  [[nodiscard]] const std::vector<Column>& Columns() const { return columns_; }
  // The place of the column, without regard to letter case; -1 when there is none.
  [[nodiscard]] std::ptrdiff_t Find(std::string_view name) const;

 private:
  // The first and the last eight bytes of a name, all of a shorter one. With its size they are the
  // whole of most names.
  struct Ends {
    Ends() = default;
    explicit Ends(std::string_view name);
    // Equal for names that differ only in letter case.
    [[nodiscard]] std::size_t Hash() const;
    bool operator==(const Ends&) const = default;

    std::uint64_t front = 0;
    std::uint64_t back = 0;
    std::size_t size = 0;
  };
  static constexpr std::ptrdiff_t kNone = -1;
  struct Slot {
    Ends ends;
    std::ptrdiff_t column = kNone;
  };

  // From that slot on, whatever the letter case.
  [[nodiscard]] std::ptrdiff_t Search(std::string_view name, std::size_t slot) const;

  std::vector<Column> columns_;
  std::vector<Slot> slots_;  // by hashed name
};

class RowTable {
 public:
  explicit RowTable(std::vector<Column> columns);
  explicit RowTable(std::shared_ptr<const RowLayout> layout);
  RowTable(const RowTable&) = delete;
  RowTable& operator=(const RowTable&) = delete;
  ~RowTable();

  // Makes room for so many rows in all.
  void Reserve(std::size_t rows);
  // One value for each column, in their order. Raises 51 when there are more or fewer.
  void AddRow(std::vector<Variant> values);
  // A row whose cells are made where they stand, one for each column, in their order:
  // makeCell(column) returns the value. There is no new row when it throws.
  template <class MakeCell>
  void AddRowOf(MakeCell makeCell);

  [[nodiscard]] const std::vector<Column>& Columns() const { return layout_->Columns(); }
  [[nodiscard]] std::size_t RowCount() const { return rowCount_; }
  // The place of the column, without regard to letter case; -1 when there is none.
  [[nodiscard]] std::ptrdiff_t FindColumn(std::string_view name) const {
    return layout_->Find(name);
  }
  [[nodiscard]] const Variant& Cell(std::size_t row, std::size_t column) const {
    return *Place(row, column);
  }

  // The rows, in order, whose cell in that column equals the value as filters compare: none for
  // Null and Empty, and none for a value of another kind than the column's. Valid until the next
  // row is added.
  [[nodiscard]] std::span<const std::uint32_t> RowsWhereEqual(std::size_t column,
                                                              const Variant& key) const;
  // Whether an index over the column is there or worth its making: from the second question on.
  [[nodiscard]] bool WantsIndex(std::size_t column) const;

 private:
  struct Index;

  [[nodiscard]] Variant* Place(std::size_t row, std::size_t column) const {
    return cells_ + column * capacity_ + row;
  }
  void CountNewRow() noexcept;
  void ReleaseCells() noexcept;

  std::shared_ptr<const RowLayout> layout_;
  // Column by column, each with room for so many rows: a walk reads few columns of every row.
  // There are values for the rows added, and nothing but room behind them.
  Variant* cells_ = nullptr;
  std::size_t capacity_ = 0;
  std::size_t rowCount_ = 0;
  // By column; no entries until an equality is asked for, and no index before the second one.
  struct Slot {
    bool asked = false;
    std::unique_ptr<Index> index;
  };
  mutable std::vector<Slot> indexes_;
};

template <class MakeCell>
void RowTable::AddRowOf(MakeCell makeCell) {
  if (rowCount_ == capacity_) {
    Reserve(rowCount_ == 0 ? 1 : rowCount_ * 2);
  }
  std::size_t made = 0;
  try {
    for (; made < Columns().size(); ++made) {
      ::new (Place(rowCount_, made)) Variant(makeCell(made));
    }
  } catch (...) {
    while (made > 0) {
      std::destroy_at(Place(rowCount_, --made));
    }
    throw;
  }
  CountNewRow();
}

class MemoryRecordset final : public Recordset {
 public:
  // The set starts on the first row of the table, unfiltered.
  explicit MemoryRecordset(std::shared_ptr<const RowTable> table,
                           kal::EditMode editMode = kal::EditMode::None);
  ~MemoryRecordset() override;

  // Becomes a set over that table, as one made anew would be, but for its edit mode and its memory.
  // For whoever is alone in holding it: fields handed out before are good no longer.
  void StartOver(const std::shared_ptr<const RowTable>& table);

  [[nodiscard]] const Field& Fields(std::string_view name) override;
  [[nodiscard]] const Field& Fields(std::size_t index) override;
  [[nodiscard]] std::int32_t RecordCount() override;
  [[nodiscard]] kal::EditMode EditMode() override { return editMode_; }
  void Filter(std::string_view condition) override;
  void Filter(FilterGroup group) override;
  void MoveFirst() override;
  void MoveNext() override;
  void MoveLast() override;
  [[nodiscard]] bool Eof() override;
  [[nodiscard]] bool HasCurrentRow() noexcept override {
    return IsOnRow() && !table_->Columns().empty();
  }

  // For whoever shows the state of the set: the filter text in force ("" when none), and the
  // current row's place among the visible rows, counted from 1 (0 when no row is current).
  [[nodiscard]] const std::string& FilterText() const { return filterText_; }
  [[nodiscard]] std::size_t Position() const;
  // The current row's place in the table, whatever the filter, counted from 1; 0 likewise.
  [[nodiscard]] std::size_t Row() const override;
  [[nodiscard]] std::shared_ptr<const RowTable> AllRows() const override { return table_; }

 private:
  class CellField;  // NOLINT(cppcoreguidelines-virtual-class-destructor): final, never owned as
                    // Field

  [[nodiscard]] const Field& FieldAt(std::size_t column);
  void MakeFields();
  [[nodiscard]] std::size_t VisibleCount() const {
    return filtered_ ? visible_.size() : table_->RowCount();
  }
  // To that place among the visible rows; their count is the end.
  void GoTo(std::size_t position) {
    position_ = position;
    row_ = !filtered_ ? position : position < visible_.size() ? visible_[position] : kNoRow;
  }
  [[nodiscard]] bool IsOnRow() const { return row_ < table_->RowCount(); }
  [[nodiscard]] std::size_t CurrentRow() const;  // raises 3021
  // Puts the rows that meet the condition into gathered_.
  void Gather(const class FilterExpression& condition);

  std::shared_ptr<const RowTable> table_;
  kal::EditMode editMode_;
  std::vector<CellField> fields_;  // by column; too few until one is asked for
  std::string filterText_;
  bool filtered_ = false;
  std::vector<std::uint32_t> visible_;   // the rows shown, when filtered
  std::vector<std::uint32_t> gathered_;  // where the next filter's rows are put together
  static constexpr std::size_t kNoRow = SIZE_MAX;
  std::size_t position_ = 0;  // among the visible rows; their count at the end
  std::size_t row_ = 0;       // the current one's place in the table; behind it at the end
};

}  // namespace kal
