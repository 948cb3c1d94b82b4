#include "endpoints/route_detection.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>

#include "platform/jack_state.h"
#include "store/registry_layout.h"

namespace endpoints {
namespace {

using platform::JackProperty;
using platform::Registry;
using platform::RegistryKey;
using platform::RegistryRoot;
using platform::RegistryStatus;
using platform::RegistryType;

constexpr std::u16string_view kHeadsetStatus = u"HeadsetStatus";
constexpr std::u16string_view kSstDriver = u"isstrtc.sys";

std::unique_ptr<RegistryKey> OpenForReading(Registry& registry, std::u16string_view path) {
  return registry.OpenKey(RegistryRoot::LocalMachine, path, store::kReadAccess);
}

std::optional<std::uint32_t> QueryNumber(RegistryKey& key, std::u16string_view name,
                                         RegistryType* type = nullptr) {
  std::uint32_t value = 0;
  std::uint32_t size = sizeof(value);
  if (key.QueryValue(name, type, &value, &size) != RegistryStatus::Success) return std::nullopt;
  return value;
}

// Whatever its type: the value is the driver's own.
std::optional<std::uint32_t> QueryJack(RegistryKey& fxProperties, JackProperty property) {
  return QueryNumber(fxProperties, platform::JackValueName(property));
}

void ApplyStoreHint(RegistryKey& productKey, OutputPath& path) {
  const std::optional<std::uint32_t> hint =
      QueryNumber(productKey, store::kHardwareOutputPathValue);
  if (hint && *hint >= 1 && *hint <= 3) path = static_cast<OutputPath>(*hint);
}

void ApplySstStatus(RegistryKey& headsetKey, OutputPath& path) {
  auto type = RegistryType::None;
  const std::optional<std::uint32_t> status = QueryNumber(headsetKey, kHeadsetStatus, &type);
  if (type != RegistryType::Dword) return;
  if (status == 0U) path = OutputPath::InternalSpeaker;
  if (status == 1U) path = OutputPath::Headphone;
}

void ApplyJackState(RegistryKey& fxProperties, OutputPath& path) {
  bool found = false;
  bool decided = false;
  if (const auto speaker = QueryJack(fxProperties, JackProperty::Speaker)) {
    found = true;
    if (*speaker != 0) {
      decided = true;
      path = OutputPath::InternalSpeaker;
      if (QueryJack(fxProperties, JackProperty::Subwoofer).value_or(0) != 0) {
        path = OutputPath::SpeakerWithSubwoofer;
      }
    }
  }
  if (const auto headphone = QueryJack(fxProperties, JackProperty::Headphone)) {
    found = true;
    if (*headphone == 1) {
      decided = true;
      path = OutputPath::Headphone;
    }
  }
  if (const auto other = QueryJack(fxProperties, JackProperty::OtherHeadphone)) {
    if (*other == 1) {
      path = OutputPath::Headphone;
    } else if (!decided) {
      path = OutputPath::LineOut;
    }
  } else if (found && !decided) {
    path = OutputPath::LineOut;
  }
}

bool IsSstDevice(RegistryKey& deviceKey) {
  std::array<char16_t, 255> driver{};
  auto size = static_cast<std::uint32_t>(sizeof(driver));
  auto type = RegistryType::None;
  if (deviceKey.QueryValue(u"Driver", &type, driver.data(), &size) != RegistryStatus::Success ||
      type != RegistryType::String) {
    return false;
  }
  const std::u16string_view text(driver.data(), size / sizeof(char16_t));
  return text.substr(0, text.find(u'\0')) == kSstDriver;
}

}  // namespace

OutputPath DetectOutputPath(Registry& registry, std::u16string_view endpointGuid) {
  const auto scope = registry.BeginRead();
  auto path = OutputPath::LineOut;
  if (const auto productKey = OpenForReading(registry, store::kProductKey)) {
    ApplyStoreHint(*productKey, path);
  }
  if (const auto headsetKey = FindSstHeadsetKey(registry)) {
    ApplySstStatus(*headsetKey, path);
  }
  if (const auto fxProperties = OpenForReading(registry, platform::JackKeyPath(endpointGuid))) {
    ApplyJackState(*fxProperties, path);
  }
  return path;
}

std::unique_ptr<RegistryKey> FindSstHeadsetKey(Registry& registry) {
  constexpr std::size_t kNameCapacity = 255;
  const auto scope = registry.BeginRead();
  std::unique_ptr<RegistryKey> result;
  const auto classKey = OpenForReading(registry, store::kMediaClassKey);
  if (!classKey) return result;
  std::u16string name;
  for (std::uint32_t i = 0; classKey->EnumerateSubKey(i, &name) == RegistryStatus::Success; ++i) {
    if (name.size() >= kNameCapacity) break;
    const std::u16string devicePath = std::u16string(store::kMediaClassKey) + u"\\" + name;
    const auto deviceKey = OpenForReading(registry, devicePath);
    if (!deviceKey || !IsSstDevice(*deviceKey)) continue;
    if (auto headsetKey = OpenForReading(registry, devicePath + u"\\HeadsetStatus")) {
      result = std::move(headsetKey);
    }
  }
  return result;
}

}  // namespace endpoints
