#include "tests/audio/pulse_daemon.h"

#include <signal.h>

#include <cmath>
#include <cstdlib>
#include <fstream>
#include <numbers>
#include <stdexcept>
#include <string_view>
#include <thread>

namespace support {

using namespace std::chrono_literals;

namespace {

bool UsesPipeWire() {
  const char* wanted = std::getenv("TONALYX_TEST_AUDIO_SERVER");
  return wanted != nullptr && std::string_view(wanted) == "pipewire";
}

}  // namespace

PulseDaemon::PulseDaemon(std::vector<std::string> sinks) : sinks_(std::move(sinks)) {
  Start();
}

std::string PulseDaemon::Server() const {
  return "unix:" + (folder_.Path() / "native").string();
}

std::map<std::string, std::string> PulseDaemon::Environment() const {
  const std::string folder = folder_.Path().string();
  return {{"HOME", folder},
          {"XDG_RUNTIME_DIR", folder},
          {"PULSE_RUNTIME_PATH", folder},
          {"PULSE_STATE_PATH", folder},
          {"PULSE_SERVER", Server()},
          {"DISPLAY", ""},
          {"DBUS_SESSION_BUS_ADDRESS", ""}};
}

std::vector<std::string> PulseDaemon::Command() const {
  if (UsesPipeWire()) return {TONALYX_SOURCE_DIR "/tests/audio/pipewire_server.sh"};
  std::vector<std::string> command = {"pulseaudio",        "-n",
                                      "--daemonize=no",    "--exit-idle-time=-1",
                                      "--use-pid-file=no", "--disable-shm=yes",
                                      "--log-level=error"};
  for (const std::string& sink : sinks_) {
    command.push_back("--load=module-null-sink sink_name=" + sink);
  }
  // Last, so that whoever connects finds the sinks.
  command.push_back("--load=module-native-protocol-unix auth-anonymous=1 socket=" +
                    (folder_.Path() / "native").string());
  return command;
}

void PulseDaemon::Start() {
  // A server that was killed leaves its sockets behind.
  for (const char* name : {"native", "pid", "pipewire-0", "pipewire-0.lock", "bus"}) {
    std::filesystem::remove(folder_.Path() / name);
  }
  server_.emplace(Command(), Environment());
  ControlWhenReady({"info"});
  modules_.clear();
  for (std::size_t i = 0; i < sinks_.size(); ++i) {
    modules_.push_back(UsesPipeWire() ? AddSink(sinks_[i]) : std::to_string(i));
  }
  // The part that knows of defaults is the last to be there.
  if (UsesPipeWire() && !sinks_.empty()) ControlWhenReady({"set-default-sink", sinks_[0]});
}

void PulseDaemon::ControlWhenReady(std::vector<std::string> command) {
  command.insert(command.begin(), "pactl");
  for (int attempt = 0; RunProcess(command, Environment()).exitStatus != 0; ++attempt) {
    if (attempt == 200) throw std::runtime_error("the audio server does not start");
    std::this_thread::sleep_for(25ms);
  }
}

void PulseDaemon::Kill() {
  server_->Kill(SIGKILL);
  server_->WaitForExit(5s);
}

std::string PulseDaemon::Control(const std::vector<std::string>& arguments) {
  std::vector<std::string> command = {"pactl"};
  command.insert(command.end(), arguments.begin(), arguments.end());
  const ProcessResult result = RunProcess(command, Environment());
  if (result.exitStatus != 0) throw std::runtime_error("pactl: " + result.errors);
  return result.output;
}

void PulseDaemon::RemoveSink(std::size_t index) {
  Control({"unload-module", modules_.at(index)});
}

std::string PulseDaemon::AddSink(const std::string& name, const std::string& description) {
  std::string number = Control({"load-module", "module-null-sink", "sink_name=" + name,
                                "sink_properties=device.description='" + description + "'"});
  while (!number.empty() && number.back() == '\n') number.pop_back();
  return number;
}

std::unique_ptr<ChildProcess> PulseDaemon::Play(const std::vector<float>& second,
                                                const std::vector<std::string>& options) {
  constexpr int kSeconds = 60;
  const std::filesystem::path file = folder_.Path() / ("sound" + std::to_string(++sounds_));
  std::ofstream stream(file, std::ios::binary);
  for (int i = 0; i < kSeconds; ++i) {
    stream.write(reinterpret_cast<const char*>(second.data()),
                 static_cast<std::streamsize>(second.size() * sizeof(float)));
  }
  stream.close();
  std::vector<std::string> command = {"pacat",
                                      "--playback",
                                      "--raw",
                                      "--format=float32le",
                                      "--channels=2",
                                      file,
                                      "--rate=" + std::to_string(second.size() / 2)};
  command.insert(command.end(), options.begin(), options.end());
  return std::make_unique<ChildProcess>(command, Environment());
}

std::unique_ptr<ChildProcess> PulseDaemon::PlayTone(const std::string& sink, double level,
                                                    std::chrono::milliseconds latency) {
  constexpr int kRate = 44100;
  constexpr double kHertz = 441.0;
  std::vector<float> second;
  for (int i = 0; i < 2 * kRate; ++i) {
    second.push_back(
        static_cast<float>(level * std::sin(2.0 * std::numbers::pi * kHertz * (i / 2) / kRate)));
  }
  auto player =
      Play(second, {"--device=" + sink, "--latency-msec=" + std::to_string(latency.count())});
  for (int attempt = 0; Control({"list", "short", "sink-inputs"}).empty(); ++attempt) {
    if (attempt == 200) throw std::runtime_error("nothing plays");
    std::this_thread::sleep_for(25ms);
  }
  return player;
}

}  // namespace support
