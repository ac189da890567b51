// kalcogcheck: the command-line host of the journal-entry checker.

#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <exception>
#include <iostream>
#include <new>
#include <string_view>

#include "company/Company.h"
#include "host/CommandLine.h"
#include "host/Interrupt.h"

int main(int argc, char** argv) {
  // A reader that goes away shows as a failed write, and so as an exit status.
  (void)std::signal(SIGPIPE, SIG_IGN);
  try {
    kal::host::StopBetweenAnswers();
    kal::company::SpareMemoryAccounts();
    std::ios::sync_with_stdio(false);
    // Reading must not flush standard output: workers write to it while entries are read.
    (void)std::cin.tie(nullptr);
    const char* const noColor = std::getenv("NO_COLOR");
    const kal::host::Terminals terminals{.out = isatty(STDOUT_FILENO) != 0,
                                         .err = isatty(STDERR_FILENO) != 0,
                                         .colours = noColor == nullptr || *noColor == '\0'};
    return kal::host::Run(argc, argv, std::cin, std::cout, std::cerr, terminals);
  } catch (const std::bad_alloc&) {
    // Before the streams were ready.
    constexpr std::string_view kMessage = "kalcogcheck: out of memory\n";
    (void)!write(STDERR_FILENO, kMessage.data(), kMessage.size());
    return kal::host::kExitTrouble;
  } catch (const std::exception& error) {
    std::cerr << "kalcogcheck: " << error.what() << std::endl;
    return kal::host::kExitTrouble;
  }
}
