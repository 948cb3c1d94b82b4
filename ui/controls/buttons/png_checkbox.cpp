#include "ui/controls/buttons/png_checkbox.h"

#include <array>

#include "platform/message_map.h"
#include "resources/resource_ids.h"
#include "ui/controls/shared/control_style.h"
#include "ui/controls/shared/control_window.h"
#include "ui/controls/shared/pixel_math.h"
#include "ui/images/png_resource.h"

namespace ui {

using platform::LParam;
using platform::LResult;
using platform::WParam;

namespace {

constexpr WParam kCheckedState = 1;
constexpr std::int32_t kIndicatorGap = 8;  // at every resolution

}  // namespace

void CPngCheckbox::CaptureBackground(const platform::Bitmap& parentBackground) {
  background_.Capture(parentBackground, AreaInParent(*this), ClientSize(*this));
}

void CPngCheckbox::PreSubclassWindow() {
  Button::PreSubclassWindow();
  checkedImage_.Load();
  uncheckedImage_ = LoadPngResource(resources::kImageGreyDot, kDesignDpi);
}

LResult CPngCheckbox::WindowProc(std::uint32_t message, WParam wParam, LParam lParam) {
  static constexpr auto kMessageMap = std::to_array<platform::MessageMapEntry<CPngCheckbox>>({
      platform::OnMessage(platform::message::kSetCheck, &CPngCheckbox::OnSetCheck),
      platform::OnMessage(platform::message::kGetCheck, &CPngCheckbox::OnGetCheck),
  });
  const auto result =
      platform::DispatchMessageMap<CPngCheckbox>(*this, kMessageMap, message, wParam, lParam);
  return result ? *result : Button::WindowProc(message, wParam, lParam);
}

LResult CPngCheckbox::OnSetCheck(WParam wParam, LParam /*lParam*/) {
  const bool wasChecked = checked_;
  checked_ = wParam == kCheckedState;
  Invalidate(platform::Erase::Yes);
  if (checked_ != wasChecked) NotifyAccessible(*this, platform::AccessibleChange::Check);
  return 0;
}

LResult CPngCheckbox::OnGetCheck(WParam /*wParam*/, LParam /*lParam*/) {
  return checked_ ? 1 : 0;
}

void CPngCheckbox::DrawItem(platform::Graphics& graphics, const platform::Rect& item) {
  if (redAccent) checkedImage_.TurnRed();
  platform::Bitmap picture =
      MakeCanvas({item.Width(), item.Height()}, platform::PixelFormat::Argb32);
  PaintCheckbox(picture, background_, font_, Text(),
                checked_ ? checkedImage_.Image() : uncheckedImage_);
  graphics.DrawImage(picture, 0, 0);
}

platform::AccessibleInfo CPngCheckbox::DescribeAccessible(std::int32_t part) const {
  platform::AccessibleInfo info = Button::DescribeAccessible(part);
  info.role = platform::AccessibleRole::CheckButton;
  info.check = checked_ ? platform::AccessibleCheck::Checked : platform::AccessibleCheck::Unchecked;
  return info;
}

void PaintCheckbox(platform::Bitmap& target, const BackgroundCopy& background,
                   const platform::Font& font, std::u16string_view caption,
                   const std::optional<platform::Bitmap>& indicator) {
  platform::Graphics graphics(target);
  background.Draw(graphics);
  graphics.SetTextRenderingHint(platform::TextRenderingHint::AntiAliasGridFit);
  const auto textSpace =
      static_cast<std::int32_t>(static_cast<float>(target.Height()) - font.Height(graphics.DpiY()));
  const std::int32_t textTop = textSpace / 2;
  graphics.DrawString(caption, font, {0.0F, static_cast<float>(textTop)},
                      platform::StringFormat::GenericDefault, kWhiteText);
  if (!indicator) return;
  graphics.DrawImage(*indicator, target.Width() - indicator->Width() - kIndicatorGap,
                     (target.Height() - indicator->Height()) / 2);
}

}  // namespace ui
