#include "ui/main/main_layout.h"

namespace ui {
namespace {

using platform::Point;
using platform::Size;

constexpr std::int32_t kCaptionHeight = 35;
constexpr std::int32_t kCaptionWidth = 531;

using Positions = std::array<Point, kElementCount>;

constexpr Positions kStandardPositions{{{28, 145},
                                        {227, 145},
                                        {426, 145},
                                        {28, 249},
                                        {227, 249},
                                        {426, 249},
                                        {570, 12},
                                        {596, 12},
                                        {528, 404},
                                        {290, 404},
                                        {39, 406}}};

constexpr Positions kDavrinPositions{{{45, 105},
                                      {257, 105},
                                      {469, 105},
                                      {45, 239},
                                      {257, 239},
                                      {469, 239},
                                      {635, 12},
                                      {670, 12},
                                      {},
                                      {620, 394},
                                      {600, 12}}};

// A later hit replaces an earlier one.
constexpr std::array<Element, kElementCount> kHitOrder{
    ModeElement(0),    ModeElement(3), ModeElement(1),    ModeElement(4),
    ModeElement(2),    ModeElement(5), Element::Minimize, Element::Close,
    Element::Advanced, Element::Done,  Element::MakerLogo};

std::int32_t Scale(std::int32_t units, double dpiScale) {
  return static_cast<std::int32_t>(units * dpiScale);
}

constexpr std::size_t Index(Element element) {
  return static_cast<std::size_t>(element);
}

constexpr bool IsEmpty(Size size) {
  return size.width == 0 && size.height == 0;
}

}  // namespace

Point DesignPosition(Skin skin, Element element) {
  return skin == Skin::Standard ? kStandardPositions[Index(element)]
                                : kDavrinPositions[Index(element)];
}

Point PixelPosition(Skin skin, Element element, double dpiScale) {
  const Point design = DesignPosition(skin, element);
  return {Scale(design.x, dpiScale), Scale(design.y, dpiScale)};
}

MainLayout::MainLayout(Skin skin, double dpiScale, const ElementSizes& sizes)
    : captionBottom_(Scale(kCaptionHeight, dpiScale)),
      captionRight_(Scale(kCaptionWidth, dpiScale)) {
  for (const Element element : kHitOrder) {
    boxes_[Index(element)].position = PixelPosition(skin, element, dpiScale);
  }
  for (std::int32_t mode = 0; mode < kModeCount; ++mode) {
    boxes_[Index(ModeElement(mode))].size = sizes.mode;
  }
  boxes_[Index(Element::Minimize)].size = sizes.minimize;
  boxes_[Index(Element::Close)].size = sizes.close;
  boxes_[Index(Element::Done)].size = skin == Skin::Standard ? sizes.done : Size{};
  boxes_[Index(Element::MakerLogo)].size = sizes.makerLogo;
}

Element MainLayout::HitTest(Point client, Size advancedBox) const {
  Element hit = Element::None;
  for (const Element element : kHitOrder) {
    const Box box = BoxOf(element, advancedBox);
    // What is not drawn cannot be hit.
    if (!IsEmpty(box.size) && Contains(box, client)) hit = element;
  }
  return hit;
}

platform::Rect MainLayout::Area(Element element, Size advancedBox) const {
  const Box box = BoxOf(element, advancedBox);
  return {box.position.x, box.position.y, box.position.x + box.size.width,
          box.position.y + box.size.height};
}

MainLayout::Box MainLayout::BoxOf(Element element, Size advancedBox) const {
  Box box = boxes_[Index(element)];
  if (element == Element::Advanced) box.size = advancedBox;
  return box;
}

platform::HitTest MainLayout::HitTestCaption(Point screen, const platform::Rect& window) const {
  if (screen.y > window.top + captionBottom_) return platform::HitTest::Client;
  return screen.x < window.left + captionRight_ ? platform::HitTest::Caption
                                                : platform::HitTest::Client;
}

bool MainLayout::Contains(const Box& box, Point point) {
  return point.x >= box.position.x && point.x <= box.position.x + box.size.width &&
         point.y >= box.position.y && point.y <= box.position.y + box.size.height;
}

}  // namespace ui
