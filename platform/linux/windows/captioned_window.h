// A dialog in the desktop's own look, with the window manager's caption.
#pragma once

#include "platform/linux/windows/dialog_window.h"

namespace platform {

class CaptionedWindow : public DialogWindow {
 public:
  CaptionedWindow(Window& window, QWidget* owner, std::uint16_t id)
      : DialogWindow(window, owner,
                     Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                         Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint,
                     id) {
    setWindowModality(Qt::WindowModal);
  }

  void PlaceBeforeShow() override { Centre(Placement::OnOwner); }
};

}  // namespace platform
