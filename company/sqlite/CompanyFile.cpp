#include "company/sqlite/CompanyFile.h"

#include <cstdint>
#include <filesystem>
#include <random>
#include <string_view>
#include <system_error>

#include "company/DataError.h"
#include "company/SampleCompany.h"
#include "company/sqlite/SchemaSql.h"
#include "company/sqlite/Sqlite.h"
#include "messages/Catalogue.h"

namespace kal::company {
namespace {

namespace fs = std::filesystem;

fs::path PathOf(const std::string& utf8) { return {std::u8string(utf8.begin(), utf8.end())}; }

[[noreturn]] void RaiseExists(const std::string& path) {
  RaiseDataError(kDatabaseFailed, "There is a file " + path + " already");
}

// The file under its name while it is being made; gone again unless it was moved to its place.
class Draft {
 public:
  explicit Draft(const std::string& target)
      : path_(target + "." + std::to_string(std::random_device()()) + ".new") {}
  Draft(const Draft&) = delete;
  Draft& operator=(const Draft&) = delete;
  ~Draft() {
    std::error_code ignored;
    fs::remove(PathOf(path_), ignored);
    fs::remove(PathOf(path_ + "-journal"), ignored);
  }

  [[nodiscard]] const std::string& Path() const { return path_; }

  // A second name that the target takes only when it is free: a rename would replace what another
  // program put there meanwhile. Some file systems know no second names.
  void MoveTo(const std::string& target) const {
    std::error_code error;
    fs::create_hard_link(PathOf(path_), PathOf(target), error);
    if (!error) {
      return;
    }
    if (fs::exists(PathOf(target))) {
      RaiseExists(target);
    }
    fs::rename(PathOf(path_), PathOf(target), error);
    if (error) {
      RaiseDataError(kDatabaseFailed, target + ": " + error.message());
    }
  }

 private:
  std::string path_;
};

void InsertTexts(Sqlite& file) {
  SqliteStatement message(file, "INSERT INTO KalMessaggi (Codice, Lingua, Testo) VALUES (?, ?, ?)");
  SqliteStatement translation(
      file, "INSERT INTO KalDizionario (Testo, Lingua, Traduzione) VALUES (?, ?, ?)");
  const auto insert = [](SqliteStatement& statement, const Variant& first,
                         std::string_view language, std::string_view text) {
    const Variant second(language);
    const Variant third(text);
    const StatementUse use(statement);
    use->Bind(1, first);
    use->Bind(2, second);
    use->Bind(3, third);
    use->Step();
  };
  for (const Message& known : Catalogue()) {
    if (known.code) {
      const auto code = static_cast<std::int32_t>(*known.code);
      insert(message, code, "it", known.text.italian);
      insert(message, code, "en", known.text.english);
    }
  }
  for (const Wording& text : Dictionary()) {
    insert(translation, text.italian, "en", text.english);
  }
}

}  // namespace

void FillCompany(Sqlite& empty, bool withSample) {
  empty.Execute("BEGIN; PRAGMA application_id = " + std::to_string(kApplicationId) +
                "; PRAGMA user_version = " + std::to_string(kLayoutVersion) + ";");
  empty.Execute(SchemaSql());
  InsertTexts(empty);
  if (withSample) {
    empty.Execute(std::string(SampleCompanySql()));
  }
  empty.Execute("COMMIT");
}

void CreateCompanyFile(const std::string& path, bool withSample) {
  std::error_code ignored;
  if (fs::exists(fs::symlink_status(PathOf(path), ignored))) {
    RaiseExists(path);
  }
  const Draft draft(path);
  {
    Sqlite file(draft.Path(), Sqlite::Access::Create);
    FillCompany(file, withSample);
  }
  draft.MoveTo(path);
}

const std::string& ExistingCompanyFile(const std::string& path) {
  std::error_code ignored;
  const auto status = fs::status(PathOf(path), ignored);
  if (status.type() == fs::file_type::not_found) {
    RaiseDataError(kDatabaseFailed, "There is no file " + path);
  }
  if (status.type() == fs::file_type::directory) {
    RaiseDataError(kDatabaseFailed, path + " is a folder");
  }
  return path;
}

void RequireCompany(const Sqlite& file) {
  SqliteStatement mark(file, "PRAGMA application_id");
  mark.Step();
  const bool marked = mark.Number(0) == kApplicationId;
  SqliteStatement known(file,
                        "SELECT 1 FROM main.sqlite_master WHERE type IN ('table', 'view') "
                        "AND name = 'COGPrimeNoteTeste' COLLATE NOCASE");
  if (!marked && !known.Step()) {
    RaiseDataError(kDatabaseFailed, file.Path() + " is no company of this program");
  }
  SqliteStatement layout(file, "PRAGMA user_version");
  layout.Step();
  if (marked && layout.Number(0) > kLayoutVersion) {
    RaiseDataError(kDatabaseFailed, file.Path() + " was made by a later version of this program");
  }
}

}  // namespace kal::company
