// The knob as a window: its picture, what turns it, and what it tells its parent.
#include <gmock/gmock.h>

#include <cmath>
#include <numbers>
#include <string>
#include <tuple>
#include <utility>

#include "tests/controls/control_dialog.h"

namespace ui {
namespace {

using platform::Argb;
using platform::Bitmap;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr Argb kLit = 0xFF20BFD5;
constexpr Argb kRed = 0xFFBE0000;
constexpr Argb kDark = 0x89000000;

class KnobTest : public ControlTest {
 protected:
  void Redraw(std::int32_t position) {
    knob_.SetValue(position - 1);
    Settle();
    knob_.SetValue(position);
  }
  // The middle of a tick, by its degrees on the scale.
  Argb Tick(const Bitmap& picture, int degrees) const {
    const double radius = dpi_ == 96 ? 59.5 : 118.0;
    const double centre = dpi_ == 96 ? 64.0 : 127.5;
    const double angle = (210.0 - degrees) * std::numbers::pi / 180.0;
    return picture.GetPixel(
        static_cast<std::int32_t>(std::lround(centre + std::cos(angle) * radius)),
        static_cast<std::int32_t>(std::lround(centre - std::sin(angle) * radius)));
  }

  CPotentiometer& knob_ = dialog_.knob;
};

// What holds at every resolution.
class ScaledKnobTest : public KnobTest {};

TEST_F(ScaledKnobTest, TicksAreLitUpToThePosition) {
  Run([&] {
    for (const bool red : {false, true}) {
      knob_.redAccent = red;
      for (const auto& [position, lastLit] :
           {std::pair{16, 0}, std::pair{17, 10}, std::pair{399, 230}, std::pair{400, 240},
            std::pair{0, 0}}) {
        knob_.SetValue(position);
        const Bitmap picture = Picture(knob_);
        EXPECT_LT(Distance(Tick(picture, 0), 0xFFFFFFFF), 40);
        for (int degrees = 10; degrees <= 240; degrees += 10) {
          const Argb color = degrees > lastLit ? Mixed(kDark, kBackground) : red ? kRed : kLit;
          EXPECT_LT(Distance(Tick(picture, degrees), color), 40) << position << ' ' << degrees;
        }
      }
    }
  });
}

TEST_F(ScaledKnobTest, FaceTicksAndTheirLight) {
  Run([&] {
    knob_.SetValue(200);
    const Bitmap picture = Picture(knob_);
    if (dpi_ == 96) {
      const Argb light = Mixed(0x60FFFFFF, kBackground);
      const Argb half = Mixed(kLit, kBackground, 0.5);
      const Spot spots[] = {{40, 64, 0xFF494949},  // the face, darker towards its lower end
                            {64, 18, 0xFF555555},
                            {64, 110, 0xFF3D3D3D},
                            kMark,
                            {64, 5, kLit},
                            {63, 5, half},
                            {65, 5, half},
                            {62, 5, kBackground},
                            {64, 8, kLit},
                            {64, 10, kBackground},
                            {64, 0, kLit},
                            {5, 64, kLit},
                            {5, 63, half},
                            {5, 65, Mixed(kLit, light, 0.5)},
                            {5, 66, kBackground},
                            {123, 65, Mixed(kDark, light, 0.5)},
                            {9, 65, half}};
      for (const Spot& spot : spots) ExpectSpots(picture, {spot});
      // The shadow lies on the lower half of the face's outline alone.
      ExpectSpots(picture,
                  {{64, 15, Mixed(0xFF565656, kBackground, 0.5)},
                   {64, 113, Mixed(0x28000000, Mixed(0xFF3C3C3C, kBackground, 0.5))}},
                  4);
    } else {
      const Spot spots[] = {{126, 10, kLit},        {129, 10, kLit}, {125, 10, kBackground},
                            {130, 10, kBackground}, {127, 17, kLit}, {127, 20, kBackground},
                            {127, 1, kLit}};
      for (const Spot& spot : spots) ExpectSpots(picture, {spot});
    }
  });
}

TEST_F(ScaledKnobTest, TheIndicatorPointsWhereThePositionSays) {
  Run([&] {
    const std::int32_t size = dpi_ == 96 ? 14 : 29;
    for (const auto& [position, usual, fine] : {std::tuple{100, Point{26, 39}, Point{53, 78}},
                                                std::tuple{400, Point{86, 74}, Point{172, 147}},
                                                std::tuple{200, Point{56, 21}, Point{112, 43}}}) {
      const auto& [x, y] = dpi_ == 96 ? usual : fine;
      knob_.SetValue(position);
      const Bitmap shown = Picture(knob_);
      knob_.Enable(false);
      Redraw(position);
      EXPECT_EQ(BoxOfDifference(shown, Picture(knob_)), (Rect{x, y, x + size + 1, y + size + 1}))
          << position;
      knob_.Enable(true);
    }
    if (dpi_ != 96) return;
    Redraw(200);
    ExpectSpots(Picture(knob_), {{63, 24, Mixed(0x50202020, 0xFF535353)},  // dark at its upper end
                                 {63, 32, Mixed(0x505E5E5E, 0xFF515151)},
                                 {59, 28, Mixed(0x503F3F3F, 0xFF525252)},
                                 {67, 28, Mixed(0x503F3F3F, 0xFF525252)}});
  });
}

TEST_F(ScaledKnobTest, TheCaptionIsCentredAtTheBottomAndCutAtNinetyNineLetters) {
  Run([&] {
    const auto withCaption = [&](const std::u16string& caption) {
      knob_.SetText(caption);
      Redraw(200);
      return Picture(knob_);
    };
    const platform::Font font(u"Calibri", 16.0F, platform::FontStyle::Bold);
    Bitmap expected = withCaption(u"");
    const platform::SizeF size = Measure(u"Bass", font, platform::TextRenderingHint::AntiAlias);
    Write(expected, u"Bass", font,
          {(static_cast<float>(expected.Width()) - size.width) * 0.5F,
           static_cast<float>(expected.Height()) - size.height},
          0xFFFFFFFF);
    EXPECT_EQ(BoxOfDifference(withCaption(u"Bass"), expected), Rect{});
    knob_.SetText(u"Other");
    EXPECT_EQ(BoxOfDifference(Picture(knob_), expected), Rect{}) << "drawn only when it is turned";

    const Bitmap cut = withCaption(std::u16string(99, u'.'));
    EXPECT_FALSE(SamePixels(withCaption(std::u16string(98, u'.')), cut));
    EXPECT_TRUE(SamePixels(withCaption(std::u16string(100, u'.')), cut));
  });
}

TEST_F(KnobTest, AnotherRangePaintsItAnew) {
  Run([&] {
    const int before = dialog_.knob.paints;
    knob_.SetRange(0, 200);
    Settle();
    EXPECT_EQ(dialog_.knob.paints, before + 1);
  });
}

TEST_F(KnobTest, TellsOfEachMessageThatTurnedIt) {
  Run([&] {
    const Notice changed = Changed(knob_, 11);
    knob_.SetValue(50);
    EXPECT_EQ(knob_.GetValue(), 50) << "0 to 400 at first";
    knob_.SetRange(0, 100);
    EXPECT_EQ(knob_.GetValue(), 12);
    knob_.SetValue(50);
    Move(knob_, {100, 20});
    // About the middle of the control, (64, 77), which is not the disc's.
    Press(knob_, {64, 27});
    EXPECT_EQ(knob_.GetValue(), 50);
    EXPECT_THAT(Notices(), IsEmpty()) << "a press turns nothing";
    const Bitmap before = Picture(knob_);
    Move(knob_, {65, 27});
    EXPECT_FALSE(SamePixels(Picture(knob_), before));
    Move(knob_, {65, 27});
    Move(knob_, {114, 27});
    EXPECT_EQ(knob_.GetValue(), 69) << "277 quarters";
    EXPECT_THAT(Notices(), ElementsAre(changed, changed));

    knob_.Enable(false);
    Release(knob_, {114, 27});
    Move(knob_, {64, 27});
    EXPECT_EQ(knob_.GetValue(), 49) << "a release while it is disabled is none";
    knob_.Enable(true);
    Release(knob_, {64, 27});
    Move(knob_, {114, 27});
    knob_.Enable(false);
    Press(knob_, {64, 27});
    Move(knob_, {114, 27});
    EXPECT_EQ(knob_.GetValue(), 49);
    EXPECT_THAT(Notices(), ElementsAre(changed));
  });
}

// The dialog has the slider at (15, 16) and the knob at (420, 16).
TEST_F(ControlTest, SlidersAndKnobsFollowAPointerThatLeavesThem) {
  Run([&] {
    dialog_.slider.SetValue(0);
    Use(Mouse::Press, {15 + 3, 16 + 40});
    Use(Mouse::Move, {15 + 203, 16 + 150});
    EXPECT_EQ(dialog_.slider.GetValue(), 54);
    Use(Mouse::Release, {15 + 203, 16 + 150});
    Use(Mouse::Move, {15 + 100, 16 + 40});
    EXPECT_EQ(dialog_.slider.GetValue(), 54);

    Use(Mouse::Press, {420 + 64, 16 + 67});
    Use(Mouse::Move, {420 + 264, 16 + 76});
    EXPECT_EQ(dialog_.knob.GetValue(), 156);
    Use(Mouse::Release, {420 + 264, 16 + 76});
    Use(Mouse::Move, {420 + 64, 16 + 67});
    EXPECT_EQ(dialog_.knob.GetValue(), 156);
  });
}

}  // namespace
}  // namespace ui
