// An owner of a COM object.
#pragma once

#include <utility>

namespace platform {

template <class Interface>
class ComPointer {
 public:
  ComPointer() = default;
  // Takes over the caller's reference.
  explicit ComPointer(Interface* object) : object_(object) {}
  ~ComPointer() {
    if (object_ != nullptr) object_->Release();
  }
  ComPointer(ComPointer&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
  ComPointer& operator=(ComPointer&& other) noexcept {
    std::swap(object_, other.object_);
    return *this;
  }

  explicit operator bool() const { return object_ != nullptr; }
  Interface* operator->() const { return object_; }
  Interface* Get() const { return object_; }

  // Where a call puts a new object; there must be none yet.
  Interface** Receive() { return &object_; }
  void** ReceiveVoid() { return reinterpret_cast<void**>(&object_); }

 private:
  Interface* object_ = nullptr;
};

}  // namespace platform
