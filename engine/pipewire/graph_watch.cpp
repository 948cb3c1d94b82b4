#include "engine/pipewire/graph_watch.h"

#include <utility>

namespace engine {

const pw_registry_events GraphWatch::kEvents = [] {
  pw_registry_events events{};
  events.version = PW_VERSION_REGISTRY_EVENTS;
  events.global = OnGlobal;
  events.global_remove = OnGlobalRemove;
  return events;
}();

std::string_view GraphObject::Property(const char* key) const {
  const char* value = properties == nullptr ? nullptr : spa_dict_lookup(properties, key);
  return value == nullptr ? std::string_view() : value;
}

GraphWatch::GraphWatch(pw_core* core, std::vector<GraphObserver*> observers)
    : observers_(std::move(observers)),
      registry_(pw_core_get_registry(core, PW_VERSION_REGISTRY, 0)) {
  pw_registry_add_listener(registry_, &listener_, &kEvents, this);
}

GraphWatch::~GraphWatch() {
  spa_hook_remove(&listener_);
  pw_proxy_destroy(reinterpret_cast<pw_proxy*>(registry_));
}

void GraphWatch::OnGlobal(void* watch, std::uint32_t id, std::uint32_t /*permissions*/,
                          const char* type, std::uint32_t /*version*/, const spa_dict* properties) {
  const auto& self = *static_cast<GraphWatch*>(watch);
  const GraphObject object{id, type, properties};
  for (GraphObserver* observer : self.observers_) observer->OnAdded(self.registry_, object);
}

void GraphWatch::OnGlobalRemove(void* watch, std::uint32_t id) {
  for (GraphObserver* observer : static_cast<GraphWatch*>(watch)->observers_) {
    observer->OnRemoved(id);
  }
}

}  // namespace engine
