// Recordset: the members of an ADO record set that the component uses.
//
// A record set shows rows one at a time. With a filter set, only the rows that meet it are
// visible, and every other member sees those alone. Setting a filter and clearing it both move to
// the first visible row. Errors have the source "ADODB.Recordset": 3001 for a filter text that
// can't be read (filter and row then stay as they were), 3021 where a current row is needed and
// there is none, 3265 for a field that is not there. Field names match without regard to letter
// case.

#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>
#include <utility>

#include "platform/Variant.h"

namespace kal {

// ADO's data-type codes.
enum class DataType : std::int32_t {
  SmallInt = 2,
  Integer = 3,
  Single = 4,
  Double = 5,
  Currency = 6,
  Date = 7,
  Text = 8,
  Boolean = 11,
  Variant = 12,
  Decimal = 14,
  TinyInt = 16,
  BigInt = 20,
  Char = 129,
  WChar = 130,
  Numeric = 131,
  DBTime = 134,
  DBTimeStamp = 135,
  VarChar = 200,
  LongVarChar = 201,
  VarWChar = 202,
  LongVarWChar = 203,
};

// ADO's edit modes.
enum class EditMode : std::int32_t { None = 0, InProgress = 1, Add = 2, Delete = 4 };

class RowTable;  // of platform/MemoryRecordset.h

// What a filter can be set to besides a text.
enum class FilterGroup : std::int32_t { None = 0 };

// One field of a record set. It belongs to the set and always shows the set's current row, so a
// walk may look a field up once and read it on every row.
class Field {
 public:
  // Raises 3021 when no row is current.
  [[nodiscard]] virtual kal::Variant Value() const = 0;
  [[nodiscard]] virtual DataType Type() const = 0;

 protected:
  Field() = default;
  Field(const Field&) = default;
  Field& operator=(const Field&) = default;
  ~Field() = default;
};

class Recordset {
 public:
  Recordset() = default;
  Recordset(const Recordset&) = delete;
  Recordset& operator=(const Recordset&) = delete;
  virtual ~Recordset() = default;

  // The field of that name, or at that place counted from 0; valid as long as the record set.
  // Raises 3265.
  [[nodiscard]] virtual const Field& Fields(std::string_view name) = 0;
  [[nodiscard]] virtual const Field& Fields(std::size_t index) = 0;

  // The number of visible rows.
  [[nodiscard]] virtual std::int32_t RecordCount() = 0;
  [[nodiscard]] virtual kal::EditMode EditMode() = 0;

  // A condition text, or "" to clear the filter.
  virtual void Filter(std::string_view condition) = 0;
  virtual void Filter(FilterGroup group) = 0;

  // MoveFirst and MoveLast raise 3021 when no row is visible, MoveNext when already at the end.
  virtual void MoveFirst() = 0;
  virtual void MoveNext() = 0;
  virtual void MoveLast() = 0;
  // Whether the position is behind the last visible row; also True when there is none.
  [[nodiscard]] virtual bool Eof() = 0;

  // Whether a row is current: whether there is something to read in the first field, be it a value
  // that can't be represented here. A set that knows may answer without trying.
  [[nodiscard]] virtual bool HasCurrentRow() noexcept;
  // The current row's place among all rows of the set, counted from 1: what a message about the
  // row is known by. 0 when no row is current, and where the set does not know.
  [[nodiscard]] virtual std::size_t Row() const { return 0; }
  // The columns and all rows, whatever the filter: for whoever writes the set down. Nothing where
  // the set does not know.
  [[nodiscard]] virtual std::shared_ptr<const RowTable> AllRows() const { return nullptr; }
};

// A counted reference to a record set, or Nothing. Using Nothing raises 91, as in automation.
class RecordsetRef {
 public:
  RecordsetRef() = default;
  // NOLINTBEGIN(google-explicit-constructor): a record set stands for its reference.
  RecordsetRef(std::nullptr_t) {}
  template <class T>
  RecordsetRef(std::shared_ptr<T> set) : set_(std::move(set)) {}
  template <class T>
  RecordsetRef(std::unique_ptr<T> set) : set_(std::move(set)) {}
  // NOLINTEND(google-explicit-constructor)

  [[nodiscard]] bool IsNothing() const { return set_ == nullptr; }
  explicit operator bool() const { return set_ != nullptr; }
  Recordset* operator->() const { return &**this; }
  // Raises 91.
  Recordset& operator*() const {
    if (set_ == nullptr) {
      RaiseNothing();
    }
    return *set_;
  }

 private:
  [[noreturn]] static void RaiseNothing();

  std::shared_ptr<Recordset> set_;
};

}  // namespace kal
