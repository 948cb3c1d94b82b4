#include <gtest/gtest.h>

#include "tests/controls/picture.h"
#include "ui/controls/buttons/png_button.h"
#include "ui/controls/buttons/png_checkbox.h"
#include "ui/controls/shared/control_style.h"
#include "ui/controls/shared/control_window.h"

namespace ui {
namespace {

using platform::Argb;
using platform::Bitmap;
using platform::Rect;
using platform::Size;

constexpr Argb kImage = 0xFF00FF00;

Bitmap PaintButton(Size size, const Bitmap* image) {
  Bitmap picture = MakeCanvas(size, platform::PixelFormat::Argb32);
  PaintImageButton(picture, BackgroundCopy(), image);
  return picture;
}

TEST(ButtonPicture, ImageIsCentredAndCutOffAlikeOnBothSides) {
  const Bitmap small = Solid({20, 20}, kImage);
  EXPECT_EQ(BoxOfColor(PaintButton({38, 31}, &small), kImage), (Rect{9, 5, 29, 25}));
  EXPECT_EQ(BoxOfColor(PaintButton({10, 11}, &small), kImage), (Rect{0, 0, 10, 11}));
  EXPECT_TRUE(BoxOfColor(PaintButton({38, 31}, nullptr), kImage) == Rect{});

  Bitmap framed = Solid({21, 20}, kImage);
  framed.SetPixel(5, 4, 0xFFFF0000);  // (10 - 21) / 2 is -5, (11 - 20) / 2 is -4
  EXPECT_EQ(PaintButton({10, 11}, &framed).GetPixel(0, 0), 0xFFFF0000U);
}

TEST(ButtonPicture, WithoutABackgroundItStaysTransparent) {
  EXPECT_EQ(PaintButton({30, 30}, nullptr).GetPixel(3, 3), 0U);
}

TEST(BackgroundCopy, TakesThePartUnderTheControl) {
  Bitmap parent = Solid({100, 50}, 0xFF111111);
  parent.SetPixel(30, 20, 0xFFAA0000);
  BackgroundCopy copy;
  const auto painted = [&copy] {
    Bitmap picture = MakeCanvas({40, 40}, platform::PixelFormat::PremultipliedArgb32);
    platform::Graphics graphics(picture);
    copy.Draw(graphics);
    return picture;
  };
  copy.Capture(parent, {28, 15, 48, 65}, {20, 40});
  {
    const Bitmap picture = painted();
    EXPECT_EQ(picture.GetPixel(2, 5), 0xFFAA0000U);
    EXPECT_EQ(picture.GetPixel(19, 34), 0xFF111111U);
    EXPECT_EQ(picture.GetPixel(20, 5), 0U) << "no wider than the control";
    EXPECT_EQ(picture.GetPixel(2, 35), 0U) << "the parent ends there";
  }
  copy.Capture(Solid({100, 200}, 0xFF222222), {28, 15, 48, 65}, {20, 40});
  EXPECT_EQ(painted().GetPixel(2, 5), 0xFF222222U);
  EXPECT_EQ(painted().GetPixel(2, 39), 0xFF222222U) << "now it is there";
  copy.Capture(Solid({100, 40}, 0xFF333333), {28, 15, 48, 65}, {20, 40});
  EXPECT_EQ(painted().GetPixel(2, 5), 0xFF333333U);
  EXPECT_EQ(painted().GetPixel(2, 30), 0xFF222222U) << "what is out of reach stays";
}

class CheckboxPicture : public testing::Test {
 protected:
  Bitmap Paint(Size size, std::u16string_view caption, const std::optional<Bitmap>& indicator) {
    Bitmap picture = MakeCanvas(size, platform::PixelFormat::Argb32);
    PaintCheckbox(picture, BackgroundCopy(), font_, caption, indicator);
    return picture;
  }

  const platform::Font font_{kCaptionFamily, kCaptionPoints, platform::FontStyle::Bold};
  const std::optional<Bitmap> none_;
};

TEST_F(CheckboxPicture, IndicatorLiesEightPixelsFromTheRight) {
  const std::optional<Bitmap> dot = Solid({19, 19}, kImage);
  EXPECT_EQ(BoxOfColor(Paint({161, 23}, u"", dot), kImage), (Rect{134, 2, 153, 21}));
  EXPECT_EQ(BoxOfColor(Paint({161, 16}, u"", dot), kImage), (Rect{134, 0, 153, 16}));
}

TEST_F(CheckboxPicture, CaptionIsVerticallyCentredAtTheLeft) {
  for (const std::int32_t height : {23, 40, 61}) {
    const Bitmap picture = Paint({161, height}, u"HHH", none_);
    const Rect ink = BoxOfDifference(picture, Paint({161, height}, u"", none_));
    EXPECT_GE(ink.left, 1);
    EXPECT_LE(ink.left, 8);
    EXPECT_NEAR((ink.top + ink.bottom) / 2.0, height / 2.0, 2.5) << height;
    EXPECT_LT(ink.Height(), 16);
  }
}

}  // namespace
}  // namespace ui
