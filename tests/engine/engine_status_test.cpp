// What the engine tells about itself, where no session can say what it should be.
#include "engine/engine_status.h"

#include <gmock/gmock.h>

#include "engine/pipewire/stream_meter.h"

namespace engine {
namespace {

TEST(StreamMeterTest, AveragesTheLoadAndCountsCyclesThatWereMissed) {
  using namespace std::chrono_literals;
  StreamMeter meter;
  meter.Note({480, 48000, 1000, 1ms});
  EXPECT_NEAR(meter.Load(), 0.1, 1e-9);
  meter.Note({480, 48000, 1480, 2ms});
  EXPECT_NEAR(meter.Load(), 0.101, 1e-9) << "of about a second";
  meter.Note({480, 48000, 1960 + 3 * 480, 1ms});
  EXPECT_EQ(meter.MissedCycles(), 3U);
  meter.Interrupt();
  meter.Note({480, 48000, 100'000, 3ms});
  EXPECT_EQ(meter.MissedCycles(), 3U) << "a pause misses nothing";
  EXPECT_NEAR(meter.Load(), 0.3, 1e-9);
}

TEST(EngineStatusTest, TellsLoadAndXrunsAndNothingOfAnotherVersion) {
  AudioStatus audio;
  audio.load = 0.25;
  audio.xruns = 3;
  const std::string json = StatusJson(audio, {});
  EXPECT_THAT(json, testing::HasSubstr("\"load\":0.25,\"xruns\":3}"));
  EXPECT_THAT(StatusText(json), testing::HasSubstr("load:     25.00 %\nxruns:    3\n"));
  EXPECT_EQ(StatusText("{}") + StatusText("x"), "");
}

}  // namespace
}  // namespace engine
