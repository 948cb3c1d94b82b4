// The toolkit's application object, and what all windows of the user-interface thread share.
#pragma once

#include <QApplication>
#include <functional>

#include "platform/linux/windows/mouse_router.h"
#include "platform/linux/windows/paint_queue.h"
#include "platform/linux/windows/window_icon.h"
#include "platform/screen.h"

namespace platform {

class Application : public QApplication {
 public:
  Application(int& argc, char** argv);
  ~Application() override;

  // Null when there is no session.
  static Application* Current();

  ScreenDpi Dpi() const { return dpi_; }
  // Runs `call` on the user-interface thread when what came before it has been handled. Any thread.
  void CallLater(std::function<void()> call);

  PaintQueue& Paints() { return paints_; }
  MouseRouter& Mouse() { return mouse_; }
  WindowIcons& Icons() { return icons_; }

 protected:
  bool event(QEvent* event) override;

 private:
  ScreenDpi dpi_;
  PaintQueue paints_;
  MouseRouter mouse_;
  WindowIcons icons_;
};

}  // namespace platform
