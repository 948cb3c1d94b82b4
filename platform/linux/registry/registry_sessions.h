// The sessions of all threads.
#pragma once

#include <memory>
#include <mutex>
#include <thread>
#include <vector>

#include "platform/linux/registry/registry_session.h"

namespace platform {

// Any thread. A thread gets its own session back as long as it has a scope open, else any that is
// free: there are never more connections than threads that were inside the registry at once.
class RegistrySessions {
 public:
  explicit RegistrySessions(RegistryFiles& files) : files_(files) {}
  RegistrySessions(const RegistrySessions&) = delete;
  RegistrySessions& operator=(const RegistrySessions&) = delete;

  class Lease {
   public:
    explicit Lease(RegistrySessions& sessions)
        : sessions_(sessions), session_(sessions.Acquire()) {}
    ~Lease() { sessions_.Release(session_); }
    Lease(const Lease&) = delete;
    Lease& operator=(const Lease&) = delete;

    RegistrySession* operator->() const { return &session_; }

   private:
    RegistrySessions& sessions_;
    RegistrySession& session_;
  };

 private:
  struct Entry {
    std::thread::id owner;  // none: free
    std::unique_ptr<RegistrySession> session;
  };

  RegistrySession& Acquire();
  void Release(RegistrySession& session);

  RegistryFiles& files_;
  std::mutex mutex_;
  std::vector<Entry> entries_;
};

}  // namespace platform
