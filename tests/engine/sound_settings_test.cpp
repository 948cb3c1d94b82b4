#include "engine/sound_settings.h"

#include <gtest/gtest.h>

#include "tests/dsp/hostile_values.h"

namespace engine {
namespace {

using dsp::kInfinity;
using dsp::kNan;
using Values = std::array<float, dsp::kParameterCount>;

std::optional<BandSettings> Decoded(const dsp::EqBand& band) {
  Values values = dsp::InitialParameters();
  dsp::SetBand(values, 4, band);
  return DecodeSettings(values).bands[3];
}

TEST(SoundSettingsTest, BandsAreLimitedToWhatThePanelWrites) {
  const dsp::EqBand sane{.type = 4.9F, .frequency = 440.0F, .gain = 2.0F, .q = 0.7F};
  EXPECT_EQ(Decoded(sane), (BandSettings{dsp::FilterType::LowShelving, 440.0F, 2.0F, 0.7F}));
  const auto changed = [&](float dsp::EqBand::*field, float value) {
    dsp::EqBand band = sane;
    band.*field = value;
    return Decoded(band);
  };
  using B = dsp::EqBand;
  EXPECT_EQ(changed(&B::frequency, 0.0F)->frequency, 20.0F);
  EXPECT_EQ(changed(&B::frequency, kInfinity)->frequency, 20000.0F);
  EXPECT_NEAR(changed(&B::gain, -kInfinity)->gain, 0.2512F, 1e-4F);
  EXPECT_NEAR(changed(&B::gain, 1e30F)->gain, 3.981F, 1e-3F);
  EXPECT_EQ(changed(&B::q, -1.0F)->q, 0.1F);
  EXPECT_EQ(changed(&B::q, 6.0F)->q, 5.0F);
  for (const auto field : {&B::frequency, &B::gain, &B::q, &B::type, &B::enabled}) {
    EXPECT_FALSE(changed(field, kNan));
  }
  EXPECT_FALSE(changed(&B::type, 6.0F));
  EXPECT_FALSE(changed(&B::type, 0.9F));
  EXPECT_FALSE(changed(&B::enabled, 0.0F));
}

TEST(SoundSettingsTest, SwitchesAndAmounts) {
  Values values = dsp::InitialParameters();
  const auto set = [&](int number, float value) { values[dsp::ParameterIndex(number)] = value; };
  set(6, 0.7F);
  set(223, 0.6F);
  SoundSettings settings = DecodeSettings(values);
  EXPECT_EQ(settings.widener, 0.0F) << "switched off";
  EXPECT_EQ(settings.loudness, 0.0F);
  EXPECT_TRUE(settings.bands[0]);
  EXPECT_EQ(settings.bass, 0.5F);
  set(5, 0.1F);
  set(221, 1.0F);
  set(117, 0.0F);
  set(232, kInfinity);
  set(250, -3.0F);
  settings = DecodeSettings(values);
  EXPECT_EQ(settings,
            (SoundSettings{.bass = 1.0F, .treble = 0.0F, .widener = 0.7F, .loudness = 0.6F}));
  for (const int number : {6, 223, 232, 250, 117}) set(number, kNan);
  EXPECT_EQ(DecodeSettings(values), SoundSettings{});
}

}  // namespace
}  // namespace engine
