#include "endpoints/enumeration.h"

#include <memory>
#include <optional>

#include "platform/text.h"

namespace endpoints {
namespace {

constexpr std::size_t kJackSubTypeCapacity = 100;

EndpointRecord ReadRecord(platform::AudioDevice& device) {
  EndpointRecord record;
  record.active = device.State() == platform::kDeviceStateActive ? 1 : 0;
  if (const auto properties = device.OpenPropertyStore()) {
    if (const auto guid = properties->GetString(platform::kEndpointGuidProperty)) {
      record.endpointGuid = platform::CutToBuffer(*guid, kEndpointGuidCapacity);
    }
  }
  return record;
}

bool CopyString(platform::PropertyStore& properties, const platform::PropertyKey& key,
                std::size_t capacity, std::u16string& buffer) {
  const std::optional<std::u16string> text = properties.GetString(key);
  if (!text) return false;
  buffer = platform::CutToBuffer(*text, capacity);
  return true;
}

}  // namespace

std::vector<EndpointRecord> EnumerateRenderEndpoints(platform::AudioDevices& audioDevices) {
  const auto enumerator = audioDevices.CreateEnumerator();
  if (!enumerator) return {};
  const auto collection = enumerator->EnumerateEndpoints(
      platform::DataFlow::Render, platform::kDeviceStateActive | platform::kDeviceStateUnplugged);
  if (!collection) return {};
  std::vector<EndpointRecord> records(collection->Count());
  for (std::uint32_t i = 0; i < records.size(); ++i) {
    if (const auto device = collection->Item(i)) records[i] = ReadRecord(*device);
  }
  return records;
}

bool GetDefaultEndpointInfo(platform::AudioDevices& audioDevices, DefaultEndpointInfo& info,
                            std::size_t guidCapacity) {
  const auto enumerator = audioDevices.CreateEnumerator();
  if (!enumerator) return false;
  const auto device =
      enumerator->DefaultEndpoint(platform::DataFlow::Render, platform::DeviceRole::Console);
  if (!device) return false;
  const auto properties = device->OpenPropertyStore();
  if (!properties) return false;
  const bool hasJack = CopyString(*properties, platform::kEndpointJackSubTypeProperty,
                                  kJackSubTypeCapacity, info.jackSubType);
  const bool hasGuid =
      CopyString(*properties, platform::kEndpointGuidProperty, guidCapacity, info.endpointGuid);
  return hasJack || hasGuid;
}

}  // namespace endpoints
