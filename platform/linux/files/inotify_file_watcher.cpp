#include "platform/linux/files/inotify_file_watcher.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <sys/inotify.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <utility>

namespace platform {
namespace {

// Not IN_MODIFY: a file that is being written in place would be read half done.
constexpr std::uint32_t kChanges = IN_CLOSE_WRITE | IN_MOVED_TO | IN_MOVED_FROM | IN_DELETE;

// How often to look where there is no watch.
constexpr int kLookWithoutEvents = 100;  // milliseconds

std::filesystem::path FolderOf(const std::filesystem::path& file) {
  const std::filesystem::path folder = file.parent_path();
  return folder.empty() ? "." : folder;
}

// Whether one of the events in the buffer concerns the name; lost events may.
bool Concerns(const std::byte* buffer, std::size_t size, const std::string& name) {
  std::size_t offset = 0;
  while (offset + sizeof(inotify_event) <= size) {
    inotify_event event{};
    std::memcpy(&event, buffer + offset, sizeof(event));
    if ((event.mask & IN_Q_OVERFLOW) != 0) return true;
    const auto* eventName = reinterpret_cast<const char*>(buffer + offset + sizeof(event));
    if (event.len > 0 && name == eventName) return true;
    offset += sizeof(event) + event.len;
  }
  return false;
}

}  // namespace

InotifyFileWatcher::InotifyFileWatcher(const std::filesystem::path& file)
    : file_(file), interrupt_(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {}

void InotifyFileWatcher::Begin() {
  notify_ = FileDescriptor(inotify_init1(IN_CLOEXEC | IN_NONBLOCK));
  if (inotify_add_watch(notify_.Get(), FolderOf(file_).c_str(), kChanges) < 0) {
    notify_ = FileDescriptor();
    last_ = TakeLook();
  }
}

bool InotifyFileWatcher::WaitForChange() {
  const int timeout = notify_.IsOpen() ? -1 : kLookWithoutEvents;
  while (true) {
    std::array<pollfd, 2> waits = {{{interrupt_.Get(), POLLIN, 0}, {notify_.Get(), POLLIN, 0}}};
    const int ready = poll(waits.data(), waits.size(), timeout);
    if (ready < 0 && errno != EINTR) return false;
    if (waits[0].revents != 0) return false;
    if ((waits[1].revents & POLLIN) != 0 && DrainChanges()) return true;
    if (ready == 0) {
      const Look before = std::exchange(last_, TakeLook());
      if (last_ != before) return true;
    }
  }
}

void InotifyFileWatcher::Interrupt() {
  eventfd_write(interrupt_.Get(), 1);
}

InotifyFileWatcher::Look InotifyFileWatcher::TakeLook() const {
  struct stat status {};
  if (stat(file_.c_str(), &status) != 0) return {};
  return {status.st_dev, status.st_ino, status.st_size, status.st_ctim.tv_sec,
          status.st_ctim.tv_nsec};
}

bool InotifyFileWatcher::DrainChanges() {
  alignas(inotify_event) std::array<std::byte, 4096> buffer;
  const std::string name = file_.filename();
  bool changed = false;
  while (true) {
    const ssize_t size = read(notify_.Get(), buffer.data(), buffer.size());
    if (size <= 0) return changed;
    changed = Concerns(buffer.data(), static_cast<std::size_t>(size), name) || changed;
  }
}

std::unique_ptr<FileWatcher> MakeFileWatcher(const std::filesystem::path& file) {
  return std::make_unique<InotifyFileWatcher>(file);
}

}  // namespace platform
