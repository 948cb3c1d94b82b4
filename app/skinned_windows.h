// The windows of the program as they are on the screen.
#pragma once

#include <optional>

#include "app/product_windows.h"
#include "platform/platform.h"
#include "platform/shell.h"

namespace app {

// Joins the desktop when the first window is wanted, so that install mode needs none.
class SkinnedWindows : public ProductWindows {
 public:
  explicit SkinnedWindows(platform::Platform& platform) : platform_(platform) {}

  void ShowUnsupportedModel() override;
  void RunMainWindow(const ModelInfo& model) override;

 private:
  void JoinDesktop();

  platform::Platform& platform_;
  std::optional<platform::UserInterfaceSession> session_;
};

}  // namespace app
