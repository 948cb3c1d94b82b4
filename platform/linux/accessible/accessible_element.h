// What our windows and their parts say and do, in the toolkit's terms.
#pragma once

#include <QAccessible>
#include <QString>
#include <QStringList>

#include "platform/accessible.h"
#include "platform/window_messages.h"

namespace platform {

class NativeWindow;

// Names a window or a part of it. The window may go at any time: there is then nothing to be said
// of it, and nothing to be done. User-interface thread.
class AccessibleElement {
 public:
  AccessibleElement(WindowHandle window, std::int32_t part) : window_(window), part_(part) {}

  // Null when the window is gone.
  NativeWindow* Native() const;
  std::int32_t Part() const { return part_; }
  AccessibleInfo Info() const;

  QAccessible::Role Role() const;
  // The name, the description or the value; empty for other texts.
  QString Text(QAccessible::Text kind) const;
  // Adds to `state` what the toolkit does not know by itself.
  void AddState(QAccessible::State& state) const;

  QStringList ActionNames() const;
  // Presses come as clicks do, when the call has returned: what they do may take its time.
  void DoAction(const QString& name) const;
  void PutValue(double value) const;

 private:
  bool IsHidden(const NativeWindow& native) const;
  bool CanBeClicked() const;
  void Press() const;
  void Move(double steps) const;

  WindowHandle window_;
  std::int32_t part_;
};

}  // namespace platform
