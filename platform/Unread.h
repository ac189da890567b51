// Unread: an argument as its caller holds it, read when the operation comes to it.
//
// It stands for a value, or for what answers one when it is called. A caller whose values have to
// be converted first hands over the conversion: what fails in it is then an error of the operation,
// with its tag, and nothing at all where the operation never reads the argument.

#pragma once

#include <concepts>
#include <type_traits>

namespace kal {

template <class T>
class Unread {
 public:
  // What is handed over must live until the operation ends.
  // NOLINTBEGIN(google-explicit-constructor): a value stands for itself unread.
  template <class Held>
  requires(!std::same_as<Held, Unread>) Unread(const Held& held)
      : held_(&held), read_(&Read<Held>) {}
  // NOLINTEND(google-explicit-constructor)

  [[nodiscard]] T operator()() const { return read_(held_); }

 private:
  template <class Held>
  static T Read(const void* held) {
    const Held& it = *static_cast<const Held*>(held);
    if constexpr (std::is_invocable_v<const Held&>) {
      return it();
    } else {
      return T(it);
    }
  }

  const void* held_;
  T (*read_)(const void*);
};

}  // namespace kal
