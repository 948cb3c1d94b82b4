#pragma once

#include <cstdint>
#include <map>
#include <string>

#include "engine/pipewire/graph_watch.h"
#include "engine/pipewire/sound_streams.h"

namespace engine {

// Which node takes what the engine plays. Connection's thread, or under its lock.
class FedSink final : public GraphObserver {
 public:
  // What it finds it tells the streams, which must outlive it.
  explicit FedSink(SoundStreams& streams) : streams_(streams) {}

  void OnAdded(pw_registry* registry, const GraphObject& object) override;
  void OnRemoved(std::uint32_t id) override;

  // Empty when there is none.
  const std::string& Name() const { return name_; }

 private:
  struct Link {
    std::uint32_t from;
    std::uint32_t to;
  };

  std::string Find() const;
  void Update();

  SoundStreams& streams_;
  std::string name_;
  std::map<std::uint32_t, std::string> nodes_;
  std::map<std::uint32_t, Link> links_;
};

}  // namespace engine
