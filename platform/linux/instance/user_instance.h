// One running copy for each user, by a lock file; beside it a socket that carries the wish of later
// copies to see the first one's window.
#pragma once

#include <filesystem>
#include <memory>
#include <span>
#include <string>
#include <string_view>

#include "platform/linux/files/file_descriptor.h"
#include "platform/linux/instance/raise_channel.h"
#include "platform/single_instance.h"

namespace platform {

struct LockPlace {
  enum class Missing { Make, Fail };

  std::filesystem::path folder;
  Missing missing;  // what to do when there is no such folder
};

// The user's runtime folder; the state folder when that is unset or TONALYX_ROOT is set.
LockPlace InstanceLockPlace(const std::filesystem::path& stateFolder);

// The lock goes with the process, however it ends. One thread at a time, except for what
// `ServeRequests` says.
class UserInstance : public SingleInstance {
 public:
  explicit UserInstance(LockPlace place);
  ~UserInstance() override;
  UserInstance(const UserInstance&) = delete;
  UserInstance& operator=(const UserInstance&) = delete;

  bool Acquire(std::u16string_view name) override;

  // To be called after an `Acquire` that failed. Takes a second at most, also when the running copy
  // hangs; returns at once when that copy serves no requests.
  bool BringRunningCopyForward(std::span<const std::u16string_view> titles) override;

  // In the running copy: hands the requests of later copies to `raise`, on a thread of its own,
  // until `StopServing`. `raise` tells whether a window was raised, and returns within a bounded
  // time: `StopServing` waits for it.
  void ServeRequests(RaiseServer::Handler raise);
  void StopServing();

 private:
  enum class Attempt { Acquired, Taken, CannotBeMade, Vanished };

  Attempt TryLock();

  LockPlace place_;
  std::string baseName_;  // of the lock and the socket
  FileDescriptor folder_;
  FileDescriptor lock_;
  std::unique_ptr<RaiseServer> server_;
};

}  // namespace platform
