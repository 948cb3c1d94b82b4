#include "platform/dialog.h"

#include <utility>
#include <vector>

#include "platform/dialog_units.h"
#include "platform/linux/drawing/drawing_impl.h"
#include "platform/linux/windows/captioned_window.h"
#include "platform/linux/windows/control_window.h"
#include "platform/linux/windows/layered_window.h"
#include "platform/linux/windows/menus.h"
#include "platform/linux/windows/skinned_window.h"
#include "platform/linux/windows/system_controls.h"
#include "platform/linux/windows/theme.h"
#include "platform/linux/windows/window_table.h"
#include "platform/screen.h"

namespace platform {
namespace {

// The owner takes no input while it lives.
class OwnerDisabled {
 public:
  explicit OwnerDisabled(WindowHandle owner) {
    NativeWindow* window = WindowTable::Instance().Find(owner);
    if (window == nullptr || !window->AcceptsInput()) return;
    window->SetAcceptsInput(false);
    owner_ = owner;
  }
  ~OwnerDisabled() {
    if (NativeWindow* window = WindowTable::Instance().Find(owner_)) window->SetAcceptsInput(true);
  }
  OwnerDisabled(const OwnerDisabled&) = delete;
  OwnerDisabled& operator=(const OwnerDisabled&) = delete;

 private:
  WindowHandle owner_ = 0;
};

QRect ToQRect(const Rect& rect) {
  return {rect.left, rect.top, rect.Width(), rect.Height()};
}

DialogBaseUnits ScreenBaseUnits() {
  const ScreenDpi dpi = GetScreenDpi();
  return {BaseUnitsAt(dpi.x).width, BaseUnitsAt(dpi.y).height};
}

std::unique_ptr<DialogWindow> MakeWindow(Dialog& dialog, const DialogTemplate& dialogTemplate,
                                         WindowHandle owner) {
  const Size pixels = FromDialogUnits(dialogTemplate, ScreenBaseUnits());
  const QSize size(pixels.width, pixels.height);
  switch (dialogTemplate.frame) {
    case DialogFrame::Layered: {
      auto window = std::make_unique<LayeredWindow>(dialog, dialogTemplate.id);
      window->SetSize(size);
      return window;
    }
    case DialogFrame::Skinned: {
      auto window = std::make_unique<SkinnedWindow>(dialog, dialogTemplate.id);
      window->SetSize(size);
      window->PlaceWithTemplateSize();
      return window;
    }
    case DialogFrame::Captioned:
      break;
  }
  NativeWindow* ownerWindow = WindowTable::Instance().Find(owner);
  if (ownerWindow != nullptr && !ownerWindow->isVisible()) ownerWindow = nullptr;
  auto window = std::make_unique<CaptionedWindow>(dialog, ownerWindow, dialogTemplate.id);
  window->SetSize(size);
  return window;
}

DialogWindow* WindowOf(Dialog& dialog) {
  return static_cast<DialogWindow*>(dialog.Native().native);
}

void FocusFirstControl(DialogWindow& window) {
  for (QObject* child : window.children()) {
    auto* widget = qobject_cast<QWidget*>(child);
    if (widget != nullptr && (widget->focusPolicy() & Qt::TabFocus) != 0) {
      return widget->setFocus(Qt::OtherFocusReason);
    }
  }
  window.setFocus(Qt::OtherFocusReason);
}

}  // namespace

std::int32_t Dialog::DoModal(WindowHandle owner) {
  if (Native().native != nullptr) return kIdCancel;
  result_ = kIdCancel;
  const OwnerDisabled ownerDisabled(owner);
  const std::unique_ptr<DialogWindow> window = MakeWindow(*this, template_, owner);
  SetText(template_.title);
  const DialogBaseUnits base = ScreenBaseUnits();
  const QFont font = ToolkitFont(template_.fontFamily, template_.fontPoints);
  std::vector<Window*> attached{this};
  for (const DialogControl& control : template_.controls) {
    const QRect place = ToQRect(FromDialogUnits(control, base));
    const auto bound = bound_.find(control.id);
    if (bound == bound_.end() || bound->second->Native().native != nullptr) {
      MakeSystemControl(*window, control, place, font);
      continue;
    }
    auto* native = new ControlWindow(*bound->second, *window, control);
    native->setGeometry(place);
    attached.push_back(bound->second);
  }
  for (Window* each : attached) WindowAccess::PreSubclass(*each);
  Send(message::kInitDialog, 0, 0);
  if (!window->HasEnded()) {
    window->PlaceBeforeShow();
    FocusFirstControl(*window);
    window->ShowActive();
    window->RunModal();
  }
  Send(message::kDestroy, 0, 0);
  return result_;
}

void Dialog::EndDialog(std::int32_t result) {
  DialogWindow* window = WindowOf(*this);
  if (window == nullptr || window->HasEnded()) return;
  result_ = result;
  window->End();
}

void Dialog::UpdateLayered(const Bitmap& content) {
  if (auto* window = dynamic_cast<LayeredWindow*>(Native().native)) {
    window->SetContent(content.Native().image);
  }
}

void Dialog::AppendSystemMenuSeparator() {
  if (DialogWindow* window = WindowOf(*this)) window->AppendSystemMenu(0, {});
}

void Dialog::AppendSystemMenuItem(std::uint16_t command, std::u16string_view text) {
  if (DialogWindow* window = WindowOf(*this)) {
    window->AppendSystemMenu(command, std::u16string(text));
  }
}

void Dialog::TrackSystemMenu(Point screen) {
  if (DialogWindow* window = WindowOf(*this)) window->OpenSystemMenu(QPoint(screen.x, screen.y));
}

void Dialog::TrackPopupMenu(const PopupMenu& menu, Point screen) {
  DialogWindow* window = WindowOf(*this);
  if (window == nullptr) return;
  if (const std::uint16_t command = RunPopupMenu(*window, menu.items, QPoint(screen.x, screen.y))) {
    PostToWindow(Handle(), message::kCommand, MakeWParam(command, kNotifyClicked), 0);
  }
}

}  // namespace platform
