// The order of messages, painting, posting, timers and modal loops. Runs with or without a display.
#include <gtest/gtest.h>

#include <chrono>
#include <thread>

#include "tests/platform/window_fixture.h"

namespace platform {
namespace {

using Log = std::vector<std::string>;
constexpr std::uint32_t kGo = message::kUser + 50;
constexpr std::uint32_t kCheck = message::kUser + 51;
constexpr std::uint32_t kPlain = message::kUser + 1;
constexpr std::uint32_t kWaitTimer = 77;

// Starts `go` when the window has come up and been painted, and ends the dialog a little later.
void RunWhenShown(NotingDialog& dialog, const std::function<void()>& go,
                  std::uint32_t milliseconds = 100) {
  bool started = false;
  dialog.onInit = [&dialog, milliseconds] { dialog.StartTimer(kWaitTimer, milliseconds); };
  dialog.onMessage[message::kTimer] = [&] {
    if (!started && dialog.log.Count("dialog: paint") == 0) return;
    if (std::exchange(started, true)) {
      dialog.EndDialog(0);
    } else {
      dialog.log.Take();
      go();
    }
  };
  dialog.DoModal();
}

TEST(WindowMessages, PostedMessagesComeInOrderAndBeforePaints) {
  NotingDialog dialog(kSkinnedTest);
  RunWhenShown(dialog, [&] {
    dialog.first.Invalidate(Erase::No);
    for (const WParam number : {1U, 2U, 3U}) PostToWindow(dialog.Handle(), kPlain, number, 0);
  });
  EXPECT_EQ(dialog.log.Entries(), (Log{"dialog: user 1", "dialog: user 2", "dialog: user 3",
                                       "first: paint", "dialog: destroy"}));
}

TEST(WindowMessages, InvalidationAccumulatesAndUpdatePaintsAtOnce) {
  NotingDialog dialog(kSkinnedTest);
  Log duringGo;
  RunWhenShown(dialog, [&] {
    dialog.second.Update();
    EXPECT_TRUE(dialog.log.Entries().empty()) << "nothing was invalid";
    for (int i = 0; i < 3; ++i) dialog.second.Invalidate(Erase::Yes);
    EXPECT_TRUE(dialog.log.Entries().empty());
    dialog.second.Update();
    duringGo = dialog.log.Take();
    for (int i = 0; i < 3; ++i) dialog.first.Invalidate(Erase::No);
  });
  EXPECT_EQ(duringGo, Log{"second: paint"});
  EXPECT_EQ(dialog.log.Entries(), (Log{"first: paint", "dialog: destroy"}));
}

TEST(WindowMessages, DialogErasesItsClientAreaWhenAskedAndBeforeItsControlsPaint) {
  NotingDialog dialog(kSkinnedTest);
  Log atFirst;
  dialog.onMessage[message::kPaint] = [&] {
    if (atFirst.empty()) atFirst = dialog.log.Entries();
  };
  Size shrunk;
  RunWhenShown(dialog, [&] {
    EXPECT_EQ(dialog.erasedSize, (Size{dialog.ClientRect().right, dialog.ClientRect().bottom}));
    dialog.Invalidate(Erase::No);
    dialog.Update();
    EXPECT_EQ(dialog.log.Count("dialog: erase"), 0);
    dialog.Invalidate(Erase::Yes);
    dialog.Update();
    EXPECT_EQ(dialog.log.Count("dialog: erase"), 1);
    shrunk = {dialog.ClientRect().right, dialog.ClientRect().bottom / 2};
    dialog.Resize(shrunk);
  });
  ASSERT_FALSE(atFirst.empty());
  EXPECT_EQ(atFirst.front(), "dialog: erase");
  EXPECT_EQ(dialog.erasedSize, shrunk);
}

TEST(WindowMessages, TimersFireUntilStopped) {
  NotingDialog dialog(kSkinnedTest);
  int fired = 0;
  dialog.onInit = [&] { dialog.StartTimer(5, 10); };
  dialog.onMessage[message::kTimer] = [&] {
    if (++fired < 3) return;
    dialog.StopTimer(5);
    std::thread([handle = dialog.Handle()] {
      std::this_thread::sleep_for(std::chrono::milliseconds(60));
      PostToWindow(handle, kTestEnd, 0, 0);
    }).detach();
  };
  dialog.DoModal();
  EXPECT_EQ(fired, 3);
}

TEST(WindowMessages, PostingToAWindowThatIsGoneIsHarmless) {
  NotingDialog dialog(kSkinnedTest);
  WindowHandle handle = 0;
  WindowHandle control = 0;
  dialog.onInit = [&] {
    handle = dialog.Handle();
    control = dialog.first.Handle();
    EXPECT_EQ(dialog.first.Parent(), handle);
    EXPECT_EQ(dialog.first.ControlId(), kFirstControl);
    EXPECT_TRUE(PostToWindow(handle, kPlain, 1, 0));
    dialog.EndDialog(4);
  };
  EXPECT_EQ(dialog.DoModal(), 4);
  EXPECT_FALSE(PostToWindow(handle, kPlain, 2, 0));
  EXPECT_FALSE(PostToWindow(control, kPlain, 2, 0));
  EXPECT_FALSE(PostToWindow(0, kPlain, 2, 0));
  EXPECT_EQ(dialog.log.Count("dialog: user 1"), 0) << "what was still queued is dropped";

  const WindowHandle before = handle;
  dialog.DoModal();
  EXPECT_NE(handle, before);
  EXPECT_NE(handle, control);
}

TEST(WindowMessages, ManyThreadsPostWhileTheWindowGoes) {
  NotingDialog dialog(kSkinnedTest);
  std::vector<std::thread> threads;
  dialog.onInit = [&] {
    for (int i = 0; i < 4; ++i) {
      threads.emplace_back([handle = dialog.Handle(), i] {
        for (int n = 0; PostToWindow(handle, kPlain, 1, 0); ++n) {
          if (i == 0 && n == 200) PostToWindow(handle, kTestEnd, 0, 0);
        }
      });
    }
  };
  dialog.DoModal();
  for (std::thread& thread : threads) thread.join();
  EXPECT_GE(dialog.log.Count("dialog: user 1"), 200);
}

TEST(WindowMessages, EndingDuringInitialisationShowsNothing) {
  NotingDialog dialog(kSkinnedTest);
  dialog.onInit = [&] {
    EXPECT_FALSE(dialog.IsVisible());
    dialog.EndDialog(9);
    dialog.EndDialog(10);
  };
  EXPECT_EQ(dialog.DoModal(), 9);
  EXPECT_EQ(dialog.log.Entries(), Log{"dialog: destroy"});
  EXPECT_EQ(dialog.Handle(), 0U);
  EXPECT_EQ(dialog.first.Handle(), 0U);
  EXPECT_EQ(dialog.first.ClientRect(), Rect{});
}

TEST(WindowMessages, OwnerIsDisabledWhileItsDialogRuns) {
  NotingDialog owner(kSkinnedTest);
  NotingDialog child(kSkinnedTest);
  child.onInit = [&] {
    EXPECT_FALSE(owner.IsEnabled());
    EXPECT_TRUE(owner.first.IsEnabled()) << "its controls keep their own state";
    PostToWindow(owner.Handle(), kPlain, 1, 0);
    PostToWindow(child.Handle(), kTestEnd, 0, 0);
  };
  owner.onInit = [&] { PostToWindow(owner.Handle(), kGo, 0, 0); };
  owner.onMessage[kGo] = [&] {
    owner.Show(ShowCommand::Hide);
    child.DoModal(owner.Handle());
    EXPECT_EQ(child.Handle(), 0U);
    EXPECT_TRUE(owner.IsEnabled());
    EXPECT_EQ(owner.log.Count("dialog: user 1"), 1) << "messages go on meanwhile";
    owner.Show(ShowCommand::Normal);
    EXPECT_TRUE(owner.IsVisible());
    PostToWindow(owner.Handle(), kCheck, 0, 0);
  };
  owner.onMessage[kCheck] = [&] { owner.EndDialog(0); };
  owner.DoModal();
}

TEST(WindowMessages, ObjectsWithoutAWindowDoNothing) {
  NotingDialog dialog(kSkinnedTest);
  dialog.Resize({10, 10});
  dialog.Show(ShowCommand::Normal);
  dialog.Invalidate(Erase::Yes);
  dialog.Update();
  dialog.SetText(u"x");
  dialog.Enable(true);
  dialog.CaptureMouse();
  dialog.StartTimer(1, 1);
  dialog.EndDialog(3);
  EXPECT_EQ(dialog.Send(kPlain, 1, 0), 0);
  EXPECT_TRUE(dialog.Text().empty());
  EXPECT_FALSE(dialog.IsVisible());
  PaintContext context(dialog);
  context.Surface().Clear(0xFFFFFFFF);
  EXPECT_TRUE(dialog.log.Entries().empty());
}

}  // namespace
}  // namespace platform
