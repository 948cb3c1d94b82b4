#include "engine/pipewire/sound_streams.h"

#include <spa/param/audio/format-utils.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstring>
#include <utility>

#include "platform/linux/audio/engine_sink.h"

namespace engine {
namespace {

constexpr std::uint32_t kChannels = 2;

// Longer than the longest cycle, 8192 frames at 44100 Hz.
constexpr timespec kWatchInterval = {0, 250'000'000};

using PodMemory = std::array<std::uint8_t, 1024>;

spa_pod_builder BuilderIn(PodMemory& memory) {
  spa_pod_builder builder{};
  builder.data = memory.data();
  builder.size = static_cast<std::uint32_t>(memory.size());
  return builder;
}

// One name for both nodes, so that the session manager never plays one to the other, and another in
// each process.
std::string GroupName() {
  return std::string(kSinkNode) + "-" + std::to_string(getpid());
}

// A sink like any other, for servers of other protocols wait until a new stream is linked to one.
// It never becomes the default by itself while there is another.
pw_properties* CaptureProperties() {
  const std::string group = GroupName();
  return pw_properties_new(PW_KEY_NODE_NAME, kSinkNode, PW_KEY_NODE_DESCRIPTION, "Tonalyx",
                           PW_KEY_MEDIA_CLASS, "Audio/Sink", PW_KEY_NODE_VIRTUAL, "true",
                           PW_KEY_PRIORITY_SESSION, "-1", PW_KEY_NODE_GROUP, group.c_str(),
                           PW_KEY_NODE_LINK_GROUP, group.c_str(), SPA_KEY_AUDIO_POSITION,
                           "[ FL FR ]", platform::kEngineSinkProperty, "", nullptr);
}

// Passive: what nobody plays to keeps no device awake.
pw_properties* PlaybackProperties() {
  const std::string group = GroupName();
  return pw_properties_new(
      PW_KEY_NODE_NAME, "tonalyx-engine-output", PW_KEY_NODE_DESCRIPTION, "Tonalyx",
      PW_KEY_MEDIA_NAME, "Tonalyx", PW_KEY_MEDIA_CLASS, "Stream/Output/Audio", PW_KEY_NODE_GROUP,
      group.c_str(), PW_KEY_NODE_LINK_GROUP, group.c_str(), PW_KEY_NODE_PASSIVE, "true",
      PW_KEY_STREAM_DONT_REMIX, "true", SPA_KEY_AUDIO_POSITION, "[ FL FR ]", nullptr);
}

// Stereo, a plane for each channel, at whatever rate the graph has.
const spa_pod* BuildFormat(spa_pod_builder& builder) {
  spa_audio_info_raw info{};
  info.format = SPA_AUDIO_FORMAT_F32P;
  info.channels = kChannels;
  info.position[0] = SPA_AUDIO_CHANNEL_FL;
  info.position[1] = SPA_AUDIO_CHANNEL_FR;
  return spa_format_audio_raw_build(&builder, SPA_PARAM_EnumFormat, &info);
}

bool IsStereo(const spa_buffer& buffer) {
  return buffer.n_datas == kChannels && buffer.datas[0].data != nullptr &&
         buffer.datas[1].data != nullptr;
}

struct Plane {
  const float* samples;
  std::uint32_t frames;
};

Plane InputPlane(const spa_data& data) {
  const std::uint32_t offset = std::min(data.chunk->offset, data.maxsize);
  const std::uint32_t size = std::min(data.chunk->size, data.maxsize - offset);
  const auto* bytes = static_cast<const std::uint8_t*>(data.data) + offset;
  return {reinterpret_cast<const float*>(bytes), size / static_cast<std::uint32_t>(sizeof(float))};
}

void SetFrames(const spa_data& data, std::uint32_t frames) {
  data.chunk->offset = 0;
  data.chunk->stride = sizeof(float);
  data.chunk->size = frames * static_cast<std::uint32_t>(sizeof(float));
}

// The newest buffer; older ones, left over from a cycle that was missed, would only come late.
pw_buffer* TakeNewest(pw_stream* stream) {
  pw_buffer* newest = nullptr;
  while (pw_buffer* next = pw_stream_dequeue_buffer(stream)) {
    if (newest != nullptr) pw_stream_queue_buffer(stream, newest);
    newest = next;
  }
  return newest;
}

}  // namespace

const pw_stream_events SoundStreams::kCaptureEvents = [] {
  pw_stream_events events{};
  events.version = PW_VERSION_STREAM_EVENTS;
  events.state_changed = OnCaptureState;
  events.param_changed = OnCaptureParam;
  events.process = OnCaptureProcess;
  return events;
}();

const pw_stream_events SoundStreams::kPlaybackEvents = [] {
  pw_stream_events events{};
  events.version = PW_VERSION_STREAM_EVENTS;
  events.param_changed = OnPlaybackParam;
  events.process = OnPlaybackProcess;
  return events;
}();

SoundStreams::SoundStreams(pw_loop* loop, pw_core* core, SoundProcessor& processor, OnRate onRate)
    : loop_(loop),
      processor_(processor),
      onRate_(std::move(onRate)),
      capture_(pw_stream_new(core, "Tonalyx", CaptureProperties())),
      playback_(pw_stream_new(core, "Tonalyx", PlaybackProperties())),
      watch_(pw_loop_add_timer(loop, OnWatch, this)) {
  latencies_[SPA_DIRECTION_OUTPUT].direction = SPA_DIRECTION_OUTPUT;
  pw_stream_add_listener(capture_.get(), &captureListener_, &kCaptureEvents, this);
  pw_stream_add_listener(playback_.get(), &playbackListener_, &kPlaybackEvents, this);
  Connect(capture_.get(), PW_DIRECTION_INPUT, PW_STREAM_FLAG_NONE);
  // Runs within the cycle that brought its sound, where it would run one later by itself.
  Connect(playback_.get(), PW_DIRECTION_OUTPUT, PW_STREAM_FLAG_TRIGGER);
}

// The capturing stream triggers the other and goes first.
SoundStreams::~SoundStreams() {
  pw_loop_destroy_source(loop_, watch_);
  gate_.Close();
  capture_.reset();
  playback_.reset();
}

void SoundStreams::Connect(pw_stream* stream, pw_direction direction, pw_stream_flags more) {
  PodMemory memory;
  spa_pod_builder builder = BuilderIn(memory);
  const spa_pod* params[] = {BuildFormat(builder)};
  const auto flags = static_cast<pw_stream_flags>(
      PW_STREAM_FLAG_AUTOCONNECT | PW_STREAM_FLAG_MAP_BUFFERS | PW_STREAM_FLAG_RT_PROCESS | more);
  const int result = pw_stream_connect(stream, direction, PW_ID_ANY, flags, params, 1);
  if (result < 0) failure_ = std::strerror(-result);
}

void SoundStreams::TellSink(const std::string& name) {
  const spa_dict_item item = {platform::kEngineSinkProperty, name.c_str()};
  const spa_dict properties = {0, 1, &item};
  pw_stream_update_properties(capture_.get(), &properties);
}

bool SoundStreams::IsPlaying() const {
  return pw_stream_get_state(capture_.get(), nullptr) == PW_STREAM_STATE_STREAMING;
}

void SoundStreams::OnCaptureState(void* streams, pw_stream_state /*old*/, pw_stream_state state,
                                  const char* /*error*/) {
  auto& self = *static_cast<SoundStreams*>(streams);
  self.Watch(state);
  self.isFresh_ = true;
  self.meter_.Interrupt();
}

void SoundStreams::Watch(pw_stream_state state) {
  timespec interval = state == PW_STREAM_STATE_STREAMING ? kWatchInterval : timespec{};
  watchedCycles_ = meter_.Cycles();
  pw_loop_update_timer(loop_, watch_, &interval, &interval, false);
}

// When the graph's driver changes twice in a moment the server can lose count of what a triggered
// stream waits for, and then waits for it in every cycle. The stream that is fed anew sets it
// right.
void SoundStreams::OnWatch(void* streams, std::uint64_t /*expirations*/) {
  auto& self = *static_cast<SoundStreams*>(streams);
  const std::uint64_t cycles = self.meter_.Cycles();
  if (std::exchange(self.watchedCycles_, cycles) != cycles) return;
  self.gate_.Close();
  pw_stream_disconnect(self.capture_.get());
  self.Connect(self.capture_.get(), PW_DIRECTION_INPUT, PW_STREAM_FLAG_NONE);
  self.gate_.Open();
}

void SoundStreams::OnCaptureParam(void* streams, std::uint32_t id, const spa_pod* param) {
  auto& self = *static_cast<SoundStreams*>(streams);
  if (param == nullptr) return;
  if (id == SPA_PARAM_Format) self.TakeFormat(param);
  if (id == SPA_PARAM_Latency) self.TakeLatency(param);
}

void SoundStreams::OnPlaybackParam(void* streams, std::uint32_t id, const spa_pod* param) {
  if (param != nullptr && id == SPA_PARAM_Latency) {
    static_cast<SoundStreams*>(streams)->TakeLatency(param);
  }
}

void SoundStreams::TakeFormat(const spa_pod* param) {
  spa_audio_info_raw info{};
  if (spa_format_audio_raw_parse(param, &info) < 0 || info.rate == 0) return;
  isFresh_ = true;
  rate_ = info.rate;
  onRate_(info.rate);
  for (const spa_latency_info& latency : latencies_) PassLatency(latency);
}

void SoundStreams::TakeLatency(const spa_pod* param) {
  spa_latency_info latency{};
  if (spa_latency_parse(param, &latency) < 0) return;
  latencies_[latency.direction] = latency;
  PassLatency(latency);
}

// What lies behind one stream lies behind the other too, and the limiter besides.
void SoundStreams::PassLatency(spa_latency_info latency) {
  const std::uint32_t rate = rate_;
  const auto own = static_cast<std::uint32_t>(rate == 0 ? 0 : LatencyFrames(rate));
  latency.min_rate += own;
  latency.max_rate += own;
  PodMemory memory;
  spa_pod_builder builder = BuilderIn(memory);
  const spa_pod* params[] = {spa_latency_build(&builder, SPA_PARAM_Latency, &latency)};
  const bool isBehind = latency.direction == SPA_DIRECTION_INPUT;
  pw_stream_update_params((isBehind ? capture_ : playback_).get(), params, 1);
}

void SoundStreams::OnCaptureProcess(void* streams) {
  pw_stream_trigger_process(static_cast<SoundStreams*>(streams)->playback_.get());
}

void SoundStreams::OnPlaybackProcess(void* streams) {
  auto& self = *static_cast<SoundStreams*>(streams);
  if (!self.gate_.Enter()) return;
  self.Process();
  self.gate_.Leave();
}

void SoundStreams::Process() noexcept {
  pw_buffer* in = TakeNewest(capture_.get());
  pw_buffer* out = pw_stream_dequeue_buffer(playback_.get());
  if (out != nullptr) {
    if (in != nullptr && IsStereo(*in->buffer) && IsStereo(*out->buffer)) {
      Render(*in->buffer, *out->buffer);
    } else {
      for (std::uint32_t i = 0; i < out->buffer->n_datas; ++i) SetFrames(out->buffer->datas[i], 0);
    }
    pw_stream_queue_buffer(playback_.get(), out);
  }
  if (in != nullptr) pw_stream_queue_buffer(capture_.get(), in);
}

void SoundStreams::Render(const spa_buffer& in, const spa_buffer& out) noexcept {
  using Clock = std::chrono::steady_clock;
  const Clock::time_point begin = Clock::now();
  const Plane left = InputPlane(in.datas[0]);
  const Plane right = InputPlane(in.datas[1]);
  const auto room = static_cast<std::uint32_t>(
      std::min(out.datas[0].maxsize, out.datas[1].maxsize) / sizeof(float));
  const std::uint32_t frames = std::min({left.frames, right.frames, room});
  if (isFresh_.exchange(false)) processor_.Reset();
  processor_.Process(left.samples, right.samples, static_cast<float*>(out.datas[0].data),
                     static_cast<float*>(out.datas[1].data), frames);
  SetFrames(out.datas[0], frames);
  SetFrames(out.datas[1], frames);

  pw_time time{};
  const std::uint32_t rate = rate_.load(std::memory_order_relaxed);
  if (frames == 0 || rate == 0 || pw_stream_get_time_n(capture_.get(), &time, sizeof(time)) != 0) {
    return;
  }
  meter_.Note({frames, rate, time.ticks, Clock::now() - begin});
}

}  // namespace engine
