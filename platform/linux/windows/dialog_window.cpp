#include "platform/linux/windows/dialog_window.h"

#include <QCloseEvent>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QMenu>
#include <QScreen>
#include <algorithm>
#include <utility>

#include "platform/linux/windows/application.h"
#include "platform/linux/windows/menus.h"
#include "platform/linux/windows/qt_text.h"
#include "platform/linux/windows/window_table.h"

namespace platform {

DialogWindow::DialogWindow(Window& window, QWidget* owner, Qt::WindowFlags flags, std::uint16_t id)
    : NativeWindow(window, owner, flags, id) {}

void DialogWindow::RunModal() {
  if (!ended_) loop_.exec();
}

void DialogWindow::End() {
  ended_ = true;
  loop_.quit();
}

void DialogWindow::ShowActive() {
  // The window manager keeps the place of a window that says where it wants to be.
  if (testAttribute(Qt::WA_Moved)) move(pos());
  showNormal();
  raise();
  activateWindow();
}

void DialogWindow::Centre(Placement placement) {
  const QScreen* screen = QGuiApplication::primaryScreen();
  const QRect available = screen != nullptr ? screen->availableGeometry() : QRect(0, 0, 640, 480);
  const QWidget* owner = parentWidget();
  const bool onOwner = placement == Placement::OnOwner && owner != nullptr && owner->isVisible();
  const QPoint centre = onOwner ? owner->geometry().center() : available.center();
  const QPoint wanted = centre - QPoint(width() / 2, height() / 2);
  // A window larger than the screen still shows its top with the buttons that close it.
  move(std::max(available.left(), std::min(wanted.x(), available.right() + 1 - width())),
       std::max(available.top(), std::min(wanted.y(), available.bottom() + 1 - height())));
}

void DialogWindow::SetText(std::u16string_view text) {
  setWindowTitle(ToQString(text));
}

std::u16string DialogWindow::Text() const {
  return windowTitle().toStdU16String();
}

void DialogWindow::closeEvent(QCloseEvent* event) {
  event->ignore();
  Deliver(message::kClose, 0, 0);
}

void DialogWindow::keyPressEvent(QKeyEvent* event) {
  switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
      Deliver(message::kCommand, MakeWParam(kIdOk, kNotifyClicked), 0);
      break;
    case Qt::Key_Escape:
      Deliver(message::kCommand, MakeWParam(kIdCancel, kNotifyClicked), 0);
      break;
    default:
      NativeWindow::keyPressEvent(event);
  }
}

void DialogWindow::AppendSystemMenu(std::uint16_t command, std::u16string text) {
  systemMenu_.push_back({command, std::move(text)});
}

void DialogWindow::OpenSystemMenu(const QPoint& screen) {
  std::vector<MenuItem> items{{kSystemMinimize, u"Mi&nimize"}, {0, u""}, {kSystemClose, u"&Close"}};
  if (!windowFlags().testFlag(Qt::WindowMinimizeButtonHint))
    items.erase(items.begin(), items.begin() + 2);
  for (const SystemMenuEntry& entry : systemMenu_) items.push_back({entry.command, entry.text});
  if (const std::uint16_t command = RunPopupMenu(*this, items, screen)) {
    const LParam place = PointToLParam({screen.x(), screen.y()});
    PostToWindow(Handle(), message::kSystemCommand, command, place);
  }
}

void DialogWindow::OpenSystemMenuLater(const QPoint& screen) {
  Application::Current()->CallLater([handle = Handle(), screen] {
    auto* window = static_cast<DialogWindow*>(WindowTable::Instance().Find(handle));
    if (window != nullptr && !window->HasEnded()) window->OpenSystemMenu(screen);
  });
}

}  // namespace platform
