// The dialog on the screen while a script acts on it as a person does, from a thread of its own.
#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/window_messages.h"
#include "store/model_flags.h"
#include "tests/eq/eq_machine.h"
#include "tests/support/x11_desktop.h"

namespace ui {

class CKelControlDlg;

inline constexpr store::ModelFlags kTwoLayers{false, false};
inline constexpr store::ModelFlags kThreeLayers{true, false};

// Pixels of the window that the template describes.
struct DialogSize {
  int width;
  int collapsed;
  int full;
};

class OpenDialog {
 public:
  explicit OpenDialog(EqMachine& machine);

  using Script = std::function<void(OpenDialog&)>;

  // Runs the dialog until the script has closed it, or is at its end; the dialog's result.
  std::int32_t Run(store::ModelFlags model, Script script);

  // For the script.
  support::X11Desktop& Desktop() { return desktop_; }
  support::ScreenRect Place();
  bool WaitForHeight(int height);
  void Expand();
  // Screen position of a point in dialog units, moved by pixels.
  support::ScreenRect At(double x, double y, int dx = 0, int dy = 0);
  void Click(double x, double y, int dx = 0, int dy = 0);
  void Drag(const support::ScreenRect& from, const support::ScreenRect& to);
  std::uint32_t Pixel(double x, double y, int dx = 0, int dy = 0);
  // What the background's tile shows at that point.
  std::uint32_t TilePixel(double x, double y, int dx = 0, int dy = 0);
  void Post(std::uint32_t message, platform::WParam wParam, platform::LParam lParam);

  // Acts while the program is busy with something else, so that it finds all of it waiting.
  void ActWhileBusy(const std::function<void()>& action);

  const DialogSize& Size() const { return size_; }
  double Scale() const { return dpi_ / 96.0; }

  // Events that the engine has received since the last look.
  int TakeSignals() { return signals_.exchange(0); }

 private:
  void Point(const support::ScreenRect& at);

  EqMachine& machine_;
  support::X11Desktop desktop_;
  double dpi_;
  double baseWidth_;
  double baseHeight_;
  DialogSize size_;
  support::ScreenRect place_;
  std::vector<std::uint32_t> tile_;
  int tileWidth_ = 0;
  int tileHeight_ = 0;
  CKelControlDlg* dialog_ = nullptr;
  std::atomic<int> signals_{0};
};

}  // namespace ui
