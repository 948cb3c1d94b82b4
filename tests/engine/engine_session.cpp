#include "tests/engine/engine_session.h"

#include <cmath>
#include <fstream>
#include <numbers>
#include <sstream>
#include <thread>

#include "dsp/response.h"
#include "engine_link/event_names.h"
#include "platform/linux/events/fifo_events.h"
#include "store/registry_layout.h"

namespace engine {

namespace fs = std::filesystem;
using std::chrono::milliseconds;
using support::ChildProcess;
using Clock = std::chrono::steady_clock;

namespace {

constexpr const char* kEngine = TONALYX_BIN_DIR "/tonalyx-engine";
constexpr double kTurn = 2.0 * std::numbers::pi;
constexpr double kNear = 0.2;  // dB
constexpr std::size_t kFrameBytes = 2 * sizeof(float);

std::vector<std::string> Format(int rate) {
  return {"--raw", "--format=float32le", "--channels=2", "--rate=" + std::to_string(rate)};
}

std::vector<std::string> RecordCommand(const std::string& sink, int rate, const fs::path& file) {
  std::vector<std::string> command = {"parec"};
  const std::vector<std::string> format = Format(rate);
  command.insert(command.end(), format.begin(), format.end());
  // Stays with its sink when the default changes.
  command.insert(command.end(), {"--latency-msec=20", "--property=node.dont-reconnect=true", "-d",
                                 sink + ".monitor", file});
  return command;
}

}  // namespace

double CurveAt(dsp::ConstParameterValues values, double frequency) {
  dsp::ResponsePlotData plot;
  dsp::BuildResponseGrid(plot.evalFreqs);
  dsp::CoefficientTable coefficients{};
  dsp::UpdateBandCoefficients(values, coefficients);
  dsp::EvaluateResponse(values, coefficients, plot);
  const auto& grid = plot.evalFreqs;
  const auto level = [&grid](std::size_t i) {
    return 20.0 * std::log10(std::hypot(static_cast<double>(grid.response.re[i]),
                                        static_cast<double>(grid.response.im[i])));
  };
  std::size_t i = 1;
  while (i + 1 < grid.f.size() && static_cast<double>(grid.f[i]) < frequency) ++i;
  const double below = std::log(static_cast<double>(grid.f[i - 1]));
  const double above = std::log(static_cast<double>(grid.f[i]));
  const double share = (std::log(frequency) - below) / (above - below);
  return level(i - 1) + share * (level(i) - level(i - 1));
}

Recording::Recording(const std::string& sink, int rate, const fs::path& folder,
                     const std::map<std::string, std::string>& environment)
    : rate_(rate),
      file_(folder / (sink + std::to_string(Clock::now().time_since_epoch().count()))),
      recorder_(RecordCommand(sink, rate, file_), environment) {}

std::vector<float> Recording::Last(double seconds) const {
  std::ifstream stream(file_, std::ios::binary | std::ios::ate);
  const auto wanted = static_cast<std::size_t>(seconds * rate_);
  const std::size_t frames = stream ? static_cast<std::size_t>(stream.tellg()) / kFrameBytes : 0;
  if (frames < wanted) return {};
  std::vector<float> samples(2 * wanted);
  stream.seekg(static_cast<std::streamoff>((frames - wanted) * kFrameBytes));
  stream.read(reinterpret_cast<char*>(samples.data()),
              static_cast<std::streamsize>(wanted * kFrameBytes));
  return samples;
}

double Recording::Level(int frequency, double seconds) const {
  const std::vector<float> samples = Last(seconds);
  double cosine = 0.0;
  double sine = 0.0;
  for (std::size_t i = 0; i < samples.size() / 2; ++i) {
    const double angle = kTurn * frequency * static_cast<double>(i) / rate_;
    cosine += static_cast<double>(samples[2 * i]) * std::cos(angle);
    sine += static_cast<double>(samples[2 * i]) * std::sin(angle);
  }
  const double amplitude = 2.0 * std::hypot(cosine, sine) / (seconds * rate_);
  return 20.0 * std::log10(std::max(amplitude, 1e-9) / kToneLevel);
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
  EXPECT_TRUE(WaitUntil([this] { return !Status().is_null(); })) << engine->RestOfErrors();
  return engine;
}

nlohmann::json EngineSession::Status() const {
  const support::ProcessResult result = Run({kEngine, "--status", "--json"});
  return result.exitStatus == 0 ? nlohmann::json::parse(result.output) : nlohmann::json();
}

support::ProcessResult EngineSession::Run(const std::vector<std::string>& command) const {
  return support::RunProcess(command, environment_);
}

std::unique_ptr<ChildProcess> EngineSession::Play(int rate) {
  constexpr int kSeconds = 60;
  const fs::path file = folder_.Path() / ("tones" + std::to_string(rate));
  if (!fs::exists(file)) {
    std::vector<float> second;
    for (int i = 0; i < rate; ++i) {
      double value = 0.0;
      for (const int tone : kTones) value += std::sin(kTurn * tone * i / rate + tone);
      second.push_back(static_cast<float>(kToneLevel * value));
      second.push_back(static_cast<float>(0.5 * kToneLevel * value));
    }
    std::ofstream stream(file, std::ios::binary);
    for (int i = 0; i < kSeconds; ++i) {
      stream.write(reinterpret_cast<const char*>(second.data()),
                   static_cast<std::streamsize>(second.size() * sizeof(float)));
    }
  }
  std::vector<std::string> command = {"pacat", "--playback", "--latency-msec=300"};
  const std::vector<std::string> format = Format(rate);
  command.insert(command.end(), format.begin(), format.end());
  command.push_back(file);
  return std::make_unique<ChildProcess>(command, environment_);
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

void EngineSession::Store(std::u16string_view route, std::u16string_view setting, int parameter,
                          float value) {
  registry_
      ->CreateKey(platform::RegistryRoot::LocalMachine,
                  store::SettingKeyPath(store::Tree::Parameters, route, setting),
                  store::kWriteAccess)
      ->SetValue(store::ParameterName(static_cast<std::size_t>(parameter)),
                 platform::RegistryType::Binary, std::as_bytes(std::span(&value, 1)));
}

void EngineSession::Activate(std::u16string_view route, std::u16string_view setting) {
  registry_
      ->CreateKey(platform::RegistryRoot::LocalMachine, store::SettingsKeyPath(route),
                  store::kWriteAccess)
      ->SetValue(store::kActiveSettingValue, platform::RegistryType::String,
                 std::as_bytes(std::span(setting)));
}

void EngineSession::StoreTwoSettings(std::u16string_view route) {
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
  EXPECT_TRUE(WaitUntil([&] { return std::abs(recording.Level(1000) - decibels) < kNear; }))
      << "is at " << recording.Level(1000) << " dB, not at " << decibels << " dB; " << Status();
  return std::chrono::duration_cast<milliseconds>(Clock::now() - begin);
}

void EngineSession::MoveStream(const std::string& sink) {
  const auto stream = NodeProperties("sink-inputs", "pacat").at("object.id").get<std::string>();
  const auto target = NodeProperties("sinks", sink);
  Run({"pw-metadata", "--", stream, "target.node", target.value("object.id", "-1"), "Spa:Id"});
  Run({"pw-metadata", "--", stream, "target.object", target.value("object.serial", "-1"),
       "Spa:Id"});
}

bool EngineSession::WaitUntil(const std::function<bool()>& condition, milliseconds timeout) {
  const Clock::time_point end = Clock::now() + timeout;
  while (!condition()) {
    if (Clock::now() > end) return false;
    std::this_thread::sleep_for(milliseconds(10));
  }
  return true;
}

}  // namespace engine
