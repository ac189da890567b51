// Sqlite: connections and statements of SQLite's C interface, closed when they go out of scope.
//
// Failures name the file.

#pragma once

#include <sqlite3.h>

#include <bit>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "company/Engine.h"
#include "platform/Recordset.h"
#include "platform/Variant.h"

namespace kal::company {

// Spares SQLite its account of the memory that it holds, for which all threads wait on each other.
void SpareSqliteMemoryAccounts();

// How long a connection waits.
struct Patience {
  // For another program's lock. Once it was in vain, the next questions do not wait until one is
  // answered: a company that stays locked is said to be at once.
  std::chrono::milliseconds forLock{5000};
  // For the answer to one question: a file may hold one without an end.
  std::chrono::milliseconds forAnswer{60000};
};

// A connection for one thread. One that reads trusts the file as little as it can: nothing in it
// is run or written, pages are looked over before they are read, and no value may be larger than
// kLongestValue.
class Sqlite {
 public:
  enum class Access : std::uint8_t { Read, Create };
  static constexpr int kLongestValue = 16 << 20;  // bytes; also of the texts asked with

  Sqlite(std::string path, Access access, const Patience& patience = {});
  Sqlite(const Sqlite&) = delete;
  Sqlite& operator=(const Sqlite&) = delete;
  ~Sqlite();

  [[nodiscard]] const std::string& Path() const { return path_; }
  [[nodiscard]] sqlite3* Handle() const { return handle_.get(); }
  // Runs any number of statements that answer nothing.
  void Execute(const std::string& sql);
  // What was run and prepared on this connection; statements count themselves.
  [[nodiscard]] Counters& Counted() const { return counted_; }
  // A question begins: the time for its answer starts to run.
  void StartClock() const { askedAt_.reset(); }
  // A question was answered.
  void Answered() const {
    if (!waits_) {
      WaitForLocks();
    }
  }
  // Raises the connection's latest failure.
  [[noreturn]] void Fail() const;

 private:
  void TrustNothing();
  void WaitForLocks() const;
  static int AskedTooLongAgo(void* connection);

  struct Close {
    void operator()(sqlite3* handle) const { sqlite3_close_v2(handle); }
  };

  std::string path_;
  Access access_;
  std::unique_ptr<sqlite3, Close> handle_;
  Patience patience_;
  mutable Counters counted_;
  mutable bool waits_ = true;  // for locks
  // When the question was found to take its time: most are answered before anybody looks.
  mutable std::optional<std::chrono::steady_clock::time_point> askedAt_;
};

// "" where it is Null or there is no memory.
inline std::string_view TextOf(sqlite3_value* value) {
  const void* text = sqlite3_value_text(value);
  const int size = sqlite3_value_bytes(value);
  return text == nullptr
             ? std::string_view()
             : std::string_view(static_cast<const char*>(text), static_cast<std::size_t>(size));
}

// A prepared statement; it must not outlive its connection.
class SqliteStatement {
 public:
  SqliteStatement(const Sqlite& connection, std::string_view sql);

  // Parameters and columns are counted as SQLite does, from 1 and from 0. A text is not copied: the
  // caller keeps the value until Reset.
  void Bind(int parameter, const Variant& value);
  void Bind(int parameter, const Variant&& value) = delete;
  // A day to compare stored dates with: behind every time of it, or before.
  void BindDay(int parameter, const Date& day, bool atItsEnd);
  // Whether there is another row.
  bool Step();
  void Reset() noexcept;

  [[nodiscard]] int ColumnCount() const { return sqlite3_column_count(handle_.get()); }
  [[nodiscard]] std::string ColumnName(int column) const;
  [[nodiscard]] std::string ColumnDeclaration(int column) const;
  // The value in the current row as that type, in whatever way it is stored. Raises 13 when it is
  // of another kind and 6 when it is out of the type's range; the source says whose value it is.
  [[nodiscard]] Variant Value(int column, DataType type, std::string_view source) const;
  // Whether the stored value can be seen to be that one without reading it; False says nothing.
  [[nodiscard]] bool SeenAs(int column, const Variant& value) const;
  void CountRun() const { ++connection_->Counted().queries; }
  void StartClock() const { connection_->StartClock(); }
  [[nodiscard]] std::int64_t Number(int column) const {
    return sqlite3_column_int64(handle_.get(), column);
  }

 private:
  struct Finalize {
    void operator()(sqlite3_stmt* handle) const { sqlite3_finalize(handle); }
  };

  void BindText(int parameter, std::string_view text, bool copied);

  const Sqlite* connection_;
  std::unique_ptr<sqlite3_stmt, Finalize> handle_;
};

// Whether the value is what a column stores as that number.
inline bool IsWhole(const Variant& value, std::int64_t number) {
  switch (value.VarType()) {
    case Variant::Type::SmallInt:
      return *value.As<std::int16_t>() == number;
    case Variant::Type::Integer:
      return *value.As<std::int32_t>() == number;
    case Variant::Type::Boolean:
      return (*value.As<bool>() ? 1 : 0) == number;
    default:
      return false;
  }
}

inline bool SqliteStatement::SeenAs(int column, const Variant& value) const {
  sqlite3_value* const stored = sqlite3_column_value(handle_.get(), column);
  switch (sqlite3_value_type(stored)) {
    case SQLITE_NULL:
      return value.IsNull();
    case SQLITE_INTEGER:
      return IsWhole(value, sqlite3_value_int64(stored));
    case SQLITE_FLOAT: {
      const auto* number = value.As<double>();
      return number != nullptr && std::bit_cast<std::uint64_t>(*number) ==
                                      std::bit_cast<std::uint64_t>(sqlite3_value_double(stored));
    }
    case SQLITE_TEXT: {
      const auto text = value.AsText();
      return text && *text == TextOf(stored);
    }
    default:
      return false;
  }
}

// One use of a statement, which is ready for the next one afterwards.
class StatementUse {
 public:
  enum class Counts : std::uint8_t { AsQuery, NotAtAll };

  explicit StatementUse(SqliteStatement& statement, Counts counts = Counts::AsQuery)
      : statement_(statement) {
    if (counts == Counts::AsQuery) {
      statement_.CountRun();
    }
    statement_.StartClock();
  }
  StatementUse(const StatementUse&) = delete;
  StatementUse& operator=(const StatementUse&) = delete;
  ~StatementUse() { statement_.Reset(); }

  SqliteStatement* operator->() const { return &statement_; }

 private:
  SqliteStatement& statement_;
};

}  // namespace kal::company
