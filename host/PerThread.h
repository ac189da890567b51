// PerThread: what each thread keeps for itself, made when it first asks for it.
//
// A thread_local object does as well until memory runs out while its destructor is registered: that
// ends the program. Here it is std::bad_alloc, and the next call tries again.

#pragma once

#include <pthread.h>

#include <memory>
#include <new>

namespace kal::host {

class ThreadKey {
 public:
  explicit ThreadKey(void (*end)(void*)) {
    if (pthread_key_create(&key_, end) != 0) {
      throw std::bad_alloc();
    }
  }

  // Handed to the end of the thread.
  void Keep(const void* own) const {
    if (pthread_setspecific(key_, own) != 0) {
      throw std::bad_alloc();
    }
  }

 private:
  pthread_key_t key_{};
};

// The thread's only object of that type.
template <class Own>
Own& OfThisThread() {
  static const ThreadKey key([](void* own) { delete static_cast<Own*>(own); });
  thread_local Own* own = nullptr;
  if (own == nullptr) {
    auto made = std::make_unique<Own>();
    key.Keep(made.get());
    own = made.release();
  }
  return *own;
}

}  // namespace kal::host
