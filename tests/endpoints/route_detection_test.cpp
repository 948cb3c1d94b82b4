#include "endpoints/route_detection.h"

#include <gtest/gtest.h>

#include <map>
#include <optional>

#include "platform/fake/failing_registry.h"
#include "platform/fake/fake_registry.h"
#include "platform/jack_state.h"
#include "tests/support/registry_tree.h"
#include "tests/support/routes.h"

namespace endpoints {
namespace {

using platform::RegistryType;
using store::OutputPath;
using enum store::OutputPath;

const std::u16string kGuid = u"{11111111-1111-1111-1111-111111111111}";
const std::u16string kJack = support::JackKey(kGuid);
const std::string kSst = support::TextBytes(u"isstrtc.sys");

void AddSst(platform::Registry& registry, const std::u16string& name, const std::string& driver,
            std::optional<std::uint32_t> headsetStatus = 1,
            RegistryType type = RegistryType::String) {
  const std::u16string device = support::kMediaClass + u"\\" + name;
  support::PutValue(registry, device, u"Driver", type, driver);
  if (headsetStatus) {
    support::PutDword(registry, device + u"\\HeadsetStatus", u"HeadsetStatus", *headsetStatus);
  }
}

TEST(RouteDetection, JackStateBeatsSstFlagBeatsHint) {
  const auto kNone = std::optional<std::uint32_t>();
  const struct {
    std::optional<std::uint32_t> hint, sst;
    std::map<std::u16string, std::uint32_t> jack;
    OutputPath expected;
  } cases[] = {
      {kNone, kNone, {}, LineOut},
      {0, kNone, {}, LineOut},
      {1, kNone, {}, InternalSpeaker},
      {2, kNone, {}, Headphone},
      {3, kNone, {}, SpeakerWithSubwoofer},
      {4, kNone, {}, LineOut},
      {2, 0, {}, InternalSpeaker},
      {3, 1, {}, Headphone},
      {3, 2, {}, SpeakerWithSubwoofer},
      {2, 1, {{u"6", 0}}, LineOut},
      {2, 1, {{u"6", 7}}, InternalSpeaker},
      {kNone, kNone, {{u"6", 1}, {u"20", 5}}, SpeakerWithSubwoofer},
      {2, kNone, {{u"20", 1}}, Headphone},
      {2, kNone, {{u"6", 0}, {u"20", 1}}, LineOut},
      {1, kNone, {{u"4", 1}}, Headphone},
      {1, kNone, {{u"4", 2}}, LineOut},
      {kNone, kNone, {{u"6", 1}, {u"20", 1}, {u"4", 1}}, Headphone},
      {kNone, kNone, {{u"6", 1}, {u"4", 0}}, InternalSpeaker},
      {kNone, kNone, {{u"6", 1}, {u"20", 1}, {u"1", 1}}, Headphone},
      {kNone, kNone, {{u"4", 1}, {u"1", 0}}, Headphone},
      {2, kNone, {{u"1", 0}}, LineOut},
      {2, kNone, {{u"1", 2}}, LineOut},
      {kNone, kNone, {{u"1", 1}}, Headphone},
      {kNone, kNone, {{u"6", 1}, {u"20", 0}, {u"4", 0}, {u"1", 0}}, InternalSpeaker},
  };
  int number = 0;
  for (const auto& c : cases) {
    SCOPED_TRACE(number++);
    platform::FakeRegistry registry;
    if (c.hint) support::PutDword(registry, support::kProduct, u"HardwareOutputPath", *c.hint);
    if (c.sst) AddSst(registry, u"0003", kSst, c.sst);
    for (const auto& [name, value] : c.jack) {
      support::PutDword(registry, kJack, support::kJackPrefix + name, value);
    }
    EXPECT_EQ(DetectOutputPath(registry, kGuid), c.expected);
    if (c.jack.empty()) {
      EXPECT_EQ(DetectOutputPath(registry, u""), c.expected) << "without an endpoint";
    }
  }
}

TEST(RouteDetection, SizesCountButOnlyTheSstFlagHasAType) {
  platform::FakeRegistry inner;
  platform::FailingRegistry registry(inner);
  const std::string one("\1\0\0\0", 4);
  support::PutValue(inner, support::kProduct, u"HardwareOutputPath", RegistryType::Binary,
                    std::string("\2\0\0\0\0\0\0\0", 8));
  EXPECT_EQ(DetectOutputPath(registry, kGuid), LineOut) << "eight bytes do not fit";
  support::PutValue(inner, support::kProduct, u"HardwareOutputPath", RegistryType::Binary, one);
  EXPECT_EQ(DetectOutputPath(registry, kGuid), InternalSpeaker);

  AddSst(inner, u"0000", kSst);
  const std::u16string headset = support::kMediaClass + u"\\0000\\HeadsetStatus";
  EXPECT_EQ(DetectOutputPath(registry, kGuid), Headphone);
  support::PutValue(inner, headset, u"HeadsetStatus", RegistryType::Binary, one);
  EXPECT_EQ(DetectOutputPath(registry, kGuid), InternalSpeaker);

  support::PutValue(inner, kJack, support::kJackPrefix + u"4", RegistryType::Binary, one);
  EXPECT_EQ(DetectOutputPath(registry, kGuid), Headphone);
  for (const auto& [path, masks] : registry.Accesses()) {
    EXPECT_EQ(masks, std::set{0x20119U});
  }
  EXPECT_EQ(registry.Accesses().size(), 5U);
}

TEST(SstHeadsetKey, BelongsToTheLastDeviceOfThatDriverThatHasOne) {
  platform::FakeRegistry registry;
  EXPECT_EQ(FindSstHeadsetKey(registry), nullptr);
  AddSst(registry, u"0000", support::TextBytes(u"other.sys"));
  AddSst(registry, u"0001", support::TextBytes(u"ISSTRTC.SYS"));
  AddSst(registry, u"0002", support::TextBytes(u"isstrtc.sys2"));
  AddSst(registry, u"0003", support::TextBytes(u"isstrtc.sy"));
  support::MakeKey(registry, support::kMediaClass + u"\\0004");
  EXPECT_EQ(FindSstHeadsetKey(registry), nullptr);
  AddSst(registry, u"0005", kSst, 8);
  AddSst(registry, u"0006", kSst, 9);
  AddSst(registry, u"0007", kSst, std::nullopt);
  support::MakeKey(registry, support::kMediaClass + u"\\" + std::u16string(255, u'1'));
  AddSst(registry, u"2", kSst, 10);  // behind a name that fills the buffer, where the search ends
  const auto key = FindSstHeadsetKey(registry);
  ASSERT_NE(key, nullptr);
  EXPECT_EQ(support::GetValue(*key, u"HeadsetStatus")->bytes, std::string("\x09\0\0\0", 4));
}

TEST(SstHeadsetKey, DriverIsATextWithOrWithoutItsEnd) {
  const std::string bare = kSst.substr(0, 22);
  const struct {
    const char* what;
    std::string bytes;
    RegistryType type;
    bool found;
  } cases[] = {
      {"without NUL", bare, RegistryType::String, true},
      {"more behind the NUL", kSst + support::TextBytes(u"x"), RegistryType::String, true},
      {"odd byte", bare + "x", RegistryType::String, true},
      {"other type", kSst, RegistryType::ExpandString, false},
      {"fills the buffer", bare + std::string(510 - 22, '\0'), RegistryType::String, true},
      {"too long", bare + std::string(512 - 22, '\0'), RegistryType::String, false},
  };
  for (const auto& c : cases) {
    platform::FakeRegistry registry;
    AddSst(registry, u"0000", c.bytes, 1, c.type);
    EXPECT_EQ(FindSstHeadsetKey(registry) != nullptr, c.found) << c.what;
  }
}

TEST(JackState, IsWrittenTogetherAndReadAsNumbers) {
  using enum platform::JackProperty;
  platform::FakeRegistry inner;
  platform::FailingRegistry registry(inner);
  EXPECT_TRUE(platform::WriteJackValues(
      registry, kGuid,
      std::vector<platform::JackValue>{
          {OtherHeadphone, 1}, {Headphone, 0x01020304}, {Speaker, 6}, {Subwoofer, 20}}));
  EXPECT_EQ(registry.WriteScopes(), 1);
  EXPECT_EQ(registry.UnprotectedChanges(), 0);
  EXPECT_EQ(support::ReadTree(inner, kJack).size(), 5U);
  EXPECT_EQ(platform::ReadJackValue(inner, kGuid, Subwoofer), 20U);
  EXPECT_EQ(platform::ReadJackValue(inner, kGuid, Headphone), 0x01020304U);
  EXPECT_EQ(platform::ReadJackValue(inner, u"{other}", Headphone), std::nullopt);
  support::PutValue(inner, kJack, support::kJackPrefix + u"4", RegistryType::Binary, "1234");
  EXPECT_EQ(platform::ReadJackValue(inner, kGuid, Headphone), std::nullopt);
  registry.SetFault([](auto step, auto, auto name) {
    return step == platform::RegistryStep::Set && name.ends_with(u",6");
  });
  EXPECT_FALSE(
      platform::WriteJackValues(registry, kGuid, std::vector<platform::JackValue>{{Speaker, 1}}));
}

}  // namespace
}  // namespace endpoints
