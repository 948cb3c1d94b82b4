#include "platform/fake/fake_registry.h"

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <map>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "platform/registry_rules.h"
#include "platform/text.h"

namespace platform {
namespace {

struct NameLess {
  bool operator()(const std::u16string& left, const std::u16string& right) const {
    return CompareIgnoreCase(left, right) < 0;
  }
};

struct Value {
  RegistryType type = RegistryType::None;
  std::vector<std::byte> data;
};

class FakeKey;

struct Node {
  std::map<std::u16string, std::shared_ptr<Node>, NameLess> subKeys;
  std::map<std::u16string, Value, NameLess> values;
  std::u16string accessList;
  std::uint64_t changes = 0;
  bool deleted = false;
  std::set<FakeKey*> armed;
};

}  // namespace

struct FakeRegistry::Tree {
  std::mutex mutex;
  Node localMachine;
  Node classesRoot;

  Node& Root(RegistryRoot root) {
    return root == RegistryRoot::LocalMachine ? localMachine : classesRoot;
  }

  std::shared_ptr<Node> Find(RegistryRoot root, std::u16string_view path) {
    const auto parts = SplitRegistryPath(path);
    if (!parts) return nullptr;
    Node* node = &Root(root);
    std::shared_ptr<Node> found;
    for (const std::u16string_view part : *parts) {
      const auto next = node->subKeys.find(std::u16string(part));
      if (next == node->subKeys.end()) return nullptr;
      found = next->second;
      node = found.get();
    }
    return found;
  }
};

namespace {

class FakeScope : public RegistryScope {};

class FakeWriteScope : public RegistryWriteScope {
 public:
  RegistryStatus Commit() override { return RegistryStatus::Success; }
};

class FakeKey : public RegistryKey {
 public:
  FakeKey(std::shared_ptr<FakeRegistry::Tree> tree, std::shared_ptr<Node> node,
          RegistryAccess access)
      : tree_(std::move(tree)), node_(std::move(node)), access_(access) {}

  ~FakeKey() override {
    const std::lock_guard lock(tree_->mutex);
    node_->armed.erase(this);
  }

  RegistryStatus QueryValue(std::u16string_view name, RegistryType* type, void* data,
                            std::uint32_t* size) override {
    const std::lock_guard lock(tree_->mutex);
    if (const auto refused = Refusal(kRegistryQueryValue)) return *refused;
    const auto found = node_->values.find(std::u16string(name));
    if (found == node_->values.end()) return RegistryStatus::FileNotFound;
    if (type != nullptr) *type = found->second.type;
    return CopyRegistryValue(found->second.data, data, size);
  }

  RegistryStatus SetValue(std::u16string_view name, RegistryType type,
                          std::span<const std::byte> data) override {
    const std::lock_guard lock(tree_->mutex);
    if (const auto refused = Refusal(kRegistrySetValue)) return *refused;
    if (name.size() > kRegistryValueNameLimit) return RegistryStatus::InvalidParameter;
    node_->values[std::u16string(name)] = {type, {data.begin(), data.end()}};
    CountChange(*node_);
    return RegistryStatus::Success;
  }

  RegistryStatus RemoveValue(std::u16string_view name) override {
    const std::lock_guard lock(tree_->mutex);
    if (const auto refused = Refusal(kRegistrySetValue)) return *refused;
    if (node_->values.erase(std::u16string(name)) == 0) return RegistryStatus::FileNotFound;
    CountChange(*node_);
    return RegistryStatus::Success;
  }

  RegistryStatus EnumerateSubKey(std::uint32_t index, std::u16string* name) override {
    const std::lock_guard lock(tree_->mutex);
    if (const auto refused = Refusal(kRegistryEnumerateSubKeys)) return *refused;
    return NameAt(node_->subKeys, index, name);
  }

  RegistryStatus EnumerateValue(std::uint32_t index, std::u16string* name) override {
    const std::lock_guard lock(tree_->mutex);
    if (const auto refused = Refusal(kRegistryQueryValue)) return *refused;
    return NameAt(node_->values, index, name);
  }

  RegistryStatus NotifyChange(WakeEvent& wake) override {
    const std::lock_guard lock(tree_->mutex);
    if (const auto refused = Refusal(kRegistryNotify)) return *refused;
    if (node_->armed.contains(this)) return RegistryStatus::Success;
    if (hasFired_ && node_->changes != seen_) {
      seen_ = node_->changes;
      wake.Set();
      return RegistryStatus::Success;
    }
    wake_ = &wake;
    node_->armed.insert(this);
    return RegistryStatus::Success;
  }

  RegistryStatus SetAccessList(std::u16string_view sddl) override {
    const std::lock_guard lock(tree_->mutex);
    if (const auto refused = Refusal(kRegistryWriteAccessList)) return *refused;
    if (!IsAccessList(sddl)) return RegistryStatus::InvalidParameter;
    node_->accessList = sddl;
    return RegistryStatus::Success;
  }

  // Wakes everyone who waits for a change of the node. Under the tree's lock.
  static void CountChange(Node& node) {
    ++node.changes;
    for (FakeKey* key : std::exchange(node.armed, {})) key->Fire();
  }

 private:
  std::optional<RegistryStatus> Refusal(RegistryAccess needed) const {
    if ((access_ & needed) == 0) return RegistryStatus::AccessDenied;
    if (node_->deleted) return RegistryStatus::FileNotFound;
    return std::nullopt;
  }

  template <typename Map>
  static RegistryStatus NameAt(const Map& map, std::uint32_t index, std::u16string* name) {
    if (index >= map.size()) return RegistryStatus::NoMoreItems;
    *name = std::next(map.begin(), index)->first;
    return RegistryStatus::Success;
  }

  void Fire() {
    hasFired_ = true;
    seen_ = node_->changes;
    wake_->Set();
  }

  std::shared_ptr<FakeRegistry::Tree> tree_;
  std::shared_ptr<Node> node_;
  RegistryAccess access_;
  WakeEvent* wake_ = nullptr;
  bool hasFired_ = false;
  std::uint64_t seen_ = 0;  // the node's changes when it last fired
};

void DeleteNode(Node& node) {
  for (const auto& [name, subKey] : node.subKeys) DeleteNode(*subKey);
  node.subKeys.clear();
  node.values.clear();
  node.deleted = true;
  FakeKey::CountChange(node);
}

}  // namespace

FakeRegistry::FakeRegistry() : tree_(std::make_shared<Tree>()) {}
FakeRegistry::~FakeRegistry() = default;

std::unique_ptr<RegistryKey> FakeRegistry::OpenKey(RegistryRoot root, std::u16string_view path,
                                                   RegistryAccess access) {
  const std::lock_guard lock(tree_->mutex);
  std::shared_ptr<Node> node = tree_->Find(root, path);
  if (node == nullptr) return nullptr;
  return std::make_unique<FakeKey>(tree_, std::move(node), access);
}

std::unique_ptr<RegistryKey> FakeRegistry::OpenRoot(RegistryRoot root) {
  // The root lives as long as the tree, which the key shares.
  std::shared_ptr<Node> node(tree_, &tree_->Root(root));
  return std::make_unique<FakeKey>(tree_, std::move(node), kRegistryEnumerateSubKeys);
}

std::unique_ptr<RegistryKey> FakeRegistry::CreateKey(RegistryRoot root, std::u16string_view path,
                                                     RegistryAccess access,
                                                     RegistryDisposition* disposition,
                                                     std::u16string_view sddl) {
  const auto parts = SplitRegistryPath(path);
  if (!parts || (!sddl.empty() && !IsAccessList(sddl))) return nullptr;
  const std::lock_guard lock(tree_->mutex);
  const bool exists = tree_->Find(root, path) != nullptr;
  if (disposition != nullptr) {
    *disposition = exists ? RegistryDisposition::OpenedExisting : RegistryDisposition::CreatedNew;
  }
  std::shared_ptr<Node> node;
  Node* parent = &tree_->Root(root);
  for (const std::u16string_view part : *parts) {
    std::shared_ptr<Node>& subKey = parent->subKeys[std::u16string(part)];
    if (subKey == nullptr) subKey = std::make_shared<Node>();
    node = subKey;
    parent = node.get();
  }
  if (!exists) node->accessList = sddl;
  return std::make_unique<FakeKey>(tree_, std::move(node), access);
}

RegistryStatus FakeRegistry::RemoveTree(RegistryRoot root, std::u16string_view path) {
  const std::lock_guard lock(tree_->mutex);
  const std::shared_ptr<Node> node = tree_->Find(root, path);
  if (node == nullptr) return RegistryStatus::FileNotFound;
  const std::size_t cut = path.rfind(u'\\');
  Node* parent = &tree_->Root(root);
  if (cut != std::u16string_view::npos) parent = tree_->Find(root, path.substr(0, cut)).get();
  parent->subKeys.erase(std::u16string(path.substr(cut + 1)));
  DeleteNode(*node);
  return RegistryStatus::Success;
}

std::unique_ptr<RegistryScope> FakeRegistry::BeginRead() {
  return std::make_unique<FakeScope>();
}

std::unique_ptr<RegistryWriteScope> FakeRegistry::BeginWrite() {
  return std::make_unique<FakeWriteScope>();
}

std::u16string FakeRegistry::AccessListOf(RegistryRoot root, std::u16string_view path) const {
  const std::lock_guard lock(tree_->mutex);
  const std::shared_ptr<Node> node = tree_->Find(root, path);
  return node == nullptr ? std::u16string() : node->accessList;
}

}  // namespace platform
