#include "server/Arithmetic.h"

namespace kal {
namespace {

// Full precision, rounded to the nearest, nothing interrupts.
constexpr std::uint16_t kOwnX87 = 0x037F;
constexpr std::uint32_t kOwnSse = 0x1F80;

// The arithmetic of the host whose call is under way in this thread.
thread_local const KeptArithmetic* hosts = nullptr;

// What was raised before is forgotten first: with it the new settings might interrupt at once.
void Set(std::uint16_t x87, std::uint32_t sse) noexcept {
  asm volatile("fnclex\n\tfldcw %0\n\tldmxcsr %1" : : "m"(x87), "m"(sse) : "memory");
}

}  // namespace

KeptArithmetic::KeptArithmetic() noexcept {
  asm volatile("fnstenv %0\n\tstmxcsr %1" : "=m"(x87_), "=m"(sse_) : : "memory");
}

KeptArithmetic::~KeptArithmetic() {
  asm volatile("fldenv %0\n\tldmxcsr %1" : : "m"(x87_), "m"(sse_) : "memory");
}

OwnArithmetic::OwnArithmetic() noexcept : outer_(hosts) {
  hosts = &kept_;
  Set(kOwnX87, kOwnSse);
}

OwnArithmetic::~OwnArithmetic() { hosts = outer_; }

HostsArithmetic::HostsArithmetic() noexcept {
  if (hosts != nullptr) {
    Set(hosts->x87_.front(), hosts->sse_);
  }
}

HostsArithmetic::~HostsArithmetic() {
  if (hosts != nullptr) {
    Set(kOwnX87, kOwnSse);
  }
}

}  // namespace kal
