#include "platform/linux/audio/pulse_peak.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <utility>

namespace platform {
namespace {

// Peaks in a second: each tells of a fiftieth of a second, long enough for one cycle of the lowest
// sound and short enough for whoever waits for it.
constexpr std::uint32_t kPeaksPerSecond = 50;

constexpr pa_sample_spec kPeaks = {PA_SAMPLE_FLOAT32NE, kPeaksPerSecond, 1};

constexpr auto kFlags =
    static_cast<pa_stream_flags_t>(PA_STREAM_PEAK_DETECT | PA_STREAM_ADJUST_LATENCY |
                                   PA_STREAM_DONT_MOVE | PA_STREAM_DONT_INHIBIT_AUTO_SUSPEND);

float Highest(const void* data, std::size_t bytes) {
  float highest = 0.0F;
  for (std::size_t offset = 0; offset + sizeof(float) <= bytes; offset += sizeof(float)) {
    float value = 0.0F;
    std::memcpy(&value, static_cast<const std::byte*>(data) + offset, sizeof(value));
    highest = std::max(highest, std::fabs(value));
  }
  return std::min(highest, 1.0F);
}

}  // namespace

PulsePeak::PulsePeak(pa_context* context, const std::string& monitor, OnPeak onPeak)
    : onPeak_(std::move(onPeak)), stream_(pa_stream_new(context, "Peak level", &kPeaks, nullptr)) {
  if (stream_ == nullptr) {
    onPeak_(std::nullopt);
    return;
  }
  pa_stream_set_state_callback(stream_, OnState, this);
  pa_stream_set_read_callback(stream_, OnRead, this);
  pa_buffer_attr buffer{};
  buffer.maxlength = static_cast<std::uint32_t>(-1);
  buffer.fragsize = sizeof(float);
  if (pa_stream_connect_record(stream_, monitor.c_str(), &buffer, kFlags) != 0) {
    onPeak_(std::nullopt);
  }
}

PulsePeak::~PulsePeak() {
  if (stream_ == nullptr) return;
  pa_stream_set_state_callback(stream_, nullptr, nullptr);
  pa_stream_set_read_callback(stream_, nullptr, nullptr);
  if (IsGood()) pa_stream_disconnect(stream_);
  pa_stream_unref(stream_);
}

bool PulsePeak::IsGood() const {
  return stream_ != nullptr && PA_STREAM_IS_GOOD(pa_stream_get_state(stream_)) != 0;
}

bool PulsePeak::IsUnanswered() const {
  return stream_ != nullptr && pa_stream_get_state(stream_) == PA_STREAM_CREATING;
}

void PulsePeak::OnState(pa_stream* stream, void* peak) {
  if (PA_STREAM_IS_GOOD(pa_stream_get_state(stream)) == 0) {
    static_cast<PulsePeak*>(peak)->onPeak_(std::nullopt);
  }
}

void PulsePeak::OnRead(pa_stream* stream, std::size_t /*bytes*/, void* peak) {
  const void* data = nullptr;
  std::size_t bytes = 0;
  if (pa_stream_peek(stream, &data, &bytes) != 0 || bytes == 0) return;
  // A hole has a size and no data.
  const float highest = data == nullptr ? 0.0F : Highest(data, bytes);
  pa_stream_drop(stream);
  static_cast<PulsePeak*>(peak)->onPeak_(highest);
}

}  // namespace platform
