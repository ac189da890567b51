// Arithmetic: how the processor computes, which is the host's to say.
//
// A host may compute with less precision, round otherwise, and want to be interrupted by what
// others pass over; what has been raised so far is its own to ask for. The component computes with
// the settings of its other builds, so that amounts are the same whoever calls. While a member of
// one of the host's objects runs the host's settings are in force, and afterwards all is as it was.

#pragma once

#include <array>
#include <cstdint>

namespace kal {

// Takes note of everything, and brings it back.
class KeptArithmetic {
 public:
  KeptArithmetic() noexcept;
  KeptArithmetic(const KeptArithmetic&) = delete;
  KeptArithmetic& operator=(const KeptArithmetic&) = delete;
  ~KeptArithmetic();

 private:
  friend class HostsArithmetic;

  std::array<std::uint16_t, 14> x87_{};  // control first, then what was raised and what is held
  std::uint32_t sse_ = 0;
};

// The component's settings, from here to the end of the scope.
class OwnArithmetic {
 public:
  OwnArithmetic() noexcept;
  OwnArithmetic(const OwnArithmetic&) = delete;
  OwnArithmetic& operator=(const OwnArithmetic&) = delete;
  ~OwnArithmetic();

 private:
  KeptArithmetic kept_;
  const KeptArithmetic* outer_;
};

// Within that, the host's settings for a call of one of its objects; the component's afterwards,
// whatever the object did to them. Nothing where no host called.
class HostsArithmetic {
 public:
  HostsArithmetic() noexcept;
  HostsArithmetic(const HostsArithmetic&) = delete;
  HostsArithmetic& operator=(const HostsArithmetic&) = delete;
  ~HostsArithmetic();
};

}  // namespace kal
