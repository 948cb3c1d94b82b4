#include "platform/linux/windows/skinned_window.h"

#include <QPaintEvent>
#include <QPainter>
#include <utility>

#include "platform/linux/drawing/drawing_impl.h"

namespace platform {
namespace {

constexpr Argb kBorderColor = 0xFF646464;

}  // namespace

SkinnedWindow::SkinnedWindow(Window& window, std::uint16_t id)
    : DialogWindow(window, nullptr,
                   Qt::Window | Qt::FramelessWindowHint | Qt::WindowSystemMenuHint |
                       Qt::WindowMinimizeButtonHint | Qt::WindowCloseButtonHint,
                   id) {
  setAttribute(Qt::WA_OpaquePaintEvent);
  setAttribute(Qt::WA_NoSystemBackground);
}

void SkinnedWindow::EraseBackground() {
  if (!background_ || background_->Width() != width() || background_->Height() != height()) {
    background_ = std::make_unique<Bitmap>(width(), height(), PixelFormat::PremultipliedArgb32);
  }
  Graphics graphics(*background_);
  Deliver(message::kEraseBackground, reinterpret_cast<WParam>(&graphics), 0);
}

void SkinnedWindow::paintEvent(QPaintEvent* event) {
  EraseIfPending();
  {
    QPainter painter(this);
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    if (background_) painter.drawImage(0, 0, background_->Native().image);
  }
  DialogWindow::paintEvent(event);
  QPainter painter(this);
  painter.setPen(ToColor(kBorderColor));
  painter.drawRect(0, 0, width() - 1, height() - 1);
}

void SkinnedWindow::resizeEvent(QResizeEvent*) {
  Invalidate(Erase::Yes);
  TellWhatIsReached();
}

// A dialog that changes its height uncovers controls or leaves them outside. What the event says of
// the size before need not be true where the window manager answers late.
void SkinnedWindow::TellWhatIsReached() {
  const QRect before = std::exchange(reached_, rect());
  for (const QObject* child : children()) {
    const auto* control = dynamic_cast<const NativeWindow*>(child);
    if (control == nullptr) continue;
    const QRect place = control->geometry();
    if (before.intersects(place) == rect().intersects(place)) continue;
    NotifyAccessible(control->Target(), AccessibleChange::Visibility);
  }
}

}  // namespace platform
