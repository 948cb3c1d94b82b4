#include "platform/linux/windows/layered_window.h"

#include <QBitmap>
#include <QPaintEvent>
#include <QPainter>
#include <QShowEvent>
#include <utility>

#include "platform/linux/windows/x11.h"

namespace platform {
namespace {

// One bit for each pixel whose alpha reaches `threshold`, eight to a byte, rows filled up.
std::vector<uchar> ShapeOf(const QImage& content, uint threshold) {
  const int whole = content.width() / 8;
  const int rest = content.width() % 8;
  const int stride = whole + (rest != 0 ? 1 : 0);
  std::vector<uchar> shape(static_cast<std::size_t>(stride * content.height()));
  uchar* next = shape.data();
  const auto pack = [threshold](const QRgb* pixels, int count) {
    uint bits = 0;
    for (int i = 0; i < count; ++i) bits |= static_cast<uint>(pixels[i] >> 24U >= threshold) << i;
    return static_cast<uchar>(bits);
  };
  for (int y = 0; y < content.height(); ++y) {
    const auto* pixels = reinterpret_cast<const QRgb*>(content.constScanLine(y));
    for (int byte = 0; byte < whole; ++byte, pixels += 8) *next++ = pack(pixels, 8);
    if (rest != 0) *next++ = pack(pixels, rest);
  }
  return shape;
}

}  // namespace

LayeredWindow::LayeredWindow(Window& window, std::uint16_t id)
    : DialogWindow(window, nullptr,
                   Qt::Window | Qt::FramelessWindowHint | Qt::WindowSystemMenuHint |
                       Qt::WindowMinimizeButtonHint | Qt::WindowCloseButtonHint,
                   id) {
  setAttribute(Qt::WA_TranslucentBackground);
  setAttribute(Qt::WA_NoSystemBackground);
}

void LayeredWindow::SetContent(const QImage& content) {
  // The picture of a window that nobody touches is the same every second. Leaving it on the screen
  // spares the display server the copy and the compositor a whole frame.
  const bool onScreen = isVisible() && !IsInvalid() && content == content_;
  content_ = content;
  if (content_.size() != size()) SetSize(content_.size());
  FollowShape();
  if (isVisible() && !onScreen) {
    repaint();
  } else {
    Validate();
  }
}

// Where nothing is to be seen, the window is not there for the pointer either. Without a compositor
// the shape is all there is of the transparency.
void LayeredWindow::FollowShape() {
  const uint threshold = x11::CompositorRuns() ? 1 : 128;
  std::vector<uchar> shape = ShapeOf(content_, threshold);
  if (shape == shape_ && content_.size() == shapeSize_) return;
  shape_ = std::move(shape);
  shapeSize_ = content_.size();
  setMask(QBitmap::fromData(content_.size(), shape_.data(), QImage::Format_MonoLSB));
}

// Appears with its newest picture.
void LayeredWindow::showEvent(QShowEvent*) {
  if (IsInvalid()) SendPaint();
}

void LayeredWindow::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setCompositionMode(QPainter::CompositionMode_Source);
  painter.drawImage(0, 0, content_);
}

}  // namespace platform
