// A check box with its caption on the left and a dot on the right that tells its state.
//
// User-interface thread only. A click changes nothing by itself: it reaches the parent as
// kNotifyClicked, and the parent answers with kSetCheck (wParam 1 checks, anything else unchecks).
// kGetCheck answers 1 or 0.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "platform/drawing.h"
#include "platform/window.h"
#include "ui/controls/shared/accent_dot.h"
#include "ui/controls/shared/background_copy.h"
#include "ui/controls/shared/control_style.h"

namespace ui {

class CPngCheckbox : public platform::Button {
 public:
  // The red accent of the skin; to be set before the first paint.
  bool redAccent = false;

  // Takes over what the parent shows under the control; for each new background of the parent.
  void CaptureBackground(const platform::Bitmap& parentBackground);

 protected:
  void PreSubclassWindow() override;
  platform::LResult WindowProc(std::uint32_t message, platform::WParam wParam,
                               platform::LParam lParam) override;
  void DrawItem(platform::Graphics& graphics, const platform::Rect& item) override;
  platform::AccessibleInfo DescribeAccessible(std::int32_t part) const override;

 private:
  platform::LResult OnSetCheck(platform::WParam wParam, platform::LParam lParam);
  platform::LResult OnGetCheck(platform::WParam wParam, platform::LParam lParam);

  platform::Font font_{kCaptionFamily, kCaptionPoints, platform::FontStyle::Bold};
  AccentDot checkedImage_;
  std::optional<platform::Bitmap> uncheckedImage_;
  BackgroundCopy background_;
  bool checked_ = false;
};

// The picture of such a check box, onto the transparent `target`.
void PaintCheckbox(platform::Bitmap& target, const BackgroundCopy& background,
                   const platform::Font& font, std::u16string_view caption,
                   const std::optional<platform::Bitmap>& indicator);

}  // namespace ui
