#include "platform/linux/events/fifo_event_listener.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstddef>
#include <ctime>
#include <span>
#include <utility>

#include "platform/linux/events/fifo_name.h"
#include "platform/linux/files/state_folder.h"
#include "platform/little_endian.h"

namespace platform {
namespace {

constexpr mode_t kFifoMode = 0666;

// A listener that ends at this moment may take its FIFO away between two steps of taking over.
constexpr int kTakeOverAttempts = 8;

// Sets returned by one wait at most, so that a writer that never stops cannot hold it for ever.
constexpr std::size_t kMostSets = 100'000;

constexpr std::size_t kStampBytes = 8;

bool HasReader(const FileDescriptor& fifo) {
  return FileDescriptor(open(DescriptorPath(fifo).c_str(), O_WRONLY | O_NONBLOCK | O_CLOEXEC))
      .IsOpen();
}

enum class Holding { Held, Refused, Vanished };

// One attempt to make the FIFO, or to find it without a reader, and to become its reader.
Holding TryHold(const FileDescriptor& folder, const std::string& name, FileDescriptor* reader) {
  const bool made = mkfifoat(folder.Get(), name.c_str(), kFifoMode) == 0;
  if (!made && errno != EEXIST) return Holding::Refused;
  const FileDescriptor fifo(openat(folder.Get(), name.c_str(), O_PATH | O_NOFOLLOW | O_CLOEXEC));
  if (!fifo.IsOpen()) return Holding::Vanished;
  if (!IsFifo(fifo)) return Holding::Refused;
  // Takes the umask out; fails harmlessly on the FIFO of another user.
  const bool opened = chmod(DescriptorPath(fifo).c_str(), kFifoMode) == 0;
  if (made && !opened) return Holding::Refused;

  if (HasReader(fifo)) return Holding::Refused;
  // Open for writing too, so that the end of the last writer is no end of file.
  FileDescriptor held(open(DescriptorPath(fifo).c_str(), O_RDWR | O_NONBLOCK | O_CLOEXEC));
  if (!held.IsOpen()) return Holding::Refused;
  // Two listeners may have found it without a reader at once.
  if (flock(held.Get(), LOCK_EX | LOCK_NB) != 0) return Holding::Refused;
  if (!IsStillNamed(folder, name, held)) return Holding::Vanished;
  *reader = std::move(held);
  return Holding::Held;
}

// Takes the sets that lie in one FIFO now. Every writer of this layer writes whole stamps; a piece
// that is left over came from somebody else and is dropped, so that the next stamp starts afresh.
bool DrainOne(const FileDescriptor& reader, std::size_t event, std::vector<EventSet>* sets) {
  std::array<std::byte, kStampBytes * 512> bytes;
  const ssize_t count = read(reader.Get(), bytes.data(), bytes.size());
  if (count <= 0) return false;
  for (std::size_t at = 0; at + kStampBytes <= static_cast<std::size_t>(count); at += kStampBytes) {
    const std::span<const std::byte, kStampBytes> stamp(bytes.data() + at, kStampBytes);
    sets->push_back({event, FromLittleEndian<std::uint64_t>(stamp)});
  }
  return true;
}

}  // namespace

FifoEventListener::FifoEventListener(std::filesystem::path eventsFolder)
    : eventsFolder_(std::move(eventsFolder)), interrupt_(eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC)) {}

FifoEventListener::~FifoEventListener() {
  const FileDescriptor folder = OpenEventsFolder(eventsFolder_);
  for (const Fifo& fifo : fifos_) {
    if (IsStillNamed(folder, fifo.name, fifo.reader)) unlinkat(folder.Get(), fifo.name.c_str(), 0);
  }
}

bool FifoEventListener::Create(std::u16string_view name) {
  if (!MakeStateFolder(eventsFolder_.parent_path()) || !MakeStateFolder(eventsFolder_)) {
    return false;
  }
  const FileDescriptor folder = OpenEventsFolder(eventsFolder_);
  if (!folder.IsOpen()) return false;
  Fifo fifo{FifoName(name), {}};
  for (int attempt = 0; attempt < kTakeOverAttempts; ++attempt) {
    const Holding holding = TryHold(folder, fifo.name, &fifo.reader);
    if (holding == Holding::Refused) return false;
    if (holding == Holding::Held) {
      fifos_.push_back(std::move(fifo));
      return true;
    }
  }
  return false;
}

std::vector<EventSet> FifoEventListener::Wait(std::chrono::milliseconds timeout) {
  constexpr std::chrono::hours kLongest(24 * 365);
  const Clock::time_point deadline =
      Clock::now() + std::min<std::chrono::milliseconds>(timeout, kLongest);
  std::vector<EventSet> sets;
  do {
    WaitUntilReady(deadline);
    DrainAll(&sets);
  } while (sets.empty() && !TakeInterruption() && Clock::now() < deadline);
  std::ranges::stable_sort(sets, {}, &EventSet::time);
  return sets;
}

void FifoEventListener::WaitUntilReady(Clock::time_point deadline) const {
  std::vector<pollfd> waited;
  for (const Fifo& fifo : fifos_) waited.push_back({fifo.reader.Get(), POLLIN, 0});
  waited.push_back({interrupt_.Get(), POLLIN, 0});
  int ready = 0;
  do {
    const auto left = std::max(std::chrono::nanoseconds(deadline - Clock::now()),
                               std::chrono::nanoseconds::zero());
    const auto seconds = std::chrono::floor<std::chrono::seconds>(left);
    const timespec limit{static_cast<time_t>(seconds.count()),
                         static_cast<long>((left - seconds).count())};
    ready = ppoll(waited.data(), waited.size(), &limit, nullptr);
  } while (ready < 0 && errno == EINTR);
}

bool FifoEventListener::TakeInterruption() const {
  std::uint64_t count = 0;
  return read(interrupt_.Get(), &count, sizeof(count)) > 0;
}

void FifoEventListener::DrainAll(std::vector<EventSet>* sets) const {
  // A set made before one that is already taken may lie in a FIFO that was looked at earlier, so
  // the round is repeated until nothing was found.
  bool found = true;
  while (found && sets->size() < kMostSets) {
    found = false;
    for (std::size_t event = 0; event < fifos_.size(); ++event) {
      found = DrainOne(fifos_[event].reader, event, sets) || found;
    }
  }
}

void FifoEventListener::Interrupt() {
  const int errorBefore = errno;
  const std::uint64_t one = 1;
  [[maybe_unused]] const ssize_t count = write(interrupt_.Get(), &one, sizeof(one));
  errno = errorBefore;
}

}  // namespace platform
