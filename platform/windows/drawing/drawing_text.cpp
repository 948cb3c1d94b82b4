#include <string>

#include "platform/windows/drawing/coordinates.h"
#include "platform/windows/drawing/drawing_impl.h"
#include "platform/windows/wide_text.h"

namespace platform {
namespace {

// None is the library's own default layout.
const Gdiplus::StringFormat* ToNative(StringFormat format) {
  switch (format) {
    case StringFormat::None:
      return nullptr;
    case StringFormat::GenericDefault:
      return Gdiplus::StringFormat::GenericDefault();
    case StringFormat::GenericTypographic:
      return Gdiplus::StringFormat::GenericTypographic();
  }
  return nullptr;
}

}  // namespace

Font::Impl::Impl(const std::wstring& family, float points, FontStyle style) {
  const INT native = style == FontStyle::Bold ? Gdiplus::FontStyleBold : Gdiplus::FontStyleRegular;
  const Gdiplus::FontFamily asked(family.c_str());
  const Gdiplus::FontFamily* const used =
      asked.IsAvailable() ? &asked : Gdiplus::FontFamily::GenericSansSerif();
  font = std::make_unique<Gdiplus::Font>(used, points, native, Gdiplus::UnitPoint);
}

Font::Font(std::u16string_view family, float points, FontStyle style)
    : impl_(std::make_unique<Impl>(ToWide(family), points, style)) {}
Font::~Font() = default;

float Font::Height(float dpi) const {
  return impl_->font->GetHeight(dpi);
}

SizeF Graphics::MeasureString(std::u16string_view text, const Font& font, StringFormat format) {
  if (text.empty()) return {};
  const std::wstring wide = ToWide(text);
  Gdiplus::RectF box;
  impl_->surface.MeasureString(wide.data(), static_cast<INT>(wide.size()), font.Native().font.get(),
                               Gdiplus::PointF(), ToNative(format), &box);
  return {box.Width, box.Height};
}

void Graphics::DrawString(std::u16string_view text, const Font& font, PointF origin,
                          StringFormat format, Argb color) {
  if (!IsDrawable(origin)) return;
  const std::wstring wide = ToWide(text);
  const Gdiplus::SolidBrush brush{Gdiplus::Color(color)};
  impl_->surface.DrawString(wide.data(), static_cast<INT>(wide.size()), font.Native().font.get(),
                            platform::ToNative(origin), ToNative(format), &brush);
}

}  // namespace platform
