#include "platform/windows/registry/key_notification.h"

#include <utility>

#include "platform/windows/registry/registry_status.h"

namespace platform {

KeyNotification::~KeyNotification() {
  // Waits for a call that runs.
  if (wait_ != nullptr) UnregisterWaitEx(wait_, INVALID_HANDLE_VALUE);
}

RegistryStatus KeyNotification::Arm(HKEY key, WakeEvent& wake) {
  const std::lock_guard lock(mutex_);
  if (armed_ != nullptr) return RegistryStatus::Success;
  if (!StartWaiting()) return RegistryStatus::AccessDenied;
  const LSTATUS status = RegNotifyChangeKeyValue(
      key, FALSE, REG_NOTIFY_CHANGE_LAST_SET | REG_NOTIFY_THREAD_AGNOSTIC, changed_.Get(), TRUE);
  if (status == ERROR_SUCCESS) armed_ = &wake;
  return ToRegistryStatus(status);
}

bool KeyNotification::StartWaiting() {
  if (wait_ != nullptr) return true;
  changed_ = KernelHandle(CreateEventW(nullptr, FALSE, FALSE, nullptr));
  return changed_.IsOpen() && RegisterWaitForSingleObject(&wait_, changed_.Get(), &OnChanged, this,
                                                          INFINITE, WT_EXECUTEINWAITTHREAD) != 0;
}

void CALLBACK KeyNotification::OnChanged(void* notification, BOOLEAN /*timedOut*/) {
  auto& self = *static_cast<KeyNotification*>(notification);
  const std::lock_guard lock(self.mutex_);
  WakeEvent* const wake = std::exchange(self.armed_, nullptr);
  if (wake != nullptr) wake->Set();
}

}  // namespace platform
