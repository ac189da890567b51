// kal_bench: what a check costs, held against the floor of its own questions.
//
// First the usual benchmarks, then one table of ratios. The two sides of a ratio run in turns in
// this one process, on one thread, and each is the median of its runs: trust the ratios, not the
// times.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <iostream>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "bench/Allocations.h"
#include "bench/Batch.h"
#include "bench/Entries.h"
#include "bench/Floor.h"
#include "bench/LargeCompany.h"
#include "bench/Measure.h"
#include "company/Company.h"
#include "host/ExplainRecorder.h"
#include "siblings/Components.h"
#include "siblings/WatchedSiblings.h"

namespace kal::bench {
namespace {

using company::Company;

constexpr int kNextProtocol = kSavedEntries + 1;
constexpr const char* kLastDay = "2024-12-31";

LargeCompany& Books() {
  static LargeCompany books;
  return books;
}

// One checked entry as the host runs it, without reading its text.
double CheckMicroseconds(Company& company, const Purchase& purchase) {
  const Purchase::Sets sets = purchase.Fresh();
  return Microseconds([&] {
    const Company::Reading books(company);
    Check(company.Siblings(), sets);
  });
}

void CheckOnce(Company& company, const Purchase& purchase) {
  const Company::Reading books(company);
  Check(company.Siblings(), purchase.Fresh());
}

// The statements that one check of the purchase runs, with their values.
std::vector<std::string> Recorded(Company& company, const Purchase& purchase) {
  std::vector<std::string> statements;
  company.Record(&statements);
  CheckOnce(company, purchase);
  company.Record(nullptr);
  return statements;
}

// Those that read entries: a check's own questions, whose answers are not kept. It leaves out the
// one about protocols where it knows that the entry comes behind all others; the floor does not.
std::vector<std::string> AboutEntries(std::vector<std::string> statements) {
  std::erase_if(statements, [](const std::string& sql) {
    return sql.find("FROM \"COGPrimeNoteTeste\"") == std::string::npos;
  });
  return statements;
}

// What was kept of the file has to be read again.
void ChangeFile() { Books().Change(); }

// The counts of one check after warm-up.
std::string Counts(Company& company, const Purchase& purchase) {
  CheckOnce(company, purchase);
  const Purchase::Sets sets = purchase.Fresh();
  const company::Counters before = company.Counted();
  const std::uint64_t allocations = Allocations();
  {
    const Company::Reading books(company);
    Check(company.Siblings(), sets);
  }
  const std::uint64_t allocated = Allocations() - allocations;
  const company::Counters after = company.Counted();
  return std::to_string(after.queries - before.queries) + " queries, " +
         std::to_string(after.prepared - before.prepared) + " prepared, " +
         std::to_string(after.transactions - before.transactions) + " transaction, " +
         std::to_string(allocated) + " allocations";
}

void SmallPurchase() {
  constexpr int kRounds = 2001;
  const Purchase purchase{4, kNextProtocol, kLastDay};
  Company company(Books().Path());
  CheckOnce(company, purchase);
  ChangeFile();
  const std::vector<std::string> withVat = Recorded(company, purchase);
  CheckOnce(company, purchase);
  const std::vector<std::string> stillRun = Recorded(company, purchase);

  const auto ours = [&] { return CheckMicroseconds(company, purchase); };
  const auto against = [&](const std::string& name, const std::vector<std::string>& statements,
                           const std::string& remark) {
    Floor floor(Books().Path(), statements);
    const Pair pair =
        Interleaved(kRounds, ours, [&] { return Microseconds([&] { floor.Run(); }); });
    Print({name, pair.ours, pair.floor, remark});
  };
  against("4-line purchase, nothing changed: own queries", AboutEntries(withVat),
          "goal 1.5; " + Counts(company, purchase));
  against("  the same: those of them that it runs", stillRun, "");

  Floor fullFloor(Books().Path(), withVat);
  const Pair full =
      Interleaved(kRounds, ours, [&] { return Microseconds([&] { fullFloor.Run(); }); });
  Print({"  the same: floor that reads the VAT table", full.ours, full.floor, "goal 0.30"});

  constexpr int kFewRounds = 301;
  const auto afterChange = [&] {
    ChangeFile();
    return CheckMicroseconds(company, purchase);
  };
  const Pair changed = Interleaved(kFewRounds, afterChange, [&] {
    ChangeFile();
    return Microseconds([&] { fullFloor.Run(); });
  });
  Print({"4-line purchase, file changed before each check", changed.ours, changed.floor,
         "goal 1.15"});
}

// What it costs to be watched.
void ObservedPurchase() {
  constexpr int kRounds = 2001;
  const Purchase purchase{4, kNextProtocol, kLastDay};
  Company company(Books().Path());
  CheckOnce(company, purchase);
  const Pair steps = Interleaved(
      kRounds,
      [&] {
        const Purchase::Sets sets = purchase.Fresh();
        return Microseconds([&] {
          const Company::Reading books(company);
          host::ExplainRecorder recorder;
          WatchedSiblings siblings(company.Siblings(), recorder);
          Check(siblings, sets, &recorder);
        });
      },
      [&] { return CheckMicroseconds(company, purchase); });
  Print({"4-line purchase, every step observed: unobserved", steps.ours, steps.floor, ""});
}

void LargePurchase() {
  constexpr int kLines = 10000;
  constexpr int kRounds = 31;
  const Purchase purchase{kLines, kNextProtocol, kLastDay};
  Company company(Books().Path());
  CheckOnce(company, purchase);
  std::vector<std::string> lookups;
  for (int i = 0; i < kLines; ++i) {
    lookups.push_back("SELECT CodConto FROM STDPianoDeiConti WHERE CodConto = '" +
                      std::string(6 - std::to_string(i % 300 + 1).size(), '0') +
                      std::to_string(i % 300 + 1) + "' AND TipoConto = 0");
  }
  Floor floor(Books().Path(), lookups);
  const Pair pair = Interleaved(
      kRounds, [&] { return CheckMicroseconds(company, purchase); },
      [&] { return Microseconds([&] { floor.Run(); }); });
  Print(
      {"10,000 lines and installments: as many chart lookups", pair.ours, pair.floor, "goal 0.3"});
}

void Growth() {
  Company company(Books().Path());
  double smallest = 0;
  for (const int lines : {100, 1000, 10000, 100000}) {
    const Purchase purchase{lines, kNextProtocol, kLastDay};
    CheckOnce(company, purchase);
    std::vector<double> times;
    for (int round = 0; round < (lines > 10000 ? 5 : 15); ++round) {
      times.push_back(CheckMicroseconds(company, purchase));
    }
    const double time = Median(times);
    if (lines == 1000) {
      smallest = time;
    }
    std::string remark;
    if (lines > 1000) {
      remark = "exponent from 1,000: " +
               std::to_string(std::log(time / smallest) / std::log(lines / 1000.0)).substr(0, 4) +
               ", goal 1.1";
    }
    Print({std::to_string(lines) + " lines and installments", time, std::nullopt, remark});
  }
}

// The protocol-order question, as the check asks it while the end of the books is not known.
constexpr Selection kProtocolOrder =
    Selection()
        .OnlyFirst()
        .Select("Protocollo, DataRegistrazione")
        .From("COGPrimeNoteTeste")
        .Where("IdPrimaNota", CompareWith::NotEqual)
        .WhereEqual("Year(DataRegistrazione)")
        .WhereEqual("TipoRegIva")
        .WhereEqual("SezionaleIva")
        .WhereEqual("IsNull(Provvisoria,0)")
        .WhereAnyOf(
            {{{"Protocollo", CompareWith::Greater}, {"DataRegistrazione", CompareWith::Less}},
             {{"Protocollo", CompareWith::Less}, {"DataRegistrazione", CompareWith::Greater}},
             {{"Protocollo", CompareWith::Equal}}});

void ProtocolOrder(const std::string& name, int protocol, const std::string& date,
                   const std::string& remark) {
  constexpr int kRounds = 101;
  constexpr std::size_t kTimes = 20;  // in one transaction, which costs more than the question
  Company company(Books().Path());
  const auto ask = [&] {
    const Variant day = *Date::FromIso(date);
    (void)Open<kProtocolOrder>(company.Siblings(), protocol, "2024", 1, 1, 0, protocol, day,
                               protocol, day, protocol);
  };
  ask();
  std::vector<std::string> statements;
  company.Record(&statements);
  ask();
  company.Record(nullptr);
  Floor question(Books().Path(), std::vector(kTimes, statements.back()));
  Floor point(Books().Path(),
              std::vector<std::string>(
                  kTimes, "SELECT CodConto FROM STDPianoDeiConti WHERE CodConto = '000001'"));
  const auto each = [](Floor& floor) { return Microseconds([&] { floor.Run(); }) / kTimes; };
  const Pair pair = Interleaved(
      kRounds, [&] { return each(question); }, [&] { return each(point); });
  Print({name, pair.ours, pair.floor, remark});
}

void Table() {
  std::printf("\n%-52s %10s %10s %8s\n", "case", "ours (us)", "floor", "ratio");
  SmallPurchase();
  ObservedPurchase();
  LargePurchase();
  Growth();
  ProtocolOrder("protocol order, appending: one point query", kNextProtocol, kLastDay,
                "goals 5 us, 4 times");
  ProtocolOrder("protocol order, middle of the year: one point query", kSavedEntries / 2,
                "2024-07-01", "goal 1,000 us");
}

void SaveCheck(benchmark::State& state) {
  const Purchase purchase{static_cast<int>(state.range(0)), kNextProtocol, kLastDay};
  Company company(Books().Path());
  for (auto _ : state) {
    state.PauseTiming();
    const Purchase::Sets sets = purchase.Fresh();
    state.ResumeTiming();
    const Company::Reading books(company);
    benchmark::DoNotOptimize(Check(company.Siblings(), sets));
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(SaveCheck)->Arg(4)->Arg(100)->Arg(1000)->Arg(10000);

// The same record sets again and again: for a profiler, which sees nothing but the check.
void SaveCheckAgain(benchmark::State& state) {
  const Purchase purchase{static_cast<int>(state.range(0)), kNextProtocol, kLastDay};
  const Purchase::Sets sets = purchase.Fresh();
  Company company(Books().Path());
  for (auto _ : state) {
    const Company::Reading books(company);
    benchmark::DoNotOptimize(Check(company.Siblings(), sets));
  }
}
BENCHMARK(SaveCheckAgain)->Arg(4)->Arg(10000);

// The same with the file changed in between: for a profiler that looks at the check alone.
void SaveCheckAfterChange(benchmark::State& state) {
  const Purchase purchase{static_cast<int>(state.range(0)), kNextProtocol, kLastDay};
  const Purchase::Sets sets = purchase.Fresh();
  Company company(Books().Path());
  for (auto _ : state) {
    state.PauseTiming();
    ChangeFile();
    state.ResumeTiming();
    const Company::Reading books(company);
    benchmark::DoNotOptimize(Check(company.Siblings(), sets));
  }
}
BENCHMARK(SaveCheckAfterChange)->Arg(4);

}  // namespace

void BatchFirst() { Batch(Books().Path()); }

}  // namespace kal::bench

// Everything without arguments, the batch alone with --batch, the table alone with --table, the
// benchmarks alone as any other arguments choose.
int main(int argc, char** argv) {
  kal::company::SpareMemoryAccounts();  // as the host does
  if (argc == 2 && std::string_view(argv[1]) == "--table") {
    kal::bench::Table();
    return 0;
  }
  if (argc == 2 && std::string_view(argv[1]) == "--batch") {
    kal::bench::BatchFirst();
    return 0;
  }
  const bool withTable = argc == 1;
  benchmark::Initialize(&argc, argv);
  if (withTable) {
    // First: a program that this one starts is charged with the memory that this one holds.
    kal::bench::BatchFirst();
  }
  benchmark::RunSpecifiedBenchmarks();
  if (withTable) {
    kal::bench::Table();
  }
}
