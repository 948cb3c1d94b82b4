// The user-interface session and what the desktop offers: boxes, file dialogs, the browser.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "platform/single_instance.h"
#include "platform/window_messages.h"

namespace platform {

// Joins the process to the desktop; windows, drawing and boxes need one session alive. Made once,
// on the thread that becomes the user-interface thread. While it lives it answers the second
// copy's wish to bring a window forward.
class UserInterfaceSession {
 public:
  struct Impl;

  explicit UserInterfaceSession(SingleInstance& singleInstance);
  ~UserInterfaceSession();
  UserInterfaceSession(const UserInterfaceSession&) = delete;
  UserInterfaceSession& operator=(const UserInterfaceSession&) = delete;

 private:
  std::unique_ptr<Impl> impl_;
};

enum class MessageBoxKind {
  SystemError,    // OK only, error icon, above all windows, brought to the front
  Exclamation,    // OK only, exclamation icon
  YesNoDefaultNo  // Yes and No, question icon, No is default; Escape and close do nothing
};

// Modal to `owner`, or to nothing when it is 0. kIdOk, kIdYes or kIdNo.
std::int32_t ShowMessageBox(WindowHandle owner, std::u16string_view text,
                            std::u16string_view caption, MessageBoxKind kind);

// The active window of this program; without one the shown window that was made last, else 0.
WindowHandle ActiveWindow();

enum class FileDialogKind { Open, Save };

// `filter` has the form "Name|*.ext|Name|*.*||". The filter's extension, else
// `defaultExtension` (with or without its dot) is appended to a typed name that has none, for
// opening only when there is no file of the bare name. The save dialog asks before it overwrites.
// Nothing when the user cancelled.
std::optional<std::u16string> ShowFileDialog(WindowHandle owner, FileDialogKind kind,
                                             std::u16string_view defaultExtension,
                                             std::u16string_view filter);

// The shell's "open" verb on a web location; failures are silent.
void OpenInBrowser(std::u16string_view location);

}  // namespace platform
