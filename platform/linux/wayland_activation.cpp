#include "platform/linux/wayland_activation.h"

#include <wayland-client.h>

#include <array>
#include <cstdint>
#include <string_view>

namespace platform::wayland {
namespace {

// The part of the activation protocol (xdg-activation, version 1) that is used here, as its
// description gives it.
std::array<const wl_interface*, 2> kNoTypes{};

const auto kTokenRequests = std::to_array<wl_message>({
    {"set_serial", "uo", kNoTypes.data()},
    {"set_app_id", "s", kNoTypes.data()},
    {"set_surface", "o", kNoTypes.data()},
    {"commit", "", kNoTypes.data()},
    {"destroy", "", kNoTypes.data()},
});
constexpr std::uint32_t kCommit = 3;
const auto kTokenEvents = std::to_array<wl_message>({{"done", "s", kNoTypes.data()}});
const wl_interface kTokenInterface{
    "xdg_activation_token_v1", 1, static_cast<int>(kTokenRequests.size()),
    kTokenRequests.data(),     1, kTokenEvents.data()};

std::array<const wl_interface*, 1> kGetTypes{&kTokenInterface};
const auto kActivationRequests = std::to_array<wl_message>({
    {"destroy", "", kNoTypes.data()},
    {"get_activation_token", "n", kGetTypes.data()},
    {"activate", "so", kNoTypes.data()},
});
constexpr std::uint32_t kGetToken = 1;
const wl_interface kActivationInterface{
    "xdg_activation_v1",        1, static_cast<int>(kActivationRequests.size()),
    kActivationRequests.data(), 0, nullptr};

void OnGlobal(void* data, wl_registry* registry, std::uint32_t name, const char* interface,
              std::uint32_t) {
  if (std::string_view(interface) != kActivationInterface.name) return;
  *static_cast<wl_proxy**>(data) =
      static_cast<wl_proxy*>(wl_registry_bind(registry, name, &kActivationInterface, 1));
}
void OnGlobalRemove(void*, wl_registry*, std::uint32_t) {}
constexpr wl_registry_listener kListener{OnGlobal, OnGlobalRemove};

void OnDone(void* data, wl_proxy*, const char* token) {
  *static_cast<std::string*>(data) = token;
}
struct TokenListener {
  void (*done)(void*, wl_proxy*, const char*);
};
TokenListener tokenListener{OnDone};

std::string Request(wl_display* display) {
  wl_proxy* activation = nullptr;
  wl_registry_add_listener(wl_display_get_registry(display), &kListener, &activation);
  wl_display_roundtrip(display);
  std::string token;
  if (activation == nullptr) return token;
  wl_proxy* request =
      wl_proxy_marshal_constructor(activation, kGetToken, &kTokenInterface, nullptr);
  wl_proxy_add_listener(request, reinterpret_cast<void (**)()>(&tokenListener), &token);
  wl_proxy_marshal(request, kCommit);
  wl_display_roundtrip(display);
  return token;
}

}  // namespace

std::string RequestActivationToken() {
  wl_display* display = wl_display_connect(nullptr);
  if (display == nullptr) return {};
  std::string token = Request(display);
  wl_display_disconnect(display);
  return token;
}

}  // namespace platform::wayland
