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

// Writes a parameter into both trees. True when the live one reads back equal as a float, which a
// NaN never does.
bool WriteVerified(const SettingKeys& keys, std::u16string_view name, const std::uint32_t& bits) {
  const std::span<const std::byte> bytes = std::as_bytes(std::span(&bits, 1));
  static_cast<void>(keys.parameters->SetValue(name, RegistryType::Binary, bytes));
  static_cast<void>(keys.defaults->SetValue(name, RegistryType::Binary, bytes));
  float readBack = 0.0F;
  std::uint32_t size = sizeof(readBack);
  return keys.parameters->QueryValue(name, nullptr, &readBack, &size) == RegistryStatus::Success &&
         readBack == std::bit_cast<float>(bits);
}

bool WriteParameter(const SettingKeys& keys, std::uint32_t number, std::uint32_t bits) {
  if (number <= kParameterCount) return WriteVerified(keys, ParameterName(number), bits);
  return WriteVerified(keys, FormatParameterName(number), bits);
}

// One transaction, which is kept on failure too: what was written before a failure stays.
bool ImportSetting(Registry& registry, SequentialReader& reader, std::u16string_view pathKey,
                   SettingNumber number) {
  const std::unique_ptr<platform::RegistryScope> scope = registry.BeginWrite();
  const SettingKeys keys = CreateSettingKeys(registry, pathKey, number);
  if (!keys.parameters || !keys.defaults) return false;
  const std::optional<std::uint32_t> count = reader.ReadNumber<std::uint32_t>();
  if (!count) return false;
  for (std::uint32_t i = 0; i < *count; ++i) {
    const std::optional<std::uint32_t> bits = reader.ReadNumber<std::uint32_t>();
    if (!bits || !WriteParameter(keys, i + 1, *bits)) return false;
  }
  return true;
}

bool ImportSettings(Registry& registry, SequentialReader& reader, std::u16string_view pathKey,
                    std::uint32_t count) {
  for (std::uint32_t i = 0; i < count; ++i) {
    if (!ImportSetting(registry, reader, pathKey, i + 1)) return false;
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

bool ImportRoute(Registry& registry, SequentialReader& reader, ModelFlags model) {
  const auto guidBytes = reader.ReadBytes<sizeof(platform::Guid)>();
  if (!guidBytes) return false;
  const auto route =
      platform::GuidFromBytes(std::bit_cast<std::array<std::uint8_t, 16>>(*guidBytes));
  const std::optional<std::uint32_t> settingCount = reader.ReadNumber<std::uint32_t>();
  if (!settingCount) return false;
  const std::u16string pathKey = platform::GuidToString(route);
  const bool complete = ImportSettings(registry, reader, pathKey, *settingCount);
  if (const std::unique_ptr<RegistryKey> settingsKey =
          registry.OpenKey(RegistryRoot::LocalMachine, SettingsKeyPath(pathKey), kSetValueAccess)) {
    SetActiveSetting(*settingsKey, DefaultSetting(route, model));
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

void TuningImport::RunInstallImport(std::uint32_t ssid) {
  registry_.SetDamagedAside();
  EnsureVendorKey(registry_);
  static_cast<void>(ImportTuningFiles(ssid));
  SetHardwareOutputPath();
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
    static_cast<void>(files_.Remove(path));
  }
  const std::u16string genericPath = folder + std::u16string(kGenericFile);
  if (!imported) static_cast<void>(ImportTuningFile(genericPath, kGenericSsid));
  static_cast<void>(files_.Remove(genericPath));
  return imported;
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
  for (std::uint32_t i = 0; i < header->routeCount; ++i) {
    if (!ImportRoute(registry_, reader, model_)) return std::nullopt;
  }
  file.reset();
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
