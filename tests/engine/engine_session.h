// A PipeWire session with an engine in it: tones are played, and what arrives at a sink is
// measured.
#pragma once

#include <gtest/gtest.h>

#include <array>
#include <chrono>
#include <filesystem>
#include <map>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "dsp/eq_model.h"
#include "platform/linux/registry/sqlite_registry.h"
#include "tests/audio/pulse_daemon.h"
#include "tests/support/child_process.h"
#include "tests/support/eventually.h"
#include "tests/support/registry_tree.h"
#include "tests/support/routes.h"
#include "tests/support/temporary_folder.h"

namespace engine {

// A null sink has no ports, so nothing tells of a speaker or of headphones.
inline const std::u16string& kLineOut = support::kLineConnector;

// Each of these sounds at once, at kToneLevel, in the right channel at half of it; Hz, whole
// periods in a second.
inline constexpr std::array kTones = {31,   63,   100,  160,  250,  400,   630,
                                      1000, 1600, 2500, 4000, 6300, 10000, 16000};
inline constexpr double kToneLevel = 0.03;

// Records what a sink plays until destruction.
class Recording {
 public:
  Recording(const std::string& sink, int rate, const std::filesystem::path& folder,
            const std::map<std::string, std::string>& environment);

  // The level of a tone in the left channel during the last `seconds`, in dB above that with which
  // it was played.
  double Level(int frequency, double seconds = 0.1) const;

 private:
  const int rate_;
  const std::filesystem::path file_;
  support::ChildProcess recorder_;
};

class EngineSession : public testing::Test {
 public:
  static constexpr std::chrono::seconds kSoon{5};

  EngineSession();

  std::unique_ptr<support::ChildProcess> LaunchEngine(
      const std::map<std::string, std::string>& more);
  // Waits until it answers.
  std::unique_ptr<support::ChildProcess> StartEngine(
      const std::map<std::string, std::string>& more = {});
  nlohmann::json Status() const;
  support::ProcessResult Run(const std::vector<std::string>& command) const;

  // `property` is one of the stream's, as NAME=VALUE.
  std::unique_ptr<support::ChildProcess> Play(int rate = 48000,
                                              const std::string& property = "a=b");
  std::unique_ptr<Recording> Record(const std::string& sink, int rate = 48000) const;
  // The properties of a node, `kind` being sinks or sink-inputs.
  nlohmann::json NodeProperties(const std::string& kind, const std::string& name);

  void Store(const std::u16string& route, const std::u16string& setting, int parameter,
             float value);
  void Activate(const std::u16string& route, const std::u16string& setting);
  // Two settings that tell by one tone which is heard: the first has the band at 1 kHz 6 dB down,
  // the second 12 dB.
  void StoreTwoSettings(const std::u16string& route);

  // Sets the service's event.
  bool Wake();

  // Moves the playing program's stream, with an empty name back to the default: by the words of
  // pipewire-pulse, which loses them when the one who asked, like pactl, leaves at once. `isBrief`
  // leaves the word out that counts more.
  void MoveStream(const std::string& sink, bool isBrief = false);
  // How long it took until the tone at 1 kHz had that level; a failure when it does not come.
  std::chrono::milliseconds WaitForLevel(const Recording& recording, double decibels) const;

  support::PulseDaemon server_{{"speakers", "hdmi"}};
  support::TemporaryFolder folder_;
  std::filesystem::path root_ = folder_.Path() / "root";
  std::map<std::string, std::string> environment_ = server_.Environment();
  std::unique_ptr<platform::SqliteRegistry> registry_;
};

}  // namespace engine
