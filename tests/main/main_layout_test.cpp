#include "ui/main/main_layout.h"

#include <gtest/gtest.h>

#include <tuple>

namespace ui {
namespace {

using platform::HitTest;
using platform::Point;
using platform::Rect;
using platform::Size;

// Pixel rectangles at 150 percent.
struct Place {
  Element element;
  Point corner;
  Size size;
};
constexpr ElementSizes kStandardSizes{{294, 163}, {37, 37}, {37, 37}, {133, 46}, {82, 42}};
constexpr Place kStandardPlaces[] = {
    {ModeElement(3), {42, 373}, {294, 163}},    {ModeElement(4), {340, 373}, {294, 163}},
    {ModeElement(5), {639, 373}, {294, 163}},   {Element::Minimize, {855, 18}, {37, 37}},
    {Element::Close, {894, 18}, {37, 37}},      {Element::Done, {792, 606}, {133, 46}},
    {Element::MakerLogo, {435, 606}, {82, 42}}, {Element::Advanced, {58, 609}, {164, 30}}};
TEST(MainLayoutTest, BothEdgesBelongToTheElementAndNothingBeyond) {
  constexpr Size kAdvanced{164, 30};
  const MainLayout layout(Skin::Standard, 1.5, kStandardSizes);
  for (const auto& [element, corner, size] : kStandardPlaces) {
    SCOPED_TRACE(static_cast<int>(element));
    const std::int32_t right = corner.x + size.width;
    const std::int32_t bottom = corner.y + size.height;
    EXPECT_EQ(layout.Area(element, kAdvanced), (Rect{corner.x, corner.y, right, bottom}));
    for (const Point inside :
         {corner, Point{right, corner.y}, Point{corner.x, bottom}, Point{right, bottom}}) {
      EXPECT_EQ(layout.HitTest(inside, kAdvanced), element) << inside.x << "," << inside.y;
    }
    for (const Point outside : {Point{corner.x - 1, corner.y}, Point{right + 1, bottom},
                                Point{corner.x, corner.y - 1}, Point{right, bottom + 1}}) {
      EXPECT_NE(layout.HitTest(outside, kAdvanced), element) << outside.x << "," << outside.y;
    }
  }
  EXPECT_EQ(layout.HitTest({58, 609}, {}), Element::None) << "the entry is not drawn";
  const MainLayout davrin(Skin::Davrin, 1.5, kStandardSizes);
  EXPECT_EQ(davrin.HitTest({0, 0}, {}), Element::None) << "no Done button";
  EXPECT_EQ(davrin.HitTest({703, 358}, {}), ModeElement(5));
}

TEST(MainLayoutTest, TheLowerRowWinsWhereTheRowsOverlap) {
  const MainLayout layout(Skin::Standard, 1.0, {{196, 109}, {}, {}, {}, {}});
  for (const std::int32_t column : {0, 1, 2}) {
    const std::int32_t x = 28 + 199 * column;
    EXPECT_EQ(layout.HitTest({x, 145}, {}), ModeElement(column));
    EXPECT_EQ(layout.HitTest({x, 248}, {}), ModeElement(column));
    EXPECT_EQ(layout.HitTest({x, 144}, {}), Element::None);
    for (const std::int32_t y : {249, 254}) {
      EXPECT_EQ(layout.HitTest({x, y}, {}), ModeElement(column + 3)) << y;
    }
  }
}

constexpr Size kHuge{2000, 2000};

// The last one tested wins wherever elements meet: logo over Done over Advanced over the buttons.
TEST(MainLayoutTest, LaterElementsHideEarlierOnes) {
  const auto hit = [](Size close, Size advanced, Size done, Size logo) {
    return MainLayout(Skin::Standard, 1.0, {kHuge, kHuge, close, done, logo})
        .HitTest({700, 420}, advanced);
  };
  EXPECT_EQ(hit({}, {}, {}, {}), Element::Minimize);
  EXPECT_EQ(hit(kHuge, {}, {}, {}), Element::Close);
  EXPECT_EQ(hit(kHuge, kHuge, {}, {}), Element::Advanced);
  EXPECT_EQ(hit(kHuge, kHuge, kHuge, {}), Element::Done);
  EXPECT_EQ(hit(kHuge, kHuge, kHuge, kHuge), Element::MakerLogo);
}

TEST(MainLayoutTest, CaptionStrip) {
  // A window that lies partly left of and above the screen.
  const Rect window{-40, -7, 611, 447};
  for (const auto& [scale, x, y, hit] :
       {std::tuple{1.0, 0, 0, HitTest::Caption}, std::tuple{1.0, 530, 35, HitTest::Caption},
        std::tuple{1.0, 531, 35, HitTest::Client}, std::tuple{1.0, 530, 36, HitTest::Client},
        std::tuple{1.25, 662, 43, HitTest::Caption}, std::tuple{1.25, 663, 43, HitTest::Client},
        std::tuple{1.25, 662, 44, HitTest::Client}}) {
    const MainLayout layout(Skin::Standard, scale, kStandardSizes);
    EXPECT_EQ(layout.HitTestCaption({window.left + x, window.top + y}, window), hit) << x;
  }
}

}  // namespace
}  // namespace ui
