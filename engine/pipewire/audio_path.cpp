#include "engine/pipewire/audio_path.h"

#include <chrono>
#include <utility>

#include "engine/pipewire/fed_sink.h"
#include "engine/pipewire/graph_watch.h"
#include "engine/pipewire/server_connection.h"
#include "engine/pipewire/sound_streams.h"
#include "engine/pipewire/status_socket.h"
#include "engine/pipewire/stream_redirection.h"

namespace engine {
namespace {

constexpr std::chrono::seconds kLongestFarewell(1);

}  // namespace

struct AudioPath::Impl {
  explicit Impl(Listener given) : listener(std::move(given)) {}
  ~Impl() {
    if (!connection) return;
    const ServerConnection::Lock lock(*connection);
    if (redirection) {
      redirection->ReadAgain();
      connection->WaitForServer(kLongestFarewell);
      redirection->TakeBack();
      connection->WaitForServer(kLongestFarewell);
    }
    status.reset();
    watch.reset();
    redirection.reset();
    fedSink.reset();
    streams.reset();
  }

  AudioStatus Status() const {
    AudioStatus told;
    told.isPlaying = streams->IsPlaying();
    told.sink = fedSink->Name();
    told.rate = streams->Rate();
    told.quantum = streams->Meter().Quantum();
    told.latency = told.rate == 0
                       ? 0
                       : static_cast<std::uint32_t>(LatencyFrames(static_cast<double>(told.rate)));
    told.load = told.isPlaying ? streams->Meter().Load() : 0.0;
    told.xruns = streams->Meter().MissedCycles();
    return told;
  }

  void ServeStatus() {
    const auto path = StatusSocketPath();
    if (!path) return;
    status.emplace(connection->Loop(), *path,
                   [this] { return StatusJson(Status(), listener.set()); });
  }

  const Listener listener;
  std::unique_ptr<ServerConnection> connection;
  std::optional<SoundStreams> streams;
  std::optional<FedSink> fedSink;
  std::optional<StreamRedirection> redirection;
  std::optional<GraphWatch> watch;
  std::optional<StatusSocket> status;
};

std::unique_ptr<AudioPath> AudioPath::Open(SoundProcessor& processor, Listener listener,
                                           Failure* failure) {
  if (StatusOfRunningEngine()) {
    *failure = Failure::SecondEngine;
    return nullptr;
  }
  auto impl = std::make_unique<Impl>(std::move(listener));
  impl->connection = ServerConnection::Open(impl->listener.onLost);
  if (!impl->connection) {
    *failure = Failure::NoServer;
    return nullptr;
  }
  {
    const ServerConnection::Lock lock(*impl->connection);
    pw_core* core = impl->connection->Core();
    impl->streams.emplace(impl->connection->Loop(), impl->connection->StreamCore(), processor,
                          impl->listener.onRate);
    impl->fedSink.emplace(*impl->streams);
    impl->redirection.emplace(core, kSinkNode);
    impl->watch.emplace(core, std::vector<GraphObserver*>{&*impl->fedSink, &*impl->redirection});
    impl->ServeStatus();
  }
  if (!impl->streams->Failure().empty()) {
    *failure = Failure::NoStreams;
    return nullptr;
  }
  return std::unique_ptr<AudioPath>(new AudioPath(std::move(impl)));
}

AudioPath::AudioPath(std::unique_ptr<Impl> impl) : impl_(std::move(impl)) {}

AudioPath::~AudioPath() = default;

std::optional<std::string> StatusOfRunningEngine() {
  const auto path = StatusSocketPath();
  return path ? AskStatus(*path) : std::nullopt;
}

}  // namespace engine
