// Text metrics against the rules of the original drawing interface.
#include <gtest/gtest.h>

#include <array>
#include <cmath>

#include "tests/platform/pixels.h"

namespace platform {
namespace {

struct FaceCase {
  std::u16string_view family;
  double lineUnits;  // of 2048 in an em
};

TEST(DrawingText, LineHeightsAreThoseOfTheOriginalFonts) {
  const auto cases = std::to_array<FaceCase>(
      {{u"Calibri", 2500}, {u"Verdana", 2489}, {u"Segoe UI Semilight", 2724}});
  for (const FaceCase& face : cases) {
    for (const float points : {8.0F, 12.0F, 18.0F}) {
      for (const float dpi : {96.0F, 120.0F, 144.0F}) {
        const Font font(face.family, points, FontStyle::Regular);
        const double em = static_cast<double>(points) * static_cast<double>(dpi) / 72.0;
        EXPECT_NEAR(font.Height(dpi), em * face.lineUnits / 2048.0, 1e-3);
      }
    }
  }
}

class TextFixture : public testing::Test {
 protected:
  Bitmap bitmap_ = EmptyBitmap(300, 80);
  Graphics graphics_{bitmap_};
  const Font calibri_{u"Calibri", 18, FontStyle::Regular};
  const double em_ = 24.0;
};

TEST_F(TextFixture, UnhintedWidthsComeFromTheFontsDesign) {
  graphics_.SetTextRenderingHint(TextRenderingHint::AntiAlias);
  // Advances of the typeface in units of 1/2048 em: "M" 1751, "o" 1080, "v" 925, "i" 470, "e" 1019.
  const double units = 1751 + 1080 + 925 + 470 + 1019;
  const double advances = em_ * units / 2048.0;
  const SizeF bare = graphics_.MeasureString(u"Movie", calibri_, StringFormat::GenericTypographic);
  EXPECT_NEAR(bare.width, advances, 0.02);
  EXPECT_NEAR(bare.height, em_ * 2500 / 2048, 0.01);
  for (const StringFormat format : {StringFormat::None, StringFormat::GenericDefault}) {
    const SizeF size = graphics_.MeasureString(u"Movie", calibri_, format);
    EXPECT_NEAR(size.width, 1.03 * advances + em_ / 3, 0.02);
    EXPECT_NEAR(size.height, em_ * 2500 / 2048 + em_ / 8, 0.01);
  }
  EXPECT_EQ(graphics_.MeasureString(u"", calibri_, StringFormat::None).width, 0.0F);
}

TEST_F(TextFixture, OnlyTheStandInForSemilightIsNarrowed) {
  graphics_.SetTextRenderingHint(TextRenderingHint::AntiAlias);
  // "Movie" in the advances of Open Sans, Regular and Light.
  for (const auto& [family, units] :
       {std::pair(u"Segoe WP", 5779.0), {u"Segoe UI Semilight", 0.95 * 5494.0}}) {
    const Font font(family, 18, FontStyle::Regular);
    const SizeF size = graphics_.MeasureString(u"Movie", font, StringFormat::GenericTypographic);
    EXPECT_NEAR(size.width, em_ * units / 2048.0, 0.02);
  }
}

TEST_F(TextFixture, GridFittedAdvancesAreWholePixels) {
  graphics_.SetTextRenderingHint(TextRenderingHint::AntiAliasGridFit);
  for (const std::u16string_view text : {u"M", u"Gain", u"+20", u"1k"}) {
    const float width =
        graphics_.MeasureString(text, calibri_, StringFormat::GenericTypographic).width;
    EXPECT_FLOAT_EQ(width, std::round(width));
    EXPECT_GT(width, 0.0F);
  }
}

TEST_F(TextFixture, TrailingBlanksAndLines) {
  const auto measure = [&](std::u16string_view text) {
    return graphics_.MeasureString(text, calibri_, StringFormat::GenericTypographic);
  };
  EXPECT_FLOAT_EQ(measure(u"Done   ").width, measure(u"Done").width);
  EXPECT_GT(measure(u"  Done").width, measure(u"Done").width);
  EXPECT_FLOAT_EQ(measure(u"Done\nOff").height, 2 * measure(u"Done").height);
}

TEST_F(TextFixture, GlyphsStandOnTheBaselineAfterTheMargin) {
  graphics_.SetTextRenderingHint(TextRenderingHint::AntiAlias);
  const double baseline = 10 + em_ * 1950 / 2048;
  graphics_.DrawString(u"H", calibri_, {20, 10}, StringFormat::GenericTypographic, 0xFFFFFFFF);
  const Rect bare = PaintedBounds(bitmap_);
  EXPECT_NEAR(bare.bottom, baseline, 1.0);
  EXPECT_NEAR(bare.Height(), em_ * 0.63, 1.5);  // capital height of the typeface
  graphics_.Clear(0);
  graphics_.DrawString(u"H", calibri_, {20, 10}, StringFormat::GenericDefault, 0xFFFFFFFF);
  const Rect indented = PaintedBounds(bitmap_);
  EXPECT_EQ(indented.left - bare.left, static_cast<std::int32_t>(em_ / 6));
  EXPECT_EQ(indented.bottom, bare.bottom);
}

TEST_F(TextFixture, TextIsGreyAndFollowsFractionalPositions) {
  const auto draw = [&](float x) {
    Bitmap bitmap = EmptyBitmap(60, 60);
    Graphics graphics(bitmap);
    graphics.Clear(0xFF000000);
    graphics.SetTextRenderingHint(TextRenderingHint::AntiAlias);
    graphics.DrawString(u"lx", calibri_, {x, 5}, StringFormat::GenericTypographic, 0xFFFFFFFF);
    return bitmap;
  };
  const Bitmap whole = draw(10.0F);
  const Bitmap half = draw(10.5F);
  bool differs = false;
  for (std::int32_t y = 0; y < 60; ++y) {
    for (std::int32_t x = 0; x < 60; ++x) {
      const Argb pixel = half.GetPixel(x, y);
      EXPECT_EQ(pixel & 0xFFU, (pixel >> 16U) & 0xFFU);
      differs = differs || pixel != whole.GetPixel(x, y);
    }
  }
  EXPECT_TRUE(differs);
}

TEST_F(TextFixture, UnknownFamilyAndBoldStillDraw) {
  const Font unknown(u"No Such Family", 18, FontStyle::Regular);
  graphics_.DrawString(u"Text", unknown, {5, 5}, StringFormat::None, 0xFFFFFFFF);
  const double thin = PaintedArea(bitmap_);
  EXPECT_GT(thin, 50.0);
  const Font bold(u"No Such Family", 18, FontStyle::Bold);
  graphics_.Clear(0);
  graphics_.DrawString(u"Text", bold, {5, 5}, StringFormat::None, 0xFFFFFFFF);
  EXPECT_GT(PaintedArea(bitmap_), thin * 1.15);
}

}  // namespace
}  // namespace platform
