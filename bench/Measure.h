// Measure: the two sides of a ratio in turns, and rows of a table that shows them.

#pragma once

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdio>
#include <functional>
#include <iostream>
#include <optional>
#include <string>
#include <vector>

namespace kal::bench {

inline double Median(std::vector<double> values) {
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  return *middle;
}

inline double Microseconds(const std::function<void()>& run) {
  const auto start = std::chrono::steady_clock::now();
  run();
  return std::chrono::duration<double, std::micro>(std::chrono::steady_clock::now() - start)
      .count();
}

struct Pair {
  double ours = 0;
  double floor = 0;
};

// Both sides in turns.
inline Pair Interleaved(int rounds, const std::function<double()>& ours,
                        const std::function<double()>& floor) {
  std::vector<double> ourTimes;
  std::vector<double> floorTimes;
  for (int round = 0; round < rounds; ++round) {
    ourTimes.push_back(ours());
    floorTimes.push_back(floor());
  }
  return {Median(ourTimes), Median(floorTimes)};
}

struct Row {
  std::string name;
  double ours = 0;
  std::optional<double> floor;
  std::string remark;
};

inline void Print(const Row& row) {
  char line[200];
  std::snprintf(line, sizeof line, "%-52s %10.1f %10s %8s  %s\n", row.name.c_str(), row.ours,
                row.floor ? std::to_string(*row.floor).substr(0, 8).c_str() : "-",
                row.floor ? std::to_string(row.ours / *row.floor).substr(0, 5).c_str() : "-",
                row.remark.c_str());
  std::cout << line << std::flush;
}

}  // namespace kal::bench
