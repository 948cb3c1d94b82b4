// A window without a caption whose dialog draws its whole client area.
#pragma once

#include <memory>

#include "platform/linux/windows/dialog_window.h"

namespace platform {

class SkinnedWindow : public DialogWindow {
 public:
  SkinnedWindow(Window& window, std::uint16_t id);

  // On the screen with its full height, whatever it shrinks to before it is shown.
  void PlaceWithTemplateSize() { Centre(Placement::OnScreen); }

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void EraseBackground() override;

 private:
  void TellWhatIsReached();

  // The erased background of the client area; every paint begins with it.
  std::unique_ptr<Bitmap> background_;
  QRect reached_;  // the client area at the last look
};

}  // namespace platform
