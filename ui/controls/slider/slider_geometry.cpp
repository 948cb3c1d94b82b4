#include "ui/controls/slider/slider_geometry.h"

#include "ui/controls/shared/pixel_math.h"

namespace ui {
namespace {

constexpr double kMargin = 10.0;
constexpr double kBoxWidth = 80.0;
constexpr double kBoxHeight = 20.0;
constexpr double kBoxTextHeight = 21.0;
constexpr double kThumbOffset = 1.5;

}  // namespace

SliderGeometry::SliderGeometry(platform::Size client, double scale)
    : client_(client), scale_(scale) {}

std::int32_t SliderGeometry::Units(int count) const {
  return ScaledPixels(count, scale_);
}

std::int32_t SliderGeometry::Margin() const {
  return ScaledPixels(kMargin, scale_);
}

std::int32_t SliderGeometry::Travel() const {
  return Width() - 2 * Margin() - Units(1);
}

platform::Rect SliderGeometry::ValueBox() const {
  const std::int32_t right = Width() - Margin();
  return {right - ScaledPixels(kBoxWidth, scale_), Margin(), right,
          Margin() + ScaledPixels(kBoxHeight, scale_)};
}

platform::PointF SliderGeometry::ValueTextOrigin(platform::SizeF text) const {
  const platform::Rect box = ValueBox();
  const auto height = static_cast<float>(ScaledPixels(kBoxTextHeight, scale_));
  return {(static_cast<float>(box.Width()) - text.width) / 2.0F + static_cast<float>(box.left),
          (height - text.height) / 2.0F + static_cast<float>(box.top)};
}

platform::Point SliderGeometry::ThumbOrigin(std::int32_t thumbPos, platform::Size image) const {
  const std::int32_t offset = ScaledPixels(kThumbOffset, scale_);
  return {offset - image.width / 2 + Margin() + thumbPos,
          offset + GrooveCentre() - image.height / 2};
}

bool IsThumbPress(std::int32_t x, std::int32_t thumbPos, std::int32_t thumbWidth) {
  const std::int32_t half = thumbWidth / 2;
  return thumbPos - half <= x && x <= thumbPos + half;
}

}  // namespace ui
