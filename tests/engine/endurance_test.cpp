// Whatever the engine is given, and for however long.
#include <gtest/gtest.h>

#include "tests/dsp/hostile_values.h"
#include "tests/engine/player.h"
#include "tests/faults/machine.h"

namespace engine {
namespace {

SoundSettings RandomSettings(std::mt19937& random) {
  const auto amount = [&] { return std::uniform_real_distribution<float>(0.0F, 1.0F)(random); };
  SoundSettings settings{.bass = amount(), .treble = amount()};
  for (auto& band : settings.bands) {
    if (random() % 4 != 0) band = RandomBand(random);
  }
  if (random() % 4 != 0) settings.widener = amount();
  if (random() % 4 != 0) settings.loudness = amount();
  return settings;
}

Stereo Silence(std::size_t frames) {
  return Signal(frames, [](std::size_t) { return 0.0; });
}

bool AllFinite(const Stereo& sound) {
  return std::ranges::all_of(sound.left, [](float x) { return std::isfinite(x); }) &&
         std::ranges::all_of(sound.right, [](float x) { return std::isfinite(x); });
}

bool IsSilent(const Stereo& sound) {
  return std::ranges::all_of(sound.left, [](float x) { return x == 0.0F; }) &&
         std::ranges::all_of(sound.right, [](float x) { return x == 0.0F; });
}

TEST(EnduranceTest, AbsurdSetsAndSamplesPassAndSilenceReturns) {
  for (const float hostile : dsp::kHostileValues) {
    std::array<float, dsp::kParameterCount> values{};
    values.fill(hostile);
    for (const float type : {0.0F, 1.0F, 2.0F, 3.0F, 4.0F, 5.0F}) {
      if (type > 0.0F) {
        dsp::SetBand(values, 1, {1.0F, type, hostile, hostile, hostile});
        values[dsp::ParameterIndex(dsp::kEqualizerEnable)] = 1.0F;
      }
      Player player(48000.0, DecodeSettings(values));
      EXPECT_TRUE(AllFinite(player.Play(Signal(500, [&](std::size_t) { return hostile; }))));
      EXPECT_TRUE(AllFinite(player.Play(Signal(500, Noise(1.0)))));
      player.Play(Silence(40 * 48000));
      EXPECT_TRUE(IsSilent(player.Play(Silence(500)))) << hostile << " " << type;
    }
  }
  EXPECT_TRUE(IsSilent(Player(48000.0).Play(Silence(10000))));
  // One channel turned down by what the other has too much.
  const auto heard = [](double height) {
    const auto constant = [](double value) { return [=](std::size_t) { return value; }; };
    return Player(48000.0).Play(Signal(500, constant(height), constant(0.5))).right;
  };
  EXPECT_EQ(heard(1e30), heard(1000.0)) << "what is more than 60 dB over full scale stops there";
  EXPECT_NE(heard(900.0), heard(1000.0));
  EXPECT_EQ(heard(dsp::kNan), heard(0.0));
}

// As many minutes as there are rounds, with another sound every half second: then a fresh engine
// and this one are the same to the last bit.
TEST(EnduranceTest, NothingIsLeftOfHours) {
  constexpr double kRate = 48000.0;
  constexpr std::size_t kPiece = 24000;
  std::mt19937 random = faults::Random();
  const std::array<Stereo, 4> pieces = {
      Signal(kPiece, Noise(1.5, 1), Noise(0.1, 2)), Silence(kPiece),
      Signal(kPiece, Sine(50.0, 0.7, kRate), Sine(9000.0, 0.7, kRate)),
      Signal(kPiece, [](std::size_t i) { return i % 5000 == 0 ? 1e9 : 1e-39; })};
  Player old(kRate);
  const int halfSeconds = 120 * faults::Rounds();
  for (int i = 0; i < halfSeconds; ++i) {
    old.Set(RandomSettings(random));
    ASSERT_TRUE(AllFinite(old.Play(pieces[random() % pieces.size()]))) << i;
  }
  old.Set({});
  old.Play(Silence(20 * 48000));
  Player fresh(kRate);
  for (Player* player : {&old, &fresh}) player->Play(Silence(48000));
  const Stereo loud = Signal(kPiece, Noise(0.9, 3), Noise(0.9, 4));
  EXPECT_EQ(old.Play(loud).left, fresh.Play(loud).left);
}

}  // namespace
}  // namespace engine
