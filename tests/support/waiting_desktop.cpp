// What a desktop does by looking again and again, wherever it is.
#include "tests/support/x11_desktop.h"

namespace support {

using std::chrono::milliseconds;

std::optional<ScreenRect> X11Desktop::WaitForWindow(const std::string& title,
                                                    milliseconds timeout) {
  std::optional<ScreenRect> rect;
  Eventually([&] { return (rect = FindWindow(title)).has_value(); }, timeout);
  return rect;
}

bool X11Desktop::WaitUntilGone(const std::string& title, milliseconds timeout) {
  return Eventually([&] { return !FindWindow(title); }, timeout);
}

std::uint32_t X11Desktop::PixelAt(int x, int y) {
  return Pixels({x, y, 1, 1}).front();
}

}  // namespace support
