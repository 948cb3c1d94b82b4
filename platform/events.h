// The machine-wide named events through which the engine is woken: the setting side.
#pragma once

#include <memory>
#include <string_view>

namespace platform {

// An opened event; closing is destruction.
class NamedEvent {
 public:
  virtual ~NamedEvent() = default;

  // Never blocks. False when the engine that made the event is gone.
  virtual bool Set() = 0;
};

class NamedEvents {
 public:
  virtual ~NamedEvents() = default;

  // Opens an event that exists, with the right to set it; null when there is none or access is
  // denied. Never creates one.
  virtual std::unique_ptr<NamedEvent> Open(std::u16string_view name) = 0;
};

}  // namespace platform
