// A dialog with one control of each kind that writes down what it is told.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <utility>
#include <vector>

#include "platform/dialog.h"
#include "platform/screen.h"
#include "tests/controls/picture.h"
#include "tests/support/lacks.h"
#include "tests/support/scripted_window.h"
#include "tests/support/test_dialogs.h"
#include "ui/controls/buttons/png_button.h"
#include "ui/controls/buttons/png_checkbox.h"
#include "ui/controls/knob/potentiometer.h"
#include "ui/controls/plot/freq_plot.h"
#include "ui/controls/slider/png_slider.h"

namespace ui {

using platform::LParam;
using platform::Point;
using platform::Rect;
using platform::Window;
using platform::WParam;

// What the dialog shows under its controls: plain, but for one pixel of each control.
inline constexpr platform::Argb kBackground = 0xFF304050;
inline constexpr Spot kMark{1, 1, 0xFFFF8000};

struct Notice {
  std::uint32_t message;
  WParam wParam;
  LParam lParam;
  bool operator==(const Notice&) const = default;
};

class CountedKnob : public CPotentiometer {
 public:
  int paints = 0;

 protected:
  platform::LResult WindowProc(std::uint32_t message, WParam wParam, LParam lParam) override {
    if (message == platform::message::kPaint) ++paints;
    return CPotentiometer::WindowProc(message, wParam, lParam);
  }
};

class NotingDialog : public platform::Dialog {
 public:
  NotingDialog() : Dialog(support::kControlsTemplate) {
    BindControl(10, slider);
    BindControl(11, knob);
    BindControl(12, plot);
    BindControl(13, checkbox);
    BindControl(14, button);
  }

  Rect AreaOf(const Window& control) const {
    const Rect own = control.WindowRect();
    const Rect dialog = WindowRect();
    return {own.left - dialog.left, own.top - dialog.top, own.right - dialog.left,
            own.bottom - dialog.top};
  }

  CPngSlider slider;
  CountedKnob knob;
  CFreqPlot plot;
  CPngCheckbox checkbox;
  CPngButton button;
  std::function<void(const Notice&)> onNotice = [](const Notice&) {};
  std::vector<Notice> notices;

 protected:
  platform::LResult WindowProc(std::uint32_t message, WParam wParam, LParam lParam) override {
    switch (message) {
      case platform::message::kEraseBackground:
        HandOutBackground();
        return 1;
      case platform::message::kCommand:
      case kBandSelectedMessage:
      case kBandDraggedMessage:
        notices.push_back({message, wParam, lParam});
        onNotice(notices.back());
        return 0;
      default:
        return Dialog::WindowProc(message, wParam, lParam);
    }
  }

 private:
  void HandOutBackground() {
    platform::Bitmap background = Solid({ClientRect().Width(), ClientRect().Height()}, kBackground);
    for (const Window* control : std::array<Window*, 4>{&slider, &knob, &checkbox, &button}) {
      const Rect area = AreaOf(*control);
      background.SetPixel(area.left + kMark.x, area.top + kMark.y, kMark.color);
    }
    slider.CaptureBackground(background);
    knob.CaptureBackground(background);
    checkbox.CaptureBackground(background);
    button.CaptureBackground(background);
  }
};

// Runs a test while the dialog is open.
class ControlTest : public support::SkipsWhatLacks {
 protected:
  void Run(std::function<void()> body) {
    dialog_.ThenDo([body = std::move(body)] {
      Settle();
      body();
    });
    EXPECT_EQ(dialog_.DoModal(), support::kScriptEnded);
  }

  // As it is on the screen now, or when all is done that is due.
  platform::Bitmap Shown(const Window& control) { return WindowPicture(dialog_.AreaOf(control)); }
  platform::Bitmap Picture(const Window& control) {
    Settle();
    return Shown(control);
  }

  // What has arrived since the last call, in order.
  std::vector<Notice> Notices() {
    Settle();
    return std::exchange(dialog_.notices, {});
  }
  static Notice Changed(const Window& control, std::uint16_t code) {
    return {platform::message::kCommand, platform::MakeWParam(control.ControlId(), code),
            static_cast<LParam>(control.Handle())};
  }

  static void Press(Window& control, Point point) {
    control.Send(platform::message::kLeftButtonDown, 1, platform::PointToLParam(point));
  }
  static void Move(Window& control, Point point) {
    control.Send(platform::message::kMouseMove, 1, platform::PointToLParam(point));
  }
  static void Release(Window& control, Point point) {
    control.Send(platform::message::kLeftButtonUp, 0, platform::PointToLParam(point));
  }
  // By the pointer: what is a click is not for every control to find out.
  void Click(const Window& control, Point point) {
    const Rect area = dialog_.AreaOf(control);
    for (const Mouse mouse : {Mouse::Press, Mouse::Release}) {
      Use(mouse, {area.left + point.x, area.top + point.y});
    }
  }

  const std::uint32_t dpi_ = platform::GetScreenDpi().x;
  support::Scripted<NotingDialog> dialog_;
};

}  // namespace ui
