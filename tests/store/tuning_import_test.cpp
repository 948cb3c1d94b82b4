#include "store/tuning_import.h"

#include <gtest/gtest.h>

#include <functional>
#include <set>

#include "platform/fake/fake_files.h"
#include "platform/fake/fake_registry.h"
#include "tests/store/tuning_file_builder.h"
#include "tests/support/failing_registry.h"
#include "tests/support/registry_tree.h"

namespace store {
namespace {

using platform::RegistryRoot;
using support::FailingRegistry;
using support::RegistryStep;

const std::u16string kFile = u"/program/tuning.vtd";
const std::u16string kGeneric = u"/program/0.vtd";
const std::u16string kLog = u"/state/Velsona.txt";
constexpr ModelFlags kStandard{.threeGuiLayers = false, .davrinModel = false};

// Two routes: headphones with settings of two and one parameters, the speaker with none and one.
TuningFileBuilder SmallFile() {
  TuningFileBuilder file;
  file.Header(0x0200, kTestSsid, 2).Properties("engine", "tool", 20150312, "\x01\x02\x04\x08");
  file.Route(kHeadphonesBytes, kHeadphonesRoute, 2, u"1")
      .FullSetting({1.0F, -0.0F})
      .FullSetting({2.5F});
  file.Route(kSpeakerBytes, kSpeakerRoute, 2, u"2").FullSetting({}).FullSetting({4.0F});
  return file;
}

// A file without properties that sets one parameter of the speaker.
std::string SpeakerFile(std::uint32_t ssid, float value) {
  TuningFileBuilder file;
  file.Header(0x0100, ssid, 1).Route(kSpeakerBytes, kSpeakerRoute, 1, u"2").FullSetting({value});
  return file.Bytes();
}

class TuningImportTest : public testing::Test {
 protected:
  std::optional<std::uint32_t> Import(const std::string& bytes, std::uint32_t ssid = kTestSsid,
                                      ModelFlags model = kStandard) {
    files_.PutFile(kFile, bytes);
    return TuningImport(registry_, files_, model).ImportTuningFile(kFile, ssid);
  }

  support::Tree Stored() { return support::ReadTree(registry_, kProduct); }

  void Clear() { static_cast<void>(registry_.RemoveTree(RegistryRoot::LocalMachine, u"SOFTWARE")); }

  std::optional<float> Speaker(const std::u16string& name, const std::u16string& setting = u"1") {
    return support::GetFloat(registry_,
                             SettingsPath(u"Parameters", kSpeakerRoute) + u"\\" + setting, name);
  }

  platform::FakeRegistry registry_;
  platform::FakeFileSystem files_;
};

TEST_F(TuningImportTest, WritesBothTrees) {
  const TuningFileBuilder file = SmallFile();
  EXPECT_EQ(Import(file.Bytes()), kTestSsid);
  EXPECT_EQ(Stored(), file.TreeAfter(file.Bytes().size()));
  EXPECT_TRUE(files_.Contents(kLog).has_value());
}

TEST_F(TuningImportTest, KeepsWhatStoodBeforeTheCutWhereverAFileIsCut) {
  const TuningFileBuilder file = SmallFile();
  const std::string& bytes = file.Bytes();
  for (std::size_t readable = 0; readable < bytes.size(); ++readable) {
    SCOPED_TRACE(readable);
    Clear();
    EXPECT_EQ(Import(bytes.substr(0, readable)), std::nullopt);
    EXPECT_EQ(Stored(), file.TreeAfter(readable));
  }
  EXPECT_FALSE(files_.Contents(kLog).has_value()) << "a failed import logs nothing";
}

TEST_F(TuningImportTest, ReadErrorCountsLikeTheEndOfTheFile) {
  const TuningFileBuilder file = SmallFile();
  for (const std::size_t readable : {5, 13, 40, 61, 80, 90, 110}) {
    SCOPED_TRACE(readable);
    Clear();
    files_ = platform::FakeFileSystem();
    files_.PutFile(kFile, file.Bytes());
    files_.FailReadsFrom(kFile, readable);
    EXPECT_EQ(TuningImport(registry_, files_, kStandard).ImportTuningFile(kFile, kTestSsid),
              std::nullopt);
    EXPECT_EQ(Stored(), file.TreeAfter(readable));
  }
}

TEST_F(TuningImportTest, RejectsWhatIsNotForThisMachine) {
  const std::string good = SpeakerFile(kTestSsid, 1.0F);
  const auto changed = [&](std::size_t offset, char byte) {
    std::string bytes = good;
    bytes[offset] = byte;
    return bytes;
  };
  for (const std::string& bytes :
       {changed(0, 'k'), changed(2, 'm'), changed(3, 1), changed(4, 3), changed(4, 0),
        changed(5, 0x10), changed(8, 0x1B), std::string()}) {
    EXPECT_EQ(Import(bytes), std::nullopt);
    EXPECT_TRUE(Stored().empty());
  }
  EXPECT_EQ(Import(good, 0), std::nullopt);
  files_.DenyOpening(kFile);
  EXPECT_EQ(Import(good), std::nullopt);
  EXPECT_FALSE(files_.Contents(kLog).has_value());
}

TEST_F(TuningImportTest, ParametersBeyondTheEnginesAreWrittenToo) {
  TuningFileBuilder file;
  file.Header(0x0100, kTestSsid, 1).Route(kSpeakerBytes, kSpeakerRoute, 1, u"2").Setting(1200);
  for (int i = 1; i <= 1200; ++i) file.Parameter(static_cast<float>(i));
  EXPECT_EQ(Import(file.Bytes()), kTestSsid);
  EXPECT_EQ(Stored(), file.TreeAfter(file.Bytes().size()));
  EXPECT_EQ(Speaker(u"Param1200"), 1200.0F);
}

TEST_F(TuningImportTest, EmptyRoutesAndFilesAreComplete) {
  TuningFileBuilder file;
  file.Header(0x0100, kTestSsid, 1).Route(kSpeakerBytes, kSpeakerRoute, 0, u"2");
  EXPECT_EQ(Import(file.Bytes()), kTestSsid);
  EXPECT_TRUE(Stored().empty());
  support::MakeKey(registry_, SettingsPath(u"Parameters", kSpeakerRoute));
  EXPECT_EQ(Import(file.Bytes()), kTestSsid);
  EXPECT_EQ(
      support::GetValue(registry_, SettingsPath(u"Parameters", kSpeakerRoute), u"ActiveSetting")
          ->bytes,
      support::TextBytes(u"2"));
  EXPECT_EQ(Import(TuningFileBuilder().Header(0x0100, kTestSsid, 0).Bytes()), kTestSsid);
}

TEST_F(TuningImportTest, DefaultSettingSuitsRouteAndModel) {
  const std::string subwooferBytes(
      "\x6B\x25\x5D\x76\x1A\x70\xF8\x44\xBA\x7A\x4A\x95\xAF\xA7\xC7\x62", 16);
  const struct {
    std::string bytes;
    std::u16string route;
    std::u16string standard;
    std::u16string davrin;
  } cases[] = {
      {kHeadphonesBytes, kHeadphonesRoute, u"1", u"6"},
      {kLineConnectorBytes, kLineConnectorRoute, u"1", u"6"},
      {kSpeakerBytes, kSpeakerRoute, u"2", u"3"},
      {subwooferBytes, u"{765D256B-701A-44F8-BA7A-4A95AFA7C762}", u"2", u"3"},
      {std::string(16, '\xAB'), u"{ABABABAB-ABAB-ABAB-ABAB-ABABABABABAB}", u"2", u"3"},
  };
  for (const auto& c : cases) {
    for (const bool davrin : {false, true}) {
      TuningFileBuilder file;
      file.Header(0x0100, kTestSsid, 1);
      file.Route(c.bytes, c.route, 1, davrin ? c.davrin : c.standard).FullSetting({1.0F});
      Clear();
      EXPECT_EQ(Import(file.Bytes(), kTestSsid, {.threeGuiLayers = true, .davrinModel = davrin}),
                kTestSsid);
      EXPECT_EQ(Stored(), file.TreeAfter(file.Bytes().size()));
    }
  }
}

TEST_F(TuningImportTest, RegistryFaultsFailTheFile) {
  FailingRegistry registry(registry_);
  const std::u16string parameters = SettingsPath(u"Parameters", kSpeakerRoute) + u"\\2";
  const std::u16string defaults = SettingsPath(u"Defaults", kSpeakerRoute) + u"\\2";
  const struct {
    const char* what;
    std::function<bool(RegistryStep, std::u16string_view, std::u16string_view)> fault;
    bool imported;
  } cases[] = {
      {"live key",
       [&](auto step, auto path, auto) {
         return step == RegistryStep::Create && path == parameters;
       },
       false},
      {"factory's key",
       [&](auto step, auto path, auto) { return step == RegistryStep::Create && path == defaults; },
       false},
      {"live value",
       [&](auto step, auto path, auto name) {
         return step == RegistryStep::Set && path == parameters && name == u"Param1";
       },
       false},
      {"read-back",
       [&](auto step, auto path, auto name) {
         return step == RegistryStep::Query && path == parameters && name == u"Param1";
       },
       false},
      {"factory's value, which nobody reads back",
       [&](auto step, auto path, auto name) {
         return step == RegistryStep::Set && path == defaults && name == u"Param1";
       },
       true},
      {"active setting",
       [&](auto step, auto, auto name) {
         return step == RegistryStep::Set && name == u"ActiveSetting";
       },
       true},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    Clear();
    registry.SetFault(c.fault);
    files_.PutFile(kFile, SmallFile().Bytes());
    EXPECT_EQ(
        TuningImport(registry, files_, kStandard).ImportTuningFile(kFile, kTestSsid).has_value(),
        c.imported);
    // Nothing of the first route depends on the fault.
    EXPECT_TRUE(Stored().contains(SettingsPath(u"Defaults", kHeadphonesRoute) + u"\\2 : Param1"));
  }
}

TEST_F(TuningImportTest, WhatTheStoreCannotTakeIsNeitherLoggedNorDeleted) {
  const struct {
    const char* what;
    RegistryStep step;
    std::u16string_view name;
  } cases[] = {{"a lost commit", RegistryStep::Commit, u""},
               {"a key", RegistryStep::Create, u""},
               {"a value", RegistryStep::Set, u"Param1"}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    Clear();
    FailingRegistry registry(registry_);
    registry.SetFault([&](auto step, auto, auto name) { return step == c.step && name == c.name; });
    files_.PutFile(kFile, SpeakerFile(kTestSsid, 1.0F));
    files_.PutFile(kGeneric, SpeakerFile(0, 4.0F));
    EXPECT_FALSE(TuningImport(registry, files_, kStandard).RunInstallImport(kTestSsid));
    EXPECT_TRUE(files_.Contents(kFile).has_value());
    EXPECT_TRUE(files_.Contents(kGeneric).has_value());
    EXPECT_FALSE(files_.Contents(kLog).has_value());
  }
  EXPECT_TRUE(TuningImport(registry_, files_, kStandard).RunInstallImport(kTestSsid));
  EXPECT_FALSE(files_.Contents(kFile).has_value());
  EXPECT_EQ(Speaker(u"Param1"), 1.0F);
}

TEST_F(TuningImportTest, HeldLogLosesLinesAndNothingElse) {
  files_.PutFile(kLog, "before\r\n");
  {
    const auto holder = files_.OpenExisting(kLog, platform::FileAccess::Append);
    EXPECT_EQ(Import(SmallFile().Bytes()), kTestSsid);
  }
  EXPECT_EQ(files_.Contents(kLog), "before\r\n");
  EXPECT_EQ(Import(SmallFile().Bytes()), kTestSsid);
  EXPECT_TRUE(files_.Contents(kLog)->starts_with("before\r\nNorvane Tonalyx version: "));
}

// Which files are imported and which remain, for a machine with kTestSsid.
struct FolderCase {
  const char* what;
  std::map<std::u16string, std::string> files;
  bool imported;
  std::optional<float> parameter;  // of the speaker, afterwards
  std::set<std::u16string> remaining;
};

TEST_F(TuningImportTest, FolderRules) {
  const std::string own1 = SpeakerFile(kTestSsid, 1.0F);
  const std::string own2 = SpeakerFile(kTestSsid, 2.0F);
  const std::string other = SpeakerFile(kTestSsid + 1, 3.0F);
  const std::string generic = SpeakerFile(0, 4.0F);
  const FolderCase cases[] = {
      {"nothing", {{u"readme.txt", ""}}, false, std::nullopt, {u"readme.txt"}},
      {"own before generic", {{u"a.vtd", own1}, {u"0.vtd", generic}}, true, 1.0F, {}},
      {"later in the list wins", {{u"B.VTD", own2}, {u"a.vtd", own1}}, true, 2.0F, {}},
      {"other machine's", {{u"a.vtd", other}, {u"0.vtd", generic}}, false, 4.0F, {}},
      {"generic alone", {{u"0.vtd", generic}}, false, 4.0F, {}},
      {"generic for a machine", {{u"0.vtd", own1}}, false, std::nullopt, {}},
      {"begins like the generic one", {{u"0.vtd.vtd", own1}}, false, std::nullopt, {u"0.vtd.vtd"}},
      {"capital generic is no generic", {{u"0.VTD", generic}}, false, std::nullopt, {}},
      {"capital generic for the machine", {{u"0.VTD", own1}}, true, 1.0F, {}},
      {"longer extension", {{u"a.vtdx", own1}}, false, std::nullopt, {u"a.vtdx"}},
      {"cut file",
       {{u"a.vtd", own1.substr(0, own1.size() - 1)}, {u"0.vtd", generic}},
       false,
       4.0F,
       {}},
      {"own and other", {{u"a.vtd", own1}, {u"b.vtd", other}}, true, 1.0F, {}},
  };
  for (const FolderCase& c : cases) {
    SCOPED_TRACE(c.what);
    Clear();
    platform::FakeFileSystem files;
    for (const auto& [name, bytes] : c.files) files.PutFile(u"/program/" + name, bytes);
    EXPECT_EQ(TuningImport(registry_, files, kStandard).ImportTuningFiles(kTestSsid), c.imported);
    EXPECT_EQ(Speaker(u"Param1"), c.parameter);
    for (const auto& [name, bytes] : c.files) {
      EXPECT_EQ(files.Contents(u"/program/" + name).has_value(), c.remaining.contains(name));
    }
  }
}

TEST_F(TuningImportTest, UnreadableFilesAndFoldersFallBackToTheGenericFile) {
  files_.PutFolder(u"/program/a.vtd");
  files_.PutFile(u"/program/b.vtd", SpeakerFile(kTestSsid, 1.0F));
  files_.DenyOpening(u"/program/b.vtd");
  files_.PutFile(u"/program/c.vtd", SpeakerFile(kTestSsid + 1, 1.0F));
  files_.DenyRemoval(u"/program/c.vtd");
  files_.PutFile(kGeneric, SpeakerFile(0, 4.0F));
  EXPECT_FALSE(TuningImport(registry_, files_, kStandard).ImportTuningFiles(kTestSsid));
  EXPECT_EQ(Speaker(u"Param1"), 4.0F);
  EXPECT_FALSE(files_.Contents(u"/program/b.vtd").has_value()) << "deletion is tried for each";
  EXPECT_TRUE(files_.Contents(u"/program/c.vtd").has_value());
  EXPECT_FALSE(files_.Contents(kGeneric).has_value());
  EXPECT_NE(files_.Contents(kLog)->find("HWID (SVID/SSID): 0x0(0)\r\n"), std::string::npos);
}

TEST_F(TuningImportTest, InstallMakesVendorKeyAndHintWithAndWithoutFile) {
  const support::StoredValue one{platform::RegistryType::Dword, std::string("\1\0\0\0", 4)};
  TuningImport(registry_, files_, kStandard).RunInstallImport(kTestSsid);
  EXPECT_EQ(support::GetValue(registry_, kProduct, u"HardwareOutputPath"), one);
  EXPECT_FALSE(registry_.AccessListOf(RegistryRoot::LocalMachine, u"SOFTWARE\\Norvane").empty());

  support::PutDword(registry_, kProduct, u"HardwareOutputPath", 2);
  files_.PutFile(kFile, SpeakerFile(kTestSsid, 1.0F));
  TuningImport(registry_, files_, kStandard).RunInstallImport(kTestSsid);
  EXPECT_EQ(support::GetValue(registry_, kProduct, u"HardwareOutputPath"), one);
  EXPECT_EQ(Speaker(u"Param1"), 1.0F);
}

}  // namespace
}  // namespace store
