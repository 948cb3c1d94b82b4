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

QWidget* Titled(std::u16string_view title) {
  for (QWidget* window : QApplication::topLevelWidgets()) {
    if (window->isVisible() && window->windowTitle() == QStringView(title)) return window;
  }
  return nullptr;
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

std::optional<platform::Size> ClientSizeOf(std::u16string_view title) {
  const QWidget* window = Titled(title);
  if (window == nullptr) return std::nullopt;
  return platform::Size{window->width(), window->height()};
}

void Close(std::u16string_view title) {
  Titled(title)->close();
}

}  // namespace ui
