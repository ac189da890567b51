// ComPtr: a counted reference to an automation object.

#pragma once

#include <utility>

namespace kal {

template <class T>
class ComPtr {
 public:
  ComPtr() = default;
  // Adds a reference of its own.
  explicit ComPtr(T* object) noexcept : object_(object) {
    if (object_ != nullptr) {
      object_->AddRef();
    }
  }
  ComPtr(const ComPtr& other) noexcept : ComPtr(other.object_) {}
  ComPtr(ComPtr&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
  ComPtr& operator=(ComPtr other) noexcept {
    std::swap(object_, other.object_);
    return *this;
  }
  ~ComPtr() {
    if (object_ != nullptr) {
      object_->Release();
    }
  }

  // Takes over a reference that the caller holds.
  [[nodiscard]] static ComPtr Attach(T* object) noexcept {
    ComPtr owner;
    owner.object_ = object;
    return owner;
  }
  // Gives the reference to the caller.
  [[nodiscard]] T* Detach() noexcept { return std::exchange(object_, nullptr); }
  // Where a function is to store a new reference; lets go of the one held.
  [[nodiscard]] T** Put() noexcept {
    *this = ComPtr();
    return &object_;
  }

  [[nodiscard]] T* Get() const noexcept { return object_; }
  T* operator->() const noexcept { return object_; }
  explicit operator bool() const noexcept { return object_ != nullptr; }

 private:
  T* object_ = nullptr;
};

}  // namespace kal
