#include "platform/linux/windows/application.h"

#include <QScreen>
#include <utility>

#include "platform/linux/accessible/accessible_window.h"
#include "platform/linux/windows/x11.h"

namespace platform {
namespace {

constexpr ScreenDpi kUsualDpi{96, 96};

ScreenDpi ReadScreenDpi() {
  if (const auto dpi = x11::ReadDpi()) return *dpi;
  const QScreen* screen = QGuiApplication::primaryScreen();
  if (screen == nullptr) return kUsualDpi;
  return {static_cast<std::uint32_t>(qRound(screen->logicalDotsPerInchX())),
          static_cast<std::uint32_t>(qRound(screen->logicalDotsPerInchY()))};
}

class CallEvent : public QEvent {
 public:
  explicit CallEvent(std::function<void()> call) : QEvent(EventType()), call_(std::move(call)) {}

  static QEvent::Type EventType() {
    static const auto type = static_cast<QEvent::Type>(QEvent::registerEventType());
    return type;
  }
  void Run() const { call_(); }

 private:
  std::function<void()> call_;
};

}  // namespace

Application::Application(int& argc, char** argv) : QApplication(argc, argv), dpi_(ReadScreenDpi()) {
  setQuitOnLastWindowClosed(false);
  QAccessible::installFactory(MakeAccessibleInterface);
}

Application::~Application() {
  QAccessible::removeFactory(MakeAccessibleInterface);
}

Application* Application::Current() {
  return dynamic_cast<Application*>(QCoreApplication::instance());
}

void Application::CallLater(std::function<void()> call) {
  postEvent(this, new CallEvent(std::move(call)));
}

bool Application::event(QEvent* event) {
  if (event->type() != CallEvent::EventType()) return QApplication::event(event);
  static_cast<const CallEvent*>(event)->Run();
  return true;
}

ScreenDpi GetScreenDpi() {
  const Application* application = Application::Current();
  return application != nullptr ? application->Dpi() : kUsualDpi;
}

}  // namespace platform
