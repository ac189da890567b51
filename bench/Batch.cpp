#include "bench/Batch.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <memory>
#include <optional>
#include <random>
#include <stdexcept>
#include <thread>
#include <utility>
#include <vector>

#include "bench/BatchProfile.h"
#include "bench/Entries.h"
#include "bench/LargeCompany.h"

namespace kal::bench {
namespace {

constexpr int kEntries = 100000;

// A file that goes when the object does.
class Scratch {
 public:
  explicit Scratch(const std::string& ending)
      : path_(std::filesystem::temp_directory_path() /
              ("kalcogcheck-bench-" + std::to_string(std::random_device{}()) + ending)) {}
  Scratch(const Scratch&) = delete;
  Scratch& operator=(const Scratch&) = delete;
  ~Scratch() {
    std::error_code ignored;
    std::filesystem::remove(path_, ignored);
  }

  [[nodiscard]] std::string Path() const { return path_.string(); }

 private:
  std::filesystem::path path_;
};

struct Process {
  double seconds = 0;
  double megabytes = 0;  // the most memory that it held
  int status = 0;
};

using Command = std::vector<std::string>;

// Begins a program with its output thrown away; its process, which ends with 127 when the program
// can't be found.
pid_t Begin(Command& arguments) {
  std::vector<char*> argv;
  for (std::string& argument : arguments) {
    argv.push_back(argument.data());
  }
  argv.push_back(nullptr);
  const pid_t child = fork();
  if (child == 0) {
    const int nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
    dup2(nowhere, STDOUT_FILENO);
    execvp(argv.front(), argv.data());
    _exit(127);
  }
  return child;
}

// Runs programs side by side, until all have ended; nothing when one can't be found.
std::optional<Process> Measure(std::vector<Command>& commands) {
  const auto start = std::chrono::steady_clock::now();
  std::vector<pid_t> children;
  for (Command& command : commands) {
    children.push_back(Begin(command));
  }
  Process all;
  for (const pid_t child : children) {
    int status = 0;
    rusage usage{};
    if (child < 0 || wait4(child, &status, 0, &usage) != child) {
      throw std::runtime_error("a program could not be run");
    }
    all.megabytes += static_cast<double>(usage.ru_maxrss) / 1024;
    all.status = std::max(all.status, WIFEXITED(status) ? WEXITSTATUS(status) : 128);
  }
  if (all.status == 127) {
    return std::nullopt;
  }
  all.seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  return all;
}

// What one program, or some side by side, took over all rounds.
class Case {
 public:
  Case(std::string name, const std::string& input, std::vector<Command> commands)
      : name_(std::move(name)),
        megabytes_(static_cast<double>(std::filesystem::file_size(input)) / 1e6),
        commands_(std::move(commands)) {}

  void Run() {
    if (const std::optional<Process> process = Measure(commands_)) {
      seconds_.push_back(process->seconds);
      last_ = *process;
    }
  }

  // The median; nothing when the program can't be found.
  [[nodiscard]] std::optional<double> Seconds() {
    if (seconds_.empty()) {
      return std::nullopt;
    }
    const auto middle = seconds_.begin() + static_cast<std::ptrdiff_t>(seconds_.size() / 2);
    std::nth_element(seconds_.begin(), middle, seconds_.end());
    return *middle;
  }

  void Print() {
    const std::optional<double> seconds = Seconds();
    if (!seconds) {
      std::printf("%-42s not installed\n", name_.c_str());
      return;
    }
    std::printf("%-42s %7.2f s %9.0f a second %7.1f MB a second %5.0f MiB, status %d\n",
                name_.c_str(), *seconds, kEntries / *seconds, megabytes_ / *seconds,
                last_.megabytes, last_.status);
  }

 private:
  std::string name_;
  double megabytes_;
  std::vector<Command> commands_;
  std::vector<double> seconds_;
  Process last_;
};

void PrintRatio(const std::string& name, Case& ours, Case& other, const char* goal) {
  if (ours.Seconds() && other.Seconds()) {
    std::printf("%-42s %7.2f times%s\n", name.c_str(), *other.Seconds() / *ours.Seconds(), goal);
  }
}

// The entries behind that one, up to the last.
void WriteEntries(const std::string& path, int behind, int last) {
  std::ofstream file(path);
  for (int i = behind + 1; i <= last; ++i) {
    file << Purchase{4, kSavedEntries + i, "2024-12-31"}.Json() << '\n';
  }
}

// The same purchases as transactions of a plain-text ledger.
void WriteLedger(const std::string& path) {
  std::ofstream file(path);
  for (int account = 1; account <= 300; ++account) {
    file << "account A" << account << '\n';
  }
  file << "commodity EUR\n";
  for (int i = 1; i <= kEntries; ++i) {
    file << "2024/12/31 X" << i << '\n';
    file << "    A" << i % 300 + 1 << "    -300.00 EUR\n";
    for (int line = 1; line <= 3; ++line) {
      file << "    A" << (i + line) % 300 + 1 << "    100.00 EUR\n";
    }
  }
}

}  // namespace

void Batch(const std::string& companyPath) {
  constexpr int kRounds = 5;
  const Scratch entries(".jsonl");
  WriteEntries(entries.Path(), 0, kEntries);
  const Scratch transactions(".ledger");
  WriteLedger(transactions.Path());
  const int cores = static_cast<int>(std::thread::hardware_concurrency());
  const std::string allCores = std::to_string(cores) + " cores";
  const auto check = [&](int jobs, const std::string& file) -> Command {
    return {KAL_HOST_PROGRAM, "check",  "--company",          companyPath,
            "--json",         "--jobs", std::to_string(jobs), file};
  };
  // What the machine has to give: as many processes, which share nothing but the company.
  std::vector<std::unique_ptr<Scratch>> parts;
  std::vector<Command> side;
  for (int part = 0; part < cores; ++part) {
    parts.push_back(std::make_unique<Scratch>(".jsonl"));
    WriteEntries(parts.back()->Path(), kEntries / cores * part,
                 part + 1 == cores ? kEntries : kEntries / cores * (part + 1));
    side.push_back(check(1, parts.back()->Path()));
  }
  Case one("100,000 entries of 4 lines, one core", entries.Path(), {check(1, entries.Path())});
  Case all("100,000 entries of 4 lines, " + allCores, entries.Path(),
           {check(cores, entries.Path())});
  Case apart("  a process for each core", entries.Path(), std::move(side));
  Case ledger("as many transactions, plain-text ledger", transactions.Path(),
              {{"ledger", "-f", transactions.Path(), "--pedantic", "source"}});
  for (int round = 0; round < kRounds; ++round) {
    for (Case* const each : {&one, &all, &apart, &ledger}) {
      each->Run();
    }
  }
  for (Case* const each : {&one, &all, &apart, &ledger}) {
    each->Print();
  }
  PrintRatio("  one core as fast as the ledger's", one, ledger, ", goal 0.5");
  PrintRatio("  " + allCores + " as fast as the ledger's one", all, ledger, ", goal 1.0");
  PrintRatio("  " + allCores + " as fast as one", all, one, ", goal 1.85");
  PrintRatio("  a process for each as fast as one", apart, one, "");
  BatchProfile(companyPath);
}

}  // namespace kal::bench
