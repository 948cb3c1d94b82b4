// A dialog with one control of each kind that runs a script and writes down what it is told.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <utility>
#include <vector>

#include "platform/dialog.h"
#include "platform/message_map.h"
#include "ui/controls/freq_plot.h"
#include "ui/controls/png_button.h"
#include "ui/controls/png_checkbox.h"
#include "ui/controls/png_slider.h"
#include "ui/controls/potentiometer.h"

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

class ControlDialog : public platform::Dialog {
 public:
  ControlDialog() : Dialog(kTestTemplate) {
    BindControl(kSliderId, slider);
    BindControl(kKnobId, knob);
    BindControl(kPlotId, plot);
    BindControl(kCheckboxId, checkbox);
    BindControl(kButtonId, button);
  }

  // Runs `step` while the dialog is open, after what the steps before have posted has arrived.
  void Then(std::function<void()> step) { steps_.push_back(std::move(step)); }
  void Run() { DoModal(); }

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
      case platform::message::kInitDialog:
        PostNextStep();
        return 1;
      case kNextStep:
        Advance();
        return 0;
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
  static constexpr std::uint32_t kNextStep = platform::message::kUser + 100;

  void PostNextStep() { platform::PostToWindow(Handle(), kNextStep, 0, 0); }

  void Advance() {
    if (next_ == steps_.size()) {
      EndDialog(0);
      return;
    }
    steps_[next_++]();
    PostNextStep();
  }

  std::vector<std::function<void()>> steps_;
  std::size_t next_ = 0;
  std::vector<Notice> notices_;
};

}  // namespace ui
