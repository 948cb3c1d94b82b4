#include "endpoints/endpoint_support.h"

#include <algorithm>
#include <array>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace endpoints {
namespace {

constexpr std::array<std::u16string_view, 3> kSupportedAdapters = {
    u"SmartAudio HD", u"Realtek High Definition Audio", u"Intel SST Audio Device"};

struct Findings {
  bool defaultSupported = false;
  bool otherPlaying = false;
};

bool IsSupportedAdapter(std::u16string_view name) {
  return std::ranges::any_of(kSupportedAdapters, [name](std::u16string_view adapter) {
    return name.find(adapter) != std::u16string_view::npos;
  });
}

float PeakOf(platform::AudioDevice& device) {
  const auto meter = device.ActivateMeter();
  return meter ? meter->PeakValue().value_or(0.0F) : 0.0F;
}

void Examine(platform::AudioDevice& device, const std::u16string& defaultId, Findings& findings) {
  const std::optional<std::u16string> id = device.Id();
  if (!id) return;
  const auto properties = device.OpenPropertyStore();
  if (!properties) return;
  const std::optional<std::u16string> adapter =
      properties->GetString(platform::kDeviceInterfaceFriendlyNameProperty);
  if (adapter && IsSupportedAdapter(*adapter)) {
    if (*id == defaultId) findings.defaultSupported = true;
  } else if (PeakOf(device) > 0.0F) {
    findings.otherPlaying = true;
  }
}

Findings ExamineActiveEndpoints(platform::AudioDevices& audioDevices) {
  Findings findings;
  const auto enumerator = audioDevices.CreateEnumerator();
  if (!enumerator) return findings;
  const auto defaultDevice =
      enumerator->DefaultEndpoint(platform::DataFlow::Render, platform::DeviceRole::Console);
  if (!defaultDevice) return findings;
  const std::optional<std::u16string> defaultId = defaultDevice->Id();
  if (!defaultId) return findings;
  const auto collection =
      enumerator->EnumerateEndpoints(platform::DataFlow::Render, platform::kDeviceStateActive);
  if (!collection) return findings;
  const std::uint32_t count = collection->Count();
  for (std::uint32_t i = 0; i < count; ++i) {
    if (const auto device = collection->Item(i)) Examine(*device, *defaultId, findings);
  }
  return findings;
}

}  // namespace

EndpointWarning EvaluateEndpointSupport(platform::AudioDevices& audioDevices) {
  const Findings findings = ExamineActiveEndpoints(audioDevices);
  return findings.defaultSupported && !findings.otherPlaying ? EndpointWarning::Hidden
                                                             : EndpointWarning::Shown;
}

}  // namespace endpoints
