// Named events as the kernel's: the setting side.
#pragma once

#include <memory>
#include <string_view>

#include "platform/events.h"

namespace platform {

class KernelEvents : public NamedEvents {
 public:
  std::unique_ptr<NamedEvent> Open(std::u16string_view name) override;
};

}  // namespace platform
