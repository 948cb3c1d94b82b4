// A registry whose operations fail when the test says so, and that watches over transactions.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <utility>

#include "platform/registry.h"

namespace support {

enum class RegistryStep { Open, Create, Set, Query, Watch, Commit };

class FailingRegistry : public platform::Registry {
 public:
  // `name` is the value's, empty for keys; a commit has no path either.
  using Fault =
      std::function<bool(RegistryStep step, std::u16string_view path, std::u16string_view name)>;

  explicit FailingRegistry(platform::Registry& inner) : inner_(inner) {}

  void SetFault(Fault fault) { fault_ = std::move(fault); }

  // Write transactions begun, and changes made outside of any.
  int WriteScopes() const { return writeScopes_; }
  int UnprotectedChanges() const { return unprotectedChanges_; }

  // The access masks with which each key was asked for, and the keys that are open now.
  const std::map<std::u16string, std::set<std::uint32_t>>& Accesses() const { return accesses_; }
  int OpenKeys() const { return openKeys_; }

  std::unique_ptr<platform::RegistryKey> OpenKey(platform::RegistryRoot root,
                                                 std::u16string_view path,
                                                 platform::RegistryAccess access) override {
    accesses_[std::u16string(path)].insert(access);
    if (Fails(RegistryStep::Open, path, {})) return nullptr;
    return Wrap(path, inner_.OpenKey(root, path, access));
  }

  std::unique_ptr<platform::RegistryKey> OpenRoot(platform::RegistryRoot root) override {
    return inner_.OpenRoot(root);
  }

  std::unique_ptr<platform::RegistryKey> CreateKey(platform::RegistryRoot root,
                                                   std::u16string_view path,
                                                   platform::RegistryAccess access,
                                                   platform::RegistryDisposition* disposition,
                                                   std::u16string_view sddl) override {
    accesses_[std::u16string(path)].insert(access);
    CountChange();
    if (Fails(RegistryStep::Create, path, {})) return nullptr;
    return Wrap(path, inner_.CreateKey(root, path, access, disposition, sddl));
  }

  platform::RegistryStatus RemoveTree(platform::RegistryRoot root,
                                      std::u16string_view path) override {
    return inner_.RemoveTree(root, path);
  }

  std::unique_ptr<platform::RegistryScope> BeginRead() override { return inner_.BeginRead(); }

  std::unique_ptr<platform::RegistryWriteScope> BeginWrite() override {
    ++writeScopes_;
    return std::make_unique<Scope>(*this, inner_.BeginWrite());
  }

 private:
  class Scope : public platform::RegistryWriteScope {
   public:
    Scope(FailingRegistry& registry, std::unique_ptr<platform::RegistryWriteScope> inner)
        : registry_(registry), inner_(std::move(inner)) {
      ++registry_.openScopes_;
    }
    ~Scope() override { --registry_.openScopes_; }
    Scope(const Scope&) = delete;
    Scope& operator=(const Scope&) = delete;

    platform::RegistryStatus Commit() override {
      if (registry_.Fails(RegistryStep::Commit, {}, {})) {
        return platform::RegistryStatus::WriteFault;
      }
      return inner_->Commit();
    }

   private:
    FailingRegistry& registry_;
    std::unique_ptr<platform::RegistryWriteScope> inner_;
  };

  class Key : public platform::RegistryKey {
   public:
    Key(FailingRegistry& registry, std::u16string_view path,
        std::unique_ptr<platform::RegistryKey> inner)
        : registry_(registry), path_(path), inner_(std::move(inner)) {
      ++registry_.openKeys_;
    }
    ~Key() override { --registry_.openKeys_; }
    Key(const Key&) = delete;
    Key& operator=(const Key&) = delete;

    platform::RegistryStatus QueryValue(std::u16string_view name, platform::RegistryType* type,
                                        void* data, std::uint32_t* size) override {
      if (registry_.Fails(RegistryStep::Query, path_, name)) {
        return platform::RegistryStatus::FileNotFound;
      }
      return inner_->QueryValue(name, type, data, size);
    }

    platform::RegistryStatus SetValue(std::u16string_view name, platform::RegistryType type,
                                      std::span<const std::byte> data) override {
      registry_.CountChange();
      if (registry_.Fails(RegistryStep::Set, path_, name)) {
        return platform::RegistryStatus::WriteFault;
      }
      return inner_->SetValue(name, type, data);
    }

    platform::RegistryStatus RemoveValue(std::u16string_view name) override {
      return inner_->RemoveValue(name);
    }
    platform::RegistryStatus EnumerateSubKey(std::uint32_t index, std::u16string* name) override {
      return inner_->EnumerateSubKey(index, name);
    }
    platform::RegistryStatus EnumerateValue(std::uint32_t index, std::u16string* name) override {
      return inner_->EnumerateValue(index, name);
    }
    platform::RegistryStatus NotifyChange(platform::WakeEvent& wake) override {
      if (registry_.Fails(RegistryStep::Watch, path_, {})) {
        return platform::RegistryStatus::FileNotFound;
      }
      return inner_->NotifyChange(wake);
    }
    platform::RegistryStatus SetAccessList(std::u16string_view sddl) override {
      return inner_->SetAccessList(sddl);
    }

   private:
    FailingRegistry& registry_;
    std::u16string path_;
    std::unique_ptr<platform::RegistryKey> inner_;
  };

  bool Fails(RegistryStep step, std::u16string_view path, std::u16string_view name) const {
    return fault_ && fault_(step, path, name);
  }

  void CountChange() {
    if (openScopes_ == 0) ++unprotectedChanges_;
  }

  std::unique_ptr<platform::RegistryKey> Wrap(std::u16string_view path,
                                              std::unique_ptr<platform::RegistryKey> inner) {
    if (!inner) return nullptr;
    return std::make_unique<Key>(*this, path, std::move(inner));
  }

  platform::Registry& inner_;
  Fault fault_;
  int openScopes_ = 0;
  int writeScopes_ = 0;
  int unprotectedChanges_ = 0;
  int openKeys_ = 0;
  std::map<std::u16string, std::set<std::uint32_t>> accesses_;
};

}  // namespace support
