// The application: decides, once for each process, between raising the running copy, the install
// work and the main window.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>

#include "app/model_support.h"
#include "app/product_windows.h"
#include "platform/com_apartment.h"
#include "platform/platform.h"
#include "platform/startup.h"

namespace app {

// The installer's code for a fatal error during installation.
inline constexpr std::int32_t kExitInstallFailure = 1603;
inline constexpr std::int32_t kExitUnsupported = 1;

// Belongs to the main thread.
class CKelControlApp {
 public:
  // `arguments` is what follows the program's name. All must outlive the application.
  CKelControlApp(platform::Platform& platform, ProductWindows& windows,
                 std::span<const std::u16string> arguments);

  // Does the whole work of the process; true only for an unsupported model, when the framework's
  // own message loop would run and end at once.
  bool InitInstance();

  // The process's exit code. Nothing may be drawn afterwards.
  std::int32_t ExitInstance();

 private:
  bool IsInstallMode() const;
  ModelInfo IdentifyModel();
  bool RunInstall(const ModelInfo& model);
  bool RunInteractive(const ModelInfo& model);

  platform::ComApartment apartment_;
  platform::Platform& platform_;
  ProductWindows& windows_;
  std::span<const std::u16string> arguments_;
  std::optional<platform::DrawingSession> drawing_;
  std::int32_t exitCodeOverride_ = 0;
};

}  // namespace app
