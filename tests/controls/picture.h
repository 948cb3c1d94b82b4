// Pictures as they are on the screen, and ways to look at them.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <initializer_list>
#include <ios>
#include <optional>
#include <span>
#include <string_view>

#include "platform/drawing.h"
#include "platform/geometry.h"
#include "tests/support/picture_box.h"
#include "ui/images/png_resource.h"

namespace ui {

// Does what is due: messages that are posted, then paints.
void Settle();

// What the visible window shows at present in this part of it, whether or not a paint is due.
platform::Bitmap WindowPicture(const platform::Rect& area);

// A mouse over the visible window, wherever the pointer is by then.
enum class Mouse { Press, Move, Release };
void Use(Mouse mouse, platform::Point client);

bool VisibleWindowHasIcon();

// Of the visible window with this title; nothing when there is none.
std::optional<platform::Size> ClientSizeOf(std::u16string_view title);
// As a person does.
void Close(std::u16string_view title);

inline platform::Bitmap Solid(platform::Size size, platform::Argb color) {
  platform::Bitmap image(size.width, size.height, platform::PixelFormat::PremultipliedArgb32);
  platform::Graphics(image).Clear(color);
  return image;
}

inline platform::Bitmap Copy(const platform::Bitmap& picture) {
  platform::Bitmap copy = Solid({picture.Width(), picture.Height()}, 0);
  platform::Graphics(copy).DrawImage(picture, 0, 0);
  return copy;
}

inline std::int32_t Channel(platform::Argb color, unsigned shift) {
  return static_cast<std::int32_t>((color >> shift) & 0xFFU);
}

// The largest difference of a colour channel.
inline std::int32_t Distance(platform::Argb one, platform::Argb other) {
  return std::max({std::abs(Channel(one, 16) - Channel(other, 16)),
                   std::abs(Channel(one, 8) - Channel(other, 8)),
                   std::abs(Channel(one, 0) - Channel(other, 0))});
}

// `color` upon `below`, as much of it as `coverage` and its alpha say.
inline platform::Argb Mixed(platform::Argb color, platform::Argb below, double coverage = 1.0) {
  const double share = coverage * (color >> 24U) / 255.0;
  platform::Argb mixed = 0xFF;
  for (const unsigned shift : {16U, 8U, 0U}) {
    const double value = share * Channel(color, shift) + (1.0 - share) * Channel(below, shift);
    mixed = mixed << 8U | static_cast<platform::Argb>(std::lround(value));
  }
  return mixed;
}

struct Spot {
  std::int32_t x;
  std::int32_t y;
  platform::Argb color;
};

inline void ExpectSpots(const platform::Bitmap& picture, std::initializer_list<Spot> spots,
                        std::int32_t tolerance = 1) {
  for (const Spot& spot : spots) {
    const platform::Argb color = picture.GetPixel(spot.x, spot.y);
    EXPECT_LE(Distance(color, spot.color), tolerance)
        << std::hex << color << " instead of " << spot.color << std::dec << " at " << spot.x << ", "
        << spot.y;
  }
}

// The image's own pixels, where it is opaque, lie in the picture from (x, y) on.
inline testing::AssertionResult Shows(const platform::Bitmap& picture,
                                      const platform::Bitmap& image, std::int32_t x,
                                      std::int32_t y) {
  int opaque = 0;
  const platform::Rect wrong =
      support::BoxOf(support::AreaOf(image), [&](std::int32_t column, std::int32_t row) {
        const platform::Argb color = image.GetPixel(column, row);
        if (color >> 24U != 0xFFU) return false;
        ++opaque;
        return picture.GetPixel(x + column, y + row) != color;
      });
  if (opaque > 0 && wrong == platform::Rect{}) return testing::AssertionSuccess();
  return testing::AssertionFailure() << "not at " << x << ", " << y;
}
// The same for a PNG resource.
inline testing::AssertionResult Shows(const platform::Bitmap& picture, std::uint16_t id,
                                      std::int32_t x, std::int32_t y, float designDpi = 96.0F) {
  const auto image = LoadPngResource(id, designDpi);
  if (!image) return testing::AssertionFailure() << "no image " << id;
  return Shows(picture, *image, x, y) << ", image " << id;
}

// Around all that differs; empty for pictures that are the same.
inline platform::Rect BoxOfDifference(const platform::Bitmap& one, const platform::Bitmap& other) {
  return support::BoxOfDifference(one, other, support::AreaOf(one));
}
inline bool SamePixels(const platform::Bitmap& one, const platform::Bitmap& other) {
  return support::AreaOf(one) == support::AreaOf(other) &&
         BoxOfDifference(one, other) == platform::Rect{};
}

// Adds a text to what a picture should be.
inline void Write(platform::Bitmap& picture, std::u16string_view text, const platform::Font& font,
                  platform::PointF place, platform::Argb color,
                  platform::TextRenderingHint hint = platform::TextRenderingHint::AntiAliasGridFit,
                  platform::StringFormat format = platform::StringFormat::GenericDefault) {
  platform::Graphics graphics(picture);
  graphics.SetTextRenderingHint(hint);
  graphics.DrawString(text, font, place, format, color);
}
// The room that it takes.
inline platform::SizeF Measure(std::u16string_view text, const platform::Font& font,
                               platform::TextRenderingHint hint) {
  platform::Bitmap nowhere(1, 1, platform::PixelFormat::Argb32);
  platform::Graphics graphics(nowhere);
  graphics.SetTextRenderingHint(hint);
  return graphics.MeasureString(text, font, platform::StringFormat::GenericDefault);
}

}  // namespace ui
