// The main window's picture: artwork, fonts and geometry of one skin, and the composition that was
// last made from them.
#pragma once

#include <optional>

#include "platform/drawing.h"
#include "platform/geometry.h"
#include "ui/main/main_images.h"
#include "ui/main/main_layout.h"
#include "ui/main/main_scene.h"

namespace ui {

class SkinComposer {
 public:
  SkinComposer(Skin skin, double dpiScale, MainImages images);
  SkinComposer(const SkinComposer&) = delete;
  SkinComposer& operator=(const SkinComposer&) = delete;

  // The window's size; 0 x 0 without a background image.
  platform::Size Size() const { return ImageSize(images_.background); }
  const MainLayout& Layout() const { return layout_; }

  // The whole window in this state; a scene that is the same as the one before costs nothing. Null
  // without a background image. The bitmap is the composer's and good until the next call.
  const platform::Bitmap* Compose(const MainScene& scene);

  // Size of the Advanced entry's hit box in the last composition.
  platform::Size AdvancedBox() const { return places_.advancedBox; }
  // Where the last composition has the warning; empty without one.
  platform::Rect WarningArea() const { return places_.warning; }

 private:
  MainImages images_;
  MainFonts fonts_;
  MainArt art_;
  MainLayout layout_;
  std::optional<platform::Bitmap> composition_;
  std::optional<MainScene> composed_;  // what the composition shows
  TextPlaces places_;
};

}  // namespace ui
