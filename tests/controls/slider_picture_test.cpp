#include <gtest/gtest.h>

#include <limits>

#include "tests/controls/picture.h"
#include "ui/controls/shared/control_style.h"
#include "ui/controls/shared/control_window.h"
#include "ui/controls/slider/slider_geometry.h"
#include "ui/controls/slider/slider_painter.h"

namespace ui {
namespace {

using platform::Argb;
using platform::Bitmap;
using platform::Rect;
using platform::Size;

constexpr Argb kThumb = 0xFF00FF00;
constexpr Argb kDisabledThumb = 0xFF0000FF;
constexpr Argb kCyan = 0xFF22DFFF;
constexpr Argb kCyanSide = 0xFF225157;
constexpr Argb kMagenta = 0xFFDC2A8A;
constexpr Argb kMagentaSide = 0xFF812E5C;
constexpr Argb kRed = 0xFFBE0000;
constexpr Argb kInside = 0xFF191919;

class SliderPictureTest : public testing::TestWithParam<double> {
 protected:
  SliderPictureTest() {
    background_.Capture(Solid(size_, kTestBackground), {0, 0, size_.width, size_.height}, size_);
  }

  Bitmap Paint(const SliderState& state) const {
    Bitmap picture = MakeCanvas(size_, platform::PixelFormat::PremultipliedArgb32);
    PaintSlider(picture, scale_, {background_, thumb_, disabledThumb_, font_}, state);
    return picture;
  }

  std::int32_t Units(double units) const { return static_cast<std::int32_t>(units * scale_); }

  const double scale_ = GetParam();
  const Size size_{Units(389), Units(59)};
  const std::int32_t left_ = Units(10);
  const std::int32_t right_ = size_.width - Units(10);
  const std::int32_t centre_ = 3 * size_.height / 4;
  const std::int32_t zero_ = Units(184);
  const std::optional<Bitmap> thumb_ = Solid({Units(19), Units(19)}, kThumb);
  const std::optional<Bitmap> disabledThumb_ = Solid({Units(19), Units(19)}, kDisabledThumb);
  const platform::Font font_{kCaptionFamily, kCaptionPoints, platform::FontStyle::Bold};
  BackgroundCopy background_;
};

INSTANTIATE_TEST_SUITE_P(Scales, SliderPictureTest, testing::Values(1.0, 1.25, 1.5, 2.0));

TEST_P(SliderPictureTest, GrooveRows) {
  const Bitmap picture = Paint({.thumbPos = 0, .zeroPos = -7});
  const std::int32_t x = left_ + Units(250);
  for (const std::int32_t sign : {-1, 1}) {
    EXPECT_EQ(picture.GetPixel(x, centre_ + sign * (Units(4) + 1)), kTestBackground);
    EXPECT_EQ(picture.GetPixel(x, centre_ + sign * Units(4)), 0xFF505050U);
    EXPECT_EQ(picture.GetPixel(x, centre_ + sign * Units(3)), 0xFF3C3C3CU);
    EXPECT_EQ(picture.GetPixel(x, centre_ + sign * Units(2)), kInside);
    EXPECT_EQ(picture.GetPixel(x, centre_ + sign * Units(1)), kInside);
    // The ends, where the shading does not lie over them.
    EXPECT_EQ(picture.GetPixel(right_, centre_ + sign * Units(4)), 0xFF505050U);
    EXPECT_EQ(picture.GetPixel(right_ + 1, centre_ + sign * Units(4)), kTestBackground);
    EXPECT_EQ(picture.GetPixel(right_ + Units(2), centre_ + sign * Units(1)), kInside);
    EXPECT_EQ(picture.GetPixel(right_ + Units(3), centre_ + sign * Units(1)), 0xFF424242U);
    EXPECT_EQ(picture.GetPixel(right_ + Units(2), centre_ + sign * Units(2)), 0xFF373737U);
    EXPECT_EQ(picture.GetPixel(right_ + Units(2), centre_ + sign * Units(3)), 0xFF636363U);
    EXPECT_EQ(picture.GetPixel(right_ + Units(1), centre_ + sign * Units(3)), 0xFF535353U);
  }
  EXPECT_EQ(picture.GetPixel(x, centre_), kInside);
  EXPECT_EQ(picture.GetPixel(right_ + Units(3), centre_), 0xFF3F3F3FU);
  EXPECT_EQ(picture.GetPixel(right_ + Units(4), centre_), 0xFF4C4C4CU);
  EXPECT_EQ(picture.GetPixel(right_ + Units(4) + 1, centre_), kTestBackground);
  const Bitmap moved = Paint({.thumbPos = Units(300), .zeroPos = -7});
  EXPECT_EQ(moved.GetPixel(left_ - Units(4), centre_), 0xFF4C4C4CU) << "the left end alike";
}

TEST_P(SliderPictureTest, TicksMarkAZeroInsideTheRangeOnly) {
  const std::int32_t far = Units(10);
  const Bitmap with = Paint({.thumbPos = 0, .zeroPos = zero_});
  const Bitmap without = Paint({.thumbPos = 0, .zeroPos = 0});
  for (const std::int32_t y :
       {centre_ - far, centre_ - Units(5), centre_ + Units(5), centre_ + far}) {
    EXPECT_EQ(with.GetPixel(left_ + zero_, y), 0xFF505050U) << y;
    EXPECT_EQ(without.GetPixel(left_ + zero_, y), kTestBackground) << y;
  }
  EXPECT_EQ(with.GetPixel(left_ + zero_, centre_ - far - 1), kTestBackground);
  EXPECT_EQ(with.GetPixel(left_ + zero_, centre_ + far + 1), kTestBackground);
}

TEST_P(SliderPictureTest, FillRunsFromZeroToTheThumbInTheSignsColour) {
  struct Case {
    std::int32_t thumbPos;
    std::int32_t zeroPos;
    bool redAccent;
    std::int32_t filled;   // a place that is filled
    std::int32_t outside;  // and one that is not
    Argb centre;
    Argb side;
  };
  for (const Case& c : {
           Case{300, 184, false, 250, 150, kCyan, kCyanSide},
           Case{60, 184, false, 150, 250, kMagenta, kMagentaSide},
           Case{300, -7, false, 20, 330, kCyan, kCyanSide},
           Case{300, 184, true, 250, 150, kRed, kRed},
           Case{60, 184, true, 150, 250, kRed, kRed},
       }) {
    const Bitmap picture = Paint(
        {.thumbPos = Units(c.thumbPos), .zeroPos = Units(c.zeroPos), .redAccent = c.redAccent});
    const std::int32_t x = left_ + Units(c.filled);
    EXPECT_EQ(picture.GetPixel(x, centre_), c.centre) << c.thumbPos;
    EXPECT_EQ(picture.GetPixel(x, centre_ - Units(1)), c.side) << c.thumbPos;
    EXPECT_EQ(picture.GetPixel(x, centre_ + Units(1)), c.side) << c.thumbPos;
    EXPECT_EQ(picture.GetPixel(x, centre_ - Units(2)), kInside) << c.thumbPos;
    EXPECT_EQ(picture.GetPixel(left_ + Units(c.outside), centre_), kInside) << c.thumbPos;
  }
  const Bitmap atZero = Paint({.thumbPos = zero_, .zeroPos = zero_});
  EXPECT_TRUE(BoxOfColor(atZero, kCyan) == Rect{}) << "at zero it counts as below";
}

TEST_P(SliderPictureTest, ThumbLiesWhereTheGeometrySays) {
  const std::int32_t thumbPos = Units(100);
  const Size image = SizeOf(*thumb_);
  const std::int32_t x = Units(1.5) - image.width / 2 + left_ + thumbPos;
  const std::int32_t y = Units(1.5) + centre_ - image.height / 2;
  const Rect expected{x, y, x + image.width, y + image.height};
  EXPECT_EQ(BoxOfColor(Paint({.thumbPos = thumbPos, .zeroPos = zero_}), kThumb), expected);
  const Bitmap disabled = Paint({.thumbPos = thumbPos, .zeroPos = zero_, .enabled = false});
  EXPECT_EQ(BoxOfColor(disabled, kDisabledThumb), expected);
  EXPECT_TRUE(BoxOfColor(disabled, kThumb) == Rect{});
  EXPECT_EQ(disabled.GetPixel(left_ + Units(150), centre_), kInside) << "no fill";
}

TEST_P(SliderPictureTest, ValueBoxAndTexts) {
  const Bitmap empty = Paint({});
  const Rect box{right_ - Units(80), Units(10), right_, Units(10) + Units(20)};
  const std::int32_t middle = (box.top + box.bottom) / 2;
  for (const auto& [x, y] :
       {std::pair{box.left, middle}, std::pair{box.right, middle},
        std::pair{box.left + Units(40), box.top}, std::pair{box.left + Units(40), box.bottom}}) {
    EXPECT_EQ(empty.GetPixel(x, y), 0xFF6F6F6FU) << x << ", " << y;
  }
  EXPECT_EQ(empty.GetPixel(box.left + 1, box.top + 1 + Units(1)), 0xFF1A1A1AU);
  EXPECT_EQ(empty.GetPixel(box.right + 1, middle), kTestBackground);
  EXPECT_EQ(empty.GetPixel(box.left - 1, middle), kTestBackground);

  const Bitmap value = Paint({.valueText = u"-12.0 dB"});
  const Rect valueInk = BoxOfDifference(empty, value);
  EXPECT_GT(valueInk.left, box.left);
  EXPECT_LT(valueInk.right, box.right);
  EXPECT_GT(valueInk.top, box.top);
  EXPECT_LT(valueInk.bottom, box.bottom);
  EXPECT_NEAR(valueInk.left - box.left, box.right - valueInk.right, 8 * scale_) << "centred";

  const Rect captionInk = BoxOfDifference(empty, Paint({.caption = u"Gain"}));
  EXPECT_GE(captionInk.left, Units(10));
  EXPECT_LE(captionInk.left, Units(16));
  EXPECT_GE(captionInk.top, Units(10));
  EXPECT_LT(captionInk.bottom, centre_ - Units(4));
}

// The lightest pixel of the caption.
std::int32_t Brightest(const Bitmap& picture, std::int32_t width, std::int32_t height) {
  std::int32_t brightest = 0;
  for (std::int32_t y = 0; y < height; ++y) {
    for (std::int32_t x = 0; x < width; ++x) {
      brightest = std::max(brightest, Channel(picture.GetPixel(x, y), 8));
    }
  }
  return brightest;
}

TEST_P(SliderPictureTest, ADisabledSlidersTextIsGrey) {
  const std::int32_t width = Units(200);
  const std::int32_t height = Units(30);
  EXPECT_GT(Brightest(Paint({.caption = u"HHHH"}), width, height), 240);
  EXPECT_LE(Brightest(Paint({.enabled = false, .caption = u"HHHH"}), width, height), 0x80);
}

TEST_P(SliderPictureTest, WithoutImagesAndWithAbsurdPositionsTheRestIsPainted) {
  const std::optional<Bitmap> none;
  Bitmap picture = MakeCanvas(size_, platform::PixelFormat::PremultipliedArgb32);
  for (const std::int32_t zeroPos :
       {std::numeric_limits<std::int32_t>::min(), 0, std::numeric_limits<std::int32_t>::max()}) {
    PaintSlider(picture, scale_, {background_, none, none, font_}, {.zeroPos = zeroPos});
    EXPECT_EQ(picture.GetPixel(left_ + Units(250), centre_ + Units(4)), 0xFF505050U);
    EXPECT_TRUE(BoxOfColor(picture, kThumb) == Rect{});
  }
}

}  // namespace
}  // namespace ui
