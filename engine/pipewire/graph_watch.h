// The objects of the server's graph as they come and go.
#pragma once

#include <pipewire/pipewire.h>

#include <cstdint>
#include <string_view>
#include <vector>

namespace engine {

struct GraphObject {
  std::uint32_t id;
  std::string_view type;

  // Empty when the object has no such property.
  std::string_view Property(const char* key) const;

  const spa_dict* properties;
};

// Called by the connection's thread.
class GraphObserver {
 public:
  virtual void OnAdded(pw_registry* registry, const GraphObject& object) = 0;
  virtual void OnRemoved(std::uint32_t id) = 0;

 protected:
  ~GraphObserver() = default;
};

// Tells of all that is there, and then of each change. To be made under the connection's lock, and
// destroyed before the observers.
class GraphWatch {
 public:
  GraphWatch(pw_core* core, std::vector<GraphObserver*> observers);
  ~GraphWatch();
  GraphWatch(const GraphWatch&) = delete;
  GraphWatch& operator=(const GraphWatch&) = delete;

 private:
  static void OnGlobal(void* watch, std::uint32_t id, std::uint32_t permissions, const char* type,
                       std::uint32_t version, const spa_dict* properties);
  static void OnGlobalRemove(void* watch, std::uint32_t id);
  static const pw_registry_events kEvents;

  const std::vector<GraphObserver*> observers_;
  pw_registry* registry_;
  spa_hook listener_{};
};

}  // namespace engine
