#include "ui/main/main_scene.h"

namespace ui {

MainFonts::MainFonts(Skin skin)
    : label(u"Calibri", 18.0F, platform::FontStyle::Regular),
      small(u"Calibri", 14.0F, platform::FontStyle::Regular),
      warning(skin == Skin::Standard ? u"Segoe WP" : u"Segoe UI Semilight",
              skin == Skin::Standard ? 12.0F : 10.0F, platform::FontStyle::Regular) {}

}  // namespace ui
