#include "host/Interrupt.h"

#include <unistd.h>

#include <atomic>
#include <csignal>
#include <string_view>

#include "host/CommandLine.h"

namespace kal::host {
namespace {

// A signal reaches the process, not an object. Either the handler sees that an answer is being
// written, or the writer sees that the end was asked for before it starts.
std::atomic<bool> endAsked{false};
std::atomic<bool> writing{false};
static_assert(std::atomic<bool>::is_always_lock_free);

[[noreturn]] void End() {
  constexpr std::string_view kMessage = "kalcogcheck: stopped\n";
  (void)!write(STDERR_FILENO, kMessage.data(), kMessage.size());
  _exit(kExitTrouble);
}

void OnSignal(int /*signal*/) {
  endAsked = true;
  if (!writing) {
    End();
  }
}

}  // namespace

void StopBetweenAnswers() {
  (void)std::signal(SIGINT, OnSignal);
  (void)std::signal(SIGTERM, OnSignal);
}

Writing::Writing() {
  writing = true;
  if (endAsked) {
    End();
  }
}

Writing::~Writing() {
  writing = false;
  if (endAsked) {
    End();
  }
}

}  // namespace kal::host
