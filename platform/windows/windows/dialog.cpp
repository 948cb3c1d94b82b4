#include "platform/dialog.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/windows/wide_text.h"
#include "platform/windows/windows/captioned_window.h"
#include "platform/windows/windows/control_window.h"
#include "platform/windows/windows/layered_window.h"
#include "platform/windows/windows/skinned_window.h"

namespace platform {
namespace {

// The owner takes no input while it lives.
class OwnerDisabled {
 public:
  explicit OwnerDisabled(HWND owner) {
    if (owner != nullptr && EnableWindow(owner, FALSE) == FALSE) owner_ = owner;
  }
  ~OwnerDisabled() {
    if (owner_ != nullptr) EnableWindow(owner_, TRUE);
  }
  OwnerDisabled(const OwnerDisabled&) = delete;
  OwnerDisabled& operator=(const OwnerDisabled&) = delete;

 private:
  HWND owner_ = nullptr;
};

// The controls' objects handle what they draw, so that the classes need hardly anything.
void RegisterClassOf(const DialogControl& control) {
  const std::wstring name = ToWide(control.windowClass);
  WNDCLASSEXW known{};
  known.cbSize = sizeof(known);
  const HINSTANCE program = GetModuleHandleW(nullptr);
  if (GetClassInfoExW(program, name.c_str(), &known) != FALSE) return;
  WNDCLASSEXW custom{};
  custom.cbSize = sizeof(custom);
  custom.style = CS_HREDRAW | CS_VREDRAW | CS_DBLCLKS;
  custom.lpfnWndProc = &DefWindowProcW;
  custom.hInstance = program;
  custom.hCursor = LoadCursorW(nullptr, IDC_ARROW);
  custom.lpszClassName = name.c_str();
  RegisterClassExW(&custom);
}

INT_PTR CALLBACK LeaveAllToTheObject(HWND /*dialog*/, UINT /*message*/, WPARAM /*wParam*/,
                                     LPARAM /*lParam*/) {
  return FALSE;
}

// Only what has a caption belongs to another window; the others are windows of the task bar.
HWND OwnerOf(DialogFrame frame, HWND owner) {
  return frame == DialogFrame::Captioned && IsWindowVisible(owner) != FALSE ? owner : nullptr;
}

// From the resource of that number in the program.
HWND MakeWindow(const DialogTemplate& dialogTemplate, HWND owner) {
  for (const DialogControl& control : dialogTemplate.controls) {
    if (control.kind == ControlKind::Custom) RegisterClassOf(control);
  }
  return CreateDialogParamW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(dialogTemplate.id),
                            OwnerOf(dialogTemplate.frame, owner), &LeaveAllToTheObject, 0);
}

// All of the window is the dialog's to draw, the line around it, too. It keeps the template's size.
void TakeBorder(HWND window) {
  RECT client{};
  GetClientRect(window, &client);
  SetWindowLongPtrW(window, GWL_STYLE, GetWindowLongPtrW(window, GWL_STYLE) & ~WS_BORDER);
  SetWindowPos(window, nullptr, 0, 0, client.right, client.bottom,
               SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE | SWP_FRAMECHANGED);
}

std::unique_ptr<DialogWindow> Attach(Dialog& dialog, DialogFrame frame, HWND handle) {
  if (frame != DialogFrame::Captioned) TakeBorder(handle);
  switch (frame) {
    case DialogFrame::Layered:
      return std::make_unique<LayeredWindow>(dialog, handle);
    case DialogFrame::Skinned:
      return std::make_unique<SkinnedWindow>(dialog, handle);
    case DialogFrame::Captioned:
      break;
  }
  return std::make_unique<CaptionedWindow>(dialog, handle);
}

DialogWindow* WindowOf(Dialog& dialog) {
  return static_cast<DialogWindow*>(dialog.Native().native);
}

void FocusFirstControl(HWND dialog) {
  const HWND first = GetNextDlgTabItem(dialog, nullptr, FALSE);
  SetFocus(first != nullptr ? first : dialog);
}

}  // namespace

std::int32_t Dialog::DoModal(WindowHandle owner) {
  if (Native().native != nullptr) return kIdCancel;
  result_ = kIdCancel;
  const HWND handle = MakeWindow(template_, ToNative(owner));
  if (handle == nullptr) return kIdCancel;
  std::optional<OwnerDisabled> ownerDisabled(ToNative(owner));
  const std::unique_ptr<DialogWindow> window = Attach(*this, template_.frame, handle);
  window->PlaceBeforeInit();
  std::vector<std::unique_ptr<ControlWindow>> controls;
  for (const DialogControl& control : template_.controls) {
    const auto bound = bound_.find(control.id);
    if (bound == bound_.end() || bound->second->Native().native != nullptr) continue;
    controls.push_back(std::make_unique<ControlWindow>(
        *bound->second, GetDlgItem(handle, control.id), *window, control.kind));
  }
  WindowAccess::PreSubclass(*this);
  for (const auto& control : controls) WindowAccess::PreSubclass(control->Target());
  Send(message::kInitDialog, 0, 0);
  if (!window->HasEnded()) {
    window->PlaceBeforeShow();
    window->Show(ShowCommand::Normal);
    FocusFirstControl(handle);
    window->RunModal();
  }
  // The system activates the owner in the place of the window that goes, if it can.
  ownerDisabled.reset();
  DestroyWindow(handle);
  return result_;
}

void Dialog::EndDialog(std::int32_t result) {
  DialogWindow* window = WindowOf(*this);
  if (window == nullptr || window->HasEnded()) return;
  result_ = result;
  window->End();
}

void Dialog::UpdateLayered(const Bitmap& content) {
  if (auto* window = dynamic_cast<LayeredWindow*>(Native().native)) window->SetContent(content);
}

void Dialog::AppendSystemMenuSeparator() {
  if (Handle() == 0) return;
  AppendMenuW(GetSystemMenu(ToNative(Handle()), FALSE), MF_SEPARATOR, 0, nullptr);
}

void Dialog::AppendSystemMenuItem(std::uint16_t command, std::u16string_view text) {
  if (Handle() == 0) return;
  AppendMenuW(GetSystemMenu(ToNative(Handle()), FALSE), MF_STRING, command, ToWide(text).c_str());
}

// A menu that is asked for an answer sends nothing by itself.
void Dialog::TrackSystemMenu(Point screen) {
  if (Handle() == 0) return;
  const HWND window = ToNative(Handle());
  const BOOL chosen =
      ::TrackPopupMenu(GetSystemMenu(window, FALSE), TPM_RIGHTBUTTON | TPM_RETURNCMD, screen.x,
                       screen.y, 0, window, nullptr);
  if (chosen == 0) return;
  PostToWindow(Handle(), message::kSystemCommand, static_cast<WParam>(chosen),
               PointToLParam(screen));
}

void Dialog::TrackPopupMenu(const PopupMenu& menu, Point screen) {
  if (Handle() == 0) return;
  const HMENU bar = LoadMenuW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(menu.id));
  ::TrackPopupMenu(GetSubMenu(bar, 0), TPM_LEFTALIGN | TPM_RIGHTBUTTON, screen.x, screen.y, 0,
                   ToNative(Handle()), nullptr);
  DestroyMenu(bar);
}

}  // namespace platform
