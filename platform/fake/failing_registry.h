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

namespace platform {

enum class RegistryStep { Open, Create, Set, Query, Watch, Commit };

class FailingRegistry : public Registry {
 public:
  // `name` is the value's, empty for keys; a commit has no path either.
  using Fault =
      std::function<bool(RegistryStep step, std::u16string_view path, std::u16string_view name)>;

  explicit FailingRegistry(Registry& inner) : inner_(inner) {}

  void SetFault(Fault fault) { fault_ = std::move(fault); }

  // Write transactions begun, and changes made outside of any.
  int WriteScopes() const { return writeScopes_; }
  int UnprotectedChanges() const { return unprotectedChanges_; }

  // The access masks with which each key was asked for, and the keys that are open now.
  const std::map<std::u16string, std::set<std::uint32_t>>& Accesses() const { return accesses_; }
  int OpenKeys() const { return openKeys_; }

  std::unique_ptr<RegistryKey> OpenKey(RegistryRoot root, std::u16string_view path,
                                       RegistryAccess access) override {
    accesses_[std::u16string(path)].insert(access);
    if (Fails(RegistryStep::Open, path, {})) return nullptr;
    return Wrap(path, inner_.OpenKey(root, path, access));
  }

  std::unique_ptr<RegistryKey> OpenRoot(RegistryRoot root) override {
    return inner_.OpenRoot(root);
  }

  std::unique_ptr<RegistryKey> CreateKey(RegistryRoot root, std::u16string_view path,
                                         RegistryAccess access, RegistryDisposition* disposition,
                                         std::u16string_view sddl) override {
    accesses_[std::u16string(path)].insert(access);
    CountChange();
    if (Fails(RegistryStep::Create, path, {})) return nullptr;
    return Wrap(path, inner_.CreateKey(root, path, access, disposition, sddl));
  }

  RegistryStatus RemoveTree(RegistryRoot root, std::u16string_view path) override {
    return inner_.RemoveTree(root, path);
  }

  std::unique_ptr<RegistryScope> BeginRead() override { return inner_.BeginRead(); }

  std::unique_ptr<RegistryWriteScope> BeginWrite() override {
    ++writeScopes_;
    return std::make_unique<Scope>(*this, inner_.BeginWrite());
  }

 private:
  class Scope : public RegistryWriteScope {
   public:
    Scope(FailingRegistry& registry, std::unique_ptr<RegistryWriteScope> inner)
        : registry_(registry), inner_(std::move(inner)) {
      ++registry_.openScopes_;
    }
    ~Scope() override { --registry_.openScopes_; }
    Scope(const Scope&) = delete;
    Scope& operator=(const Scope&) = delete;

    RegistryStatus Commit() override {
      if (registry_.Fails(RegistryStep::Commit, {}, {})) {
        return RegistryStatus::WriteFault;
      }
      return inner_->Commit();
    }

   private:
    FailingRegistry& registry_;
    std::unique_ptr<RegistryWriteScope> inner_;
  };

  class Key : public RegistryKey {
   public:
    Key(FailingRegistry& registry, std::u16string_view path, std::unique_ptr<RegistryKey> inner)
        : registry_(registry), path_(path), inner_(std::move(inner)) {
      ++registry_.openKeys_;
    }
    ~Key() override { --registry_.openKeys_; }
    Key(const Key&) = delete;
    Key& operator=(const Key&) = delete;

    RegistryStatus QueryValue(std::u16string_view name, RegistryType* type, void* data,
                              std::uint32_t* size) override {
      if (registry_.Fails(RegistryStep::Query, path_, name)) {
        return RegistryStatus::FileNotFound;
      }
      return inner_->QueryValue(name, type, data, size);
    }

    RegistryStatus SetValue(std::u16string_view name, RegistryType type,
                            std::span<const std::byte> data) override {
      registry_.CountChange();
      if (registry_.Fails(RegistryStep::Set, path_, name)) {
        return RegistryStatus::WriteFault;
      }
      return inner_->SetValue(name, type, data);
    }

    RegistryStatus RemoveValue(std::u16string_view name) override {
      return inner_->RemoveValue(name);
    }
    RegistryStatus EnumerateSubKey(std::uint32_t index, std::u16string* name) override {
      return inner_->EnumerateSubKey(index, name);
    }
    RegistryStatus EnumerateValue(std::uint32_t index, std::u16string* name) override {
      return inner_->EnumerateValue(index, name);
    }
    RegistryStatus NotifyChange(WakeEvent& wake) override {
      if (registry_.Fails(RegistryStep::Watch, path_, {})) {
        return RegistryStatus::FileNotFound;
      }
      return inner_->NotifyChange(wake);
    }
    RegistryStatus SetAccessList(std::u16string_view sddl) override {
      return inner_->SetAccessList(sddl);
    }

   private:
    FailingRegistry& registry_;
    std::u16string path_;
    std::unique_ptr<RegistryKey> inner_;
  };

  bool Fails(RegistryStep step, std::u16string_view path, std::u16string_view name) const {
    return fault_ && fault_(step, path, name);
  }

  void CountChange() {
    if (openScopes_ == 0) ++unprotectedChanges_;
  }

  std::unique_ptr<RegistryKey> Wrap(std::u16string_view path, std::unique_ptr<RegistryKey> inner) {
    if (!inner) return nullptr;
    return std::make_unique<Key>(*this, path, std::move(inner));
  }

  Registry& inner_;
  Fault fault_;
  int openScopes_ = 0;
  int writeScopes_ = 0;
  int unprotectedChanges_ = 0;
  int openKeys_ = 0;
  std::map<std::u16string, std::set<std::uint32_t>> accesses_;
};

}  // namespace platform
