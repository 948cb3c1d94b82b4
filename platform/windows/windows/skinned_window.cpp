#include "platform/windows/windows/skinned_window.h"

#include <algorithm>
#include <utility>

namespace platform {
namespace {

constexpr Argb kBorderColor = 0xFF646464;

}  // namespace

LRESULT SkinnedWindow::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_NCHITTEST:
      return Deliver(message, wParam, lParam);
    case WM_SIZE:
      if (wParam != SIZE_MINIMIZED) {
        Target().Invalidate(platform::Erase::Yes);
        TellWhatIsReached();
      }
      return Default(message, wParam, lParam);
    case WM_NCLBUTTONDOWN: {
      const LRESULT result = Default(message, wParam, lParam);
      // Some systems show the button of the caption that is not there pressed.
      if (wParam == HTSYSMENU) Target().Invalidate(platform::Erase::No);
      return result;
    }
    default:
      return DialogWindow::OnMessage(message, wParam, lParam);
  }
}

void SkinnedWindow::Erase() {
  const Rect client = Target().ClientRect();
  if (!background_ || background_->Width() != client.right ||
      background_->Height() != client.bottom) {
    background_ = std::make_unique<Bitmap>(std::max(client.right, 1), std::max(client.bottom, 1),
                                           PixelFormat::PremultipliedArgb32);
  }
  Graphics graphics(*background_);
  Deliver(message::kEraseBackground, reinterpret_cast<WParam>(&graphics), 0);
}

void SkinnedWindow::DrawBeneath(Graphics& graphics) {
  if (!background_) return;
  graphics.SetCompositingMode(CompositingMode::SourceCopy);
  graphics.DrawImage(*background_, 0, 0);
}

void SkinnedWindow::DrawAbove(Graphics& graphics) {
  const Rect client = Target().ClientRect();
  graphics.DrawRectangle({kBorderColor}, {0, 0, static_cast<float>(client.right - 1),
                                          static_cast<float>(client.bottom - 1)});
}

void SkinnedWindow::Keep(std::unique_ptr<Bitmap> picture) {
  picture_ = std::move(picture);
}

// A dialog that changes its height uncovers controls or leaves them outside.
void SkinnedWindow::TellWhatIsReached() {
  const RECT before = reached_;
  GetClientRect(Handle(), &reached_);
  for (HWND child = GetWindow(Handle(), GW_CHILD); child != nullptr;
       child = GetWindow(child, GW_HWNDNEXT)) {
    const NativeWindow* control = Find(child);
    if (control == nullptr) continue;
    RECT place{};
    GetWindowRect(child, &place);
    MapWindowPoints(nullptr, Handle(), reinterpret_cast<POINT*>(&place), 2);
    RECT common{};
    if (IntersectRect(&common, &before, &place) == IntersectRect(&common, &reached_, &place)) {
      continue;
    }
    NotifyAccessible(control->Target(), AccessibleChange::Visibility);
  }
}

}  // namespace platform
