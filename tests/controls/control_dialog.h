// A dialog with one control of each kind that writes down what it is told.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <utility>
#include <vector>

#include "platform/dialog.h"
#include "tests/support/scripted_window.h"
#include "ui/controls/buttons/png_button.h"
#include "ui/controls/buttons/png_checkbox.h"
#include "ui/controls/knob/potentiometer.h"
#include "ui/controls/plot/freq_plot.h"
#include "ui/controls/slider/png_slider.h"

namespace ui {

inline constexpr std::uint16_t kSliderId = 10;
inline constexpr std::uint16_t kKnobId = 11;
inline constexpr std::uint16_t kPlotId = 12;
inline constexpr std::uint16_t kCheckboxId = 13;
inline constexpr std::uint16_t kButtonId = 14;

// The sizes that the advanced dialog gives them.
inline constexpr auto kTestControls = std::to_array<platform::DialogControl>({
    {kSliderId, platform::ControlKind::Custom, u"Gain", 10, 10, 259, 36},
    {kKnobId, platform::ControlKind::Custom, u"Bass", 280, 10, 85, 95},
    {kPlotId, platform::ControlKind::Custom, u"", 7, 120, 489, 121},
    {kCheckboxId, platform::ControlKind::CheckBox, u"Peaking", 380, 10, 107, 12},
    {kButtonId, platform::ControlKind::PushButton, u"V", 380, 40, 55, 21},
});

inline constexpr platform::DialogTemplate kTestTemplate{
    1, platform::DialogFrame::Skinned, 503, 250, u"", u"Microsoft Sans Serif", 8, kTestControls};

struct Notice {
  std::uint32_t message;
  platform::WParam wParam;
  platform::LParam lParam;
  bool operator==(const Notice&) const = default;
};

class NotingDialog : public platform::Dialog {
 public:
  NotingDialog() : Dialog(kTestTemplate) {
    BindControl(kSliderId, slider);
    BindControl(kKnobId, knob);
    BindControl(kPlotId, plot);
    BindControl(kCheckboxId, checkbox);
    BindControl(kButtonId, button);
  }

  // What has arrived since the last call, in order.
  std::vector<Notice> TakeNotices() { return std::exchange(notices_, {}); }

  static void Press(platform::Window& control, platform::Point point) {
    control.Send(platform::message::kLeftButtonDown, 1, platform::PointToLParam(point));
  }
  static void Move(platform::Window& control, platform::Point point) {
    control.Send(platform::message::kMouseMove, 1, platform::PointToLParam(point));
  }
  static void Release(platform::Window& control, platform::Point point) {
    control.Send(platform::message::kLeftButtonUp, 0, platform::PointToLParam(point));
  }

  CPngSlider slider;
  CPotentiometer knob;
  CFreqPlot plot;
  CPngCheckbox checkbox;
  CPngButton button;
  std::function<void(const Notice&)> onNotice;

 protected:
  platform::LResult WindowProc(std::uint32_t message, platform::WParam wParam,
                               platform::LParam lParam) override {
    switch (message) {
      case platform::message::kCommand:
      case kBandSelectedMessage:
      case kBandDraggedMessage:
        notices_.push_back({message, wParam, lParam});
        if (onNotice) onNotice(notices_.back());
        return 0;
      default:
        return Dialog::WindowProc(message, wParam, lParam);
    }
  }

 private:
  std::vector<Notice> notices_;
};

// What a step posts has arrived before the next one.
using ControlDialog = support::Scripted<NotingDialog>;

}  // namespace ui
