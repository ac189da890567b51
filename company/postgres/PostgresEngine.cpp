#include "company/postgres/PostgresEngine.h"

#include <algorithm>
#include <array>
#include <utility>

#include "company/DataError.h"
#include "platform/LetterCase.h"

namespace kal::company {
namespace {

// So many kept rows are worth their memory.
constexpr std::size_t kKeptRows = 100000;
constexpr std::size_t kMostRows = 1000000;
constexpr int kMostRehearsals = 8;

constexpr std::string_view kHighestProtocol =
    "SELECT Protocollo FROM COGPrimeNoteTeste "
    "WHERE (extract(year FROM DataRegistrazione)::integer) = $1::bigint "
    "AND TipoRegIva = $2::bigint AND SezionaleIva = $3::bigint "
    "AND coalesce(Provvisoria::integer, 0) = 0 AND Protocollo IS NOT NULL "
    "ORDER BY Protocollo DESC LIMIT 1";
constexpr std::string_view kClosings =
    "SELECT count(*) FROM (SELECT DISTINCT Apertura.IdScadenza, Apertura.NrRata "
    "FROM COGPrimeNoteRCont AS Riga "
    "JOIN COGScadenze AS Apertura ON Apertura.IdScadenza = Riga.IdScadenza "
    "WHERE Riga.IdPrimaNota = $1::bigint AND Apertura.TipoRata = 0) AS Aperta "
    "JOIN COGScadenze AS Chiusura ON Chiusura.LinkApertura = Aperta.IdScadenza "
    "AND Chiusura.RataApertura = Aperta.NrRata AND Chiusura.TipoRata = 1";
// Of a table that is none of the company's own.
constexpr std::string_view kForeignColumns =
    "SELECT own.relname, col.attname, col.atttypid FROM pg_catalog.pg_class AS own "
    "JOIN pg_catalog.pg_attribute AS col ON col.attrelid = own.oid AND col.attnum > 0 "
    "AND NOT col.attisdropped WHERE pg_catalog.pg_table_is_visible(own.oid) "
    "AND own.relkind IN ('r', 'p') "
    "AND lower(own.relname::text COLLATE \"C\") = lower($1::text COLLATE \"C\") "
    "ORDER BY own.oid, col.attnum";

bool IsSame(const RowTable& one, const RowTable& other) {
  if (&one == &other) {
    return true;
  }
  if (one.RowCount() != other.RowCount()) {
    return false;
  }
  for (std::size_t column = 0; column < one.Columns().size(); ++column) {
    for (std::size_t row = 0; row < one.RowCount(); ++row) {
      if (!Identical(one.Cell(row, column), other.Cell(row, column))) {
        return false;
      }
    }
  }
  return true;
}

// Three bits for each value, behind a set one; nothing where they are too many.
std::optional<std::uint64_t> KindsOf(std::span<const Variant> values) {
  constexpr std::size_t kMost = 20;
  constexpr unsigned kBits = 3;
  if (values.size() > kMost) {
    return std::nullopt;
  }
  std::uint64_t kinds = 1;
  for (const Variant& value : values) {
    kinds = (kinds << kBits) + static_cast<std::uint64_t>(KindOf(value));
  }
  return kinds;
}

// For measuring: the statement with its values in the places of its parameters.
std::string WithValues(std::string sql, std::span<const PostgresValue> values) {
  for (std::size_t i = values.size(); i > 0; --i) {
    const std::string parameter = "$" + std::to_string(i) + "::";
    std::string value = values[i - 1] ? "'" : "NULL";
    for (const char letter : values[i - 1].value_or("")) {
      value.append(letter == '\'' ? 2U : 1U, letter);
    }
    value += values[i - 1] ? "'::" : "::";
    for (std::size_t at = 0; (at = sql.find(parameter, at)) != std::string::npos;
         at += value.size()) {
      sql.replace(at, parameter.size(), value);
    }
  }
  return sql;
}

void SetUp(auto& statement) {
  std::vector<Column> columns;
  for (const ResultColumn& column : statement.columns) {
    columns.push_back({column.name, column.type});
  }
  statement.layout = std::make_shared<RowLayout>(std::move(columns));
  statement.none = std::make_shared<RowTable>(statement.layout);
  statement.latest = statement.none;
}

}  // namespace

PostgresEngine::Session::Session(const std::string& uri)
    : connection(uri, Postgres::Access::Read), catalog(connection), versionOf(Tables().size()) {
  begin.sql = "BEGIN ISOLATION LEVEL REPEATABLE READ READ ONLY";
  begin.name = "begin";
  versions.sql = "SELECT Tabella, Versione FROM KalVersioni";
  versions.name = "versions";
  end.sql = "COMMIT";
  end.name = "end";
}

PostgresEngine::PostgresEngine(std::string uri) : uri_(std::move(uri)) {
  Connect();
  database_ = session_->catalog.Database();
}

PostgresEngine::~PostgresEngine() = default;

// A server that is waited for in vain is not waited for again at once.
void PostgresEngine::Connect() {
  if (session_ != nullptr) {
    return;
  }
  const auto start = std::chrono::steady_clock::now();
  if (failure_ && start < nextAttempt_) {
    throw RunTimeError(*failure_);
  }
  try {
    auto session = std::make_unique<Session>(uri_);
    if (!database_.empty() && session->catalog.Database() != database_) {
      RaiseDataError(kDatabaseFailed, session->connection.Name() +
                                          " is another database than before: open the company "
                                          "again");
    }
    session_ = std::move(session);
  } catch (const RunTimeError&) {
    const auto now = std::chrono::steady_clock::now();
    constexpr std::chrono::seconds kLong{1};
    nextAttempt_ = now - start > kLong ? now + (now - start) : now;
    throw;
  }
  keptRows_ = 0;
}

// Nothing of a connection that was lost is believed any longer.
void PostgresEngine::Lose(const RunTimeError& why) {
  failure_ = why;
  if (session_ != nullptr && session_->connection.IsLost()) {
    noted_.clear();
    trusted_.clear();
    isOpen_ = false;
    session_.reset();
  }
}

void PostgresEngine::BeginReading(const Rehearsal& rehearsal) {
  isReading_ = true;
  ++reading_;
  noted_.clear();
  trusted_.clear();
  isSurprised_ = false;
  try {
    Connect();
    failure_.reset();
    if (keptRows_ > kKeptRows) {
      ForgetAnswers();
    }
    Rehearse(rehearsal);
    StartTransaction();
    for (int round = 1; isSurprised_ && rehearsal && round < kMostRehearsals; ++round) {
      noted_.clear();
      isSurprised_ = false;
      Rehearse(rehearsal);
      if (noted_.empty()) {
        break;
      }
      AskNoted();
    }
  } catch (const RunTimeError& error) {
    Lose(error);
  } catch (...) {
    session_.reset();
    isOpen_ = false;
    isReading_ = false;
    throw;
  }
  noted_.clear();
  trusted_.clear();
}

// The transaction ends at once; nobody waits for the server to say so.
void PostgresEngine::EndReading() noexcept {
  isReading_ = false;
  if (session_ == nullptr || !isOpen_) {
    return;
  }
  isOpen_ = false;
  try {
    Send(session_->end, {});
    session_->connection.Sync();
    ++session_->ends;
  } catch (...) {
    session_.reset();
  }
}

void PostgresEngine::Rehearse(const Rehearsal& rehearsal) {
  if (!rehearsal) {
    return;
  }
  ++rehearsal_;
  isRehearsing_ = true;
  try {
    rehearsal();
  } catch (...) {
    // It was done on beliefs. What comes of it when it counts is seen then.
  }
  isRehearsing_ = false;
}

void PostgresEngine::StartTransaction() {
  Send(session_->begin, {});
  if (session_->catalog.HasVersions()) {
    Send(session_->versions, {});
  }
  for (const Noted& noted : noted_) {
    Send(*noted.statement, noted.parameters);
  }
  Leave();
  for (; session_->ends > 0; --session_->ends) {
    (void)Receive();
    session_->connection.NextSync();
  }
  ReceiveStart();
  isSurprised_ = std::ranges::any_of(trusted_, [this](const auto& trusted) {
    return !IsCurrent(*trusted.first, *trusted.second);
  });
  if (!ReceiveNoted()) {
    StartOver();
  }
}

void PostgresEngine::AskNoted() {
  for (const Noted& noted : noted_) {
    Send(*noted.statement, noted.parameters);
  }
  Leave();
  if (!ReceiveNoted()) {
    StartOver();
  }
}

void PostgresEngine::StartOver() {
  ++reading_;
  noted_.clear();
  isSurprised_ = false;
  isOpen_ = false;
  Send(session_->end, {});
  Send(session_->begin, {});
  if (session_->catalog.HasVersions()) {
    Send(session_->versions, {});
  }
  Leave();
  (void)Receive();
  ReceiveStart();
  session_->connection.NextSync();
}

void PostgresEngine::Send(Statement& statement, std::span<const PostgresValue> parameters) {
  Postgres& connection = session_->connection;
  if (recorded_ != nullptr && !statement.columns.empty()) {
    recorded_->push_back(WithValues(statement.sql, parameters));
  }
  const bool prepares = !statement.name.empty() && !statement.isPrepared;
  if (prepares) {
    connection.Prepare(statement.name, statement.sql);
    statement.isPrepared = true;  // unless its answer says something else
    ++counted_.prepared;
  }
  if (statement.name.empty()) {
    connection.AskOnce(statement.sql, parameters);
  } else {
    connection.Ask(statement.name, parameters);
  }
  session_->sent.push_back({&statement, prepares});
}

void PostgresEngine::Leave() {
  session_->connection.Sync();
  ++counted_.roundTrips;
}

// The answer to the command sent longest ago.
PostgresResult PostgresEngine::Receive() {
  const Sent sent = session_->sent.front();
  session_->sent.pop_front();
  if (sent.preparedFirst) {
    PostgresResult prepared = session_->connection.Next();
    if (prepared.Failed()) {
      sent.statement->isPrepared = false;
      (void)session_->connection.Next();
      return prepared;
    }
  }
  return session_->connection.Next();
}

void PostgresEngine::ReceiveStart() {
  const PostgresResult begun = Receive();
  isOpen_ = !begun.Failed();
  std::optional<PostgresResult> versions;
  if (session_->catalog.HasVersions()) {
    versions.emplace(Receive());
  }
  if (begun.Failed() || (versions && versions->Failed())) {
    while (!session_->sent.empty()) {
      (void)Receive();
    }
    session_->connection.NextSync();
    session_->connection.Fail(begun.Failed() ? begun : *versions);
  }
  ++counted_.transactions;
  if (versions) {
    ReadVersions(*versions);
  }
}

bool PostgresEngine::ReceiveNoted() {
  bool allAnswered = true;
  for (const Noted& noted : noted_) {
    const PostgresResult result = Receive();
    if (result.Failed()) {
      allAnswered = false;
      continue;
    }
    ++counted_.queries;
    try {
      std::shared_ptr<const RowTable> rows = ToRows(*noted.statement, result);
      isSurprised_ = isSurprised_ || !IsSame(*rows, *noted.believed);
      Keep(*noted.statement, *noted.kept, std::move(rows));
    } catch (const RunTimeError&) {
      // A stored value can't be read: whoever really asks for it is told.
    }
  }
  session_->connection.NextSync();
  return allAnswered;
}

void PostgresEngine::ReadVersions(const PostgresResult& result) {
  for (Version& version : session_->versionOf) {
    version.isKnown = false;
  }
  bool another = false;
  for (std::size_t row = 0; row < result.Rows(); ++row) {
    const SchemaTable* const table = FindTable(result.Text(row, 0));
    if (table == nullptr) {
      continue;
    }
    Version& version = session_->versionOf[static_cast<std::size_t>(table - Tables().data())];
    version.isKnown = !result.IsNull(row, 1);
    if (version.text != result.Text(row, 1)) {
      version.text = result.Text(row, 1);
      version.changedAt = session_->stamp + 1;
      another = true;
    }
  }
  session_->stamp += another ? 1 : 0;
}

void PostgresEngine::Keep(Statement& statement, Kept& kept, std::shared_ptr<const RowTable> rows) {
  keptRows_ += 1 + rows->RowCount();
  kept.rows = std::move(rows);
  kept.reading = reading_;
  kept.stamp = session_->stamp;
  statement.latest = kept.rows;
}

std::shared_ptr<const RowTable> PostgresEngine::ToRows(const Statement& statement,
                                                       const PostgresResult& result) const {
  if (result.Rows() > kMostRows) {
    RaiseDataError(kDatabaseFailed, session_->connection.Name() + ": more than " +
                                        std::to_string(kMostRows) + " rows answer a question");
  }
  if (result.Rows() == 0) {
    return statement.none;
  }
  auto rows = std::make_shared<RowTable>(statement.layout);
  rows->Reserve(result.Rows());
  for (std::size_t row = 0; row < result.Rows(); ++row) {
    rows->AddRowOf([&](std::size_t place) {
      const ResultColumn& column = statement.columns[place];
      return result.IsNull(row, place)
                 ? Variant(Null)
                 : ToVariant(result.Text(row, place), column.type, column.source);
    });
  }
  return rows;
}

bool PostgresEngine::IsCurrent(const Statement& statement, const Kept& kept) const {
  if (kept.rows == nullptr) {
    return false;
  }
  return kept.reading == reading_ ||
         std::ranges::all_of(statement.tables, [&](const SchemaTable* table) {
           if (!session_->catalog.HasVersion(table)) {
             return false;
           }
           const Version& version =
               session_->versionOf[static_cast<std::size_t>(table - Tables().data())];
           return version.isKnown && version.changedAt <= kept.stamp;
         });
}

std::shared_ptr<const RowTable> PostgresEngine::Answer(Statement& statement,
                                                       std::span<const Variant> values,
                                                       std::span<const PostgresValue> tables) {
  if (statement.greatest && !CanBeMet(statement, values)) {
    return statement.none;
  }
  key_.clear();
  for (const Variant& value : values) {
    AppendValue(key_, value);
  }
  for (const PostgresValue& array : tables) {
    AppendText(key_, *array);
  }
  auto found = statement.answers.find(key_);
  if (found == statement.answers.end()) {
    found = statement.answers.emplace(key_, Kept()).first;
  }
  Kept& kept = found->second;
  if (IsCurrent(statement, kept)) {
    if (isRehearsing_ && !isOpen_) {
      trusted_.emplace_back(&statement, &kept);
    }
    return kept.rows;
  }
  std::shared_ptr<const RowTable> believed = kept.rows == nullptr ? statement.latest : kept.rows;
  if (isRehearsing_ && kept.notedIn == rehearsal_) {
    return believed;
  }
  std::vector<PostgresValue> parameters;
  parameters.reserve(values.size() + tables.size());
  for (std::size_t i = 0; i < values.size(); ++i) {
    parameters.push_back(ToParameter(values[i], statement.values[i]));
  }
  parameters.insert(parameters.end(), tables.begin(), tables.end());
  if (!isRehearsing_) {
    return AskAlone(statement, kept, parameters);
  }
  kept.notedIn = rehearsal_;
  noted_.push_back({&statement, &kept, std::move(parameters), believed});
  return believed;
}

bool PostgresEngine::CanBeMet(const Statement& statement, std::span<const Variant> values) {
  std::vector<Variant> asked;
  for (const std::size_t value : statement.greatest->values) {
    asked.push_back(values[value]);
  }
  const std::shared_ptr<const RowTable> greatest = Answer(*statement.greatestStatement, asked);
  if (greatest->RowCount() == 0) {
    return true;  // a belief about a question not asked yet
  }
  std::vector<Variant> most;
  for (std::size_t column = 0; column < greatest->Columns().size(); ++column) {
    most.push_back(greatest->Cell(0, column));
  }
  return company::CanBeMet(*statement.greatest, values, most);
}

std::shared_ptr<const RowTable> PostgresEngine::AskAlone(
    Statement& statement, Kept& kept, const std::vector<PostgresValue>& parameters) {
  ++counted_.unforeseen;
  ++counted_.queries;
  std::optional<PostgresResult> result;
  try {
    Send(statement, parameters);
    Leave();
    result.emplace(Receive());
    session_->connection.NextSync();
    if (result->Failed()) {
      session_->connection.Fail(*result);
    }
  } catch (const RunTimeError& error) {
    const std::string about = About(statement);
    Lose(error);
    RaiseDataError(error.Number(), error.Description() + about);
  } catch (...) {
    failure_ = RunTimeError(static_cast<std::int32_t>(RunTime::OutOfMemory),
                            std::string(kDataAccessSource), "Out of memory");
    isOpen_ = false;
    session_.reset();
    throw;
  }
  std::shared_ptr<const RowTable> rows = ToRows(statement, *result);
  Keep(statement, kept, rows);
  return rows;
}

std::string PostgresEngine::About(const Statement& statement) const {
  std::string tables;
  for (const SchemaTable* const table : statement.tables) {
    if (table != nullptr) {
      tables.append(tables.empty() ? " (" : ", ").append(table->name);
    }
  }
  return tables.empty() ? tables : tables + ")";
}

void PostgresEngine::ForgetAnswers() {
  const auto forget = [](auto& statements) {
    for (auto& [use, statement] : statements) {
      statement.answers.clear();
    }
  };
  forget(session_->selections);
  forget(session_->texts);
  std::erase_if(session_->texts, [](const auto& text) { return text.second.name.empty(); });
  keptRows_ = 0;
}

// A question outside of a reading is one by itself.
class PostgresEngine::Alone {
 public:
  explicit Alone(PostgresEngine& engine) : engine_(engine), isNeeded_(!engine.isReading_) {
    if (isNeeded_) {
      engine_.BeginReading({});
    }
  }
  Alone(const Alone&) = delete;
  Alone& operator=(const Alone&) = delete;
  ~Alone() {
    if (isNeeded_) {
      engine_.EndReading();
    }
  }

 private:
  PostgresEngine& engine_;
  bool isNeeded_;
};

const std::shared_ptr<const RowTable>& PostgresEngine::Rows(const Query& query) {
  const Alone alone(*this);
  RequireReading(query.Text(query.What().Table()));
  std::vector<PostgresValue> tables;
  Statement& statement = StatementOf(query, tables);
  return answer_ = Answer(statement, query.Values(), tables);
}

void PostgresEngine::RequireReading(std::string_view table) const {
  if (failure_) {
    RaiseDataError(failure_->Number(), failure_->Description() + " (" + std::string(table) + ")");
  }
}

Variant PostgresEngine::HighestProtocol(const Variant& year, const Variant& registerType,
                                        const Variant& section) {
  const Alone alone(*this);
  RequireReading("COGPrimeNoteTeste");
  const std::array values = {year, registerType, section};
  const std::shared_ptr<const RowTable> rows =
      Answer(Fixed(kHighestProtocol, "COGPrimeNoteTeste", "Protocollo", values.size()), values);
  return rows->RowCount() == 0 ? Variant(Null) : rows->Cell(0, 0);
}

std::int32_t PostgresEngine::Closings(const Variant& entry) {
  const Alone alone(*this);
  RequireReading("COGScadenze");
  const std::array values = {entry};
  const std::shared_ptr<const RowTable> rows =
      Answer(Fixed(kClosings, "COGScadenze", "COGNroChiusurePrimaNota", values.size()), values);
  return rows->RowCount() == 0 ? 0 : CLng(rows->Cell(0, 0));
}

// A statement of this program's own that answers one number, asked with numbers.
PostgresEngine::Statement& PostgresEngine::Fixed(std::string_view sql, std::string_view table,
                                                 std::string_view column, std::size_t values) {
  if (const auto found = session_->texts.find(sql); found != session_->texts.end()) {
    return found->second;
  }
  Statement statement;
  statement.sql = sql;
  statement.columns.push_back(
      {std::string(column), DataType::Integer, std::string(table) + "." + std::string(column)});
  statement.values.assign(values, ComparedValue{DataType::Integer, false});
  statement.tables.push_back(FindTable(table));
  return Add(std::move(statement));
}

PostgresEngine::Statement& PostgresEngine::Add(Statement statement) {
  SetUp(statement);
  statement.name = "k" + std::to_string(++session_->named);
  std::string sql = statement.sql;
  return session_->texts.emplace(std::move(sql), std::move(statement)).first->second;
}

PostgresEngine::Statement& PostgresEngine::StatementOf(const Query& query,
                                                       std::vector<PostgresValue>& tables) {
  const std::optional<std::uint64_t> kinds =
      query.IsConstant() ? KindsOf(query.Values()) : std::nullopt;
  const UseView use{&query.What(), kinds.value_or(0), query.Name()};
  if (kinds) {
    const auto found = session_->selections.find(use);
    if (found != session_->selections.end()) {
      return found->second;
    }
  }
  Statement statement;
  bool isForeign = false;
  RenderedQuery rendered = RenderQuery(
      query,
      [&](std::string_view table) {
        statement.tables.push_back(FindTable(table));
        return ShapeOf(table, query.What().ValueCount(), tables, isForeign);
      },
      PostgresDialect());
  statement.sql = std::move(rendered.sql);
  if (!query.What().IsOnlyFirst()) {
    statement.sql += " LIMIT " + std::to_string(kMostRows + 1);
  }
  if (const auto found = session_->texts.find(statement.sql); found != session_->texts.end()) {
    return found->second;
  }
  statement.columns = std::move(rendered.columns);
  statement.values = std::move(rendered.values);
  const bool isOwn = std::ranges::none_of(
      statement.tables, [](const SchemaTable* table) { return table == nullptr; });
  if (!kinds || !isOwn) {
    Statement& added = Add(std::move(statement));
    if (isForeign) {
      added.name.clear();  // its table may be another one the next time
    }
    return added;
  }
  SetUp(statement);
  statement.name = "k" + std::to_string(++session_->named);
  if (rendered.greatest) {
    Statement greatest;
    greatest.sql = rendered.greatest->sql;
    greatest.columns = rendered.greatest->columns;
    for (const std::size_t value : rendered.greatest->values) {
      greatest.values.push_back(statement.values[value]);
    }
    greatest.tables = statement.tables;
    const auto before = session_->texts.find(greatest.sql);
    statement.greatestStatement =
        before == session_->texts.end() ? &Add(std::move(greatest)) : &before->second;
    statement.greatest = std::move(rendered.greatest);
  }
  return session_->selections
      .emplace(Use{use.selection, use.kinds, std::string(use.name)}, std::move(statement))
      .first->second;
}

// The rows of a temporary table are parameters behind those of the selection, a column each.
TableShape PostgresEngine::ShapeOf(std::string_view table, std::size_t before,
                                   std::vector<PostgresValue>& parameters, bool& isForeign) {
  if (const TableShape* const own = session_->catalog.Find(FindTable(table)); own != nullptr) {
    return *own;
  }
  if (const Temporary* const temporary = FindTemporary(table); temporary != nullptr) {
    TableShape shape{"(SELECT * FROM unnest(", temporary->columns};
    std::string names;
    for (std::size_t i = 0; i < temporary->columns.size(); ++i) {
      const TableColumn& column = temporary->columns[i];
      parameters.push_back(temporary->arrays[i]);
      shape.sql.append(i == 0 ? "$" : ", $")
          .append(std::to_string(before + parameters.size()))
          .append("::")
          .append(TypeName(column.type))
          .append("[]");
      names.append(i == 0 ? "" : ", ").append(column.sql);
    }
    shape.sql.append(") AS its(").append(names).append("))");
    return shape;
  }
  isForeign = true;
  const std::shared_ptr<const RowTable> columns = ForeignColumns(table);
  TableShape shape;
  for (std::size_t row = 0; row < columns->RowCount(); ++row) {
    shape.sql = QuoteName(*columns->Cell(row, 0).AsText());
    const std::string name = CStr(columns->Cell(row, 1));
    shape.columns.push_back({name, TypeOfServer(*columns->Cell(row, 2).AsText()), QuoteName(name)});
  }
  if (shape.columns.empty()) {
    RaiseDataError(kNoSuchTable, "There is no table '" + std::string(table) + "' in " +
                                     session_->connection.Name());
  }
  return shape;
}

std::shared_ptr<const RowTable> PostgresEngine::ForeignColumns(std::string_view table) {
  auto found = session_->texts.find(kForeignColumns);
  if (found == session_->texts.end()) {
    Statement statement;
    statement.sql = kForeignColumns;
    for (const std::string_view column : {"relname", "attname", "atttypid"}) {
      statement.columns.push_back({std::string(column), DataType::VarWChar, std::string(column)});
    }
    statement.values.assign(1, ComparedValue{DataType::VarWChar, false});
    statement.tables.push_back(nullptr);
    Add(std::move(statement));
    found = session_->texts.find(kForeignColumns);
  }
  const std::array values = {Variant(table)};
  return Answer(found->second, values);
}

const PostgresEngine::Temporary* PostgresEngine::FindTemporary(std::string_view name) const {
  const auto found = std::ranges::find_if(
      temporary_, [name](const Temporary& own) { return SameName(own.name, name); });
  return found == temporary_.end() ? nullptr : &*found;
}

bool PostgresEngine::HasTable(std::string_view name) {
  if (FindTable(name) != nullptr || FindTemporary(name) != nullptr) {
    return true;
  }
  const Alone alone(*this);
  RequireReading(name);
  return ForeignColumns(name)->RowCount() != 0;
}

void PostgresEngine::MakeTemporaryTable(const std::string& name, const RowTable& rows) {
  if (HasTable(name)) {
    RaiseDataError(kBadCommand, "There is a table '" + name + "' already");
  }
  (void)QuoteName(name);  // refuses what can be no name
  Temporary made{name, {}, {}};
  for (std::size_t column = 0; column < rows.Columns().size(); ++column) {
    const Column& own = rows.Columns()[column];
    made.columns.push_back({own.name, own.type, QuoteName(own.name)});
    made.arrays.emplace_back(ToArray(rows, column));
  }
  temporary_.push_back(std::move(made));
}

void PostgresEngine::DropTemporaryTable(const std::string& name) noexcept {
  std::erase_if(temporary_, [&](const Temporary& own) { return SameName(own.name, name); });
}

}  // namespace kal::company
