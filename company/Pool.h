// Pool: memory that is given back to its company rather than to the heap.
//
// A check opens some twenty small record sets and makes as many sibling components, all of them
// gone when it ends. The pool belongs to one thread, as its company does; what was taken from it
// keeps it alive.

#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <memory>
#include <memory_resource>
#include <new>
#include <utility>

namespace kal::company {

// Blocks of 16, 32, 64 … 65,536 bytes, kept for the next one of their size; what is larger comes
// from the heap and goes back there. It needs no memory of its own, so running out of memory leaves
// it as it was; the standard library's own pool may crash then.
class Pool final : public std::pmr::memory_resource {
 public:
  Pool() = default;
  Pool(const Pool&) = delete;
  Pool& operator=(const Pool&) = delete;
  // By then everything was given back.
  ~Pool() override {
    for (std::size_t size = 0; size < kSizes; ++size) {
      while (free_[size] != nullptr) {
        ::operator delete(Take(size));
      }
    }
  }

 private:
  struct Free {
    Free* next;
  };

  static constexpr std::size_t kSmallest = 16;
  static constexpr std::size_t kSizes = 13;

  // The place of the list for blocks of that many bytes; kSizes when they are not kept.
  static std::size_t SizeOf(std::size_t bytes, std::size_t alignment) {
    const auto size = static_cast<std::size_t>(std::bit_width((bytes - 1) / kSmallest));
    return bytes == 0 || alignment > alignof(std::max_align_t) ? kSizes : std::min(size, kSizes);
  }

  void* Take(std::size_t size) {
    Free* const taken = free_[size];
    free_[size] = taken->next;
    return taken;
  }

  void* do_allocate(std::size_t bytes, std::size_t alignment) override {
    const std::size_t size = SizeOf(bytes, alignment);
    if (size == kSizes) {
      return std::pmr::new_delete_resource()->allocate(bytes, alignment);
    }
    return free_[size] != nullptr ? Take(size) : ::operator new(kSmallest << size);
  }

  void do_deallocate(void* memory, std::size_t bytes, std::size_t alignment) override {
    const std::size_t size = SizeOf(bytes, alignment);
    if (size == kSizes) {
      std::pmr::new_delete_resource()->deallocate(memory, bytes, alignment);
    } else {
      free_[size] = ::new (memory) Free{free_[size]};
    }
  }

  [[nodiscard]] bool do_is_equal(const std::pmr::memory_resource& other) const noexcept override {
    return this == &other;
  }

  std::array<Free*, kSizes> free_{};
};

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
