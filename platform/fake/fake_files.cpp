#include "platform/fake/fake_files.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "platform/text.h"

namespace platform {

class FakeFileSystem::Handle : public File {
 public:
  Handle(std::shared_ptr<Node> node, FileAccess access, std::shared_ptr<std::size_t> freeSpace)
      : node_(std::move(node)), access_(access), freeSpace_(std::move(freeSpace)) {
    node_->held = true;
  }
  ~Handle() override { node_->held = false; }
  Handle(const Handle&) = delete;
  Handle& operator=(const Handle&) = delete;

  bool Read(std::span<std::byte> buffer, std::size_t* read) override {
    *read = 0;
    if (access_ != FileAccess::Read || position_ >= node_->readsFailFrom) return false;
    const std::size_t end = std::min(node_->bytes.size(), node_->readsFailFrom);
    const std::size_t count = std::min(buffer.size(), end - std::min(position_, end));
    if (count > 0) std::memcpy(buffer.data(), node_->bytes.data() + position_, count);
    position_ += count;
    *read = count;
    return true;
  }

  bool Write(std::span<const std::byte> bytes) override {
    if (access_ != FileAccess::Append) return false;
    const std::size_t count = std::min(bytes.size(), *freeSpace_);
    for (const std::byte byte : bytes.first(count)) {
      node_->bytes.push_back(static_cast<char>(byte));
    }
    *freeSpace_ -= count;
    return count == bytes.size();
  }

 private:
  std::shared_ptr<Node> node_;
  FileAccess access_;
  std::shared_ptr<std::size_t> freeSpace_;
  std::size_t position_ = 0;
};

FakeFileSystem::FakeFileSystem(std::u16string programFolder, std::u16string diagnosticLogPath)
    : programFolder_(std::move(programFolder)),
      diagnosticLogPath_(std::move(diagnosticLogPath)),
      freeSpace_(std::make_shared<std::size_t>(kNever)) {}

FakeFileSystem::Node& FakeFileSystem::NodeAt(std::u16string_view path) {
  std::shared_ptr<Node>& node = nodes_[std::u16string(path)];
  if (!node) node = std::make_shared<Node>();
  return *node;
}

void FakeFileSystem::PutFile(std::u16string_view path, std::string_view bytes) {
  NodeAt(path).bytes = bytes;
}

void FakeFileSystem::PutFolder(std::u16string_view path) {
  NodeAt(path).kind = Kind::Folder;
}

std::optional<std::string> FakeFileSystem::Contents(std::u16string_view path) const {
  const auto found = nodes_.find(path);
  if (found == nodes_.end() || found->second->kind == Kind::Folder) return std::nullopt;
  return found->second->bytes;
}

void FakeFileSystem::DenyOpening(std::u16string_view path) {
  denied_.emplace_back(path);
}

void FakeFileSystem::DenyRemoval(std::u16string_view path) {
  NodeAt(path).removalDenied = true;
}

void FakeFileSystem::FailReadsFrom(std::u16string_view path, std::size_t offset) {
  NodeAt(path).readsFailFrom = offset;
}

void FakeFileSystem::SetFreeSpace(std::size_t bytes) {
  *freeSpace_ = bytes;
}

std::unique_ptr<File> FakeFileSystem::Hold(const std::shared_ptr<Node>& node, FileAccess access) {
  return std::make_unique<Handle>(node, access, freeSpace_);
}

std::unique_ptr<File> FakeFileSystem::OpenExisting(std::u16string_view path, FileAccess access) {
  const auto found = nodes_.find(path);
  if (found == nodes_.end() || found->second->kind == Kind::Folder || found->second->held ||
      std::ranges::find(denied_, path) != denied_.end()) {
    return nullptr;
  }
  return Hold(found->second, access);
}

std::unique_ptr<File> FakeFileSystem::CreateNew(std::u16string_view path) {
  if (nodes_.contains(path)) return nullptr;
  return CreateAlways(path);
}

std::unique_ptr<File> FakeFileSystem::CreateAlways(std::u16string_view path) {
  if (std::ranges::find(denied_, path) != denied_.end()) return nullptr;
  const auto found = nodes_.find(path);
  if (found != nodes_.end() && (found->second->kind == Kind::Folder || found->second->held)) {
    return nullptr;
  }
  NodeAt(path).bytes.clear();
  return Hold(nodes_.find(path)->second, FileAccess::Append);
}

bool FakeFileSystem::Remove(std::u16string_view path) {
  const auto found = nodes_.find(path);
  if (found == nodes_.end() || found->second->kind == Kind::Folder ||
      found->second->removalDenied) {
    return false;
  }
  nodes_.erase(found);
  return true;
}

std::u16string FakeFileSystem::ProgramFolder() {
  return programFolder_;
}

std::vector<std::u16string> FakeFileSystem::FindByExtension(std::u16string_view folder,
                                                            std::u16string_view extension) {
  std::u16string prefix(folder);
  if (!prefix.ends_with(u'/')) prefix += u'/';
  std::vector<std::u16string> names;
  for (const auto& [path, node] : nodes_) {
    if (!path.starts_with(prefix)) continue;
    const std::u16string name = path.substr(prefix.size());
    if (name.find(u'/') == std::u16string::npos && EndsWithIgnoreCase(name, extension)) {
      names.push_back(name);
    }
  }
  std::ranges::sort(names, [](const std::u16string& left, const std::u16string& right) {
    return CompareIgnoreCase(left, right) < 0;
  });
  return names;
}

std::u16string FakeFileSystem::DiagnosticLogPath() {
  return diagnosticLogPath_;
}

}  // namespace platform
