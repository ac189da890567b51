#include "bench/Floor.h"

#include <stdexcept>

namespace kal::bench {

Floor::Floor(const std::string& path, const std::vector<std::string>& statements) {
  sqlite3* handle = nullptr;
  const int opened =
      sqlite3_open_v2(path.c_str(), &handle, SQLITE_OPEN_READONLY | SQLITE_OPEN_NOMUTEX, nullptr);
  database_.reset(handle);
  if (opened != SQLITE_OK) {
    throw std::runtime_error(sqlite3_errmsg(handle));
  }
  begin_ = Prepare("BEGIN");
  commit_ = Prepare("COMMIT");
  for (const std::string& sql : statements) {
    statements_.push_back(Prepare(sql));
  }
}

Floor::Statement Floor::Prepare(const std::string& sql) const {
  sqlite3_stmt* statement = nullptr;
  if (sqlite3_prepare_v3(database_.get(), sql.c_str(), -1, SQLITE_PREPARE_PERSISTENT, &statement,
                         nullptr) != SQLITE_OK) {
    throw std::runtime_error(sqlite3_errmsg(database_.get()));
  }
  return Statement(statement);
}

void Floor::Step(sqlite3_stmt* statement) {
  sqlite3_step(statement);
  sqlite3_reset(statement);
}

void Floor::Run() {
  Step(begin_.get());
  for (const Statement& owned : statements_) {
    sqlite3_stmt* statement = owned.get();
    const int columns = sqlite3_column_count(statement);
    while (sqlite3_step(statement) == SQLITE_ROW) {
      for (int column = 0; column < columns; ++column) {
        switch (sqlite3_column_type(statement, column)) {
          case SQLITE_INTEGER:
            bytesRead_ += static_cast<std::size_t>(sqlite3_column_int64(statement, column));
            break;
          case SQLITE_FLOAT:
            bytesRead_ += static_cast<std::size_t>(sqlite3_column_double(statement, column));
            break;
          case SQLITE_NULL:
            break;
          default:
            (void)sqlite3_column_text(statement, column);
            bytesRead_ += static_cast<std::size_t>(sqlite3_column_bytes(statement, column));
        }
      }
    }
    sqlite3_reset(statement);
  }
  Step(commit_.get());
}

}  // namespace kal::bench
