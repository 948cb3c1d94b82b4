// Files in memory.
#pragma once

#include <cstddef>
#include <limits>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/files.h"

namespace platform {

// Paths are compared as they stand and divided by "/". Folders need no making. One thread at a
// time; open files may outlive the object.
class FakeFileSystem : public FileSystem {
 public:
  explicit FakeFileSystem(std::u16string programFolder = u"/program/",
                          std::u16string diagnosticLogPath = u"/state/Velsona.txt");

  // What a test puts there and looks at; bytes as characters.
  void PutFile(std::u16string_view path, std::string_view bytes);
  void PutFolder(std::u16string_view path);
  std::optional<std::string> Contents(std::u16string_view path) const;

  // Faults. A denied path neither opens nor is created; a kept one cannot be removed; reads at or
  // past `offset` fail; once `bytes` more have been written, writes fail half done.
  void DenyOpening(std::u16string_view path);
  void DenyRemoval(std::u16string_view path);
  void FailReadsFrom(std::u16string_view path, std::size_t offset);
  void SetFreeSpace(std::size_t bytes);

  std::unique_ptr<File> OpenExisting(std::u16string_view path, FileAccess access) override;
  std::unique_ptr<File> CreateNew(std::u16string_view path) override;
  std::unique_ptr<File> CreateAlways(std::u16string_view path) override;
  bool Remove(std::u16string_view path) override;
  std::u16string ProgramFolder() override;
  std::vector<std::u16string> FindByExtension(std::u16string_view folder,
                                              std::u16string_view extension) override;
  std::u16string DiagnosticLogPath() override;

 private:
  static constexpr std::size_t kNever = std::numeric_limits<std::size_t>::max();

  enum class Kind { File, Folder };

  struct Node {
    Kind kind = Kind::File;
    std::string bytes;
    bool held = false;
    bool removalDenied = false;
    std::size_t readsFailFrom = kNever;
  };

  class Handle;

  Node& NodeAt(std::u16string_view path);
  std::unique_ptr<File> Hold(const std::shared_ptr<Node>& node, FileAccess access);

  std::u16string programFolder_;
  std::u16string diagnosticLogPath_;
  std::map<std::u16string, std::shared_ptr<Node>, std::less<>> nodes_;
  std::vector<std::u16string> denied_;
  std::shared_ptr<std::size_t> freeSpace_;
};

}  // namespace platform
