// Files as the system opens them without sharing.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/files.h"

namespace platform {

class WindowsFileSystem : public FileSystem {
 public:
  std::unique_ptr<File> OpenExisting(std::u16string_view path, FileAccess access) override;
  std::unique_ptr<File> CreateNew(std::u16string_view path) override;
  std::unique_ptr<File> CreateAlways(std::u16string_view path) override;
  bool Remove(std::u16string_view path) override;
  std::u16string ProgramFolder() override;
  std::vector<std::u16string> FindByExtension(std::u16string_view folder,
                                              std::u16string_view extension) override;
  std::u16string DiagnosticLogPath() override;
};

}  // namespace platform
