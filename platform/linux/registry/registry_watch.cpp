#include "platform/linux/registry/registry_watch.h"

#include <poll.h>
#include <pthread.h>
#include <signal.h>
#include <sys/eventfd.h>
#include <sys/inotify.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <string_view>

namespace platform {
namespace {

// A commit is written to the log before it can be seen, and told by the writer after that. A writer
// that dies in between leaves only the log's event, so each of those is followed by a few looks.
constexpr std::array<int, 3> kLooksAfterLog = {3, 30, 300};  // milliseconds, one after another

// How often to look where the system has no more folder watches to give.
constexpr int kLookWithoutEvents = 500;  // milliseconds

// The log is copied back when it is longer than this and the looks are through; while changes come
// without a pause, when it is much longer.
constexpr std::uintmax_t kQuietLogLimit = std::uintmax_t{4} << 20U;
constexpr std::uintmax_t kBusyLogLimit = std::uintmax_t{32} << 20U;

constexpr std::uint32_t kFolderMask =
    IN_MODIFY | IN_CREATE | IN_DELETE | IN_MOVED_TO | IN_MOVED_FROM | IN_DELETE_SELF;

// A thread that leaves signals to the threads that want them.
template <typename Body>
std::thread StartWithoutSignals(Body body) {
  sigset_t all;
  sigset_t before;
  sigfillset(&all);
  pthread_sigmask(SIG_BLOCK, &all, &before);
  std::thread thread(std::move(body));
  pthread_sigmask(SIG_SETMASK, &before, nullptr);
  return thread;
}

}  // namespace

RegistryWatch::RegistryWatch(RegistryFiles& files) : files_(files), busyLogLimit_(kBusyLogLimit) {}

RegistryWatch::~RegistryWatch() {
  if (!thread_.joinable()) return;
  {
    const std::lock_guard lock(mutex_);
    stop_ = true;
  }
  Poke();
  thread_.join();
  if (folderEvents_ >= 0) close(folderEvents_);
  close(poke_);
}

bool RegistryWatch::IsArmed(const void* handle) const {
  const std::lock_guard lock(mutex_);
  const auto found = handles_.find(handle);
  return found != handles_.end() && found->second.isArmed;
}

void RegistryWatch::Arm(const void* handle, const RegistryKeyIdentity& key, std::int64_t changes,
                        WakeEvent& wake) {
  const std::lock_guard lock(mutex_);
  Handle& entry = handles_[handle];
  if (entry.hasFired && changes > entry.seen) {
    entry.seen = changes;
    wake.Set();
    return;
  }
  // A read scope may show a state from before the last firing.
  entry.seen = entry.hasFired ? std::max(entry.seen, changes) : changes;
  entry.key = key;
  entry.wake = &wake;
  entry.isArmed = true;
  Start();
  // What came between the count and now has had its events already.
  Poke();
}

void RegistryWatch::Close(const void* handle) {
  const std::lock_guard lock(mutex_);
  handles_.erase(handle);
}

void RegistryWatch::Start() {
  if (!thread_.joinable()) {
    folderEvents_ = inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
    poke_ = eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC);
    thread_ = StartWithoutSignals([this] { Run(); });
  }
  // Each time, since another folder may have taken the place of the first.
  WatchFolder();
}

void RegistryWatch::WatchFolder() {
  isFolderWatched_ = folderEvents_ >= 0 &&
                     inotify_add_watch(folderEvents_, files_.Folder().c_str(), kFolderMask) >= 0;
}

void RegistryWatch::Poke() const {
  const std::uint64_t one = 1;
  [[maybe_unused]] const ssize_t size = write(poke_, &one, sizeof one);
}

bool RegistryWatch::TakePoke() {
  std::uint64_t count = 0;
  [[maybe_unused]] const ssize_t size = read(poke_, &count, sizeof count);
  const std::lock_guard lock(mutex_);
  return !stop_;
}

// `looks` were made since the log's last event.
int RegistryWatch::WaitBetweenLooks(std::size_t looks) const {
  if (looks < kLooksAfterLog.size()) return kLooksAfterLog[looks];
  return isFolderWatched_ && poke_ >= 0 ? -1 : kLookWithoutEvents;
}

void RegistryWatch::Run() {
  std::size_t looks = kLooksAfterLog.size();
  while (true) {
    const bool isQuiet = looks == kLooksAfterLog.size();
    std::array<pollfd, 2> sources = {{{poke_, POLLIN, 0}, {folderEvents_, POLLIN, 0}}};
    const int ready = poll(sources.data(), sources.size(), WaitBetweenLooks(looks));
    if (ready < 0) continue;
    // Before the look, which then sees what came before the watch.
    if (ready == 0 && !isFolderWatched_) WatchFolder();
    if (!TakePoke()) return;
    const FolderEvent event = sources[1].revents != 0 ? TakeFolderEvents() : FolderEvent::None;
    if (event != FolderEvent::None) looks = 0;
    if (ready == 0 || sources[0].revents != 0 || event == FolderEvent::Changed) Look();
    if (ready == 0 && !isQuiet && ++looks == kLooksAfterLog.size()) {
      CheckpointBeyond(kQuietLogLimit);
    } else {
      CheckpointBeyond(busyLogLimit_);
    }
  }
}

RegistryWatch::FolderEvent RegistryWatch::TakeFolderEvents() const {
  alignas(inotify_event) std::array<char, 4096> buffer;
  FolderEvent result = FolderEvent::None;
  while (true) {
    const ssize_t size = read(folderEvents_, buffer.data(), buffer.size());
    if (size <= 0) return result;
    for (std::size_t at = 0; at < static_cast<std::size_t>(size);) {
      const auto* event = reinterpret_cast<const inotify_event*>(&buffer[at]);
      at += sizeof(inotify_event) + event->len;
      const std::string_view name = event->len > 0 ? event->name : "";
      const bool isDatabase = name == RegistryFiles::kDatabaseName;
      if (name == RegistryFiles::kLogName) {
        result = std::max(result, FolderEvent::LogWritten);
      } else if (name.empty() || name == RegistryFiles::kChangedName ||
                 (isDatabase && (event->mask & IN_MODIFY) == 0)) {
        // Without a name it is the folder that went, or events that were too many to keep.
        result = FolderEvent::Changed;
      }
    }
  }
}

void RegistryWatch::Look() {
  const std::vector<RegistryKeyIdentity> keys = ArmedKeys();
  if (!keys.empty()) Fire(CountChanges(keys));
}

std::vector<RegistryKeyIdentity> RegistryWatch::ArmedKeys() const {
  const std::lock_guard lock(mutex_);
  std::vector<RegistryKeyIdentity> keys;
  for (const auto& [handle, entry] : handles_) {
    if (entry.isArmed) keys.push_back(entry.key);
  }
  return keys;
}

bool RegistryWatch::OpenDatabase() {
  if (database_ != nullptr && !database_->IsStillThere()) database_.reset();
  if (database_ == nullptr) database_ = files_.OpenDatabase(RegistryDatabase::Opening::Existing);
  return database_ != nullptr;
}

std::vector<RegistryWatch::Count> RegistryWatch::CountChanges(
    const std::vector<RegistryKeyIdentity>& keys) {
  std::vector<Count> counts;
  const bool isOpen = OpenDatabase() && database_->BeginRead();
  if (database_ != nullptr && !isOpen) files_.Tell(database_->TakeFailure());
  if (!isOpen && files_.HasDatabase()) return counts;
  for (const RegistryKeyIdentity& key : keys) {
    RegistryDatabase::Changes changes{SqliteStep::Done, 0};
    if (isOpen && database_->StoreId() == key.store) changes = database_->ReadChanges(key.key);
    if (changes.result == SqliteStep::Row) counts.push_back({key, changes.count});
    if (changes.result == SqliteStep::Done) counts.push_back({key, std::nullopt});
  }
  if (isOpen) {
    database_->Commit();
    files_.Tell(database_->TakeFailure());
  }
  return counts;
}

void RegistryWatch::Fire(const std::vector<Count>& counts) {
  const std::lock_guard lock(mutex_);
  for (auto& handle : handles_) {
    Handle& entry = handle.second;
    const auto count = std::find_if(counts.begin(), counts.end(),
                                    [&](const Count& c) { return c.key == entry.key; });
    if (!entry.isArmed || count == counts.end()) continue;
    if (count->changes && *count->changes <= entry.seen) continue;
    entry.isArmed = false;
    entry.hasFired = true;
    entry.seen = count->changes.value_or(entry.seen);
    entry.wake->Set();
  }
}

void RegistryWatch::CheckpointBeyond(std::uintmax_t limit) {
  if (files_.LogSize() <= limit || !OpenDatabase()) return;
  const bool isAll = database_->Checkpoint();
  busyLogLimit_ = kBusyLogLimit + (isAll ? 0 : files_.LogSize());
}

}  // namespace platform
