// The desktop as a person has it: windows found by their titles, a pointer that is really moved and
// pressed, pixels as they are on the screen.
#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "tests/support/eventually.h"

namespace support {

struct ScreenRect {
  int x = 0;
  int y = 0;
  int width = 0;
  int height = 0;
  bool operator==(const ScreenRect&) const = default;
};

struct ScreenPoint {
  int x = 0;
  int y = 0;
};

class X11Desktop {
 public:
  struct Impl;

  // Opens the display of the environment.
  X11Desktop();
  ~X11Desktop();
  X11Desktop(const X11Desktop&) = delete;
  X11Desktop& operator=(const X11Desktop&) = delete;

  // Logical resolution, as programs of this desktop see it.
  double Dpi();

  // The visible top-level window with this very title.
  std::optional<ScreenRect> FindWindow(const std::string& title);
  // Waits until it is there (or gone).
  std::optional<ScreenRect> WaitForWindow(const std::string& title,
                                          std::chrono::milliseconds timeout);
  bool WaitUntilGone(const std::string& title, std::chrono::milliseconds timeout);
  // Top-level windows of the window manager's list, bottom first.
  std::vector<std::string> StackedTitles();
  std::string ActiveTitle();
  bool IsIconified(const std::string& title);

  // The window manager's own wishes.
  void RequestClose(const std::string& title);
  void RequestMove(const std::string& title, ScreenPoint place);

  void MovePointer(int x, int y);
  void PressButton();
  void ReleaseButton();
  void Click(int x, int y);
  // `hold` lies between the press and the first step.
  void Drag(ScreenPoint from, ScreenPoint to, int steps,
            std::chrono::milliseconds hold = std::chrono::milliseconds(150));
  // The wheel, away from the user for positive steps.
  void Scroll(int steps);
  // A key by its X name ("Escape", "Return", "a"), "Alt+" before it for the modifier; it goes
  // wherever the focus is.
  void PressKey(const std::string& key);
  // The same without giving the keyboard time to follow a window.
  void PressKeyAtOnce(const std::string& key);
  void Type(const std::string& text);

  // 0xRRGGBB at a screen position.
  std::uint32_t PixelAt(int x, int y);
  std::vector<std::uint32_t> Pixels(const ScreenRect& rect);

 private:
  std::unique_ptr<Impl> impl_;
};

}  // namespace support
