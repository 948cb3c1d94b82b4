// The visible window by the system.
#include <windows.h>

#include <stdexcept>
#include <vector>

#include "platform/window_messages.h"
#include "platform/windows/wide_text.h"
#include "tests/controls/picture.h"

namespace ui {
namespace {

HWND VisibleWindow() {
  HWND found = nullptr;
  const auto take = [](HWND window, LPARAM result) -> BOOL {
    if (IsWindowVisible(window) == FALSE) return TRUE;
    *reinterpret_cast<HWND*>(result) = window;
    return FALSE;
  };
  EnumThreadWindows(GetCurrentThreadId(), take, reinterpret_cast<LPARAM>(&found));
  if (found == nullptr) throw std::runtime_error("no window is visible");
  return found;
}

HWND Titled(std::u16string_view title) {
  const HWND window = FindWindowW(nullptr, platform::ToWide(title).c_str());
  return IsWindowVisible(window) != FALSE ? window : nullptr;
}

}  // namespace

void Settle() {
  MSG message;
  for (int round = 0; round < 3; ++round) {
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) != FALSE) DispatchMessageW(&message);
  }
}

platform::Bitmap WindowPicture(const platform::Rect& area) {
  // A layered window's own context does not have what it shows.
  const HWND window = VisibleWindow();
  const bool isLayered = (GetWindowLongW(window, GWL_EXSTYLE) & WS_EX_LAYERED) != 0;
  const HWND shown = isLayered ? nullptr : window;
  const HDC context = GetDC(shown);
  POINT corner{area.left, area.top};
  if (isLayered) {
    ClientToScreen(window, &corner);
    constexpr DWORD kMillisecondsOfADisplay = 150;
    Sleep(kMillisecondsOfADisplay);
  }
  const HDC memory = CreateCompatibleDC(context);
  BITMAPINFO info{};
  info.bmiHeader = {
      sizeof(info.bmiHeader), area.Width(), -area.Height(), 1, 32, BI_RGB, 0, 0, 0, 0, 0};
  void* bits = nullptr;
  const HBITMAP bitmap = CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
  const HGDIOBJ before = SelectObject(memory, bitmap);
  BitBlt(memory, 0, 0, area.Width(), area.Height(), context, corner.x, corner.y, SRCCOPY);
  GdiFlush();
  platform::Bitmap picture = Solid({area.Width(), area.Height()}, 0);
  const auto* pixel = static_cast<const std::uint32_t*>(bits);
  for (std::int32_t i = 0; i < area.Width() * area.Height(); ++i) {
    picture.SetPixel(i % area.Width(), i / area.Width(), pixel[i] | 0xFF000000U);
  }
  SelectObject(memory, before);
  DeleteObject(bitmap);
  DeleteDC(memory);
  ReleaseDC(shown, context);
  return picture;
}

void Use(Mouse mouse, platform::Point client) {
  constexpr UINT kMessages[] = {WM_LBUTTONDOWN, WM_MOUSEMOVE, WM_LBUTTONUP};
  POINT place{client.x, client.y};
  const HWND window = VisibleWindow();
  const HWND target = GetCapture() != nullptr
                          ? GetCapture()
                          : ChildWindowFromPointEx(window, place, CWP_SKIPINVISIBLE);
  MapWindowPoints(window, target, &place, 1);
  SendMessageW(target, kMessages[static_cast<int>(mouse)], mouse == Mouse::Release ? 0 : MK_LBUTTON,
               platform::PointToLParam({place.x, place.y}));
  Settle();
}

bool VisibleWindowHasIcon() {
  return SendMessageW(VisibleWindow(), WM_GETICON, ICON_BIG, 0) != 0;
}

std::optional<platform::Size> ClientSizeOf(std::u16string_view title) {
  const HWND window = Titled(title);
  if (window == nullptr) return std::nullopt;
  RECT client{};
  GetClientRect(window, &client);
  return platform::Size{client.right, client.bottom};
}

void Close(std::u16string_view title) {
  PostMessageW(Titled(title), WM_CLOSE, 0, 0);
}

}  // namespace ui
