// Named events as FIFOs in a folder that every user of the machine shares: the setting side.
#pragma once

#include <filesystem>
#include <memory>
#include <string_view>

#include "platform/events.h"

namespace platform {

// An event exists while its FIFO has a reader. Nothing here blocks, creates, or follows a link, and
// whatever else stands in a FIFO's place is left alone.
class FifoEvents : public NamedEvents {
 public:
  explicit FifoEvents(std::filesystem::path eventsFolder);

  std::unique_ptr<NamedEvent> Open(std::u16string_view name) override;

 private:
  std::filesystem::path eventsFolder_;
};

}  // namespace platform
