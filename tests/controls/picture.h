// Pictures as they are on the screen, and ways to look at them.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <initializer_list>
#include <string_view>

#include "platform/drawing.h"
#include "platform/geometry.h"
#include "tests/support/picture_box.h"

namespace ui {

// Does what is due: messages that are posted, then paints.
void Settle();

// What the visible window shows at present in this part of it, whether or not a paint is due.
platform::Bitmap WindowPicture(const platform::Rect& area);

// A mouse over the visible window, wherever the pointer is by then.
enum class Mouse { Press, Move, Release };
void Use(Mouse mouse, platform::Point client);

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
platform::Argb Mixed(platform::Argb color, platform::Argb below, double coverage = 1.0);

struct Spot {
  std::int32_t x;
  std::int32_t y;
  platform::Argb color;
};

void ExpectSpots(const platform::Bitmap& picture, std::initializer_list<Spot> spots,
                 std::int32_t tolerance = 1);

// The image's own pixels, where it is opaque, lie in the picture from (x, y) on.
testing::AssertionResult Shows(const platform::Bitmap& picture, const platform::Bitmap& image,
                               std::int32_t x, std::int32_t y);
// The same for a PNG resource.
testing::AssertionResult Shows(const platform::Bitmap& picture, std::uint16_t id, std::int32_t x,
                               std::int32_t y, float designDpi = 96.0F);

// Around all that differs; empty for pictures that are the same.
inline platform::Rect BoxOfDifference(const platform::Bitmap& one, const platform::Bitmap& other) {
  return support::BoxOfDifference(one, other, support::AreaOf(one));
}
inline bool SamePixels(const platform::Bitmap& one, const platform::Bitmap& other) {
  return support::AreaOf(one) == support::AreaOf(other) &&
         BoxOfDifference(one, other) == platform::Rect{};
}

// Adds a text to what a picture should be.
void Write(platform::Bitmap& picture, std::u16string_view text, const platform::Font& font,
           platform::PointF place, platform::Argb color,
           platform::TextRenderingHint hint = platform::TextRenderingHint::AntiAliasGridFit,
           platform::StringFormat format = platform::StringFormat::GenericDefault);
// The room that it takes.
platform::SizeF Measure(std::u16string_view text, const platform::Font& font,
                        platform::TextRenderingHint hint);

}  // namespace ui
