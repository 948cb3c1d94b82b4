#include "platform/virtual/laptop_file.h"

#include <gmock/gmock.h>

namespace platform {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

LaptopFile Parsed(std::string_view text) {
  LaptopFileError error;
  const std::optional<LaptopFile> laptop = ParseLaptopFile(text, &error);
  if (laptop) return *laptop;
  ADD_FAILURE() << error.line << ":" << error.column << ": " << error.message;
  return {};
}

TEST(LaptopFileTest, ReadsEveryMember) {
  const LaptopFile laptop = Parsed(R"({
    "devices": [
      { "hardwareIds": ["HDAUDIO\\FUNC_01&VEN_10EC", "HDAUDIO\\FUNC_01"], "description": "Käfer",
        "class": "MEDIA", "classGuid": "{4D36E96C}", "status": "ok" },
      { "status": "problem" } ],
    "endpoints": [
      { "id": "b", "guid": "{B}", "jackSubType": "{J}", "adapter": "Realtek", "state": "unplugged",
        "peak": 0.25 },
      { "id": "a", "peak": 1 } ],
    "defaultEndpoint": "a" })");
  ASSERT_EQ(laptop.devices->size(), 2U);
  const DeviceRecord& codec = laptop.devices->at(0);
  EXPECT_THAT(codec.hardwareIds, ElementsAre(u"HDAUDIO\\FUNC_01&VEN_10EC", u"HDAUDIO\\FUNC_01"));
  EXPECT_EQ(codec.description, u"K\u00E4fer");
  EXPECT_EQ(codec.deviceClass, u"MEDIA");
  EXPECT_EQ(codec.classGuid, u"{4D36E96C}");
  EXPECT_EQ(codec.status, DeviceRecord::Status::Ok);
  EXPECT_EQ(laptop.devices->at(1).status, DeviceRecord::Status::QueryFails);
  EXPECT_THAT(
      *laptop.endpoints,
      ElementsAre(ListedEndpoint{u"b", u"{B}", u"{J}", u"Realtek", kDeviceStateUnplugged, 0.25F},
                  ListedEndpoint{u"a", u"", u"", u"", kDeviceStateActive, 1.0F}));
  EXPECT_EQ(laptop.defaultEndpoint, u"a");

  const LaptopFile again = Parsed(SerialiseLaptopFile(laptop));
  EXPECT_EQ(again.endpoints, laptop.endpoints);
  EXPECT_EQ(again.defaultEndpoint, laptop.defaultEndpoint);
  ASSERT_EQ(again.devices->size(), 2U);
  EXPECT_EQ(again.devices->at(0).hardwareIds, codec.hardwareIds);
  EXPECT_EQ(again.devices->at(1).status, DeviceRecord::Status::QueryFails);
}

TEST(LaptopFileTest, SkipsWhatItDoesNotKnowAndTakesNullForMissing) {
  const LaptopFile laptop = Parsed(R"({
    "comment": { "devices": 5, "endpoints": [ { "peak": "loud" } ] },
    "defaultEndpoint": null,
    "endpoints": [ { "state": null, "colour": [1, [2, true], null], "peak": null, "id": "a" } ] })");
  EXPECT_FALSE(laptop.devices);
  EXPECT_THAT(*laptop.endpoints, ElementsAre(ListedEndpoint{u"a"}));
  EXPECT_EQ(laptop.defaultEndpoint, u"");
  EXPECT_THAT(*Parsed(R"({"devices": []})").devices, IsEmpty());
  EXPECT_FALSE(Parsed("{}").endpoints);
}

TEST(LaptopFileTest, ErrorsNameTheirPlace) {
  const struct {
    std::string text;
    std::size_t line;
    std::size_t column;
    const char* message;
  } cases[] = {
      {"", 1, 1, "end of input"},
      {"{\n  \"devices\": [}\n}", 2, 15, "unexpected '}'"},
      {"[]", 1, 1, "one object"},
      {"{\n \"devices\": 5}", 2, 13, "\"devices\" must be a list"},
      {"{\"endpoints\": [\n\t7]}", 2, 2, "an endpoint must be an object"},
      {"{\"endpoints\": [{\"id\":\n true}]}", 2, 2, "\"id\" must be a text"},
      {"{\"endpoints\": [{\"state\": \"asleep \\\"\"}]}", 1, 26, "\"active\" or \"unplugged\""},
      {"{\"endpoints\": [{\"peak\": -0.5}]}", 1, 25, "from 0 to 1"},
      {"{\"endpoints\": [{\"peak\": 1e999}]}", 1, 29, "number overflow"},
      {"{\"endpoints\": [{\"peak\": 12 }]}", 1, 25, "from 0 to 1"},
      {"{\"devices\": [{\"hardwareIds\": [\"a\", 1]}]}", 1, 36, "a hardware ID must be a text"},
      {"{\"devices\": [{\"description\": \"ü\", \"class\": []}]}", 1, 44,
       "\"class\" must be a text"},
      {"{\"defaultEndpoint\": \"\x80\"}", 1, 22, "UTF-8"},
  };
  for (const auto& [text, line, column, message] : cases) {
    LaptopFileError error;
    EXPECT_FALSE(ParseLaptopFile(text, &error)) << text;
    EXPECT_EQ(error.line, line) << text;
    EXPECT_EQ(error.column, column) << text;
    EXPECT_THAT(error.message, HasSubstr(message)) << text;
  }
}

TEST(LaptopFileTest, RefusesAbsurdDepth) {
  const auto nested = [](std::size_t depth) {
    return "{\"x\": " + std::string(depth, '[') + std::string(depth, ']') + "}";
  };
  LaptopFileError error;
  EXPECT_FALSE(ParseLaptopFile(nested(200'000), &error));
  EXPECT_THAT(error.message, HasSubstr("deep"));
  EXPECT_TRUE(ParseLaptopFile(nested(50), nullptr));
}

}  // namespace
}  // namespace platform
