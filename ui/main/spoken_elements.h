// What assistive technology is told of the elements that the main window draws.
#pragma once

#include <cstdint>
#include <vector>

#include "platform/accessible.h"
#include "ui/main/main_layout.h"
#include "ui/main/main_scene.h"
#include "ui/main/skin_composer.h"

namespace ui {

// The elements are parts of the window in the order in which they are read. The last part is the
// warning, which is there, if hidden, while nothing is wrong.
class SpokenElements {
 public:
  SpokenElements(Skin skin, bool threeGuiLayers);

  std::int32_t Count() const { return static_cast<std::int32_t>(elements_.size()) + 1; }
  // None for the warning and for what is no part.
  Element At(std::int32_t part) const;
  platform::AccessibleInfo Describe(std::int32_t part, const MainScene& scene,
                                    const SkinComposer& composer) const;

  // Tells what differs from the scene before.
  void Announce(const platform::Window& window, const MainScene& scene);

 private:
  std::int32_t WarningPart() const { return Count(); }

  Skin skin_;
  std::vector<Element> elements_;
  std::int32_t selectedMode_ = -1;
  bool warning_ = false;
};

}  // namespace ui
