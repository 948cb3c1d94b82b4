// Paints invalid windows when no message is left to handle.
#pragma once

#include <QBasicTimer>
#include <QObject>
#include <vector>

#include "platform/window_messages.h"

namespace platform {

class PaintQueue : public QObject {
 public:
  void Add(WindowHandle window);

 protected:
  void timerEvent(QTimerEvent* event) override;

 private:
  std::vector<WindowHandle> windows_;
  QBasicTimer idle_;
};

}  // namespace platform
