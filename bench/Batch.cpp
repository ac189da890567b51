#include "bench/Batch.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <optional>
#include <random>
#include <stdexcept>
#include <thread>
#include <vector>

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

// Runs a program with its output thrown away; nothing when it can't be found.
std::optional<Process> Measure(std::vector<std::string> arguments) {
  std::vector<char*> argv;
  for (std::string& argument : arguments) {
    argv.push_back(argument.data());
  }
  argv.push_back(nullptr);
  const auto start = std::chrono::steady_clock::now();
  const pid_t child = fork();
  if (child == 0) {
    const int nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
    dup2(nowhere, STDOUT_FILENO);
    execvp(argv.front(), argv.data());
    _exit(127);
  }
  int status = 0;
  rusage usage{};
  if (child < 0 || wait4(child, &status, 0, &usage) != child) {
    throw std::runtime_error("a program could not be run");
  }
  if (WIFEXITED(status) && WEXITSTATUS(status) == 127) {
    return std::nullopt;
  }
  return Process{std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count(),
                 static_cast<double>(usage.ru_maxrss) / 1024,
                 WIFEXITED(status) ? WEXITSTATUS(status) : -1};
}

void Print(const std::string& name, const std::optional<Process>& process) {
  if (!process) {
    std::printf("%-52s not installed\n", name.c_str());
    return;
  }
  std::printf("%-52s %8.2f s %8.0f a second %6.0f MiB, status %d\n", name.c_str(), process->seconds,
              kEntries / process->seconds, process->megabytes, process->status);
}

void WriteEntries(const std::string& path) {
  std::ofstream file(path);
  for (int i = 1; i <= kEntries; ++i) {
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
  const Scratch entries(".jsonl");
  WriteEntries(entries.Path());
  const auto check = [&](const std::string& jobs) {
    return Measure({KAL_HOST_PROGRAM, "check", "--company", companyPath, "--json", "--jobs", jobs,
                    entries.Path()});
  };
  const std::string cores = std::to_string(std::thread::hardware_concurrency());
  const std::optional<Process> one = check("1");
  const std::optional<Process> all = check(cores);
  Print("100,000 entries, one core", one);
  Print("100,000 entries, " + cores + " cores", all);
  if (one && all) {
    std::printf("%-52s %8.2f times, goal 1.8\n", "  faster on all cores",
                one->seconds / all->seconds);
  }
  const Scratch ledger(".ledger");
  WriteLedger(ledger.Path());
  Print("100,000 transactions, plain-text ledger checker",
        Measure({"ledger", "-f", ledger.Path(), "--pedantic", "source"}));
}

}  // namespace kal::bench
