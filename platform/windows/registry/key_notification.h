// One key's armed notification, which sets a wake event.
#pragma once

#include <windows.h>

#include <mutex>

#include "platform/registry.h"
#include "platform/wake_event.h"
#include "platform/windows/handle.h"

namespace platform {

// The system signals an armed key when it is closed, too, and ties what is armed to the arming
// thread. Here a thread of the system's pool waits for the key: it stops before the key closes, and
// who armed does not matter.
class KeyNotification {
 public:
  KeyNotification() = default;
  // To be destroyed before the key closes.
  ~KeyNotification();
  KeyNotification(const KeyNotification&) = delete;
  KeyNotification& operator=(const KeyNotification&) = delete;

  RegistryStatus Arm(HKEY key, WakeEvent& wake);

 private:
  static void CALLBACK OnChanged(void* notification, BOOLEAN timedOut);
  bool StartWaiting();

  std::mutex mutex_;
  WakeEvent* armed_ = nullptr;  // what the next change sets
  KernelHandle changed_;
  HANDLE wait_ = nullptr;
};

}  // namespace platform
