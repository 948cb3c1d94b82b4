// The horizontal slider of the advanced dialog: caption, groove with a coloured fill, thumb, and a
// box with a text that the parent writes. It holds a whole number on an even or logarithmic scale.
//
// User-interface thread only. Whenever the user has changed it, it posts PSN_VALUECHANGED to its
// parent.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "platform/drawing.h"
#include "platform/window.h"
#include "ui/controls/shared/background_copy.h"
#include "ui/controls/shared/control_style.h"
#include "ui/controls/shared/spoken_scale.h"
#include "ui/controls/slider/slider_drag.h"
#include "ui/controls/slider/slider_scale.h"

namespace ui {

class CPngSlider : public platform::Window {
 public:
  // The red accent of the skin; to be set before the first paint.
  bool redAccent = false;

  // `maxValue` must be the greater one. The thumb stays where it is; a value is to be set next.
  void SetRange(std::int32_t minValue, std::int32_t maxValue);
  // For ranges above 0.
  void SetLogScale(bool logScale);

  // Moves the thumb to the nearest place in the range and repaints at once, without notification.
  void SetValue(std::int32_t value);
  // The value of the thumb's pixel, which may lie below the value that was set.
  std::int32_t GetValue() const;

  // The text in the box; repaints at once. Assistive technology is told of a new value with it.
  void SetValueText(std::u16string_view text);

  // The unit in which assistive technology is told the value; without it the slider's own.
  void SetSpokenScale(SpokenScale scale) { spoken_ = scale; }
  void PutAccessibleValue(std::int32_t part, double value) override;

  // Takes over what the parent shows under the control; for each new background of the parent.
  void CaptureBackground(const platform::Bitmap& parentBackground);

 protected:
  void PreSubclassWindow() override;
  platform::LResult WindowProc(std::uint32_t message, platform::WParam wParam,
                               platform::LParam lParam) override;
  platform::AccessibleInfo DescribeAccessible(std::int32_t part) const override;

 private:
  platform::LResult OnEraseBackground(platform::WParam wParam, platform::LParam lParam);
  platform::LResult OnPaint(platform::WParam wParam, platform::LParam lParam);
  platform::LResult OnLeftButtonDown(platform::WParam wParam, platform::LParam lParam);
  platform::LResult OnLeftButtonUp(platform::WParam wParam, platform::LParam lParam);
  platform::LResult OnMouseMove(platform::WParam wParam, platform::LParam lParam);

  void AnnounceValue();
  bool NeedsRender() const;
  void Render(double scale);

  platform::Font font_{kCaptionFamily, kCaptionPoints, platform::FontStyle::Bold};
  std::optional<platform::Bitmap> thumbImage_;
  std::optional<platform::Bitmap> thumbDisabledImage_;
  BackgroundCopy background_;
  std::optional<platform::Bitmap> offscreen_;

  SliderScale scale_;
  SpokenScale spoken_;
  SliderDrag drag_;
  std::u16string valueText_ = u"0";
  std::int32_t thumbPos_ = 0;

  std::u16string announcedText_;
  std::int32_t announcedPos_ = 0;

  std::int32_t lastPaintedPos_ = 0;
  bool lastPaintedEnabled_ = true;
  bool dirty_ = true;
};

}  // namespace ui
