// LargeCompany: a company with a year of heavy bookkeeping, for measuring.
//
// 5,000 accounts, 300 VAT codes, and one purchase section of one year with 200,000 saved entries:
// about 550 a day, protocols in the order of the dates. Every 25th entry carries account lines and
// installments.

#pragma once

#include <sqlite3.h>

#include <filesystem>
#include <memory>
#include <string>

namespace kal::bench {

inline constexpr int kAccounts = 5000;
inline constexpr int kVatCodes = 300;
inline constexpr int kSavedEntries = 200000;

class LargeCompany {
 public:
  // Makes the file, in the folder for temporary files.
  explicit LargeCompany(int savedEntries = kSavedEntries);
  LargeCompany(const LargeCompany&) = delete;
  LargeCompany& operator=(const LargeCompany&) = delete;
  ~LargeCompany();

  [[nodiscard]] std::string Path() const { return path_.string(); }
  // Changes a setting, by a statement prepared before: what is measured next should find little
  // more disturbed than the file's version.
  void Change();

 private:
  struct Close {
    void operator()(sqlite3* handle) const { sqlite3_close_v2(handle); }
  };
  struct Finalize {
    void operator()(sqlite3_stmt* handle) const { sqlite3_finalize(handle); }
  };

  void Open();
  void Execute(const std::string& sql) const;
  [[noreturn]] void Fail() const;

  std::filesystem::path path_;
  std::unique_ptr<sqlite3, Close> database_;
  std::unique_ptr<sqlite3_stmt, Finalize> change_;
};

}  // namespace kal::bench
