// What windows, buttons and dialogs do by themselves on every platform. Part of each backend's
// windows, for it calls what they implement.
#include <utility>

#include "platform/dialog.h"
#include "platform/window_access.h"

namespace platform {

Window::Window() : impl_(std::make_unique<Impl>()) {}

LResult Window::Send(std::uint32_t message, WParam wParam, LParam lParam) {
  return impl_->native != nullptr ? WindowProc(message, wParam, lParam) : 0;
}

AccessibleInfo Window::Accessible(std::int32_t part) const {
  AccessibleInfo info = DescribeAccessible(part);
  if (part != kAccessibleSelf) return info;
  if (!annotation_.name.empty()) info.name = annotation_.name;
  if (!annotation_.description.empty()) info.description = annotation_.description;
  if (annotation_.role) info.role = *annotation_.role;
  if (annotation_.expansion != AccessibleExpansion::None) info.expansion = annotation_.expansion;
  return info;
}

void Window::Annotate(AccessibleAnnotation annotation) {
  annotation_ = std::move(annotation);
}

AccessibleInfo Window::DescribeAccessible(std::int32_t part) const {
  AccessibleInfo info;
  if (part == kAccessibleSelf) info.name = Text();
  return info;
}

LResult Window::WindowProc(std::uint32_t message, WParam, LParam) {
  return message == message::kNonClientHitTest ? static_cast<LResult>(HitTest::Client) : 0;
}

PaintContext::~PaintContext() = default;

Graphics& PaintContext::Surface() {
  return *graphics_;
}

AccessibleInfo Button::DescribeAccessible(std::int32_t part) const {
  AccessibleInfo info = Window::DescribeAccessible(part);
  info.role = AccessibleRole::PushButton;
  return info;
}

Dialog::Dialog(const DialogTemplate& dialogTemplate) : template_(dialogTemplate) {}
Dialog::~Dialog() = default;

void Dialog::BindControl(std::uint16_t id, Window& control) {
  bound_[id] = &control;
}

LResult Dialog::WindowProc(std::uint32_t message, WParam wParam, LParam lParam) {
  switch (message) {
    case message::kCommand:
      if (wParam == MakeWParam(kIdOk, kNotifyClicked)) {
        OnOk();
        return 0;
      }
      if (wParam == MakeWParam(kIdCancel, kNotifyClicked)) {
        OnCancel();
        return 0;
      }
      break;
    case message::kClose:
      return Send(message::kCommand, MakeWParam(kIdCancel, kNotifyClicked), 0);
    case message::kSystemCommand:
      if (wParam == kSystemClose) return Send(message::kClose, 0, 0);
      if (wParam == kSystemMinimize) Show(ShowCommand::Minimize);
      return 0;
    default:
      break;
  }
  return Window::WindowProc(message, wParam, lParam);
}

AccessibleInfo Dialog::DescribeAccessible(std::int32_t part) const {
  AccessibleInfo info = Window::DescribeAccessible(part);
  if (part == kAccessibleSelf) info.role = AccessibleRole::Dialog;
  return info;
}

}  // namespace platform
