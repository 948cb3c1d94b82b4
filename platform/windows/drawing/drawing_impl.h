// What stands behind the drawing classes: objects of the system's drawing library.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "platform/drawing.h"
#include "platform/windows/drawing/gdiplus_interface.h"

namespace platform {

struct Bitmap::Impl {
  // All pixels start transparent.
  Impl(std::int32_t givenWidth, std::int32_t givenHeight);

  std::uint32_t* At(std::int32_t x, std::int32_t y) { return &pixels[Index(x, y)]; }
  const std::uint32_t* At(std::int32_t x, std::int32_t y) const { return &pixels[Index(x, y)]; }
  bool Contains(std::int32_t x, std::int32_t y) const {
    return x >= 0 && x < width && y >= 0 && y < height;
  }

  std::size_t Index(std::int32_t x, std::int32_t y) const {
    return static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
           static_cast<std::size_t>(x);
  }

  std::int32_t width;
  std::int32_t height;
  // Always premultiplied, from the top row on without gaps; the library draws on them in place.
  std::vector<std::uint32_t> pixels;
  mutable Gdiplus::Bitmap image;
};

struct Font::Impl {
  Impl(const std::wstring& family, float points, FontStyle style);

  // A library's function asks for a font that it does not change.
  std::unique_ptr<Gdiplus::Font> font;
};

struct Path::Impl {
  Gdiplus::GraphicsPath path{Gdiplus::FillModeAlternate};
};

struct Graphics::Impl {
  explicit Impl(Bitmap::Impl& bitmap) : surface(&bitmap.image), target(&bitmap) {}
  // Draws nothing.
  Impl() : surface(static_cast<HDC>(nullptr)) {}

  Gdiplus::Graphics surface;
  Bitmap::Impl* target = nullptr;
};

}  // namespace platform
