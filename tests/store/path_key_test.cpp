#include "store/path_key.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "store/registry_layout.h"

namespace store {
namespace {

using store::OutputPath;

TEST(PathKey, FollowsRouteForSpeakersAndJackForEverythingElse) {
  const std::u16string speaker = u"{DFF21CE1-F70F-11D0-B917-00A0C9223196}";
  const std::u16string lowerSpeaker = u"{dff21ce1-f70f-11d0-b917-00a0c9223196}";
  const std::u16string headphones = u"{DFF21CE2-F70F-11D0-B917-00A0C9223196}";
  const std::u16string lineConnector = u"{DFF21FE3-F70F-11D0-B917-00A0C9223196}";
  const std::u16string subwoofer = u"{765D256B-701A-44F8-BA7A-4A95AFA7C762}";
  const struct {
    std::u16string jackSubType;
    OutputPath route;
    std::u16string expected;
  } cases[] = {
      {speaker, OutputPath::LineOut, lineConnector},
      {speaker, OutputPath::InternalSpeaker, speaker},
      {speaker, OutputPath::Headphone, headphones},
      {speaker, OutputPath::SpeakerWithSubwoofer, subwoofer},
      {lowerSpeaker, OutputPath::Headphone, headphones},
      {lowerSpeaker, OutputPath::InternalSpeaker, lowerSpeaker},
      {headphones, OutputPath::InternalSpeaker, headphones},
      {headphones, OutputPath::SpeakerWithSubwoofer, headphones},
      {u"", OutputPath::Headphone, u""},
      {u"speaker", OutputPath::Headphone, u"speaker"},
      {speaker + u" ", OutputPath::Headphone, speaker + u" "},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(ResolvePathKey(c.jackSubType, c.route), c.expected);
  }
}

TEST(RegistryLayout, NamesParametersInPlainDecimal) {
  EXPECT_EQ(ParameterName(1), u"Param1");
  EXPECT_EQ(ParameterName(10), u"Param10");
  EXPECT_EQ(ParameterName(999), u"Param999");
  EXPECT_EQ(ParameterName(1114), u"Param1114");
  EXPECT_EQ(FormatParameterName(1115), u"Param1115");
  EXPECT_EQ(FormatParameterName(4294967295U), u"Param4294967295");
}

}  // namespace
}  // namespace store
