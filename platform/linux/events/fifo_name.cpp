#include "platform/linux/events/fifo_name.h"

#include <fcntl.h>
#include <sys/stat.h>

#include "platform/text.h"

namespace platform {
namespace {

bool IsPlain(char byte) {
  return (byte >= 'A' && byte <= 'Z') || (byte >= 'a' && byte <= 'z') ||
         (byte >= '0' && byte <= '9') ||
         std::string_view("{}._-").find(byte) != std::string_view::npos;
}

}  // namespace

std::string FifoName(std::u16string_view eventName) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  const std::string bytes = ToUtf8(eventName);
  std::string name;
  name.reserve(3 * bytes.size());
  for (const char byte : bytes) {
    if (IsPlain(byte)) {
      name += byte;
      continue;
    }
    const auto code = static_cast<unsigned char>(byte);
    name += '%';
    name += kDigits[code >> 4U];
    name += kDigits[code & 0x0FU];
  }
  return name;
}

FileDescriptor OpenEventsFolder(const std::filesystem::path& folder) {
  return FileDescriptor(open(folder.c_str(), O_PATH | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
}

bool IsFifo(const FileDescriptor& descriptor) {
  struct stat status {};
  return fstat(descriptor.Get(), &status) == 0 && S_ISFIFO(status.st_mode);
}

}  // namespace platform
