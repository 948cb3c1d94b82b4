#include "platform/linux/windows/reduced_painting.h"

#include <QCoreApplication>
#include <QEvent>
#include <QPainter>

namespace platform {

ReducedPainting::ReducedPainting() {
  QCoreApplication::instance()->installEventFilter(this);
}

bool ReducedPainting::eventFilter(QObject* watched, QEvent* event) {
  const bool paints = event->type() == QEvent::Paint;
  if ((!paints && event->type() != QEvent::UpdateRequest) || phase_ == Phase::Rendering ||
      !watched->isWidgetType()) {
    return false;
  }
  auto& widget = static_cast<QWidget&>(*watched);
  QWidget& window = *widget.window();
  if (window.devicePixelRatioF() >= 1.0) return false;
  if (paints) {
    DrawPicture(widget, window);
    // Painted on its own account: what is new shows with the next picture of the whole.
    if (phase_ == Phase::Idle) window.update();
    return true;
  }
  if (phase_ == Phase::Showing || !widget.isWindow()) return false;
  Refresh(window, *event);
  return true;
}

void ReducedPainting::Refresh(QWidget& window, QEvent& request) {
  if (!pictures_.contains(&window)) {
    connect(&window, &QObject::destroyed, this, [this, &window] { pictures_.erase(&window); });
  }
  QImage& picture = pictures_[&window];
  if (picture.size() != window.size()) {
    picture = QImage(window.size(), QImage::Format_ARGB32_Premultiplied);
  }
  picture.fill(Qt::transparent);
  phase_ = Phase::Rendering;
  window.render(&picture);
  phase_ = Phase::Showing;
  window.update();
  QCoreApplication::sendEvent(&window, &request);
  phase_ = Phase::Idle;
}

// The painter does not reduce the widget's place in the window either.
void ReducedPainting::DrawPicture(QWidget& widget, const QWidget& window) const {
  const auto picture = pictures_.find(&window);
  if (picture == pictures_.end()) return;
  const QPoint origin = -widget.mapTo(&window, QPoint());
  QPainter painter(&widget);
  painter.setCompositionMode(QPainter::CompositionMode_Source);
  painter.setRenderHint(QPainter::SmoothPixmapTransform);
  painter.drawImage(QRectF(origin, QSizeF(window.size()) * window.devicePixelRatioF()),
                    picture->second);
}

}  // namespace platform
