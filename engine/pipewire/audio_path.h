// The engine's place in the sound of a PipeWire session.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "engine/engine_status.h"
#include "engine/sound_processor.h"

namespace engine {

// Whatever is played comes in from the moment when it is open, goes through the processor on the
// server's real-time thread, and on to the user's own sink. One thread makes and destroys it.
class AudioPath {
 public:
  // All are called on a thread of the path's own.
  struct Listener {
    // The server is gone, and with it every use of this object.
    std::function<void(const std::string& reason)> onLost;
    // Sound at this rate comes next.
    std::function<void(std::uint32_t rate)> onRate;
    // Which set is heard, when somebody asks for the status.
    std::function<SetStatus()> set;
  };

  enum class Failure { NoServer, SecondEngine, NoStreams };

  // What `processor` and the listener's functions need must outlive the path. On a failure the path
  // is null.
  static std::unique_ptr<AudioPath> Open(SoundProcessor& processor, Listener listener,
                                         Failure* failure);
  // Sends every stream back to where it would play without an engine.
  ~AudioPath();
  AudioPath(const AudioPath&) = delete;
  AudioPath& operator=(const AudioPath&) = delete;

 private:
  struct Impl;

  explicit AudioPath(std::unique_ptr<Impl> impl);

  std::unique_ptr<Impl> impl_;
};

// The status of the engine that runs in this session, as JSON; nothing when none answers.
std::optional<std::string> StatusOfRunningEngine();

}  // namespace engine
