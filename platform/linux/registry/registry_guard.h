// What keeps a database that anybody may have written from costing more than a store does.
#pragma once

#include <sqlite3.h>

#include <atomic>
#include <cstdint>

namespace platform {

// How long connections wait for the locks of others: about two seconds, in steps that a short
// commit of the other makes good. Once that was in vain, no longer than such a commit takes, until
// the lock could be had again. Any thread; shared by the connections to one store.
class LockPatience {
 public:
  // Sleeps before the next try; false when there is to be none.
  bool Wait(int step);
  void Renew() { isLost_ = false; }

 private:
  std::atomic<bool> isLost_ = false;
};

// One connection's. Must outlive it.
class RegistryGuard {
 public:
  explicit RegistryGuard(LockPatience& patience) : patience_(patience) {}
  RegistryGuard(const RegistryGuard&) = delete;
  RegistryGuard& operator=(const RegistryGuard&) = delete;

  bool Protect(sqlite3* connection);
  LockPatience& Patience() const { return patience_; }

  // How much the next statement may do before it is interrupted, in thousands of steps of the
  // database's machine: more than a store of any size that makes sense needs, and however slow or
  // suspended this process is.
  enum class Work : std::int32_t { Opening = 4, Statement = 20'000, Check = 200'000 };
  void Allow(Work work) { left_ = static_cast<std::int32_t>(work); }

 private:
  LockPatience& patience_;
  std::int32_t left_ = static_cast<std::int32_t>(Work::Opening);
};

}  // namespace platform
