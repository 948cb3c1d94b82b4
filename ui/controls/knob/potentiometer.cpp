#include "ui/controls/knob/potentiometer.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string>

#include "dsp/conversions.h"
#include "platform/message_map.h"
#include "ui/controls/knob/knob_geometry.h"
#include "ui/controls/knob/knob_painter.h"
#include "ui/controls/shared/control_style.h"
#include "ui/controls/shared/control_window.h"

namespace ui {

using platform::Erase;
using platform::LParam;
using platform::LResult;
using platform::WParam;

LResult CPotentiometer::WindowProc(std::uint32_t message, WParam wParam, LParam lParam) {
  static constexpr auto kMessageMap = std::to_array<platform::MessageMapEntry<CPotentiometer>>({
      platform::OnMessage(platform::message::kEraseBackground, &CPotentiometer::OnEraseBackground),
      platform::OnMessage(platform::message::kPaint, &CPotentiometer::OnPaint),
      platform::OnMessage(platform::message::kLeftButtonDown, &CPotentiometer::OnLeftButtonDown),
      platform::OnMessage(platform::message::kLeftButtonUp, &CPotentiometer::OnLeftButtonUp),
      platform::OnMessage(platform::message::kMouseMove, &CPotentiometer::OnMouseMove),
  });
  const auto result =
      platform::DispatchMessageMap<CPotentiometer>(*this, kMessageMap, message, wParam, lParam);
  return result ? *result : Window::WindowProc(message, wParam, lParam);
}

void CPotentiometer::SetRange(std::int32_t minValue, std::int32_t maxValue) {
  map_.minValue = minValue;
  map_.maxValue = maxValue;
  Invalidate(Erase::Yes);
}

void CPotentiometer::SetValue(std::int32_t value) {
  TurnTo(map_.Position(value));
}

void CPotentiometer::TurnTo(std::int32_t position) {
  if (position == knobPos_) return;
  const std::int32_t oldValue = GetValue();
  knobPos_ = position;
  Invalidate(Erase::Yes);
  if (GetValue() != oldValue) NotifyAccessible(*this, platform::AccessibleChange::Value);
}

std::int32_t CPotentiometer::GetValue() const {
  return map_.Value(knobPos_);
}

void CPotentiometer::CaptureBackground(const platform::Bitmap& parentBackground) {
  background_.Capture(parentBackground, AreaInParent(*this), ClientSize(*this));
}

// The picture covers the whole window.
LResult CPotentiometer::OnEraseBackground(WParam /*wParam*/, LParam /*lParam*/) {
  return 1;
}

LResult CPotentiometer::OnPaint(WParam /*wParam*/, LParam /*lParam*/) {
  platform::PaintContext paint(*this);
  if (!offscreen_ || knobPos_ != lastPaintedPos_) {
    Render(paint.Surface().DpiX() / double{kDesignDpi});
  }
  CopyToWindow(paint.Surface(), *offscreen_);
  return 0;
}

LResult CPotentiometer::OnLeftButtonDown(WParam wParam, LParam lParam) {
  if (IsEnabled()) {
    drag_.Press(platform::PointFromLParam(lParam));
    CaptureMouse();
  }
  return Window::WindowProc(platform::message::kLeftButtonDown, wParam, lParam);
}

LResult CPotentiometer::OnLeftButtonUp(WParam wParam, LParam lParam) {
  if (IsEnabled()) {
    drag_.Release();
    ReleaseMouse();
  }
  return Window::WindowProc(platform::message::kLeftButtonUp, wParam, lParam);
}

LResult CPotentiometer::OnMouseMove(WParam /*wParam*/, LParam lParam) {
  if (!drag_.IsDragging()) return 0;
  const std::int32_t oldPos = knobPos_;
  TurnTo(drag_.Move(platform::PointFromLParam(lParam), TurningCentre(ClientSize(*this)), oldPos));
  if (knobPos_ != oldPos) NotifyParent(*this, POTN_VALUECHANGED);
  return 0;
}

platform::AccessibleInfo CPotentiometer::DescribeAccessible(std::int32_t part) const {
  platform::AccessibleInfo info = Window::DescribeAccessible(part);
  info.role = platform::AccessibleRole::Dial;
  const std::int32_t value = GetValue();
  info.value = dsp::AmountText(value);
  info.range = {static_cast<double>(map_.minValue), static_cast<double>(map_.maxValue),
                static_cast<double>(value), 1.0};
  return info;
}

void CPotentiometer::PutAccessibleValue(std::int32_t /*part*/, double value) {
  const double wanted = std::clamp<double>(std::round(value), map_.minValue, map_.maxValue);
  if (wanted == GetValue()) return;
  TurnTo(map_.Position(static_cast<std::int32_t>(wanted)));
  NotifyParent(*this, POTN_VALUECHANGED);
}

void CPotentiometer::Render(double scale) {
  // A fresh bitmap each time: what is drawn is partly transparent and must not pile up.
  offscreen_ = MakeCanvas(ClientSize(*this), platform::PixelFormat::Argb32);
  const std::u16string caption = Text();
  PaintKnob(
      *offscreen_, scale, {background_, font_},
      {.knobPos = knobPos_, .enabled = IsEnabled(), .redAccent = redAccent, .caption = caption});
  lastPaintedPos_ = knobPos_;
}

}  // namespace ui
