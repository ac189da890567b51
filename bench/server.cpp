// kal_server_bench: what a check costs on a server, held against the same questions asked one by
// one.
//
// The server is one of its own, on a socket of this machine; behind the proxy everything takes a
// millisecond longer each way. The two sides of a ratio run in turns: trust the ratios, not the
// times. Arguments are the files of sample entries.

#include "tests/server/Server.h"

#include <libpq-fe.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iostream>
#include <random>
#include <span>
#include <sstream>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "bench/Entries.h"
#include "bench/LargeCompany.h"
#include "bench/Measure.h"
#include "company/Company.h"
#include "company/postgres/ServerCompany.h"
#include "host/Runner.h"
#include "host/Workers.h"
#include "tests/server/Proxy.h"

namespace kal::bench {
namespace {

using company::Company;
using company::Counters;
using host::Asked;
using std::chrono::microseconds;

constexpr const char* kLastDay = "2024-12-31";

// A large company with so many saved entries.
std::string LargeOnServer(int savedEntries) {
  const test::Server& server = test::Server::Get();
  std::string database = server.NewDatabase();
  const LargeCompany file(0);
  (void)company::CopyToServer(file.Path(), server.Uri(database));
  const std::string count = std::to_string(savedEntries);
  (void)server.Execute(
      database,
      "INSERT INTO COGPrimeNoteTeste (IdPrimaNota, IdAnagrafica, Protocollo, TipoDocumento, "
      "TipoRegIva, SezionaleIva, DataRegistrazione, DataDocumento, DataCompetenza, DataIva, "
      "NumeroDocumento, CodCausale, Provvisoria, TotDocumentoVB) SELECT i, i % 1000 + 1, i, 1, 1, "
      "1, d, d, d, d, 'N' || i, 'FTA', false, 122 FROM generate_series(1, " +
          count + ") AS i, LATERAL (SELECT date '2024-01-01' + (i::bigint * 365 / " + count +
          ")::integer AS d) AS its");
  (void)server.Execute(
      database, "INSERT INTO COGPrimeNoteRCont SELECT i * 25, i FROM generate_series(1, " + count +
                    " / 25) AS i");
  (void)server.Execute(database,
                       "INSERT INTO COGScadenze (IdScadenza, NrRata, TipoRata, ImportoAvere, "
                       "ImportoAvereVB) SELECT i, 1, 0, 122, 122 FROM generate_series(1, " +
                           count + " / 25) AS i");
  (void)server.Execute(database, "VACUUM ANALYZE");
  return database;
}

// The same questions one by one, each prepared once, in one transaction for each run.
class OneByOne {
 public:
  OneByOne(const std::string& uri, const std::vector<std::string>& questions)
      : connection_(PQconnectdb(uri.c_str())), count_(questions.size()) {
    for (std::size_t i = 0; i < questions.size(); ++i) {
      Require(PQprepare(connection_, Name(i).c_str(), questions[i].c_str(), 0, nullptr));
    }
  }
  OneByOne(const OneByOne&) = delete;
  OneByOne& operator=(const OneByOne&) = delete;
  ~OneByOne() { PQfinish(connection_); }

  void Run() {
    Require(PQexec(connection_, "BEGIN ISOLATION LEVEL REPEATABLE READ READ ONLY"));
    for (std::size_t i = 0; i < count_; ++i) {
      Require(PQexecPrepared(connection_, Name(i).c_str(), 0, nullptr, nullptr, nullptr, 0));
    }
    Require(PQexec(connection_, "COMMIT"));
  }

 private:
  static std::string Name(std::size_t place) { return "q" + std::to_string(place); }
  void Require(PGresult* result) {
    const ExecStatusType status = PQresultStatus(result);
    PQclear(result);
    if (status != PGRES_TUPLES_OK && status != PGRES_COMMAND_OK) {
      throw std::runtime_error(PQerrorMessage(connection_));
    }
  }

  PGconn* connection_;
  std::size_t count_;
};

// So many purchases behind the saved ones, checked in one reading as the host does with what it has
// read in one turn, without reading their texts.
void CheckTurn(Company& company, int saved, int turn, const char* day = kLastDay) {
  const auto run = [&] {
    for (int i = 1; i <= turn; ++i) {
      (void)Check(company.Siblings(), Purchase{4, saved + i, day}.Fresh());
    }
  };
  const Company::Reading books(company, run);
  run();
}

std::vector<std::string> Questions(const std::string& uri, const Purchase& purchase) {
  Company company(uri);
  std::vector<std::string> questions;
  company.Record(&questions);
  const Company::Reading books(company);
  (void)Check(company.Siblings(), purchase.Fresh());
  return questions;
}

std::string Counted(const Counters& before, const Counters& after, std::size_t entries) {
  const auto mean = [entries](std::uint64_t from, std::uint64_t to) {
    return std::to_string(static_cast<double>(to - from) / static_cast<double>(entries))
        .substr(0, 5);
  };
  return mean(before.roundTrips, after.roundTrips) + " round trips, " +
         mean(before.queries, after.queries) + " questions, " +
         mean(before.unforeseen, after.unforeseen) + " not foreseen";
}

// Microseconds an entry, by itself and in turns.
void AgainstOneByOne(const std::string& name, const std::string& uri, int saved, int rounds) {
  constexpr int kTurn = 16;
  OneByOne other(uri, Questions(uri, Purchase{4, saved + 1, kLastDay}));
  for (const int turn : {1, kTurn}) {
    Company company(uri);
    CheckTurn(company, saved, turn);
    const Counters before = company.Counted();
    const Pair pair = Interleaved(
        rounds, [&] { return Microseconds([&] { CheckTurn(company, saved, turn); }) / turn; },
        [&] { return Microseconds([&] { other.Run(); }); });
    Print({name + ", " + std::to_string(turn) + " at a time", pair.ours, pair.floor,
           std::to_string(pair.floor / pair.ours).substr(0, 5) + " times; " +
               Counted(before, company.Counted(),
                       static_cast<std::size_t>(rounds) * static_cast<std::size_t>(turn))});
  }
}

// An entry behind all others, and one put back in their middle, which looks at every day.
void SavedEntries(int few, int many) {
  constexpr int kRounds = 1001;
  const test::Server& server = test::Server::Get();
  const auto large = [&server](int saved) {
    const std::string database = LargeOnServer(saved);
    (void)server.Execute(
        database, "DELETE FROM COGPrimeNoteTeste WHERE Protocollo = " + std::to_string(saved / 2));
    return server.Uri(database);
  };
  Company fewSaved(large(few));
  Company manySaved(large(many));
  const auto time = [](Company& company, int protocol, const char* day) {
    return [&company, protocol, day] {
      return Microseconds([&] { CheckTurn(company, protocol - 1, 1, day); });
    };
  };
  const Pair atEnd =
      Interleaved(kRounds, time(manySaved, many + 1, kLastDay), time(fewSaved, few + 1, kLastDay));
  Print({std::to_string(many) + " saved entries against " + std::to_string(few) + ", appending",
         atEnd.ours, atEnd.floor, "goal 1.3"});
  constexpr const char* kMiddle = "2024-07-01";
  const Pair inside = Interleaved(kRounds / 5, time(manySaved, many / 2, kMiddle),
                                  time(fewSaved, few / 2, kMiddle));
  Print({"  the same in the middle of the year", inside.ours, inside.floor, "goal 1.3"});
}

std::vector<Asked> Samples(std::span<char*> files) {
  std::vector<Asked> entries;
  for (const char* file : files) {
    std::ifstream in(file);
    std::ostringstream text;
    text << in.rdbuf();
    entries.push_back({.entry = {text.str(), {file}}, .bytesRead = 0});
  }
  return entries;
}

// Entries checked so many at a time in one reading.
void CheckTurns(Company& company, std::span<const Asked> entries, std::size_t turn) {
  while (!entries.empty()) {
    const std::span<const Asked> these = entries.first(std::min(turn, entries.size()));
    host::EntryRehearsal rehearsal(company, these);
    const Company::Reading books(company, std::ref(rehearsal));
    for (const Asked& asked : these) {
      (void)host::CheckEntry(company, asked.entry);
    }
    entries = entries.subspan(these.size());
  }
}

void RandomOrder(std::span<char*> files) {
  constexpr std::size_t kEntries = 10000;
  const std::vector<Asked> samples = Samples(files);
  std::mt19937 random(1);  // NOLINT: the same order in every run
  std::vector<Asked> entries;
  for (std::size_t i = 0; i < kEntries; ++i) {
    entries.push_back(samples[random() % samples.size()]);
  }
  const test::Server& server = test::Server::Get();
  const std::string uri = server.Uri(server.NewDatabase());
  (void)company::CreateServerCompany(uri, true);
  for (const std::size_t turn : {std::size_t{1}, std::size_t{16}}) {
    Company company(uri);
    const Counters before = company.Counted();
    const double time = Microseconds([&] { CheckTurns(company, entries, turn); });
    Print({"all samples in random order, " + std::to_string(turn) + " at a time",
           time / static_cast<double>(kEntries), std::nullopt,
           Counted(before, company.Counted(), kEntries) + (turn == 1 ? ", goal 1.3" : "")});
  }
}

// The host over a file of purchases, entries a second.
void Host(const std::string& name, const std::string& uri, int saved, int entries) {
  const std::filesystem::path file = std::filesystem::temp_directory_path() /
                                     ("kalcogcheck-server-bench-" + std::to_string(getpid()));
  {
    std::ofstream out(file);
    for (int i = 0; i < entries; ++i) {
      out << Purchase{4, saved + 1 + i, kLastDay}.Json() << '\n';
    }
  }
  for (const char* jobs : {"1", "2"}) {
    const std::string command = std::string(KAL_HOST_PROGRAM) + " check --json --jobs " + jobs +
                                " --company '" + uri + "' " + file.string() + " > /dev/null";
    int status = 0;
    const double time = Microseconds([&] { status = std::system(command.c_str()); });
    char line[200];
    std::snprintf(line, sizeof line, "%-52s %10.0f entries a second%s\n",
                  (name + ", " + jobs + " connection" + (*jobs == '1' ? "" : "s")).c_str(),
                  entries / time * 1e6, status == 0 ? "" : " (it failed)");
    std::cout << line << std::flush;
  }
  std::filesystem::remove(file);
}

void Run(std::span<char*> files) {
  constexpr int kFew = 10000;
  constexpr int kMany = 1000000;
  std::printf("%-52s %10s %10s %8s\n", "case", "ours (us)", "other", "ratio");
  const test::Server& server = test::Server::Get();
  const std::string database = LargeOnServer(kSavedEntries);
  const std::string uri = server.Uri(database);
  AgainstOneByOne("local socket: one by one", uri, kSavedEntries, 1001);
  test::Proxy proxy;
  proxy.Delay(microseconds(1000));
  const std::string far = server.Uri(database, "postgres", proxy.Folder());
  AgainstOneByOne("2 ms away: one by one", far, kSavedEntries, 101);
  Host("host, local socket", uri, kSavedEntries, 20000);
  Host("host, 2 ms away", far, kSavedEntries, 20000);
  RandomOrder(files);
  SavedEntries(kFew, kMany);
}

}  // namespace
}  // namespace kal::bench

int main(int argc, char** argv) {
  try {
    kal::bench::Run({argv + 1, static_cast<std::size_t>(argc - 1)});
  } catch (const std::exception& error) {
    std::cerr << error.what() << '\n';
    return 1;
  }
}
