#include "ui/eq/eq_editor.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>

#include "tests/eq/eq_machine.h"
#include "tests/eq/fake_eq_view.h"

namespace ui {
namespace {

using dsp::FilterType;
using dsp::Knob;
using store::OutputPath;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;

const std::vector<std::string> kSignal = {"GFX speaker", "MFX speaker", "EFX speaker",
                                          "GFX monitor", "MFX monitor", "EFX monitor"};

constexpr int BandParameter(int band, int field) {
  return 118 + 5 * (band - 1) + field;
}
const float kMinusThreeDecibels = std::pow(10.0F, -0.15F);
enum Field { kEnabled, kType, kFrequency, kGain, kQ };

std::vector<std::string> Joined(std::vector<std::string> left,
                                const std::vector<std::string>& right) {
  left.insert(left.end(), right.begin(), right.end());
  return left;
}

// What the controls show of one band and of the knobs.
std::vector<std::string> FullRefresh(const std::vector<std::string>& band) {
  return Joined({"equalizer on", "bass 50", "treble 50", "widener 0", "loudness 0"}, band);
}

class EqEditorTest : public testing::Test {
 protected:
  EqEditorTest() {
    machine_.SetActive(kSpeakerPathKey, u"3");
    machine_.Write(store::Tree::Parameters, kSpeakerPathKey, u"3", EqMachine::InitialSet());
    machine_.events.SetOnSet([this](const std::u16string& name) {
      const std::string text(name.begin(), name.end());  // Global\Velsona***PropEvent***
      log_.push_back(text.substr(14, 3) + " " + text.substr(26));
      storedAtFirstSignal_.try_emplace(0, machine_.ReadAll(kSpeakerPathKey, u"3"));
    });
  }

  void Open() {
    editor_.LoadFirstSet();
    editor_.ShowFirstSet();
    Forget();
  }

  void Forget() {
    log_.clear();
    machine_.events.ClearCalls();
    storedAtFirstSignal_.clear();
  }

  // The parameters of the active set that differ from the initial ones.
  Parameters Changed() {
    const Parameters initial = EqMachine::InitialSet();
    Parameters changed;
    for (const auto& [number, value] : machine_.ReadAll(kSpeakerPathKey, u"3")) {
      if (value != initial.at(number)) changed[number] = value;
    }
    return changed;
  }

  EqMachine machine_;
  EventLog log_;
  FakeEqView view_{log_};
  EqEditor editor_{{machine_.registry, machine_.events, machine_.audioDevices}, view_};
  std::map<int, Parameters> storedAtFirstSignal_;
};

struct EditCase {
  const char* name;
  std::function<void(EqEditor&, FakeEqView&)> edit;
  Parameters changed;  // of the edited set; bands are expected in the mirror too
  std::vector<std::string> before;
  std::vector<std::string> after;
};

std::vector<EditCase> EditCases() {
  const std::vector<std::string> shown = {"select 1", "curve"};
  const auto slider = [](BandSlider which, std::int32_t value) {
    return [which, value](EqEditor& editor, FakeEqView& view) {
      view.sliders[which] = value;
      editor.EditSlider(which);
    };
  };
  const auto knob = [](Knob which, std::int32_t value) {
    return [which, value](EqEditor& editor, FakeEqView& view) {
      view.knobs[which] = value;
      editor.EditKnob(which);
    };
  };
  const auto toggle = [](EqSwitch box) {
    return [box](EqEditor& editor, FakeEqView&) { editor.Toggle(box); };
  };
  return {
      {"gain up",
       slider(BandSlider::Gain, 35),
       {{121, std::pow(10.0F, 3.5F / 20.0F)}},
       {"gain text +3.5 dB"},
       shown},
      {"gain down",
       slider(BandSlider::Gain, -30),
       {{121, kMinusThreeDecibels}},
       {"gain text -3.0 dB"},
       shown},
      {"frequency",
       slider(BandSlider::Frequency, 440),
       {{120, 440.0F}},
       {"frequency text 440 Hz", "bandwidth text 440 Hz"},
       shown},
      {"bandwidth",
       slider(BandSlider::Bandwidth, 10),
       {{122, 4.1F}},
       {"bandwidth text 7 Hz"},
       shown},
      {"band off", toggle(EqSwitch::Band), {{118, 0.0F}}, {"band off"}, shown},
      {"equalizer off", toggle(EqSwitch::Equalizer), {{117, 0.0F}}, {"equalizer off"}, shown},
      {"bass", knob(Knob::Bass, 77), {{232, 0.77F}}, {}, {}},
      {"treble", knob(Knob::Treble, 0), {{250, 0.0F}}, {}, {}},
      {"widener", knob(Knob::Widener, 100), {{5, 1.0F}, {6, 1.0F}}, {}, {}},
      {"loudness at 0 still turns its switch on", knob(Knob::Loudness, 0), {{221, 1.0F}}, {}, {}},
      {"drag",
       [](EqEditor& editor, FakeEqView&) {
         editor.DragBand(1, {62.5F, -6.0F});
       },
       {{120, 62.5F}, {121, std::pow(10.0F, -6.0F / 20.0F)}},
       {"frequency 62", "gain -60", "frequency text 62 Hz", "gain text -6.0 dB",
        "bandwidth text 62 Hz"},
       shown},
      {"low pass",
       [](EqEditor& editor, FakeEqView&) { editor.EditType(FilterType::LowPass); },
       {{119, 2.0F}, {121, kMinusThreeDecibels}, {122, 0.7F}},
       {"uncheck peaking", "uncheck high shelving", "uncheck low shelving", "uncheck high pass",
        "check low pass", "disable bandwidth", "disable gain"},
       Joined(shown,
              FullRefresh({"frequency 31", "gain -30", "bandwidth 44", "band on", "uncheck peaking",
                           "uncheck high shelving", "uncheck low shelving", "uncheck high pass",
                           "check low pass", "disable bandwidth", "disable gain",
                           "bandwidth text 44 Hz", "frequency text 31 Hz", "gain text -3.0 dB"}))},
  };
}

TEST_F(EqEditorTest, AnEditIsStoredThenSignalledOnceThenShown) {
  for (const EditCase& test : EditCases()) {
    SCOPED_TRACE(test.name);
    machine_.Write(store::Tree::Parameters, kSpeakerPathKey, u"3", EqMachine::InitialSet());
    FakeEqView view(log_);
    EqEditor editor({machine_.registry, machine_.events, machine_.audioDevices}, view);
    editor.LoadFirstSet();
    editor.ShowFirstSet();
    Forget();

    test.edit(editor, view);

    EXPECT_THAT(log_, ElementsAreArray(Joined(Joined(test.before, kSignal), test.after)));
    Parameters changed = test.changed;
    for (const auto& [number, value] : test.changed) {
      if (number >= 118 && number <= 167) changed[number + 50] = value;
    }
    EXPECT_EQ(Changed(), changed);
    EXPECT_EQ(storedAtFirstSignal_.at(0), machine_.ReadAll(kSpeakerPathKey, u"3"));
    EXPECT_EQ(editor.Store().committed, editor.Store().values);
  }
}

TEST_F(EqEditorTest, ControlsThatTakeTheirPlacesBeforeTheFirstSetEditNothing) {
  for (const BandSlider slider : {BandSlider::Gain, BandSlider::Frequency, BandSlider::Bandwidth}) {
    editor_.EditSlider(slider);
  }
  editor_.EditKnob(Knob::Widener);
  editor_.SelectBand(4);
  editor_.DragBand(1, {500.0F, 3.0F});
  EXPECT_THAT(log_, IsEmpty());
  EXPECT_EQ(editor_.SelectedBand(), 1);
  EXPECT_EQ(editor_.Store().values, dsp::InitialParameters());
}

TEST_F(EqEditorTest, OpensWithTheStoredSetOfTheRoute) {
  machine_.SetRoute(2);
  machine_.SetActive(kHeadphonesPathKey, u"5");
  Parameters set = EqMachine::InitialSet();
  set.insert_or_assign(117, 0.0F);
  set.insert_or_assign(6, 0.53F);
  set.insert_or_assign(BandParameter(1, kFrequency), 80.9F);
  set.insert_or_assign(BandParameter(1, kType), 4.0F);
  machine_.Write(store::Tree::Parameters, kHeadphonesPathKey, u"5", set);

  const endpoints::WatchStart watch = editor_.LoadFirstSet();
  EXPECT_EQ(watch.endpointGuid, u"speaker");
  EXPECT_EQ(watch.outputPath, OutputPath::Headphone);
  EXPECT_EQ(watch.settingIndex, 4);
  EXPECT_EQ(editor_.Store().pathKey, kHeadphonesPathKey);

  editor_.ShowFirstSet();
  EXPECT_THAT(log_, ElementsAre("equalizer off", "bass 50", "treble 50", "widener 52", "loudness 0",
                                "frequency 80", "gain 0", "bandwidth 41", "band on",
                                "uncheck peaking", "uncheck high shelving", "check low shelving",
                                "uncheck high pass", "uncheck low pass", "disable bandwidth",
                                "enable gain", "bandwidth text 80 Hz", "frequency text 80 Hz",
                                "gain text 0.0 dB", "select 1", "curve"));
  EXPECT_THAT(machine_.events.Calls(), IsEmpty());
  EXPECT_EQ(machine_.ReadAll(kHeadphonesPathKey, u"5"), set);
}

TEST_F(EqEditorTest, OpensWithTheInitialValuesWhenNothingIsStored) {
  struct Case {
    const char* name;
    std::function<void(EqMachine&)> spoil;
    OutputPath route;
    std::u16string guid;
  };
  const Case cases[] = {
      {"no default endpoint", [](EqMachine& m) { m.audioDevices.SetDefault(u""); },
       OutputPath::InternalSpeaker, u""},
      {"a route without settings", [](EqMachine& m) { m.SetRoute(3); },
       OutputPath::SpeakerWithSubwoofer, u"speaker"},
  };
  for (const Case& test : cases) {
    SCOPED_TRACE(test.name);
    EqMachine machine;
    test.spoil(machine);
    EqEditor editor({machine.registry, machine.events, machine.audioDevices}, view_);
    const endpoints::WatchStart watch = editor.LoadFirstSet();
    EXPECT_EQ(watch.outputPath, test.route);
    EXPECT_EQ(watch.endpointGuid, test.guid);
    EXPECT_EQ(watch.settingIndex, 0);
    editor.ShowFirstSet();
    EXPECT_EQ(editor.Store().values, dsp::InitialParameters());
    EXPECT_EQ(view_.texts[BandSlider::Frequency], "31 Hz");
  }
}

TEST_F(EqEditorTest, OnlyTheSelectedBandIsRedesigned) {
  Open();
  editor_.SelectBand(3);
  const dsp::CoefficientTable before = editor_.Coefficients();
  view_.sliders[BandSlider::Gain] = 60;
  editor_.EditSlider(BandSlider::Gain);
  for (std::size_t i = 0; i < before.size(); ++i) {
    EXPECT_EQ(editor_.Coefficients()[i] == before[i], i != 2) << i;
  }
  EXPECT_EQ(view_.coefficients, editor_.Coefficients());
  EXPECT_EQ(machine_.Read(kSpeakerPathKey, u"3", BandParameter(3, kGain)),
            std::pow(10.0F, 6.0F / 20.0F));
}

TEST_F(EqEditorTest, AFrequencyEditRoundsTheStoredQToTheSlider) {
  Parameters set = EqMachine::InitialSet();
  set.insert_or_assign(BandParameter(1, kQ), 0.66F);
  machine_.Write(store::Tree::Parameters, kSpeakerPathKey, u"3", set);
  Open();
  view_.sliders[BandSlider::Frequency] = 100;
  editor_.EditSlider(BandSlider::Frequency);
  EXPECT_EQ(machine_.Read(kSpeakerPathKey, u"3", BandParameter(1, kQ)), 0.7F);
}

TEST_F(EqEditorTest, AStoredTypeThatIsNoneChecksNothingAndLeavesTheSliders) {
  for (const float type : {0.0F, 6.0F, -1.0F, std::numeric_limits<float>::quiet_NaN(), 1e30F}) {
    Parameters set = EqMachine::InitialSet();
    set.insert_or_assign(BandParameter(2, kType), type);
    machine_.Write(store::Tree::Parameters, kSpeakerPathKey, u"3", set);
    Open();
    const dsp::CoefficientTable before = editor_.Coefficients();
    editor_.EditType(FilterType::LowPass);
    editor_.SelectBand(2);
    EXPECT_FALSE(view_.sliderEnabled[BandSlider::Gain]);
    for (const auto& [each, checked] : view_.types) EXPECT_FALSE(checked);
    view_.sliders[BandSlider::Gain] = 50;
    editor_.EditSlider(BandSlider::Gain);
    EXPECT_EQ(editor_.Coefficients()[1], before[1]);
  }
}

TEST_F(EqEditorTest, ABandNumberOutsideTheTenIsSelectedAndEditsNone) {
  for (const std::int32_t band : {0, 11, -1, std::numeric_limits<std::int32_t>::max()}) {
    SCOPED_TRACE(band);
    Open();
    const auto values = editor_.Store().values;
    const auto sliders = view_.sliders;
    editor_.SelectBand(band);
    EXPECT_EQ(editor_.SelectedBand(), band);
    EXPECT_EQ(view_.sliders, sliders);
    Forget();

    view_.sliders[BandSlider::Gain] = 70;
    editor_.EditSlider(BandSlider::Gain);
    EXPECT_THAT(log_, ElementsAreArray(Joined(Joined({"gain text +7.0 dB"}, kSignal),
                                              {"select " + std::to_string(band), "curve"})));
    editor_.EditSlider(BandSlider::Frequency);
    editor_.EditType(FilterType::LowPass);
    editor_.Toggle(EqSwitch::Band);
    editor_.DragBand(band, {4000.0F, 2.0F});
    EXPECT_EQ(editor_.Store().values, values);

    editor_.DragBand(4, {4000.0F, 2.0F});
    EXPECT_EQ(dsp::GetBand(editor_.Store().values, 4).frequency, 4000.0F);
    machine_.Write(store::Tree::Parameters, kSpeakerPathKey, u"3", EqMachine::InitialSet());
  }
}

TEST_F(EqEditorTest, AReloadShowsTheOtherSetInBandOneAndWritesNothing) {
  machine_.SetActive(kHeadphonesPathKey, u"2");
  Parameters set = EqMachine::InitialSet();
  set.insert_or_assign(117, 0.0F);
  set.insert_or_assign(BandParameter(1, kGain), 2.0F);
  set.insert_or_assign(BandParameter(9, kGain), 0.5F);
  machine_.Write(store::Tree::Parameters, kHeadphonesPathKey, u"2", set);
  Open();
  editor_.SelectBand(5);
  const dsp::CoefficientTable before = editor_.Coefficients();
  Forget();

  editor_.Reload(OutputPath::Headphone);
  EXPECT_EQ(editor_.Route(), OutputPath::Headphone);
  EXPECT_EQ(editor_.SelectedBand(), 1);
  EXPECT_EQ(log_.front(), "equalizer off");
  EXPECT_THAT(std::vector(log_.end() - 2, log_.end()), ElementsAre("select 1", "curve"));
  EXPECT_EQ(view_.sliders[BandSlider::Gain], 60);
  EXPECT_NE(view_.coefficients[0], before[0]);
  EXPECT_NE(view_.coefficients[8], before[8]);
  EXPECT_THAT(machine_.events.Calls(), IsEmpty());
  EXPECT_EQ(machine_.ReadAll(kHeadphonesPathKey, u"2"), set);

  // From here on edits go to the route that is shown.
  view_.knobs[Knob::Bass] = 10;
  editor_.EditKnob(Knob::Bass);
  EXPECT_EQ(machine_.Read(kHeadphonesPathKey, u"2", 232), 0.1F);
  EXPECT_EQ(machine_.Read(kSpeakerPathKey, u"3", 232), 0.5F);
}

TEST_F(EqEditorTest, AReloadWithoutADefaultEndpointKeepsTheLoadedSet) {
  Open();
  editor_.SelectBand(5);
  const store::ParameterStore before = editor_.Store();
  machine_.audioDevices.SetDefault(u"");
  editor_.Reload(OutputPath::LineOut);
  EXPECT_EQ(editor_.Store().pathKey, before.pathKey);
  EXPECT_EQ(editor_.Store().activeSetting, before.activeSetting);
  EXPECT_EQ(editor_.Store().values, before.values);
  EXPECT_EQ(view_.selectedBand, 1);
  view_.knobs[Knob::Bass] = 10;
  editor_.EditKnob(Knob::Bass);
  EXPECT_EQ(machine_.Read(kSpeakerPathKey, u"3", 232), 0.1F);
}

TEST_F(EqEditorTest, LoadedSettingsAreShownCommittedAndSignalledOnce) {
  Open();
  editor_.SelectBand(6);
  Forget();
  auto& values = editor_.Store().values;
  values[dsp::ParameterIndex(dsp::kEqualizerEnable)] = 0.0F;
  values[dsp::ParameterIndex(dsp::kBassAmount)] = 0.25F;
  values[dsp::ParameterIndex(BandParameter(6, kGain))] = 2.0F;
  editor_.TakeLoadedSettings();

  EXPECT_THAT(machine_.events.Sets().size(), kSignal.size());
  EXPECT_EQ(Changed(), (Parameters{{117, 0.0F}, {146, 2.0F}, {196, 2.0F}, {232, 0.25F}}));
  EXPECT_EQ(editor_.SelectedBand(), 1);
  EXPECT_EQ(view_.selectedBand, 1);
  EXPECT_EQ(view_.knobs[Knob::Bass], 25);
  EXPECT_FALSE(view_.switches[EqSwitch::Equalizer]);
  EXPECT_EQ(view_.texts[BandSlider::Frequency], "31 Hz");
  EXPECT_EQ(view_.coefficients, editor_.Coefficients());
  EXPECT_NE(view_.coefficients[5], dsp::BiquadCoefficients());
}

TEST_F(EqEditorTest, RestoringTheFactorysValuesSignalsOnceAndNeedsThem) {
  Open();
  editor_.SelectBand(2);
  view_.sliders[BandSlider::Gain] = 70;
  editor_.EditSlider(BandSlider::Gain);
  Forget();
  const auto values = editor_.Store().values;
  editor_.RestoreDefaults();
  EXPECT_THAT(log_, IsEmpty());
  EXPECT_EQ(editor_.Store().values, values);
  EXPECT_EQ(editor_.SelectedBand(), 2);

  machine_.Write(store::Tree::Defaults, kSpeakerPathKey, u"3",
                 {{232, 0.75F}, {BandParameter(2, kGain), 1.0F}});
  editor_.RestoreDefaults();
  EXPECT_THAT(machine_.events.Sets().size(), kSignal.size());
  EXPECT_EQ(Changed(), (Parameters{{232, 0.75F}}));
  EXPECT_EQ(view_.knobs[Knob::Bass], 75);
  EXPECT_EQ(view_.selectedBand, 1);
  EXPECT_EQ(editor_.Coefficients()[1], dsp::BiquadCoefficients());
}

}  // namespace
}  // namespace ui
