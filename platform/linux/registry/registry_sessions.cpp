#include "platform/linux/registry/registry_sessions.h"

namespace platform {

RegistrySession& RegistrySessions::Acquire() {
  const std::thread::id self = std::this_thread::get_id();
  const std::lock_guard lock(mutex_);
  Entry* free = nullptr;
  for (Entry& entry : entries_) {
    if (entry.owner == self) return *entry.session;
    if (free == nullptr && entry.owner == std::thread::id()) free = &entry;
  }
  if (free == nullptr) {
    entries_.push_back({{}, std::make_unique<RegistrySession>(files_)});
    free = &entries_.back();
  }
  free->owner = self;
  return *free->session;
}

void RegistrySessions::Release(RegistrySession& session) {
  if (session.HasScope()) return;
  const std::lock_guard lock(mutex_);
  for (Entry& entry : entries_) {
    if (entry.session.get() == &session) entry.owner = {};
  }
}

}  // namespace platform
