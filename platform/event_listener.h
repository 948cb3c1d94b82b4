// The engine's side of the named events: makes them and waits for many at once.
#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace platform {

struct EventSet {
  std::size_t event;   // index in the order in which the events were made
  std::uint64_t time;  // monotonic clock, nanoseconds: when it was set, or where sets carry no
                       // time, when it was noticed
};

class EventListener {
 public:
  virtual ~EventListener() = default;

  // Makes and holds the event; false when another living listener holds it or it cannot be made.
  // The listener takes its events away when it is destroyed.
  virtual bool Create(std::u16string_view name) = 0;

  // Waits until at least one event was set, the timeout passed or `Interrupt` was called, then
  // returns what was set, by time. There is a wake for each event that was set; where sets carry a
  // time, one entry for each set, else sets before a wait are one, in no order among one wait's.
  virtual std::vector<EventSet> Wait(std::chrono::milliseconds timeout) = 0;

  // May be called from a signal handler.
  virtual void Interrupt() = 0;
};

}  // namespace platform
