// Named events as FIFOs in a folder: the engine's side.
#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/event_listener.h"
#include "platform/linux/files/file_descriptor.h"

namespace platform {

// Makes the folder, and in it a FIFO for each event, open to every user whatever the umask. Takes
// over the FIFO of a listener that is gone. One thread at a time, except for `Interrupt`.
class FifoEventListener : public EventListener {
 public:
  explicit FifoEventListener(std::filesystem::path eventsFolder);
  ~FifoEventListener() override;
  FifoEventListener(const FifoEventListener&) = delete;
  FifoEventListener& operator=(const FifoEventListener&) = delete;

  bool Create(std::u16string_view name) override;
  std::vector<EventSet> Wait(std::chrono::milliseconds timeout) override;
  void Interrupt() override;

 private:
  struct Fifo {
    std::string name;
    FileDescriptor reader;
  };

  using Clock = std::chrono::steady_clock;

  void WaitUntilReady(Clock::time_point deadline) const;
  bool TakeInterruption() const;
  void DrainAll(std::vector<EventSet>* sets) const;

  std::filesystem::path eventsFolder_;
  FileDescriptor interrupt_;
  std::vector<Fifo> fifos_;
};

}  // namespace platform
