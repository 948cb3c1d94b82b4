// Windows: message receivers on the screen. Everything but PostToWindow belongs to the
// user-interface thread.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "platform/accessible.h"
#include "platform/drawing.h"
#include "platform/geometry.h"
#include "platform/window_messages.h"

namespace platform {

enum class ShowCommand { Hide, Normal, Minimize };
enum class Erase { No, Yes };

// Queues a message; false, and nothing happens, when the window is gone. Any thread. Messages still
// queued when their window goes are dropped.
bool PostToWindow(WindowHandle window, std::uint32_t message, WParam wParam, LParam lParam);

// For windows known by their handle alone, as a control knows its parent. User-interface thread
// only. A window that is gone answers 0 and lies nowhere (an empty rectangle).
//
// Handles a message at once, through every override of the window's class, and returns its result.
LResult SendToWindow(WindowHandle window, std::uint32_t message, WParam wParam, LParam lParam);
// What Window::WindowRect tells.
Rect WindowRectOf(WindowHandle window);

// The base of dialogs and controls. The C++ object owns its window on the screen; a control's
// window exists from the moment its dialog attaches it until the dialog ends, and operations on an
// object without a window do nothing.
class Window {
 public:
  struct Impl;

  Window();
  virtual ~Window();
  Window(const Window&) = delete;
  Window& operator=(const Window&) = delete;

  WindowHandle Handle() const;
  WindowHandle Parent() const;
  std::uint16_t ControlId() const;

  // Handles a message at once and returns its result.
  LResult Send(std::uint32_t message, WParam wParam, LParam lParam);

  Rect ClientRect() const;  // left and top are 0
  Rect WindowRect() const;  // in screen coordinates
  Point ClientToScreen(Point client) const;

  // Neither moves the window nor changes its place in the stack.
  void Resize(Size size);
  void Show(ShowCommand command);
  bool IsVisible() const;
  bool IsMinimized() const;

  void SetText(std::u16string_view text);
  std::u16string Text() const;
  void Enable(bool enabled);
  bool IsEnabled() const;

  // Invalidation accumulates; the window is painted when its queue is otherwise empty.
  void Invalidate(Erase erase);
  // Paints at once if anything is invalid.
  void Update();

  // While captured, mouse messages from outside arrive with coordinates outside the client area.
  void CaptureMouse();
  void ReleaseMouse();

  // Sends kTimer with `id` every `milliseconds`.
  void StartTimer(std::uint32_t id, std::uint32_t milliseconds);
  void StopTimer(std::uint32_t id);

  // Icon resource for the big and the small window icon.
  void SetIcon(std::uint16_t iconResource);

  // What assistive technology is told; `part` is kAccessibleSelf or a part's number.
  AccessibleInfo Accessible(std::int32_t part) const;
  // Replaces what the window says of itself.
  void Annotate(AccessibleAnnotation annotation);
  virtual std::int32_t AccessiblePartCount() const { return 0; }
  // What a click on it does. Asked for only while a click could reach it.
  virtual void DoDefaultAction(std::int32_t /*part*/) {}
  // What moving it to the place next to this value does; asked for under the same condition.
  // `value` is a finite number.
  virtual void PutAccessibleValue(std::int32_t /*part*/, double /*value*/) {}

  Impl& Native() { return *impl_; }
  const Impl& Native() const { return *impl_; }

 protected:
  // Called once when the window has been made and has its size, before its first message.
  virtual void PreSubclassWindow() {}
  // Every message arrives here; what a class does not handle it hands to its base.
  virtual LResult WindowProc(std::uint32_t message, WParam wParam, LParam lParam);
  // Called for parts that AccessiblePartCount counts, and for the window, whose name is its text
  // unless a class knows a better one.
  virtual AccessibleInfo DescribeAccessible(std::int32_t part) const;

 private:
  friend struct WindowAccess;
  std::unique_ptr<Impl> impl_;
  AccessibleAnnotation annotation_;
};

// The drawing surface of a window while it handles kPaint; outside of it nothing is drawn.
class PaintContext {
 public:
  explicit PaintContext(Window& window);
  ~PaintContext();
  PaintContext(const PaintContext&) = delete;
  PaintContext& operator=(const PaintContext&) = delete;

  Graphics& Surface();

 private:
  std::unique_ptr<Graphics> graphics_;
};

// An owner-drawn push button or check box: a click (press and release inside, or the space key with
// focus) sends kCommand with kNotifyClicked to the parent; the check state is the class's own.
class Button : public Window {
 public:
  void DoDefaultAction(std::int32_t part) override;

 protected:
  // Draws the whole button in its present state.
  virtual void DrawItem(Graphics& graphics, const Rect& item) = 0;
  LResult WindowProc(std::uint32_t message, WParam wParam, LParam lParam) override;
  AccessibleInfo DescribeAccessible(std::int32_t part) const override;
};

}  // namespace platform
