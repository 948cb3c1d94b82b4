#include <QDir>
#include <QLibraryInfo>
#include <QWidget>
#include <algorithm>
#include <array>
#include <chrono>
#include <future>
#include <optional>
#include <utility>

#include "platform/linux/instance/user_instance.h"
#include "platform/linux/wayland/wayland.h"
#include "platform/linux/wayland/wayland_activation.h"
#include "platform/linux/windows/application.h"
#include "platform/linux/windows/native_window.h"
#include "platform/linux/windows/qt_text.h"
#include "platform/linux/windows/reduced_painting.h"
#include "platform/linux/windows/theme.h"
#include "platform/linux/windows/x11.h"
#include "platform/shell.h"

namespace platform {
namespace {

// Where the toolkit itself chooses the display system, it takes a Wayland desktop before an X
// server, if it has the plug-in for it.
bool UsesWayland() {
  const QByteArray chosen = qgetenv("QT_QPA_PLATFORM");
  if (!chosen.isEmpty()) return chosen.startsWith("wayland");
  const QDir plugins(QLibraryInfo::path(QLibraryInfo::PluginsPath) + QStringLiteral("/platforms"));
  return !plugins.entryList({QStringLiteral("*wayland*")}, QDir::Files).isEmpty();
}

// The program works in physical pixels and in the screen's own resolution, whatever the person has
// told the toolkit to do with other programs. A Wayland output enlarges the toolkit's units by its
// scale; a factor of the reverse makes them pixels again. The variables are back when the toolkit
// has read them, so that programs started from here get them unchanged.
class PhysicalPixels {
 public:
  explicit PhysicalPixels(std::optional<std::uint32_t> waylandScale) {
    for (std::size_t i = 0; i < kNames.size(); ++i) {
      if (qEnvironmentVariableIsSet(kNames[i])) saved_[i] = qgetenv(kNames[i]);
      if (kNames[i] != kPlatform) qunsetenv(kNames[i]);
    }
    qputenv("QT_ENABLE_HIGHDPI_SCALING", "0");
    if (!waylandScale) return;
    if (qEnvironmentVariableIsEmpty(kPlatform)) qputenv(kPlatform, "wayland");
    if (*waylandScale == 1) return;
    constexpr int kAllDigits = 17;
    qputenv("QT_SCALE_FACTOR", QByteArray::number(1.0 / *waylandScale, 'g', kAllDigits));
    qputenv("QT_FONT_DPI", QByteArray::number(*waylandScale * 96));
  }
  ~PhysicalPixels() {
    for (std::size_t i = 0; i < kNames.size(); ++i) {
      if (saved_[i]) {
        qputenv(kNames[i], *saved_[i]);
      } else {
        qunsetenv(kNames[i]);
      }
    }
  }
  PhysicalPixels(const PhysicalPixels&) = delete;
  PhysicalPixels& operator=(const PhysicalPixels&) = delete;

 private:
  static constexpr const char* kPlatform = "QT_QPA_PLATFORM";
  static constexpr auto kNames = std::to_array<const char*>(
      {"QT_ENABLE_HIGHDPI_SCALING", "QT_SCALE_FACTOR", "QT_SCREEN_SCALE_FACTORS", "QT_FONT_DPI",
       "QT_USE_PHYSICAL_DPI", "QT_WAYLAND_FORCE_DPI", kPlatform});
  std::array<std::optional<QByteArray>, kNames.size()> saved_;
};

// On Wayland some versions of the toolkit ask the desktop to activate the active window whenever
// the focus moves within the program. The wish arrives late, and takes the keyboard from a box that
// has come up in front of that window meanwhile.
void LeaveActivationToDesktop(QGuiApplication& application) {
  if (!QGuiApplication::platformName().startsWith(QStringLiteral("wayland"))) return;
  QObject::disconnect(&application, &QGuiApplication::focusObjectChanged, &application, nullptr);
}

struct Arguments {
  std::array<char, 8> name{"tonalyx"};
  std::array<char*, 2> values{name.data(), nullptr};
  int count = 1;
};

// The toolkit's start depends on all of this.
std::unique_ptr<Application> MakeApplication(Arguments& arguments) {
  const PhysicalPixels physicalPixels(UsesWayland() ? wayland::ReadOutputScale() : std::nullopt);
  QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
  QGuiApplication::setDesktopSettingsAware(false);
  QCoreApplication::setApplicationName(QStringLiteral("tonalyx"));
  QGuiApplication::setDesktopFileName(QStringLiteral("tonalyx"));
  auto application = std::make_unique<Application>(arguments.count, arguments.values.data());
  LeaveActivationToDesktop(*application);
  return application;
}

NativeWindow* FindShown(const std::u16string& title) {
  const QWidgetList widgets = QApplication::topLevelWidgets();
  for (QWidget* widget : widgets) {
    auto* window = dynamic_cast<NativeWindow*>(widget);
    if (window != nullptr && window->isVisible() && window->Text() == title) return window;
  }
  return nullptr;
}

// The toolkit takes the right to come forward from the environment, and takes it away there. A
// start from a shell hands none over; the desktop then decides what one of our own is worth.
void ActivateWithToken(NativeWindow& window, const std::string& handed) {
  const std::string token = handed.empty() ? wayland::RequestActivationToken() : handed;
  if (!token.empty()) qputenv("XDG_ACTIVATION_TOKEN", QByteArray::fromStdString(token));
  window.activateWindow();
}

bool RaiseFirst(const RaiseRequest& request) {
  for (const std::u16string& title : request.titles) {
    NativeWindow* window = FindShown(title);
    if (window == nullptr) continue;
    if (window->isMinimized()) window->showNormal();
    window->raise();
    if (!x11::Activate(window->winId())) ActivateWithToken(*window, request.activationToken);
    return true;
  }
  return false;
}

// Called on a thread of its own; the windows belong to the user-interface thread, which may be
// busy, but not for ever.
bool RaiseFromOtherThread(Application& application, const RaiseRequest& request) {
  const auto raised = std::make_shared<std::promise<bool>>();
  std::future<bool> answer = raised->get_future();
  application.CallLater([raised, request] { raised->set_value(RaiseFirst(request)); });
  constexpr std::chrono::milliseconds kPatience(500);
  return answer.wait_for(kPatience) == std::future_status::ready && answer.get();
}

}  // namespace

struct UserInterfaceSession::Impl {
  Arguments arguments;
  std::unique_ptr<Application> application = MakeApplication(arguments);
  ReducedPainting reducedPainting;
  UserInstance* instance = nullptr;
};

UserInterfaceSession::UserInterfaceSession(SingleInstance& singleInstance)
    : impl_(std::make_unique<Impl>()) {
  ApplyTheme();
  // Only this system's own kind of instance carries requests between processes.
  impl_->instance = dynamic_cast<UserInstance*>(&singleInstance);
  if (impl_->instance == nullptr) return;
  impl_->instance->ServeRequests([&application = *impl_->application](const RaiseRequest& request) {
    return RaiseFromOtherThread(application, request);
  });
}

UserInterfaceSession::~UserInterfaceSession() {
  if (impl_->instance != nullptr) impl_->instance->StopServing();
}

}  // namespace platform
