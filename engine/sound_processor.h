#pragma once

#include <cstddef>
#include <memory>

#include "engine/design_exchange.h"

namespace engine {

// By how many frames the output lies behind the input: what the limiter looks ahead. Depends on the
// rate alone, whatever the settings, so that a change of them moves nothing.
std::size_t LatencyFrames(double sampleRate);

// Makes the sound, on the audio thread. Until the first design is published sound passes unchanged
// but for the limiter, as at 48 kHz.
class SoundProcessor {
 public:
  // Allocates and touches all memory that it will ever use. `exchange` must outlive it.
  explicit SoundProcessor(DesignExchange& exchange);
  ~SoundProcessor();
  SoundProcessor(const SoundProcessor&) = delete;
  SoundProcessor& operator=(const SoundProcessor&) = delete;

  // Any number of frames, 0 among them. Outputs may be the inputs' own memory, each channel its
  // own; any alignment. Full scale is 1; samples may be anything, what is no number counts as
  // silence.
  //
  // Neither allocates nor locks nor calls the system, and leaves the floating-point mode as it was.
  //
  // Takes the latest design at its start and fades to it within 20 ms; a design that comes during a
  // fade waits for its end, and only the latest counts. One for another rate forgets the past and
  // starts from silence.
  void Process(const float* inLeft, const float* inRight, float* outLeft, float* outRight,
               std::size_t frames) noexcept;

  // The same from silence: forgets what was heard, keeps the design. Audio thread, or while it
  // stands still.
  void Reset() noexcept;

 private:
  struct State;

  DesignExchange& exchange_;
  std::unique_ptr<State> state_;
};

}  // namespace engine
