// A window without a caption whose dialog draws its whole client area.
#pragma once

#include <memory>

#include "platform/windows/windows/dialog_window.h"

namespace platform {

class SkinnedWindow : public DialogWindow {
 public:
  using DialogWindow::DialogWindow;

  // On the screen with its full height, whatever it shrinks to before it is shown.
  void PlaceBeforeInit() override { Centre(nullptr); }
  const Bitmap* Picture() const override { return picture_.get(); }

 protected:
  LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;
  void Erase() override;
  void DrawBeneath(Graphics& graphics) override;
  void DrawAbove(Graphics& graphics) override;
  void Keep(std::unique_ptr<Bitmap> picture) override;

 private:
  void TellWhatIsReached();

  // The erased background of the client area; every paint begins with it.
  std::unique_ptr<Bitmap> background_;
  std::unique_ptr<Bitmap> picture_;  // the whole, as it was painted last
  RECT reached_{};                   // the client area at the last look
};

}  // namespace platform
