#include "platform/linux/wayland/wayland.h"

#include <wayland-client.h>

#include <algorithm>
#include <deque>
#include <memory>
#include <string_view>

namespace platform::wayland {
namespace {

struct Disconnect {
  void operator()(wl_display* display) const { wl_display_disconnect(display); }
};

struct Output {
  wl_output* proxy;
  std::uint32_t scale;
};
// A deque keeps its elements where they are.
using Outputs = std::deque<Output>;

void OnGeometry(void*, wl_output*, std::int32_t, std::int32_t, std::int32_t, std::int32_t,
                std::int32_t, const char*, const char*, std::int32_t) {}
void OnMode(void*, wl_output*, std::uint32_t, std::int32_t, std::int32_t, std::int32_t) {}
void OnDone(void*, wl_output*) {}
void OnScale(void* data, wl_output*, std::int32_t factor) {
  static_cast<Output*>(data)->scale = static_cast<std::uint32_t>(std::max(1, factor));
}

// The version of the protocol that brought the scale.
constexpr std::uint32_t kVersionWithScale = 2;

constexpr wl_output_listener MakeOutputListener() {
  wl_output_listener listener{};
  listener.geometry = OnGeometry;
  listener.mode = OnMode;
  listener.done = OnDone;
  listener.scale = OnScale;
  return listener;
}
constexpr wl_output_listener kOutputListener = MakeOutputListener();

void OnGlobal(void* data, wl_registry* registry, std::uint32_t name, const char* interface,
              std::uint32_t version) {
  if (version < kVersionWithScale || std::string_view(interface) != wl_output_interface.name) {
    return;
  }
  auto* proxy = static_cast<wl_output*>(
      wl_registry_bind(registry, name, &wl_output_interface, kVersionWithScale));
  auto& outputs = *static_cast<Outputs*>(data);
  outputs.push_back({proxy, 1});
  wl_output_add_listener(proxy, &kOutputListener, &outputs.back());
}
void OnGlobalRemove(void*, wl_registry*, std::uint32_t) {}

constexpr wl_registry_listener kRegistryListener{OnGlobal, OnGlobalRemove};

}  // namespace

std::optional<std::uint32_t> ReadOutputScale() {
  const std::unique_ptr<wl_display, Disconnect> display(wl_display_connect(nullptr));
  if (!display) return std::nullopt;
  Outputs outputs;
  wl_registry* registry = wl_display_get_registry(display.get());
  wl_registry_add_listener(registry, &kRegistryListener, &outputs);
  // The first answer names the outputs, the second tells about them.
  const bool answered =
      wl_display_roundtrip(display.get()) >= 0 && wl_display_roundtrip(display.get()) >= 0;
  for (const Output& output : outputs) wl_output_destroy(output.proxy);
  wl_registry_destroy(registry);
  if (!answered || outputs.empty()) return std::nullopt;
  return outputs.front().scale;
}

}  // namespace platform::wayland
