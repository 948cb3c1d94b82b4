// One running copy for each user.
#pragma once

#include <span>
#include <string_view>

namespace platform {

class SingleInstance {
 public:
  virtual ~SingleInstance() = default;

  // Takes the named lock without waiting; true when this is the only copy. A lock that cannot be
  // made counts as taken. Once acquired it is held until the process ends, also when it is killed.
  virtual bool Acquire(std::u16string_view name) = 0;

  // In the second copy: brings the running copy's visible top-level window to the front, the first
  // of `titles` that exists. Needs no toolkit in this process. False when none was found.
  virtual bool BringRunningCopyForward(std::span<const std::u16string_view> titles) = 0;
};

}  // namespace platform
