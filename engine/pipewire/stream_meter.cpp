#include "engine/pipewire/stream_meter.h"

#include <algorithm>

namespace engine {

// Plain loads and stores: only the audio thread writes what is read here.
void StreamMeter::Note(const Cycle& cycle) noexcept {
  constexpr auto kRelaxed = std::memory_order_relaxed;
  const bool isFirst = isInterrupted_.exchange(false);
  const double period = static_cast<double>(cycle.frames) / cycle.rate;
  const double load = std::chrono::duration<double>(cycle.spent).count() / period;
  const double before = isFirst ? load : load_.load(kRelaxed);
  load_.store(before + (load - before) * std::min(period, 1.0), kRelaxed);
  cycles_.store(cycles_.load(kRelaxed) + 1, kRelaxed);
  quantum_.store(cycle.frames, kRelaxed);
  if (!isFirst && cycle.position > nextPosition_) {
    const std::uint64_t missed = (cycle.position - nextPosition_) / cycle.frames;
    missedCycles_.store(missedCycles_.load(kRelaxed) + missed, kRelaxed);
  }
  nextPosition_ = cycle.position + cycle.frames;
}

}  // namespace engine
