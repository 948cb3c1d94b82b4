// The system's registry under the contract's suite, each test in a key of its own that stands in
// for the roots.
#include <windows.h>

#include "platform/fake/fake_registry.h"
#include "platform/windows/registry/windows_registry.h"
#include "tests/platform/registry_contract.h"
#include "tests/support/wine.h"

namespace support {
namespace {

const HKEY kRoots[] = {HKEY_LOCAL_MACHINE, HKEY_CLASSES_ROOT};
constexpr const wchar_t* kPlace = L"Software\\Tonalyx registry test";

class RegistryInAKey {
 public:
  RegistryInAKey() {
    RegDeleteTreeW(HKEY_CURRENT_USER, kPlace);
    for (const HKEY root : kRoots) {
      const auto path = kPlace + std::wstring(root == kRoots[0] ? L"\\machine" : L"\\classes");
      HKEY key = nullptr;
      RegCreateKeyExW(HKEY_CURRENT_USER, path.c_str(), 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key,
                      nullptr);
      RegOverridePredefKey(root, key);
      RegCloseKey(key);
    }
  }
  ~RegistryInAKey() {
    for (const HKEY root : kRoots) RegOverridePredefKey(root, nullptr);
    RegDeleteTreeW(HKEY_CURRENT_USER, kPlace);
  }
  RegistryInAKey(const RegistryInAKey&) = delete;
  RegistryInAKey& operator=(const RegistryInAKey&) = delete;

  platform::WindowsRegistry registry;
};

std::shared_ptr<platform::Registry> MakeWindows() {
  const auto place = std::make_shared<RegistryInAKey>();
  return {place, &place->registry};
}

}  // namespace

std::vector<RegistryBackend> RegistryBackends() {
  RegistryBackend windows{"Windows", MakeWindows};
  windows.lacks = {{"RootIsOpenedToListSubKeysOnly", "the system's root is one handle for all"}};
  if (RunsUnderWine()) {
    windows.lacks.insert(
        {{"AnyChangeOfTheKeysOwnValuesWakesOnce", "equal data and a key's end do not notify"},
         {"ChangesBetweenTwoArmingsAreNotLost", "changes before an arming are not told"},
         {"EnumeratesInNameOrderFromAnyPosition", "subkeys are in another order"},
         {"DeletedKeysTakeNoAccessList", "they take it"}});
  }
  return {{"Fake", [] { return std::make_shared<platform::FakeRegistry>(); }}, windows};
}

}  // namespace support
