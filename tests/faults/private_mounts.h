// Small file systems of a test's own: seen by this process and its children only, and gone with
// them.
#pragma once

#include <fcntl.h>
#include <sched.h>
#include <sys/mount.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <string>
#include <system_error>
#include <utility>

namespace faults {

// False where this user may not mount; then nothing has changed.
inline bool LeaveCommonMounts() {
  return geteuid() == 0 && unshare(CLONE_NEWNS) == 0 &&
         mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
}

// A file system in memory on the folder, until destruction.
class SmallDisk {
 public:
  // Throws std::filesystem::filesystem_error when it cannot be mounted.
  SmallDisk(std::filesystem::path folder, int kilobytes) : folder_(std::move(folder)) {
    std::filesystem::create_directories(folder_);
    Mount(0, kilobytes);
  }
  ~SmallDisk() { umount2(folder_.c_str(), MNT_DETACH); }
  SmallDisk(const SmallDisk&) = delete;
  SmallDisk& operator=(const SmallDisk&) = delete;

  void Resize(int kilobytes) { Mount(MS_REMOUNT, kilobytes); }
  void MakeReadOnly(int kilobytes) { Mount(MS_REMOUNT | MS_RDONLY, kilobytes); }

 private:
  void Mount(unsigned long flags, int kilobytes) {
    const std::string options = "mode=777,size=" + std::to_string(kilobytes) + "k";
    if (mount("none", folder_.c_str(), "tmpfs", flags, options.c_str()) != 0) {
      throw std::filesystem::filesystem_error("mount", folder_,
                                              std::error_code(errno, std::generic_category()));
    }
  }

  std::filesystem::path folder_;
};

// While it lives nobody can write where the machine's state folder would be, so that the user's own
// is used.
class NoMachineFolder {
 public:
  NoMachineFolder() : disk_("/var/lib", 4) { disk_.MakeReadOnly(4); }

 private:
  SmallDisk disk_;
};

// Writes to the file until nothing more fits.
inline void FillDisk(const std::filesystem::path& file) {
  const int descriptor = open(file.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
  const std::string block(512, 'x');
  while (write(descriptor, block.data(), block.size()) > 0) {
  }
  close(descriptor);
}

}  // namespace faults
