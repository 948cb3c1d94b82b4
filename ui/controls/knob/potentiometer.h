// The effect knob of the advanced dialog: a disc with an indicator, a scale of ticks around it, and
// the caption underneath. It is turned by dragging about its middle.
//
// User-interface thread only. Whenever the user has turned it, it posts POTN_VALUECHANGED to its
// parent.
#pragma once

#include <cstdint>
#include <optional>

#include "platform/drawing.h"
#include "platform/window.h"
#include "ui/controls/knob/knob_drag.h"
#include "ui/controls/shared/background_copy.h"
#include "ui/controls/shared/control_style.h"
#include "ui/controls/shared/value_map.h"

namespace ui {

class CPotentiometer : public platform::Window {
 public:
  // The red accent of the skin; to be set before the first paint.
  bool redAccent = false;

  // The knob stays where it is; a value is to be set next.
  void SetRange(std::int32_t minValue, std::int32_t maxValue);
  // Turns the knob without notification. `value` must lie in the range.
  void SetValue(std::int32_t value);
  // The value of the knob's position, truncated.
  std::int32_t GetValue() const;

  void PutAccessibleValue(std::int32_t part, double value) override;

  // Takes over what the parent shows under the control; for each new background of the parent.
  void CaptureBackground(const platform::Bitmap& parentBackground);

 protected:
  platform::LResult WindowProc(std::uint32_t message, platform::WParam wParam,
                               platform::LParam lParam) override;
  platform::AccessibleInfo DescribeAccessible(std::int32_t part) const override;

 private:
  platform::LResult OnEraseBackground(platform::WParam wParam, platform::LParam lParam);
  platform::LResult OnPaint(platform::WParam wParam, platform::LParam lParam);
  platform::LResult OnLeftButtonDown(platform::WParam wParam, platform::LParam lParam);
  platform::LResult OnLeftButtonUp(platform::WParam wParam, platform::LParam lParam);
  platform::LResult OnMouseMove(platform::WParam wParam, platform::LParam lParam);

  void TurnTo(std::int32_t position);
  void Render(double scale);

  platform::Font font_{kCaptionFamily, kKnobCaptionPoints, platform::FontStyle::Bold};
  BackgroundCopy background_;
  std::optional<platform::Bitmap> offscreen_;

  LinearMap map_{.minValue = 0, .maxValue = kKnobTravel, .travel = kKnobTravel};
  KnobDrag drag_;
  std::int32_t knobPos_ = 0;
  std::int32_t lastPaintedPos_ = 0;
};

}  // namespace ui
