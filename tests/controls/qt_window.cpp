// The visible window by the toolkit.
#include <QApplication>
#include <QBuffer>
#include <QIcon>
#include <QMouseEvent>
#include <QScreen>
#include <QWidget>
#include <QWindow>
#include <stdexcept>

#include "tests/controls/picture.h"

namespace ui {
namespace {

QWidget& VisibleWindow() {
  for (QWidget* window : QApplication::topLevelWidgets()) {
    if (window->isVisible()) return *window;
  }
  throw std::runtime_error("no window is visible");
}

}  // namespace

void Settle() {
  for (int round = 0; round < 3; ++round) QCoreApplication::processEvents();
}

platform::Bitmap WindowPicture(const platform::Rect& area) {
  QByteArray png;
  QBuffer buffer(&png);
  QGuiApplication::primaryScreen()
      ->grabWindow(VisibleWindow().winId(), area.left, area.top, area.Width(), area.Height())
      .save(&buffer, "PNG", 100);
  return platform::Bitmap::FromPng(
             std::as_bytes(std::span(png.constData(), std::size_t(png.size()))))
      .value();
}

void Use(Mouse mouse, platform::Point client) {
  constexpr QEvent::Type kTypes[] = {QEvent::MouseButtonPress, QEvent::MouseMove,
                                     QEvent::MouseButtonRelease};
  const QPointF place(client.x, client.y);
  QWidget& window = VisibleWindow();
  QMouseEvent event(kTypes[static_cast<int>(mouse)], place, window.mapToGlobal(place),
                    mouse == Mouse::Move ? Qt::NoButton : Qt::LeftButton,
                    mouse == Mouse::Release ? Qt::NoButton : Qt::LeftButton, Qt::NoModifier);
  QCoreApplication::sendEvent(window.windowHandle(), &event);
  Settle();
}

bool VisibleWindowHasIcon() {
  return !VisibleWindow().windowIcon().isNull();
}

}  // namespace ui
