#include "platform/windows/windows/native_window.h"

#include <commctrl.h>

#include <algorithm>
#include <utility>

#include "platform/windows/accessible/accessible_object.h"
#include "platform/windows/drawing/device_surface.h"

namespace platform {
namespace {

constexpr UINT_PTR kSubclass = 1;
// Where a window of the system keeps its own of these.
constexpr const wchar_t* kProperty = L"TonalyxWindow";

}  // namespace

NativeWindow::NativeWindow(Window& window, HWND handle) : window_(window), handle_(handle) {
  window_.Native().native = this;
  SetPropW(handle_, kProperty, this);
  SetWindowSubclass(handle_, &Procedure, kSubclass, reinterpret_cast<DWORD_PTR>(this));
}

NativeWindow::~NativeWindow() {
  Leave();
}

void NativeWindow::Leave() {
  if (window_.Native().native != this) return;
  RemoveWindowSubclass(handle_, &Procedure, kSubclass);
  RemovePropW(handle_, kProperty);
  window_.Native().native = nullptr;
}

NativeWindow* NativeWindow::Find(HWND handle) {
  return static_cast<NativeWindow*>(GetPropW(handle, kProperty));
}

LRESULT CALLBACK NativeWindow::Procedure(HWND handle, UINT message, WPARAM wParam, LPARAM lParam,
                                         UINT_PTR /*id*/, DWORD_PTR native) {
  auto& window = *reinterpret_cast<NativeWindow*>(native);  // NOLINT(performance-no-int-to-ptr)
  if (const auto answer = AnswerAssistiveTechnology(handle, message, wParam, lParam))
    return *answer;
  if (message != WM_NCDESTROY) return window.OnMessage(message, wParam, lParam);
  window.Leave();
  return DefSubclassProc(handle, message, wParam, lParam);
}

LResult NativeWindow::Deliver(std::uint32_t message, WParam wParam, LParam lParam) {
  return WindowAccess::Deliver(window_, message, wParam, lParam);
}

LRESULT NativeWindow::Default(UINT message, WPARAM wParam, LPARAM lParam) {
  return DefSubclassProc(handle_, message, wParam, lParam);
}

LRESULT NativeWindow::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_ERASEBKGND:
      Erase();
      return 1;
    case WM_PAINT:
      OnPaint();
      return 0;
    case WM_LBUTTONDBLCLK:
      return OnMessage(WM_LBUTTONDOWN, wParam, lParam);
    case WM_MOUSEMOVE:
    case WM_LBUTTONDOWN:
    case WM_LBUTTONUP:
      Deliver(message, wParam, lParam);
      return Default(message, wParam, lParam);
    case WM_TIMER:
    case BM_GETCHECK:
    case BM_SETCHECK:
      return Deliver(message, wParam, lParam);
    default:
      if (message > WM_USER && message < WM_APP) return Deliver(message, wParam, lParam);
      return Default(message, wParam, lParam);
  }
}

void NativeWindow::OnPaint() {
  PAINTSTRUCT paint;
  const HDC context = BeginPaint(handle_, &paint);
  Paint(context);
  EndPaint(handle_, &paint);
}

// The whole picture reaches the screen at once.
void NativeWindow::Paint(HDC context) {
  const Rect client = window_.ClientRect();
  surface_ = std::make_unique<Bitmap>(std::max(client.right, 1), std::max(client.bottom, 1),
                                      PixelFormat::PremultipliedArgb32);
  {
    Graphics graphics(*surface_);
    DrawBeneath(graphics);
  }
  Deliver(message::kPaint, 0, 0);
  std::unique_ptr<Bitmap> picture = std::move(surface_);
  {
    Graphics graphics(*picture);
    DrawAbove(graphics);
  }
  CopyToDevice(*picture, context);
  Keep(std::move(picture));
}

void NativeWindow::Show(ShowCommand command) {
  ShowWindow(handle_, command == ShowCommand::Hide ? SW_HIDE : SW_SHOWNA);
}

}  // namespace platform
