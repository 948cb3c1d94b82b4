// The set that counts: the active one of the route that the default endpoint plays through.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "endpoints/enumeration.h"
#include "engine/sound_settings.h"
#include "platform/registry.h"
#include "platform/wake_event.h"

namespace engine {

struct ActiveSet {
  std::u16string pathKey;
  std::u16string setting;
  SoundSettings sound;

  bool operator==(const ActiveSet&) const = default;
};

// All from one state of the store. Nothing when the route has no such set, or none can be read now.
std::optional<ActiveSet> ReadActiveSet(platform::Registry& registry,
                                       const endpoints::DefaultEndpointInfo& endpoint);

// Notices whoever writes what ReadActiveSet depends on, those who set no event among them.
class ActiveSetWatch {
 public:
  // `onChange` is called on a thread of the watch's own.
  ActiveSetWatch(platform::Registry& registry, std::function<void()> onChange);
  ~ActiveSetWatch();
  ActiveSetWatch(const ActiveSetWatch&) = delete;
  ActiveSetWatch& operator=(const ActiveSetWatch&) = delete;

  // Watches what is there now; a change after this call is told of, once. To be called before each
  // reading, always by one thread.
  void Follow(const endpoints::DefaultEndpointInfo& endpoint);

 private:
  platform::RegistryKey* Watch(std::unique_ptr<platform::RegistryKey> key);

  platform::Registry& registry_;
  platform::WakeEvent wake_;
  std::vector<std::unique_ptr<platform::RegistryKey>> keys_;
  std::jthread thread_;
};

}  // namespace engine
