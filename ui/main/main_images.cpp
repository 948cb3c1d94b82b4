#include "ui/main/main_images.h"

#include <cstdint>
#include <future>

#include "resources/resource_ids.h"
#include "ui/images/png_resource.h"

namespace ui {
namespace {

constexpr float kStandardDesignDpi = 96.0F;
constexpr float kDavrinDesignDpi = 240.0F;

struct PairIds {
  std::uint16_t normal;
  std::uint16_t highlighted;
};

struct SkinIds {
  std::uint16_t background;
  std::uint16_t modes;
  PairIds minimize;
  PairIds close;
  PairIds advanced;
};

constexpr SkinIds kStandardIds{
    resources::kImageStandardBackground,
    resources::kImageStandardModes,
    {resources::kImageStandardMinimize, resources::kImageStandardMinimizeHighlighted},
    {resources::kImageStandardClose, resources::kImageStandardCloseHighlighted},
    {resources::kImageStandardAdvanced, resources::kImageStandardAdvanced}};

constexpr SkinIds kDavrinIds{
    resources::kImageDavrinBackground,
    resources::kImageDavrinModes,
    {resources::kImageDavrinMinimize, resources::kImageDavrinMinimizeHighlighted},
    {resources::kImageDavrinClose, resources::kImageDavrinCloseHighlighted},
    {resources::kImageDavrinAdvanced, resources::kImageDavrinAdvancedHighlighted}};

constexpr PairIds kDoneIds{resources::kImageDone, resources::kImageDoneHighlighted};
constexpr PairIds kMakerLogoIds{resources::kImageMakerLogo, resources::kImageMakerLogoHighlighted};

ImagePair LoadPair(PairIds ids, float designDpi) {
  return {LoadPngResource(ids.normal, designDpi), LoadPngResource(ids.highlighted, designDpi)};
}

}  // namespace

platform::Size ImageSize(const Image& image) {
  if (!image) return {};
  return {image->Width(), image->Height()};
}

MainImages MainImages::Load(Skin skin) {
  const SkinIds& ids = skin == Skin::Standard ? kStandardIds : kDavrinIds;
  const float designDpi = skin == Skin::Standard ? kStandardDesignDpi : kDavrinDesignDpi;

  // The background takes about as long as all the rest.
  std::future<Image> background =
      std::async(std::launch::async, LoadPngResource, ids.background, designDpi);
  MainImages images;
  std::uint16_t id = ids.modes;
  for (ModeImages& mode : images.modes) {
    for (Image& look : mode.looks) look = LoadPngResource(id++, designDpi);
  }
  images.minimize = LoadPair(ids.minimize, designDpi);
  images.close = LoadPair(ids.close, designDpi);
  images.done = LoadPair(kDoneIds, designDpi);
  images.advanced = LoadPair(ids.advanced, designDpi);
  // The maker's logo is the same artwork in both skins.
  images.makerLogo = LoadPair(kMakerLogoIds, kStandardDesignDpi);
  images.background = background.get();
  return images;
}

ElementSizes MainImages::Sizes() const {
  return {ImageSize(modes[0].Look(ModeLook::Normal)), ImageSize(minimize.normal),
          ImageSize(close.normal), ImageSize(done.normal), ImageSize(makerLogo.normal)};
}

}  // namespace ui
