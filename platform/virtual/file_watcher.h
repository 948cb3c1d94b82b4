// Notices that a file is replaced, written or removed.
#pragma once

#include <filesystem>
#include <memory>

namespace platform {

class FileWatcher {
 public:
  virtual ~FileWatcher() = default;

  // Begins to note changes. Called once, before the first wait.
  virtual void Begin() = 0;

  // Blocks until something happened to the file since Begin or the last return; changes that came
  // meanwhile are one. False when interrupted. Called by one thread.
  virtual bool WaitForChange() = 0;

  // Ends the running and every later wait. Any thread.
  virtual void Interrupt() = 0;
};

// The backend's own; the file need not exist yet, its folder has to.
std::unique_ptr<FileWatcher> MakeFileWatcher(const std::filesystem::path& file);

}  // namespace platform
