// Dialogs made from templates and run modally.
#pragma once

#include <cstdint>
#include <map>
#include <string_view>

#include "platform/dialog_template.h"
#include "platform/window.h"

namespace platform {

class Dialog : public Window {
 public:
  // The template must outlive the dialog.
  explicit Dialog(const DialogTemplate& dialogTemplate);
  ~Dialog() override;

  // Makes the window and its controls, sends kInitDialog, shows the window unless the handler
  // ended the dialog, and runs a message loop until EndDialog. The owner, when given, is disabled
  // meanwhile. The window is destroyed before it returns.
  std::int32_t DoModal(WindowHandle owner = 0);
  void EndDialog(std::int32_t result);

  // The window's whole content, with per-pixel alpha; for layered templates. The window keeps its
  // place.
  void UpdateLayered(const Bitmap& content);

  // Appends to the system menu; chosen entries arrive as kSystemCommand with `command`.
  void AppendSystemMenuSeparator();
  void AppendSystemMenuItem(std::uint16_t command, std::u16string_view text);
  // Opens the system menu at a screen point.
  void TrackSystemMenu(Point screen);

  // Shows a popup menu at a screen point; the chosen entry arrives as kCommand.
  void TrackPopupMenu(const PopupMenu& menu, Point screen);

 protected:
  // Ties the control of the template with this id to an object (a member of the derived class);
  // called in the constructor. Template controls without an object are the system's own.
  void BindControl(std::uint16_t id, Window& control);

  // Enter and Escape (and the system's Close): end with kIdOk and kIdCancel unless overridden.
  virtual void OnOk() { EndDialog(kIdOk); }
  virtual void OnCancel() { EndDialog(kIdCancel); }

  LResult WindowProc(std::uint32_t message, WParam wParam, LParam lParam) override;
  AccessibleInfo DescribeAccessible(std::int32_t part) const override;

 private:
  const DialogTemplate& template_;
  std::map<std::uint16_t, Window*> bound_;
  std::int32_t result_ = 0;
};

}  // namespace platform
