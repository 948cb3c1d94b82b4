// One question to the audio server for all that is known about its sinks.
#pragma once

#include <pulse/pulseaudio.h>

#include <array>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "platform/linux/audio/pulse_state.h"

namespace platform {

// Lives under the main loop's lock. Destruction cancels what is still asked.
class PulseFetch {
 public:
  // Gets the state, or nothing when the server refused to answer.
  using Done = std::function<void(std::optional<PulseState> state)>;

  // Asks at once; `done` is called at most once, by the main loop.
  PulseFetch(pa_context* context, Done done);
  ~PulseFetch();
  PulseFetch(const PulseFetch&) = delete;
  PulseFetch& operator=(const PulseFetch&) = delete;

  bool IsDone() const { return waiting_ == 0; }

 private:
  using Properties = std::map<std::string, std::string>;

  static void OnServer(pa_context* context, const pa_server_info* info, void* fetch);
  static void OnSink(pa_context* context, const pa_sink_info* info, int end, void* fetch);
  static void OnCard(pa_context* context, const pa_card_info* info, int end, void* fetch);

  void Answered();
  void JoinCards();

  Done done_;
  PulseState state_;
  std::vector<std::uint32_t> cardOfSink_;
  std::map<std::uint32_t, Properties> cards_;
  std::array<pa_operation*, 3> operations_{};
  std::size_t waiting_ = 3;
  enum class Outcome { Complete, Refused } outcome_ = Outcome::Complete;
};

}  // namespace platform
