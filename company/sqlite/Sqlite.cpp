#include "company/sqlite/Sqlite.h"

#include <cmath>
#include <filesystem>
#include <limits>
#include <mutex>
#include <optional>
#include <utility>

#include "company/DataError.h"

namespace kal::company {
namespace {

[[noreturn]] void RaiseNoMemory() {
  Raise(RunTime::OutOfMemory, "Out of memory", kDataAccessSource);
}

// One stored value that is being read as a column's type. SQLite allows a column's value to be
// read directly because no other thread uses the connection.
struct Cell {
  sqlite3_value* value;
  std::string_view source;
  int storage = sqlite3_value_type(value);

  [[nodiscard]] std::int64_t Whole() const { return sqlite3_value_int64(value); }
  [[nodiscard]] double Real() const { return sqlite3_value_double(value); }
  [[nodiscard]] std::string_view Text() const { return TextOf(value); }

  [[noreturn]] void Refuse(RunTime error, std::string_view what) const {
    RaiseDataError(error, std::string(source) + ": the stored value '" + std::string(Text()) +
                              "' is " + std::string(what));
  }
};

template <class T>
Variant ReadInteger(const Cell& cell) {
  std::int64_t whole = cell.Whole();
  if (cell.storage == SQLITE_FLOAT) {
    // SQLite cuts a fraction off and stops at its own range; neither may pass unseen.
    if (std::trunc(cell.Real()) != cell.Real()) {
      cell.Refuse(RunTime::TypeMismatch, "no whole number");
    }
  } else if (cell.storage != SQLITE_INTEGER) {
    cell.Refuse(RunTime::TypeMismatch, "no number");
  }
  if (whole < std::numeric_limits<T>::min() || whole > std::numeric_limits<T>::max()) {
    cell.Refuse(RunTime::Overflow, "out of range");
  }
  return static_cast<T>(whole);
}

Variant ReadDouble(const Cell& cell) {
  if (cell.storage != SQLITE_FLOAT && cell.storage != SQLITE_INTEGER) {
    cell.Refuse(RunTime::TypeMismatch, "no number");
  }
  return cell.Real();
}

Variant ReadAmountText(const Cell& cell) {
  if (const auto amount = Currency::FromExactText(cell.Text())) {
    return *amount;
  }
  if (const auto number = Decimal::FromText(cell.Text());
      number && (*number > Decimal::FromCurrency(
                               Currency::FromUnits(std::numeric_limits<std::int64_t>::max())) ||
                 *number < Decimal::FromCurrency(
                               Currency::FromUnits(std::numeric_limits<std::int64_t>::min())))) {
    cell.Refuse(RunTime::Overflow, "out of range");
  }
  cell.Refuse(RunTime::TypeMismatch, "no amount of up to four decimals");
}

Variant ReadAmount(const Cell& cell) {
  if (cell.storage == SQLITE_TEXT) {
    return ReadAmountText(cell);
  }
  if (cell.storage == SQLITE_BLOB) {
    cell.Refuse(RunTime::TypeMismatch, "no amount");
  }
  try {
    return cell.storage == SQLITE_INTEGER ? Currency::FromInteger(cell.Whole())
                                          : Currency::FromDouble(cell.Real());
  } catch (const RunTimeError&) {
    cell.Refuse(RunTime::Overflow, "out of range");
  }
}

Variant ReadDate(const Cell& cell) {
  constexpr std::size_t kIsoSize = 10;
  constexpr std::string_view kExpected = "no date yyyy-mm-dd";
  if (cell.storage != SQLITE_TEXT) {
    cell.Refuse(RunTime::TypeMismatch, kExpected);
  }
  const std::string_view text = cell.Text();
  std::optional<Date> date = Date::FromIso(text.substr(0, kIsoSize));
  if (date && text.size() > kIsoSize) {
    std::string timed(text);
    timed[kIsoSize] = timed[kIsoSize] == 'T' ? ' ' : timed[kIsoSize];
    date = Date::FromText(timed);
  }
  if (!date) {
    cell.Refuse(RunTime::TypeMismatch, kExpected);
  }
  return *date;
}

Variant ReadBoolean(const Cell& cell) {
  if (cell.storage != SQLITE_INTEGER || cell.Whole() < -1 || cell.Whole() > 1) {
    cell.Refuse(RunTime::TypeMismatch, "neither 0 nor 1");
  }
  return cell.Whole() != 0;
}

Variant ReadText(const Cell& cell) {
  if (cell.storage == SQLITE_BLOB) {
    cell.Refuse(RunTime::TypeMismatch, "no text");
  }
  const std::string_view text = cell.Text();
  if (text.data() == nullptr) {  // a number that SQLite found no memory to write out
    RaiseNoMemory();
  }
  return text;
}

std::filesystem::path LogOf(const std::string& path) {
  const std::string log = path + "-wal";
  return {std::u8string(log.begin(), log.end())};
}

// Whether there is a write-ahead log that is not empty.
bool HasLog(const std::string& path) {
  std::error_code error;
  return std::filesystem::file_size(LogOf(path), error) != 0 && !error;
}

// Who only reads a company with a write-ahead log has to make the log's files where there are none,
// and may not remove them. Who might write removes them at the end, when nobody else has the
// company open. A log that is not empty is the business of those who write it.
void RemoveEmptyLog(const std::string& path) {
  static std::mutex oneAfterAnother;  // two at once would each take the other for a reader
  const std::lock_guard guard(oneAfterAnother);
  std::error_code error;
  if (std::filesystem::file_size(LogOf(path), error) != 0 || error) {
    return;
  }
  sqlite3* handle = nullptr;
  if (sqlite3_open_v2(path.c_str(), &handle, SQLITE_OPEN_READWRITE, nullptr) == SQLITE_OK) {
    sqlite3_exec(handle, "SELECT 1 FROM sqlite_master", nullptr, nullptr, nullptr);
  }
  sqlite3_close(handle);
}

}  // namespace

// Too late or refused, the account is kept: that is slower, and nothing else.
void SpareSqliteMemoryAccounts() { (void)sqlite3_config(SQLITE_CONFIG_MEMSTATUS, 0); }

Sqlite::Sqlite(std::string path, Access access, const Patience& patience)
    : path_(std::move(path)), access_(access), patience_(patience) {
  const int flags =
      access == Access::Read ? SQLITE_OPEN_READONLY : SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE;
  // Attached databases may be named by a URI, the file itself may not.
  const std::string name = (path_.starts_with("file:") ? "./" : "") + path_;
  sqlite3* handle = nullptr;
  const int result = sqlite3_open_v2(name.c_str(), &handle,
                                     flags | SQLITE_OPEN_NOMUTEX | SQLITE_OPEN_URI, nullptr);
  handle_.reset(handle);
  if (handle == nullptr) {
    RaiseNoMemory();
  }
  if (result != SQLITE_OK) {
    Fail();
  }
  WaitForLocks();
  if (access == Access::Read) {
    TrustNothing();
  }
}

void Sqlite::TrustNothing() {
  constexpr int kStepsBetweenLooks = 100'000;
  sqlite3_db_config(Handle(), SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
  sqlite3_db_config(Handle(), SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0, nullptr);
  sqlite3_limit(Handle(), SQLITE_LIMIT_LENGTH, kLongestValue);
  sqlite3_progress_handler(Handle(), kStepsBetweenLooks, AskedTooLongAgo, this);
  Execute("PRAGMA cell_size_check = ON");
}

void Sqlite::WaitForLocks() const {
  sqlite3_busy_timeout(Handle(), static_cast<int>(patience_.forLock.count()));
  waits_ = true;
}

int Sqlite::AskedTooLongAgo(void* connection) {
  const auto& asked = *static_cast<const Sqlite*>(connection);
  const auto now = std::chrono::steady_clock::now();
  if (!asked.askedAt_) {
    asked.askedAt_ = now;
  }
  return now - *asked.askedAt_ >= asked.patience_.forAnswer ? 1 : 0;
}

Sqlite::~Sqlite() {
  if (access_ != Access::Read) {
    return;
  }
  try {
    const std::string whole = sqlite3_db_filename(Handle(), "main");
    handle_.reset();
    RemoveEmptyLog(whole);
  } catch (...) {
    // The files stay; nobody is left who could act on the failure.
  }
}

void Sqlite::Execute(const std::string& sql) {
  if (sqlite3_exec(Handle(), sql.c_str(), nullptr, nullptr, nullptr) != SQLITE_OK) {
    Fail();
  }
}

void Sqlite::Fail() const {
  const int result = sqlite3_errcode(Handle());
  if (result == SQLITE_NOMEM || sqlite3_extended_errcode(Handle()) == SQLITE_IOERR_NOMEM) {
    RaiseNoMemory();
  }
  if (result == SQLITE_INTERRUPT) {
    RaiseDataError(kDatabaseFailed, path_ + " took longer than " +
                                        std::to_string(patience_.forAnswer.count()) +
                                        " ms to answer a question");
  }
  if (result == SQLITE_TOOBIG) {
    RaiseDataError(kDatabaseFailed,
                   path_ + ": a value is longer than " + std::to_string(kLongestValue) + " bytes");
  }
  if (result == SQLITE_BUSY) {
    sqlite3_busy_timeout(Handle(), 0);
    waits_ = false;
    RaiseDataError(kDatabaseFailed, path_ + " is locked by another program");
  }
  if (sqlite3_extended_errcode(Handle()) == SQLITE_READONLY_ROLLBACK) {
    RaiseDataError(kDatabaseFailed,
                   path_ + " was left in the middle of a change by a program that broke off (" +
                       path_ + "-journal takes it back): open it once with a program that writes");
  }
  if ((result == SQLITE_CANTOPEN || result == SQLITE_READONLY) && HasLog(path_)) {
    RaiseDataError(kDatabaseFailed,
                   path_ + " was left with changes that are not in it yet (" + path_ +
                       "-wal holds them), and nothing can be written beside it: open it once with "
                       "a program that writes");
  }
  if (result == SQLITE_NOTADB) {
    RaiseDataError(kDatabaseFailed, path_ + " is no database");
  }
  RaiseDataError(kDatabaseFailed, path_ + ": " + sqlite3_errmsg(Handle()));
}

SqliteStatement::SqliteStatement(const Sqlite& connection, std::string_view sql)
    : connection_(&connection) {
  sqlite3_stmt* handle = nullptr;
  if (sqlite3_prepare_v3(connection.Handle(), sql.data(), static_cast<int>(sql.size()),
                         SQLITE_PREPARE_PERSISTENT, &handle, nullptr) != SQLITE_OK) {
    connection.Fail();
  }
  handle_.reset(handle);
  ++connection.Counted().prepared;
}

void SqliteStatement::BindText(int parameter, std::string_view text, bool copied) {
  if (sqlite3_bind_text64(handle_.get(), parameter, text.data(), text.size(),
                          copied ? SQLITE_TRANSIENT : SQLITE_STATIC, SQLITE_UTF8) != SQLITE_OK) {
    connection_->Fail();
  }
}

void SqliteStatement::Bind(int parameter, const Variant& value) {
  const auto whole = [&](std::int64_t number) {
    sqlite3_bind_int64(handle_.get(), parameter, number);
  };
  switch (value.VarType()) {
    case Variant::Type::Empty:
    case Variant::Type::NullValue:
      sqlite3_bind_null(handle_.get(), parameter);
      return;
    case Variant::Type::Boolean:
      return whole(*value.As<bool>() ? 1 : 0);
    case Variant::Type::TinyInt:
      return whole(*value.As<std::int8_t>());
    case Variant::Type::SmallInt:
      return whole(*value.As<std::int16_t>());
    case Variant::Type::Integer:
      return whole(*value.As<std::int32_t>());
    case Variant::Type::BigInt:
      return whole(*value.As<std::int64_t>());
    case Variant::Type::Single:
    case Variant::Type::Double:
      sqlite3_bind_double(handle_.get(), parameter, CDbl(value));
      return;
    case Variant::Type::Currency:
      return BindText(parameter, value.As<Currency>()->ToText(), true);
    case Variant::Type::Decimal:
      return BindText(parameter, value.As<Decimal>()->ToText(), true);
    case Variant::Type::Date:
      return BindText(parameter, value.As<Date>()->ToIso(), true);
    case Variant::Type::Text:
      return BindText(parameter, *value.AsText(), false);
  }
}

void SqliteStatement::BindDay(int parameter, const Date& day, bool atItsEnd) {
  // Every blank or letter before a time comes before "~".
  BindText(parameter, day.WithoutTime().ToIso() + (atItsEnd ? "~" : ""), true);
}

bool SqliteStatement::Step() {
  const int result = sqlite3_step(handle_.get());
  if (result != SQLITE_ROW && result != SQLITE_DONE) {
    connection_->Fail();
  }
  return result == SQLITE_ROW;
}

void SqliteStatement::Reset() noexcept {
  sqlite3_reset(handle_.get());
  sqlite3_clear_bindings(handle_.get());
}

std::string SqliteStatement::ColumnName(int column) const {
  const char* name = sqlite3_column_name(handle_.get(), column);
  return name == nullptr ? std::string() : std::string(name);
}

std::string SqliteStatement::ColumnDeclaration(int column) const {
  const char* declaration = sqlite3_column_decltype(handle_.get(), column);
  return declaration == nullptr ? std::string() : std::string(declaration);
}

Variant SqliteStatement::Value(int column, DataType type, std::string_view source) const {
  const Cell cell{.value = sqlite3_column_value(handle_.get(), column), .source = source};
  if (cell.storage == SQLITE_NULL) {
    return Null;
  }
  switch (type) {
    case DataType::SmallInt:
      return ReadInteger<std::int16_t>(cell);
    case DataType::Integer:
      return ReadInteger<std::int32_t>(cell);
    case DataType::Double:
      return ReadDouble(cell);
    case DataType::Currency:
      return ReadAmount(cell);
    case DataType::Date:
      return ReadDate(cell);
    case DataType::Boolean:
      return ReadBoolean(cell);
    default:
      return ReadText(cell);
  }
}

}  // namespace kal::company
