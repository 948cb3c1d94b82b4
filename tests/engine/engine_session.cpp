#include "tests/engine/engine_session.h"

#include <cmath>
#include <fstream>
#include <numbers>
#include <sstream>

#include "engine_link/event_names.h"
#include "platform/linux/events/fifo_events.h"
#include "store/registry_layout.h"
#include "tests/engine/player.h"

namespace engine {

namespace fs = std::filesystem;
using std::chrono::milliseconds;
using support::ChildProcess;
using support::Eventually;
using Clock = std::chrono::steady_clock;

namespace {

constexpr const char* kEngine = TONALYX_BIN_DIR "/tonalyx-engine";
constexpr double kNear = 0.2;  // dB
constexpr std::size_t kFrameBytes = sizeof(std::array<float, 2>);

std::vector<std::string> RecordCommand(const std::string& sink, int rate, const fs::path& file) {
  // Stays with its sink when the default changes.
  return {"parec",
          "--raw",
          "--format=float32le",
          "--channels=2",
          "--rate=" + std::to_string(rate),
          "--latency-msec=20",
          "--property=node.dont-reconnect=true",
          "-d",
          sink + ".monitor",
          file};
}

}  // namespace

Recording::Recording(const std::string& sink, int rate, const fs::path& folder,
                     const std::map<std::string, std::string>& environment)
    : rate_(rate),
      file_(folder / (sink + std::to_string(Clock::now().time_since_epoch().count()))),
      recorder_(RecordCommand(sink, rate, file_), environment) {}

double Recording::Level(int frequency, double seconds) const {
  std::ifstream stream(file_, std::ios::binary | std::ios::ate);
  const auto wanted = static_cast<std::size_t>(seconds * rate_);
  const std::size_t frames = stream ? static_cast<std::size_t>(stream.tellg()) / kFrameBytes : 0;
  if (frames < wanted) return -INFINITY;
  std::vector<std::array<float, 2>> samples(wanted);
  stream.seekg(static_cast<std::streamoff>((frames - wanted) * kFrameBytes));
  stream.read(reinterpret_cast<char*>(samples.data()), std::ssize(samples) * kFrameBytes);
  std::vector<float> left;
  for (const auto& frame : samples) left.push_back(frame[0]);
  return Decibels(std::max(Amplitude(left, frequency, rate_), 1e-9) / kToneLevel);
}

EngineSession::EngineSession() {
  environment_["TONALYX_ROOT"] = root_;
  registry_ = std::make_unique<platform::SqliteRegistry>(root_);
}

std::unique_ptr<ChildProcess> EngineSession::LaunchEngine(
    const std::map<std::string, std::string>& more) {
  auto environment = environment_;
  for (const auto& [name, value] : more) environment[name] = value;
  return std::make_unique<ChildProcess>(std::vector<std::string>{kEngine}, environment);
}

std::unique_ptr<ChildProcess> EngineSession::StartEngine(
    const std::map<std::string, std::string>& more) {
  auto engine = LaunchEngine(more);
  EXPECT_TRUE(Eventually([this] { return !Status().is_null(); })) << engine->RestOfErrors();
  return engine;
}

nlohmann::json EngineSession::Status() const {
  const support::ProcessResult result = Run({kEngine, "--status", "--json"});
  return result.exitStatus == 0 ? nlohmann::json::parse(result.output) : nlohmann::json();
}

support::ProcessResult EngineSession::Run(const std::vector<std::string>& command) const {
  return support::RunProcess(command, environment_);
}

std::unique_ptr<ChildProcess> EngineSession::Play(int rate, const std::string& property) {
  std::vector<float> second;
  for (int i = 0; i < rate; ++i) {
    double value = 0.0;
    for (const int tone : kTones) {
      value += kToneLevel * std::sin(2.0 * std::numbers::pi * tone * i / rate + tone);
    }
    second.push_back(static_cast<float>(value));
    second.push_back(static_cast<float>(0.5 * value));
  }
  return server_.Play(second, {"--latency-msec=300", "--property=" + property});
}

std::unique_ptr<Recording> EngineSession::Record(const std::string& sink, int rate) const {
  return std::make_unique<Recording>(sink, rate, folder_.Path(), environment_);
}

nlohmann::json EngineSession::NodeProperties(const std::string& kind, const std::string& name) {
  for (const auto& node : nlohmann::json::parse(server_.Control({"--format=json", "list", kind}))) {
    if (node["properties"].value("node.name", "") == name) return node["properties"];
  }
  return nlohmann::json::object();
}

void EngineSession::Store(const std::u16string& route, const std::u16string& setting, int parameter,
                          float value) {
  support::PutFloat(*registry_, support::Settings(route) + u"\\" + setting,
                    store::ParameterName(static_cast<std::size_t>(parameter)), value);
}

void EngineSession::Activate(const std::u16string& route, const std::u16string& setting) {
  support::PutText(*registry_, support::Settings(route), u"ActiveSetting", setting);
}

void EngineSession::StoreTwoSettings(const std::u16string& route) {
  constexpr int kGainAt1000 = 146;
  Store(route, u"1", kGainAt1000, 0.5011872F);
  Store(route, u"2", kGainAt1000, 0.2511886F);
  Activate(route, u"1");
}

bool EngineSession::Wake() {
  const auto event = platform::FifoEvents(root_ / "events").Open(engine_link::kServiceEvent);
  return event && event->Set();
}

milliseconds EngineSession::WaitForLevel(const Recording& recording, double decibels) const {
  const Clock::time_point begin = Clock::now();
  EXPECT_TRUE(Eventually([&] { return std::abs(recording.Level(1000) - decibels) < kNear; }))
      << "is at " << recording.Level(1000) << " dB, not at " << decibels << " dB; " << Status();
  return std::chrono::duration_cast<milliseconds>(Clock::now() - begin);
}

void EngineSession::MoveStream(const std::string& sink, bool isBrief) {
  const auto stream = NodeProperties("sink-inputs", "pacat").at("object.id").get<std::string>();
  const auto target = NodeProperties("sinks", sink);
  Run({"pw-metadata", "--", stream, "target.node", target.value("object.id", "-1"), "Spa:Id"});
  if (isBrief) return;
  Run({"pw-metadata", "--", stream, "target.object", target.value("object.serial", "-1"),
       "Spa:Id"});
}

}  // namespace engine
