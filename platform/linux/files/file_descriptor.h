// Owns a file descriptor, and what can be asked of one.
#pragma once

#include <unistd.h>

#include <string>
#include <utility>

namespace platform {

class FileDescriptor {
 public:
  FileDescriptor() = default;
  explicit FileDescriptor(int descriptor) : descriptor_(descriptor) {}
  FileDescriptor(FileDescriptor&& other) noexcept
      : descriptor_(std::exchange(other.descriptor_, kNone)) {}
  FileDescriptor& operator=(FileDescriptor&& other) noexcept {
    std::swap(descriptor_, other.descriptor_);
    return *this;
  }
  FileDescriptor(const FileDescriptor&) = delete;
  FileDescriptor& operator=(const FileDescriptor&) = delete;
  ~FileDescriptor() {
    if (IsOpen()) close(descriptor_);
  }

  bool IsOpen() const { return descriptor_ >= 0; }
  int Get() const { return descriptor_; }

 private:
  static constexpr int kNone = -1;

  int descriptor_ = kNone;
};

// A path that leads to the very file behind the descriptor, whatever its name stands for by now.
std::string DescriptorPath(const FileDescriptor& file);

// Whether `name` in the folder, links not followed, still is the very file behind the descriptor.
bool IsStillNamed(const FileDescriptor& folder, const std::string& name,
                  const FileDescriptor& file);

}  // namespace platform
