// The engine in a session of its own, by what arrives at the sinks.
#include <gmock/gmock.h>
#include <signal.h>

#include <cmath>
#include <fstream>

#include "tests/engine/engine_session.h"
#include "tests/engine/player.h"

namespace engine {
namespace {

namespace fs = std::filesystem;
using std::chrono::milliseconds;
using support::Eventually;
using support::kSpeaker;
using testing::HasSubstr;
using namespace nlohmann::literals;

using EngineTest = EngineSession;

constexpr const char* kSinkNode = "tonalyx-engine";

TEST_F(EngineTest, SoundsAsThePanelDrawsAtEveryRate) {
  auto values = dsp::InitialParameters();
  const auto set = [&](int number, float value) {
    values[dsp::ParameterIndex(number)] = value;
    Store(kLineOut, u"2", number, value);
  };
  set(121, 2.0F);  // 31 Hz up
  set(129, 3.0F);  // 125 Hz: high pass
  set(146, 0.3F);  // 1 kHz down, wide
  set(147, 0.4F);
  set(159, 5.0F);  // 8 kHz: high shelf
  set(161, 2.5F);
  const auto engine = StartEngine();
  for (const auto& [rate, latency] : {std::pair(48000, 81), {44100, 77}, {96000, 129}}) {
    Run({"pw-metadata", "-n", "settings", "0", "clock.force-rate", std::to_string(rate)});
    const auto player = Play(rate);
    const auto recording = Record("speakers", rate);
    // A second whole, and nothing in it that was missed.
    const auto worst = [&] {
      double off = 0.0;
      for (const int tone : kTones) {
        off = std::max(off, std::abs(recording->Level(tone, 1.0) - PanelDecibels(values, tone)));
      }
      return off;
    };
    EXPECT_TRUE(Eventually([&] { return worst() < 0.05; }, milliseconds(15000)))
        << rate << ": " << worst() << " dB off";
    EXPECT_EQ(Status()["rate"], rate);
    EXPECT_EQ(Status()["latency"], latency);
    int told = -1;
    for (const auto& object : nlohmann::json::parse(Run({"pw-dump"}).output)) {
      if (object.value("/info/props/port.alias"_json_pointer, "") == "Tonalyx:playback_FL") {
        told = object.at("/info/params/Latency/0/maxRate"_json_pointer);
      }
    }
    EXPECT_EQ(told, latency) << "what programs are told";
  }
  const std::string text = Run({TONALYX_BIN_DIR "/tonalyx-engine", "--status"}).output;
  EXPECT_THAT(text, HasSubstr("sink:     speakers\n"));
  EXPECT_THAT(text, HasSubstr("rate:     96000 Hz\n"));
  EXPECT_THAT(text, HasSubstr("latency:  129 frames, 1.3 ms\n"));
  EXPECT_THAT(text, HasSubstr("route:    line out\nsetting:  2\n"));
  // Its own sink is none to the panel.
  EXPECT_THAT(server_.Control({"list", "sinks"}), HasSubstr("tonalyx.plays-to = \"speakers\""));
}

TEST_F(EngineTest, FollowsSettingsValuesAndAStoreMadeAnew) {
  const auto engine = StartEngine();
  const auto player = Play();
  const auto recording = Record("speakers");
  WaitForLevel(*recording, 0.0);
  EXPECT_TRUE(Status()["setting"].is_null()) << "nothing is stored";

  // Nobody sets an event here: the engine watches what it reads.
  registry_.reset();
  registry_ = std::make_unique<platform::SqliteRegistry>(root_);
  StoreTwoSettings(kLineOut);
  ASSERT_TRUE(Wake());
  WaitForLevel(*recording, -6.0);
  Activate(kLineOut, u"2");
  EXPECT_LT(WaitForLevel(*recording, -12.0), milliseconds(500));
  // A value that is no float counts as missing.
  support::PutValue(*registry_, support::Settings(kLineOut) + u"\\2", u"Param146",
                    platform::RegistryType::Binary, "ab");
  EXPECT_LT(WaitForLevel(*recording, 0.0), milliseconds(500));
  StoreTwoSettings(kSpeaker);
  support::PutDword(*registry_, support::kProduct, u"HardwareOutputPath", 1);
  EXPECT_LT(WaitForLevel(*recording, -6.0), milliseconds(500)) << "another route";
  support::PutDword(*registry_, support::kProduct, u"HardwareOutputPath", 0);
  WaitForLevel(*recording, 0.0);
  Activate(kLineOut, u"77");
  Activate(kLineOut, u"1");
  WaitForLevel(*recording, -6.0);
  Activate(kLineOut, u"77");  // there is none
  ASSERT_TRUE(Wake());
  std::this_thread::sleep_for(milliseconds(300));
  WaitForLevel(*recording, -6.0);
  EXPECT_EQ(Status()["setting"], "1");
  EXPECT_EQ(Status()["route"], "line out");

  // Removed: what was heard stays. Damaged: the same. Made anew: found by the next event.
  registry_.reset();
  for (const char* file : {"registry.db-wal", "registry.db-shm", "registry.db"}) {
    fs::remove(root_ / file);
  }
  ASSERT_TRUE(Wake());
  std::ofstream(root_ / "registry.db") << std::string(100000, 'x');
  ASSERT_TRUE(Wake());
  std::this_thread::sleep_for(milliseconds(300));
  WaitForLevel(*recording, -6.0);
  fs::remove(root_ / "registry.db");
  registry_ = std::make_unique<platform::SqliteRegistry>(root_);
  StoreTwoSettings(kLineOut);
  Activate(kLineOut, u"2");
  ASSERT_TRUE(Wake());
  WaitForLevel(*recording, -12.0);
  // Its sink is the default only where there is no other.
  server_.RemoveSink(0);
  EXPECT_TRUE(Eventually([&] { return server_.Control({"get-default-sink"}) == "hdmi\n"; }));
}

TEST_F(EngineTest, FollowsHeadphonesWithinAMoment) {
  StoreTwoSettings(kSpeaker);
  StoreTwoSettings(support::kHeadphones);
  Activate(support::kHeadphones, u"2");
  const std::string laptop = folder_.Path() / "laptop.json";
  environment_["TONALYX_LAPTOP"] = laptop;
  const auto laptopctl = [&](std::vector<std::string> command) {
    command.insert(command.begin(), {TONALYX_BIN_DIR "/laptopctl", laptop});
    ASSERT_EQ(Run(command).exitStatus, 0);
  };
  laptopctl({"new", "standard"});
  const auto engine = StartEngine();
  const auto player = Play();
  const auto recording = Record("speakers");
  WaitForLevel(*recording, -6.0);
  // What the recording itself is behind: by the time that pactl ends the volume is another.
  server_.Control({"set-sink-volume", "speakers", "50%"});
  const milliseconds delay = WaitForLevel(*recording, -6.0 - 18.06);
  server_.Control({"set-sink-volume", "speakers", "100%"});
  WaitForLevel(*recording, -6.0);
  const auto timed = [&](std::vector<std::string> command, double decibels) {
    const auto begin = std::chrono::steady_clock::now();
    laptopctl(std::move(command));
    WaitForLevel(*recording, decibels);
    return std::chrono::steady_clock::now() - begin - delay;
  };
  // The least of some, for others may want the processor, too.
  std::chrono::nanoseconds in = kSoon;
  std::chrono::nanoseconds out = kSoon;
  for (int round = 0; round < 3; ++round) {
    in = std::min(in, timed({"plug", "headphones"}, -12.0));
    EXPECT_EQ(Status()["route"], "headphones");
    out = std::min(out, timed({"unplug"}, -6.0));
  }
  EXPECT_LT(std::max(in, out), milliseconds(200));
}

TEST_F(EngineTest, PlaysWhereTheUserWants) {
  StoreTwoSettings(kLineOut);
  auto engine = StartEngine();
  const auto player = Play();
  const auto speakers = Record("speakers");
  const auto hdmi = Record("hdmi");
  constexpr double kSilence = -100.0;
  WaitForLevel(*speakers, -6.0);
  // The default changes, many times in a row too.
  server_.Control({"set-default-sink", "hdmi"});
  WaitForLevel(*hdmi, -6.0);
  EXPECT_TRUE(Eventually([&] { return speakers->Level(1000) < kSilence; }));
  EXPECT_EQ(Status()["sink"], "hdmi");
  for (int round = 0; round < 3; ++round) {
    server_.Control({"set-default-sink", "hdmi"});
    server_.Control({"set-default-sink", "speakers"});
  }
  WaitForLevel(*speakers, -6.0);
  // A stream that the user moves is the user's, until it goes back to the default.
  MoveStream("hdmi", true);
  WaitForLevel(*hdmi, 0.0);
  MoveStream("");
  WaitForLevel(*speakers, -6.0);
  MoveStream("hdmi");
  WaitForLevel(*hdmi, 0.0);
  // The next engine finds it there, and leaves it.
  engine->Kill(SIGTERM);
  EXPECT_EQ(engine->WaitForExit(kSoon), 0);
  engine = StartEngine();
  std::this_thread::sleep_for(milliseconds(500));
  WaitForLevel(*hdmi, 0.0);
  // So does a new stream of the program that the user moved.
  {
    const auto second = Play();
    // Some tones of two streams add to one's height, never all.
    const auto isChanged = [&](int tone) { return std::abs(hdmi->Level(tone)) > 1.0; };
    EXPECT_TRUE(
        Eventually([&] { return std::ranges::any_of(std::span(kTones).subspan(2), isChanged); }));
  }
  ASSERT_TRUE(Eventually([&] { return std::abs(hdmi->Level(1000)) < 0.2; }));
  MoveStream("");
  WaitForLevel(*speakers, -6.0);
  {
    const auto program = server_.PlayTone("hdmi", 0.1);
    EXPECT_TRUE(Eventually([&] { return hdmi->Level(441) > 5.0; })) << "as its program says";
  }
  // Volume counts once: half is 18 dB down.
  server_.Control({"set-sink-volume", "speakers", "50%"});
  WaitForLevel(*speakers, -6.0 - 18.06);
  server_.Control({"set-sink-volume", "speakers", "100%"});
  // Somebody makes the engine's own sink the default: some real one plays.
  server_.Control({"set-default-sink", kSinkNode});
  EXPECT_TRUE(Eventually([&] {
    return std::abs(std::max(speakers->Level(1000), hdmi->Level(1000)) + 6.0) < 0.2 &&
           Status()["sink"] != kSinkNode;
  }));
  server_.Control({"set-default-sink", "speakers"});
  WaitForLevel(*speakers, -6.0);
  // The sink that plays is taken away.
  server_.RemoveSink(0);
  WaitForLevel(*hdmi, -6.0);
  EXPECT_EQ(Status()["sink"], "hdmi");
}

TEST_F(EngineTest, SoundGoesOnWithoutIt) {
  StoreTwoSettings(kLineOut);
  const auto player = Play();
  const auto recording = Record("speakers");
  WaitForLevel(*recording, 0.0);
  auto engine = StartEngine();
  WaitForLevel(*recording, -6.0);

  {
    // Who has chosen where to play, or is a part of a filter, is left alone.
    const auto target = Play(48000, "node.target=hdmi");
    const auto filter = Play(48000, "node.link-group=filter");
    const auto loyal = Play(48000, "node.dont-reconnect=true");
    EXPECT_TRUE(Eventually([&] {
      return std::ranges::count(server_.Control({"list", "short", "sink-inputs"}), '\n') == 5;
    })) << "four programs and the engine";
    std::this_thread::sleep_for(milliseconds(300));
    const std::string words = Run({"pw-metadata"}).output;
    EXPECT_EQ(words.find("tonalyx-engine"), words.rfind("tonalyx-engine")) << words;
  }
  const support::ProcessResult second = Run({TONALYX_BIN_DIR "/tonalyx-engine"});
  EXPECT_EQ(second.exitStatus, 1);
  EXPECT_THAT(second.errors, HasSubstr("VelsonaGFXPropEvent"));
  auto otherRoot = environment_;
  otherRoot["TONALYX_ROOT"] = folder_.Path() / "other";
  EXPECT_EQ(support::RunProcess({TONALYX_BIN_DIR "/tonalyx-engine"}, otherRoot).exitStatus, 1)
      << "one engine for each session, whatever its store";
  WaitForLevel(*recording, -6.0);

  const auto events = [&] { return std::distance(fs::directory_iterator(root_ / "events"), {}); };
  const auto before = events();
  server_.AddSink("third");
  EXPECT_TRUE(Eventually([&] { return events() == before + 4; })) << "those of a new endpoint";

  engine->Kill(SIGKILL);
  WaitForLevel(*recording, 0.0);
  EXPECT_EQ(Run({TONALYX_BIN_DIR "/tonalyx-engine", "--status"}).exitStatus, 1);
  engine = StartEngine();
  WaitForLevel(*recording, -6.0);
  engine->Kill(SIGTERM);
  EXPECT_EQ(engine->WaitForExit(kSoon), 0);
  WaitForLevel(*recording, 0.0);
  EXPECT_TRUE(fs::is_empty(root_ / "events"));
  EXPECT_EQ(Run({"pw-metadata"}).output.find("tonalyx"), std::string::npos);
}

TEST_F(EngineTest, EndsWithTheServerAndOutlivesTheSessionManager) {
  StoreTwoSettings(kLineOut);
  auto engine = StartEngine();
  // The program's own word that the default is meant.
  const auto player = Play(48000, "target.object=-1");
  const auto recording = Record("speakers");
  WaitForLevel(*recording, -6.0);
  int manager = 0;
  std::ifstream(fs::path(environment_["XDG_RUNTIME_DIR"]) / "wireplumber.pid") >> manager;
  ASSERT_GT(manager, 0);
  kill(manager, SIGKILL);
  auto environment = environment_;
  environment["DBUS_SESSION_BUS_ADDRESS"] = "unix:path=" + environment_["XDG_RUNTIME_DIR"] + "/bus";
  // The next one must not find what the server has not yet cleared away.
  std::this_thread::sleep_for(milliseconds(300));
  const support::ChildProcess next({"wireplumber"}, environment);
  // It has forgotten what it was told, and is told again.
  EXPECT_TRUE(Eventually([&] {
    return Run({"timeout", "1", "pw-metadata"})
               .output.find("'target.object' value:'tonalyx-engine'") != std::string::npos;
  }));

  server_.Kill();
  EXPECT_EQ(engine->WaitForExit(kSoon), 1);
  EXPECT_THAT(engine->RestOfErrors(), HasSubstr("server"));
  const support::ProcessResult without = Run({TONALYX_BIN_DIR "/tonalyx-engine"});
  EXPECT_EQ(without.exitStatus, 1);
  EXPECT_THAT(without.errors, HasSubstr("no PipeWire server"));
}

TEST_F(EngineTest, TheAudioThreadNeitherAllocatesNorLocksNorCallsTheSystem) {
  StoreTwoSettings(kLineOut);
  const std::map<std::string, std::string> watch = {{"LD_PRELOAD", TONALYX_REAL_TIME_WATCH}};
  auto engine = StartEngine(watch);
  const auto player = Play();
  const auto recording = Record("speakers");
  WaitForLevel(*recording, -6.0);
  for (int round = 0; round < 20; ++round) {
    Activate(kLineOut, round % 2 == 0 ? u"2" : u"1");
    for (const int parameter : {5, 6, 221, 223, 232, 250}) {
      Store(kLineOut, u"1", parameter, 0.1F * static_cast<float>(round % 10));
    }
  }
  server_.Control({"set-default-sink", "hdmi"});
  server_.Control({"set-default-sink", "speakers"});
  EXPECT_FALSE(engine->WaitForExit(std::chrono::seconds(1)));
  engine->Kill(SIGTERM);
  EXPECT_EQ(engine->WaitForExit(kSoon), 0) << engine->RestOfErrors();

  for (const char* plant : {"allocation", "lock", "system call"}) {
    auto environment = watch;
    environment["TONALYX_TEST_PLANT"] = plant;
    engine = LaunchEngine(environment);
    ASSERT_TRUE(engine->WaitForExit(kSoon)) << plant;
    EXPECT_THAT(engine->RestOfErrors(), HasSubstr(plant));
  }
}

TEST_F(EngineTest, SleepsWhileNothingPlays) {
  const auto engine = StartEngine();
  const auto wakes = [&] {
    long sum = 0;
    const fs::path tasks = fs::path("/proc") / std::to_string(engine->Pid()) / "task";
    for (const auto& task : fs::directory_iterator(tasks)) {
      std::ifstream status(task.path() / "status");
      for (std::string line; std::getline(status, line);) {
        if (line.starts_with("voluntary_ctxt_switches:")) sum += std::stol(line.substr(24));
      }
    }
    return sum;
  };
  {
    const auto player = Play();
    const auto recording = Record("speakers");
    WaitForLevel(*recording, 0.0);
    EXPECT_EQ(Status()["state"], "playing");
  }
  ASSERT_TRUE(Eventually([&] { return Status()["state"] == "idle"; }));
  // Longer than it takes the session manager to send the sink to sleep.
  std::this_thread::sleep_for(std::chrono::seconds(7));
  const long before = wakes();
  std::this_thread::sleep_for(std::chrono::seconds(2));
  EXPECT_EQ(wakes(), before);
}

}  // namespace
}  // namespace engine
