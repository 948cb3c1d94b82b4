#include "ui/eq/eq_editor.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>
#include <optional>
#include <string>

#include "tests/eq/eq_machine.h"
#include "tests/eq/fake_eq_view.h"

namespace ui {
namespace {

using dsp::FilterType;
using dsp::Knob;
using store::OutputPath;

const float kMinusThreeDecibels = std::pow(10.0F, -0.15F);
enum Field { kEnabled, kType, kFrequency, kGain, kQ };
constexpr int BandParameter(int band, Field field) {
  return 118 + 5 * (band - 1) + field;
}

// How a wake of the engine shows in the log: the events of the active endpoints.
const std::string kWake =
    "GFX speaker; MFX speaker; EFX speaker; GFX monitor; MFX monitor; EFX monitor; ";
const std::string kKnobs = "equalizer on; bass 50; treble 50; widener 0; loudness 0; ";
const std::string kLowPass =
    "uncheck peaking; uncheck high shelving; uncheck low shelving; uncheck high pass; "
    "check low pass; disable bandwidth; disable gain; ";
const std::string kPeaking =
    "check peaking; uncheck high shelving; uncheck low shelving; uncheck high pass; "
    "uncheck low pass; enable bandwidth; enable gain; ";

class EqEditorTest : public testing::Test {
 protected:
  EqEditorTest() {
    machine_.SetActive(kSpeakerPathKey, u"3");
    Store(EqMachine::InitialSet());
    machine_.events.SetOnSet([this](const std::u16string& name) {
      const std::string text(name.begin(), name.end());  // Global\Velsona***PropEvent***
      log_ += text.substr(14, 3) + " " + text.substr(26) + "; ";
      if (storedAtFirstWake_.empty()) storedAtFirstWake_ = Stored();
    });
  }

  void Store(const Parameters& set) {
    machine_.Write(store::Tree::Parameters, kSpeakerPathKey, u"3", set);
  }
  Parameters Stored() { return machine_.ReadAll(kSpeakerPathKey, u"3"); }
  // The initial set but for these.
  static Parameters With(const Parameters& others) {
    Parameters set = others;
    set.merge(EqMachine::InitialSet());
    return set;
  }

  void Open() {
    editor_.emplace(
        engine_link::EngineLink{machine_.registry, machine_.events, machine_.audioDevices}, view_);
    editor_->LoadFirstSet();
    editor_->ShowFirstSet();
    Forget();
  }
  void Forget() {
    log_.clear();
    storedAtFirstWake_.clear();
  }
  void Slide(BandSlider slider, std::int32_t value) {
    view_.sliders[slider] = value;
    editor_->EditSlider(slider);
  }
  void Turn(Knob knob, std::int32_t value) {
    view_.knobs[knob] = value;
    editor_->EditKnob(knob);
  }

  EqMachine machine_;
  EventLog log_;
  FakeEqView view_{log_};
  std::optional<EqEditor> editor_;
  Parameters storedAtFirstWake_;
};

TEST_F(EqEditorTest, AnEditIsStoredThenSignalledOnceThenShown) {
  const std::string shown = kWake + "select 1; curve; ";
  struct Case {
    std::function<void()> edit;
    Parameters changed;  // of the edited set; bands are expected in the mirror too
    std::string log;
  };
  const Case cases[] = {
      {[&] { Slide(BandSlider::Gain, 35); },
       {{121, std::pow(10.0F, 3.5F / 20.0F)}},
       "gain text +3.5 dB; " + shown},
      {[&] { Slide(BandSlider::Frequency, 440); },
       {{120, 440.0F}},
       "frequency text 440 Hz; bandwidth text 440 Hz; " + shown},
      {[&] { Slide(BandSlider::Bandwidth, 10); }, {{122, 4.1F}}, "bandwidth text 7 Hz; " + shown},
      {[&] { editor_->Toggle(EqSwitch::Band); }, {{118, 0.0F}}, "band off; " + shown},
      {[&] { editor_->Toggle(EqSwitch::Equalizer); }, {{117, 0.0F}}, "equalizer off; " + shown},
      {[&] { Turn(Knob::Bass, 77); }, {{232, 0.77F}}, kWake},
      {[&] { Turn(Knob::Treble, 0); }, {{250, 0.0F}}, kWake},
      {[&] { Turn(Knob::Widener, 100); }, {{5, 1.0F}, {6, 1.0F}}, kWake},
      {[&] { Turn(Knob::Loudness, 0); }, {{221, 1.0F}}, kWake},
      {[&] {
         editor_->DragBand(1, {62.5F, -6.0F});
       },
       {{120, 62.5F}, {121, std::pow(10.0F, -6.0F / 20.0F)}},
       "frequency 62; gain -60; frequency text 62 Hz; gain text -6.0 dB; bandwidth text 62 Hz; " +
           shown},
      {[&] { editor_->EditType(FilterType::LowPass); },
       {{119, 2.0F}, {121, kMinusThreeDecibels}, {122, 0.7F}},
       kLowPass + shown + kKnobs + "frequency 31; gain -30; bandwidth 44; band on; " + kLowPass +
           "bandwidth text 44 Hz; frequency text 31 Hz; gain text -3.0 dB; "},
  };
  for (const Case& test : cases) {
    Store(EqMachine::InitialSet());
    Open();
    test.edit();
    EXPECT_EQ(log_, test.log);
    Parameters changed = test.changed;
    for (const auto& [number, value] : test.changed) {
      if (number >= 118 && number <= 167) changed[number + 50] = value;
    }
    EXPECT_EQ(Stored(), With(changed)) << test.log;
    EXPECT_EQ(storedAtFirstWake_, Stored());
    EXPECT_EQ(editor_->Store().committed, editor_->Store().values);
  }
}

TEST_F(EqEditorTest, ControlsThatTakeTheirPlacesBeforeTheFirstSetEditNothing) {
  editor_.emplace(
      engine_link::EngineLink{machine_.registry, machine_.events, machine_.audioDevices}, view_);
  for (const BandSlider slider : {BandSlider::Gain, BandSlider::Frequency, BandSlider::Bandwidth}) {
    editor_->EditSlider(slider);
  }
  editor_->EditKnob(Knob::Widener);
  editor_->SelectBand(4);
  editor_->DragBand(1, {500.0F, 3.0F});
  EXPECT_EQ(log_, "");
  EXPECT_EQ(editor_->SelectedBand(), 1);
  EXPECT_EQ(editor_->Store().values, dsp::InitialParameters());
  editor_->EditType(FilterType::HighPass);
  EXPECT_EQ(dsp::GetBand(editor_->Store().values, 1).type, 3.0F) << "that is a choice at any time";
}

TEST_F(EqEditorTest, OpensWithTheInitialValuesWhenNothingIsStored) {
  machine_.SetRoute(3);
  for (const std::u16string& endpoint : {std::u16string(u"speaker"), std::u16string()}) {
    machine_.audioDevices.SetDefault(endpoint);
    EqEditor editor({machine_.registry, machine_.events, machine_.audioDevices}, view_);
    const endpoints::WatchStart watch = editor.LoadFirstSet();
    EXPECT_EQ(watch.outputPath, OutputPath::SpeakerWithSubwoofer);
    EXPECT_EQ(watch.endpointGuid, endpoint);
    EXPECT_EQ(watch.settingIndex, 0);
    EXPECT_EQ(editor.Store().activeSetting, u"1");
    EXPECT_EQ(editor.Store().values, dsp::InitialParameters());
  }
}

TEST_F(EqEditorTest, OpensWithTheStoredSetOfTheRoute) {
  machine_.SetRoute(2);
  machine_.SetActive(kHeadphonesPathKey, u"5");
  const Parameters set = With({{117, 0.0F}, {6, 0.53F}, {119, 4.0F}, {120, 80.9F}});
  machine_.Write(store::Tree::Parameters, kHeadphonesPathKey, u"5", set);
  editor_.emplace(
      engine_link::EngineLink{machine_.registry, machine_.events, machine_.audioDevices}, view_);
  const endpoints::WatchStart watch = editor_->LoadFirstSet();
  EXPECT_EQ(watch.endpointGuid, u"speaker");
  EXPECT_EQ(watch.outputPath, OutputPath::Headphone);
  EXPECT_EQ(watch.settingIndex, 4);
  editor_->ShowFirstSet();
  EXPECT_EQ(log_,
            "equalizer off; bass 50; treble 50; widener 52; loudness 0; frequency 80; gain 0; "
            "bandwidth 41; band on; uncheck peaking; uncheck high shelving; check low shelving; "
            "uncheck high pass; uncheck low pass; disable bandwidth; enable gain; "
            "bandwidth text 80 Hz; frequency text 80 Hz; gain text 0.0 dB; select 1; curve; ");
  EXPECT_EQ(machine_.ReadAll(kHeadphonesPathKey, u"5"), set);
}

TEST_F(EqEditorTest, OnlyTheSelectedBandIsRedesigned) {
  Store(With({{BandParameter(3, kQ), 0.66F}}));
  Open();
  editor_->SelectBand(3);
  EXPECT_TRUE(log_.ends_with("gain text 0.0 dB; ")) << "choosing a band draws no curve";
  const dsp::CoefficientTable before = editor_->Coefficients();
  editor_->DragBand(5, {800.0F, 3.0F});
  Slide(BandSlider::Gain, 60);
  for (std::size_t i = 0; i < before.size(); ++i) {
    EXPECT_EQ(editor_->Coefficients()[i] == before[i], i != 2) << i;
  }
  EXPECT_EQ(view_.coefficients, editor_->Coefficients());
  EXPECT_EQ(Stored().at(BandParameter(3, kGain)), std::pow(10.0F, 6.0F / 20.0F));
  EXPECT_EQ(Stored().at(BandParameter(3, kQ)), 0.66F);
  editor_->EditSlider(BandSlider::Frequency);
  EXPECT_EQ(Stored().at(BandParameter(3, kQ)), 0.7F) << "rounded along with the frequency";
}

TEST_F(EqEditorTest, AStoredTypeThatIsNoneChecksNothingAndLeavesTheSliders) {
  for (const float type : {0.0F, 6.0F, std::numeric_limits<float>::quiet_NaN()}) {
    Store(With({{BandParameter(2, kType), type}}));
    Open();
    editor_->EditType(FilterType::LowPass);
    editor_->SelectBand(2);
    EXPECT_FALSE(view_.sliderEnabled[BandSlider::Gain]);
    for (const auto& [each, checked] : view_.types) EXPECT_FALSE(checked);
  }
}

TEST_F(EqEditorTest, ABandNumberOutsideTheTenIsSelectedAndEditsNone) {
  for (const std::int32_t band : {0, 11, std::numeric_limits<std::int32_t>::max()}) {
    Open();
    const auto sliders = view_.sliders;
    editor_->SelectBand(band);
    EXPECT_EQ(view_.sliders, sliders);
    Forget();
    Slide(BandSlider::Gain, 70);
    EXPECT_EQ(log_, "gain text +7.0 dB; " + kWake + "select " + std::to_string(band) + "; curve; ");
    editor_->EditSlider(BandSlider::Frequency);
    editor_->EditType(FilterType::LowPass);
    editor_->Toggle(EqSwitch::Band);
    editor_->DragBand(band, {4000.0F, 2.0F});
    EXPECT_EQ(Stored(), EqMachine::InitialSet());
  }
}

TEST_F(EqEditorTest, AReloadShowsTheOtherSetInBandOneAndWritesNothing) {
  machine_.SetActive(kHeadphonesPathKey, u"2");
  const Parameters set = With({{117, 0.0F}, {121, 2.0F}, {BandParameter(9, kGain), 0.5F}});
  machine_.Write(store::Tree::Parameters, kHeadphonesPathKey, u"2", set);
  Open();
  editor_->SelectBand(5);
  const dsp::CoefficientTable before = editor_->Coefficients();
  Forget();
  editor_->Reload(OutputPath::Headphone);
  EXPECT_EQ(editor_->Route(), OutputPath::Headphone);
  EXPECT_TRUE(log_.starts_with("equalizer off; ") && log_.ends_with("6.0 dB; select 1; curve; "));
  EXPECT_NE(view_.coefficients[0], before[0]);
  EXPECT_NE(view_.coefficients[8], before[8]);
  EXPECT_EQ(storedAtFirstWake_, Parameters());
  EXPECT_EQ(machine_.ReadAll(kHeadphonesPathKey, u"2"), set);

  // From here on edits go to the route that is shown, and still without a default endpoint.
  machine_.audioDevices.SetDefault(u"");
  editor_->SelectBand(5);
  editor_->Reload(OutputPath::LineOut);
  EXPECT_EQ(view_.selectedBand, 1);
  EXPECT_EQ(view_.sliders[BandSlider::Gain], 60);
  Turn(Knob::Bass, 10);
  EXPECT_EQ(machine_.Read(kHeadphonesPathKey, u"2", 232), 0.1F);
  EXPECT_EQ(Stored(), EqMachine::InitialSet());
}

TEST_F(EqEditorTest, NewValuesAreShownInTheSelectedBandThenInTheFirstAndSignalledOnce) {
  Open();
  editor_->SelectBand(6);
  Forget();
  editor_->RestoreDefaults();
  EXPECT_EQ(log_, "") << "there are none";
  const std::string expected =
      kKnobs + "frequency 1000; gain 60; bandwidth 41; band on; " + kPeaking +
      "bandwidth text 1000 Hz; frequency text 1000 Hz; gain text +6.0 dB; select 6; curve; " +
      kKnobs + "frequency 31; gain 0; bandwidth 41; band on; " + kPeaking +
      "bandwidth text 31 Hz; frequency text 31 Hz; gain text 0.0 dB; " + kWake +
      "select 1; curve; ";
  float& gain = editor_->Store().values[BandParameter(6, kGain) - 1];
  gain = 2.0F;
  editor_->TakeLoadedSettings();
  EXPECT_EQ(log_, expected);
  EXPECT_EQ(Stored(), With({{BandParameter(6, kGain), 2.0F}, {BandParameter(16, kGain), 2.0F}}));
  EXPECT_NE(view_.coefficients[5], dsp::BiquadCoefficients());

  machine_.Write(store::Tree::Defaults, kSpeakerPathKey, u"3", {{BandParameter(6, kGain), 2.0F}});
  gain = 1.0F;
  editor_->SelectBand(6);
  Forget();
  editor_->RestoreDefaults();
  EXPECT_EQ(log_, expected);
  EXPECT_EQ(view_.coefficients, editor_->Coefficients());
}

}  // namespace
}  // namespace ui
