// What reaches the screen: sizes at each resolution, transparency, the whole client area.
#include <gtest/gtest.h>

#include <cstdlib>
#include <string_view>

#include "platform/screen.h"
#include "tests/platform/window_fixture.h"

namespace platform {
namespace {

using support::X11Desktop;

bool HasCompositor() {
  const char* compositor = std::getenv("TONALYX_COMPOSITOR");
  return compositor == nullptr || std::string_view(compositor) != "none";
}

struct SizeCase {
  std::uint32_t dpi;
  Size dialog;
  Rect control;
};

TEST(WindowSizes, DialogUnitsFollowTheResolution) {
  static constexpr auto kControls =
      std::to_array<DialogControl>({{kFirstControl, ControlKind::Custom, u"", 7, 153, 489, 121}});
  constexpr DialogTemplate kTemplate{2,   DialogFrame::Skinned,    503, 396,
                                     u"", u"Microsoft Sans Serif", 8,   kControls};
  const auto cases = std::to_array<SizeCase>({
      {96, {755, 644}, {11, 249, 745, 446}},
      {120, {1006, 792}, {14, 306, 992, 548}},
      {144, {1132, 990}, {16, 383, 1116, 686}},
      {192, {1509, 1238}, {21, 478, 1488, 856}},
  });
  const ScreenDpi dpi = GetScreenDpi();
  EXPECT_EQ(dpi.x, dpi.y);
  const char* expectedDpi = std::getenv("TONALYX_EXPECTED_DPI");
  EXPECT_EQ(std::to_string(dpi.x), expectedDpi != nullptr ? expectedDpi : "96");
  const auto* expected = std::find_if(cases.begin(), cases.end(),
                                      [&](const SizeCase& each) { return each.dpi == dpi.x; });
  ASSERT_NE(expected, cases.end()) << dpi.x;

  NotingDialog dialog(kTemplate);
  RunWithHands(dialog, [&](X11Desktop& desktop) {
    const auto shown = desktop.WaitForWindow("Test dialog", std::chrono::seconds(5));
    ASSERT_TRUE(shown);
    EXPECT_EQ(shown->width, expected->dialog.width);
    EXPECT_EQ(shown->height, expected->dialog.height);
    const Rect outer = dialog.WindowRect();
    const Rect control = dialog.first.WindowRect();
    EXPECT_EQ((Rect{control.left - outer.left, control.top - outer.top, control.right - outer.left,
                    control.bottom - outer.top}),
              expected->control);
    // No border outside the client area, and the middle of the screen.
    EXPECT_EQ(outer.Width(), dialog.ClientRect().right);
    EXPECT_LE(std::abs(2 * shown->x + shown->width - 2560), 2);
    EXPECT_LE(std::abs(2 * shown->y + shown->height - 1600), 2);
  });
}

// Four stripes of rising alpha.
constexpr std::int32_t kStripe = 20;
constexpr std::array<std::uint32_t, 4> kStripeAlphas{0x00, 0x40, 0xC0, 0xFF};

Bitmap Stripes(Argb color) {
  Bitmap picture(4 * kStripe, 40, PixelFormat::Argb32);
  Graphics graphics(picture);
  graphics.SetCompositingMode(CompositingMode::SourceCopy);
  for (std::size_t i = 0; i < kStripeAlphas.size(); ++i) {
    graphics.FillRectangle((kStripeAlphas[i] << 24U) | color,
                           {static_cast<float>(i) * kStripe, 0, kStripe, 40});
  }
  return picture;
}

// Red of the stripe over the backdrop's 0x30.
std::uint32_t ExpectedRed(std::uint32_t alpha, std::uint32_t color) {
  if (HasCompositor()) return (color * alpha + 0x30 * (255 - alpha)) / 255;
  return alpha < 128 ? 0x30 : color * alpha / 255;
}

class Layered : public testing::Test {
 protected:
  static constexpr std::uint32_t kOpen = message::kUser + 60;
  static constexpr std::uint32_t kRecolor = message::kUser + 61;
  static constexpr DialogTemplate kTemplate{3,   DialogFrame::Layered, 50, 50,
                                            u"", u"MS Shell Dlg",      8,  {}};

  // Larger than the picture, and of one colour.
  static constexpr DialogTemplate kBackdrop{4,   DialogFrame::Skinned, 200, 120,
                                            u"", u"MS Shell Dlg",      8,   {}};

  Layered() {
    backdrop_.title = u"Backdrop";
    backdrop_.onMessage[kOpen] = [this] {
      RunWithHands(layered_, hands_);
      backdrop_.EndDialog(0);
    };
    backdrop_.onInit = [this] { PostToWindow(backdrop_.Handle(), kOpen, 0, 0); };
    layered_.onInit = [this] { layered_.UpdateLayered(Stripes(0xFF0000)); };
    layered_.onMessage[kRecolor] = [this] { layered_.UpdateLayered(Stripes(0x800000)); };
  }

  void ExpectStripes(X11Desktop& desktop, std::uint32_t color) {
    for (std::size_t i = 0; i < kStripeAlphas.size(); ++i) {
      const Point point =
          layered_.ClientToScreen({static_cast<std::int32_t>(i) * kStripe + kStripe / 2, 20});
      const std::uint32_t expected = ExpectedRed(kStripeAlphas[i], color);
      std::uint32_t red = 0;
      EXPECT_TRUE(support::Eventually([&] {
        red = desktop.PixelAt(point.x, point.y) >> 16U;
        return red + 2 >= expected && red <= expected + 2;
      })) << "stripe "
          << i << ": " << red << " in place of " << expected;
    }
  }

  NotingDialog backdrop_{kBackdrop};
  NotingDialog layered_{kTemplate};
  std::function<void(X11Desktop&)> hands_;
};

TEST_F(Layered, AlphaDecidesWhatIsSeenAndWhatIsHit) {
  hands_ = [&](X11Desktop& desktop) {
    const auto shown = desktop.WaitForWindow("Test dialog", std::chrono::seconds(5));
    ASSERT_TRUE(shown);
    EXPECT_EQ(shown->width, 4 * kStripe) << "the picture gives the size";
    EXPECT_EQ(shown->height, 40);
    ExpectStripes(desktop, 0xFF0000 >> 16U);
    PostToWindow(layered_.Handle(), kRecolor, 0, 0);
    ExpectStripes(desktop, 0x800000 >> 16U);
    EXPECT_EQ(desktop.FindWindow("Test dialog"), shown) << "it keeps its place";

    const Point solid = layered_.ClientToScreen({3 * kStripe + 5, 5});
    desktop.Click(solid.x, solid.y);
    EXPECT_TRUE(layered_.log.WaitFor("dialog: down 65,5"));
    const Point hole = layered_.ClientToScreen({5, 5});
    const Point inBackdrop = backdrop_.ClientToScreen({0, 0});
    desktop.Click(hole.x, hole.y);
    EXPECT_TRUE(backdrop_.log.WaitFor("dialog: down " + std::to_string(hole.x - inBackdrop.x) +
                                      "," + std::to_string(hole.y - inBackdrop.y)));
  };
  backdrop_.DoModal();
}

TEST_F(Layered, WhatBecameInvalidWhileHiddenIsPaintedOnceWhenShown) {
  constexpr std::uint32_t kHide = message::kUser + 62;
  constexpr std::uint32_t kShow = message::kUser + 63;
  layered_.onMessage[kHide] = [&] {
    layered_.Show(ShowCommand::Hide);
    layered_.log.Take();
    layered_.Invalidate(Erase::Yes);
    layered_.Invalidate(Erase::Yes);
    layered_.Update();
    layered_.log.Add("hidden");
  };
  layered_.onMessage[kShow] = [&] {
    EXPECT_EQ(layered_.log.Count("dialog: paint"), 0);
    layered_.Show(ShowCommand::Normal);
  };
  layered_.onMessage[message::kPaint] = [&] { layered_.UpdateLayered(Stripes(0x800000)); };
  hands_ = [&](X11Desktop& desktop) {
    ASSERT_TRUE(desktop.WaitForWindow("Test dialog", std::chrono::seconds(5)));
    PostToWindow(layered_.Handle(), kHide, 0, 0);
    ASSERT_TRUE(layered_.log.WaitFor("hidden"));
    PostToWindow(layered_.Handle(), kShow, 0, 0);
    EXPECT_TRUE(layered_.log.WaitFor("dialog: paint"));
    ExpectStripes(desktop, 0x800000 >> 16U);
  };
  backdrop_.DoModal();
  EXPECT_EQ(layered_.log.Count("dialog: erase"), 1);
  EXPECT_EQ(layered_.log.Count("dialog: paint"), 1);
}

}  // namespace
}  // namespace platform
