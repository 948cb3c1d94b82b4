// A window that is nothing but a picture with transparency.
#pragma once

#include <QImage>
#include <vector>

#include "platform/linux/windows/dialog_window.h"

namespace platform {

class LayeredWindow : public DialogWindow {
 public:
  LayeredWindow(Window& window, std::uint16_t id);

  // The whole picture; on the screen when it returns.
  void SetContent(const QImage& content);
  void PlaceBeforeShow() override { Centre(Placement::OnScreen); }

 protected:
  void paintEvent(QPaintEvent* event) override;
  void showEvent(QShowEvent* event) override;
  void PaintNow() override { SendPaint(); }

 private:
  void FollowShape();

  QImage content_;
  std::vector<uchar> shape_;  // one bit for each pixel
  QSize shapeSize_;
};

}  // namespace platform
