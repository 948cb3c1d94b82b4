// enginemon: plays the audio engine's part and prints which of its events are set.

#include <charconv>
#include <chrono>
#include <iostream>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "endpoints/enumeration.h"
#include "platform/end_signals.h"
#include "platform/guid.h"
#include "platform/host.h"
#include "platform/host_tools.h"
#include "platform/text.h"
#include "tools/enginemon/engine_monitor.h"
#include "tools/enginemon/monitor_report.h"
#include "tools/enginemon/parameter_watch.h"
#include "tools/enginemon/route_watch.h"

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

constexpr int kDone = 0;
constexpr int kFailed = 1;
constexpr int kWrongCall = 2;

constexpr std::string_view kUsage =
    R"(usage: enginemon [--endpoint GUID]... [--seconds N] [--values|--units|--json]

Plays the audio engine's part: makes the engine's events, prints "ready", then a
line for each event that is set, in the order in which they were set.

  --endpoint GUID   serve this endpoint, in the form {8-4-4-4-12}; may be repeated.
                    Without it every endpoint, active or unplugged, is served.
  --seconds N       end after N seconds
  --values          after an event, print the parameters that changed:
                    path key, setting, name, value
  --units           after "ready" and after an event, print for reading what
                    changed: the default endpoint's route, active settings, and
                    parameters with their meaning in Hz, dB, Q
  --json            the same as lines of JSON, "ready" and the events too
  --help            print this

SIGINT and SIGTERM end it too. The exit status is 0, 1 when another listener
holds an event or the output is gone, 2 for a wrong call.
)";

struct Options {
  enum class Store { Hidden, Shown };

  std::vector<std::u16string> endpoints;
  std::optional<milliseconds> duration;
  Store store = Store::Hidden;
  tools::ReportForm form = tools::ReportForm::Plain;
};

std::optional<milliseconds> ParseSeconds(std::string_view text) {
  constexpr double kMost = 1e9;
  double seconds = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), seconds);
  if (error != std::errc() || end != text.data() + text.size() || !(seconds >= 0.0) ||
      seconds > kMost) {
    return std::nullopt;
  }
  return std::chrono::round<milliseconds>(std::chrono::duration<double>(seconds));
}

std::optional<Options> WrongCall(const std::string& reason) {
  std::cerr << "enginemon: " << reason << '\n' << kUsage;
  return std::nullopt;
}

std::optional<tools::ReportForm> FormOfOption(std::string_view option) {
  if (option == "--values") return tools::ReportForm::Plain;
  if (option == "--units") return tools::ReportForm::Units;
  if (option == "--json") return tools::ReportForm::Json;
  return std::nullopt;
}

std::optional<Options> ParseOptions(const std::vector<std::string>& arguments) {
  Options options;
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    const std::string& option = arguments[i];
    if (const auto form = FormOfOption(option)) {
      if (options.store == Options::Store::Shown && options.form != *form) {
        return WrongCall("one of --values, --units and --json excludes the others");
      }
      options.store = Options::Store::Shown;
      options.form = *form;
      continue;
    }
    if (option != "--endpoint" && option != "--seconds") {
      return WrongCall("unknown argument " + option);
    }
    if (++i == arguments.size()) return WrongCall(option + " lacks its value");
    if (option == "--seconds") {
      options.duration = ParseSeconds(arguments[i]);
      if (!options.duration) return WrongCall("not a number of seconds: " + arguments[i]);
      continue;
    }
    options.endpoints.push_back(platform::FromUtf8(arguments[i]));
    if (!platform::GuidFromString(options.endpoints.back())) {
      return WrongCall("not a GUID: " + arguments[i]);
    }
  }
  return options;
}

std::vector<std::u16string> PresentEndpoints(platform::AudioDevices& audioDevices) {
  std::vector<std::u16string> guids;
  for (endpoints::EndpointRecord& record : endpoints::EnumerateRenderEndpoints(audioDevices)) {
    guids.push_back(std::move(record.endpointGuid));
  }
  return guids;
}

// What the events are about: the store's parameters and active settings, and the route.
class StoreView {
 public:
  explicit StoreView(platform::Platform& platform)
      : parameters_(platform.registry), route_(platform.registry, platform.audioDevices) {}

  void ReportState(tools::MonitorReport& report) {
    if (const auto pathKey = route_.Look()) report.Route(*pathKey);
    for (const auto& setting : parameters_.ActiveSettings()) report.Setting(setting);
  }

  void ReportChanges(tools::MonitorReport& report) {
    if (const auto pathKey = route_.Look()) report.Route(*pathKey);
    const tools::StoreChanges changes = parameters_.Look();
    for (const auto& setting : changes.activeSettings) report.Setting(setting);
    for (const auto& change : changes.parameters) report.Parameter(change);
  }

 private:
  tools::ParameterWatch parameters_;
  tools::RouteWatch route_;
};

int Run(const Options& options) {
  const auto listener = platform::MakeHostEventListener();
  const platform::EndSignals endSignals([&listener] { listener->Interrupt(); });
  platform::Host host;
  platform::Platform& platform = host.Get();

  const auto report = tools::MakeReport(options.form, std::cout);
  std::optional<StoreView> view;
  tools::EngineMonitor monitor(*listener, *report, [&view](tools::MonitorReport& changes) {
    if (view) view->ReportChanges(changes);
  });
  const std::u16string refused = monitor.MakeEvents(tools::EngineEventNames(
      options.endpoints.empty() ? PresentEndpoints(platform.audioDevices) : options.endpoints));
  if (!refused.empty()) {
    std::cerr << "enginemon: " << platform::ToUtf8(refused)
              << ": another listener holds it, or it cannot be made\n";
    return kFailed;
  }
  if (options.store == Options::Store::Shown) view.emplace(platform);
  report->Ready();
  if (view) view->ReportState(*report);

  const Clock::time_point begin = Clock::now();
  constexpr std::chrono::hours kLongWait(24);
  while (!endSignals.WasReceived()) {
    milliseconds left = kLongWait;
    if (options.duration) {
      left = std::chrono::ceil<milliseconds>(begin + *options.duration - Clock::now());
      if (left <= milliseconds::zero()) break;
    }
    monitor.ReportSets(left);
    if (!std::cout) return kFailed;
  }
  return kDone;
}

}  // namespace

int main(int argc, char** argv) {
  const std::vector<std::string> arguments = platform::CommandLineArguments(argc, argv);
  if (arguments == std::vector<std::string>{"--help"}) {
    std::cout << kUsage;
    return kDone;
  }
  const std::optional<Options> options = ParseOptions(arguments);
  if (!options) return kWrongCall;
  // A reader of the output that leaves shows in the stream's state; the events still have to go.
  platform::KeepBrokenOutputAFailure();
  return Run(*options);
}
