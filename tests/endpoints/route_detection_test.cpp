#include "endpoints/route_detection.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <map>
#include <optional>
#include <string>

#include "platform/fake/fake_registry.h"
#include "platform/jack_state.h"
#include "store/registry_layout.h"
#include "tests/support/registry_tree.h"

namespace endpoints {
namespace {

using platform::RegistryType;

const std::u16string kGuid = u"{11111111-1111-1111-1111-111111111111}";
const std::u16string kJackPrefix = u"{1496451E-75E5-484F-9914-A9F246BC960F},";

void AddSstDevice(platform::FakeRegistry& registry, const std::u16string& name,
                  const std::u16string& driver, std::optional<std::uint32_t> headsetStatus) {
  const std::u16string device = std::u16string(store::kMediaClassKey) + u"\\" + name;
  support::PutText(registry, device, u"Driver", driver);
  if (headsetStatus) {
    support::PutDword(registry, device + u"\\HeadsetStatus", u"HeadsetStatus", *headsetStatus);
  }
}

TEST(RouteDetection, JackStateBeatsSstFlagBeatsHint) {
  const auto kNone = std::optional<std::uint32_t>();
  const struct {
    const char* what;
    std::optional<std::uint32_t> hint;
    std::optional<std::uint32_t> sst;
    std::map<std::u16string, std::uint32_t> jack;
    OutputPath expected;
  } cases[] = {
      {"nothing", kNone, kNone, {}, OutputPath::LineOut},
      {"hint 0", 0, kNone, {}, OutputPath::LineOut},
      {"hint 1", 1, kNone, {}, OutputPath::InternalSpeaker},
      {"hint 2", 2, kNone, {}, OutputPath::Headphone},
      {"hint 3", 3, kNone, {}, OutputPath::SpeakerWithSubwoofer},
      {"hint 4", 4, kNone, {}, OutputPath::LineOut},
      {"sst 0 beats hint", 2, 0, {}, OutputPath::InternalSpeaker},
      {"sst 1 beats hint", 3, 1, {}, OutputPath::Headphone},
      {"sst 2 leaves hint", 3, 2, {}, OutputPath::SpeakerWithSubwoofer},
      {"only 6, zero", 2, 1, {{u"6", 0}}, OutputPath::LineOut},
      {"6", 2, 1, {{u"6", 7}}, OutputPath::InternalSpeaker},
      {"6 and 20", kNone, kNone, {{u"6", 1}, {u"20", 5}}, OutputPath::SpeakerWithSubwoofer},
      {"20 without 6", 2, kNone, {{u"20", 1}}, OutputPath::Headphone},
      {"20 with 6 zero", 2, kNone, {{u"6", 0}, {u"20", 1}}, OutputPath::LineOut},
      {"4", kNone, kNone, {{u"4", 1}}, OutputPath::Headphone},
      {"4 is exactly 1", 1, kNone, {{u"4", 2}}, OutputPath::LineOut},
      {"4 beats 6", kNone, kNone, {{u"6", 1}, {u"20", 1}, {u"4", 1}}, OutputPath::Headphone},
      {"1 wins last", kNone, kNone, {{u"6", 1}, {u"20", 1}, {u"1", 1}}, OutputPath::Headphone},
      {"1 zero alone", 2, kNone, {{u"1", 0}}, OutputPath::LineOut},
      {"1 alone", kNone, kNone, {{u"1", 1}}, OutputPath::Headphone},
      {"all zero", 2, 1, {{u"6", 0}, {u"20", 0}, {u"4", 0}, {u"1", 0}}, OutputPath::LineOut},
      {"zeros leave 6",
       kNone,
       kNone,
       {{u"6", 1}, {u"20", 0}, {u"4", 0}, {u"1", 0}},
       OutputPath::InternalSpeaker},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    platform::FakeRegistry registry;
    if (c.hint) {
      support::PutDword(registry, store::kProductKey, u"HardwareOutputPath", *c.hint);
    }
    if (c.sst) AddSstDevice(registry, u"0003", u"isstrtc.sys", c.sst);
    for (const auto& [number, value] : c.jack) {
      support::PutDword(registry, platform::JackKeyPath(kGuid), kJackPrefix + number, value);
    }
    EXPECT_EQ(DetectOutputPath(registry, kGuid), c.expected);
    if (c.jack.empty()) {
      EXPECT_EQ(DetectOutputPath(registry, u""), c.expected) << "without an endpoint";
    }
  }
}

TEST(RouteDetection, SizesCountButOnlyTheSstFlagHasAType) {
  platform::FakeRegistry registry;
  const std::string one("\1\0\0\0", 4);
  support::PutValue(registry, store::kProductKey, u"HardwareOutputPath", RegistryType::Binary,
                    std::string("\2\0\0\0\0\0\0\0", 8));
  EXPECT_EQ(DetectOutputPath(registry, kGuid), OutputPath::LineOut) << "eight bytes do not fit";
  support::PutValue(registry, store::kProductKey, u"HardwareOutputPath", RegistryType::Binary, one);
  EXPECT_EQ(DetectOutputPath(registry, kGuid), OutputPath::InternalSpeaker);

  AddSstDevice(registry, u"0000", u"isstrtc.sys", 1);
  const std::u16string headset = std::u16string(store::kMediaClassKey) + u"\\0000\\HeadsetStatus";
  EXPECT_EQ(DetectOutputPath(registry, kGuid), OutputPath::Headphone);
  support::PutValue(registry, headset, u"HeadsetStatus", RegistryType::Binary, one);
  EXPECT_EQ(DetectOutputPath(registry, kGuid), OutputPath::InternalSpeaker);

  support::PutValue(registry, platform::JackKeyPath(kGuid), kJackPrefix + u"4",
                    RegistryType::Binary, one);
  EXPECT_EQ(DetectOutputPath(registry, kGuid), OutputPath::Headphone);
}

TEST(SstHeadsetKey, BelongsToTheLastDeviceOfThatDriver) {
  platform::FakeRegistry registry;
  EXPECT_EQ(FindSstHeadsetKey(registry), nullptr);
  AddSstDevice(registry, u"0000", u"other.sys", 5);
  AddSstDevice(registry, u"0001", u"ISSTRTC.SYS", 6);
  AddSstDevice(registry, u"0002", u"isstrtc.sys2", 7);
  support::MakeKey(registry, std::u16string(store::kMediaClassKey) + u"\\0003");
  EXPECT_EQ(FindSstHeadsetKey(registry), nullptr);

  AddSstDevice(registry, u"0004", u"isstrtc.sys", 8);
  AddSstDevice(registry, u"0005", u"isstrtc.sys", 9);
  AddSstDevice(registry, u"0006", u"isstrtc.sys", std::nullopt);
  const auto key = FindSstHeadsetKey(registry);
  ASSERT_NE(key, nullptr);
  EXPECT_EQ(support::GetValue(*key, u"HeadsetStatus")->bytes, std::string("\x09\0\0\0", 4));
}

TEST(SstHeadsetKey, DriverIsATextWithOrWithoutItsEnd) {
  const struct {
    std::string bytes;
    RegistryType type;
    bool found;
    const char* what;
  } cases[] = {
      {support::Bytes(u"isstrtc.sys", 22), RegistryType::String, true, "without NUL"},
      {support::TextBytes(u"isstrtc.sys") + support::TextBytes(u"x"), RegistryType::String, true,
       "more behind the NUL"},
      {support::Bytes(u"isstrtc.sys", 22) + "x", RegistryType::String, true, "odd byte"},
      {support::TextBytes(u"isstrtc.sys"), RegistryType::ExpandString, false, "other type"},
      {support::TextBytes(u"isstrtc.sys") + std::string(510, '\0'), RegistryType::String, false,
       "too long"},
  };
  for (const auto& c : cases) {
    platform::FakeRegistry registry;
    AddSstDevice(registry, u"0000", u"", 1);
    support::PutValue(registry, std::u16string(store::kMediaClassKey) + u"\\0000", u"Driver",
                      c.type, c.bytes);
    EXPECT_EQ(FindSstHeadsetKey(registry) != nullptr, c.found) << c.what;
  }
}

}  // namespace
}  // namespace endpoints
