#include "platform/windows/registry/windows_registry.h"

#include <windows.h>

#include <optional>
#include <string>
#include <utility>

#include "platform/registry_rules.h"
#include "platform/windows/registry/access_list.h"
#include "platform/windows/registry/registry_status.h"
#include "platform/windows/registry/windows_registry_key.h"
#include "platform/windows/wide_text.h"

namespace platform {
namespace {

HKEY HandleOf(RegistryRoot root) {
  return root == RegistryRoot::LocalMachine ? HKEY_LOCAL_MACHINE : HKEY_CLASSES_ROOT;
}

// The system would overlook some empty parts.
std::optional<std::wstring> ToWidePath(std::u16string_view path) {
  return SplitRegistryPath(path) ? ToWideName(path) : std::nullopt;
}

std::unique_ptr<RegistryKey> Open(HKEY root, const wchar_t* path, RegistryAccess access) {
  HKEY key = nullptr;
  if (RegOpenKeyExW(root, path, 0, access, &key) != ERROR_SUCCESS) return nullptr;
  return std::make_unique<WindowsRegistryKey>(KeyHandle(key));
}

// Each write has counted by itself.
class WriteScope : public RegistryWriteScope {
 public:
  RegistryStatus Commit() override { return RegistryStatus::Success; }
};

}  // namespace

std::unique_ptr<RegistryKey> WindowsRegistry::OpenKey(RegistryRoot root, std::u16string_view path,
                                                      RegistryAccess access) {
  const auto widePath = ToWidePath(path);
  if (!widePath) return nullptr;
  return Open(HandleOf(root), widePath->c_str(), access);
}

std::unique_ptr<RegistryKey> WindowsRegistry::OpenRoot(RegistryRoot root) {
  return Open(HandleOf(root), L"", kRegistryEnumerateSubKeys | kRegistryView64);
}

std::unique_ptr<RegistryKey> WindowsRegistry::CreateKey(RegistryRoot root, std::u16string_view path,
                                                        RegistryAccess access,
                                                        RegistryDisposition* disposition,
                                                        std::u16string_view sddl) {
  const auto widePath = ToWidePath(path);
  SecurityDescriptor descriptor;
  if (!sddl.empty()) descriptor = ParseSecurityDescriptor(sddl);
  if (!widePath || (!sddl.empty() && !descriptor.IsOpen())) return nullptr;
  SECURITY_ATTRIBUTES attributes{sizeof(attributes), descriptor.Get(), FALSE};
  HKEY handle = nullptr;
  DWORD outcome = 0;
  if (RegCreateKeyExW(HandleOf(root), widePath->c_str(), 0, nullptr, REG_OPTION_NON_VOLATILE,
                      access, descriptor.IsOpen() ? &attributes : nullptr, &handle,
                      &outcome) != ERROR_SUCCESS) {
    return nullptr;
  }
  auto key = std::make_unique<WindowsRegistryKey>(KeyHandle(handle));
  const bool isNew = outcome == REG_CREATED_NEW_KEY;
  if (disposition != nullptr) {
    *disposition = isNew ? RegistryDisposition::CreatedNew : RegistryDisposition::OpenedExisting;
  }
  // Not every implementation of the system looks at the descriptor when it makes a key.
  if (isNew && descriptor.IsOpen()) {
    if (const auto owner = OpenKey(root, path, WRITE_DAC | (access & kRegistryView64))) {
      owner->SetAccessList(sddl);
    }
  }
  return key;
}

RegistryStatus WindowsRegistry::RemoveTree(RegistryRoot root, std::u16string_view path) {
  const auto widePath = ToWidePath(path);
  if (!widePath) return RegistryStatus::FileNotFound;
  return ToRegistryStatus(RegDeleteTreeW(HandleOf(root), widePath->c_str()));
}

std::unique_ptr<RegistryScope> WindowsRegistry::BeginRead() {
  return std::make_unique<RegistryScope>();
}

std::unique_ptr<RegistryWriteScope> WindowsRegistry::BeginWrite() {
  return std::make_unique<WriteScope>();
}

}  // namespace platform
