#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>

#include "tests/controls/picture.h"
#include "ui/controls/knob/knob_geometry.h"
#include "ui/controls/knob/knob_painter.h"
#include "ui/controls/shared/control_style.h"
#include "ui/controls/shared/control_window.h"

namespace ui {
namespace {

using platform::Argb;
using platform::Bitmap;
using platform::Rect;
using platform::Size;

constexpr Argb kLit = 0xFF20BFD5;
constexpr Argb kRed = 0xFFBE0000;

class KnobPictureTest : public testing::TestWithParam<double> {
 protected:
  KnobPictureTest() {
    background_.Capture(Solid(size_, kTestBackground), {0, 0, size_.width, size_.height}, size_);
  }

  Bitmap Paint(const KnobState& state) const {
    Bitmap picture = MakeCanvas(size_, platform::PixelFormat::Argb32);
    PaintKnob(picture, scale_, {background_, font_}, state);
    return picture;
  }

  // The colour in the middle of a tick.
  Argb Tick(const Bitmap& picture, int degrees) const {
    const double radius = (geometry_.TickInnerRadius() + geometry_.TickOuterRadius()) / 2.0;
    const platform::PointF middle = geometry_.PointAt(TickAngle(degrees), radius);
    return picture.GetPixel(static_cast<std::int32_t>(std::lround(middle.x)),
                            static_cast<std::int32_t>(std::lround(middle.y)));
  }

  const double scale_ = GetParam();
  const Size size_{static_cast<std::int32_t>(128 * scale_),
                   static_cast<std::int32_t>(154 * scale_)};
  const KnobGeometry geometry_{size_, scale_};
  const platform::Font font_{kCaptionFamily, kKnobCaptionPoints, platform::FontStyle::Bold};
  BackgroundCopy background_;
};

INSTANTIATE_TEST_SUITE_P(Scales, KnobPictureTest, testing::Values(1.0, 1.25, 1.5, 2.0));

TEST_P(KnobPictureTest, TicksAreLitUpToThePosition) {
  struct Case {
    std::int32_t knobPos;
    int lastLit;
  };
  for (const Case& c :
       {Case{0, 0}, Case{16, 0}, Case{17, 10}, Case{200, 120}, Case{399, 230}, Case{400, 240}}) {
    for (const bool redAccent : {false, true}) {
      const Bitmap picture = Paint({.knobPos = c.knobPos, .redAccent = redAccent});
      for (int degrees = 0; degrees <= kScaleDegrees; degrees += kTickDegrees) {
        SCOPED_TRACE(testing::Message() << "position " << c.knobPos << ", tick " << degrees);
        const Argb color = Tick(picture, degrees);
        if (degrees == 0) {
          EXPECT_LT(Distance(color, 0xFFFFFFFF), 60);
        } else if (degrees <= c.lastLit) {
          EXPECT_LT(Distance(color, redAccent ? kRed : kLit), 60);
        } else {
          EXPECT_LT(Channel(color, 8), 0x70) << "darker than the background";
          EXPECT_EQ(Channel(color, 16), Channel(color, 0)) << "grey";
        }
      }
    }
  }
}

TEST_P(KnobPictureTest, IndicatorPointsWhereThePositionSays) {
  for (const auto& [knobPos, degrees] :
       {std::pair{0, 210.0}, std::pair{200, 90.0}, std::pair{300, 30.0}, std::pair{400, -30.0}}) {
    const Rect dot =
        BoxOfDifference(Paint({.knobPos = knobPos}), Paint({.knobPos = knobPos, .enabled = false}));
    ASSERT_FALSE(dot == Rect{});
    const double angle = degrees * std::acos(-1.0) / 180.0;
    const double centre = geometry_.DiscCentre();
    const double radius = geometry_.IndicatorRadius();
    EXPECT_NEAR((dot.left + dot.right) / 2.0, centre + std::cos(angle) * radius, 2.0) << knobPos;
    EXPECT_NEAR((dot.top + dot.bottom) / 2.0, centre - std::sin(angle) * radius, 2.0) << knobPos;
    EXPECT_NEAR(dot.Width(), 0.3 * geometry_.FaceRadius(), 2.0);
  }
}

TEST_P(KnobPictureTest, FaceIsLitFromAboveAndLiesInTheUpperPart) {
  const Bitmap picture = Paint({.enabled = false});
  const auto centre = static_cast<std::int32_t>(geometry_.DiscCentre());
  const auto radius = static_cast<std::int32_t>(geometry_.FaceRadius());
  const Argb top = picture.GetPixel(centre, centre - radius + 3);
  const Argb bottom = picture.GetPixel(centre, centre + radius - 5);
  EXPECT_LT(Distance(top, 0xFF555555), 4);
  EXPECT_LT(Distance(bottom, 0xFF3D3D3D), 4);
  EXPECT_EQ(picture.GetPixel(centre - radius - 3, centre), kTestBackground);
  EXPECT_EQ(picture.GetPixel(centre, size_.height - 1), kTestBackground) << "no caption";
}

TEST_P(KnobPictureTest, CaptionIsCentredAtTheBottomAndCutAtNinetyNineLetters) {
  const Bitmap empty = Paint({});
  const Rect ink = BoxOfDifference(empty, Paint({.caption = u"HHHH"}));
  EXPECT_NEAR(ink.left, size_.width - ink.right, 2.0 * scale_);
  EXPECT_GT(ink.top, geometry_.DiscCentre() + geometry_.FaceRadius());
  EXPECT_LE(ink.bottom, size_.height);

  const std::u16string cut(99, u'.');
  EXPECT_TRUE(BoxOfDifference(Paint({.caption = cut}), Paint({.caption = cut + u"HHH"})) == Rect{});
}

TEST_P(KnobPictureTest, AnyPositionAndSizeCanBePainted) {
  for (const std::int32_t knobPos : {std::numeric_limits<std::int32_t>::min(), -1, 401,
                                     std::numeric_limits<std::int32_t>::max()}) {
    const Bitmap picture = Paint({.knobPos = knobPos});
    EXPECT_LT(Distance(Tick(picture, 0), 0xFFFFFFFF), 60);
  }
  for (const Size size : {Size{1, 1}, Size{20, 300}, Size{31, 31}}) {
    Bitmap picture = MakeCanvas(size, platform::PixelFormat::Argb32);
    PaintKnob(picture, scale_, {background_, font_}, {.knobPos = 100, .caption = u"Bass"});
  }
}

}  // namespace
}  // namespace ui
