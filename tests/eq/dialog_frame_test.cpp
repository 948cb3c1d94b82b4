#include "ui/eq/dialog_frame.h"

#include <gtest/gtest.h>

#include <optional>

#include "tests/controls/picture.h"
#include "tests/support/lacks.h"

namespace ui {
namespace {

using platform::Bitmap;
using platform::HitTest;
using platform::Point;
using platform::Rect;

class DialogFrameTest : public support::SkipsWhatLacks {};

TEST_F(DialogFrameTest, TheTopEdgeMovesTheWindowAndTheHeaderOpensItsMenu) {
  const Rect window{1000, 500, 1755, 714};
  struct Case {
    Point at;  // seen from the window's corner
    std::optional<HitTest> hit;
  };
  const Case cases[] = {
      {{149, 33}, HitTest::SystemMenu}, {{150, 33}, HitTest::Caption},
      {{149, 34}, HitTest::Caption},    {{35, 34}, HitTest::Client},
      {{36, 34}, HitTest::Caption},     {{35, 35}, HitTest::Client},
      {{36, 35}, HitTest::Caption},     {{35, 36}, std::nullopt},
      {{400, 36}, std::nullopt},        {{719, 20}, HitTest::Caption},
      {{720, 20}, std::nullopt},
  };
  for (const Case& test : cases) {
    const Point screen{window.left + test.at.x, window.top + test.at.y};
    EXPECT_EQ(HitTestTopEdge(screen, window, {140, 24}), test.hit)
        << test.at.x << ", " << test.at.y;
  }
  EXPECT_EQ(HitTestTopEdge({1009, 509}, window, {}), HitTest::SystemMenu);
  EXPECT_EQ(HitTestTopEdge({1010, 509}, window, {}), HitTest::Client);
  for (const auto& [point, inside] :
       {std::pair{Point{20, 35}, true}, std::pair{Point{35, 20}, true},
        std::pair{Point{19, 30}, false}, std::pair{Point{30, 19}, false},
        std::pair{Point{36, 30}, false}, std::pair{Point{30, 36}, false}}) {
    EXPECT_EQ(IsSystemMenuSpot(point), inside) << point.x << "," << point.y;
  }
}

TEST_F(DialogFrameTest, LinesAndHeaderGrowWithTheResolution) {
  Bitmap picture = Solid({200, 100}, 0xFF404040);
  {
    platform::Graphics graphics(picture);
    PaintExpandedEdge(graphics, 50, 200, 1.75F);
    PaintSliderEdge(graphics, {100, 60, 180, 90}, 1.75F);
    PaintHeader(graphics, Solid({10, 5}, 0xFF00FF00), 1.75F);
  }
  // 35 left of the sliders, whole pixels from there.
  const Spot spots[] = {{150, 49, 0xFF404040},
                        {150, 51, Mixed(0xDC000000, 0xFF404040)},
                        {150, 53, Mixed(0x1EFFFFFF, 0xFF404040)},
                        {150, 55, Mixed(0x14FFFFFF, 0xFF404040)},
                        {65, 75, Mixed(0x14FFFFFF, 0xFF404040)},
                        {66, 75, Mixed(0x1EFFFFFF, 0xFF404040)},
                        {68, 75, Mixed(0xDC000000, 0xFF404040)},
                        {17, 17, 0xFF00FF00},
                        {26, 21, 0xFF00FF00},
                        {16, 17, 0xFF404040},
                        {17, 22, 0xFF404040}};
  for (const Spot& spot : spots) ExpectSpots(picture, {spot});
}

}  // namespace
}  // namespace ui
