// An audio server of a test's own, apart from the user's.
#pragma once

#include <chrono>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "tests/support/child_process.h"
#include "tests/support/temporary_folder.h"

namespace support {

// PulseAudio or, where TONALYX_TEST_AUDIO_SERVER says "pipewire", PipeWire in its place. Runs until
// destruction. Its sinks are null sinks: they play to nowhere, in real time.
class PulseDaemon {
 public:
  // Starts with these sinks, the first as the default, unless told to wait.
  explicit PulseDaemon(std::vector<std::string> sinks);
  ~PulseDaemon() = default;

  // What a client names the server by; the same after every start.
  std::string Server() const;
  // What a client of another program finds it by.
  std::map<std::string, std::string> Environment() const;

  void Start();
  // Kills it outright.
  void Kill();
  // SIGSTOP halts it, SIGCONT lets it go on.
  void Send(int signal) { server_->Kill(signal); }

  // Runs pactl and gives what it printed; throws when it fails.
  std::string Control(const std::vector<std::string>& arguments);
  // The number of the module that carries a sink made now.
  std::string AddSink(const std::string& name, const std::string& description = "");
  // Takes one of the sinks away that the server started with.
  void RemoveSink(std::size_t index);

  // Plays a second of stereo sound again and again, for a minute or until the player is destroyed;
  // `options` are pacat's.
  std::unique_ptr<ChildProcess> Play(const std::vector<float>& second,
                                     const std::vector<std::string>& options);
  // A sine tone of this level, 0 to 1; returns when it has reached the server.
  std::unique_ptr<ChildProcess> PlayTone(
      const std::string& sink, double level,
      std::chrono::milliseconds latency = std::chrono::milliseconds(50));

 private:
  std::vector<std::string> Command() const;
  void ControlWhenReady(std::vector<std::string> command);

  TemporaryFolder folder_;
  const std::vector<std::string> sinks_;
  std::vector<std::string> modules_;
  int sounds_ = 0;
  std::optional<ChildProcess> server_;
};

}  // namespace support
