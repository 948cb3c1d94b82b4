#include "ui/main/main_layout.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace ui {
namespace {

using platform::HitTest;
using platform::Point;
using platform::Rect;
using platform::Size;

constexpr ElementSizes kStandardSizes{{196, 109}, {25, 25}, {25, 25}, {89, 31}, {55, 28}};
constexpr ElementSizes kDavrinSizes{{204, 126}, {30, 30}, {30, 30}, {35, 12}, {55, 28}};

Size Scaled(Size size, double scale) {
  return {static_cast<std::int32_t>(size.width * scale),
          static_cast<std::int32_t>(size.height * scale)};
}

ElementSizes Scaled(const ElementSizes& sizes, double scale) {
  return {Scaled(sizes.mode, scale), Scaled(sizes.minimize, scale), Scaled(sizes.close, scale),
          Scaled(sizes.done, scale), Scaled(sizes.makerLogo, scale)};
}

Size SizeOf(Element element, const ElementSizes& sizes, Size advanced) {
  if (IsMode(element)) return sizes.mode;
  switch (element) {
    case Element::Minimize:
      return sizes.minimize;
    case Element::Close:
      return sizes.close;
    case Element::Done:
      return sizes.done;
    case Element::MakerLogo:
      return sizes.makerLogo;
    default:
      return advanced;
  }
}

TEST(MainLayoutTest, PositionsAreTruncatedToPixels) {
  struct Case {
    Skin skin;
    Element element;
    double scale;
    Point pixel;
  };
  const std::vector<Case> cases{
      {Skin::Standard, ModeElement(0), 1.0, {28, 145}},
      {Skin::Standard, ModeElement(2), 1.0, {426, 145}},
      {Skin::Standard, ModeElement(4), 1.0, {227, 249}},
      {Skin::Davrin, ModeElement(0), 1.0, {45, 105}},
      {Skin::Standard, ModeElement(3), 1.5, {42, 373}},
      {Skin::Standard, ModeElement(1), 1.25, {283, 181}},
      {Skin::Standard, ModeElement(5), 2.0, {852, 498}},
      {Skin::Standard, Element::Minimize, 1.25, {712, 15}},
      {Skin::Standard, Element::Close, 1.5, {894, 18}},
      {Skin::Standard, Element::Done, 1.25, {660, 505}},
      {Skin::Standard, Element::MakerLogo, 1.25, {362, 505}},
      {Skin::Standard, Element::Advanced, 1.25, {48, 507}},
      {Skin::Davrin, ModeElement(2), 1.25, {586, 131}},
      {Skin::Davrin, ModeElement(4), 1.5, {385, 358}},
      {Skin::Davrin, Element::Minimize, 1.5, {952, 18}},
      {Skin::Davrin, Element::Close, 1.25, {837, 15}},
      {Skin::Davrin, Element::MakerLogo, 1.25, {775, 492}},
      {Skin::Davrin, Element::Advanced, 2.0, {1200, 24}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(std::to_string(static_cast<int>(c.element)) + " at " + std::to_string(c.scale));
    EXPECT_EQ(PixelPosition(c.skin, c.element, c.scale), c.pixel);
  }
}

TEST(MainLayoutTest, BothEdgesBelongToTheElementAndNothingBeyond) {
  struct Case {
    Skin skin;
    ElementSizes sizes;
    Size advanced;
    std::vector<Element> elements;
  };
  // In the standard skin the upper row is cut off by the lower one.
  const std::vector<Case> cases{
      {Skin::Standard,
       kStandardSizes,
       {113, 20},
       {ModeElement(3), ModeElement(4), ModeElement(5), Element::Minimize, Element::Close,
        Element::Done, Element::MakerLogo, Element::Advanced}},
      {Skin::Davrin,
       kDavrinSizes,
       {30, 30},
       {ModeElement(0), ModeElement(2), ModeElement(4), Element::Minimize, Element::Close,
        Element::MakerLogo, Element::Advanced}},
  };
  for (const Case& c : cases) {
    for (const double scale : {1.0, 1.5}) {
      const ElementSizes sizes = Scaled(c.sizes, scale);
      const Size advanced = Scaled(c.advanced, scale);
      const MainLayout layout(c.skin, scale, sizes);
      for (const Element element : c.elements) {
        SCOPED_TRACE(std::to_string(static_cast<int>(element)) + " at " + std::to_string(scale));
        const Point corner = PixelPosition(c.skin, element, scale);
        const Size size = SizeOf(element, sizes, advanced);
        const std::int32_t right = corner.x + size.width;
        const std::int32_t bottom = corner.y + size.height;
        for (const Point inside :
             {corner, Point{right, corner.y}, Point{corner.x, bottom}, Point{right, bottom}}) {
          EXPECT_EQ(layout.HitTest(inside, advanced), element) << inside.x << "," << inside.y;
        }
        for (const Point outside : {Point{corner.x - 1, corner.y}, Point{right + 1, bottom},
                                    Point{corner.x, corner.y - 1}, Point{right, bottom + 1}}) {
          EXPECT_NE(layout.HitTest(outside, advanced), element) << outside.x << "," << outside.y;
        }
      }
    }
  }
}

TEST(MainLayoutTest, TheLowerRowWinsWhereTheRowsOverlap) {
  const MainLayout layout(Skin::Standard, 1.0, kStandardSizes);
  for (const std::int32_t column : {0, 1, 2}) {
    const std::int32_t x = 28 + 199 * column + 90;
    EXPECT_EQ(layout.HitTest({x, 248}, {}), ModeElement(column));
    for (const std::int32_t y : {249, 250, 254}) {
      EXPECT_EQ(layout.HitTest({x, y}, {}), ModeElement(column + 3)) << y;
    }
  }
}

TEST(MainLayoutTest, ElementsThatAreNotThereAreNotHit) {
  const MainLayout standard(Skin::Standard, 1.0, kStandardSizes);
  EXPECT_EQ(standard.HitTest({39, 406}, {}), Element::None) << "the entry is not drawn";
  EXPECT_EQ(standard.HitTest({0, 0}, {113, 20}), Element::None);
  EXPECT_EQ(standard.HitTest({225, 200}, {113, 20}), Element::None) << "between two columns";
  EXPECT_EQ(standard.HitTest({-32768, 32767}, {113, 20}), Element::None);

  const MainLayout davrin(Skin::Davrin, 1.0, kDavrinSizes);
  EXPECT_EQ(davrin.HitTest({530, 410}, {30, 30}), Element::None) << "no Done button";
  EXPECT_EQ(davrin.HitTest({0, 0}, {30, 30}), Element::None);

  ElementSizes withoutDone = kStandardSizes;
  withoutDone.done = {};
  EXPECT_EQ(MainLayout(Skin::Standard, 1.0, withoutDone).HitTest({528, 404}, {}), Element::None);
}

TEST(MainLayoutTest, CaptionStrip) {
  struct Case {
    double scale;
    Point inWindow;
    HitTest expected;
  };
  const std::vector<Case> cases{
      {1.0, {0, 0}, HitTest::Caption},     {1.0, {530, 35}, HitTest::Caption},
      {1.0, {531, 35}, HitTest::Client},   {1.0, {530, 36}, HitTest::Client},
      {1.25, {662, 43}, HitTest::Caption}, {1.25, {663, 43}, HitTest::Client},
      {1.25, {662, 44}, HitTest::Client},
  };
  // A window that lies partly left of and above the screen.
  const Rect window{-40, -7, 611, 447};
  for (const Case& c : cases) {
    SCOPED_TRACE(std::to_string(c.scale) + ": " + std::to_string(c.inWindow.x) + "," +
                 std::to_string(c.inWindow.y));
    const MainLayout layout(Skin::Standard, c.scale, kStandardSizes);
    const Point screen{window.left + c.inWindow.x, window.top + c.inWindow.y};
    EXPECT_EQ(layout.HitTestCaption(screen, window), c.expected);
  }
}

}  // namespace
}  // namespace ui
