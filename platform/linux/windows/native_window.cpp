#include "platform/linux/windows/native_window.h"

#include <QCoreApplication>
#include <QMouseEvent>
#include <QTimerEvent>

#include "platform/linux/windows/application.h"
#include "platform/linux/windows/window_table.h"

namespace platform {
namespace {

bool IsInput(QEvent::Type type) {
  switch (type) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseMove:
    case QEvent::MouseButtonRelease:
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
    case QEvent::Close:
      return true;
    default:
      return false;
  }
}

}  // namespace

NativeWindow::NativeWindow(Window& window, QWidget* parent, Qt::WindowFlags flags, std::uint16_t id)
    : QWidget(parent, flags),
      window_(window),
      id_(id),
      handle_(WindowTable::Instance().Add(*this)) {
  window_.Native().native = this;
  setMouseTracking(true);
}

NativeWindow::~NativeWindow() {
  WindowTable::Instance().Remove(handle_);
  window_.Native().native = nullptr;
  MouseRouter& mouse = Application::Current()->Mouse();
  if (mouse.Captured() == handle_) mouse.ReleaseCapture();
}

LResult NativeWindow::Deliver(std::uint32_t message, WParam wParam, LParam lParam) {
  return WindowAccess::Deliver(window_, message, wParam, lParam);
}

void NativeWindow::Invalidate(Erase erase) {
  invalid_ = true;
  erasePending_ = erasePending_ || erase == Erase::Yes;
  Application::Current()->Paints().Add(handle_);
}

void NativeWindow::PaintIfInvalid() {
  if (invalid_ && !painting_ && isVisible() && !window()->isMinimized()) PaintNow();
}

void NativeWindow::EraseIfPending() {
  if (!erasePending_) return;
  erasePending_ = false;
  EraseBackground();
}

void NativeWindow::SendPaint() {
  invalid_ = false;
  EraseIfPending();
  Deliver(message::kPaint, 0, 0);
}

void NativeWindow::paintEvent(QPaintEvent*) {
  if (NativeWindow* parent = OwningDialog()) parent->EraseIfPending();
  painting_ = true;
  SendPaint();
  painting_ = false;
}

NativeWindow* NativeWindow::OwningDialog() const {
  return isWindow() ? nullptr : dynamic_cast<NativeWindow*>(parentWidget());
}

void NativeWindow::SetAcceptsInput(bool accepts) {
  if (acceptsInput_ == accepts) return;
  acceptsInput_ = accepts;
  Invalidate(Erase::No);
  NotifyAccessible(window_, AccessibleChange::Enabling);
}

void NativeWindow::StartMessageTimer(std::uint32_t id, std::uint32_t milliseconds) {
  timers_[id].start(static_cast<int>(milliseconds), this);
}

void NativeWindow::StopMessageTimer(std::uint32_t id) {
  timers_.erase(id);
}

void NativeWindow::timerEvent(QTimerEvent* event) {
  for (const auto& [id, timer] : timers_) {
    if (timer.timerId() != event->timerId()) continue;
    Deliver(message::kTimer, id, 0);
    return;
  }
  QWidget::timerEvent(event);
}

void NativeWindow::changeEvent(QEvent* event) {
  // What became invalid while the window was minimised is due when it is back.
  if (event->type() == QEvent::WindowStateChange && invalid_) {
    Application::Current()->Paints().Add(handle_);
  }
  // A compositor may give a window the focus and its workspace the screen, and yet show there only
  // what the window paints from then on.
  if (event->type() == QEvent::ActivationChange && isWindow() && isActiveWindow()) {
    update();
    for (QWidget* control : findChildren<QWidget*>()) control->update();
  }
  QWidget::changeEvent(event);
}

bool NativeWindow::event(QEvent* event) {
  if (event->type() == MessageEvent::EventType()) {
    const auto& posted = static_cast<const MessageEvent&>(*event);
    Deliver(posted.message, posted.wParam, posted.lParam);
    return true;
  }
  // A message that was posted before goes first.
  if (IsInput(event->type())) {
    QCoreApplication::sendPostedEvents(nullptr, MessageEvent::EventType());
  }
  return QWidget::event(event);
}

void NativeWindow::mousePressEvent(QMouseEvent* event) {
  Application::Current()->Mouse().Press(*this, *event);
}

// The second press of a double click is a press like any other.
void NativeWindow::mouseDoubleClickEvent(QMouseEvent* event) {
  mousePressEvent(event);
}

void NativeWindow::mouseMoveEvent(QMouseEvent* event) {
  Application::Current()->Mouse().Move(*this, *event);
}

void NativeWindow::mouseReleaseEvent(QMouseEvent* event) {
  Application::Current()->Mouse().Release(*this, *event);
}

}  // namespace platform
