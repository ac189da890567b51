// PostgresEngine: a company on a server that speaks PostgreSQL's protocol.
//
// A question to a server costs a round trip, many times what the check costs that asks it. So a
// reading begins with a rehearsal: what will be done is done on what is believed, and every
// question that comes up is noted. All of them travel together with the start of the transaction.
// Where an answer is not what was believed, there may be further questions, and the rehearsal is
// repeated on what is now known. Then the run that counts finds its answers here.
//
// What is believed of a question is the answer that it had the last time; of one not met before,
// the answer that the last question of its shape had; of a new shape, no row. Beliefs never decide:
// the run that counts uses answers of its own transaction, and kept ones of tables whose version,
// read in that transaction, is the one that they came with. Whatever is still missing is asked for
// at once. Where a foreseen question fails, which may never come up, the transaction starts over
// and everything is asked for by itself.
//
// A failure of the reading, the loss of the connection included, is raised by its questions, where
// it gets its trail. The next reading connects anew.

#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "company/Engine.h"
#include "company/QuerySql.h"
#include "company/SelectionUse.h"
#include "company/postgres/Catalog.h"
#include "company/postgres/Postgres.h"
#include "company/postgres/PostgresDialect.h"
#include "platform/RunTimeError.h"

namespace kal::company {

class PostgresEngine final : public Engine {
 public:
  // Raises an error when the server can't be reached or has no company.
  explicit PostgresEngine(std::string uri);
  ~PostgresEngine() override;

  [[nodiscard]] const std::shared_ptr<const RowTable>& Rows(const Query& query) override;
  [[nodiscard]] Variant HighestProtocol(const Variant& year, const Variant& registerType,
                                        const Variant& section) override;
  [[nodiscard]] std::int32_t Closings(const Variant& entry) override;
  void BeginReading(const Rehearsal& rehearsal) override;
  [[nodiscard]] bool WantsRehearsal() const override { return true; }
  void EndReading() noexcept override;
  [[nodiscard]] std::string Database() const override { return database_; }
  [[nodiscard]] bool HasTable(std::string_view name) override;
  void MakeTemporaryTable(const std::string& name, const RowTable& rows) override;
  void DropTemporaryTable(const std::string& name) noexcept override;
  [[nodiscard]] const Counters& Counted() const override { return counted_; }
  void Record(std::vector<std::string>* target) override { recorded_ = target; }

 private:
  class Alone;

  // An answer; current while its reading lasts, and longer where its tables have versions.
  struct Kept {
    std::shared_ptr<const RowTable> rows;  // nothing before the first answer
    std::uint64_t reading = 0;             // in which it came
    std::uint64_t stamp = 0;               // of the versions with which it came
    std::uint64_t notedIn = 0;             // the rehearsal that noted the question last
  };

  // A selection as the server knows it.
  struct Statement {
    std::string sql;
    std::vector<ResultColumn> columns;
    std::vector<ComparedValue> values;
    std::vector<const SchemaTable*> tables;
    std::string name;  // on the server; "" for one that is sent whole with each use
    std::shared_ptr<const RowLayout> layout;
    std::shared_ptr<const RowTable> none;    // an answer without rows
    std::shared_ptr<const RowTable> latest;  // answer; that one before the first
    bool isPrepared = false;
    // What tells whether it has rows at all, asked first.
    std::optional<GreatestValues> greatest;
    Statement* greatestStatement = nullptr;
    ByText<Kept> answers;  // by the values asked with
  };

  // A command on its way, whose answer will come.
  struct Sent {
    Statement* statement;
    bool preparedFirst;  // with an answer of its own in front
  };

  // A question that came up in a rehearsal.
  struct Noted {
    Statement* statement;
    Kept* kept;
    std::vector<PostgresValue> parameters;
    std::shared_ptr<const RowTable> believed;
  };

  // The rows of the host's own table, which travel with the questions.
  struct Temporary {
    std::string name;
    std::vector<TableColumn> columns;
    std::vector<PostgresValue> arrays;  // by column
  };

  // What a table's version was the last time, and when it was last seen to be another one.
  struct Version {
    std::string text;
    std::uint64_t changedAt = 0;
    bool isKnown = false;  // in this reading
  };

  // All that ends with a connection.
  struct Session {
    explicit Session(const std::string& uri);

    Postgres connection;
    Catalog catalog;
    Statement begin;
    Statement versions;
    Statement end;
    std::unordered_map<Use, Statement, UseHash, SameUse> selections;
    ByText<Statement> texts;         // of everything else, by its SQL
    std::vector<Version> versionOf;  // as Tables()
    std::uint64_t stamp = 0;         // raised whenever a version is another one
    std::deque<Sent> sent;           // in order
    std::size_t ends = 0;            // of transactions, whose answers nobody has read yet
    std::size_t named = 0;
  };

  void Connect();
  void Lose(const RunTimeError& why);
  void Rehearse(const Rehearsal& rehearsal);
  // Begins the transaction together with all that was noted.
  void StartTransaction();
  void AskNoted();
  void StartOver();
  void Send(Statement& statement, std::span<const PostgresValue> parameters);
  void Leave();
  [[nodiscard]] PostgresResult Receive();
  void ReceiveStart();
  // False where one of them failed.
  [[nodiscard]] bool ReceiveNoted();
  void ReadVersions(const PostgresResult& result);
  void Keep(Statement& statement, Kept& kept, std::shared_ptr<const RowTable> rows);
  [[nodiscard]] std::shared_ptr<const RowTable> ToRows(const Statement& statement,
                                                       const PostgresResult& result) const;

  [[nodiscard]] Statement& StatementOf(const Query& query, std::vector<PostgresValue>& tables);
  [[nodiscard]] Statement& Fixed(std::string_view sql, std::string_view table,
                                 std::string_view column, std::size_t values);
  Statement& Add(Statement statement);
  void RequireReading(std::string_view table) const;
  [[nodiscard]] TableShape ShapeOf(std::string_view table, std::size_t before,
                                   std::vector<PostgresValue>& parameters, bool& isForeign);
  [[nodiscard]] const Temporary* FindTemporary(std::string_view name) const;
  [[nodiscard]] std::shared_ptr<const RowTable> ForeignColumns(std::string_view table);
  [[nodiscard]] std::shared_ptr<const RowTable> Answer(Statement& statement,
                                                       std::span<const Variant> values,
                                                       std::span<const PostgresValue> tables = {});
  // Whether a row can meet one of the alternatives.
  [[nodiscard]] bool CanBeMet(const Statement& statement, std::span<const Variant> values);
  [[nodiscard]] std::shared_ptr<const RowTable> AskAlone(
      Statement& statement, Kept& kept, const std::vector<PostgresValue>& parameters);
  [[nodiscard]] bool IsCurrent(const Statement& statement, const Kept& kept) const;
  void ForgetAnswers();
  [[nodiscard]] std::string About(const Statement& statement) const;

  std::string uri_;
  std::string database_;  // of the first connection
  std::unique_ptr<Session> session_;
  std::optional<RunTimeError> failure_;  // of this reading, or of the last attempt to connect
  std::chrono::steady_clock::time_point nextAttempt_;
  bool isReading_ = false;
  bool isRehearsing_ = false;
  bool isOpen_ = false;  // a transaction
  bool isSurprised_ = false;
  std::uint64_t reading_ = 0;
  std::uint64_t rehearsal_ = 0;
  std::vector<Noted> noted_;
  std::vector<std::pair<const Statement*, const Kept*>> trusted_;  // before versions were read
  std::vector<Temporary> temporary_;
  std::size_t keptRows_ = 0;
  std::string key_;                         // of what is being looked up; kept for its memory
  std::shared_ptr<const RowTable> answer_;  // the last one
  Counters counted_;
  std::vector<std::string>* recorded_ = nullptr;
};

}  // namespace kal::company
