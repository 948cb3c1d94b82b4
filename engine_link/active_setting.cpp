#include "engine_link/active_setting.h"

#include <memory>
#include <string>

#include "endpoints/enumeration.h"
#include "endpoints/route_detection.h"
#include "store/active_mode.h"
#include "store/path_key.h"
#include "store/registry_layout.h"

namespace engine_link {
namespace {

using store::OutputPath;

bool WriteToRoute(platform::Registry& registry, std::u16string_view pathKey,
                  const std::u16string& setting) {
  const std::unique_ptr<platform::RegistryKey> key = registry.CreateKey(
      platform::RegistryRoot::LocalMachine, store::SettingsKeyPath(pathKey), store::kWriteAccess);
  if (!key) return false;
  static_cast<void>(store::SetActiveSetting(*key, setting));
  return true;
}

// The folder that always shares the active setting of the route's own; empty when there is none.
std::u16string TwinPathKey(const std::u16string& jackSubType, OutputPath route) {
  if (!store::IsSpeakerNodeType(jackSubType)) return {};
  if (route == OutputPath::SpeakerWithSubwoofer) return jackSubType;
  if (route == OutputPath::InternalSpeaker) return std::u16string(store::kSubwooferPathKey);
  return {};
}

}  // namespace

bool WriteActiveSetting(const EngineLink& engine, std::uint32_t modeIndex, OutputPath* route) {
  if (modeIndex >= static_cast<std::uint32_t>(store::kModeCount)) return false;
  endpoints::DefaultEndpointInfo endpoint;
  if (!endpoints::GetDefaultEndpointInfo(engine.audioDevices, endpoint)) return false;
  const OutputPath detected = endpoints::DetectOutputPath(engine.registry, endpoint.endpointGuid);
  if (route != nullptr) *route = detected;

  const store::SettingNumber number = modeIndex + 1;
  const std::u16string setting = store::DecimalText(number);
  const std::unique_ptr<platform::RegistryWriteScope> scope = engine.registry.BeginWrite();
  const std::u16string twin = TwinPathKey(endpoint.jackSubType, detected);
  if (!twin.empty()) static_cast<void>(WriteToRoute(engine.registry, twin, setting));
  const bool isWritten =
      WriteToRoute(engine.registry, store::ResolvePathKey(endpoint.jackSubType, detected), setting);
  // The twin's setting is kept without the route's, too.
  return scope->Commit() == platform::RegistryStatus::Success && isWritten;
}

}  // namespace engine_link
