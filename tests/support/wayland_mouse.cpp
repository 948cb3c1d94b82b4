// A mouse of its own on the Wayland desktop of the environment, for shell scripts: "move X Y WIDTH
// HEIGHT", in parts of the desktop's width and height, "press" and "release", one a line on
// standard input, each answered with "done" when the desktop has it; "token" is answered with what
// a launcher would hand to a program. Goes at the end of input.
#include <linux/input-event-codes.h>
#include <wayland-client.h>

#include <array>
#include <iostream>
#include <sstream>
#include <string>

#include "platform/linux/wayland/wayland_activation.h"

namespace {

// The virtual pointer protocol as its description gives it, up to the last request used here.
std::array<const wl_interface*, 5> kNoTypes{};
const auto kPointerRequests =
    std::to_array<wl_message>({{"motion", "uff", kNoTypes.data()},
                               {"motion_absolute", "uuuuu", kNoTypes.data()},
                               {"button", "uuu", kNoTypes.data()},
                               {"axis", "uuf", kNoTypes.data()},
                               {"frame", "", kNoTypes.data()}});
constexpr std::uint32_t kMotionAbsolute = 1;
constexpr std::uint32_t kButton = 2;
constexpr std::uint32_t kFrame = 4;
const wl_interface kPointerInterface{"zwlr_virtual_pointer_v1", 1, 5,
                                     kPointerRequests.data(),   0, nullptr};

std::array<const wl_interface*, 2> kCreateTypes{&wl_seat_interface, &kPointerInterface};
const wl_message kCreate{"create_virtual_pointer", "?on", kCreateTypes.data()};
const wl_interface kManagerInterface{"zwlr_virtual_pointer_manager_v1", 1, 1, &kCreate, 0, nullptr};

void OnGlobal(void* data, wl_registry* registry, std::uint32_t name, const char* interface,
              std::uint32_t) {
  if (std::string(interface) != kManagerInterface.name) return;
  *static_cast<wl_proxy**>(data) =
      static_cast<wl_proxy*>(wl_registry_bind(registry, name, &kManagerInterface, 1));
}
void OnGlobalRemove(void*, wl_registry*, std::uint32_t) {}
constexpr wl_registry_listener kListener{OnGlobal, OnGlobalRemove};

}  // namespace

int main() {
  wl_display* const display = wl_display_connect(nullptr);
  wl_proxy* manager = nullptr;
  if (display != nullptr) {
    wl_registry_add_listener(wl_display_get_registry(display), &kListener, &manager);
    wl_display_roundtrip(display);
  }
  if (manager == nullptr) {
    std::cerr << "wayland_mouse: no virtual pointers on this desktop\n";
    return 1;
  }
  wl_proxy* const pointer =
      wl_proxy_marshal_constructor(manager, 0, &kPointerInterface, nullptr, nullptr);
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
      wl_proxy_marshal(pointer, kMotionAbsolute, ++time, numbers[0], numbers[1], numbers[2],
                       numbers[3]);
    } else {
      wl_proxy_marshal(
          pointer, kButton, ++time, static_cast<std::uint32_t>(BTN_LEFT),
          verb == "press" ? WL_POINTER_BUTTON_STATE_PRESSED : WL_POINTER_BUTTON_STATE_RELEASED);
    }
    wl_proxy_marshal(pointer, kFrame);
    wl_display_roundtrip(display);
    std::cout << "done" << std::endl;
  }
}
