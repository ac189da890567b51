#include "platform/MemoryRecordset.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <iterator>
#include <limits>
#include <numeric>
#include <optional>
#include <utility>

#include "platform/FilterParser.h"
#include "platform/FilterValue.h"
#include "platform/LetterCase.h"
#include "platform/Quoted.h"
#include "platform/RunTimeError.h"

namespace kal {
namespace {

// Sets of up to so many rows are looked through faster than an index is made.
constexpr std::size_t kSmallSet = 16;

// An open-addressing table has at least twice as many slots as entries.
std::size_t SlotsFor(std::size_t entries) { return std::bit_ceil(entries * 2 + 2); }

template <class Word>
std::uint64_t Bytes(const char* bytes) {
  Word word = 0;
  std::memcpy(&word, bytes, sizeof word);
  return word;
}

[[noreturn]] void RaiseNoField(std::string_view name) {
  Raise(RunTime::NoSuchField, "There is no field " + Quoted(name), kRecordsetSource);
}

[[noreturn]] void RaiseNoCurrentRow() {
  Raise(RunTime::NoCurrentRecord, "There is no current row", kRecordsetSource);
}

}  // namespace

// The rows of a column grouped by equal cells. The rows of a group stand together, in order.
struct RowTable::Index {
  Index(const RowTable& table, std::size_t column);

  // The slot of the group that the value belongs to, or the free one where it would stand.
  [[nodiscard]] std::size_t FindSlot(const RowTable& table, std::size_t column,
                                     const Variant& value) const {
    std::size_t slot = static_cast<std::size_t>(HashInFilter(value)) & (slots.size() - 1);
    while (slots[slot] != 0 &&
           CompareInFilter(table.Cell(example[slots[slot] - 1], column), value) != 0) {
      slot = (slot + 1) & (slots.size() - 1);
    }
    return slot;
  }

  std::vector<std::uint32_t> slots;    // a group's place plus 1, 0 where free
  std::vector<std::uint32_t> example;  // by group: its first row
  std::vector<std::uint32_t> start;    // by group: where its rows start; one entry more at the end
  std::vector<std::uint32_t> rows;
};

RowTable::Index::Index(const RowTable& table, std::size_t column)
    : slots(SlotsFor(table.rowCount_)) {
  constexpr std::uint32_t kNoGroup = std::numeric_limits<std::uint32_t>::max();
  std::vector<std::uint32_t> groupOf(table.rowCount_, kNoGroup);
  Variant room;
  for (std::uint32_t row = 0; row < table.rowCount_; ++row) {
    // The constant that a filter would look for; cells that equal none, such as NaN, are left out.
    const Variant& cell = table.Cell(row, column);
    const Variant* value = FilterConstant(table.Columns()[column].type, cell, room);
    if (value == nullptr || CompareInFilter(cell, *value) != 0) {
      continue;
    }
    std::uint32_t& slot = slots[FindSlot(table, column, *value)];
    if (slot == 0) {
      example.push_back(row);
      start.push_back(0);
      slot = static_cast<std::uint32_t>(example.size());
    }
    groupOf[row] = slot - 1;
    ++start[slot - 1];
  }
  // From the numbers of rows to the ends of the groups; filling backwards turns these to starts.
  std::partial_sum(start.begin(), start.end(), start.begin());
  start.push_back(start.empty() ? 0 : start.back());
  rows.resize(start.back());
  for (std::size_t row = table.rowCount_; row-- > 0;) {
    if (groupOf[row] != kNoGroup) {
      rows[--start[groupOf[row]]] = static_cast<std::uint32_t>(row);
    }
  }
}

RowLayout::Ends::Ends(std::string_view name) : size(name.size()) {
  if (const char* const end = name.data() + size; size >= sizeof(std::uint64_t)) {
    front = Bytes<std::uint64_t>(name.data());
    back = Bytes<std::uint64_t>(end - sizeof(std::uint64_t));
  } else if (size >= sizeof(std::uint32_t)) {
    front = Bytes<std::uint32_t>(name.data());
    back = Bytes<std::uint32_t>(end - sizeof(std::uint32_t));
  } else {
    for (const char c : name) {
      front = (front << 8U) | static_cast<unsigned char>(c);
    }
  }
}

// Reads no more of a name than this: enough to tell columns apart, and a field is looked up at
// every read.
std::size_t RowLayout::Ends::Hash() const {
  constexpr std::uint64_t kLowerCase = 0x2020202020202020U;  // other bytes may fall together
  const std::uint64_t mixed = ((front | kLowerCase) * 0x9E3779B97F4A7C15U) ^
                              (((back | kLowerCase) + size) * 0xC2B2AE3D27D4EB4FU);
  return static_cast<std::size_t>(mixed >> 32U);
}

RowLayout::RowLayout(std::vector<Column> columns)
    : columns_(std::move(columns)), slots_(SlotsFor(columns_.size())) {
  for (std::size_t column = 0; column < columns_.size(); ++column) {
    // Of columns with one name the first is the one found.
    const Ends ends(columns_[column].name);
    std::size_t slot = ends.Hash() & (slots_.size() - 1);
    while (slots_[slot].column != kNone) {
      slot = (slot + 1) & (slots_.size() - 1);
    }
    slots_[slot] = {ends, static_cast<std::ptrdiff_t>(column)};
  }
}

std::ptrdiff_t RowLayout::Find(std::string_view name) const {
  const Ends ends(name);
  const std::size_t first = ends.Hash() & (slots_.size() - 1);
  // Mostly the name is written as the column's is, and no other column stands in the way.
  if (const Slot& slot = slots_[first]; slot.ends == ends && ends.size <= 2 * sizeof ends.front) {
    return slot.column;
  }
  return Search(name, first);
}

std::ptrdiff_t RowLayout::Search(std::string_view name, std::size_t slot) const {
  for (; slots_[slot].column != kNone; slot = (slot + 1) & (slots_.size() - 1)) {
    const std::string& found = columns_[static_cast<std::size_t>(slots_[slot].column)].name;
    if (found == name || SameName(found, name)) {
      return slots_[slot].column;
    }
  }
  return kNone;
}

RowTable::RowTable(std::vector<Column> columns)
    : RowTable(std::make_shared<RowLayout>(std::move(columns))) {}

RowTable::RowTable(std::shared_ptr<const RowLayout> layout) : layout_(std::move(layout)) {}

RowTable::~RowTable() { ReleaseCells(); }

void RowTable::AddRow(std::vector<Variant> values) {
  if (values.size() != Columns().size()) {
    Raise(RunTime::InternalError, "Internal error: a row of " + std::to_string(values.size()) +
                                      " values for " + std::to_string(Columns().size()) +
                                      " columns");
  }
  AddRowOf([&](std::size_t column) { return std::move(values[column]); });
}

void RowTable::Reserve(std::size_t rows) {
  if (rows <= capacity_) {
    return;
  }
  Variant* const roomier = std::allocator<Variant>().allocate(rows * Columns().size());
  for (std::size_t column = 0; column < Columns().size() && rowCount_ > 0; ++column) {
    std::uninitialized_move_n(Place(0, column), rowCount_, roomier + column * rows);
  }
  ReleaseCells();
  cells_ = roomier;
  capacity_ = rows;
}

void RowTable::CountNewRow() noexcept {
  indexes_.clear();
  ++rowCount_;
}

void RowTable::ReleaseCells() noexcept {
  if (cells_ == nullptr) {
    return;
  }
  for (std::size_t column = 0; column < Columns().size(); ++column) {
    std::destroy_n(Place(0, column), rowCount_);
  }
  std::allocator<Variant>().deallocate(cells_, capacity_ * Columns().size());
}

std::span<const std::uint32_t> RowTable::RowsWhereEqual(std::size_t column,
                                                        const Variant& key) const {
  Variant room;
  const Variant* constant = FilterConstant(Columns()[column].type, key, room);
  if (constant == nullptr) {
    return {};
  }
  indexes_.resize(Columns().size());
  std::unique_ptr<Index>& index = indexes_[column].index;
  if (index == nullptr) {
    index = std::make_unique<Index>(*this, column);
  }
  const std::uint32_t group = index->slots[index->FindSlot(*this, column, *constant)];
  if (group == 0) {
    return {};
  }
  return std::span(index->rows)
      .subspan(index->start[group - 1], index->start[group] - index->start[group - 1]);
}

bool RowTable::WantsIndex(std::size_t column) const {
  if (indexes_.empty()) {
    indexes_.resize(Columns().size());
  }
  return std::exchange(indexes_[column].asked, true);
}

class MemoryRecordset::CellField final  // NOLINT(cppcoreguidelines-virtual-class-destructor)
    : public Field {
 public:
  CellField(const MemoryRecordset& set, std::size_t column) : set_(&set), column_(column) {}

  [[nodiscard]] kal::Variant Value() const override {
    return set_->table_->Cell(set_->CurrentRow(), column_);
  }
  [[nodiscard]] DataType Type() const override { return set_->table_->Columns()[column_].type; }

 private:
  const MemoryRecordset* set_;
  std::size_t column_;
};

MemoryRecordset::MemoryRecordset(std::shared_ptr<const RowTable> table, kal::EditMode editMode)
    : table_(std::move(table)), editMode_(editMode) {}

MemoryRecordset::~MemoryRecordset() = default;

void MemoryRecordset::StartOver(const std::shared_ptr<const RowTable>& table) {
  if (table_ != table) {  // counting who holds it costs something among threads
    table_ = table;
  }
  filterText_.clear();
  filtered_ = false;
  GoTo(0);
}

const Field& MemoryRecordset::FieldAt(std::size_t column) {
  if (column >= fields_.size()) {
    MakeFields();
  }
  return fields_[column];
}

void MemoryRecordset::MakeFields() {
  fields_.reserve(table_->Columns().size());
  while (fields_.size() < table_->Columns().size()) {
    fields_.emplace_back(*this, fields_.size());
  }
}

const Field& MemoryRecordset::Fields(std::string_view name) {
  const std::ptrdiff_t column = table_->FindColumn(name);
  if (column < 0) {
    RaiseNoField(name);
  }
  return FieldAt(static_cast<std::size_t>(column));
}

const Field& MemoryRecordset::Fields(std::size_t index) {
  if (index >= table_->Columns().size()) {
    Raise(RunTime::NoSuchField, "There is no field at place " + std::to_string(index),
          kRecordsetSource);
  }
  return FieldAt(index);
}

std::int32_t MemoryRecordset::RecordCount() { return static_cast<std::int32_t>(VisibleCount()); }

// Everything that can fail comes before the first change to the state of the set.
void MemoryRecordset::Filter(std::string_view condition) {
  if (condition.empty()) {
    Filter(FilterGroup::None);
    return;
  }
  Gather(FilterExpression(*table_, condition));
  filterText_ = condition;
  visible_.swap(gathered_);
  filtered_ = true;
  GoTo(0);
}

void MemoryRecordset::Filter(FilterGroup /*group*/) {
  filterText_.clear();
  filtered_ = false;
  GoTo(0);
}

void MemoryRecordset::Gather(const FilterExpression& condition) {
  gathered_.clear();
  std::optional<std::span<const std::uint32_t>> candidates;
  if (table_->RowCount() > kSmallSet) {
    condition.ForEachRequiredEquality([&](const FilterExpression::Node& equality) {
      if (table_->WantsIndex(equality.column)) {
        const auto rows = table_->RowsWhereEqual(equality.column, equality.constant);
        if (!candidates || rows.size() < candidates->size()) {
          candidates = rows;
        }
      }
    });
  }
  if (candidates && condition.IsEquality()) {
    gathered_.assign(candidates->begin(), candidates->end());
    return;
  }
  const auto matches = [&](std::uint32_t row) { return condition.Matches(row); };
  if (candidates) {
    std::copy_if(candidates->begin(), candidates->end(), std::back_inserter(gathered_), matches);
    return;
  }
  for (std::uint32_t row = 0; row < table_->RowCount(); ++row) {
    if (matches(row)) {
      if (gathered_.capacity() == 0) {
        gathered_.reserve(std::min(table_->RowCount(), kSmallSet));
      }
      gathered_.push_back(row);
    }
  }
}

void MemoryRecordset::MoveFirst() {
  if (VisibleCount() == 0) {
    Raise(RunTime::NoCurrentRecord, "There is no row to move to", kRecordsetSource);
  }
  GoTo(0);
}

void MemoryRecordset::MoveNext() {
  if (Eof()) {
    Raise(RunTime::NoCurrentRecord, "The record set is already at its end", kRecordsetSource);
  }
  GoTo(position_ + 1);
}

void MemoryRecordset::MoveLast() {
  MoveFirst();
  GoTo(VisibleCount() - 1);
}

bool MemoryRecordset::Eof() { return !IsOnRow(); }

std::size_t MemoryRecordset::Position() const { return IsOnRow() ? position_ + 1 : 0; }

std::size_t MemoryRecordset::Row() const { return IsOnRow() ? row_ + 1 : 0; }

std::size_t MemoryRecordset::CurrentRow() const {
  if (!IsOnRow()) {
    RaiseNoCurrentRow();
  }
  return row_;
}

}  // namespace kal
