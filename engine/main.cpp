// tonalyx-engine: makes what the panel's settings say heard, in a PipeWire session.

#include <atomic>
#include <iostream>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "engine/design_exchange.h"
#include "engine/engine_control.h"
#include "engine/engine_status.h"
#include "engine/pipewire/audio_path.h"
#include "engine/sound_control.h"
#include "engine/sound_processor.h"
#include "platform/end_signals.h"
#include "platform/host.h"
#include "platform/host_tools.h"
#include "platform/text.h"

namespace {

constexpr int kDone = 0;
constexpr int kFailed = 1;
constexpr int kWrongCall = 2;

constexpr std::string_view kUsage =
    R"(usage: tonalyx-engine [--status [--json]]

Makes what the panel's settings say heard: takes what is played in this PipeWire
session, processes it, and plays it to the user's sink. Ends at SIGINT or SIGTERM,
and when the server ends.

  --status   tell what the engine of this session does
  --json     tell it as one object of JSON
  --help     print this

The exit status is 0, 1 when there is no PipeWire server, the server ended, or
another engine runs (--status: when none runs), 2 for a wrong call.
)";

int Fail(std::string_view reason) {
  std::cerr << "tonalyx-engine: " << reason << std::endl;
  return kFailed;
}

std::string_view ReasonOf(engine::AudioPath::Failure failure) {
  switch (failure) {
    case engine::AudioPath::Failure::NoServer:
      return "there is no PipeWire server";
    case engine::AudioPath::Failure::SecondEngine:
      return "an engine runs in this session already";
    case engine::AudioPath::Failure::NoStreams:
      break;
  }
  return "the PipeWire server takes no streams";
}

int PrintStatus(bool asJson) {
  const auto status = engine::StatusOfRunningEngine();
  const std::string text = !status || asJson ? status.value_or("") : engine::StatusText(*status);
  if (text.empty()) return Fail("no engine runs in this session");
  std::cout << text << std::flush;
  return std::cout ? kDone : kFailed;
}

int Run() {
  const auto events = platform::MakeHostEventListener();
  const platform::EndSignals endSignals([&events] { events->Interrupt(); });
  platform::Host host;
  engine::DesignExchange exchange;
  engine::SoundControl sound(exchange);
  engine::SoundProcessor processor(exchange);
  engine::EngineControl control(host.Get(), *events, sound);

  const std::u16string refused = control.HoldEvents();
  if (!refused.empty()) {
    return Fail(platform::ToUtf8(refused) + ": another engine holds it, or it cannot be made");
  }
  // Before the first sound.
  control.Look();
  std::atomic<bool> isLost = false;
  auto failure = engine::AudioPath::Failure::NoServer;
  const auto path =
      engine::AudioPath::Open(processor,
                              {.onLost =
                                   [&](const std::string& reason) {
                                     Fail("the PipeWire server ended: " + reason);
                                     isLost = true;
                                     events->Interrupt();
                                   },
                               .onRate = [&sound](std::uint32_t rate) { sound.SetRate(rate); },
                               .set = [&control] { return control.Status(); }},
                              &failure);
  if (!path) return Fail(ReasonOf(failure));
  while (!isLost && !endSignals.WasReceived()) control.WaitAndLook();
  return isLost ? kFailed : kDone;
}

}  // namespace

int main(int argc, char** argv) {
  const std::vector<std::string> arguments = platform::CommandLineArguments(argc, argv);
  using Arguments = std::vector<std::string>;
  if (arguments == Arguments{"--help"}) {
    std::cout << kUsage;
    return kDone;
  }
  if (arguments == Arguments{"--status"}) return PrintStatus(false);
  if (arguments == Arguments{"--status", "--json"}) return PrintStatus(true);
  if (!arguments.empty()) {
    std::cerr << kUsage;
    return kWrongCall;
  }
  return Run();
}
