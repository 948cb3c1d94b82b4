#include "platform/linux/wayland/wayland_activation.h"

#include <wayland-client.h>
#include <xdg-activation-v1-client-protocol.h>

#include <string_view>

namespace platform::wayland {
namespace {

void OnGlobal(void* data, wl_registry* registry, std::uint32_t name, const char* interface,
              std::uint32_t) {
  if (std::string_view(interface) != xdg_activation_v1_interface.name) return;
  *static_cast<xdg_activation_v1**>(data) = static_cast<xdg_activation_v1*>(
      wl_registry_bind(registry, name, &xdg_activation_v1_interface, 1));
}
void OnGlobalRemove(void*, wl_registry*, std::uint32_t) {}
constexpr wl_registry_listener kRegistryListener{OnGlobal, OnGlobalRemove};

void OnDone(void* data, xdg_activation_token_v1*, const char* token) {
  *static_cast<std::string*>(data) = token;
}
constexpr xdg_activation_token_v1_listener kTokenListener{OnDone};

std::string Request(wl_display* display) {
  xdg_activation_v1* activation = nullptr;
  wl_registry_add_listener(wl_display_get_registry(display), &kRegistryListener, &activation);
  wl_display_roundtrip(display);
  std::string token;
  if (activation == nullptr) return token;
  xdg_activation_token_v1* request = xdg_activation_v1_get_activation_token(activation);
  xdg_activation_token_v1_add_listener(request, &kTokenListener, &token);
  xdg_activation_token_v1_commit(request);
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
