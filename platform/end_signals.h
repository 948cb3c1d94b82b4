// The wish that a program without a window ends: an interrupt from the keyboard or from the system.
#pragma once

#include <functional>
#include <memory>

namespace platform {

// Turns the first such wish into a call. To be made before any other thread, so that no thread is
// ended the usual way.
class EndSignals {
 public:
  struct Impl;

  // `onEnd` is called on a thread of the object's own, also when the object is destroyed.
  explicit EndSignals(std::function<void()> onEnd);
  ~EndSignals();
  EndSignals(const EndSignals&) = delete;
  EndSignals& operator=(const EndSignals&) = delete;

  // Any thread.
  bool WasReceived() const;

 private:
  std::unique_ptr<Impl> impl_;
};

}  // namespace platform
