#include "platform/linux/registry/registry_files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <optional>
#include <string>

#include "platform/linux/files/state_folder.h"
#include "platform/linux/registry/damaged_registry.h"

namespace platform {
namespace {

constexpr mode_t kFolderMode = 0777;
constexpr mode_t kFileMode = 0666;
constexpr int kNoDescriptor = -1;

// A new file open to everyone, whatever the umask, for writing; kNoDescriptor when it exists.
int CreateFile(const std::filesystem::path& file) {
  const int descriptor =
      open(file.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, kFileMode);
  if (descriptor != kNoDescriptor) static_cast<void>(fchmod(descriptor, kFileMode));
  return descriptor;
}

// Never through a link: in a folder that everyone may write to it could lead anywhere. With an
// O_PATH descriptor, because closing an ordinary one would drop the locks that this process holds
// on the file.
void OpenFileToEveryone(const std::filesystem::path& file) {
  const int descriptor = open(file.c_str(), O_PATH | O_NOFOLLOW | O_CLOEXEC);
  if (descriptor == kNoDescriptor) return;
  struct stat status {};
  if (fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode)) {
    const std::string self = "/proc/self/fd/" + std::to_string(descriptor);
    static_cast<void>(chmod(self.c_str(), kFileMode));
  }
  close(descriptor);
}

}  // namespace

std::unique_ptr<RegistryDatabase> RegistryFiles::OpenDatabase(RegistryDatabase::Opening opening) {
  // One at a time: no connection of this process may have the new file open while it is closed
  // here.
  const std::lock_guard lock(opening_);
  const std::filesystem::path file = folder_ / kDatabaseName;
  if (opening == RegistryDatabase::Opening::Create && MakeStateFolder(folder_)) {
    const int descriptor = CreateFile(file);
    if (descriptor != kNoDescriptor) close(descriptor);
  }
  RegistryProblem problem;
  std::unique_ptr<RegistryDatabase> database =
      RegistryDatabase::Open(file, opening, patience_, &problem);
  Tell(problem.text);
  return database;
}

void RegistryFiles::Tell(const std::string& problem) {
  if (problem.empty()) return;
  const std::lock_guard lock(telling_);
  if (!told_.insert(problem).second) return;
  const std::filesystem::path file = folder_ / kDatabaseName;
  static_cast<void>(std::fprintf(stderr, "tonalyx: %s: %s\n", file.c_str(), problem.c_str()));
}

void RegistryFiles::SetDamagedAside() {
  const std::lock_guard lock(opening_);
  const std::optional<std::filesystem::path> name = SetDamagedRegistryAside(folder_);
  if (name) Tell("it is damaged and now called " + name->filename().native());
}

bool RegistryFiles::HasDatabase() const {
  std::error_code error;
  return std::filesystem::exists(folder_ / kDatabaseName, error) || error;
}

void RegistryFiles::Touch() const {
  const std::filesystem::path file = folder_ / kChangedName;
  int descriptor = open(file.c_str(), O_WRONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
  if (descriptor == kNoDescriptor) descriptor = CreateFile(file);
  if (descriptor == kNoDescriptor) return;
  [[maybe_unused]] const ssize_t size = pwrite(descriptor, "\n", 1, 0);
  close(descriptor);
}

void RegistryFiles::OpenToEveryone() const {
  static_cast<void>(chmod(folder_.c_str(), kFolderMode));
  for (const std::string_view name : {kDatabaseName, kLogName, kChangedName}) {
    OpenFileToEveryone(folder_ / name);
  }
  OpenFileToEveryone(folder_ / "registry.db-shm");
}

std::uintmax_t RegistryFiles::LogSize() const {
  std::error_code error;
  const std::uintmax_t size = std::filesystem::file_size(folder_ / kLogName, error);
  return error ? 0 : size;
}

}  // namespace platform
