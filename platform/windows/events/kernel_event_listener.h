// Named events as the kernel's: the engine's side.
#pragma once

#include <windows.h>

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <memory>
#include <mutex>
#include <string_view>
#include <vector>

#include "platform/event_listener.h"
#include "platform/windows/handle.h"

namespace platform {

// Threads of the system's pool wait for the events, as a single wait takes only 64 of them, and
// note the time. Every user may set the events. One thread at a time, except for `Interrupt`.
class KernelEventListener : public EventListener {
 public:
  KernelEventListener() = default;
  ~KernelEventListener() override;
  KernelEventListener(const KernelEventListener&) = delete;
  KernelEventListener& operator=(const KernelEventListener&) = delete;

  bool Create(std::u16string_view name) override;
  std::vector<EventSet> Wait(std::chrono::milliseconds timeout) override;
  void Interrupt() override;

 private:
  struct Event {
    KernelEventListener* listener;
    std::size_t index;
    KernelHandle handle;
    HANDLE wait = nullptr;
  };

  static void CALLBACK OnSet(void* event, BOOLEAN timedOut);

  std::vector<std::unique_ptr<Event>> events_;
  std::mutex mutex_;
  std::condition_variable changed_;
  std::vector<EventSet> sets_;
  bool interrupted_ = false;
};

}  // namespace platform
