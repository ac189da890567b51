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
std::atomic<bool> unstoppable{false};
std::atomic<bool> barShown{false};
static_assert(std::atomic<bool>::is_always_lock_free);

[[noreturn]] void End() {
  constexpr std::string_view kBehindBar = "\r\x1b[Kkalcogcheck: stopped\n";
  constexpr std::string_view kMessage = kBehindBar.substr(kBehindBar.find('k'));
  const std::string_view message = barShown ? kBehindBar : kMessage;
  (void)!write(STDERR_FILENO, message.data(), message.size());
  _exit(kExitTrouble);
}

void OnSignal(int /*signal*/) {
  constexpr unsigned kSecondsToWrite = 2;
  endAsked = true;
  if (unstoppable) {
    return;
  }
  if (!writing) {
    End();
  }
  alarm(kSecondsToWrite);  // the answer may wait for somebody who never reads it
}

void OnAlarm(int /*signal*/) { End(); }

}  // namespace

void StopBetweenAnswers() {
  (void)std::signal(SIGINT, OnSignal);
  (void)std::signal(SIGTERM, OnSignal);
  (void)std::signal(SIGALRM, OnAlarm);
}

void BarIsShown(bool shown) { barShown = shown; }

Unstoppable::Unstoppable() { unstoppable = true; }

Unstoppable::~Unstoppable() {
  unstoppable = false;
  if (endAsked) {
    End();
  }
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
