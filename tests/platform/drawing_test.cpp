// What is drawn: which pixels lines, outlines and filled shapes reach, images at their own and at
// other sizes, text against the rules of the original drawing interface.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>

#include "tests/support/lacks.h"
#include "tests/support/picture_box.h"

namespace platform {
namespace {

constexpr Argb kRed = 0xFFFF0000;
constexpr Argb kWhite = 0xFFFFFFFF;

class Drawing : public support::SkipsWhatLacks {
 protected:
  Drawing() { graphics_.SetSmoothingMode(SmoothingMode::AntiAlias); }

  static std::uint32_t AlphaAt(const Bitmap& bitmap, std::int32_t x, std::int32_t y) {
    return bitmap.GetPixel(x, y) >> 24U;
  }
  std::uint32_t Alpha(std::int32_t x, std::int32_t y) const { return AlphaAt(bitmap_, x, y); }
  // The smallest rectangle that holds all pixels that are not fully transparent.
  Rect Bounds() const {
    return support::BoxOf(support::AreaOf(bitmap_),
                          [&](std::int32_t x, std::int32_t y) { return Alpha(x, y) != 0; });
  }
  // How many pixels the painted coverage amounts to.
  double Area() const {
    double area = 0.0;
    for (std::int32_t y = 0; y < bitmap_.Height(); ++y) {
      for (std::int32_t x = 0; x < bitmap_.Width(); ++x) area += Alpha(x, y) / 255.0;
    }
    return area;
  }

  static Bitmap Empty(std::int32_t width, std::int32_t height) {
    return {width, height, PixelFormat::PremultipliedArgb32};
  }
  static Bitmap Scaled(const Bitmap& source, std::int32_t width, std::int32_t height) {
    Bitmap target = Empty(width, height);
    Graphics graphics(target);
    graphics.SetInterpolationMode(InterpolationMode::HighQualityBicubic);
    graphics.DrawImage(source, Rect{0, 0, width, height});
    return target;
  }

  Bitmap bitmap_ = Empty(300, 100);
  Graphics graphics_{bitmap_};
};

class BothSmoothings : public Drawing, public testing::WithParamInterface<SmoothingMode> {
 protected:
  BothSmoothings() { graphics_.SetSmoothingMode(GetParam()); }
};
INSTANTIATE_TEST_SUITE_P(Smoothing, BothSmoothings,
                         testing::Values(SmoothingMode::None, SmoothingMode::AntiAlias));

TEST_P(BothSmoothings, StraightLinesAndRectanglesReachTheirPixelsSharply) {
  const struct {
    PointF from;
    PointF to;
    float width;
    Rect pixels;
  } lines[] = {{{10, 20}, {30, 20}, 1, {10, 20, 31, 21}}, {{30, 20}, {10, 20}, 1, {10, 20, 31, 21}},
               {{12, 5}, {12, 9}, 1, {12, 5, 13, 10}},    {{7, 7}, {7, 7}, 1, {7, 7, 8, 8}},
               {{10, 20}, {30, 20}, 3, {10, 19, 31, 22}}, {{9, 5}, {9, 9}, 3, {8, 5, 11, 10}}};
  for (const auto& line : lines) {
    graphics_.Clear(0);
    graphics_.DrawLine({kRed, line.width}, line.from, line.to);
    EXPECT_EQ(Bounds(), line.pixels);
    EXPECT_DOUBLE_EQ(Area(), line.pixels.Width() * line.pixels.Height());
  }
  graphics_.Clear(0);
  graphics_.DrawRectangle({kRed, 1}, {5, 6, 20, 10});
  EXPECT_EQ(Bounds(), (Rect{5, 6, 26, 17})) << "an outline reaches one pixel further";
  EXPECT_DOUBLE_EQ(Area(), 2 * (21 + 11) - 4);
  graphics_.Clear(0);
  graphics_.FillRectangle(kRed, {5, 6, 20, 10});
  EXPECT_EQ(Bounds(), (Rect{5, 6, 25, 16}));
  EXPECT_DOUBLE_EQ(Area(), 200);
  graphics_.Clear(0);
  graphics_.DrawRectangle({0x80FF0000, 2}, {10, 10, 20, 20});
  for (const Point point : {Point{10, 10}, Point{30, 10}, Point{20, 30}, Point{10, 20}}) {
    EXPECT_NEAR(Alpha(point.x, point.y), 0x80, 1) << "each pixel is covered once";
  }
}

TEST_F(Drawing, SlantedLinesReachHalfAPixelBeyondTheirEnds) {
  graphics_.DrawLine({kRed, 1}, {10, 10}, {13, 14});
  EXPECT_NEAR(Area(), 6.0, 0.1);
}

TEST_F(Drawing, ArcsRunClockwiseInTrueAngles) {
  graphics_.DrawArc({kRed, 2}, {20, 20, 60, 60}, 0, 180);
  EXPECT_EQ(Bounds().top, 50) << "the lower half alone";
  EXPECT_GT(Alpha(50, 80), 200U);
  graphics_.Clear(0);
  // To the diagonal of a flat ellipse: seen from the centre that is 45 degrees.
  graphics_.DrawArc({kRed, 1}, {10, 40, 80, 20}, 0, 45);
  const double radius = 1.0 / std::sqrt(0.5 / (40.0 * 40.0) + 0.5 / (10.0 * 10.0));
  EXPECT_NEAR(Bounds().left, 50 + radius * std::numbers::sqrt2 / 2, 1.5);
}

TEST_F(Drawing, GradientRepeatsOutsideItsPoints) {
  graphics_.FillEllipse({{30, 20}, {30, 30}, 0xFF000000, kWhite}, {0, 0, 59, 59});
  const auto grey = [&](std::int32_t y) { return bitmap_.GetPixel(30, y) & 0xFFU; };
  EXPECT_NEAR(grey(25), 128, 16);
  EXPECT_LT(grey(21), grey(29));
  for (const std::int32_t y : {22, 25, 28}) {
    EXPECT_NEAR(grey(y), grey(y + 10), 2) << y;
    EXPECT_NEAR(grey(y), grey(y - 10), 2) << y;
  }
  EXPECT_EQ(Bounds(), (Rect{0, 0, 60, 60}));
}

TEST_F(Drawing, ImpossibleCoordinatesAreLeftOut) {
  const float nan = std::numeric_limits<float>::quiet_NaN();
  graphics_.DrawLine({kRed, 1}, {nan, 1}, {5, 5});
  graphics_.DrawLine({kRed, 1}, {-1.0e30F, 10}, {1.0e30F, 10});
  const auto points = std::to_array<PointF>(
      {{0, 5}, {nan, nan}, {10, -std::numeric_limits<float>::infinity()}, {15, 1.0e30F}, {19, 5}});
  graphics_.DrawCurve({kRed, 1}, points, 0.5F);
  EXPECT_EQ(bitmap_.GetPixel(10, 10), kRed);
}

TEST_F(Drawing, SourceCopyStoresAndClipsCutWholePixels) {
  graphics_.Clear(kRed);
  graphics_.FillRectangle(0x80FFFFFF, {0, 0, 1, 1});
  EXPECT_NEAR(bitmap_.GetPixel(0, 0) & 0xFFU, 0x80, 1);
  graphics_.SetClip({5, 5, 10, 10});
  graphics_.SetCompositingMode(CompositingMode::SourceCopy);
  graphics_.FillRectangle(0x40204060, {0, 0, 20, 20});
  EXPECT_EQ(bitmap_.GetPixel(4, 5), kRed);
  EXPECT_EQ(bitmap_.GetPixel(10, 9), kRed);
  EXPECT_EQ(Alpha(5, 5), 0x40U);
  EXPECT_EQ(Alpha(9, 9), 0x40U);
}

TEST_F(Drawing, PixelsAreNotPremultipliedOutside) {
  Bitmap bitmap = Empty(4, 4);
  EXPECT_EQ(bitmap.GetPixel(1, 1), 0U);
  bitmap.SetPixel(1, 1, 0x80FF0000);
  EXPECT_EQ(bitmap.GetPixel(1, 1), 0x80FF0000);
  for (const Point outside : {Point{-1, 0}, Point{0, 4}, Point{4, 0}, Point{0, -1}}) {
    bitmap.SetPixel(outside.x, outside.y, kWhite);
    EXPECT_EQ(bitmap.GetPixel(outside.x, outside.y), 0U);
  }
}

TEST_F(Drawing, ImagesStayExactAtTheirSizeAndConstantAtAnyOther) {
  Bitmap noise = Empty(37, 23);
  std::uint32_t state = 12345;
  for (std::int32_t i = 0; i < 37 * 23; ++i) {
    noise.SetPixel(i % 37, i / 37, state = state * 1664525U + 1013904223U);
  }
  EXPECT_EQ(support::BoxOfDifference(Scaled(noise, 37, 23), noise, {0, 0, 37, 23}), Rect{});
  Bitmap source = Empty(50, 40);
  Graphics(source).Clear(0x66446688);
  for (const Size size : {Size{20, 16}, Size{49, 41}, Size{75, 60}, Size{200, 3}, Size{1, 1}}) {
    Bitmap expected = Empty(size.width, size.height);
    Graphics(expected).Clear(source.GetPixel(0, 0));
    EXPECT_EQ(support::BoxOfDifference(Scaled(source, size.width, size.height), expected,
                                       support::AreaOf(expected)),
              Rect{})
        << size.width;
  }
}

TEST_F(Drawing, ScaledImagesFilterFirstStayInPlaceAndTakeNoColourFromTransparency) {
  Bitmap stripes = Empty(120, 10);
  Bitmap green = Empty(40, 40);
  for (std::int32_t i = 0; i < 120 * 10; ++i) {
    stripes.SetPixel(i % 120, i / 120, i % 2 == 0 ? 0xFF000000 : kWhite);
  }
  const Bitmap shrunk = Scaled(stripes, 40, 10);
  for (std::int32_t x = 0; x < 40; ++x) EXPECT_NEAR(shrunk.GetPixel(x, 5) & 0xFFU, 128, 30) << x;

  // An edge, enlarged: the sharpness of the filter.
  Bitmap edge = Empty(4, 4);
  for (std::int32_t i = 0; i < 16; ++i)
    edge.SetPixel(i % 4, i / 4, i % 4 < 2 ? 0xFF000000 : kWhite);
  EXPECT_NEAR(Scaled(edge, 8, 8).GetPixel(3, 4) & 0xFFU, 55, 1);

  // A green field beside transparent pixels that would be red.
  Graphics graphics(green);
  graphics.SetCompositingMode(CompositingMode::SourceCopy);
  graphics.FillRectangle(0x00FF0000, {0, 0, 20, 40});
  graphics.FillRectangle(0xFF00FF00, {20, 0, 20, 40});
  for (const std::int32_t size : {16, 100}) {
    const Bitmap scaled = Scaled(green, size, size);
    for (std::int32_t x = 0; x < size; ++x) {
      EXPECT_EQ(scaled.GetPixel(x, size / 2) & 0x00FF0000U, 0U) << x;
    }
  }
}

class Text : public Drawing {
 protected:
  Text() { graphics_.SetTextRenderingHint(TextRenderingHint::AntiAlias); }

  SizeF Measure(std::u16string_view text, StringFormat format = StringFormat::GenericTypographic) {
    return graphics_.MeasureString(text, calibri_, format);
  }
  void Draw(std::u16string_view text, const Font& font, PointF at,
            StringFormat format = StringFormat::GenericTypographic) {
    graphics_.Clear(0);
    graphics_.DrawString(text, font, at, format, kWhite);
  }

  const Font calibri_{u"Calibri", 18, FontStyle::Regular};
  const double em_ = 24.0;
};

TEST_F(Text, LineHeightsAreThoseOfTheOriginalFonts) {
  // Of 2048 in an em.
  const std::pair<std::u16string_view, double> faces[] = {
      {u"Calibri", 2500}, {u"Verdana", 2489}, {u"Segoe UI Semilight", 2724}};
  for (const auto& [family, units] : faces) {
    for (const auto& [points, dpi] : {std::pair(8.0F, 96.0F), std::pair(18.0F, 144.0F)}) {
      const double em = static_cast<double>(points) * static_cast<double>(dpi) / 72.0;
      EXPECT_NEAR(Font(family, points, FontStyle::Regular).Height(dpi), em * units / 2048.0, 1e-3);
    }
  }
}

TEST_F(Text, WidthsComeFromTheFontsDesignOrAreWholePixels) {
  // Advances of the typeface in units of 1/2048 em: "M" 1751, "o" 1080, "v" 925, "i" 470, "e" 1019.
  const double advances = em_ * (1751 + 1080 + 925 + 470 + 1019) / 2048.0;
  EXPECT_NEAR(Measure(u"Movie").width, advances, 0.02);
  EXPECT_NEAR(Measure(u"Movie").height, em_ * 2500 / 2048, 0.01);
  for (const StringFormat format : {StringFormat::None, StringFormat::GenericDefault}) {
    const SizeF size = Measure(u"Movie", format);
    EXPECT_NEAR(size.width, 1.03 * advances + em_ / 3, 0.02);
    EXPECT_NEAR(size.height, em_ * 2500 / 2048 + em_ / 8, 0.01);
  }
  EXPECT_EQ(Measure(u"", StringFormat::None).width, 0.0F);
  EXPECT_FLOAT_EQ(Measure(u"Done   ").width, Measure(u"Done").width);
  EXPECT_GT(Measure(u"  Done").width, Measure(u"Done").width);
  EXPECT_FLOAT_EQ(Measure(u"Done\nOff").height, 2 * Measure(u"Done").height);
  graphics_.SetTextRenderingHint(TextRenderingHint::AntiAliasGridFit);
  for (const std::u16string_view text : {u"M", u"Gain", u"+20", u"1k"}) {
    EXPECT_FLOAT_EQ(Measure(text).width, std::round(Measure(text).width));
    EXPECT_GT(Measure(text).width, 0.0F);
  }
}

TEST_F(Text, GlyphsStandOnTheBaselineAfterTheMargin) {
  Draw(u"H", calibri_, {20, 10});
  const Rect bare = Bounds();
  EXPECT_NEAR(bare.bottom, 10 + em_ * 1950 / 2048, 1.0);
  EXPECT_NEAR(bare.Height(), em_ * 0.63, 1.5);  // capital height of the typeface
  Draw(u"H", calibri_, {20, 10}, StringFormat::GenericDefault);
  EXPECT_EQ(Bounds().left - bare.left, static_cast<std::int32_t>(em_ / 6));
  EXPECT_EQ(Bounds().bottom, bare.bottom);
}

TEST_F(Text, IsGrey) {
  Draw(u"lx", calibri_, {10.5F, 5});
  EXPECT_GT(Area(), 20.0);
  for (std::int32_t i = 0; i < 60 * 60; ++i) {
    const Argb pixel = bitmap_.GetPixel(i % 60, i / 60);
    EXPECT_EQ(pixel & 0xFFU, (pixel >> 16U) & 0xFFU);
  }
}

TEST_F(Text, UnknownFamiliesHaveAStandInWithBold) {
  Draw(u"Text", Font(u"No Such Family", 18, FontStyle::Regular), {5, 5});
  const double thin = Area();
  EXPECT_GT(thin, 50.0);
  Draw(u"Text", Font(u"No Such Family", 18, FontStyle::Bold), {5, 5});
  EXPECT_GT(Area(), thin * 1.15);
}

}  // namespace
}  // namespace platform
