#include "company/Database.h"

#include <filesystem>
#include <utility>

#include "company/Schema.h"

namespace kal::company {
namespace {

// Temporary tables live in a database of their own, in memory: a change of SQLite's own "temp"
// would make it prepare every statement of the connection anew.
constexpr std::string_view kTemporary = "temporary";

// All kept answers are forgotten when they come to more rows than these.
constexpr std::size_t kKeptRows = 20000;

std::string ExistingFile(const std::string& path) {
  std::error_code ignored;
  const auto status = std::filesystem::status(
      std::filesystem::path(std::u8string(path.begin(), path.end())), ignored);
  if (status.type() == std::filesystem::file_type::not_found) {
    RaiseDataError(kDatabaseFailed, "There is no file " + path);
  }
  if (status.type() == std::filesystem::file_type::directory) {
    RaiseDataError(kDatabaseFailed, path + " is a folder");
  }
  return path;
}

std::vector<Column> ColumnsOfRows(const std::vector<ResultColumn>& columns) {
  std::vector<Column> ofRows;
  ofRows.reserve(columns.size());
  for (const ResultColumn& column : columns) {
    ofRows.push_back({column.name, column.type});
  }
  return ofRows;
}

void BindValues(StatementUse& use, const QueryBuilder& query) {
  int parameter = 0;
  ForEachComparison(query, [&](std::string_view, CompareWith, const Variant& value) {
    use->Bind(++parameter, value);
  });
}

// Whether the statement's current row is that row.
bool IsRow(const StatementUse& use, const std::vector<ResultColumn>& columns, const RowTable& table,
           std::size_t row) {
  for (std::size_t place = 0; place < columns.size(); ++place) {
    const Variant& cell = table.Cell(row, place);
    const int at = static_cast<int>(place);
    if (!use->SeenAs(at, cell) &&
        !Identical(use->Value(at, columns[place].type, columns[place].source), cell)) {
      return false;
    }
  }
  return true;
}

}  // namespace

Database::Selection::Selection(const Sqlite& connection, RenderedQuery rendered)
    : statement(connection, rendered.sql),
      columns(std::move(rendered.columns)),
      layout(std::make_shared<RowLayout>(ColumnsOfRows(columns))),
      none(std::make_shared<RowTable>(layout)) {}

Database::Database(const std::string& path, int busyMilliseconds)
    : connection_(ExistingFile(path), Sqlite::Access::Read, busyMilliseconds) {
  connection_.Execute("PRAGMA temp_store = MEMORY; ATTACH 'file:?mode=memory' AS " +
                      std::string(kTemporary));
  RequireCompany();
}

void Database::RequireCompany() {
  SqliteStatement mark(connection_, "PRAGMA application_id");
  mark.Step();
  if (mark.Number(0) != kApplicationId && !HasTable("COGPrimeNoteTeste")) {
    RaiseDataError(kDatabaseFailed, connection_.Path() + " is no company of this program");
  }
  SqliteStatement layout(connection_, "PRAGMA user_version");
  layout.Step();
  if (mark.Number(0) == kApplicationId && layout.Number(0) > kLayoutVersion) {
    RaiseDataError(kDatabaseFailed,
                   connection_.Path() + " was made by a later version of this program");
  }
}

SqliteStatement& Database::Prepared(std::string_view constantSql) {
  auto found = prepared_.find(constantSql);
  if (found == prepared_.end()) {
    found = prepared_.emplace(std::string(constantSql), SqliteStatement(connection_, constantSql))
                .first;
  }
  return found->second;
}

std::int64_t Database::FileVersion() {
  if (versionOfReading_) {
    return *versionOfReading_;
  }
  StatementUse version(Prepared("PRAGMA data_version"), StatementUse::Counts::NotAtAll);
  version->Step();
  return version->Number(0);
}

std::vector<TableColumn> Database::ColumnsOf(std::string_view table) {
  if (!HasTable(table)) {
    RaiseDataError(kNoSuchTable,
                   "There is no table '" + std::string(table) + "' in " + connection_.Path());
  }
  const SqliteStatement all(connection_, "SELECT * FROM " + QuoteName(table));
  const SchemaTable* known = FindTable(table);
  std::vector<TableColumn> columns;
  for (int i = 0; i < all.ColumnCount(); ++i) {
    TableColumn column{all.ColumnName(i), TypeOfDeclaration(all.ColumnDeclaration(i))};
    for (const SchemaColumn& own :
         known == nullptr ? std::span<const SchemaColumn>() : known->columns) {
      if (SameName(own.name, column.name)) {
        column.type = own.type;
      }
    }
    columns.push_back(std::move(column));
  }
  return columns;
}

Database::Selection& Database::Select(const QueryBuilder& query) {
  key_.clear();
  AppendShape(key_, query);
  if (const auto found = selections_.find(key_); found != selections_.end()) {
    return found->second;
  }
  bool ofTheFile = true;
  bool keepsAnswers = true;
  Selection selection(connection_, RenderQuery(query, [&](std::string_view table) {
                        const SchemaTable* known = FindTable(table);
                        ofTheFile = ofTheFile && known != nullptr;
                        keepsAnswers = keepsAnswers && known != nullptr && !known->growsWithEntries;
                        return ColumnsOf(table);
                      }));
  selection.ofTheFile = ofTheFile;
  selection.keepsAnswers = keepsAnswers;
  return selections_.emplace(key_, std::move(selection)).first->second;
}

// The table given from before is the answer when it still is what the file says.
std::shared_ptr<const RowTable> Database::Run(Selection& selection, const QueryBuilder& query,
                                              std::shared_ptr<const RowTable> before) {
  StatementUse use(selection.statement);
  BindValues(use, query);
  bool another = use->Step();
  std::size_t same = 0;
  while (another && before != nullptr && same < before->RowCount() &&
         IsRow(use, selection.columns, *before, same)) {
    ++same;
    another = use->Step();
  }
  if (!another && before != nullptr && same == before->RowCount()) {
    return before;
  }
  if (!another && same == 0) {
    return selection.none;
  }
  const auto rows =
      std::allocate_shared<RowTable>(PoolAllocator<RowTable>(pool_), selection.layout, pool_.get());
  rows->Reserve(selection.rows);
  for (std::size_t row = 0; row < same; ++row) {
    rows->AddRowOf([&](std::size_t place) { return before->Cell(row, place); });
  }
  for (; another; another = use->Step()) {
    rows->AddRowOf([&](std::size_t place) {
      const ResultColumn& column = selection.columns[place];
      return use->Value(static_cast<int>(place), column.type, column.source);
    });
  }
  selection.rows = rows->RowCount();
  return rows;
}

// The version is asked for first: a change that comes after it is then seen the next time.
std::shared_ptr<const RowTable> Database::Answer(const QueryBuilder& query) {
  Selection& selection = Select(query);
  if (!selection.keepsAnswers) {
    return Run(selection, query, nullptr);
  }
  const std::int64_t version = FileVersion();
  if (keptRows_ > kKeptRows) {
    ForgetAnswers();
  }
  key_.clear();
  ForEachComparison(query, [this](std::string_view, CompareWith, const Variant& value) {
    AppendValue(key_, value);
  });
  auto found = selection.answers.find(key_);
  if (found == selection.answers.end()) {
    found = selection.answers.emplace(key_, Kept()).first;
    ++keptRows_;
  }
  Kept& kept = found->second;
  if (kept.rows == nullptr || kept.version != version) {
    std::shared_ptr<const RowTable> rows = Run(selection, query, kept.rows);
    keptRows_ += rows->RowCount() - (kept.rows == nullptr ? 0 : kept.rows->RowCount());
    kept = {std::move(rows), version};
  }
  return kept.rows;
}

void Database::ForgetAnswers() {
  for (auto& [shape, selection] : selections_) {
    selection.answers.clear();
  }
  keptRows_ = 0;
}

std::shared_ptr<MemoryRecordset> Database::Open(const QueryBuilder& query) {
  return std::allocate_shared<MemoryRecordset>(PoolAllocator<MemoryRecordset>(pool_), Answer(query),
                                               EditMode::None, pool_.get());
}

Variant Database::FirstValue(const QueryBuilder& query) {
  const std::shared_ptr<const RowTable> rows = Answer(query);
  return rows->RowCount() == 0 ? Variant(Null) : rows->Cell(0, 0);
}

void Database::Record(std::vector<std::string>* target) {
  const auto add = [](unsigned /*event*/, void* context, void* statement, void* /*text*/) {
    char* sql = sqlite3_expanded_sql(static_cast<sqlite3_stmt*>(statement));
    if (sql != nullptr && std::string_view(sql).starts_with("SELECT")) {
      static_cast<std::vector<std::string>*>(context)->emplace_back(sql);
    }
    sqlite3_free(sql);
    return 0;
  };
  sqlite3_trace_v2(connection_.Handle(), target == nullptr ? 0U : unsigned{SQLITE_TRACE_STMT}, add,
                   target);
}

void Database::BeginReading() {
  RunOnce("BEGIN");
  try {
    // BEGIN alone waits for the first question before it fixes the state.
    versionOfReading_ = FileVersion();
  } catch (...) {
    EndReading();
    throw;
  }
  ++connection_.Counted().transactions;
}

void Database::EndReading() noexcept {
  versionOfReading_.reset();
  try {
    RunOnce("COMMIT");
  } catch (...) {
    sqlite3_exec(connection_.Handle(), "ROLLBACK", nullptr, nullptr, nullptr);
  }
}

// A statement without values that answers nothing.
void Database::RunOnce(std::string_view constantSql) {
  StatementUse(Prepared(constantSql), StatementUse::Counts::NotAtAll)->Step();
}

bool Database::HasTable(std::string_view name) {
  const Variant wanted(name);
  StatementUse search(
      Prepared("SELECT 1 FROM (SELECT type, name FROM main.sqlite_master UNION ALL "
               "SELECT type, name FROM temporary.sqlite_master) "
               "WHERE type IN ('table', 'view') AND name = ? COLLATE NOCASE"));
  search->Bind(1, wanted);
  return search->Step();
}

void Database::CreateTemporaryTable(const std::string& name, const RowTable& rows) {
  if (HasTable(name)) {
    RaiseDataError(kBadCommand, "There is a table '" + name + "' already");
  }
  connection_.Execute("SAVEPOINT making");
  try {
    FillTemporaryTable(name, rows);
    connection_.Execute("RELEASE making");
  } catch (...) {
    sqlite3_exec(connection_.Handle(), "ROLLBACK TO making; RELEASE making", nullptr, nullptr,
                 nullptr);
    throw;
  }
}

void Database::FillTemporaryTable(const std::string& name, const RowTable& rows) {
  std::string columns;
  std::string parameters;
  for (const Column& column : rows.Columns()) {
    columns += columns.empty() ? "" : ", ";
    columns.append(QuoteName(column.name)).append(" ").append(DeclarationOfType(column.type));
    parameters += parameters.empty() ? "?" : ", ?";
  }
  const std::string table = std::string(kTemporary) + "." + QuoteName(name);
  connection_.Execute("CREATE TABLE " + table + " (" + columns + ")");
  SqliteStatement insert(connection_, "INSERT INTO " + table + " VALUES (" + parameters + ")");
  for (std::size_t row = 0; row < rows.RowCount(); ++row) {
    const StatementUse use(insert);
    for (std::size_t column = 0; column < rows.Columns().size(); ++column) {
      use->Bind(static_cast<int>(column) + 1, rows.Cell(row, column));
    }
    use->Step();
  }
}

void Database::DropTemporaryTable(const std::string& name) noexcept {
  try {
    ForgetTemporarySelections();
    connection_.Execute("DROP TABLE " + std::string(kTemporary) + "." + QuoteName(name));
  } catch (...) {
    // It ends with the connection; nobody is left who could act on the failure.
  }
}

// The next table of that name may have other columns.
void Database::ForgetTemporarySelections() {
  std::erase_if(selections_, [](const auto& entry) { return !entry.second.ofTheFile; });
}

}  // namespace kal::company
