// laptopctl as a person and a script call it.
#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>
#include <iterator>

#include "platform/jack_state.h"
#include "platform/linux/registry/sqlite_registry.h"
#include "platform/text.h"
#include "platform/virtual/laptop_file.h"
#include "resources/sample_models.h"
#include "tests/support/child_process.h"
#include "tests/support/files.h"
#include "tests/support/temporary_folder.h"

namespace {

using platform::JackProperty;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class LaptopctlTest : public testing::Test {
 protected:
  support::ProcessResult Run(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), TONALYX_BIN_DIR "/laptopctl");
    return support::RunProcess(arguments, {{"TONALYX_ROOT", Root().string()}});
  }
  int Status(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), File().string());
    return Run(std::move(arguments)).exitStatus;
  }

  std::filesystem::path Root() const { return folder_.Path() / "state"; }
  std::filesystem::path File() const { return folder_.Path() / "laptop.json"; }

  std::string Text() const { return support::ReadFile(File()); }
  platform::LaptopFile Laptop() const {
    return platform::ParseLaptopFile(Text(), nullptr).value_or(platform::LaptopFile());
  }
  std::string IdOf(std::size_t endpoint) const {
    return platform::ToUtf8(Laptop().endpoints->at(endpoint).id);
  }

  // ",6", ",20", ",4" and ",1" of an endpoint.
  std::vector<std::optional<std::uint32_t>> Jack(std::size_t endpoint = 0) const {
    platform::SqliteRegistry registry(Root());
    std::vector<std::optional<std::uint32_t>> values;
    for (const JackProperty property : {JackProperty::Speaker, JackProperty::Subwoofer,
                                        JackProperty::Headphone, JackProperty::OtherHeadphone}) {
      values.push_back(
          platform::ReadJackValue(registry, Laptop().endpoints->at(endpoint).guid, property));
    }
    return values;
  }

  support::TemporaryFolder folder_;
};

TEST_F(LaptopctlTest, MakesALaptopOfEachKind) {
  const struct {
    const char* kind;
    std::uint32_t ssid;
  } kinds[] = {{"standard", resources::kStandardSample},
               {"layers", resources::kLayersSample},
               {"davrin", resources::kDavrinSample},
               {"unsupported", resources::kUnsupportedSample}};
  for (const auto& [kind, ssid] : kinds) {
    ASSERT_EQ(Status({"new", kind}), 0) << kind;
    const platform::LaptopFile laptop = Laptop();
    ASSERT_EQ(laptop.devices->size(), 1U);
    char subsystem[17];
    std::snprintf(subsystem, sizeof(subsystem), "SUBSYS_%08X", ssid);
    EXPECT_THAT(
        platform::ToUtf8(laptop.devices->at(0).hardwareIds.at(0)),
        testing::AllOf(testing::StartsWith("HDAUDIO\\FUNC_01&VEN_10EC&"), HasSubstr(subsystem)));
    ASSERT_EQ(laptop.endpoints->size(), 3U);
    EXPECT_EQ(laptop.endpoints->at(0).adapter, u"Realtek High Definition Audio");
    EXPECT_EQ(laptop.endpoints->at(0).id, laptop.defaultEndpoint);
    EXPECT_EQ(laptop.endpoints->at(1).state, platform::kDeviceStateActive);
    EXPECT_EQ(laptop.endpoints->at(2).state, platform::kDeviceStateUnplugged);
    EXPECT_THAT(Jack(), ElementsAre(1U, 0U, 0U, 0U));
  }
  EXPECT_EQ(Run({File().string(), "show"}).output, Text());
}

TEST_F(LaptopctlTest, JackCommandsActOnTheDefaultEndpoint) {
  ASSERT_EQ(Status({"new", "standard"}), 0);
  const std::string before = Text();
  using Values = std::vector<std::optional<std::uint32_t>>;
  const std::pair<std::vector<std::string>, Values> steps[] = {
      {{"plug", "headphones"}, {0, 0, 1, 0}},
      {{"plug", "subwoofer"}, {1, 1, 0, 0}},
      {{"plug", "lineout"}, {0, 0, 0, 0}},
      {{"unplug"}, {1, 0, 0, 0}}};
  for (const auto& [command, values] : steps) {
    ASSERT_EQ(Status(command), 0);
    EXPECT_EQ(Jack(), values);
  }
  EXPECT_EQ(Text(), before);

  ASSERT_EQ(Status({"default", IdOf(1)}), 0);
  ASSERT_EQ(Status({"plug", "headphones"}), 0);
  EXPECT_THAT(Jack(0), ElementsAre(1U, 0U, 0U, 0U));
  EXPECT_THAT(Jack(1), ElementsAre(0U, 0U, 1U, std::nullopt));

  ASSERT_EQ(Status({"default", "none"}), 0);
  EXPECT_EQ(Status({"unplug"}), 1) << "there is nothing to act on";
  ASSERT_EQ(Status({"default", IdOf(2)}), 0);
  EXPECT_EQ(Status({"unplug"}), 1) << "an unplugged default counts as none";
}

TEST_F(LaptopctlTest, ChangesKeepWhatTheyDoNotConcern) {
  std::ofstream(File()) << R"({"owner": {"name": "K"}, "endpoints": [{"id": "a", "x": 1},)"
                        << R"( {"id": "b", "peak": 0.5}], "defaultEndpoint": "a"})";
  ASSERT_EQ(Status({"peak", "a", "0.25"}), 0);
  ASSERT_EQ(Status({"default", "b"}), 0);
  EXPECT_EQ(Laptop().endpoints->at(0).level, 0.25F);
  EXPECT_EQ(Laptop().endpoints->at(1).level, 0.5F);
  EXPECT_EQ(Laptop().defaultEndpoint, u"b");
  EXPECT_THAT(Text(), testing::AllOf(HasSubstr("owner"), HasSubstr("\"x\"")));
  ASSERT_EQ(Status({"default", "none"}), 0);
  EXPECT_EQ(Laptop().defaultEndpoint, u"");
  // Nothing but the file is left in the folder: it was replaced in one step.
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder_.Path()), {}), 1);
}

TEST_F(LaptopctlTest, RefusesWithoutChangingAnything) {
  ASSERT_EQ(Status({"new", "layers"}), 0);
  const std::string before = Text();
  const std::string id = IdOf(1);
  const struct {
    std::vector<std::string> arguments;
    int status;
  } calls[] = {
      {{"default", "{unknown}"}, 1},
      {{"peak", "{unknown}", "0.5"}, 1},
      {{"peak", id, "1.5"}, 2},
      {{"peak", id, "-0.5"}, 2},
      {{"peak", id, "nan"}, 2},
      {{"peak", id, "0.5x"}, 2},
      {{"peak", id}, 2},
      {{"plug", "microphone"}, 2},
      {{"unplug", "headphones"}, 2},
      {{"new", "desktop"}, 2},
      {{"show", "me"}, 2},
      {{"paint"}, 2},
      {{}, 2},
  };
  for (auto [arguments, status] : calls) {
    arguments.insert(arguments.begin(), File().string());
    const support::ProcessResult result = Run(arguments);
    EXPECT_EQ(result.exitStatus, status) << testing::PrintToString(arguments);
    EXPECT_THAT(result.errors, testing::Not(IsEmpty())) << testing::PrintToString(arguments);
    EXPECT_THAT(result.output, IsEmpty());
  }
  EXPECT_EQ(Text(), before);
  EXPECT_THAT(Jack(), ElementsAre(1U, 0U, 0U, 0U));
  EXPECT_EQ(Run({}).exitStatus, 2);
  EXPECT_EQ(Run({"--help"}).exitStatus, 0);
  EXPECT_EQ(Run({"/nowhere/laptop.json", "new", "layers"}).exitStatus, 1);
  std::ofstream(File()) << "{\n \"endpoints\": 7}";
  const support::ProcessResult bad = Run({File().string(), "unplug"});
  EXPECT_EQ(bad.exitStatus, 1);
  EXPECT_THAT(bad.errors, HasSubstr(":2:15: \"endpoints\" must be a list"));
}

}  // namespace
