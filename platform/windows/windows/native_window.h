// A window of the system: turns its messages into those of its `Window`.
#pragma once

#include <windows.h>

#include <memory>

#include "platform/window_access.h"

namespace platform {

// The system counts how often it gave out a handle anew; the same one comes again only after as
// many windows as nobody makes while a message is on its way.
inline HWND ToNative(WindowHandle handle) {
  return reinterpret_cast<HWND>(handle);  // NOLINT(performance-no-int-to-ptr)
}

// Takes over the messages of a window that exists, until that goes.
class NativeWindow {
 public:
  NativeWindow(Window& window, HWND handle);
  virtual ~NativeWindow();
  NativeWindow(const NativeWindow&) = delete;
  NativeWindow& operator=(const NativeWindow&) = delete;

  // Null when it is none of this program's windows with an object. User-interface thread.
  static NativeWindow* Find(HWND handle);

  HWND Handle() const { return handle_; }
  Window& Target() const { return window_; }
  LResult Deliver(std::uint32_t message, WParam wParam, LParam lParam);
  // What the window shows while it is being painted, else null.
  Bitmap* Surface() { return surface_.get(); }

  virtual void Show(ShowCommand command);

 protected:
  // Handles a message of the system.
  virtual LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam);
  // What the system does with it.
  LRESULT Default(UINT message, WPARAM wParam, LPARAM lParam);

  virtual void Erase() { Deliver(message::kEraseBackground, 0, 0); }
  // Everything between the two calls that validate the window.
  virtual void Paint(HDC context);
  // What shows where the window itself draws nothing, and what goes above all of it.
  virtual void DrawBeneath(Graphics& /*graphics*/) {}
  virtual void DrawAbove(Graphics& /*graphics*/) {}
  // The finished picture, which is the window's to keep.
  virtual void Keep(std::unique_ptr<Bitmap> /*picture*/) {}

 private:
  static LRESULT CALLBACK Procedure(HWND handle, UINT message, WPARAM wParam, LPARAM lParam,
                                    UINT_PTR id, DWORD_PTR native);
  void OnPaint();
  void Leave();

  Window& window_;
  HWND handle_;
  std::unique_ptr<Bitmap> surface_;
};

}  // namespace platform
