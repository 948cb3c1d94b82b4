#include "ui/main/skin_composer.h"

#include <utility>

#include "ui/main/davrin_skin.h"
#include "ui/main/standard_skin.h"

namespace ui {

SkinComposer::SkinComposer(Skin skin, double dpiScale, MainImages images)
    : images_(std::move(images)),
      fonts_(skin),
      art_{skin, dpiScale, images_, fonts_},
      layout_(skin, dpiScale, images_.Sizes()) {
  if (!images_.background) return;
  composition_.emplace(images_.background->Width(), images_.background->Height(),
                       platform::PixelFormat::PremultipliedArgb32);
}

const platform::Bitmap* SkinComposer::Compose(const MainScene& scene) {
  if (!composition_) return nullptr;
  if (composed_ != scene) {
    const auto paint = art_.skin == Skin::Standard ? PaintStandardSkin : PaintDavrinSkin;
    places_ = paint(art_, scene, *composition_);
    composed_ = scene;
  }
  return &*composition_;
}

}  // namespace ui
