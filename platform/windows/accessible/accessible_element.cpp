#include "platform/windows/accessible/accessible_element.h"

#include <oleacc.h>

#include <cmath>

#include "platform/windows/windows/dialog_window.h"

namespace platform {
namespace {

HWND RootOf(HWND window) {
  return GetAncestor(window, GA_ROOT);
}

// A control may lie where its dialog does not reach.
bool LiesOutside(HWND window) {
  const HWND dialog = RootOf(window);
  if (dialog == window) return false;
  RECT own{};
  GetWindowRect(window, &own);
  MapWindowPoints(nullptr, dialog, reinterpret_cast<POINT*>(&own), 2);
  RECT client{};
  GetClientRect(dialog, &client);
  RECT common{};
  return IntersectRect(&common, &own, &client) == FALSE;
}

bool AcceptsInput(HWND window) {
  return IsWindowEnabled(window) != FALSE && IsWindowEnabled(RootOf(window)) != FALSE;
}

// The window is not about to go, and no menu takes the mouse from it.
bool GetsTheMouse(HWND window) {
  const HWND root = RootOf(window);
  const auto* dialog = dynamic_cast<const DialogWindow*>(NativeWindow::Find(root));
  if (dialog == nullptr || dialog->HasEnded() || IsIconic(root) != FALSE) return false;
  GUITHREADINFO thread{};
  thread.cbSize = sizeof(thread);
  GetGUIThreadInfo(GetCurrentThreadId(), &thread);
  return (thread.flags & (GUI_INMENUMODE | GUI_POPUPMENUMODE | GUI_SYSTEMMENUMODE)) == 0;
}

}  // namespace

HWND AccessibleElement::Handle() const {
  return ToNative(window_.Handle());
}

AccessibleInfo AccessibleElement::Info() const {
  return window_.Accessible(part_);
}

DWORD AccessibleElement::Role() const {
  switch (Info().role) {
    case AccessibleRole::Client:
      return ROLE_SYSTEM_CLIENT;
    case AccessibleRole::Dialog:
      return ROLE_SYSTEM_DIALOG;
    case AccessibleRole::Alert:
      return ROLE_SYSTEM_ALERT;
    case AccessibleRole::Chart:
      return ROLE_SYSTEM_CHART;
    case AccessibleRole::PushButton:
      return ROLE_SYSTEM_PUSHBUTTON;
    case AccessibleRole::ButtonMenu:
      return ROLE_SYSTEM_BUTTONMENU;
    case AccessibleRole::CheckButton:
      return ROLE_SYSTEM_CHECKBUTTON;
    case AccessibleRole::RadioButton:
      return ROLE_SYSTEM_RADIOBUTTON;
    case AccessibleRole::Link:
      return ROLE_SYSTEM_LINK;
    case AccessibleRole::Slider:
      return ROLE_SYSTEM_SLIDER;
    case AccessibleRole::Dial:
      return ROLE_SYSTEM_DIAL;
  }
  return ROLE_SYSTEM_CLIENT;
}

DWORD AccessibleElement::State() const {
  const AccessibleInfo info = Info();
  DWORD state = 0;
  const auto add = [&state](bool is, DWORD flag) {
    if (is) state |= flag;
  };
  add(!AcceptsInput(Handle()), STATE_SYSTEM_UNAVAILABLE);
  add(info.check == AccessibleCheck::Checked, STATE_SYSTEM_CHECKED);
  add(info.expansion == AccessibleExpansion::Expanded, STATE_SYSTEM_EXPANDED);
  add(info.expansion == AccessibleExpansion::Collapsed, STATE_SYSTEM_COLLAPSED);
  add(info.role == AccessibleRole::ButtonMenu, STATE_SYSTEM_HASPOPUP);
  add(info.role == AccessibleRole::Link, STATE_SYSTEM_LINKED);
  add(LiesOutside(Handle()), STATE_SYSTEM_OFFSCREEN);
  add(IsHidden(), STATE_SYSTEM_INVISIBLE);
  return state;
}

std::u16string_view AccessibleElement::Action() const {
  const AccessibleInfo info = Info();
  if (info.role == AccessibleRole::Link) return u"Jump";
  if (info.check == AccessibleCheck::Checked && info.role == AccessibleRole::CheckButton) {
    return u"Uncheck";
  }
  if (info.check != AccessibleCheck::None) return u"Check";
  return CanBePressed(info.role) ? std::u16string_view(u"Press") : std::u16string_view();
}

bool AccessibleElement::IsHidden() const {
  return !window_.IsVisible() || LiesOutside(Handle()) ||
         Info().visibility == AccessibleVisibility::Hidden;
}

Rect AccessibleElement::Area() const {
  if (part_ == kAccessibleSelf) return window_.WindowRect();
  const Rect area = Info().area;
  const Point corner = window_.ClientToScreen({area.left, area.top});
  return {corner.x, corner.y, corner.x + area.Width(), corner.y + area.Height()};
}

bool AccessibleElement::CanBeClicked() const {
  return !IsHidden() && AcceptsInput(Handle()) && GetsTheMouse(Handle());
}

void AccessibleElement::Press() const {
  if (CanBeClicked()) window_.DoDefaultAction(part_);
}

void AccessibleElement::PutValue(double value) const {
  if (std::isfinite(value) && CanBeClicked()) window_.PutAccessibleValue(part_, value);
}

}  // namespace platform
