#include "host/Progress.h"

#include <algorithm>
#include <new>
#include <string>

#include "host/Interrupt.h"

namespace kal::host {
namespace {

constexpr std::size_t kQuietEntries = 300;
constexpr std::size_t kWidth = 40;
constexpr auto kPause = std::chrono::milliseconds(150);

}  // namespace

Progress::Progress(std::ostream& terminal, bool isTerminal, std::uintmax_t totalBytes)
    : terminal_(terminal), isTerminal_(isTerminal), totalBytes_(totalBytes) {}

void Progress::Step(std::uintmax_t bytesDone) {
  ++entries_;
  if (!isTerminal_ || entries_ <= kQuietEntries) {
    return;
  }
  const auto now = std::chrono::steady_clock::now();
  if (now - drawn_ >= kPause) {
    drawn_ = now;
    try {
      Draw(bytesDone);
    } catch (const std::bad_alloc&) {
      // The next one is drawn.
    }
  }
}

void Progress::Draw(std::uintmax_t bytesDone) {
  std::string bar = "\r";
  if (totalBytes_ > 0) {
    const double part =
        std::min(1.0, static_cast<double>(bytesDone) / static_cast<double>(totalBytes_));
    const auto filled = static_cast<std::size_t>(part * static_cast<double>(kWidth));
    bar += '[' + std::string(filled, '#') + std::string(kWidth - filled, '.') + "] " +
           std::to_string(static_cast<int>(part * 100.0)) + "% ";
  }
  terminal_ << bar << entries_ << "\x1b[K" << std::flush;
  shown_ = true;
  BarIsShown(true);
}

void Progress::Hide() {
  if (shown_) {
    terminal_ << "\r\x1b[K" << std::flush;
    shown_ = false;
    BarIsShown(false);
  }
}

}  // namespace kal::host
