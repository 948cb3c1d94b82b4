#include "platform/linux/instance/user_instance.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstdio>
#include <utility>

#include "platform/linux/files/state_folder.h"
#include "platform/text.h"

namespace platform {
namespace {

constexpr std::chrono::milliseconds kRaiseTimeout(1000);

// Somebody who tidies up may take the file away between opening and locking it.
constexpr int kLockAttempts = 8;

// The sticky bit tells those who tidy the runtime folder up to leave the file there.
constexpr mode_t kLockMode = S_ISVTX | S_IRUSR | S_IWUSR;

std::string ActivationToken() {
  if (const auto token = EnvironmentValue("XDG_ACTIVATION_TOKEN")) return *token;
  return EnvironmentValue("DESKTOP_STARTUP_ID").value_or("");
}

}  // namespace

LockPlace InstanceLockPlace(const std::filesystem::path& stateFolder) {
  const std::filesystem::path runtimeFolder = EnvironmentValue("XDG_RUNTIME_DIR").value_or("");
  // The desktop's rules say to ignore a relative one.
  if (runtimeFolder.is_absolute() && !EnvironmentValue("TONALYX_ROOT")) {
    return {runtimeFolder, LockPlace::Missing::Fail};
  }
  return {stateFolder, LockPlace::Missing::Make};
}

UserInstance::UserInstance(LockPlace place) : place_(std::move(place)) {}

UserInstance::~UserInstance() {
  StopServing();
}

bool UserInstance::Acquire(std::u16string_view name) {
  if (lock_.IsOpen()) return true;
  baseName_ = ToUtf8(name) + '-' + std::to_string(geteuid());
  if (place_.missing == LockPlace::Missing::Make) MakeStateFolder(place_.folder);
  folder_ = FileDescriptor(open(place_.folder.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
  Attempt attempt = Attempt::Vanished;
  for (int i = 0; i < kLockAttempts && attempt == Attempt::Vanished; ++i) attempt = TryLock();
  if (attempt == Attempt::CannotBeMade) {
    std::fprintf(stderr, "tonalyx: cannot make the lock %s.lock in %s\n", baseName_.c_str(),
                 place_.folder.c_str());
  }
  return attempt == Attempt::Acquired;
}

UserInstance::Attempt UserInstance::TryLock() {
  const std::string fileName = baseName_ + ".lock";
  FileDescriptor file(openat(folder_.Get(), fileName.c_str(),
                             O_RDWR | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC, kLockMode));
  struct stat opened {};
  if (!file.IsOpen() || fstat(file.Get(), &opened) != 0 || !S_ISREG(opened.st_mode) ||
      opened.st_uid != geteuid()) {
    return Attempt::CannotBeMade;
  }
  if (flock(file.Get(), LOCK_EX | LOCK_NB) != 0) {
    return errno == EWOULDBLOCK ? Attempt::Taken : Attempt::CannotBeMade;
  }
  if (!IsStillNamed(folder_, fileName, file)) return Attempt::Vanished;
  fchmod(file.Get(), kLockMode);
  lock_ = std::move(file);
  return Attempt::Acquired;
}

bool UserInstance::BringRunningCopyForward(std::span<const std::u16string_view> titles) {
  if (lock_.IsOpen() || !folder_.IsOpen()) return false;
  const RaiseRequest request{{titles.begin(), titles.end()}, ActivationToken()};
  return SendRaiseRequest({folder_, baseName_ + ".socket"}, request, kRaiseTimeout);
}

void UserInstance::ServeRequests(RaiseServer::Handler raise) {
  StopServing();
  if (!lock_.IsOpen()) return;
  server_ =
      std::make_unique<RaiseServer>(RaiseAddress{folder_, baseName_ + ".socket"}, std::move(raise));
}

void UserInstance::StopServing() {
  if (!server_) return;
  server_.reset();
  unlinkat(folder_.Get(), (baseName_ + ".socket").c_str(), 0);
}

}  // namespace platform
