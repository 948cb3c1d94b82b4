// Windows on a real display: the order of messages, mouse and keys, and what reaches the screen.
#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <string_view>

#include "platform/screen.h"
#include "tests/platform/window_fixture.h"

namespace platform {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;
using support::Eventually;
using support::X11Desktop;
using Log = std::vector<std::string>;

constexpr std::uint32_t kPlain = message::kUser + 1;
constexpr std::uint32_t kGo = message::kUser + 50;

class WindowMessages : public testing::Test {
 protected:
  // Starts `go` when the window has come up and been painted, and ends the dialog a little later;
  // what happened from then on.
  Log RunWhenShown(const std::function<void()>& go) {
    bool started = false;
    dialog_.onInit = [this] { dialog_.StartTimer(77, 100); };
    dialog_.onMessage[message::kTimer] = [&] {
      if (!started && dialog_.log.Count("dialog: paint") == 0) return;
      if (std::exchange(started, true)) return dialog_.EndDialog(0);
      dialog_.log.Take();
      go();
    };
    dialog_.DoModal();
    return dialog_.log.Take();
  }

  NotingDialog dialog_;
};

TEST_F(WindowMessages, PostedMessagesComeInOrderAndBeforePaints) {
  const Log log = RunWhenShown([&] {
    dialog_.first.Invalidate(Erase::No);
    for (const WParam number : {1U, 2U, 3U}) PostToWindow(dialog_.Handle(), kPlain, number, 0);
  });
  EXPECT_EQ(log, (Log{"dialog: user 1", "dialog: user 2", "dialog: user 3", "first: paint",
                      "dialog: destroy"}));
}

TEST_F(WindowMessages, InvalidationAccumulatesAndUpdatePaintsAtOnce) {
  const Log log = RunWhenShown([&] {
    dialog_.second.Update();
    for (int i = 0; i < 3; ++i) dialog_.second.Invalidate(Erase::Yes);
    EXPECT_EQ(dialog_.log.Take(), Log()) << "nothing was invalid, and is painted at once";
    dialog_.second.Update();
    EXPECT_EQ(dialog_.log.Take(), Log{"second: paint"});
    for (int i = 0; i < 3; ++i) dialog_.first.Invalidate(Erase::No);
  });
  EXPECT_EQ(log, (Log{"first: paint", "dialog: destroy"}));
}

TEST_F(WindowMessages, DialogErasesItsClientAreaWhenAskedAndBeforeItsControlsPaint) {
  Log atFirst;
  dialog_.onMessage[message::kPaint] = [&] {
    if (atFirst.empty()) atFirst = dialog_.log.Take();
    dialog_.log.Add("dialog: paint");
  };
  Size shrunk;
  RunWhenShown([&] {
    EXPECT_EQ(dialog_.erasedSize, (Size{dialog_.ClientRect().right, dialog_.ClientRect().bottom}));
    for (const Erase erase : {Erase::No, Erase::Yes}) {
      dialog_.Invalidate(erase);
      dialog_.Update();
      EXPECT_EQ(dialog_.log.Count("dialog: erase"), erase == Erase::Yes ? 1 : 0);
    }
    shrunk = {dialog_.ClientRect().right, dialog_.ClientRect().bottom / 2};
    dialog_.Resize(shrunk);
  });
  ASSERT_FALSE(atFirst.empty());
  EXPECT_EQ(atFirst.front(), "dialog: erase");
  EXPECT_EQ(dialog_.erasedSize, shrunk);
}

TEST_F(WindowMessages, PostingToAWindowThatIsGoneIsHarmless) {
  WindowHandle handle = 0;
  WindowHandle control = 0;
  dialog_.onInit = [&] {
    handle = dialog_.Handle();
    control = dialog_.first.Handle();
    EXPECT_EQ(dialog_.first.Parent(), handle);
    EXPECT_EQ(dialog_.first.ControlId(), kFirstControl);
    EXPECT_TRUE(PostToWindow(handle, kPlain, 1, 0));
    EXPECT_FALSE(dialog_.IsVisible());
    dialog_.EndDialog(4);
    dialog_.EndDialog(10);
  };
  EXPECT_EQ(dialog_.DoModal(), 4);
  EXPECT_EQ(dialog_.log.Take(), Log{"dialog: destroy"}) << "what was queued is dropped";
  for (const WindowHandle gone : {handle, control, WindowHandle{0}}) {
    EXPECT_FALSE(PostToWindow(gone, kPlain, 2, 0));
  }
  EXPECT_EQ(dialog_.Handle(), 0U);
  EXPECT_EQ(dialog_.first.Handle(), 0U);
  EXPECT_EQ(dialog_.first.ClientRect(), Rect{});
  const WindowHandle before = handle;
  dialog_.DoModal();
  EXPECT_NE(handle, before);
  EXPECT_NE(handle, control);
}

TEST_F(WindowMessages, OwnerIsDisabledWhileItsDialogRuns) {
  NotingDialog child;
  child.onInit = [&] {
    EXPECT_FALSE(dialog_.IsEnabled());
    EXPECT_TRUE(dialog_.first.IsEnabled()) << "its controls keep their own state";
    PostToWindow(dialog_.Handle(), kPlain, 1, 0);
    PostToWindow(child.Handle(), kTestEnd, 0, 0);
  };
  dialog_.onInit = [&] { PostToWindow(dialog_.Handle(), kGo, 0, 0); };
  dialog_.onMessage[kGo] = [&] {
    dialog_.Show(ShowCommand::Hide);
    child.DoModal(dialog_.Handle());
    EXPECT_EQ(child.Handle(), 0U);
    EXPECT_TRUE(dialog_.IsEnabled());
    EXPECT_EQ(dialog_.log.Count("dialog: user 1"), 1) << "messages go on meanwhile";
    dialog_.Show(ShowCommand::Normal);
    EXPECT_TRUE(dialog_.IsVisible());
    dialog_.EndDialog(0);
  };
  dialog_.DoModal();
}

// Mouse, keys and the window manager.

class Input : public testing::Test {
 protected:
  void Run(const std::function<void()>& hands) {
    dialog_.RunWithHands([&](X11Desktop& desktop) {
      desktop_ = &desktop;
      ASSERT_TRUE(desktop.WaitForWindow("Test dialog", seconds(5)));
      ASSERT_TRUE(dialog_.log.WaitFor("second: paint"));
      ASSERT_TRUE(Eventually([&] { return desktop.ActiveTitle() == "Test dialog"; }));
      dialog_.log.Take();
      hands();
    });
  }
  // At client points of a window.
  void Move(const Window& window, Point client) const {
    const Point point = window.ClientToScreen(client);
    desktop_->MovePointer(point.x, point.y);
  }
  void Click(const Window& window, Point client) const {
    const Point point = window.ClientToScreen(client);
    desktop_->Click(point.x, point.y);
  }
  bool Happens(const std::string& entry, int times = 1) const {
    return Eventually([&] { return dialog_.log.Count(entry) == times; });
  }

  NotingDialog dialog_;
  X11Desktop* desktop_ = nullptr;
};

TEST_F(Input, MessagesGoToTheWindowUnderThePointerOrToTheOneThatCaptured) {
  Run([&] {
    Move(dialog_.first, {10, 12});
    ASSERT_TRUE(Happens("first: move 10,12"));
    desktop_->PressButton();
    ASSERT_TRUE(Happens("first: down 10,12"));
    Move(dialog_.second, {5, 6});
    EXPECT_TRUE(Happens("second: move 5,6"));
    Move(dialog_, {4, 4});
    EXPECT_TRUE(Happens("dialog: move 4,4"));
    Move(dialog_, {-20, 4});
    Move(dialog_.second, {7, 7});
    EXPECT_TRUE(Happens("second: move 7,7"));
    desktop_->ReleaseButton();
    EXPECT_TRUE(Happens("second: up 7,7"));
    EXPECT_EQ(dialog_.log.Count("dialog: move -20,4"), 0);
    desktop_->PressButton();
    ASSERT_TRUE(Happens("second: down 7,7"));
    Move(dialog_.second, {-300, -250});
    EXPECT_TRUE(Happens("second: move -300,-250"));
    desktop_->ReleaseButton();
    EXPECT_TRUE(Happens("second: up -300,-250"));
    Move(dialog_.first, {3, 3});
    EXPECT_TRUE(Happens("first: move 3,3")) << "the release ended the capture";
  });
}

TEST_F(Input, ClicksCountOneByOneAndADisabledControlLeavesThemToItsDialog) {
  dialog_.onMessage[kGo] = [&] { dialog_.first.Enable(false); };
  Run([&] {
    for (const int count : {1, 2}) {
      Click(dialog_.first, {10, 10});
      // As quick as a hand, not as a machine: the window manager looks at each click first.
      EXPECT_TRUE(Happens("first: down 10,10", count)) << "a second quick press is a press";
      EXPECT_TRUE(Happens("first: up 10,10", count));
    }
    PostToWindow(dialog_.Handle(), kGo, 0, 0);
    ASSERT_TRUE(Happens("dialog: user 0"));
    Click(dialog_.first, {10, 10});
    const Point point = dialog_.first.ClientToScreen({10, 10});
    const Rect outer = dialog_.WindowRect();
    const std::string place =
        std::to_string(point.x - outer.left) + "," + std::to_string(point.y - outer.top);
    EXPECT_TRUE(Happens("dialog: up " + place));
    EXPECT_EQ(dialog_.log.Count("dialog: down " + place), 1);
    EXPECT_EQ(dialog_.log.Count("first: down 10,10"), 2);
  });
}

TEST_F(Input, ButtonsClickOnReleaseInsideAndOnSpace) {
  const std::string clicked = "dialog: command " + std::to_string(kButtonControl);
  Run([&] {
    Click(dialog_.button, {10, 10});
    EXPECT_TRUE(Happens(clicked));
    Move(dialog_.button, {10, 10});
    desktop_->PressButton();
    Move(dialog_.first, {5, 5});
    desktop_->ReleaseButton();
    desktop_->PressKey("space");
    EXPECT_TRUE(Happens(clicked, 2)) << "a release outside is no click";
  });
}

TEST_F(Input, EnterEscapeAndCloseEndTheDialog) {
  // The button has the focus in all cases; without a key it is the window manager's close.
  for (const auto& [key, result] : {std::pair("Return", kIdOk), std::pair("KP_Enter", kIdOk),
                                    std::pair("Escape", kIdCancel), std::pair("", kIdCancel)}) {
    NotingDialog dialog;
    const std::string pressed = key;
    EXPECT_EQ(dialog.RunWithHands([&](X11Desktop& desktop) {
      ASSERT_TRUE(Eventually([&] { return desktop.ActiveTitle() == "Test dialog"; }));
      pressed.empty() ? desktop.RequestClose("Test dialog") : desktop.PressKey(pressed);
      EXPECT_TRUE(desktop.WaitUntilGone("Test dialog", seconds(5)));
    }),
              result)
        << key;
  }
}

// What reaches the screen.

TEST(WindowSizes, DialogUnitsFollowTheResolution) {
  struct Sizes {
    Size dialog;
    Rect control;
  };
  const std::map<std::uint32_t, Sizes> cases = {{96, {{755, 644}, {11, 249, 745, 446}}},
                                                {120, {{1006, 792}, {14, 306, 992, 548}}},
                                                {144, {{1132, 990}, {16, 383, 1116, 686}}},
                                                {192, {{1509, 1238}, {21, 478, 1488, 856}}}};
  const ScreenDpi dpi = GetScreenDpi();
  EXPECT_EQ(dpi.x, dpi.y);
  const char* expectedDpi = std::getenv("TONALYX_EXPECTED_DPI");
  EXPECT_EQ(std::to_string(dpi.x), expectedDpi != nullptr ? expectedDpi : "96");
  const Sizes& expected = cases.at(dpi.x);
  NotingDialog dialog(support::kSizedTemplate);
  dialog.RunWithHands([&](X11Desktop& desktop) {
    const auto shown = desktop.WaitForWindow("Test dialog", seconds(5));
    ASSERT_TRUE(shown);
    EXPECT_EQ((Size{shown->width, shown->height}), expected.dialog);
    const Rect outer = dialog.WindowRect();
    const Rect control = dialog.first.WindowRect();
    EXPECT_EQ((Rect{control.left - outer.left, control.top - outer.top, control.right - outer.left,
                    control.bottom - outer.top}),
              expected.control);
    // No border outside the client area, and the middle of the screen.
    EXPECT_EQ(outer.Width(), dialog.ClientRect().right);
    EXPECT_LE(std::abs(2 * shown->x + shown->width - 2560), 2);
    EXPECT_LE(std::abs(2 * shown->y + shown->height - 1600), 2);
  });
}

class Layered : public testing::Test {
 protected:
  static constexpr std::int32_t kStripe = 20;

  // Four stripes of rising alpha.
  void ShowStripes(Argb color) {
    Bitmap picture(4 * kStripe, 40, PixelFormat::Argb32);
    Graphics graphics(picture);
    graphics.SetCompositingMode(CompositingMode::SourceCopy);
    float left = 0;
    for (const std::uint32_t alpha : kAlphas) {
      graphics.FillRectangle((alpha << 24U) | color, {left, 0, kStripe, 40});
      left += kStripe;
    }
    layered_.UpdateLayered(picture);
  }

  // Their red over the backdrop's 0x30.
  void ExpectStripes(X11Desktop& desktop, std::uint32_t color) {
    const char* compositor = std::getenv("TONALYX_COMPOSITOR");
    const bool isBlended = compositor == nullptr || std::string_view(compositor) != "none";
    std::int32_t x = kStripe / 2;
    for (const std::uint32_t alpha : kAlphas) {
      std::uint32_t expected = (color * alpha + 0x30 * (255 - alpha)) / 255;
      if (!isBlended) expected = alpha < 128 ? 0x30 : color * alpha / 255;
      const Point point = layered_.ClientToScreen({x, 20});
      EXPECT_TRUE(Eventually([&] {
        const std::uint32_t red = desktop.PixelAt(point.x, point.y) >> 16U;
        return red + 2 >= expected && red <= expected + 2;
      })) << alpha;
      x += kStripe;
    }
  }

  void Run(const std::function<void(X11Desktop&)>& hands) {
    backdrop_.title = u"Backdrop";
    backdrop_.onInit = [this] { PostToWindow(backdrop_.Handle(), kGo, 0, 0); };
    backdrop_.onMessage[kGo] = [&] {
      layered_.RunWithHands(hands);
      backdrop_.EndDialog(0);
    };
    layered_.onInit = [this] { ShowStripes(0xFF0000); };
    layered_.onMessage[kPlain] = [this] { ShowStripes(0x800000); };
    backdrop_.DoModal();
  }

  static constexpr std::array<std::uint32_t, 4> kAlphas{0x00, 0x40, 0xC0, 0xFF};
  NotingDialog backdrop_{support::kBackdropTemplate};
  NotingDialog layered_{support::kLayeredTemplate};
};

TEST_F(Layered, AlphaDecidesWhatIsSeenAndWhatIsHit) {
  Run([&](X11Desktop& desktop) {
    const auto shown = desktop.WaitForWindow("Test dialog", seconds(5));
    ASSERT_TRUE(shown);
    EXPECT_EQ(shown->width, 4 * kStripe) << "the picture gives the size";
    EXPECT_EQ(shown->height, 40);
    ExpectStripes(desktop, 0xFF);
    PostToWindow(layered_.Handle(), kPlain, 0, 0);
    ExpectStripes(desktop, 0x80);
    EXPECT_EQ(desktop.FindWindow("Test dialog"), shown) << "it keeps its place";
    const Point solid = layered_.ClientToScreen({3 * kStripe + 5, 5});
    desktop.Click(solid.x, solid.y);
    EXPECT_TRUE(layered_.log.WaitFor("dialog: down 65,5"));
    const Point hole = layered_.ClientToScreen({5, 5});
    const Point inBackdrop = backdrop_.ClientToScreen({0, 0});
    desktop.Click(hole.x, hole.y);
    EXPECT_TRUE(backdrop_.log.WaitFor("dialog: down " + std::to_string(hole.x - inBackdrop.x) +
                                      "," + std::to_string(hole.y - inBackdrop.y)));
  });
}

}  // namespace
}  // namespace platform
