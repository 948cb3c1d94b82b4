#include "platform/window.h"

#include "platform/linux/drawing/drawing_impl.h"
#include "platform/linux/windows/application.h"
#include "platform/linux/windows/control_window.h"
#include "platform/linux/windows/dialog_window.h"
#include "platform/linux/windows/native_window.h"
#include "platform/linux/windows/window_icon.h"

namespace platform {

Window::~Window() {
  delete impl_->native;
}

WindowHandle Window::Handle() const {
  return impl_->native ? impl_->native->Handle() : 0;
}

WindowHandle Window::Parent() const {
  const NativeWindow* dialog = impl_->native ? impl_->native->OwningDialog() : nullptr;
  return dialog ? dialog->Handle() : 0;
}

std::uint16_t Window::ControlId() const {
  return impl_->native ? impl_->native->Id() : 0;
}

Rect Window::ClientRect() const {
  if (!impl_->native) return {};
  return {0, 0, impl_->native->width(), impl_->native->height()};
}

Rect Window::WindowRect() const {
  if (!impl_->native) return {};
  const NativeWindow& native = *impl_->native;
  const QRect rect = native.isWindow() ? native.frameGeometry()
                                       : QRect(native.mapToGlobal(QPoint(0, 0)), native.size());
  return {rect.left(), rect.top(), rect.left() + rect.width(), rect.top() + rect.height()};
}

Point Window::ClientToScreen(Point client) const {
  if (!impl_->native) return client;
  const QPoint screen = impl_->native->mapToGlobal(QPoint(client.x, client.y));
  return {screen.x(), screen.y()};
}

void Window::Resize(Size size) {
  if (impl_->native) impl_->native->SetSize(QSize(size.width, size.height));
}

void Window::Show(ShowCommand command) {
  if (!impl_->native) return;
  auto* dialog = dynamic_cast<DialogWindow*>(impl_->native);
  if (command == ShowCommand::Hide) {
    impl_->native->hide();
  } else if (dialog == nullptr) {
    impl_->native->show();
  } else if (command == ShowCommand::Minimize) {
    dialog->showMinimized();
  } else {
    dialog->ShowActive();
  }
}

bool Window::IsVisible() const {
  return impl_->native && impl_->native->isVisible();
}
bool Window::IsMinimized() const {
  return impl_->native && impl_->native->isMinimized();
}

void Window::SetText(std::u16string_view text) {
  if (impl_->native) impl_->native->SetText(text);
}

std::u16string Window::Text() const {
  return impl_->native ? impl_->native->Text() : std::u16string();
}

void Window::Enable(bool enabled) {
  if (impl_->native) impl_->native->SetAcceptsInput(enabled);
}

bool Window::IsEnabled() const {
  return impl_->native && impl_->native->AcceptsInput();
}

void Window::Invalidate(Erase erase) {
  if (impl_->native) impl_->native->Invalidate(erase);
}

void Window::Update() {
  if (impl_->native) impl_->native->PaintIfInvalid();
}

void Window::CaptureMouse() {
  if (impl_->native) Application::Current()->Mouse().Capture(Handle());
}

void Window::ReleaseMouse() {
  if (!impl_->native) return;
  MouseRouter& mouse = Application::Current()->Mouse();
  if (mouse.Captured() == Handle()) mouse.ReleaseCapture();
}

void Window::StartTimer(std::uint32_t id, std::uint32_t milliseconds) {
  if (impl_->native) impl_->native->StartMessageTimer(id, milliseconds);
}

void Window::StopTimer(std::uint32_t id) {
  if (impl_->native) impl_->native->StopMessageTimer(id);
}

void Window::SetIcon(std::uint16_t iconResource) {
  if (impl_->native) impl_->native->setWindowIcon(LoadWindowIcon(iconResource));
}

PaintContext::PaintContext(Window& window) {
  NativeWindow* native = window.Native().native;
  QPaintDevice* surface = native ? native->Surface() : nullptr;
  graphics_ = std::make_unique<Graphics>(surface ? std::make_unique<Graphics::Impl>(surface)
                                                 : std::make_unique<Graphics::Impl>());
}

void Button::DoDefaultAction(std::int32_t /*part*/) {
  NotifyClicked(*this);
}

LResult Button::WindowProc(std::uint32_t message, WParam wParam, LParam lParam) {
  switch (message) {
    case message::kPaint: {
      PaintContext context(*this);
      DrawItem(context.Surface(), ClientRect());
      return 0;
    }
    case message::kLeftButtonDown:
      CaptureMouse();
      return 0;
    case message::kLeftButtonUp: {
      const bool pressed = Application::Current()->Mouse().Captured() == Handle();
      ReleaseMouse();
      const Point point = PointFromLParam(lParam);
      const Rect client = ClientRect();
      const bool inside =
          point.x >= 0 && point.y >= 0 && point.x < client.right && point.y < client.bottom;
      if (pressed && inside) NotifyClicked(*this);
      return 0;
    }
    default:
      return Window::WindowProc(message, wParam, lParam);
  }
}

}  // namespace platform
