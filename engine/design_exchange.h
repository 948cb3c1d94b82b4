#pragma once

#include <array>
#include <atomic>
#include <cstdint>

#include "engine/sound_design.h"

namespace engine {

// Hands the latest design from one control thread to one audio thread. Neither ever waits: of three
// slots one belongs to each thread, and the third changes hands by one atomic exchange. Designs
// that were replaced before the audio thread looked are never seen.
class DesignExchange {
 public:
  DesignExchange() = default;
  DesignExchange(const DesignExchange&) = delete;
  DesignExchange& operator=(const DesignExchange&) = delete;

  // Control thread.
  void Publish(const SoundDesign& design) noexcept;

  // Audio thread: the latest design, null when it was taken before. Stays valid and as it is until
  // the next call.
  const SoundDesign* Take() noexcept;

 private:
  // The number of the slot between the threads, with a mark while it holds what was not taken.
  static constexpr std::uint32_t kFresh = 4;

  std::array<SoundDesign, 3> slots_;
  std::uint32_t writing_ = 0;  // control thread
  std::uint32_t reading_ = 1;  // audio thread
  std::atomic<std::uint32_t> between_{2};
};

}  // namespace engine
