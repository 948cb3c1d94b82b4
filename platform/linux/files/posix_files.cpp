#include "platform/linux/files/posix_files.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <optional>
#include <utility>

#include "platform/linux/files/file_descriptor.h"
#include "platform/linux/files/state_folder.h"
#include "platform/text.h"

namespace platform {
namespace {

constexpr mode_t kFileMode = 0666;

// Not waiting for a FIFO's other end, and never taking a terminal over: what is opened may turn out
// to be no regular file.
constexpr int kOpenFlags = O_NONBLOCK | O_CLOEXEC | O_NOCTTY;

class PosixFile : public File {
 public:
  explicit PosixFile(FileDescriptor file) : file_(std::move(file)) {}

  bool Read(std::span<std::byte> buffer, std::size_t* read) override {
    *read = 0;
    while (*read < buffer.size()) {
      const std::span<std::byte> rest = buffer.subspan(*read);
      const ssize_t count = ::read(file_.Get(), rest.data(), rest.size());
      if (count == 0) break;
      if (count > 0) {
        *read += static_cast<std::size_t>(count);
      } else if (errno != EINTR) {
        return false;
      }
    }
    return true;
  }

  bool Write(std::span<const std::byte> bytes) override {
    while (!bytes.empty()) {
      const ssize_t count = ::write(file_.Get(), bytes.data(), bytes.size());
      if (count >= 0) {
        bytes = bytes.subspan(static_cast<std::size_t>(count));
      } else if (errno != EINTR) {
        return false;
      }
    }
    return true;
  }

 private:
  FileDescriptor file_;
};

// The path as the system wants it; nothing when a NUL would cut it short.
std::optional<std::string> SystemPath(std::u16string_view path) {
  if (path.find(u'\0') != std::u16string_view::npos) return std::nullopt;
  return ToUtf8(path);
}

// Whether the descriptor is one of a regular file that nobody else holds; holds it then. Where the
// file system knows no locks, nobody holds anything.
bool Hold(const FileDescriptor& file) {
  if (!file.IsOpen()) return false;
  struct stat status {};
  if (fstat(file.Get(), &status) != 0 || !S_ISREG(status.st_mode)) return false;
  return flock(file.Get(), LOCK_EX | LOCK_NB) == 0 || errno != EWOULDBLOCK;
}

}  // namespace

PosixFileSystem::PosixFileSystem(std::filesystem::path stateFolder)
    : stateFolder_(std::move(stateFolder)), logPath_(stateFolder_ / "Velsona.txt") {}

int PosixFileSystem::LinkRule(const std::string& path) const {
  return path == logPath_ ? O_NOFOLLOW : 0;
}

std::unique_ptr<File> PosixFileSystem::OpenExisting(std::u16string_view path, FileAccess access) {
  const std::optional<std::string> systemPath = SystemPath(path);
  if (!systemPath) return nullptr;
  const int mode = access == FileAccess::Read ? O_RDONLY : O_WRONLY | O_APPEND;
  FileDescriptor file(open(systemPath->c_str(), mode | kOpenFlags | LinkRule(*systemPath)));
  if (!Hold(file)) return nullptr;
  return std::make_unique<PosixFile>(std::move(file));
}

std::unique_ptr<File> PosixFileSystem::CreateNew(std::u16string_view path) {
  const std::optional<std::string> systemPath = SystemPath(path);
  if (!systemPath) return nullptr;
  const bool isLog = *systemPath == logPath_;
  if (isLog) MakeStateFolder(stateFolder_);
  FileDescriptor file(
      open(systemPath->c_str(), O_WRONLY | O_APPEND | O_CREAT | O_EXCL | kOpenFlags, kFileMode));
  // Whoever starts the program next appends to the log, whatever the umask of this user.
  if (isLog && file.IsOpen()) fchmod(file.Get(), kFileMode);
  if (!Hold(file)) return nullptr;
  return std::make_unique<PosixFile>(std::move(file));
}

std::unique_ptr<File> PosixFileSystem::CreateAlways(std::u16string_view path) {
  const std::optional<std::string> systemPath = SystemPath(path);
  if (!systemPath) return nullptr;
  // Emptied only once it is ours.
  FileDescriptor file(open(systemPath->c_str(),
                           O_WRONLY | O_CREAT | kOpenFlags | LinkRule(*systemPath), kFileMode));
  if (!Hold(file) || ftruncate(file.Get(), 0) != 0) return nullptr;
  return std::make_unique<PosixFile>(std::move(file));
}

bool PosixFileSystem::Remove(std::u16string_view path) {
  const std::optional<std::string> systemPath = SystemPath(path);
  return systemPath && unlink(systemPath->c_str()) == 0;
}

std::u16string PosixFileSystem::ProgramFolder() {
  std::error_code error;
  const std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe", error);
  return FromUtf8((program.parent_path() / "").native());
}

std::vector<std::u16string> PosixFileSystem::FindByExtension(std::u16string_view folder,
                                                             std::u16string_view extension) {
  std::vector<std::u16string> names;
  const std::optional<std::string> systemPath = SystemPath(folder);
  if (!systemPath) return names;
  std::error_code error;
  std::filesystem::directory_iterator entry(*systemPath, error);
  for (; !error && entry != std::filesystem::directory_iterator(); entry.increment(error)) {
    std::u16string name = FromUtf8(entry->path().filename().native());
    if (EndsWithIgnoreCase(name, extension)) names.push_back(std::move(name));
  }
  std::ranges::sort(names, [](const std::u16string& left, const std::u16string& right) {
    const int order = CompareIgnoreCase(left, right);
    return order != 0 ? order < 0 : left < right;
  });
  return names;
}

std::u16string PosixFileSystem::DiagnosticLogPath() {
  return FromUtf8(logPath_);
}

}  // namespace platform
