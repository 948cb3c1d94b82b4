// Runs the tool and has its files read by the import.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "platform/fake/fake_files.h"
#include "platform/fake/fake_registry.h"
#include "store/tuning_import.h"
#include "tests/support/child_process.h"
#include "tests/support/files.h"
#include "tests/support/registry_tree.h"
#include "tests/support/routes.h"
#include "tests/support/temporary_folder.h"

namespace {

const std::string kTool = TONALYX_BIN_DIR "/vtdmake";
const std::u16string kHeadphones = support::Settings(support::kHeadphones);

class VtdmakeTest : public testing::Test {
 protected:
  support::ProcessResult Make(const std::string& source) {
    std::ofstream(Path("source.json"), std::ios::binary) << source;
    return support::RunProcess({kTool, Path("source.json"), Path("out.vtd")});
  }

  std::string Path(const std::string& name) const { return (folder_.Path() / name).string(); }

  std::string Output() const { return support::ReadFile(Path("out.vtd")); }

  bool Import(const std::string& bytes, std::uint32_t ssid) {
    files_.PutFile(u"/out.vtd", bytes);
    return store::TuningImport(registry_, files_, {}).ImportTuningFile(u"/out.vtd", ssid) == ssid;
  }

  std::optional<float> Headphones(const std::u16string& setting, const std::u16string& name) {
    return support::GetFloat(registry_, kHeadphones + u"\\" + setting, name);
  }

  support::TemporaryFolder folder_;
  platform::FakeRegistry registry_;
  platform::FakeFileSystem files_;
};

TEST_F(VtdmakeTest, WritesWhatTheImportReads) {
  ASSERT_EQ(Make(R"({"version": "0x0100", "ssid": 0, "routes": []})").exitStatus, 0);
  EXPECT_EQ(Output(), std::string("Kel\0\1\0\0\0\0\0\0\0\0", 13)) << "no properties";
  const support::ProcessResult result = Make(R"({
    "version": "0x0200", "ssid": "0x1A9E100F",
    "properties": { "apoName": "Engine \"x\"", "apoMajor": 3, "apoBuild": "-7",
                    "toolVersion": "2.4", "dataVersion": 12, "date": 20150312,
                    "statusSpeaker": 1, "statusSubwoofer": "0x02", "statusHeadphone": 4,
                    "statusLineOut": 8 },
    "routes": [ { "guid": "{dff21ce2-F70F-11D0-B917-00A0C9223196}",
                  "settings": [ [ 1, -2.5, 1e-3 ], { "Param5": 1, "Param1114": 0.25 }, [] ] } ] })");
  EXPECT_EQ(result.errors, "");
  ASSERT_EQ(result.exitStatus, 0);
  EXPECT_EQ(Output().size(), 13U + 48 + 20 + (4 + 3 * 4) + (4 + 1114 * 4) + 4);
  ASSERT_TRUE(Import(Output(), 0x1A9E100F));
  EXPECT_EQ(Headphones(u"1", u"Param2"), -2.5F);
  EXPECT_EQ(Headphones(u"1", u"Param3"), 1e-3F);
  EXPECT_EQ(Headphones(u"1", u"Param4"), std::nullopt);
  EXPECT_EQ(Headphones(u"2", u"Param5"), 1.0F);
  EXPECT_EQ(Headphones(u"2", u"Param117"), 1.0F) << "an initial value";
  EXPECT_EQ(Headphones(u"2", u"Param120"), 31.0F) << "an initial value";
  EXPECT_EQ(Headphones(u"2", u"Param1114"), 0.25F);
  EXPECT_NE(support::OpenToRead(registry_, kHeadphones + u"\\3"), nullptr);
  EXPECT_EQ(Output().substr(13, 48),
            "Engine \"x\"" + std::string(10, '\0') + std::string("\3\0\0\0\xF9\xFF\xFF\xFF", 8) +
                "2.4" + std::string(7, '\0') + std::string("\x0C\0\x28\x78\x33\x01\1\2\4\x08", 10));
}

TEST_F(VtdmakeTest, ErrorsNameLineColumnAndField) {
  const std::string head = "{\"version\": \"0x0200\", \"ssid\": 1,\n";
  const auto setting = [&](const std::string& text) {
    return head + " \"routes\": [{\"guid\": \"{DFF21CE2-F70F-11D0-B917-00A0C9223196}\",\n" +
           "  \"settings\": [[], " + text + "]}]}";
  };
  const struct {
    const char* what;
    std::string source;
    std::string expected;
  } cases[] = {
      {"syntax", "{\n \"ssid\": 1x }", ":2:11: syntax error"},
      {"text behind", "{} {}", ":1:4: syntax error"},
      {"unknown", head + "  \"color\": 1, \"routes\": []}", ":2:12: color: is not known here"},
      {"twice", head + "  \"routes\": [],\n\"routes\": []}", ":3:11: routes: is given twice"},
      {"version", "{\"version\": \"0x0300\"}", ":1:13: version: must be"},
      {"ssid", "{\"version\": \"0x0100\", \"ssid\": \"0x123456789\"}", ":1:31: ssid: must be"},
      {"properties of old format",
       "{\"version\": \"0x0100\", \"ssid\": 1, \"properties\": {}, \"routes\": []}",
       ":1:48: properties: needs"},
      {"long name",
       head + "\"properties\": {\"apoName\": \"12345678901234567890\"}, \"routes\": []}",
       ":2:27: properties.apoName: must have at most 19"},
      {"fraction", head + "\"properties\": {\"statusSpeaker\": 1.5}, \"routes\": []}",
       ":2:33: properties.statusSpeaker: must be a whole number from 0 to 255"},
      {"guid", head + "\"routes\": [{\"guid\": \"speaker\", \"settings\": []}]}",
       ":2:21: routes[0].guid: must be a GUID"},
      {"text in list", setting("[1, \"a\\\"]\", 2]"), ":3:24: routes[0].settings[1][1]: must be a"},
      {"number too large", setting("[1, 1e39]"), ":3:24: routes[0].settings[1][1]: is beyond"},
      {"parameter 0", setting("{\"Param0\": 1}"), ":3:31: routes[0].settings[1].Param0: is no"},
      {"parameter 1115", setting("{\"Param1115\": 1}"), "settings[1].Param1115: is no parameter"},
      {"parameter twice", setting("{\"Param1\": 1,\n\"Param1\": 1}"),
       ":4:11: routes[0].settings[1].Param1: is given twice"},
      {"deep", std::string(200000, '['), ":1:33: nested too deeply"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    const support::ProcessResult result = Make(c.source);
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(result.output, "");
    EXPECT_NE(result.errors.find(Path("source.json") + ":"), std::string::npos);
    EXPECT_NE(result.errors.find(c.expected), std::string::npos) << result.errors;
    EXPECT_EQ(result.errors.find('\n'), result.errors.size() - 1);
    EXPECT_FALSE(std::filesystem::exists(Path("out.vtd")));
  }
}

TEST_F(VtdmakeTest, AFailureLeavesWhatIsThere) {
  std::ofstream(Path("out.vtd")) << "old";
  EXPECT_EQ(Make("{").exitStatus, 1);
  EXPECT_EQ(Output(), "old");
  for (const std::vector<std::string>& call :
       std::vector<std::vector<std::string>>{{kTool, Path("none.json"), Path("out.vtd")},
                                             {kTool, folder_.Path().string(), Path("out.vtd")},
                                             {kTool, Path("source.json"), Path("none/out.vtd")},
                                             {kTool, Path("source.json")},
                                             {kTool, "--fast", "b"}}) {
    EXPECT_EQ(support::RunProcess(call).exitStatus, 1);
  }
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder_.Path()), {}), 2)
      << "no partial file remains";
}

}  // namespace
