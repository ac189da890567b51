#include "company/sqlite/SqliteEngine.h"

#include <sys/stat.h>

#include <algorithm>
#include <iterator>
#include <span>
#include <utility>

#include "company/DataError.h"
#include "company/PlaceByAddress.h"
#include "company/Schema.h"
#include "company/sqlite/CompanyFile.h"
#include "company/sqlite/SchemaSql.h"
#include "company/sqlite/SqliteDialect.h"
#include "platform/LetterCase.h"

namespace kal::company {
namespace {

// Temporary tables live in a database of their own, in memory: a change of SQLite's own "temp"
// would make it prepare every statement of the connection anew.
constexpr std::string_view kTemporary = "temporary";

constexpr std::string_view kInFile =
    "SELECT 1 FROM main.sqlite_master WHERE type IN ('table', 'view') AND name = ? COLLATE NOCASE";

// How long a name is taken to mean the same file: looking costs more than a short question.
constexpr std::chrono::milliseconds kBetweenLooks{100};

// All kept answers are forgotten when they come to more rows than these.
constexpr std::size_t kKeptRows = 20000;

// No answer of sound books comes near it.
constexpr std::size_t kMostRows = 1'000'000;

// Which file it is, whatever its name; nothing when there is none.
std::optional<FileIdentity> IdentityOf(const std::string& path) {
  struct stat file {};
  if (stat(path.c_str(), &file) != 0) {
    return std::nullopt;
  }
  return FileIdentity{static_cast<std::uint64_t>(file.st_dev),
                      static_cast<std::uint64_t>(file.st_ino)};
}

std::vector<Column> ColumnsOfRows(const std::vector<ResultColumn>& columns) {
  std::vector<Column> ofRows;
  ofRows.reserve(columns.size());
  for (const ResultColumn& column : columns) {
    ofRows.push_back({column.name, column.type});
  }
  return ofRows;
}

void BindValue(StatementUse& use, std::size_t place, const Variant& value, bool endsDay) {
  const int parameter = static_cast<int>(place) + 1;
  if (const auto* day = value.As<Date>(); day != nullptr) {
    use->BindDay(parameter, *day, endsDay);
  } else {
    use->Bind(parameter, value);
  }
}

// Whether two values have one key; False also where only the keys can tell.
bool IsSameKey(const Variant& left, const Variant& right) {
  if (left.VarType() != right.VarType()) {
    return false;
  }
  switch (left.VarType()) {
    case Variant::Type::Empty:
    case Variant::Type::NullValue:
      return true;
    case Variant::Type::SmallInt:
    case Variant::Type::Integer:
      return left.AsInteger() == right.AsInteger();
    case Variant::Type::Text:
      return left.AsText() == right.AsText();
    default:
      break;
  }
  const auto* const day = left.As<Date>();
  const auto* const other = right.As<Date>();
  return day != nullptr && other != nullptr && *day == *other;
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

SqliteEngine::Prepared::Prepared(const Sqlite& connection, RenderedQuery rendered)
    : statement(connection, rendered.sql),
      columns(std::move(rendered.columns)),
      values(std::move(rendered.values)),
      layout(std::make_shared<RowLayout>(ColumnsOfRows(columns))),
      none(std::make_shared<RowTable>(layout)),
      greatest(std::move(rendered.greatest)) {}

SqliteEngine::SqliteEngine(const std::string& path, const Patience& patience)
    : file_(IdentityOf(ExistingCompanyFile(path))),
      connection_(path, Sqlite::Access::Read, patience),
      begin_(connection_, "BEGIN"),
      end_(connection_, "COMMIT"),
      version_(connection_, "PRAGMA data_version"),
      schema_(connection_, "PRAGMA schema_version") {
  connection_.Execute("PRAGMA temp_store = MEMORY; ATTACH 'file:?mode=memory' AS " +
                      std::string(kTemporary));
  RequireCompany(connection_);
  (void)FileVersion();  // refuses views
  RequireTables();
}

// Every table must be there. A column whose declaration lets SQLite store something else than what
// was written (an account code as a number, an amount rounded) would answer wrongly without a word.
void SqliteEngine::RequireTables() {
  SqliteStatement columns(connection_,
                          "SELECT its.name, own.name, own.type FROM main.sqlite_master AS its "
                          "JOIN pragma_table_info(its.name, 'main') AS own "
                          "WHERE its.type = 'table'");
  const auto text = [&](int column) {
    return CStr(columns.Value(column, DataType::VarWChar, "sqlite_master"));
  };
  std::vector<const SchemaTable*> found;
  while (columns.Step()) {
    const SchemaTable* const table = FindTable(text(0));
    if (table == nullptr) {
      continue;
    }
    found.push_back(table);
    const SchemaColumn* const known = FindColumn(*table, text(1));
    if (known != nullptr && !Stores(text(2), known->type)) {
      RaiseDataError(RunTime::TypeMismatch, "In " + connection_.Path() + " the column " +
                                                std::string(table->name) + "." + text(1) +
                                                " is declared " + text(2) +
                                                ", which does not keep what is stored in it");
    }
  }
  for (const SchemaTable& table : Tables()) {
    if (std::ranges::find(found, &table) == found.end()) {
      RaiseNoTable(table.name);
    }
  }
}

void SqliteEngine::RequireSameFile() {
  const auto now = std::chrono::steady_clock::now();
  if (now < nextLook_) {
    return;
  }
  if (IdentityOf(connection_.Path()) != file_) {
    RaiseDataError(kDatabaseFailed, connection_.Path() +
                                        " was replaced or removed while it was open: open the "
                                        "company again");
  }
  nextLook_ = now + kBetweenLooks;
}

// A view has no indexes, and what reads it may answer differently from what the entries wrote.
void SqliteEngine::RefuseViews() {
  SqliteStatement views(connection_, "SELECT name FROM main.sqlite_master WHERE type = 'view'");
  while (views.Step()) {
    const Variant name = views.Value(0, DataType::VarWChar, "sqlite_master.name");
    if (FindTable(*name.AsText()) != nullptr) {
      RaiseDataError(kDatabaseFailed,
                     "In " + connection_.Path() + " " + CStr(name) + " is a view, not a table");
    }
  }
}

void SqliteEngine::RaiseNoTable(std::string_view name) const {
  RaiseDataError(kNoSuchTable,
                 "There is no table '" + std::string(name) + "' in " + connection_.Path());
}

SqliteStatement& SqliteEngine::Constant(std::string_view sql) {
  auto found = constants_.find(sql);
  if (found == constants_.end()) {
    found = constants_.emplace(std::string(sql), SqliteStatement(connection_, sql)).first;
  }
  return found->second;
}

std::int64_t SqliteEngine::FileVersion() {
  if (versionOfReading_) {
    return *versionOfReading_;
  }
  RequireSameFile();
  const auto ask = [](SqliteStatement& statement) {
    StatementUse use(statement, StatementUse::Counts::NotAtAll);
    use->Step();
    return use->Number(0);
  };
  const std::int64_t version = ask(version_);
  connection_.Answered();
  if (version != versionSeen_) {
    if (const std::int64_t schema = ask(schema_); schema != schemaSeen_) {
      RefuseViews();
      ForgetPlaces();
      selections_.clear();
      keptRows_ = 0;
      schemaSeen_ = schema;
    }
    versionSeen_ = version;
  }
  return version;
}

TableShape SqliteEngine::ShapeOf(std::string_view table) {
  if (!HasTable(table)) {
    RaiseNoTable(table);
  }
  const SqliteStatement all(connection_, "SELECT * FROM " + QuoteName(table));
  const SchemaTable* known = FindTable(table);
  TableShape shape{QuoteName(table), {}};
  for (int i = 0; i < all.ColumnCount(); ++i) {
    TableColumn column{all.ColumnName(i), TypeOfDeclaration(all.ColumnDeclaration(i)), {}};
    const SchemaColumn* own = known == nullptr ? nullptr : FindColumn(*known, column.name);
    if (own != nullptr) {
      column.type = own->type;
    }
    column.sql = QuoteName(column.name);
    shape.columns.push_back(std::move(column));
  }
  return shape;
}

SqliteEngine::Prepared SqliteEngine::Prepare(const Query& query) {
  bool ofTheFile = true;
  bool keepsAnswers = true;
  const auto shapeOf = [&](std::string_view table) {
    const SchemaTable* known = FindTable(table);
    // A temporary table may have the name of one that the file lacks.
    ofTheFile = ofTheFile && known != nullptr && IsAnswered(kInFile, table);
    keepsAnswers = keepsAnswers && ofTheFile && !known->growsWithEntries;
    return ShapeOf(table);
  };
  Prepared prepared(connection_, RenderQuery(query, shapeOf, SqliteDialect()));
  prepared.ofTheFile = ofTheFile;
  prepared.keepsAnswers = keepsAnswers;
  return prepared;
}

SqliteEngine::Place& SqliteEngine::PlaceOf(const Selection& selection) {
  return places_[PlaceByAddress<kPlaces>(&selection)];
}

SqliteEngine::Kept* SqliteEngine::Expected(const Query& query) {
  const Place& place = PlaceOf(query.What());
  if (place.use.selection != &query.What() || place.use.name != query.Name()) {
    return nullptr;
  }
  Kept*& latest = place.prepared->latest;
  Kept* const next = latest == nullptr ? nullptr : latest->next;
  if (next == nullptr || !std::ranges::equal(next->asked, query.Values(), IsSameKey)) {
    return nullptr;
  }
  latest = next;
  return next;
}

SqliteEngine::Prepared& SqliteEngine::PreparedBefore(const Query& query) {
  UseView use{&query.What(), 1, query.Name()};
  for (const Variant& value : query.Values()) {
    use.kinds = use.kinds * 2 + (value.VarType() == Variant::Type::Boolean ? 1 : 0);
  }
  Place& place = PlaceOf(query.What());
  if (SameUse()(place.use, use)) {
    return *place.prepared;
  }
  auto found = selections_.find(use);
  if (found == selections_.end()) {
    Prepared prepared = Prepare(query);
    found = selections_
                .emplace(Use{use.selection, use.kinds, std::string(use.name)}, std::move(prepared))
                .first;
  }
  place = {found->first, &found->second};
  return found->second;
}

SqliteEngine::Kept& SqliteEngine::KeptBefore(Prepared& prepared, std::span<const Variant> values) {
  key_.clear();
  for (const Variant& value : values) {
    AppendValue(key_, value);
  }
  auto found = prepared.answers.find(key_);
  if (found == prepared.answers.end()) {
    found = prepared.answers.emplace(key_, Kept()).first;
    found->second.asked.assign(values.begin(), values.end());
    ++keptRows_;
  }
  Kept& kept = found->second;
  (prepared.latest == nullptr ? kept : *prepared.latest).next = &kept;
  prepared.latest = &kept;
  return kept;
}

std::shared_ptr<const RowTable> SqliteEngine::Run(Prepared& prepared, const Query& query,
                                                  const std::shared_ptr<const RowTable>& before) {
  StatementUse use(prepared.statement);
  for (std::size_t place = 0; place < query.Values().size(); ++place) {
    BindValue(use, place, query.Values()[place], prepared.values[place].endsDay);
  }
  bool another = use->Step();
  std::size_t same = 0;
  while (another && before != nullptr && same < before->RowCount() &&
         IsRow(use, prepared.columns, *before, same)) {
    ++same;
    another = use->Step();
  }
  if (!another && before != nullptr && same == before->RowCount()) {
    return before;
  }
  if (!another && same == 0) {
    return prepared.none;
  }
  const auto rows = std::make_shared<RowTable>(prepared.layout);
  rows->Reserve(prepared.rows);
  for (std::size_t row = 0; row < same; ++row) {
    rows->AddRowOf([&](std::size_t place) { return before->Cell(row, place); });
  }
  for (; another; another = use->Step()) {
    if (rows->RowCount() == kMostRows) {
      RaiseDataError(kDatabaseFailed, connection_.Path() + ": more than " +
                                          std::to_string(kMostRows) + " rows answer a question");
    }
    rows->AddRowOf([&](std::size_t place) {
      const ResultColumn& column = prepared.columns[place];
      return use->Value(static_cast<int>(place), column.type, column.source);
    });
  }
  prepared.rows = rows->RowCount();
  return rows;
}

// The first question is asked as it is: where every entry is saved before the next one comes, no
// second one follows.
bool SqliteEngine::LiesBehind(Prepared& prepared, const Query& query) {
  if (!prepared.greatest || !versionOfReading_) {
    return false;
  }
  constexpr std::size_t kMostEdges = 64;
  if (prepared.edgesOf != *versionOfReading_ || prepared.edges.size() == kMostEdges) {
    prepared.edges.clear();
    prepared.edgesOf = *versionOfReading_;
  }
  const auto wanted = [&](std::size_t place) -> const Variant& { return query.Values()[place]; };
  const auto edge = std::ranges::find_if(prepared.edges, [&](const Edge& known) {
    return std::ranges::equal(known.shared, prepared.greatest->values, IsSameKey, {}, wanted);
  });
  if (edge == prepared.edges.end()) {
    Edge& heard = prepared.edges.emplace_back();
    std::ranges::transform(prepared.greatest->values, std::back_inserter(heard.shared), wanted);
    return false;
  }
  if (edge->highest.empty()) {
    edge->highest = Greatest(prepared, query);
  }
  return !CanBeMet(*prepared.greatest, query.Values(), edge->highest);
}

std::vector<Variant> SqliteEngine::Greatest(const Prepared& prepared, const Query& query) {
  StatementUse greatest(Constant(prepared.greatest->sql));
  for (std::size_t place = 0; place < prepared.greatest->values.size(); ++place) {
    const std::size_t value = prepared.greatest->values[place];
    BindValue(greatest, place, query.Values()[value], prepared.values[value].endsDay);
  }
  greatest->Step();
  std::vector<Variant> values;
  for (const ResultColumn& column : prepared.greatest->columns) {
    Variant& value = values.emplace_back();
    try {
      value = greatest->Value(static_cast<int>(values.size()) - 1, column.type, {});
      DropTime(value);
    } catch (const RunTimeError&) {
      value = Variant();
    }
  }
  return values;
}

// The version is asked for first: a change that comes after it is then seen the next time.
const std::shared_ptr<const RowTable>& SqliteEngine::Rows(const Query& query) {
  constexpr std::size_t kMostValues = 63;  // one bit for each, and one in front
  if (!query.IsConstant() || query.Values().size() > kMostValues) {
    Prepared once = Prepare(query);
    return answer_ = Run(once, query);
  }
  const std::int64_t version = FileVersion();
  if (keptRows_ > kKeptRows) {
    ForgetAnswers();
  }
  Kept* kept = Expected(query);
  if (kept != nullptr && kept->Holds(version)) {
    return kept->rows;
  }
  Prepared& prepared = PreparedBefore(query);
  if (!prepared.keepsAnswers) {
    return answer_ = LiesBehind(prepared, query) ? prepared.none : Run(prepared, query);
  }
  if (kept == nullptr) {
    kept = &KeptBefore(prepared, query.Values());
  }
  if (!kept->Holds(version)) {
    std::shared_ptr<const RowTable> rows = Run(prepared, query, kept->rows);
    keptRows_ += rows->RowCount() - (kept->rows == nullptr ? 0 : kept->rows->RowCount());
    kept->rows = std::move(rows);
    kept->version = version;
  }
  return kept->rows;
}

// Walks the index of protocols down from the highest; Null comes last.
Variant SqliteEngine::HighestProtocol(const Variant& year, const Variant& registerType,
                                      const Variant& section) {
  StatementUse highest(
      Constant("SELECT Protocollo FROM COGPrimeNoteTeste "
               "WHERE CAST(substr(DataRegistrazione, 1, 4) AS INTEGER) = ? AND TipoRegIva = ? "
               "AND SezionaleIva = ? AND ifnull(Provvisoria, 0) = 0 "
               "ORDER BY Protocollo DESC LIMIT 1"));
  highest->Bind(1, year);
  highest->Bind(2, registerType);
  highest->Bind(3, section);
  return highest->Step() ? highest->Value(0, DataType::Integer, "COGPrimeNoteTeste.Protocollo")
                         : Null;
}

std::int32_t SqliteEngine::Closings(const Variant& entry) {
  StatementUse count(
      Constant("SELECT count(*) FROM (SELECT DISTINCT Apertura.IdScadenza, Apertura.NrRata "
               "FROM COGPrimeNoteRCont AS Riga "
               "JOIN COGScadenze AS Apertura ON Apertura.IdScadenza = Riga.IdScadenza "
               "WHERE Riga.IdPrimaNota = ? AND Apertura.TipoRata = 0) AS Aperta "
               "CROSS JOIN COGScadenze AS Chiusura ON Chiusura.LinkApertura = Aperta.IdScadenza "
               "AND Chiusura.RataApertura = Aperta.NrRata AND Chiusura.TipoRata = 1"));
  count->Bind(1, entry);
  count->Step();
  return CLng(count->Value(0, DataType::Integer, "COGNroChiusurePrimaNota"));
}

void SqliteEngine::ForgetAnswers() {
  for (auto& [use, prepared] : selections_) {
    prepared.answers.clear();
    prepared.latest = nullptr;
  }
  keptRows_ = 0;
}

void SqliteEngine::Record(std::vector<std::string>* target) {
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

void SqliteEngine::BeginReading(const Rehearsal& /*rehearsal*/) {
  StatementUse(begin_, StatementUse::Counts::NotAtAll)->Step();
  try {
    // BEGIN alone waits for the first question before it fixes the state.
    versionOfReading_ = FileVersion();
  } catch (...) {
    EndReading();
    throw;
  }
  ++connection_.Counted().transactions;
}

void SqliteEngine::EndReading() noexcept {
  versionOfReading_.reset();
  try {
    StatementUse(end_, StatementUse::Counts::NotAtAll)->Step();
  } catch (...) {
    sqlite3_exec(connection_.Handle(), "ROLLBACK", nullptr, nullptr, nullptr);
  }
}

std::string SqliteEngine::Database() const {
  return file_ ? std::to_string(file_->device) + ":" + std::to_string(file_->number)
               : connection_.Path();
}

bool SqliteEngine::HasTable(std::string_view name) {
  return IsAnswered(kInFile, name) ||
         IsAnswered("SELECT 1 FROM temporary.sqlite_master WHERE name = ? COLLATE NOCASE", name);
}

bool SqliteEngine::IsAnswered(std::string_view sql, std::string_view name) {
  const Variant wanted(name);
  StatementUse search(Constant(sql));
  search->Bind(1, wanted);
  return search->Step();
}

void SqliteEngine::MakeTemporaryTable(const std::string& name, const RowTable& rows) {
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

void SqliteEngine::FillTemporaryTable(const std::string& name, const RowTable& rows) {
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

void SqliteEngine::DropTemporaryTable(const std::string& name) noexcept {
  try {
    ForgetTemporarySelections();
    connection_.Execute("DROP TABLE " + std::string(kTemporary) + "." + QuoteName(name));
  } catch (...) {
    // It ends with the connection; nobody is left who could act on the failure.
  }
}

// The next table of that name may have other columns.
void SqliteEngine::ForgetTemporarySelections() {
  ForgetPlaces();
  std::erase_if(selections_, [](const auto& entry) { return !entry.second.ofTheFile; });
}

}  // namespace kal::company
