// What the audio thread shares with others.
#include <gtest/gtest.h>

#include <thread>

#include "engine/audio_gate.h"
#include "engine/design_exchange.h"

namespace engine {
namespace {

// While the gate is closed nothing moves behind it, nor is anything half done.
TEST(AudioGateTest, KeepsTheAudioThreadOut) {
  constexpr int kWhole = 1000;
  AudioGate gate;
  volatile int parts = 0;
  const std::jthread audio([&](const std::stop_token& stop) {
    while (!stop.stop_requested()) {
      if (!gate.Enter()) continue;
      for (int part = 0; part < kWhole; ++part) parts = parts + 1;
      gate.Leave();
    }
  });
  for (int seen = 0; seen < 1000 * kWhole; std::this_thread::yield()) {
    gate.Close();
    seen = parts;
    ASSERT_EQ(seen % kWhole, 0);
    std::this_thread::yield();
    ASSERT_EQ(parts, seen);
    gate.Open();
  }
}

// Designs whose numbers all tell which one it is: none is torn, none older than the one before.
TEST(DesignExchangeTest, HandsOverTheLatestWhole) {
  constexpr int kDesigns = 20000;
  DesignExchange exchange;
  EXPECT_EQ(exchange.Take(), nullptr);
  std::jthread control([&] {
    SoundDesign design;
    for (int n = 1; n <= kDesigns; ++n) {
      for (Section& section : design.sections) section.gain = section.a2 = n;
      design.width = design.loudness = n;
      exchange.Publish(design);
    }
  });
  double last = 0.0;
  while (last < kDesigns) {
    const SoundDesign* const design = exchange.Take();
    if (design == nullptr) continue;
    ASSERT_GT(design->width, last);
    last = design->width;
    ASSERT_EQ(design->loudness, last);
    for (const Section& section : design->sections) {
      ASSERT_TRUE(section.gain == last && section.a2 == last);
    }
  }
  EXPECT_EQ(exchange.Take(), nullptr);
}

}  // namespace
}  // namespace engine
