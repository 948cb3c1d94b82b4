// Files through POSIX calls. "Held by another" is an exclusive advisory lock on the file.
#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/files.h"

namespace platform {

// Paths are UTF-8 outside; bytes of a name that are no UTF-8 survive. May be used from any thread.
class PosixFileSystem : public FileSystem {
 public:
  // The diagnostic log lies in `stateFolder`, which is made, with its parents, when the log is.
  explicit PosixFileSystem(std::filesystem::path stateFolder);

  std::unique_ptr<File> OpenExisting(std::u16string_view path, FileAccess access) override;
  std::unique_ptr<File> CreateNew(std::u16string_view path) override;
  std::unique_ptr<File> CreateAlways(std::u16string_view path) override;
  bool Remove(std::u16string_view path) override;
  std::u16string ProgramFolder() override;
  std::vector<std::u16string> FindByExtension(std::u16string_view folder,
                                              std::u16string_view extension) override;
  std::u16string DiagnosticLogPath() override;

 private:
  // The state folder is open to every user, so a link in the log's place may be a trap.
  int LinkRule(const std::string& path) const;

  std::filesystem::path stateFolder_;
  std::string logPath_;
};

}  // namespace platform
