// A mouse of its own on the Wayland desktop of the environment, for shell scripts: "move X Y WIDTH
// HEIGHT", in parts of the desktop's width and height, "press" and "release", one a line on
// standard input, each answered with "done" when the desktop has it; "token" is answered with what
// a launcher would hand to a program. Goes at the end of input.
#include <linux/input-event-codes.h>
#include <wayland-client.h>
#include <wlr-virtual-pointer-unstable-v1-client-protocol.h>

#include <array>
#include <iostream>
#include <sstream>
#include <string>

#include "platform/linux/wayland/wayland_activation.h"

namespace {

void OnGlobal(void* data, wl_registry* registry, std::uint32_t name, const char* interface,
              std::uint32_t) {
  const wl_interface& wanted = zwlr_virtual_pointer_manager_v1_interface;
  if (std::string(interface) != wanted.name) return;
  *static_cast<zwlr_virtual_pointer_manager_v1**>(data) =
      static_cast<zwlr_virtual_pointer_manager_v1*>(wl_registry_bind(registry, name, &wanted, 1));
}
void OnGlobalRemove(void*, wl_registry*, std::uint32_t) {}
constexpr wl_registry_listener kListener{OnGlobal, OnGlobalRemove};

}  // namespace

int main() {
  wl_display* const display = wl_display_connect(nullptr);
  zwlr_virtual_pointer_manager_v1* manager = nullptr;
  if (display != nullptr) {
    wl_registry_add_listener(wl_display_get_registry(display), &kListener, &manager);
    wl_display_roundtrip(display);
  }
  if (manager == nullptr) {
    std::cerr << "wayland_mouse: no virtual pointers on this desktop\n";
    return 1;
  }
  zwlr_virtual_pointer_v1* const pointer =
      zwlr_virtual_pointer_manager_v1_create_virtual_pointer(manager, /*seat=*/nullptr);
  wl_display_roundtrip(display);
  std::uint32_t time = 0;
  for (std::string line; std::getline(std::cin, line);) {
    std::istringstream words(line);
    std::string verb;
    words >> verb;
    if (verb == "token") {
      std::cout << platform::wayland::RequestActivationToken() << std::endl;
      continue;
    }
    if (verb == "move") {
      std::array<std::uint32_t, 4> numbers{};
      for (std::uint32_t& number : numbers) words >> number;
      zwlr_virtual_pointer_v1_motion_absolute(pointer, ++time, numbers[0], numbers[1], numbers[2],
                                              numbers[3]);
    } else {
      zwlr_virtual_pointer_v1_button(
          pointer, ++time, BTN_LEFT,
          verb == "press" ? WL_POINTER_BUTTON_STATE_PRESSED : WL_POINTER_BUTTON_STATE_RELEASED);
    }
    zwlr_virtual_pointer_v1_frame(pointer);
    wl_display_roundtrip(display);
    std::cout << "done" << std::endl;
  }
}
