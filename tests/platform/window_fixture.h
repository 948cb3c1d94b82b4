// Dialogs that note their messages, and hands on a thread of their own that work on them.
#pragma once

#include <gtest/gtest.h>

#include <array>
#include <chrono>
#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "platform/dialog.h"
#include "tests/support/x11_desktop.h"

namespace platform {

inline constexpr std::uint32_t kTestEnd = message::kUser + 90;
inline constexpr std::uint16_t kFirstControl = 501;
inline constexpr std::uint16_t kSecondControl = 502;
inline constexpr std::uint16_t kButtonControl = 503;

// What happened, in order, as "who: what". Any thread.
class EventLog {
 public:
  void Add(const std::string& entry);
  std::vector<std::string> Entries() const;
  // Forgets what was there and returns it.
  std::vector<std::string> Take();
  int Count(const std::string& entry) const;
  bool WaitFor(const std::string& entry) const;

 private:
  mutable std::mutex mutex_;
  std::vector<std::string> entries_;
};

std::string At(const std::string& what, LParam lParam);

// A plain control of one colour.
class NotingControl : public Window {
 public:
  enum class OnPress { Ignore, Capture };

  NotingControl(EventLog& log, std::string name, Argb color, OnPress onPress)
      : log_(log), name_(std::move(name)), color_(color), onPress_(onPress) {}

 protected:
  LResult WindowProc(std::uint32_t message, WParam wParam, LParam lParam) override;

 private:
  EventLog& log_;
  std::string name_;
  Argb color_;
  OnPress onPress_;
};

class NotingButton : public Button {
 protected:
  void DrawItem(Graphics& graphics, const Rect& item) override {
    graphics.FillRectangle(
        0xFF00C000, {0, 0, static_cast<float>(item.Width()), static_cast<float>(item.Height())});
  }
};

class NotingDialog : public Dialog {
 public:
  explicit NotingDialog(const DialogTemplate& dialogTemplate);

  EventLog log;
  NotingControl first{log, "first", 0xFFC00000, NotingControl::OnPress::Ignore};
  NotingControl second{log, "second", 0xFF0000C0, NotingControl::OnPress::Capture};
  NotingButton button;
  std::u16string title = u"Test dialog";
  std::function<void()> onInit = [] {};
  std::map<std::uint32_t, std::function<void()>> onMessage;  // and timers by kTimer
  std::function<HitTest(Point)> onHitTest = [](Point) { return HitTest::Client; };
  Size erasedSize;

 protected:
  LResult WindowProc(std::uint32_t message, WParam wParam, LParam lParam) override;
};

inline constexpr auto kTestControls = std::to_array<DialogControl>({
    {kFirstControl, ControlKind::Custom, u"", 20, 40, 40, 40},
    {kSecondControl, ControlKind::Custom, u"", 80, 40, 40, 40},
    {kButtonControl, ControlKind::PushButton, u"Press", 140, 40, 40, 40},
});
inline constexpr DialogTemplate kSkinnedTest{1,   DialogFrame::Skinned,    200, 120,
                                             u"", u"Microsoft Sans Serif", 8,   kTestControls};

// Runs the dialog; meanwhile `hands` work on it from another thread, beginning when it is shown.
// Ends the dialog after them, if it still runs.
std::int32_t RunWithHands(NotingDialog& dialog,
                          const std::function<void(support::X11Desktop&)>& hands,
                          WindowHandle owner = 0);

}  // namespace platform
