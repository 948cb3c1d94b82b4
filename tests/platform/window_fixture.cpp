#include "tests/platform/window_fixture.h"

#include <algorithm>

namespace platform {

void EventLog::Add(const std::string& entry) {
  const std::lock_guard lock(mutex_);
  entries_.push_back(entry);
}

std::vector<std::string> EventLog::Entries() const {
  const std::lock_guard lock(mutex_);
  return entries_;
}

std::vector<std::string> EventLog::Take() {
  const std::lock_guard lock(mutex_);
  return std::exchange(entries_, {});
}

int EventLog::Count(const std::string& entry) const {
  const std::vector<std::string> entries = Entries();
  return static_cast<int>(std::count(entries.begin(), entries.end(), entry));
}

bool EventLog::WaitFor(const std::string& entry) const {
  return support::Eventually([&] { return Count(entry) > 0; });
}

std::string At(const std::string& what, LParam lParam) {
  const Point point = PointFromLParam(lParam);
  return what + " " + std::to_string(point.x) + "," + std::to_string(point.y);
}

LResult NotingControl::WindowProc(std::uint32_t message, WParam wParam, LParam lParam) {
  switch (message) {
    case message::kEraseBackground:
      return 1;
    case message::kPaint: {
      log_.Add(name_ + ": paint");
      PaintContext context(*this);
      context.Surface().Clear(color_);
      return 0;
    }
    case message::kLeftButtonDown:
      log_.Add(At(name_ + ": down", lParam));
      if (onPress_ == OnPress::Capture) CaptureMouse();
      return 0;
    case message::kLeftButtonUp:
      log_.Add(At(name_ + ": up", lParam));
      ReleaseMouse();
      return 0;
    case message::kMouseMove:
      log_.Add(At(name_ + ": move", lParam));
      return 0;
    default:
      return Window::WindowProc(message, wParam, lParam);
  }
}

NotingDialog::NotingDialog(const DialogTemplate& dialogTemplate) : Dialog(dialogTemplate) {
  BindControl(kFirstControl, first);
  BindControl(kSecondControl, second);
  BindControl(kButtonControl, button);
}

LResult NotingDialog::WindowProc(std::uint32_t message, WParam wParam, LParam lParam) {
  if (const auto found = onMessage.find(message); found != onMessage.end()) found->second();
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
    case message::kNonClientHitTest:
      return static_cast<LResult>(onHitTest(PointFromLParam(lParam)));
    case message::kLeftButtonDown:
      log.Add(At("dialog: down", lParam));
      return 0;
    case message::kLeftButtonUp:
      log.Add(At("dialog: up", lParam));
      return 0;
    case message::kMouseMove:
      log.Add(At("dialog: move", lParam));
      return 0;
    case message::kCommand:
      log.Add("dialog: command " + std::to_string(LowWord(wParam)));
      return Dialog::WindowProc(message, wParam, lParam);
    case message::kSystemCommand:
      log.Add("dialog: system command " + std::to_string(wParam));
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

std::int32_t RunWithHands(NotingDialog& dialog,
                          const std::function<void(support::X11Desktop&)>& hands,
                          WindowHandle owner) {
  std::thread worker;
  const auto init = dialog.onInit;
  dialog.onInit = [&] {
    init();
    const WindowHandle handle = dialog.Handle();
    worker = std::thread([&hands, handle] {
      support::X11Desktop desktop;
      hands(desktop);
      PostToWindow(handle, kTestEnd, 0, 0);
    });
  };
  const std::int32_t result = dialog.DoModal(owner);
  worker.join();
  return result;
}

}  // namespace platform
