// The peak of what a sink plays, by a recording of its monitor.
#pragma once

#include <pulse/pulseaudio.h>

#include <functional>
#include <optional>
#include <string>

namespace platform {

// Lives under the main loop's lock. Destruction ends the recording.
class PulsePeak {
 public:
  // Gets each new peak, 0.0 to 1.0, or nothing, once, when the source cannot be recorded any more.
  using OnPeak = std::function<void(std::optional<float> peak)>;

  // Begins at once; `onPeak` may be called before the constructor returns.
  PulsePeak(pa_context* context, const std::string& monitor, OnPeak onPeak);
  ~PulsePeak();
  PulsePeak(const PulsePeak&) = delete;
  PulsePeak& operator=(const PulsePeak&) = delete;

  // Whether more peaks may come, and whether the server still owes its answer to the wish to
  // record.
  bool IsGood() const;
  bool IsUnanswered() const;

 private:
  static void OnState(pa_stream* stream, void* peak);
  static void OnRead(pa_stream* stream, std::size_t bytes, void* peak);

  const OnPeak onPeak_;
  pa_stream* stream_;
};

}  // namespace platform
