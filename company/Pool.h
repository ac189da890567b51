// Pool: memory that is given back to its company rather than to the heap.
//
// A check opens some twenty small record sets and makes as many sibling components, all of them
// gone when it ends. The pool belongs to one thread, as its company does; what was taken from it
// keeps it alive.

#pragma once

#include <cstddef>
#include <memory>
#include <memory_resource>
#include <utility>

namespace kal::company {

using Pool = std::pmr::unsynchronized_pool_resource;

// For objects held by std::shared_ptr.
template <class T>
class PoolAllocator {
 public:
  using value_type = T;

  explicit PoolAllocator(std::shared_ptr<Pool> pool) : pool_(std::move(pool)) {}
  template <class Other>
  PoolAllocator(const PoolAllocator<Other>& other)  // NOLINT(google-explicit-constructor): rebinds
      : pool_(other.Memory()) {}

  T* allocate(std::size_t count) {
    return static_cast<T*>(pool_->allocate(count * sizeof(T), alignof(T)));
  }
  void deallocate(T* memory, std::size_t count) noexcept {
    pool_->deallocate(memory, count * sizeof(T), alignof(T));
  }

  [[nodiscard]] const std::shared_ptr<Pool>& Memory() const { return pool_; }
  template <class Other>
  bool operator==(const PoolAllocator<Other>& other) const {
    return pool_ == other.Memory();
  }

 private:
  std::shared_ptr<Pool> pool_;
};

// Base of classes whose objects are held by std::unique_ptr: new (pool) T(...). The pool must
// outlive them.
class Pooled {
 public:
  static void* operator new(std::size_t size, Pool& pool) {
    auto* header = static_cast<Header*>(pool.allocate(sizeof(Header) + size, alignof(Header)));
    *header = {&pool, size};
    return header + 1;
  }
  static void operator delete(void* memory) noexcept {
    auto* header = static_cast<Header*>(memory) - 1;
    header->pool->deallocate(header, sizeof(Header) + header->size, alignof(Header));
  }
  static void operator delete(void* memory, Pool& /*pool*/) noexcept { operator delete(memory); }

 private:
  struct alignas(std::max_align_t) Header {
    Pool* pool;
    std::size_t size;
  };
};

}  // namespace kal::company
