// Postgres: connections to a server that speaks PostgreSQL's protocol, through libpq.
//
// Failures are RunTimeErrors with the source "DataAccess" that name host, port and database, and
// never a password. A connection that was lost stays lost: whoever needs another makes one.

#pragma once

#include <libpq-fe.h>

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace kal::company {

// What may be shown of a connection URI: host, port and database.
[[nodiscard]] std::string ShownUri(const std::string& uri);

// One value of a row, or one handed over; nothing is Null. Texts are UTF-8.
using PostgresValue = std::optional<std::string>;

// What the server said to one command.
class PostgresResult {
 public:
  explicit PostgresResult(PGresult* result) : result_(result) {}

  [[nodiscard]] ExecStatusType Status() const { return PQresultStatus(result_.get()); }
  [[nodiscard]] bool Failed() const {
    return Status() != PGRES_TUPLES_OK && Status() != PGRES_COMMAND_OK;
  }
  // Not run, because a command before it in the same pipeline failed.
  [[nodiscard]] bool Skipped() const { return Status() == PGRES_PIPELINE_ABORTED; }
  // The server's own words, "" where there are none, and its five letters for the kind of failure.
  [[nodiscard]] std::string Message() const;
  [[nodiscard]] std::string State() const;

  [[nodiscard]] std::size_t Rows() const {
    return static_cast<std::size_t>(PQntuples(result_.get()));
  }
  [[nodiscard]] bool IsNull(std::size_t row, std::size_t column) const {
    return PQgetisnull(result_.get(), static_cast<int>(row), static_cast<int>(column)) != 0;
  }
  // "" where it is Null; good as long as the result.
  [[nodiscard]] std::string_view Text(std::size_t row, std::size_t column) const {
    return {PQgetvalue(result_.get(), static_cast<int>(row), static_cast<int>(column)),
            static_cast<std::size_t>(
                PQgetlength(result_.get(), static_cast<int>(row), static_cast<int>(column)))};
  }

 private:
  struct Clear {
    void operator()(PGresult* result) const { PQclear(result); }
  };
  std::unique_ptr<PGresult, Clear> result_;
};

// A connection for one thread.
class Postgres {
 public:
  enum class Access : std::uint8_t {
    Read,  // read-only, with limits of time; commands travel together
    Make,  // one command after the other
  };

  Postgres(const std::string& uri, Access access);
  Postgres(const Postgres&) = delete;
  Postgres& operator=(const Postgres&) = delete;
  ~Postgres() = default;

  // Host, port and database, as far as they are known.
  [[nodiscard]] const std::string& Name() const { return name_; }
  [[nodiscard]] PGconn* Handle() const { return handle_.get(); }

  // Access::Make. Any number of commands, in one round trip; the last one's answer.
  PostgresResult Execute(const std::string& sql);
  PostgresResult Execute(const std::string& sql, std::span<const PostgresValue> values);

  // Access::Read. Commands are sent in the order of the calls, each statement with a name of this
  // connection; their answers come in the same order behind Sync, one for each Prepare and Ask.
  // Where one fails the rest up to Sync is skipped.
  void Prepare(const std::string& statement, const std::string& sql);
  void Ask(const std::string& statement, std::span<const PostgresValue> values);
  // For a command of one use, or one that can't be prepared.
  void AskOnce(const std::string& sql, std::span<const PostgresValue> values);
  // The end of what travels together; it leaves at once.
  void Sync();
  // Raises an error only where the connection is lost.
  [[nodiscard]] PostgresResult Next();
  // Behind the answers; in the order of the Syncs.
  void NextSync();

  [[nodiscard]] bool IsLost() const { return lost_; }
  // Raises what the server says of one command; where it says nothing the connection is lost.
  [[noreturn]] void Fail(const PostgresResult& result, std::string_view what = {});
  // The server's five letters for what was raised last; "" where it said nothing.
  [[nodiscard]] const std::string& Refusal() const { return refusal_; }

 private:
  void SetUp(Access access);
  [[nodiscard]] const char* const* Texts(std::span<const PostgresValue> values);
  void Send(int accepted);
  void Flush();
  void Wait(short events);
  [[noreturn]] void Lose(const std::string& why);

  struct Finish {
    void operator()(PGconn* handle) const { PQfinish(handle); }
  };

  std::string name_;
  std::unique_ptr<PGconn, Finish> handle_;
  std::chrono::milliseconds silence_{};  // longer than that no answer takes
  bool lost_ = false;
  std::string refusal_;
  std::vector<const char*> texts_;  // of the values on their way; kept for its memory
};

}  // namespace kal::company
