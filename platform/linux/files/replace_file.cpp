#include "platform/replace_file.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <string>

#include "platform/linux/files/file_descriptor.h"

namespace platform {
namespace {

constexpr mode_t kFileMode = 0666;  // the umask's to cut

bool WriteAll(const FileDescriptor& file, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t count = write(file.Get(), bytes.data(), bytes.size());
    if (count >= 0) {
      bytes.remove_prefix(static_cast<std::size_t>(count));
    } else if (errno != EINTR) {
      return false;
    }
  }
  return true;
}

}  // namespace

bool ReplaceWholeFile(const std::filesystem::path& path, std::string_view bytes) {
  const std::string fresh = path.native() + "." + std::to_string(getpid());
  // Where others may write too, a file or a link may lie in wait under a name that can be guessed:
  // it is taken away or in the way, but never written to.
  unlink(fresh.c_str());
  const FileDescriptor file(
      open(fresh.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, kFileMode));
  if (!file.IsOpen()) return false;
  if (WriteAll(file, bytes) && std::rename(fresh.c_str(), path.c_str()) == 0) return true;
  unlink(fresh.c_str());
  return false;
}

std::optional<std::string> ReadWholeFile(const std::filesystem::path& path) {
  std::ifstream stream(path, std::ios::binary);
  if (!stream) return std::nullopt;
  std::string text((std::istreambuf_iterator<char>(stream)), std::istreambuf_iterator<char>());
  if (stream.bad()) return std::nullopt;
  return text;
}

}  // namespace platform
