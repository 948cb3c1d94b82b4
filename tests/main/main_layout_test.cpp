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

TEST(MainLayoutTest, PositionsAreTruncatedToPixels) {
  struct Case {
    Skin skin;
    Element element;
    double scale;
    Point pixel;
  };
  const std::vector<Case> cases{
      {Skin::Standard, ModeElement(0), 1.0, {28, 145}},
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

struct HitCase {
  std::string name;
  Skin skin;
  double scale;
  ElementSizes sizes;
  Size advancedBox;
  // Pixel boxes as left, top, width, height; those of modes without their lower neighbours.
  struct Box {
    Element element;
    Point corner;
    Size size;
  };
  std::vector<Box> boxes;
};

class HitTestTest : public testing::TestWithParam<HitCase> {};

TEST_P(HitTestTest, BothEdgesBelongToTheElementAndNothingBeyond) {
  const HitCase& c = GetParam();
  const MainLayout layout(c.skin, c.scale, c.sizes);
  for (const HitCase::Box& box : c.boxes) {
    SCOPED_TRACE("element " + std::to_string(static_cast<int>(box.element)));
    const std::int32_t left = box.corner.x;
    const std::int32_t top = box.corner.y;
    const std::int32_t right = left + box.size.width;
    const std::int32_t bottom = top + box.size.height;
    for (const Point inside :
         {Point{left, top}, Point{right, top}, Point{left, bottom}, Point{right, bottom},
          Point{(left + right) / 2, (top + bottom) / 2}}) {
      EXPECT_EQ(layout.HitTest(inside, c.advancedBox), box.element) << inside.x << "," << inside.y;
    }
    for (const Point outside : {Point{left - 1, top}, Point{right + 1, bottom},
                                Point{left, top - 1}, Point{right, bottom + 1}}) {
      EXPECT_NE(layout.HitTest(outside, c.advancedBox), box.element)
          << outside.x << "," << outside.y;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Skins, HitTestTest,
                         testing::Values(HitCase{"Standard96",
                                                 Skin::Standard,
                                                 1.0,
                                                 kStandardSizes,
                                                 {113, 20},
                                                 {{ModeElement(0), {28, 145}, {196, 103}},
                                                  {ModeElement(1), {227, 145}, {196, 103}},
                                                  {ModeElement(2), {426, 145}, {196, 103}},
                                                  {ModeElement(3), {28, 249}, {196, 109}},
                                                  {ModeElement(4), {227, 249}, {196, 109}},
                                                  {ModeElement(5), {426, 249}, {196, 109}},
                                                  {Element::Minimize, {570, 12}, {25, 25}},
                                                  {Element::Close, {596, 12}, {25, 25}},
                                                  {Element::Done, {528, 404}, {89, 31}},
                                                  {Element::MakerLogo, {290, 404}, {55, 28}},
                                                  {Element::Advanced, {39, 406}, {113, 20}}}},
                                         HitCase{"Standard144",
                                                 Skin::Standard,
                                                 1.5,
                                                 Scaled(kStandardSizes, 1.5),
                                                 {164, 30},
                                                 {{ModeElement(0), {42, 217}, {294, 155}},
                                                  {ModeElement(3), {42, 373}, {294, 163}},
                                                  {Element::Close, {894, 18}, {37, 37}},
                                                  {Element::Done, {792, 606}, {133, 46}},
                                                  {Element::Advanced, {58, 609}, {164, 30}}}},
                                         HitCase{"Davrin96",
                                                 Skin::Davrin,
                                                 1.0,
                                                 kDavrinSizes,
                                                 {30, 30},
                                                 {{ModeElement(0), {45, 105}, {204, 126}},
                                                  {ModeElement(2), {469, 105}, {204, 126}},
                                                  {ModeElement(4), {257, 239}, {204, 126}},
                                                  {Element::Minimize, {635, 12}, {30, 30}},
                                                  {Element::Close, {670, 12}, {30, 30}},
                                                  {Element::MakerLogo, {620, 394}, {55, 28}},
                                                  {Element::Advanced, {600, 12}, {30, 30}}}}),
                         [](const testing::TestParamInfo<HitCase>& param) {
                           return param.param.name;
                         });

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
      {1.25, {662, 44}, HitTest::Client},  {1.5, {795, 52}, HitTest::Caption},
      {1.5, {796, 52}, HitTest::Client},   {1.5, {795, 53}, HitTest::Client},
      {2.0, {1061, 70}, HitTest::Caption}, {2.0, {1062, 70}, HitTest::Client},
      {2.0, {1061, 71}, HitTest::Client},
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
