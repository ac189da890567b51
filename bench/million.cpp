// million: a million checks in one process, whose memory stays flat.
//
// Usage: million FILE... takes the entries of the files, one JSON object each, in turn against a
// sample company of its own. It shows the memory in use along the way and ends with status 1 when
// the second half needed more than a megabyte over the first.

#include <chrono>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "company/Company.h"
#include "host/Runner.h"

namespace {

constexpr std::uint64_t kChecks = 1'000'000;
constexpr std::uint64_t kMostGrowth = 1024;  // kilobytes

std::uint64_t ResidentKilobytes() {
  std::ifstream status("/proc/self/status");
  for (std::string line; std::getline(status, line);) {
    if (line.starts_with("VmRSS:")) {
      return std::stoull(line.substr(6));
    }
  }
  return 0;
}

std::vector<kal::host::EntryText> Entries(int count, char** paths) {
  std::vector<kal::host::EntryText> entries;
  for (int i = 0; i < count; ++i) {
    std::ostringstream text;
    text << std::ifstream(paths[i]).rdbuf();
    entries.push_back({.text = text.str(), .place = {paths[i]}});
  }
  return entries;
}

}  // namespace

int main(int argc, char** argv) {
  const std::vector<kal::host::EntryText> entries = Entries(argc - 1, argv + 1);
  if (entries.empty()) {
    std::fprintf(stderr, "usage: million FILE...\n");
    return 2;
  }
  const std::string path = (std::filesystem::temp_directory_path() /
                            ("kalcogcheck-million-" + std::to_string(std::random_device{}())))
                               .string();
  kal::company::CreateCompany(path, true);
  std::uint64_t atHalf = 0;
  std::uint64_t errors = 0;
  const auto start = std::chrono::steady_clock::now();
  {
    kal::company::Company company(path);
    for (std::uint64_t i = 0; i < kChecks; ++i) {
      if (i % (kChecks / 10) == 0) {
        std::printf("%8llu checks %8llu KB\n", static_cast<unsigned long long>(i),
                    static_cast<unsigned long long>(ResidentKilobytes()));
        std::fflush(stdout);
      }
      if (i == kChecks / 2) {
        atHalf = ResidentKilobytes();
      }
      const kal::host::Outcome outcome =
          kal::host::CheckEntry(company, entries[i % entries.size()]);
      errors += outcome.error || !outcome.inputError.IsEmpty() ? 1U : 0U;
    }
  }
  const std::uint64_t atEnd = ResidentKilobytes();
  const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - start;
  std::printf("%8llu checks %8llu KB, %llu with an error, %.0f seconds\n",
              static_cast<unsigned long long>(kChecks), static_cast<unsigned long long>(atEnd),
              static_cast<unsigned long long>(errors), seconds.count());
  std::filesystem::remove(path);
  return atEnd > atHalf + kMostGrowth ? 1 : 0;
}
