#pragma once

#include <pipewire/pipewire.h>
#include <spa/param/latency-utils.h>

#include <array>
#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "engine/audio_gate.h"
#include "engine/pipewire/stream_meter.h"
#include "engine/sound_processor.h"

namespace engine {

// The name of the node that sound comes in by.
inline constexpr const char* kSinkNode = "tonalyx-engine";

// A sink that the redirection leads to, and a stream that plays what comes in, processed, to
// the user's own sink. Both at the graph's rate and quantum. To be made, asked and destroyed under
// the connection's lock.
class SoundStreams {
 public:
  // Called on the connection's thread, before the first sound at that rate.
  using OnRate = std::function<void(std::uint32_t rate)>;

  SoundStreams(pw_loop* loop, pw_core* core, SoundProcessor& processor, OnRate onRate);
  ~SoundStreams();
  SoundStreams(const SoundStreams&) = delete;
  SoundStreams& operator=(const SoundStreams&) = delete;

  // Empty when both streams could be connected.
  const std::string& Failure() const { return failure_; }

  // Of the node that plays; PW_ID_ANY until the server has given one.
  std::uint32_t PlaybackNode() const { return pw_stream_get_node_id(playback_.get()); }
  // Lets every program know which sink what comes in goes to.
  void TellSink(const std::string& name);
  bool IsPlaying() const;
  // 0 before the first sound.
  std::uint32_t Rate() const { return rate_; }
  const StreamMeter& Meter() const { return meter_; }

 private:
  struct Delete {
    void operator()(pw_stream* stream) const { pw_stream_destroy(stream); }
  };
  using StreamPointer = std::unique_ptr<pw_stream, Delete>;

  static void OnCaptureParam(void* streams, std::uint32_t id, const spa_pod* param);
  static void OnPlaybackParam(void* streams, std::uint32_t id, const spa_pod* param);
  static void OnCaptureState(void* streams, pw_stream_state old, pw_stream_state state,
                             const char* error);
  static void OnWatch(void* streams, std::uint64_t expirations);
  static void OnCaptureProcess(void* streams);
  static void OnPlaybackProcess(void* streams);
  static const pw_stream_events kCaptureEvents;
  static const pw_stream_events kPlaybackEvents;

  void Connect(pw_stream* stream, pw_direction direction, pw_stream_flags more);
  void Watch(pw_stream_state state);
  void TakeFormat(const spa_pod* param);
  void TakeLatency(const spa_pod* param);
  void PassLatency(spa_latency_info latency);
  // Audio thread.
  void Process() noexcept;
  void Render(const spa_buffer& in, const spa_buffer& out) noexcept;

  pw_loop* const loop_;
  SoundProcessor& processor_;
  const OnRate onRate_;
  StreamMeter meter_;
  std::atomic<std::uint32_t> rate_ = 0;
  std::atomic<bool> isFresh_ = true;  // what the processor remembers is not what comes next
  AudioGate gate_;  // to the capturing stream, which the other one's process takes from
  // What others said: the limiter's part of it depends on the rate.
  std::array<spa_latency_info, 2> latencies_{};  // by their directions
  std::string failure_;
  StreamPointer capture_;
  StreamPointer playback_;
  spa_source* watch_;  // a timer that runs while sound does
  std::uint64_t watchedCycles_ = 0;
  spa_hook captureListener_{};
  spa_hook playbackListener_{};
};

}  // namespace engine
