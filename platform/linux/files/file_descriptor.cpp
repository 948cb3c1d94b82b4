#include "platform/linux/files/file_descriptor.h"

#include <fcntl.h>
#include <sys/stat.h>

namespace platform {

std::string DescriptorPath(const FileDescriptor& file) {
  return "/proc/self/fd/" + std::to_string(file.Get());
}

bool IsStillNamed(const FileDescriptor& folder, const std::string& name,
                  const FileDescriptor& file) {
  struct stat named {};
  struct stat opened {};
  return fstatat(folder.Get(), name.c_str(), &named, AT_SYMLINK_NOFOLLOW) == 0 &&
         fstat(file.Get(), &opened) == 0 && named.st_dev == opened.st_dev &&
         named.st_ino == opened.st_ino;
}

}  // namespace platform
