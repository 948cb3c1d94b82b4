#include "ui/controls/png_slider.h"

#include <array>

#include "platform/message_map.h"
#include "platform/screen.h"
#include "resources/resource_ids.h"
#include "ui/controls/control_style.h"
#include "ui/controls/control_window.h"
#include "ui/controls/slider_geometry.h"
#include "ui/controls/slider_painter.h"
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
    NotifyParent(*this, kPsnValueChanged);
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
  if (GetValue() != oldValue) NotifyParent(*this, kPsnValueChanged);
  Invalidate(Erase::Yes);
  return 0;
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
