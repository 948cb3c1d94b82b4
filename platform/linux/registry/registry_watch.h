// Change notification: who waits for which key, and the thread that finds out.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>
#include <vector>

#include "platform/linux/registry/registry_database.h"
#include "platform/linux/registry/registry_files.h"
#include "platform/wake_event.h"

namespace platform {

// A key's identity across stores.
struct RegistryKeyIdentity {
  std::int64_t store;
  RegistryKeyId key;
  bool operator==(const RegistryKeyIdentity&) const = default;
};

// Any thread. The watching thread starts with the first armed handle. It sleeps until the folder
// changes, compares the count of changes of every armed key with the last one known, and copies the
// log back when it has grown. Where the system has no folder watch to give, it looks every now and
// then, and asks again.
class RegistryWatch {
 public:
  explicit RegistryWatch(RegistryFiles& files);
  ~RegistryWatch();
  RegistryWatch(const RegistryWatch&) = delete;
  RegistryWatch& operator=(const RegistryWatch&) = delete;

  bool IsArmed(const void* handle) const;

  // Arms `handle` on its key, whose changes its owner just counted; sets `wake` at once when there
  // were more than when it last fired.
  void Arm(const void* handle, const RegistryKeyIdentity& key, std::int64_t changes,
           WakeEvent& wake);

  // Forgets the handle. Its event is not touched any more when this returns.
  void Close(const void* handle);

 private:
  struct Handle {
    RegistryKeyIdentity key;
    WakeEvent* wake = nullptr;
    std::int64_t seen = 0;
    bool isArmed = false;
    bool hasFired = false;
  };
  struct Count {
    RegistryKeyIdentity key;
    std::optional<std::int64_t> changes;  // nothing: the key is gone
  };
  enum class FolderEvent { None, LogWritten, Changed };

  void Start();
  void WatchFolder();
  int WaitBetweenLooks(std::size_t looks) const;
  void Run();
  void Poke() const;
  // Empties the eventfd; false when the thread is to end.
  bool TakePoke();
  FolderEvent TakeFolderEvents() const;
  void Look();
  std::vector<RegistryKeyIdentity> ArmedKeys() const;
  bool OpenDatabase();
  std::vector<Count> CountChanges(const std::vector<RegistryKeyIdentity>& keys);
  void Fire(const std::vector<Count>& counts);
  void CheckpointBeyond(std::uintmax_t limit);

  RegistryFiles& files_;
  mutable std::mutex mutex_;
  std::map<const void*, Handle> handles_;
  bool stop_ = false;
  std::atomic<bool> isFolderWatched_ = false;
  int folderEvents_ = -1;  // inotify
  int poke_ = -1;          // eventfd
  std::thread thread_;
  // The thread's own.
  std::unique_ptr<RegistryDatabase> database_;
  std::uintmax_t busyLogLimit_;
};

}  // namespace platform
