// Dialogs that note their messages, and hands on a thread of their own that work on them.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "platform/dialog.h"
#include "tests/support/test_dialogs.h"
#include "tests/support/x11_desktop.h"

namespace platform {

inline constexpr std::uint32_t kTestEnd = message::kUser + 90;
using support::kButtonControl;
using support::kFirstControl;
using support::kSecondControl;

// What happened, in order, as "who: what". Any thread.
class EventLog {
 public:
  void Add(const std::string& entry) {
    const std::lock_guard lock(mutex_);
    entries_.push_back(entry);
  }
  void AddAt(const std::string& entry, LParam lParam) {
    const Point point = PointFromLParam(lParam);
    Add(entry + " " + std::to_string(point.x) + "," + std::to_string(point.y));
  }
  // Forgets what was there and returns it.
  std::vector<std::string> Take() {
    const std::lock_guard lock(mutex_);
    return std::exchange(entries_, {});
  }
  int Count(const std::string& entry) const {
    const std::lock_guard lock(mutex_);
    return static_cast<int>(std::count(entries_.begin(), entries_.end(), entry));
  }
  bool WaitFor(const std::string& entry) const {
    return support::Eventually([&] { return Count(entry) > 0; });
  }

 private:
  mutable std::mutex mutex_;
  std::vector<std::string> entries_;
};

inline const char* MouseWord(std::uint32_t message) {
  if (message == message::kLeftButtonDown) return "down";
  if (message == message::kLeftButtonUp) return "up";
  return message == message::kMouseMove ? "move" : nullptr;
}

// A plain control of one colour; one that captures does so while it is pressed.
class NotingControl : public Window {
 public:
  NotingControl(EventLog& log, std::string name, Argb color, bool captures)
      : log_(log), name_(std::move(name)), color_(color), captures_(captures) {}

 protected:
  LResult WindowProc(std::uint32_t message, WParam wParam, LParam lParam) override {
    if (message == message::kEraseBackground) return 1;
    if (message == message::kPaint) {
      log_.Add(name_ + ": paint");
      PaintContext context(*this);
      context.Surface().Clear(color_);
      return 0;
    }
    const char* word = MouseWord(message);
    if (word == nullptr) return Window::WindowProc(message, wParam, lParam);
    log_.AddAt(name_ + ": " + word, lParam);
    if (message == message::kLeftButtonDown && captures_) CaptureMouse();
    if (message == message::kLeftButtonUp) ReleaseMouse();
    return 0;
  }

 private:
  EventLog& log_;
  std::string name_;
  Argb color_;
  bool captures_;
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
  explicit NotingDialog(const DialogTemplate& dialogTemplate = support::kSkinnedTemplate)
      : Dialog(dialogTemplate) {
    BindControl(kFirstControl, first);
    BindControl(kSecondControl, second);
    BindControl(kButtonControl, button);
  }

  // Runs the dialog; meanwhile `hands` work on it from another thread, beginning when it is shown.
  // Ends the dialog after them, if it still runs.
  std::int32_t RunWithHands(const std::function<void(support::X11Desktop&)>& hands) {
    std::thread worker;
    onInit = [this, &worker, &hands, init = onInit] {
      init();
      worker = std::thread([&hands, handle = Handle()] {
        support::X11Desktop desktop;
        hands(desktop);
        PostToWindow(handle, kTestEnd, 0, 0);
      });
    };
    const std::int32_t result = DoModal(0);
    worker.join();
    return result;
  }

  EventLog log;
  NotingControl first{log, "first", 0xFFC00000, false};
  NotingControl second{log, "second", 0xFF0000C0, true};
  NotingButton button;
  std::u16string title = u"Test dialog";
  std::function<void()> onInit = [] {};
  std::map<std::uint32_t, std::function<void()>> onMessage;  // and timers by kTimer
  Size erasedSize;

 protected:
  LResult WindowProc(std::uint32_t message, WParam wParam, LParam lParam) override {
    if (const auto found = onMessage.find(message); found != onMessage.end()) found->second();
    if (const char* word = MouseWord(message)) {
      log.AddAt(std::string("dialog: ") + word, lParam);
      return 0;
    }
    switch (message) {
      case message::kInitDialog:
        SetText(title);
        onInit();
        return 1;
      case message::kEraseBackground: {
        log.Add("dialog: erase");
        erasedSize = {ClientRect().right, ClientRect().bottom};
        // NOLINTNEXTLINE(performance-no-int-to-ptr)
        if (auto* graphics = reinterpret_cast<Graphics*>(wParam)) graphics->Clear(0xFF303030);
        return 1;
      }
      case message::kPaint:
        log.Add("dialog: paint");
        return 0;
      case message::kCommand:
        log.Add("dialog: command " + std::to_string(LowWord(wParam)));
        return Dialog::WindowProc(message, wParam, lParam);
      case message::kDestroy:
        log.Add("dialog: destroy");
        return 0;
      case kTestEnd:
        EndDialog(0);
        return 0;
      default:
        if (message >= message::kUser) log.Add("dialog: user " + std::to_string(wParam));
        return Dialog::WindowProc(message, wParam, lParam);
    }
  }
};

}  // namespace platform
