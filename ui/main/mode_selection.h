// The mode that the main window shows: read from the store of the current output route and written
// to it.
#pragma once

#include <optional>

#include "endpoints/registry_watcher.h"
#include "engine_link/engine_signals.h"
#include "platform/platform.h"
#include "store/active_mode.h"
#include "store/output_path.h"

namespace ui {

// User-interface thread. Failures are silent.
class ModeSelection {
 public:
  explicit ModeSelection(const platform::Platform& platform);

  // 0 to 5; -1 while unknown; more than 5 when the store holds a setting that is no mode.
  store::SoundMode SelectedMode() const { return selectedMode_; }
  store::OutputPath OutputPath() const { return outputPath_; }

  // Reads the active mode of the default endpoint's route. What a watcher starts from, or nothing
  // without an endpoint.
  std::optional<endpoints::WatchStart> Load();

  // Selects and applies the first mode if `Load` found none. True when that made the route's
  // "Settings" key, which nobody could watch before.
  bool ApplyFirstModeIfUnknown();

  // True when this changes the selection; the caller then applies it.
  bool Select(store::SoundMode mode);

  // Makes the selected mode the active setting and wakes the engine. True when it was written.
  bool Apply();

  // Takes over the mode that somebody else made active, or that another route has. Writes nothing.
  // True when the window is to be redrawn.
  bool Follow(store::OutputPath outputPath);

  // The same on the route that is the current one now.
  bool Refresh();

 private:
  bool ReadMode(std::u16string_view jackSubType);

  engine_link::EngineLink engine_;
  store::SoundMode selectedMode_ = 0;
  store::OutputPath outputPath_ = store::OutputPath::LineOut;
  bool settingsKeyMissing_ = false;
};

}  // namespace ui
