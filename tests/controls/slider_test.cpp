// The slider as a window: its picture, what moves it, and what it tells its parent.
#include <gmock/gmock.h>

#include <limits>
#include <tuple>
#include <utility>

#include "tests/controls/control_dialog.h"
#include "ui/images/png_resource.h"

namespace ui {
namespace {

using platform::Argb;
using platform::Bitmap;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr Argb kInside = 0xFF191919;
constexpr Argb kEdge = 0xFF505050;
constexpr Argb kOutline = 0xFF6F6F6F;

// Pixels at one resolution.
struct Measures {
  std::uint32_t dpi;
  std::int32_t left;  // of the groove
  std::int32_t right;
  std::int32_t centre;
  std::int32_t unit[5];
  Rect box;
  float textHeight;
  std::int32_t zero;  // thumb positions of 0, 80 and -60 from -120 to 120
  std::int32_t above;
  std::int32_t below;
  std::int32_t narrow;  // and of 20 from 1 to 50
  std::int32_t thumb;   // from the thumb's place on the groove to its image
};
constexpr Measures kMeasures[] = {
    {96, 10, 379, 44, {0, 1, 2, 3, 4}, {299, 10, 379, 30}, 21, 184, 306, 92, 142, -8},
    {120, 12, 506, 54, {0, 1, 2, 3, 5}, {406, 12, 506, 37}, 26, 246, 410, 123, 191, -10},
    {192, 20, 757, 84, {0, 2, 4, 6, 8}, {597, 20, 757, 60}, 42, 367, 612, 183, 285, -16},
};

class SliderTest : public ControlTest {
 protected:
  void ExpectFill(std::int32_t from, std::int32_t to, Argb centre, Argb side) {
    const Bitmap picture = Picture(slider_);
    const std::int32_t unit = m_.unit[1];
    for (const std::int32_t x : {m_.left + from, m_.left + to}) {
      ExpectSpots(picture, {{x, m_.centre, centre},
                            {x, m_.centre - unit, side},
                            {x, m_.centre + unit, side},
                            {x, m_.centre - m_.unit[2], kInside},
                            {x, m_.centre + m_.unit[2], kInside}});
    }
  }

  CPngSlider& slider_ = dialog_.slider;
  const Measures& m_ = *std::find_if(std::begin(kMeasures), std::end(kMeasures),
                                     [this](const Measures& each) { return each.dpi == dpi_; });
};

// What holds at every resolution.
class ScaledSliderTest : public SliderTest {};

TEST_F(ScaledSliderTest, GrooveTicksAndBox) {
  Run([&] {
    slider_.SetRange(-120, 120);
    slider_.SetValue(80);
    const Bitmap picture = Picture(slider_);
    // Units beyond the groove's end, units above and below its centre.
    for (const auto& [outward, aside, color] :
         {std::tuple{0, 4, kEdge}, std::tuple{0, 3, 0xFF3C3C3C}, std::tuple{1, 2, kInside},
          std::tuple{2, 1, kInside}, std::tuple{2, 0, kInside}, std::tuple{1, 3, 0xFF535353},
          std::tuple{2, 3, 0xFF636363}, std::tuple{2, 2, 0xFF373737}, std::tuple{3, 2, 0xFF636363},
          std::tuple{3, 1, 0xFF424242}, std::tuple{3, 0, 0xFF3F3F3F}, std::tuple{4, 1, 0xFF2F2F2F},
          std::tuple{4, 0, 0xFF4C4C4C}, std::tuple{1, 4, kBackground},
          std::tuple{4, 2, kBackground}}) {
      const std::int32_t x = m_.unit[outward];
      const std::int32_t y = m_.unit[aside];
      ExpectSpots(picture,
                  {{m_.left - x, m_.centre - y, color},
                   {m_.left - x, m_.centre + y, color},
                   {m_.right + x, m_.centre - y, color},
                   {m_.right + x, m_.centre + y, color}},
                  0);
    }
    const std::int32_t tick = m_.left + m_.zero;
    const std::int32_t edge = m_.unit[4];
    const std::int32_t far = m_.left;  // a tick is as long as the margin
    const auto& [left, top, right, bottom] = m_.box;
    const std::int32_t middle = (top + bottom) / 2;
    ExpectSpots(
        picture,
        {kMark, Spot{tick, m_.centre - far, kEdge}, Spot{tick, m_.centre + far, kEdge},
         Spot{tick, m_.centre - edge - 1, kEdge}, Spot{tick, m_.centre + edge + 1, kEdge},
         Spot{tick, m_.centre - far - 1, kBackground}, Spot{tick, m_.centre + far + 1, kBackground},
         Spot{tick - 1, m_.centre - edge - 1, kBackground}, Spot{left, middle, kOutline},
         Spot{right, middle, kOutline}, Spot{right - m_.left, top, kOutline},
         Spot{right - m_.left, bottom, kOutline}, Spot{left + 2, top + 2, 0xFF1A1A1A},
         Spot{left - 1, middle, kBackground}, Spot{right + 1, middle, kBackground},
         Spot{left + 9, bottom + 1, kBackground},
         Spot{m_.left - 1, m_.centre - m_.unit[3], m_.unit[1] > 1 ? kBackground : 0xFF535353}},
        0);
  });
}

TEST_F(ScaledSliderTest, TheFillRunsFromZeroToTheThumb) {
  Run([&] {
    slider_.SetRange(-120, 120);
    slider_.SetValue(80);
    ExpectFill(m_.zero, m_.above + m_.thumb - 1, 0xFF22DFFF, 0xFF225157);
    ExpectFill(m_.zero - 1, m_.below, kInside, kInside);
    EXPECT_TRUE(Shows(Picture(slider_), 141, m_.left + m_.above + m_.thumb, m_.centre + m_.thumb));
    slider_.SetValue(-60);
    ExpectFill(m_.zero, m_.below - 2 * m_.thumb, 0xFFDC2A8A, 0xFF812E5C);
    ExpectFill(m_.zero + 1, m_.above, kInside, kInside);

    slider_.Enable(false);
    slider_.Invalidate(platform::Erase::Yes);
    ExpectFill(m_.zero, m_.below - 2 * m_.thumb, kInside, kInside);
    EXPECT_TRUE(Shows(Picture(slider_), 146, m_.left + m_.below + m_.thumb, m_.centre + m_.thumb));
    slider_.Enable(true);
    slider_.redAccent = true;
    slider_.SetValueText(u"");
    ExpectFill(m_.zero, m_.below - 2 * m_.thumb, 0xFFBE0000, 0xFFBE0000);
    EXPECT_TRUE(Shows(Picture(slider_), 141, m_.left + m_.below + m_.thumb, m_.centre + m_.thumb));
    slider_.SetValue(80);
    ExpectFill(m_.zero, m_.above + m_.thumb - 1, 0xFFBE0000, 0xFFBE0000);
    slider_.redAccent = false;

    slider_.SetRange(1, 50);
    slider_.SetValue(20);
    ExpectFill(0, m_.narrow + m_.thumb - 1, 0xFF22DFFF, 0xFF225157);
    ExpectFill(-1, m_.narrow - 2 * m_.thumb, kInside, kInside);
    slider_.SetRange(0, 100);
    ExpectSpots(Picture(slider_), {{m_.left, m_.centre - m_.left, kBackground}});
  });
}

TEST_F(ScaledSliderTest, CaptionAndValueText) {
  Run([&] {
    const platform::Font font(u"Calibri", 12.0F, platform::FontStyle::Bold);
    const auto hint = platform::TextRenderingHint::AntiAliasGridFit;
    for (const bool enabled : {true, false}) {
      slider_.Enable(enabled);
      slider_.SetText(u"");
      slider_.SetValueText(u"");
      Bitmap expected = Picture(slider_);
      const Argb color = enabled ? 0xFFFFFFFF : 0xFF808080;
      const platform::SizeF size = Measure(u"-12.0 dB", font, hint);
      const auto margin = static_cast<float>(m_.left);
      const auto boxLeft = static_cast<float>(m_.box.left);
      const auto boxWidth = static_cast<float>(m_.box.Width());
      Write(
          expected, u"-12.0 dB", font,
          {(boxWidth - size.width) / 2.0F + boxLeft, (m_.textHeight - size.height) / 2.0F + margin},
          color);
      Write(expected, u"Gain", font, {margin, margin}, color);
      slider_.SetText(u"Gain");
      slider_.SetValueText(u"-12.0 dB");
      EXPECT_EQ(BoxOfDifference(Shown(slider_), expected), Rect{}) << "at once";
      slider_.SetText(u"Other");
      EXPECT_EQ(BoxOfDifference(Picture(slider_), expected), Rect{})
          << "what is not new is not drawn";
    }
  });
}

TEST_F(SliderTest, PressesAndDragsTellOfWhatTheyChange) {
  Run([&] {
    const Notice changed = Changed(slider_, 10);
    slider_.SetRange(1, 3);
    slider_.SetValue(2);
    Move(slider_, {300, 5});
    Press(slider_, {184, 5});
    EXPECT_THAT(Notices(), IsEmpty()) << "on the thumb";
    Move(slider_, {190, -50});
    EXPECT_THAT(Notices(), IsEmpty()) << "still the same value";
    EXPECT_TRUE(Shows(Picture(slider_), 141, 10 + 184 + 6 - 8, 36)) << "yet it follows";
    Move(slider_, {390, 5});
    Move(slider_, {-1, 5});
    Move(slider_, {200, 5});
    EXPECT_TRUE(Shows(Picture(slider_), 141, 10 + 200 - 8, 36)) << "from the last place inside";
    Move(slider_, {0, 5});
    EXPECT_EQ(slider_.GetValue(), 1);
    Move(slider_, {389, 5});
    EXPECT_THAT(Notices(), ElementsAre(changed, changed));
    EXPECT_EQ(slider_.GetValue(), 3);
    Release(slider_, {389, 5});
    Move(slider_, {10, 5});
    EXPECT_EQ(slider_.GetValue(), 3);
    EXPECT_THAT(Notices(), IsEmpty());

    Press(slider_, {380, 5});
    EXPECT_THAT(Notices(), ElementsAre(changed)) << "jumped, though to the same value";
    // Where the thumb at 100 then is; it is held from 91 to 109.
    for (const auto& [x, thumb] : {std::pair{91, 100}, std::pair{109, 100}, std::pair{90, 81},
                                   std::pair{110, 101}, std::pair{3, 0}, std::pair{389, 368}}) {
      Press(slider_, {300, 5});
      Press(slider_, {109, 5});
      Press(slider_, {x, 5});
      EXPECT_TRUE(Shows(Picture(slider_), 141, 10 + thumb - 8, 36)) << x;
    }
    Move(slider_, {388, 5});
    EXPECT_TRUE(Shows(Picture(slider_), 141, 10 + 367 - 8, 36)) << "a jump takes hold, too";
    Release(slider_, {388, 5});
    Notices();
    slider_.Enable(false);
    Press(slider_, {10, 5});
    Move(slider_, {60, 5});
    EXPECT_TRUE(Shows(Picture(slider_), 146, 10 + 367 - 8, 36));
    EXPECT_THAT(Notices(), IsEmpty());
  });
}

}  // namespace
}  // namespace ui
