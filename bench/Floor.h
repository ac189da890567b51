// Floor: what a check's questions cost on SQLite's C interface alone.
//
// The statements are those that a check ran, recorded with their values. They are prepared once;
// a run opens one read transaction, steps each statement to its end and reads every column.

#pragma once

#include <sqlite3.h>

#include <memory>
#include <string>
#include <vector>

namespace kal::bench {

class Floor {
 public:
  Floor(const std::string& path, const std::vector<std::string>& statements);

  void Run();
  [[nodiscard]] std::size_t Statements() const { return statements_.size(); }

 private:
  struct Close {
    void operator()(sqlite3* handle) const { sqlite3_close_v2(handle); }
  };
  struct Finalize {
    void operator()(sqlite3_stmt* handle) const { sqlite3_finalize(handle); }
  };
  using Statement = std::unique_ptr<sqlite3_stmt, Finalize>;

  [[nodiscard]] Statement Prepare(const std::string& sql) const;
  static void Step(sqlite3_stmt* statement);

  std::unique_ptr<sqlite3, Close> database_;
  Statement begin_;
  Statement commit_;
  std::vector<Statement> statements_;
  std::size_t bytesRead_ = 0;  // so that no reading is left out as unused
};

}  // namespace kal::bench
