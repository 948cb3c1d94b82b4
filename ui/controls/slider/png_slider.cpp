#include "ui/controls/slider/png_slider.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "platform/message_map.h"
#include "platform/screen.h"
#include "resources/resource_ids.h"
#include "ui/controls/shared/control_style.h"
#include "ui/controls/shared/control_window.h"
#include "ui/controls/slider/slider_geometry.h"
#include "ui/controls/slider/slider_painter.h"
#include "ui/images/png_resource.h"

namespace ui {

using platform::Erase;
using platform::LParam;
using platform::LResult;
using platform::WParam;

void CPngSlider::PreSubclassWindow() {
  thumbImage_ = LoadPngResource(resources::kImageGreyDot, kDesignDpi);
  thumbDisabledImage_ = LoadPngResource(resources::kImageDarkDot, kDesignDpi);
  const double dpiScale = platform::GetScreenDpi().x / double{kDesignDpi};
  scale_.SetTravel(SliderGeometry(ClientSize(*this), dpiScale).Travel());
  Window::PreSubclassWindow();
}

LResult CPngSlider::WindowProc(std::uint32_t message, WParam wParam, LParam lParam) {
  static constexpr auto kMessageMap = std::to_array<platform::MessageMapEntry<CPngSlider>>({
      platform::OnMessage(platform::message::kEraseBackground, &CPngSlider::OnEraseBackground),
      platform::OnMessage(platform::message::kPaint, &CPngSlider::OnPaint),
      platform::OnMessage(platform::message::kLeftButtonDown, &CPngSlider::OnLeftButtonDown),
      platform::OnMessage(platform::message::kLeftButtonUp, &CPngSlider::OnLeftButtonUp),
      platform::OnMessage(platform::message::kMouseMove, &CPngSlider::OnMouseMove),
  });
  const auto result =
      platform::DispatchMessageMap<CPngSlider>(*this, kMessageMap, message, wParam, lParam);
  return result ? *result : Window::WindowProc(message, wParam, lParam);
}

void CPngSlider::SetRange(std::int32_t minValue, std::int32_t maxValue) {
  scale_.SetRange(minValue, maxValue);
  dirty_ = true;
  Invalidate(Erase::Yes);
}

void CPngSlider::SetLogScale(bool logScale) {
  scale_.SetLogScale(logScale);
  dirty_ = true;
}

void CPngSlider::SetValue(std::int32_t value) {
  thumbPos_ = scale_.Position(value);
  Invalidate(Erase::Yes);
  Update();
}

std::int32_t CPngSlider::GetValue() const {
  return scale_.Value(thumbPos_);
}

void CPngSlider::SetValueText(std::u16string_view text) {
  valueText_ = text;
  dirty_ = true;
  Invalidate(Erase::Yes);
  Update();
  AnnounceValue();
}

// Value and text change one after the other; only together they are worth telling.
void CPngSlider::AnnounceValue() {
  if (announcedText_ == valueText_ && announcedPos_ == thumbPos_) return;
  announcedText_ = valueText_;
  announcedPos_ = thumbPos_;
  NotifyAccessible(*this, platform::AccessibleChange::Value);
}

void CPngSlider::CaptureBackground(const platform::Bitmap& parentBackground) {
  background_.Capture(parentBackground, AreaInParent(*this), ClientSize(*this));
}

// The picture covers the whole window.
LResult CPngSlider::OnEraseBackground(WParam /*wParam*/, LParam /*lParam*/) {
  return 1;
}

LResult CPngSlider::OnPaint(WParam /*wParam*/, LParam /*lParam*/) {
  platform::PaintContext paint(*this);
  if (NeedsRender()) Render(paint.Surface().DpiX() / double{kDesignDpi});
  CopyToWindow(paint.Surface(), *offscreen_);
  return 0;
}

LResult CPngSlider::OnLeftButtonDown(WParam wParam, LParam lParam) {
  if (!IsEnabled()) return 0;
  const std::int32_t thumbWidth = thumbImage_ ? thumbImage_->Width() : 0;
  const auto jump =
      drag_.Press(platform::PointFromLParam(lParam).x, thumbPos_, thumbWidth, scale_.Travel());
  if (jump) {
    thumbPos_ = *jump;
    Invalidate(Erase::Yes);
    NotifyParent(*this, PSN_VALUECHANGED);
  }
  CaptureMouse();
  return Window::WindowProc(platform::message::kLeftButtonDown, wParam, lParam);
}

LResult CPngSlider::OnLeftButtonUp(WParam wParam, LParam lParam) {
  drag_.Release();
  ReleaseMouse();
  return Window::WindowProc(platform::message::kLeftButtonUp, wParam, lParam);
}

LResult CPngSlider::OnMouseMove(WParam /*wParam*/, LParam lParam) {
  if (!drag_.IsDragging()) return 0;
  const auto moved = drag_.Move(platform::PointFromLParam(lParam).x, thumbPos_, scale_.Travel(),
                                ClientRect().Width());
  if (!moved) return 0;
  const std::int32_t oldValue = GetValue();
  thumbPos_ = *moved;
  if (GetValue() != oldValue) NotifyParent(*this, PSN_VALUECHANGED);
  Invalidate(Erase::Yes);
  return 0;
}

platform::AccessibleInfo CPngSlider::DescribeAccessible(std::int32_t part) const {
  platform::AccessibleInfo info = Window::DescribeAccessible(part);
  info.role = platform::AccessibleRole::Slider;
  info.value = valueText_;
  const std::int32_t value = GetValue();
  const std::int32_t neighbour = thumbPos_ < scale_.Travel() ? thumbPos_ + 1 : thumbPos_ - 1;
  const double current = spoken_.toSpoken(value);
  const double first = spoken_.toSpoken(scale_.Value(0));
  const double last = spoken_.toSpoken(scale_.Value(scale_.Travel()));
  // Several pixels may stand for one value, or one pixel for several.
  const double step = std::max(std::abs(spoken_.toSpoken(scale_.Value(neighbour)) - current),
                               std::abs(spoken_.toSpoken(value + 1) - current));
  info.range = {std::min(first, last), std::max(first, last), current, step};
  return info;
}

void CPngSlider::PutAccessibleValue(std::int32_t /*part*/, double value) {
  const std::int32_t wanted = std::clamp(spoken_.fromSpoken(value), scale_.Value(0),
                                         std::max(scale_.Value(0), scale_.Value(scale_.Travel())));
  const std::int32_t position = scale_.NearestPosition(wanted);
  if (scale_.Value(position) == GetValue()) return;
  thumbPos_ = position;
  Invalidate(Erase::Yes);
  NotifyParent(*this, PSN_VALUECHANGED);
}

bool CPngSlider::NeedsRender() const {
  return dirty_ || thumbPos_ != lastPaintedPos_ || IsEnabled() != lastPaintedEnabled_;
}

void CPngSlider::Render(double scale) {
  if (!offscreen_) {
    offscreen_ = MakeCanvas(ClientSize(*this), platform::PixelFormat::PremultipliedArgb32);
  }
  dirty_ = false;
  const std::u16string caption = Text();
  const SliderState state{.thumbPos = thumbPos_,
                          .zeroPos = scale_.ZeroPos(),
                          .enabled = IsEnabled(),
                          .redAccent = redAccent,
                          .valueText = valueText_,
                          .caption = caption};
  PaintSlider(*offscreen_, scale, {background_, thumbImage_, thumbDisabledImage_, font_}, state);
  lastPaintedPos_ = thumbPos_;
  lastPaintedEnabled_ = state.enabled;
}

}  // namespace ui
