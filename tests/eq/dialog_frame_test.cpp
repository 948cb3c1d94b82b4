#include "ui/eq/dialog_frame.h"

#include <gtest/gtest.h>

#include <optional>

namespace ui {
namespace {

using platform::HitTest;
using platform::Point;
using platform::Rect;
using platform::Size;

TEST(DialogFrameTest, TheTopEdgeMovesTheWindowAndTheHeaderOpensItsMenu) {
  const Rect window{1000, 500, 1755, 714};
  const Size header{140, 24};
  struct Case {
    Point at;  // seen from the window's corner
    std::optional<HitTest> hit;
  };
  const Case cases[] = {
      {{0, 0}, HitTest::SystemMenu},   {{149, 33}, HitTest::SystemMenu},
      {{150, 33}, HitTest::Caption},   {{149, 34}, HitTest::Caption},
      {{35, 34}, HitTest::Client},     {{36, 34}, HitTest::Caption},
      {{35, 35}, HitTest::Client},     {{36, 35}, HitTest::Caption},
      {{35, 36}, std::nullopt},        {{400, 36}, std::nullopt},
      {{719, 20}, HitTest::Caption},   {{720, 20}, std::nullopt},
      {{-3, -3}, HitTest::SystemMenu}, {{754, 0}, std::nullopt},
  };
  for (const Case& test : cases) {
    const Point screen{window.left + test.at.x, window.top + test.at.y};
    EXPECT_EQ(HitTestTopEdge(screen, window, header), test.hit) << test.at.x << ", " << test.at.y;
  }
  EXPECT_EQ(HitTestTopEdge({1009, 509}, window, {}), HitTest::SystemMenu);
  EXPECT_EQ(HitTestTopEdge({1010, 509}, window, {}), HitTest::Client);
}

TEST(DialogFrameTest, TheMenuSpotIncludesItsEdges) {
  EXPECT_TRUE(IsSystemMenuSpot({20, 20}));
  EXPECT_TRUE(IsSystemMenuSpot({35, 35}));
  EXPECT_FALSE(IsSystemMenuSpot({19, 20}));
  EXPECT_FALSE(IsSystemMenuSpot({36, 30}));
  EXPECT_FALSE(IsSystemMenuSpot({30, 36}));
}

TEST(DialogFrameTest, EdgesAreThreeLinesFromDarkToLight) {
  for (const float scale : {1.0F, 2.0F}) {
    const int unit = static_cast<int>(scale);
    platform::Bitmap picture(200, 100, platform::PixelFormat::PremultipliedArgb32);
    {
      platform::Graphics graphics(picture);
      PaintExpandedEdge(graphics, 50, 200, scale);
    }
    EXPECT_EQ(picture.GetPixel(100, 49), 0U);
    for (const int x : {0, 100, 199}) {
      EXPECT_EQ(picture.GetPixel(x, 50 + unit) >> 24U, 0xDCU) << x;
      EXPECT_GT(picture.GetPixel(x, 50 + 3 * unit) & 0xFFFFFFU, 0x808080U) << x;
    }
    EXPECT_EQ(picture.GetPixel(100, 50 + 5 * unit), 0U);

    platform::Bitmap sliders(200, 100, platform::PixelFormat::PremultipliedArgb32);
    {
      platform::Graphics graphics(sliders);
      PaintSliderEdge(graphics, {100, 10, 180, 90}, scale);
    }
    const int first = 100 - 20 * unit;
    EXPECT_EQ(sliders.GetPixel(first - 2 * unit, 50), 0U);
    EXPECT_EQ(sliders.GetPixel(first + 2 * unit, 50) >> 24U, 0xDCU);
    EXPECT_EQ(sliders.GetPixel(first + 2 * unit, 10) >> 24U, 0xDCU);
    EXPECT_EQ(sliders.GetPixel(first + 2 * unit, 9), 0U);
    EXPECT_EQ(sliders.GetPixel(first + 4 * unit, 50), 0U);
  }
}

}  // namespace
}  // namespace ui
