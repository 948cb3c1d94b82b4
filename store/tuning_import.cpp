#include "store/tuning_import.h"

#include <bit>
#include <memory>
#include <span>
#include <string>

#include "platform/guid.h"
#include "store/active_mode.h"
#include "store/diagnostic_log.h"
#include "store/parameter_store.h"
#include "store/path_key.h"
#include "store/registry_layout.h"
#include "store/sequential_reader.h"
#include "store/tuning_file.h"
#include "store/tuning_log.h"

namespace store {
namespace {

using platform::Registry;
using platform::RegistryKey;
using platform::RegistryRoot;
using platform::RegistryStatus;
using platform::RegistryType;

constexpr std::u16string_view kTuningExtension = u".vtd";
constexpr std::u16string_view kGenericFile = u"0.vtd";
constexpr std::uint32_t kGenericSsid = 0;

constexpr std::size_t kReadAhead = std::size_t{64} * 1024;

// One file on its way into the store.
struct Import {
  Registry& registry;
  SequentialReader& reader;
  ModelFlags model;
  bool hasLostWrites = false;  // the store did not take something, which is not the file's fault

  bool Stores(bool isStored) {
    hasLostWrites = hasLostWrites || !isStored;
    return isStored;
  }
};

// The two keys of a setting that is being imported.
struct SettingKeys {
  std::unique_ptr<RegistryKey> parameters;
  std::unique_ptr<RegistryKey> defaults;
};

SettingKeys CreateSettingKeys(Registry& registry, std::u16string_view pathKey,
                              SettingNumber number) {
  const std::u16string setting = DecimalText(number);
  const auto create = [&](Tree tree) {
    return registry.CreateKey(RegistryRoot::LocalMachine, SettingKeyPath(tree, pathKey, setting),
                              kWriteAccess);
  };
  SettingKeys keys;
  keys.parameters = create(Tree::Parameters);
  if (keys.parameters) keys.defaults = create(Tree::Defaults);
  return keys;
}

bool Set(RegistryKey& key, std::u16string_view name, const std::uint32_t& bits) {
  return key.SetValue(name, RegistryType::Binary, std::as_bytes(std::span(&bits, 1))) ==
         RegistryStatus::Success;
}

// Writes a parameter into both trees. True when the live one reads back equal as a float, which a
// NaN never does.
bool WriteVerified(Import& import, const SettingKeys& keys, std::u16string_view name,
                   std::uint32_t bits) {
  static_cast<void>(import.Stores(Set(*keys.parameters, name, bits)));
  static_cast<void>(import.Stores(Set(*keys.defaults, name, bits)));
  std::uint32_t readBack = 0;
  std::uint32_t size = sizeof(readBack);
  const bool isRead =
      keys.parameters->QueryValue(name, nullptr, &readBack, &size) == RegistryStatus::Success;
  return import.Stores(isRead) && std::bit_cast<float>(readBack) == std::bit_cast<float>(bits);
}

bool WriteParameter(Import& import, const SettingKeys& keys, std::uint32_t number,
                    std::uint32_t bits) {
  if (number <= kParameterCount) return WriteVerified(import, keys, ParameterName(number), bits);
  return WriteVerified(import, keys, FormatParameterName(number), bits);
}

bool WriteParameters(Import& import, const SettingKeys& keys) {
  const std::optional<std::uint32_t> count = import.reader.ReadNumber<std::uint32_t>();
  if (!count) return false;
  for (std::uint32_t i = 0; i < *count; ++i) {
    const std::optional<std::uint32_t> bits = import.reader.ReadNumber<std::uint32_t>();
    if (!bits || !WriteParameter(import, keys, i + 1, *bits)) return false;
  }
  return true;
}

// One transaction, which is kept on failure too: what was written before a failure stays. Nothing
// is there before it is committed, whatever reads back.
bool ImportSetting(Import& import, std::u16string_view pathKey, SettingNumber number) {
  const std::unique_ptr<platform::RegistryWriteScope> scope = import.registry.BeginWrite();
  const SettingKeys keys = CreateSettingKeys(import.registry, pathKey, number);
  const bool isComplete = import.Stores(keys.parameters != nullptr && keys.defaults != nullptr) &&
                          WriteParameters(import, keys);
  return import.Stores(scope->Commit() == RegistryStatus::Success) && isComplete;
}

bool ImportSettings(Import& import, std::u16string_view pathKey, std::uint32_t count) {
  for (std::uint32_t i = 0; i < count; ++i) {
    if (!ImportSetting(import, pathKey, i + 1)) return false;
  }
  return true;
}

// Headphones and line out start switched off, speakers with the mode that suits most.
std::u16string DefaultSetting(const platform::Guid& route, ModelFlags model) {
  if (route == kHeadphonesNodeType || route == kLineConnectorNodeType) {
    return model.davrinModel ? u"6" : u"1";
  }
  return model.davrinModel ? u"3" : u"2";
}

bool ImportRoute(Import& import) {
  const auto guidBytes = import.reader.ReadBytes<sizeof(platform::Guid)>();
  if (!guidBytes) return false;
  const auto route =
      platform::GuidFromBytes(std::bit_cast<std::array<std::uint8_t, 16>>(*guidBytes));
  const std::optional<std::uint32_t> settingCount = import.reader.ReadNumber<std::uint32_t>();
  if (!settingCount) return false;
  const std::u16string pathKey = platform::GuidToString(route);
  const bool complete = ImportSettings(import, pathKey, *settingCount);
  if (const std::unique_ptr<RegistryKey> settingsKey = import.registry.OpenKey(
          RegistryRoot::LocalMachine, SettingsKeyPath(pathKey), kSetValueAccess)) {
    static_cast<void>(
        import.Stores(SetActiveSetting(*settingsKey, DefaultSetting(route, import.model))));
  }
  return complete;
}

void AppendToLog(platform::FileSystem& files, const std::vector<std::string>& records) {
  const std::unique_ptr<platform::File> log = OpenDiagnosticLog(files);
  if (!log) return;
  for (const std::string& record : records) {
    static_cast<void>(log->Write(std::as_bytes(std::span(record))));
  }
}

}  // namespace

TuningImport::TuningImport(Registry& registry, platform::FileSystem& files, ModelFlags model)
    : registry_(registry), files_(files), model_(model) {}

bool TuningImport::RunInstallImport(std::uint32_t ssid) {
  registry_.SetDamagedAside();
  EnsureVendorKey(registry_);
  static_cast<void>(ImportTuningFiles(ssid));
  SetHardwareOutputPath();
  return !hasLostWrites_;
}

bool TuningImport::ImportTuningFiles(std::uint32_t ssid) {
  const std::u16string folder = files_.ProgramFolder();
  const std::vector<std::u16string> names = files_.FindByExtension(folder, kTuningExtension);
  if (names.empty()) return false;
  bool imported = false;
  for (const std::u16string& name : names) {
    if (name.starts_with(kGenericFile)) continue;
    const std::u16string path = folder + name;
    if (ImportTuningFile(path, ssid)) imported = true;
    RemoveUnlessLost(path);
  }
  const std::u16string genericPath = folder + std::u16string(kGenericFile);
  if (!imported) static_cast<void>(ImportTuningFile(genericPath, kGenericSsid));
  RemoveUnlessLost(genericPath);
  return imported;
}

// They may be the only tuning there is.
void TuningImport::RemoveUnlessLost(std::u16string_view path) {
  if (!hasLostWrites_) static_cast<void>(files_.Remove(path));
}

std::optional<std::uint32_t> TuningImport::ImportTuningFile(std::u16string_view path,
                                                            std::uint32_t expectedSsid) {
  std::unique_ptr<platform::File> file = files_.OpenExisting(path, platform::FileAccess::Read);
  if (!file) return std::nullopt;
  SequentialReader reader(*file, kReadAhead);
  const std::optional<TuningHeader> header = ReadTuningHeader(reader);
  if (!header || header->ssid != expectedSsid) return std::nullopt;
  std::optional<TuningProperties> properties;
  if (header->formatVersion == kTuningFormat2) {
    properties = ReadTuningProperties(reader);
    if (!properties) return std::nullopt;
  }
  Import import{registry_, reader, model_};
  bool isComplete = true;
  for (std::uint32_t i = 0; isComplete && i < header->routeCount; ++i) {
    isComplete = ImportRoute(import);
  }
  file.reset();
  hasLostWrites_ = hasLostWrites_ || import.hasLostWrites;
  if (!isComplete) return std::nullopt;
  AppendToLog(files_,
              FormatTuningLog(*header, properties ? &*properties : nullptr, expectedSsid, model_));
  return header->ssid;
}

// Without an imported file the product's key is not there yet.
void TuningImport::SetHardwareOutputPath() {
  std::unique_ptr<RegistryKey> key =
      registry_.OpenKey(RegistryRoot::LocalMachine, kProductKey, kSetValueAccess);
  if (!key) key = registry_.CreateKey(RegistryRoot::LocalMachine, kProductKey, kWriteAccess);
  if (!key) return;
  const auto path = static_cast<std::uint32_t>(store::OutputPath::InternalSpeaker);
  static_cast<void>(key->SetValue(kHardwareOutputPathValue, RegistryType::Dword,
                                  std::as_bytes(std::span(&path, 1))));
}

}  // namespace store
