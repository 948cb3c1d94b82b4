#include "platform/linux/events/fifo_events.h"

#include <fcntl.h>
#include <pthread.h>
#include <signal.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <ctime>
#include <utility>

#include "platform/linux/events/fifo_name.h"
#include "platform/linux/files/file_descriptor.h"
#include "platform/little_endian.h"

namespace platform {
namespace {

// The time as every set carries it: monotonic nanoseconds, little-endian.
std::array<std::byte, 8> TimeStamp() {
  timespec now{};
  clock_gettime(CLOCK_MONOTONIC, &now);
  const std::uint64_t time = static_cast<std::uint64_t>(now.tv_sec) * 1'000'000'000U +
                             static_cast<std::uint64_t>(now.tv_nsec);
  std::array<std::byte, 8> bytes{};
  ToLittleEndian(time, std::span(bytes));
  return bytes;
}

// Keeps the signal of a broken pipe from the calling thread, whatever the process does with it: a
// reader may go between opening and writing.
class BrokenPipeBlock {
 public:
  BrokenPipeBlock() {
    sigemptyset(&signals_);
    sigaddset(&signals_, SIGPIPE);
    pthread_sigmask(SIG_BLOCK, &signals_, &before_);
  }
  ~BrokenPipeBlock() { pthread_sigmask(SIG_SETMASK, &before_, nullptr); }
  BrokenPipeBlock(const BrokenPipeBlock&) = delete;
  BrokenPipeBlock& operator=(const BrokenPipeBlock&) = delete;

  // Takes back the signal that a write just raised.
  void Discard() const {
    const timespec atOnce{};
    while (sigtimedwait(&signals_, nullptr, &atOnce) < 0 && errno == EINTR) {
    }
  }

 private:
  sigset_t signals_{};
  sigset_t before_{};
};

class FifoEvent : public NamedEvent {
 public:
  explicit FifoEvent(FileDescriptor fifo) : fifo_(std::move(fifo)) {}

  bool Set() override {
    const BrokenPipeBlock block;
    const std::array<std::byte, 8> stamp = TimeStamp();
    if (write(fifo_.Get(), stamp.data(), stamp.size()) == static_cast<ssize_t>(stamp.size())) {
      return true;
    }
    if (errno == EPIPE) block.Discard();
    // A full pipe holds sets enough to wake its reader.
    return errno == EAGAIN;
  }

 private:
  FileDescriptor fifo_;
};

}  // namespace

FifoEvents::FifoEvents(std::filesystem::path eventsFolder)
    : eventsFolder_(std::move(eventsFolder)) {}

std::unique_ptr<NamedEvent> FifoEvents::Open(std::u16string_view name) {
  const FileDescriptor folder = OpenEventsFolder(eventsFolder_);
  if (!folder.IsOpen()) return nullptr;
  FileDescriptor fifo(openat(folder.Get(), FifoName(name).c_str(),
                             O_WRONLY | O_NONBLOCK | O_NOFOLLOW | O_CLOEXEC | O_NOCTTY));
  if (!fifo.IsOpen() || !IsFifo(fifo)) return nullptr;
  return std::make_unique<FifoEvent>(std::move(fifo));
}

}  // namespace platform
