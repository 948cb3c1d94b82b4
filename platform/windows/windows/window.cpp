#include "platform/window.h"

#include "platform/windows/drawing/drawing_impl.h"
#include "platform/windows/wide_text.h"
#include "platform/windows/windows/native_window.h"
#include "platform/windows/windows/window_icon.h"

namespace platform {
namespace {

HWND HandleOf(const Window& window) {
  const NativeWindow* native = window.Native().native;
  return native != nullptr ? native->Handle() : nullptr;
}

Rect ToRect(const RECT& rect) {
  return {rect.left, rect.top, rect.right, rect.bottom};
}

bool IsControl(HWND window) {
  return (GetWindowLongW(window, GWL_STYLE) & WS_CHILD) != 0;
}

}  // namespace

bool PostToWindow(WindowHandle window, std::uint32_t message, WParam wParam, LParam lParam) {
  return window != 0 && PostMessageW(ToNative(window), message, wParam, lParam) != FALSE;
}

LResult SendToWindow(WindowHandle window, std::uint32_t message, WParam wParam, LParam lParam) {
  NativeWindow* native = NativeWindow::Find(ToNative(window));
  return native != nullptr ? native->Deliver(message, wParam, lParam) : 0;
}

Rect WindowRectOf(WindowHandle window) {
  RECT rect{};
  GetWindowRect(ToNative(window), &rect);
  return ToRect(rect);
}

Window::~Window() = default;

WindowHandle Window::Handle() const {
  return reinterpret_cast<WindowHandle>(HandleOf(*this));
}

WindowHandle Window::Parent() const {
  const HWND window = HandleOf(*this);
  return IsControl(window) ? reinterpret_cast<WindowHandle>(GetParent(window)) : 0;
}

std::uint16_t Window::ControlId() const {
  return static_cast<std::uint16_t>(GetDlgCtrlID(HandleOf(*this)));
}

Rect Window::ClientRect() const {
  RECT rect{};
  GetClientRect(HandleOf(*this), &rect);
  return ToRect(rect);
}

Rect Window::WindowRect() const {
  return WindowRectOf(Handle());
}

Point Window::ClientToScreen(Point client) const {
  POINT point{client.x, client.y};
  ::ClientToScreen(HandleOf(*this), &point);
  return {point.x, point.y};
}

void Window::Resize(Size size) {
  SetWindowPos(HandleOf(*this), nullptr, 0, 0, size.width, size.height,
               SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
}

void Window::Show(ShowCommand command) {
  if (impl_->native != nullptr) impl_->native->Show(command);
}

bool Window::IsVisible() const {
  return IsWindowVisible(HandleOf(*this)) != FALSE;
}

bool Window::IsMinimized() const {
  return IsIconic(HandleOf(*this)) != FALSE;
}

void Window::SetText(std::u16string_view text) {
  const HWND window = HandleOf(*this);
  if (window == nullptr) return;
  SetWindowTextW(window, ToWide(text).c_str());
  if (!IsControl(window)) return;
  Invalidate(Erase::Yes);
  NotifyAccessible(*this, AccessibleChange::Name);
}

std::u16string Window::Text() const {
  const HWND window = HandleOf(*this);
  std::wstring text(static_cast<std::size_t>(GetWindowTextLengthW(window)) + 1, L'\0');
  text.resize(
      static_cast<std::size_t>(GetWindowTextW(window, text.data(), static_cast<int>(text.size()))));
  return FromWide(text);
}

void Window::Enable(bool enabled) {
  if (impl_->native == nullptr || IsEnabled() == enabled) return;
  EnableWindow(HandleOf(*this), enabled ? TRUE : FALSE);
  Invalidate(Erase::No);
  NotifyAccessible(*this, AccessibleChange::Enabling);
}

bool Window::IsEnabled() const {
  return IsWindowEnabled(HandleOf(*this)) != FALSE;
}

// Without a window the system would take every window of the screen.
void Window::Invalidate(Erase erase) {
  const HWND window = HandleOf(*this);
  if (window != nullptr) InvalidateRect(window, nullptr, erase == Erase::Yes ? TRUE : FALSE);
}

void Window::Update() {
  const HWND window = HandleOf(*this);
  if (window != nullptr) UpdateWindow(window);
}

void Window::CaptureMouse() {
  if (impl_->native != nullptr) SetCapture(HandleOf(*this));
}

void Window::ReleaseMouse() {
  if (impl_->native != nullptr && GetCapture() == HandleOf(*this)) ReleaseCapture();
}

void Window::StartTimer(std::uint32_t id, std::uint32_t milliseconds) {
  if (impl_->native != nullptr) SetTimer(HandleOf(*this), id, milliseconds, nullptr);
}

void Window::StopTimer(std::uint32_t id) {
  if (impl_->native != nullptr) KillTimer(HandleOf(*this), id);
}

void Window::SetIcon(std::uint16_t iconResource) {
  if (impl_->native == nullptr) return;
  for (const WindowIconSize size : {WindowIconSize::Big, WindowIconSize::Small}) {
    SendMessageW(HandleOf(*this), WM_SETICON, size == WindowIconSize::Big ? ICON_BIG : ICON_SMALL,
                 reinterpret_cast<LPARAM>(LoadWindowIcon(iconResource, size)));
  }
}

PaintContext::PaintContext(Window& window) {
  NativeWindow* native = window.Native().native;
  Bitmap* surface = native != nullptr ? native->Surface() : nullptr;
  graphics_ = surface != nullptr ? std::make_unique<Graphics>(*surface)
                                 : std::make_unique<Graphics>(std::make_unique<Graphics::Impl>());
}

void Button::DoDefaultAction(std::int32_t /*part*/) {
  SendToWindow(Parent(), message::kCommand, MakeWParam(ControlId(), kNotifyClicked),
               static_cast<LParam>(Handle()));
}

// The system's button, which draws nothing by itself, finds out what is a click.
LResult Button::WindowProc(std::uint32_t message, WParam wParam, LParam lParam) {
  if (message != message::kPaint) return Window::WindowProc(message, wParam, lParam);
  PaintContext context(*this);
  DrawItem(context.Surface(), ClientRect());
  return 0;
}

}  // namespace platform
