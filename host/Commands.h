// Commands: what each command of the program does, once its options are read.

#pragma once

#include <algorithm>
#include <istream>
#include <ostream>
#include <string>
#include <thread>
#include <vector>

#include "host/CommandLine.h"
#include "host/Limits.h"
#include "host/Said.h"
#include "platform/Wording.h"

namespace kal::host {

struct Options {
  std::string newCompany;
  bool withSample = false;
  std::string rowsFrom;  // of init: the file of a company, "" for none
  std::string company;
  bool json = false;
  bool explain = false;
  std::string page;  // of explain: a code or a name
  bool listPages = false;
  std::string language = "it";
  std::string recording;    // of check: the file to write
  std::string report;       // likewise
  std::string baseline;     // of check: what is accepted
  std::string newBaseline;  // of check: the file to write
  bool onlyProblems = false;
  std::string failOn = "warning";
  unsigned jobs = std::max(1U, std::thread::hardware_concurrency());
  bool summary = false;
  Limits limits;
  std::vector<std::string> files;
};

struct Streams {
  std::istream& in;
  std::ostream& out;
  std::ostream& err;
  const Terminals& terminals;
};

[[nodiscard]] inline Language LanguageOf(const Options& options) {
  return options.language == "en" ? Language::English : Language::Italian;
}
// Says what is wrong, and answers the exit status for it.
int Complain(const Streams& streams, const Options& options, const Said& message);
int ComplainOfOutput(const Streams& streams, const Options& options);
[[nodiscard]] Said OutOfMemory();

// Each answers the exit status.
[[nodiscard]] int Init(const Options& options, const Streams& streams);
[[nodiscard]] int Check(const Options& options, const Streams& streams);
[[nodiscard]] int Verify(const Options& options, const Streams& streams);
[[nodiscard]] int ReplayAll(const Options& options, const Streams& streams);
[[nodiscard]] int Explain(const Options& options, const Streams& streams);

}  // namespace kal::host
