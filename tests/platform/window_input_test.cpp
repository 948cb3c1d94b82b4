// Mouse, keys and the window manager on a real display.
#include <gtest/gtest.h>

#include "tests/platform/window_fixture.h"

namespace platform {
namespace {

using support::ScreenRect;
using support::X11Desktop;
using Log = std::vector<std::string>;

class Input : public testing::Test {
 protected:
  // Screen position of a client point of a window.
  static Point Screen(const Window& window, std::int32_t x, std::int32_t y) {
    return window.ClientToScreen({x, y});
  }
  void WaitUntilShown(X11Desktop& desktop) {
    ASSERT_TRUE(desktop.WaitForWindow("Test dialog", std::chrono::seconds(5)));
    ASSERT_TRUE(dialog_.log.WaitFor("second: paint"));
    ASSERT_TRUE(support::Eventually([&] { return desktop.ActiveTitle() == "Test dialog"; }));
    dialog_.log.Take();
  }
  static void Move(X11Desktop& desktop, Point point) { desktop.MovePointer(point.x, point.y); }

  NotingDialog dialog_{kSkinnedTest};
};

TEST_F(Input, WithoutCaptureMessagesGoToTheWindowUnderThePointer) {
  RunWithHands(dialog_, [&](X11Desktop& desktop) {
    WaitUntilShown(desktop);
    Move(desktop, Screen(dialog_.first, 10, 12));
    ASSERT_TRUE(dialog_.log.WaitFor("first: move 10,12"));
    desktop.PressButton();
    ASSERT_TRUE(dialog_.log.WaitFor("first: down 10,12"));
    Move(desktop, Screen(dialog_.second, 5, 6));
    EXPECT_TRUE(dialog_.log.WaitFor("second: move 5,6"));
    Move(desktop, Screen(dialog_, 4, 4));
    EXPECT_TRUE(dialog_.log.WaitFor("dialog: move 4,4"));
    Move(desktop, Screen(dialog_, -20, 4));
    Move(desktop, Screen(dialog_.second, 7, 7));
    EXPECT_TRUE(dialog_.log.WaitFor("second: move 7,7"));
    desktop.ReleaseButton();
    EXPECT_TRUE(dialog_.log.WaitFor("second: up 7,7"));
    EXPECT_EQ(dialog_.log.Count("dialog: move -20,4"), 0);
    EXPECT_EQ(dialog_.log.Count("first: up 7,7"), 0);
  });
}

TEST_F(Input, CapturedMouseReportsPointsOutside) {
  RunWithHands(dialog_, [&](X11Desktop& desktop) {
    WaitUntilShown(desktop);
    Move(desktop, Screen(dialog_.second, 10, 10));
    desktop.PressButton();
    ASSERT_TRUE(dialog_.log.WaitFor("second: down 10,10"));
    Move(desktop, Screen(dialog_.second, -300, -250));
    EXPECT_TRUE(dialog_.log.WaitFor("second: move -300,-250"));
    desktop.ReleaseButton();
    EXPECT_TRUE(dialog_.log.WaitFor("second: up -300,-250"));
    Move(desktop, Screen(dialog_.first, 3, 3));
    EXPECT_TRUE(dialog_.log.WaitFor("first: move 3,3")) << "the release ended the capture";
  });
}

TEST_F(Input, ASecondQuickPressIsAPress) {
  RunWithHands(dialog_, [&](X11Desktop& desktop) {
    WaitUntilShown(desktop);
    const Point point = Screen(dialog_.first, 10, 10);
    desktop.Click(point.x, point.y);
    // As quick as a hand, not as a machine: the window manager looks at each click first.
    ASSERT_TRUE(dialog_.log.WaitFor("first: up 10,10"));
    desktop.Click(point.x, point.y);
    EXPECT_TRUE(support::Eventually([&] { return dialog_.log.Count("first: down 10,10") == 2; }));
    EXPECT_TRUE(support::Eventually([&] { return dialog_.log.Count("first: up 10,10") == 2; }));
  });
}

TEST_F(Input, ADisabledControlLeavesTheMouseToItsDialog) {
  dialog_.onInit = [&] { dialog_.first.Enable(false); };
  RunWithHands(dialog_, [&](X11Desktop& desktop) {
    WaitUntilShown(desktop);
    const Point point = Screen(dialog_.first, 10, 10);
    desktop.Click(point.x, point.y);
    const Rect outer = dialog_.WindowRect();
    const std::string place =
        std::to_string(point.x - outer.left) + "," + std::to_string(point.y - outer.top);
    EXPECT_TRUE(dialog_.log.WaitFor("dialog: up " + place));
    EXPECT_EQ(dialog_.log.Count("dialog: down " + place), 1);
    EXPECT_EQ(dialog_.log.Count("first: down 10,10"), 0);
  });
}

TEST_F(Input, ButtonsClickOnReleaseInsideAndOnSpace) {
  const std::string clicked = "dialog: command " + std::to_string(kButtonControl);
  RunWithHands(dialog_, [&](X11Desktop& desktop) {
    WaitUntilShown(desktop);
    const Point inside = Screen(dialog_.button, 10, 10);
    desktop.Click(inside.x, inside.y);
    EXPECT_TRUE(dialog_.log.WaitFor(clicked));
    Move(desktop, inside);
    desktop.PressButton();
    Move(desktop, Screen(dialog_.first, 5, 5));
    desktop.ReleaseButton();
    desktop.PressKey("space");
    EXPECT_TRUE(support::Eventually([&] { return dialog_.log.Count(clicked) == 2; }));
    EXPECT_EQ(dialog_.log.Count(clicked), 2) << "a release outside is no click";
  });
}

TEST_F(Input, TheDialogItselfTakesNoFocusAndAReleaseAloneIsNoClick) {
  const std::string clicked = "dialog: command " + std::to_string(kButtonControl);
  dialog_.onInit = [] { X11Desktop().HoldKey("space", true); };
  RunWithHands(dialog_, [&](X11Desktop& desktop) {
    WaitUntilShown(desktop);
    std::this_thread::sleep_for(std::chrono::milliseconds(150));
    desktop.HoldKey("space", false);
    const Point bare = Screen(dialog_, 4, 4);
    desktop.Click(bare.x, bare.y);
    ASSERT_TRUE(dialog_.log.WaitFor("dialog: up 4,4"));
    EXPECT_EQ(dialog_.log.Count(clicked), 0) << "the press came before the window";
    for (int times = 1; times <= 3; ++times) {
      desktop.PressKey("space");
      EXPECT_TRUE(support::Eventually([&] { return dialog_.log.Count(clicked) == times; }));
      desktop.PressKey("Tab");  // leads back to the only button
    }
  });
}

TEST_F(Input, EnterEscapeAndCloseEndTheDialog) {
  struct Case {
    std::string key;  // empty: the window manager's close
    std::int32_t result;
  };
  // The button has the focus in all cases.
  for (const Case& each : {Case{"Return", kIdOk}, Case{"KP_Enter", kIdOk},
                           Case{"Escape", kIdCancel}, Case{"", kIdCancel}}) {
    NotingDialog dialog(kSkinnedTest);
    const std::int32_t result = RunWithHands(dialog, [&](X11Desktop& desktop) {
      ASSERT_TRUE(support::Eventually([&] { return desktop.ActiveTitle() == "Test dialog"; }));
      if (each.key.empty()) {
        desktop.RequestClose("Test dialog");
      } else {
        desktop.PressKey(each.key);
      }
      EXPECT_TRUE(desktop.WaitUntilGone("Test dialog", std::chrono::seconds(5)));
    });
    EXPECT_EQ(result, each.result) << each.key;
  }
}

TEST_F(Input, CaptionMovesTheWindowToWhereItComesBack) {
  constexpr std::uint32_t kMinimize = message::kUser + 60;
  constexpr std::uint32_t kHide = message::kUser + 61;
  constexpr std::uint32_t kShow = message::kUser + 62;
  dialog_.onMessage[kMinimize] = [&] { dialog_.Show(ShowCommand::Minimize); };
  dialog_.onMessage[kHide] = [&] { dialog_.Show(ShowCommand::Hide); };
  dialog_.onMessage[kShow] = [&] { dialog_.Show(ShowCommand::Normal); };
  dialog_.onHitTest = [&](Point screen) {
    return screen.y < dialog_.WindowRect().top + 20 ? HitTest::Caption : HitTest::Client;
  };
  RunWithHands(dialog_, [&](X11Desktop& desktop) {
    WaitUntilShown(desktop);
    const auto before = desktop.FindWindow("Test dialog");
    ASSERT_TRUE(before);
    const Point grip = Screen(dialog_, 50, 10);
    Move(desktop, grip);
    desktop.PressButton();
    // The window manager takes over some time after the press.
    int reach = 0;
    EXPECT_TRUE(support::Eventually([&] {
      reach = reach == 10 ? 20 : 10;
      desktop.MovePointer(grip.x + reach, grip.y);
      return desktop.FindWindow("Test dialog") != before;
    }));
    desktop.MovePointer(grip.x + 10, grip.y);
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
    const auto held = desktop.FindWindow("Test dialog");
    desktop.MovePointer(grip.x + 70, grip.y + 40);
    EXPECT_TRUE(support::Eventually([&] {
      const auto now = desktop.FindWindow("Test dialog");
      return now && held && now->x == held->x + 60 && now->y == held->y + 40;
    }));
    desktop.ReleaseButton();
    EXPECT_EQ(dialog_.log.Count("dialog: down 50,10"), 0);
    EXPECT_TRUE(support::Eventually([&] { return dialog_.WindowRect().left == held->x + 60; }));
    const auto moved = desktop.FindWindow("Test dialog");
    for (const std::uint32_t away : {kMinimize, kHide}) {
      PostToWindow(dialog_.Handle(), away, 0, 0);
      EXPECT_TRUE(desktop.WaitUntilGone("Test dialog", std::chrono::seconds(5)));
      PostToWindow(dialog_.Handle(), kShow, 0, 0);
      EXPECT_TRUE(support::Eventually([&] { return desktop.FindWindow("Test dialog") == moved; }));
      std::this_thread::sleep_for(std::chrono::milliseconds(200));
      EXPECT_EQ(desktop.FindWindow("Test dialog"), moved) << "it stays where it was";
    }
    // And it is an ordinary window afterwards.
    const Point control = Screen(dialog_.first, 8, 8);
    desktop.Click(control.x, control.y);
    EXPECT_TRUE(dialog_.log.WaitFor("first: up 8,8"));
  });
}

}  // namespace
}  // namespace platform
