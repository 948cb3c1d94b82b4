// Audio devices that tell how often they were asked and that can make whoever asks wait.
#pragma once

#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>

#include "platform/audio_devices.h"

namespace endpoints {

class WatchedDevices : public platform::AudioDevices {
 public:
  explicit WatchedDevices(platform::AudioDevices& inner) : inner_(inner) {}

  std::unique_ptr<platform::AudioDeviceEnumerator> CreateEnumerator() override {
    std::unique_lock lock(mutex_);
    ++asked_;
    changed_.notify_all();
    changed_.wait(lock, [this] { return !held_; });
    return inner_.CreateEnumerator();
  }

  int Asked() {
    const std::lock_guard lock(mutex_);
    return asked_;
  }

  // False when that does not happen within some seconds.
  bool WaitUntilAsked(int times) {
    std::unique_lock lock(mutex_);
    return changed_.wait_for(lock, std::chrono::seconds(10), [&] { return asked_ >= times; });
  }

  void Hold(bool held) {
    const std::lock_guard lock(mutex_);
    held_ = held;
    changed_.notify_all();
  }

 private:
  platform::AudioDevices& inner_;
  std::mutex mutex_;
  std::condition_variable changed_;
  int asked_ = 0;
  bool held_ = false;
};

}  // namespace endpoints
