// A window on the screen: turns the toolkit's events into messages for its `Window`.
#pragma once

#include <QBasicTimer>
#include <QWidget>
#include <map>

#include "platform/window_access.h"

namespace platform {

// While it lives, its `Window` has a handle. Goes before its `Window` or with it.
class NativeWindow : public QWidget {
 public:
  NativeWindow(Window& window, QWidget* parent, Qt::WindowFlags flags, std::uint16_t id);
  ~NativeWindow() override;

  WindowHandle Handle() const { return handle_; }
  std::uint16_t Id() const { return id_; }
  Window& Target() const { return window_; }
  // The dialog that a control belongs to, null for a dialog.
  NativeWindow* OwningDialog() const;
  LResult Deliver(std::uint32_t message, WParam wParam, LParam lParam);

  void Invalidate(Erase erase);
  void PaintIfInvalid();
  // The surface for a paint in progress, else null.
  QPaintDevice* Surface() { return painting_ ? this : nullptr; }

  virtual void SetSize(const QSize& size) { resize(size); }
  virtual void SetText(std::u16string_view text) = 0;
  virtual std::u16string Text() const = 0;

  // The window's own state; a dialog's does not reach its controls.
  void SetAcceptsInput(bool accepts);
  bool AcceptsInput() const { return acceptsInput_; }

  void StartMessageTimer(std::uint32_t id, std::uint32_t milliseconds);
  void StopMessageTimer(std::uint32_t id);

 protected:
  bool event(QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void timerEvent(QTimerEvent* event) override;
  void changeEvent(QEvent* event) override;

  // Makes the window's picture current on the screen, at once.
  virtual void PaintNow() { repaint(); }
  // What comes before kPaint when erasing was asked for.
  virtual void EraseBackground() { Deliver(message::kEraseBackground, 0, 0); }
  // Sends kEraseBackground if it is due.
  void EraseIfPending();
  // Both messages of a paint.
  void SendPaint();
  bool IsInvalid() const { return invalid_; }
  void Validate() { invalid_ = false; }

 private:
  Window& window_;
  std::uint16_t id_;
  WindowHandle handle_;
  bool invalid_ = true;
  bool erasePending_ = true;
  bool painting_ = false;
  bool acceptsInput_ = true;
  std::map<std::uint32_t, QBasicTimer> timers_;
};

}  // namespace platform
