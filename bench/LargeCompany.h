// LargeCompany: a company with a year of heavy bookkeeping, for measuring.
//
// 5,000 accounts, 300 VAT codes, and one purchase section of one year with 200,000 saved entries:
// about 550 a day, protocols in the order of the dates. Every 25th entry carries account lines and
// installments.

#pragma once

#include <filesystem>
#include <string>

namespace kal::bench {

inline constexpr int kAccounts = 5000;
inline constexpr int kVatCodes = 300;
inline constexpr int kSavedEntries = 200000;

class LargeCompany {
 public:
  LargeCompany();  // makes the file, in the folder for temporary files
  LargeCompany(const LargeCompany&) = delete;
  LargeCompany& operator=(const LargeCompany&) = delete;
  ~LargeCompany();

  [[nodiscard]] std::string Path() const { return path_.string(); }
  void Execute(const std::string& sql) const;

 private:
  std::filesystem::path path_;
};

}  // namespace kal::bench
