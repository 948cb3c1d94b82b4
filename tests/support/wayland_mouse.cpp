// A mouse for shell scripts: "move X Y WIDTH HEIGHT", "press" and "release", one a line on standard
// input, each answered with "done" when the desktop has it; "token" is answered with what a
// launcher would hand to a program. Goes at the end of input.
#include <cstdint>
#include <exception>
#include <iostream>
#include <sstream>
#include <string>

#include "platform/linux/wayland/wayland_activation.h"
#include "tests/support/wayland_pointer.h"

namespace {

void Serve(support::WaylandPointer& pointer) {
  for (std::string line; std::getline(std::cin, line);) {
    std::istringstream words(line);
    std::string verb;
    words >> verb;
    if (verb == "token") {
      std::cout << platform::wayland::RequestActivationToken() << std::endl;
      continue;
    }
    if (verb == "press") {
      pointer.PressLeft();
    } else if (verb == "release") {
      pointer.ReleaseLeft();
    } else {
      std::uint32_t x = 0;
      std::uint32_t y = 0;
      std::uint32_t width = 0;
      std::uint32_t height = 0;
      words >> x >> y >> width >> height;
      pointer.Move(x, y, width, height);
    }
    std::cout << "done" << std::endl;
  }
}

}  // namespace

int main() {
  try {
    support::WaylandPointer pointer;
    Serve(pointer);
    return 0;
  } catch (const std::exception& error) {
    std::cerr << "wayland_mouse: " << error.what() << '\n';
    return 1;
  }
}
