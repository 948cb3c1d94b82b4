// FileWatcher on the system's notes about a folder.
#pragma once

#include <windows.h>

#include <array>
#include <filesystem>
#include <string>

#include "platform/virtual/file_watcher.h"
#include "platform/windows/handle.h"

namespace platform {

// A folder that does not exist brings no changes.
class FolderFileWatcher : public FileWatcher {
 public:
  explicit FolderFileWatcher(const std::filesystem::path& file);
  ~FolderFileWatcher() override;
  FolderFileWatcher(const FolderFileWatcher&) = delete;
  FolderFileWatcher& operator=(const FolderFileWatcher&) = delete;

  void Begin() override;
  bool WaitForChange() override;
  void Interrupt() override;

 private:
  void Ask();
  bool Concerns(DWORD size) const;

  const std::filesystem::path folder_;
  const std::u16string name_;
  KernelHandle interrupt_;
  KernelHandle noted_;
  KernelHandle watched_;
  OVERLAPPED request_{};
  bool asked_ = false;
  alignas(DWORD) std::array<std::byte, 16384> notes_;
};

}  // namespace platform
