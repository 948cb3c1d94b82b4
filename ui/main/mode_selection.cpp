#include "ui/main/mode_selection.h"

#include <cstdint>
#include <string>

#include "endpoints/enumeration.h"
#include "endpoints/route_detection.h"
#include "engine_link/active_setting.h"
#include "store/path_key.h"

namespace ui {
namespace {

constexpr store::SoundMode kUnknownMode = -1;

}  // namespace

ModeSelection::ModeSelection(const platform::Platform& platform)
    : engine_{platform.registry, platform.events, platform.audioDevices} {}

std::optional<endpoints::WatchStart> ModeSelection::Load() {
  selectedMode_ = kUnknownMode;
  settingsKeyMissing_ = false;
  endpoints::DefaultEndpointInfo endpoint;
  if (!endpoints::GetDefaultEndpointInfo(engine_.audioDevices, endpoint)) return std::nullopt;
  outputPath_ = endpoints::DetectOutputPath(engine_.registry, endpoint.endpointGuid);
  settingsKeyMissing_ = !ReadMode(endpoint.jackSubType);
  return endpoints::WatchStart{endpoint.endpointGuid, outputPath_, selectedMode_};
}

bool ModeSelection::ApplyFirstModeIfUnknown() {
  if (selectedMode_ != kUnknownMode) return false;
  selectedMode_ = 0;
  return Apply() && settingsKeyMissing_;
}

bool ModeSelection::Select(store::SoundMode mode) {
  if (mode == selectedMode_) return false;
  selectedMode_ = mode;
  return true;
}

bool ModeSelection::Apply() {
  const auto index = static_cast<std::uint32_t>(selectedMode_);
  if (!engine_link::WriteActiveSetting(engine_, index, &outputPath_)) return false;
  engine_link::SignalModeChange(engine_);
  return true;
}

bool ModeSelection::Follow(store::OutputPath outputPath) {
  outputPath_ = outputPath;
  endpoints::DefaultEndpointInfo endpoint;
  if (!endpoints::GetDefaultEndpointInfo(engine_.audioDevices, endpoint)) return false;
  return ReadMode(endpoint.jackSubType);
}

bool ModeSelection::Refresh() {
  endpoints::DefaultEndpointInfo endpoint;
  if (!endpoints::GetDefaultEndpointInfo(engine_.audioDevices, endpoint)) return false;
  outputPath_ = endpoints::DetectOutputPath(engine_.registry, endpoint.endpointGuid);
  return ReadMode(endpoint.jackSubType);
}

bool ModeSelection::ReadMode(std::u16string_view jackSubType) {
  const std::u16string pathKey = store::ResolvePathKey(jackSubType, outputPath_);
  const std::optional<store::SoundMode> index =
      store::ReadActiveModeIndex(engine_.registry, pathKey);
  if (!index) return false;
  selectedMode_ = *index;
  return true;
}

}  // namespace ui
