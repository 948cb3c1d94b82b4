#include "platform/linux/files/state_folder.h"

#include <fcntl.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdlib>

#include "platform/linux/files/file_descriptor.h"

namespace platform {
namespace {

constexpr const char* kMachineFolder = "/var/lib/norvane/velsona";
constexpr const char* kUserFolder = "norvane/velsona";
constexpr mode_t kParentMode = 0755;
constexpr mode_t kFolderMode = 0777;

// Whether this user can write in the folder, or make it if it is missing.
bool IsWritable(const std::filesystem::path& folder) {
  if (faccessat(AT_FDCWD, folder.c_str(), W_OK | X_OK, AT_EACCESS) == 0) return true;
  return errno == ENOENT && folder.has_relative_path() && IsWritable(folder.parent_path());
}

std::filesystem::path HomeFolder() {
  if (const auto home = EnvironmentValue("HOME")) return *home;
  passwd entry{};
  passwd* found = nullptr;
  std::array<char, 4096> buffer{};
  if (getpwuid_r(geteuid(), &entry, buffer.data(), buffer.size(), &found) == 0 &&
      found != nullptr && found->pw_dir != nullptr) {
    return found->pw_dir;
  }
  return "/";
}

std::filesystem::path UserStateFolder() {
  const std::filesystem::path stateHome = EnvironmentValue("XDG_STATE_HOME").value_or("");
  // The desktop's rules say to ignore a relative one.
  if (stateHome.is_absolute()) return stateHome / kUserFolder;
  return HomeFolder() / ".local/state" / kUserFolder;
}

// The mode takes the umask out, through a handle: where everyone may write, somebody may have put a
// link in the new folder's place by now.
bool OpenNewFolder(const std::filesystem::path& folder, mode_t mode) {
  const FileDescriptor made(open(folder.c_str(), O_PATH | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
  return made.IsOpen() && chmod(DescriptorPath(made).c_str(), mode) == 0;
}

bool MakeFolder(const std::filesystem::path& folder, mode_t mode) {
  if (mkdir(folder.c_str(), mode) == 0) return OpenNewFolder(folder, mode);
  std::error_code error;
  return errno == EEXIST && std::filesystem::is_directory(folder, error);
}

bool MakeParents(const std::filesystem::path& folder) {
  std::error_code error;
  if (folder.empty() || std::filesystem::is_directory(folder, error)) return true;
  return MakeParents(folder.parent_path()) && MakeFolder(folder, kParentMode);
}

}  // namespace

std::optional<std::string> EnvironmentValue(const char* name) {
  const char* value = std::getenv(name);
  if (value == nullptr || *value == '\0') return std::nullopt;
  return value;
}

std::filesystem::path StateFolder() {
  std::error_code error;
  if (const auto root = EnvironmentValue("TONALYX_ROOT")) {
    std::filesystem::path folder = std::filesystem::absolute(*root, error).lexically_normal();
    return folder.has_filename() ? folder : folder.parent_path();
  }
  if (IsWritable(kMachineFolder)) return kMachineFolder;
  return std::filesystem::absolute(UserStateFolder(), error).lexically_normal();
}

bool MakeStateFolder(const std::filesystem::path& folder) {
  return MakeParents(folder.parent_path()) && MakeFolder(folder, kFolderMode);
}

}  // namespace platform
