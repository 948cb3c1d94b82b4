#pragma once

#include <cstdint>
#include <mutex>

#include "engine/design_exchange.h"
#include "engine/sound_settings.h"

namespace engine {

// Designs anew when the settings or the rate change, and hands the design to the audio thread. Any
// thread but that one.
class SoundControl {
 public:
  explicit SoundControl(DesignExchange& exchange) : exchange_(exchange) {}

  void SetSettings(const SoundSettings& settings);
  // In Hz. Before the first call there is nothing to design for.
  void SetRate(std::uint32_t rate);

 private:
  void Publish();

  DesignExchange& exchange_;
  std::mutex mutex_;
  SoundSettings settings_;
  std::uint32_t rate_ = 0;
};

}  // namespace engine
