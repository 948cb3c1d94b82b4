// Owners of the kernel's handles.
#pragma once

#include <windows.h>

#include <utility>

namespace platform {

// Closes a handle with the function that fits it.
template <class Type, auto Close>
class OwnedHandle {
 public:
  OwnedHandle() = default;
  explicit OwnedHandle(Type handle) : handle_(handle) {}
  ~OwnedHandle() {
    if (IsOpen()) Close(handle_);
  }
  OwnedHandle(OwnedHandle&& other) noexcept : handle_(std::exchange(other.handle_, nullptr)) {}
  OwnedHandle& operator=(OwnedHandle&& other) noexcept {
    std::swap(handle_, other.handle_);
    return *this;
  }

  bool IsOpen() const { return handle_ != nullptr; }
  Type Get() const { return handle_; }

 private:
  Type handle_ = nullptr;
};

using KernelHandle = OwnedHandle<HANDLE, &CloseHandle>;

// CreateFile and its kind say "none" in another way than the rest of the system.
inline KernelHandle OwnFile(HANDLE file) {
  return KernelHandle(file == INVALID_HANDLE_VALUE ? nullptr : file);
}

}  // namespace platform
