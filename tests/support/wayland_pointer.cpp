#include "tests/support/wayland_pointer.h"

#include <linux/input-event-codes.h>
#include <wayland-client.h>

#include <array>
#include <stdexcept>
#include <string_view>

namespace support {
namespace {

// The part of the virtual pointer protocol that is used here, as its description gives it.
std::array<const wl_interface*, 5> kNoTypes{};

const auto kPointerRequests = std::to_array<wl_message>({
    {"motion", "uff", kNoTypes.data()},
    {"motion_absolute", "uuuuu", kNoTypes.data()},
    {"button", "uuu", kNoTypes.data()},
    {"axis", "uuf", kNoTypes.data()},
    {"frame", "", kNoTypes.data()},
    {"axis_source", "u", kNoTypes.data()},
    {"axis_stop", "uu", kNoTypes.data()},
    {"axis_discrete", "uufi", kNoTypes.data()},
    {"destroy", "", kNoTypes.data()},
});
constexpr std::uint32_t kMotionAbsolute = 1;
constexpr std::uint32_t kButton = 2;
constexpr std::uint32_t kFrame = 4;

const wl_interface kPointerInterface{
    "zwlr_virtual_pointer_v1", 1, static_cast<int>(kPointerRequests.size()),
    kPointerRequests.data(),   0, nullptr};

std::array<const wl_interface*, 2> kCreateTypes{&wl_seat_interface, &kPointerInterface};
const auto kManagerRequests = std::to_array<wl_message>({
    {"create_virtual_pointer", "?on", kCreateTypes.data()},
    {"destroy", "", kNoTypes.data()},
});
constexpr std::uint32_t kCreateVirtualPointer = 0;
const wl_interface kManagerInterface{
    "zwlr_virtual_pointer_manager_v1", 1, static_cast<int>(kManagerRequests.size()),
    kManagerRequests.data(),           0, nullptr};

void OnGlobal(void* data, wl_registry* registry, std::uint32_t name, const char* interface,
              std::uint32_t) {
  if (std::string_view(interface) != kManagerInterface.name) return;
  *static_cast<wl_proxy**>(data) =
      static_cast<wl_proxy*>(wl_registry_bind(registry, name, &kManagerInterface, 1));
}
void OnGlobalRemove(void*, wl_registry*, std::uint32_t) {}
constexpr wl_registry_listener kListener{OnGlobal, OnGlobalRemove};

}  // namespace

struct WaylandPointer::Impl {
  ~Impl() { wl_display_disconnect(display); }

  void Frame() const {
    wl_proxy_marshal(pointer, kFrame);
    wl_display_roundtrip(display);
  }
  void Press(std::uint32_t state) {
    wl_proxy_marshal(pointer, kButton, ++time, static_cast<std::uint32_t>(BTN_LEFT), state);
    Frame();
  }

  wl_display* display = wl_display_connect(nullptr);
  wl_proxy* pointer = nullptr;
  std::uint32_t time = 0;
};

WaylandPointer::WaylandPointer() : impl_(std::make_unique<Impl>()) {
  if (impl_->display == nullptr) throw std::runtime_error("no Wayland desktop");
  wl_proxy* manager = nullptr;
  wl_registry* registry = wl_display_get_registry(impl_->display);
  wl_registry_add_listener(registry, &kListener, &manager);
  wl_display_roundtrip(impl_->display);
  if (manager == nullptr) throw std::runtime_error("no virtual pointers on this desktop");
  impl_->pointer = wl_proxy_marshal_constructor(manager, kCreateVirtualPointer, &kPointerInterface,
                                                nullptr, nullptr);
  wl_display_roundtrip(impl_->display);
}

WaylandPointer::~WaylandPointer() = default;

void WaylandPointer::Move(std::uint32_t x, std::uint32_t y, std::uint32_t width,
                          std::uint32_t height) {
  wl_proxy_marshal(impl_->pointer, kMotionAbsolute, ++impl_->time, x, y, width, height);
  impl_->Frame();
}

void WaylandPointer::PressLeft() {
  impl_->Press(WL_POINTER_BUTTON_STATE_PRESSED);
}

void WaylandPointer::ReleaseLeft() {
  impl_->Press(WL_POINTER_BUTTON_STATE_RELEASED);
}

}  // namespace support
