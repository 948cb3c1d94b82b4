// A window that is nothing but a picture with transparency.
#pragma once

#include <cstdint>
#include <vector>

#include "platform/windows/windows/dialog_window.h"

namespace platform {

class LayeredWindow : public DialogWindow {
 public:
  using DialogWindow::DialogWindow;

  // The whole picture; on the screen when it returns, if the window is.
  void SetContent(const Bitmap& content);
  void PlaceBeforeShow() override { Centre(nullptr); }
  void Show(ShowCommand command) override;

 protected:
  LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;
  void Paint(HDC context) override;

 private:
  // What the system was given last.
  SIZE size_{};
  std::vector<std::uint32_t> pixels_;
};

}  // namespace platform
