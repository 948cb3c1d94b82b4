#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>

namespace engine {

// What the audio thread notes about its cycles, for any thread to read.
class StreamMeter {
 public:
  struct Cycle {
    std::uint32_t frames;
    std::uint32_t rate;      // Hz, not 0
    std::uint64_t position;  // of the graph's clock, frames
    std::chrono::nanoseconds spent;
  };

  // Audio thread.
  void Note(const Cycle& cycle) noexcept;

  // The next cycle need not follow the last one. Any thread.
  void Interrupt() noexcept { isInterrupted_ = true; }

  std::uint64_t Cycles() const { return cycles_; }
  std::uint32_t Quantum() const { return quantum_; }
  // The share of its time that a cycle's processing takes, the average of about a second.
  double Load() const { return load_; }
  // Cycles that the graph went through without this process.
  std::uint64_t MissedCycles() const { return missedCycles_; }

 private:
  std::atomic<bool> isInterrupted_ = true;
  std::atomic<std::uint64_t> cycles_ = 0;
  std::atomic<std::uint32_t> quantum_ = 0;
  std::atomic<double> load_ = 0.0;
  std::atomic<std::uint64_t> missedCycles_ = 0;
  std::uint64_t nextPosition_ = 0;  // the audio thread's
};

}  // namespace engine
