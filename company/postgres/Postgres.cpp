#include "company/postgres/Postgres.h"

#include <poll.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <system_error>

#include "company/DataError.h"

namespace kal::company {
namespace {

// What is asked of the server in every session. A limit that the URI or the server has set stays.
// Every question looks for a few keys in indexes: planned once for all values, along indexes, it is
// quick wherever in the books it looks, and its rows come in one order. A client that is gone is
// noticed in the middle of a question.
constexpr const char* kReading =
    "SELECT set_config(own.name, wanted.value, false) FROM pg_catalog.pg_settings AS own "
    "JOIN (VALUES ('default_transaction_read_only', 'on', NULL), ('statement_timeout', '60000', "
    "'0'), ('lock_timeout', '5000', '0'), ('datestyle', 'ISO', NULL), ('extra_float_digits', '1', "
    "NULL), ('jit', 'off', NULL), ('max_parallel_workers_per_gather', '0', NULL), "
    "('plan_cache_mode', 'force_generic_plan', NULL), ('enable_seqscan', 'off', NULL), "
    "('enable_bitmapscan', 'off', NULL), ('enable_hashjoin', 'off', NULL), "
    "('enable_mergejoin', 'off', NULL), ('enable_sort', 'off', NULL), "
    "('client_connection_check_interval', '1000', '0')) AS wanted(name, value, unless) "
    "ON lower(own.name) = wanted.name WHERE wanted.unless IS NULL OR own.setting = wanted.unless";
constexpr const char* kMaking = "SELECT set_config('client_min_messages', 'warning', false)";

struct FreeOptions {
  void operator()(PQconninfoOption* options) const { PQconninfoFree(options); }
};
using ConnectionOptions = std::unique_ptr<PQconninfoOption, FreeOptions>;

std::string_view ValueOf(const PQconninfoOption* options, std::string_view keyword) {
  for (const PQconninfoOption* option = options; option != nullptr && option->keyword != nullptr;
       ++option) {
    if (keyword == option->keyword) {
      return option->val == nullptr ? std::string_view() : std::string_view(option->val);
    }
  }
  return {};
}

// What libpq says of a URI that it can't read may hold a piece of a password, in quotes.
std::string WithoutQuoted(std::string_view text) {
  std::string without;
  bool inside = false;
  for (const char letter : text) {
    if (letter == '"') {
      without += inside ? "" : "...";
      inside = !inside;
    } else if (!inside && letter != '\n') {
      without += letter;
    }
  }
  return without;
}

ConnectionOptions OptionsOf(const std::string& uri) {
  char* message = nullptr;
  ConnectionOptions options(PQconninfoParse(uri.c_str(), &message));
  const std::string why =
      message == nullptr ? std::string("no memory") : WithoutQuoted(std::string_view(message));
  PQfreemem(message);
  if (options == nullptr) {
    RaiseDataError(kDatabaseFailed, "The connection URI can't be read: " + why);
  }
  // A slash in a password ends the host for libpq, and the rest would be shown as a database.
  if (ValueOf(options.get(), "dbname").find('@') != std::string_view::npos) {
    RaiseDataError(kDatabaseFailed,
                   "The connection URI can't be read: in names and passwords write %2F for / and "
                   "%40 for @");
  }
  return options;
}

std::string NameOf(std::string_view host, std::string_view port, std::string_view database) {
  std::string name(host.empty() ? "localhost" : host);
  if (!port.empty()) {
    name.append(":").append(port);
  }
  return name.append("/").append(database);
}

std::string OneLine(std::string_view text) {
  std::string line;
  for (const char letter : text) {
    const bool blank = letter == ' ' || letter == '\t' || letter == '\n' || letter == '\r';
    if (!blank) {
      line += letter;
    } else if (!line.empty() && line.back() != ' ') {
      line += ' ';
    }
  }
  while (!line.empty() && line.back() == ' ') {
    line.pop_back();
  }
  return line;
}

std::string TextOf(const char* text) { return text == nullptr ? std::string() : text; }

// libpq's own words of a connection that did not come about, without what was given as a secret.
std::string WithoutSecrets(std::string text, const PQconninfoOption* options) {
  for (const std::string_view keyword : {"password", "sslpassword"}) {
    const std::string_view secret = ValueOf(options, keyword);
    for (std::size_t at = 0; !secret.empty() && (at = text.find(secret, at)) != std::string::npos;
         at += 3) {
      text.replace(at, secret.size(), "...");
    }
  }
  return OneLine(text);
}

}  // namespace

std::string ShownUri(const std::string& uri) {
  try {
    const ConnectionOptions options = OptionsOf(uri);
    return NameOf(ValueOf(options.get(), "host"), ValueOf(options.get(), "port"),
                  ValueOf(options.get(), "dbname"));
  } catch (const RunTimeError&) {
    return "the server";
  }
}

std::string PostgresResult::Message() const {
  return OneLine(TextOf(PQresultErrorField(result_.get(), PG_DIAG_MESSAGE_PRIMARY)));
}

std::string PostgresResult::State() const {
  return TextOf(PQresultErrorField(result_.get(), PG_DIAG_SQLSTATE));
}

Postgres::Postgres(const std::string& uri, Access access) : name_(ShownUri(uri)) {
  const ConnectionOptions options = OptionsOf(uri);
  // What stands in front of the URI may be changed by it, what stands behind it may not.
  constexpr std::array kKeywords = {"connect_timeout",           "tcp_user_timeout",
                                    "fallback_application_name", "dbname",
                                    "client_encoding",           static_cast<const char*>(nullptr)};
  const std::array values = {"10",        "30000", "kalcogcheck",
                             uri.c_str(), "UTF8",  static_cast<const char*>(nullptr)};
  handle_.reset(PQconnectdbParams(kKeywords.data(), values.data(), 1));
  if (handle_ == nullptr) {
    Raise(RunTime::OutOfMemory, "Out of memory", kDataAccessSource);
  }
  if (PQstatus(handle_.get()) != CONNECTION_OK) {
    RaiseDataError(kDatabaseFailed,
                   name_ + ": " + WithoutSecrets(PQerrorMessage(handle_.get()), options.get()));
  }
  name_ = NameOf(TextOf(PQhost(handle_.get())), TextOf(PQport(handle_.get())),
                 TextOf(PQdb(handle_.get())));
  PQsetNoticeProcessor(
      handle_.get(), [](void* /*context*/, const char* /*message*/) {}, nullptr);
  SetUp(access);
}

void Postgres::SetUp(Access access) {
  (void)Execute(access == Access::Read ? kReading : kMaking);
  const PostgresResult limit =
      Execute("SELECT setting FROM pg_catalog.pg_settings WHERE lower(name) = 'statement_timeout'");
  if (access == Access::Make) {
    return;
  }
  constexpr std::chrono::milliseconds kGrace{10000};
  constexpr std::int64_t kUnknown = 60000;
  std::int64_t milliseconds = kUnknown;
  if (limit.Rows() == 1) {
    const std::string_view text = limit.Text(0, 0);
    (void)std::from_chars(text.data(), text.data() + text.size(), milliseconds);
  }
  constexpr std::int64_t kDay = 86400000;
  silence_ = std::chrono::milliseconds(std::min(milliseconds, kDay)) + kGrace;
  if (PQsetnonblocking(handle_.get(), 1) != 0 || PQenterPipelineMode(handle_.get()) != 1) {
    Lose(PQerrorMessage(handle_.get()));
  }
}

PostgresResult Postgres::Execute(const std::string& sql) {
  PostgresResult result(PQexec(handle_.get(), sql.c_str()));
  if (result.Failed()) {
    Fail(result);
  }
  return result;
}

const char* const* Postgres::Texts(std::span<const PostgresValue> values) {
  texts_.clear();
  for (const PostgresValue& value : values) {
    texts_.push_back(value ? value->c_str() : nullptr);
  }
  return texts_.data();
}

PostgresResult Postgres::Execute(const std::string& sql, std::span<const PostgresValue> values) {
  PostgresResult result(PQexecParams(handle_.get(), sql.c_str(), static_cast<int>(values.size()),
                                     nullptr, Texts(values), nullptr, nullptr, 0));
  if (result.Failed()) {
    Fail(result);
  }
  return result;
}

void Postgres::Prepare(const std::string& statement, const std::string& sql) {
  Send(PQsendPrepare(handle_.get(), statement.c_str(), sql.c_str(), 0, nullptr));
}

void Postgres::Ask(const std::string& statement, std::span<const PostgresValue> values) {
  Send(PQsendQueryPrepared(handle_.get(), statement.c_str(), static_cast<int>(values.size()),
                           Texts(values), nullptr, nullptr, 0));
}

void Postgres::AskOnce(const std::string& sql, std::span<const PostgresValue> values) {
  Send(PQsendQueryParams(handle_.get(), sql.c_str(), static_cast<int>(values.size()), nullptr,
                         Texts(values), nullptr, nullptr, 0));
}

void Postgres::Send(int accepted) {
  if (accepted != 1) {
    Lose(PQerrorMessage(handle_.get()));
  }
}

void Postgres::Sync() {
  Send(PQpipelineSync(handle_.get()));
  Flush();
}

// Answers are read while the rest is being sent: neither side waits for the other to take what it
// has.
void Postgres::Flush() {
  for (int left = PQflush(handle_.get()); left != 0; left = PQflush(handle_.get())) {
    if (left < 0) {
      Lose(PQerrorMessage(handle_.get()));
    }
    Wait(POLLIN | POLLOUT);
  }
}

void Postgres::Wait(short events) {
  pollfd socket{PQsocket(handle_.get()), events, 0};
  int ready = 0;
  do {
    ready = poll(&socket, 1, static_cast<int>(silence_.count()));
  } while (ready < 0 && errno == EINTR);
  if (ready < 0) {
    Lose(std::generic_category().message(errno));
  }
  if (ready == 0) {
    Lose("no answer within " +
         std::to_string(std::chrono::duration_cast<std::chrono::seconds>(silence_).count()) +
         " seconds");
  }
  if ((socket.revents & ~POLLOUT) != 0 && PQconsumeInput(handle_.get()) != 1) {
    Lose(PQerrorMessage(handle_.get()));
  }
}

PostgresResult Postgres::Next() {
  const auto take = [this] {
    while (PQisBusy(handle_.get()) != 0) {
      Wait(POLLIN);
    }
    return PQgetResult(handle_.get());
  };
  PostgresResult result(take());
  if (PQstatus(handle_.get()) != CONNECTION_OK) {
    Lose(PQerrorMessage(handle_.get()));
  }
  if (result.Status() != PGRES_PIPELINE_SYNC) {
    const PostgresResult end(take());  // nothing stands between the answers of two commands
  }
  return result;
}

void Postgres::NextSync() {
  if (Next().Status() != PGRES_PIPELINE_SYNC) {
    Lose("the answers are out of step");
  }
}

void Postgres::Lose(const std::string& why) {
  lost_ = true;
  RaiseDataError(kDatabaseFailed, name_ + ": " + OneLine(why));
}

// What fails without a word of the server's leaves answers on their way, which the next command
// would take for its own.
void Postgres::Fail(const PostgresResult& result, std::string_view what) {
  const std::string message = result.Message();
  refusal_ = result.State();
  lost_ = lost_ || (refusal_.empty() && !result.Skipped());
  RaiseDataError(kDatabaseFailed,
                 name_ + ": " + (what.empty() ? "" : std::string(what) + ": ") +
                     (message.empty() ? OneLine(PQerrorMessage(handle_.get())) : message));
}

}  // namespace kal::company
