#include "store/tuning_import.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <functional>
#include <set>

#include "platform/fake/failing_registry.h"
#include "platform/fake/fake_files.h"
#include "platform/fake/fake_registry.h"
#include "tests/support/registry_tree.h"
#include "tests/support/routes.h"

namespace store {
namespace {

using platform::RegistryRoot;
using platform::RegistryStep;
using platform::RegistryType;
using support::Settings;

constexpr std::uint32_t kSsid = 0x9A9E100F;
const std::u16string kFile = u"/program/tuning.vtd";
const std::u16string kLog = u"/state/Velsona.txt";
constexpr ModelFlags kStandard{.threeGuiLayers = false, .davrinModel = false};

struct Route {
  std::string bytes;
  std::u16string key;
};
const Route kSpeaker = {{"\xE1\x1C\xF2\xDF\x0F\xF7\xD0\x11\xB9\x17\x00\xA0\xC9\x22\x31\x96", 16},
                        support::kSpeaker};
const Route kHeadphones = {{"\xE2\x1C\xF2\xDF\x0F\xF7\xD0\x11\xB9\x17\x00\xA0\xC9\x22\x31\x96", 16},
                           support::kHeadphones};
const Route kLineConnector = {
    {"\xE3\x1F\xF2\xDF\x0F\xF7\xD0\x11\xB9\x17\x00\xA0\xC9\x22\x31\x96", 16},
    support::kLineConnector};
const Route kSubwoofer = {"\x6B\x25\x5D\x76\x1A\x70\xF8\x44\xBA\x7A\x4A\x95\xAF\xA7\xC7\x62",
                          support::kSubwoofer};

std::string Number(std::uint32_t value, std::size_t size = 4) {
  return support::Bytes(&value, size);
}

std::u16string Decimal(std::size_t number) {
  const std::string digits = std::to_string(number);
  return {digits.begin(), digits.end()};
}

// A tuning file, field by field, with what the store must hold once so many bytes could be read.
class TuningFile {
 public:
  TuningFile(std::uint32_t version, std::uint32_t ssid, std::uint32_t routeCount)
      : bytes_("Kel" + Number(version, 2) + Number(ssid) + Number(routeCount)) {}

  TuningFile& Properties(const std::string& name, const std::string& tool, std::uint32_t date,
                         const std::string& status) {
    bytes_ += name + std::string(20 - name.size(), '\0') + Number(3) + Number(0xFFFFFFF9) + tool +
              std::string(10 - tool.size(), '\0') + Number(0xFFFE, 2) + Number(date) + status;
    return *this;
  }

  // `active` is what the import makes the route's setting.
  TuningFile& Add(const Route& route, const std::u16string& active,
                  const std::vector<std::vector<float>>& settings) {
    bytes_ += route.bytes + Number(static_cast<std::uint32_t>(settings.size()));
    if (!settings.empty()) {
      Stores(Settings(route.key), u"ActiveSetting",
             {RegistryType::String, support::TextBytes(active)});
    }
    for (std::size_t s = 0; s < settings.size(); ++s) {
      const std::u16string end = u"\\" + Decimal(s + 1);
      const std::u16string keys[] = {Settings(route.key) + end,
                                     Settings(route.key, u"Defaults") + end};
      for (const std::u16string& key : keys) Stores(key, u"", {});
      bytes_ += Number(static_cast<std::uint32_t>(settings[s].size()));
      for (std::size_t p = 0; p < settings[s].size(); ++p) {
        const std::string value = Number(std::bit_cast<std::uint32_t>(settings[s][p]));
        bytes_ += value;
        for (const std::u16string& key : keys) {
          Stores(key, u"Param" + Decimal(p + 1), {RegistryType::Binary, value});
        }
      }
    }
    return *this;
  }

  const std::string& Bytes() const { return bytes_; }

  support::Tree TreeAfter(std::size_t readable) const {
    support::Tree tree;
    for (const auto& [offset, path, name, value] : stored_) {
      if (offset > readable) continue;
      for (std::u16string key = path; key.size() >= support::kProduct.size();
           key.resize(key.rfind(u'\\'))) {
        tree.try_emplace(key);
      }
      if (!name.empty()) tree[path + u" : " + name] = value;
    }
    return tree;
  }
  support::Tree Tree() const { return TreeAfter(bytes_.size()); }

 private:
  struct Stored {
    std::size_t offset;
    std::u16string path, name;
    support::StoredValue value;
  };

  void Stores(std::u16string path, std::u16string name, support::StoredValue value) {
    stored_.push_back({bytes_.size(), std::move(path), std::move(name), std::move(value)});
  }

  std::string bytes_;
  std::vector<Stored> stored_;
};

TuningFile SmallFile() {
  TuningFile file(0x0200, kSsid, 2);
  file.Properties("engine", "tool", 20150312, "\x01\x02\x04\x08");
  file.Add(kHeadphones, u"1", {{1.0F, -0.0F}, {2.5F}}).Add(kSpeaker, u"2", {{}, {4.0F}});
  return file;
}

// A file without properties that sets one parameter of the speaker.
std::string SpeakerFile(std::uint32_t ssid, float value) {
  return TuningFile(0x0100, ssid, 1).Add(kSpeaker, u"2", {{value}}).Bytes();
}

class TuningImportTest : public testing::Test {
 protected:
  std::optional<std::uint32_t> Import(const std::string& bytes, std::uint32_t ssid = kSsid,
                                      ModelFlags model = kStandard) {
    Clear();
    files_.PutFile(kFile, bytes);
    return TuningImport(registry_, files_, model).ImportTuningFile(kFile, ssid);
  }

  void ExpectImported(const TuningFile& file, ModelFlags model = kStandard) {
    EXPECT_EQ(Import(file.Bytes(), kSsid, model), kSsid);
    EXPECT_EQ(Stored(), file.Tree());
  }

  // What the log then says.
  std::string LogOf(const TuningFile& file, ModelFlags model) {
    static_cast<void>(files_.Remove(kLog));
    EXPECT_EQ(Import(file.Bytes(), kSsid, model), kSsid);
    return files_.Contents(kLog).value_or("");
  }

  support::Tree Stored() { return support::ReadTree(inner_, support::kProduct); }

  void Clear() { static_cast<void>(inner_.RemoveTree(RegistryRoot::LocalMachine, u"SOFTWARE")); }

  std::optional<float> Speaker() {
    return support::GetFloat(inner_, Settings(support::kSpeaker) + u"\\1", u"Param1");
  }

  platform::FakeRegistry inner_;
  platform::FailingRegistry registry_{inner_};
  platform::FakeFileSystem files_;
};

TEST_F(TuningImportTest, WritesBothTreesAndKeepsWhatStoodBeforeACutOrAReadError) {
  const TuningFile file = SmallFile();
  for (std::size_t readable = 0; readable < file.Bytes().size(); ++readable) {
    SCOPED_TRACE(readable);
    EXPECT_EQ(Import(file.Bytes().substr(0, readable)), std::nullopt);
    EXPECT_EQ(Stored(), file.TreeAfter(readable));
  }
  for (const std::size_t readable : {5, 13, 40, 61, 80, 90, 110}) {
    SCOPED_TRACE(readable);
    files_ = platform::FakeFileSystem();
    files_.PutFile(kFile, file.Bytes());
    files_.FailReadsFrom(kFile, readable);
    Clear();
    EXPECT_EQ(TuningImport(registry_, files_, kStandard).ImportTuningFile(kFile, kSsid),
              std::nullopt);
    EXPECT_EQ(Stored(), file.TreeAfter(readable));
  }
  EXPECT_FALSE(files_.Contents(kLog).has_value()) << "a failed import logs nothing";
  files_ = platform::FakeFileSystem();
  ExpectImported(file);
  EXPECT_EQ(registry_.Accesses().at(Settings(support::kSpeaker)), std::set{0x102U});
  for (const std::u16string tree : {u"Parameters", u"Defaults"}) {
    EXPECT_EQ(registry_.Accesses().at(Settings(support::kSpeaker, tree) + u"\\2"),
              std::set{0xF013FU});
  }
}

TEST_F(TuningImportTest, RejectsWhatIsNotForThisMachine) {
  const std::string good = SpeakerFile(kSsid, 1.0F);
  for (const auto& [offset, byte] : std::initializer_list<std::pair<std::size_t, char>>{
           {0, 'k'}, {2, 'm'}, {3, 1}, {4, 3}, {4, 0}, {5, 0x10}, {8, 0x1B}}) {
    std::string bytes = good;
    bytes[offset] = byte;
    EXPECT_EQ(Import(bytes), std::nullopt);
    EXPECT_TRUE(Stored().empty());
  }
  EXPECT_EQ(Import(good, 0), std::nullopt);
  files_.DenyOpening(kFile);
  EXPECT_EQ(Import(good), std::nullopt);
  EXPECT_FALSE(files_.Contents(kLog).has_value());
}

TEST_F(TuningImportTest, DefaultSettingSuitsRouteAndModel) {
  const Route other = {std::string(16, '\xAB'), u"{ABABABAB-ABAB-ABAB-ABAB-ABABABABABAB}"};
  const std::tuple<Route, std::u16string, std::u16string> cases[] = {
      {kHeadphones, u"1", u"6"}, {kLineConnector, u"1", u"6"}, {kSpeaker, u"2", u"3"},
      {kSubwoofer, u"2", u"3"},  {other, u"2", u"3"},
  };
  for (const auto& [route, standard, davrin] : cases) {
    ExpectImported(TuningFile(0x0100, kSsid, 1).Add(route, standard, {{1.0F}}),
                   {.threeGuiLayers = true, .davrinModel = false});
    ExpectImported(TuningFile(0x0100, kSsid, 1).Add(route, davrin, {{1.0F}}),
                   {.threeGuiLayers = true, .davrinModel = true});
  }
}

TEST_F(TuningImportTest, ReadsAnyCountAndStopsBehindARouteThatFails) {
  ExpectImported(
      TuningFile(0x0100, kSsid, 1).Add(kSpeaker, u"2", {std::vector<float>(1200, 0.5F)}));
  const TuningFile empty = TuningFile(0x0100, kSsid, 1).Add(kSpeaker, u"2", {});
  ExpectImported(empty);
  support::MakeKey(inner_, Settings(support::kSpeaker));
  EXPECT_EQ(TuningImport(registry_, files_, kStandard).ImportTuningFile(kFile, kSsid), kSsid);
  EXPECT_EQ(support::GetValue(inner_, Settings(support::kSpeaker), u"ActiveSetting")->bytes,
            support::TextBytes(u"2"));
  ExpectImported(TuningFile(0x0100, kSsid, 0));

  TuningFile file(0x0100, kSsid, 3);
  file.Add(kLineConnector, u"1", {{3.0F}}).Add(kHeadphones, u"1", {{1.0F, NAN}});
  const support::Tree before = file.Tree();
  file.Add(kSpeaker, u"2", {{1.0F}});
  EXPECT_EQ(Import(file.Bytes()), std::nullopt) << "a NaN never reads back equal";
  EXPECT_EQ(Stored(), before);
}

TEST_F(TuningImportTest, RegistryFaultsFailTheFile) {
  const std::u16string parameters = Settings(support::kSpeaker) + u"\\2";
  const std::u16string defaults = Settings(support::kSpeaker, u"Defaults") + u"\\2";
  const struct {
    const char* what;
    RegistryStep step;
    std::u16string path, name;
    bool imported;
  } cases[] = {
      {"live key", RegistryStep::Create, parameters, u"", false},
      {"factory's key", RegistryStep::Create, defaults, u"", false},
      {"live value", RegistryStep::Set, parameters, u"Param1", false},
      {"read-back", RegistryStep::Query, parameters, u"Param1", false},
      {"factory's value, which nobody reads back", RegistryStep::Set, defaults, u"Param1", true},
      {"setting", RegistryStep::Set, Settings(support::kSpeaker), u"ActiveSetting", true},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    registry_.SetFault([&](RegistryStep step, std::u16string_view path, std::u16string_view name) {
      return step == c.step && path == c.path && name == c.name;
    });
    EXPECT_EQ(Import(SmallFile().Bytes()).has_value(), c.imported);
    // Nothing of the first route depends on the fault.
    EXPECT_TRUE(Stored().contains(Settings(support::kHeadphones, u"Defaults") + u"\\2 : Param1"));
  }
}

TEST_F(TuningImportTest, WhatTheStoreCannotTakeIsNeitherLoggedNorDeleted) {
  const std::u16string generic = u"/program/0.vtd";
  files_.PutFile(kFile, SpeakerFile(kSsid, 1.0F));
  files_.PutFile(generic, SpeakerFile(0, 4.0F));
  for (const auto& [failing, value] :
       {std::pair(RegistryStep::Commit, u""), std::pair(RegistryStep::Create, u""),
        std::pair(RegistryStep::Set, u"Param1")}) {
    Clear();
    registry_.SetFault([failing = failing, value = value](auto step, auto, auto name) {
      return step == failing && name == value;
    });
    EXPECT_FALSE(TuningImport(registry_, files_, kStandard).RunInstallImport(kSsid));
    EXPECT_TRUE(files_.Contents(kFile).has_value());
    EXPECT_TRUE(files_.Contents(generic).has_value());
    EXPECT_FALSE(files_.Contents(kLog).has_value());
  }
}

TEST_F(TuningImportTest, LogDescribesTheFile) {
  const std::string head = "Norvane Tonalyx version: 1, 0, 5, 40\r\nVTD file format: ";
  const std::string ssid = "HWID (SVID/SSID): 0x9A9E100F(-1700917233)\r\n";
  EXPECT_EQ(LogOf(TuningFile(0x0100, kSsid, 0), {.threeGuiLayers = true, .davrinModel = false}),
            head + "0001\r\n" + ssid + "GUI layers: 3\r\nDavrin model: No\r\n");

  const struct {
    ModelFlags model;
    std::string flags;
    std::array<const char*, 6> modes;
  } skins[] = {
      {{.threeGuiLayers = false, .davrinModel = false},
       "GUI layers: 1\r\nDavrin model: No\r\n",
       {"Off: \t\t", "Music: \t\t", "Movie: \t\t", "Recording: \t", "Gaming: \t", "Speech: \t"}},
      {{.threeGuiLayers = true, .davrinModel = true},
       "GUI layers: 3\r\nDavrin model: Yes\r\n",
       {"War Room: \t\t", "Battlefield: \t", "Multimedia: \t", "Action: \t\t", "Soundspace: \t",
        "Off: \t\t\t"}}};
  for (const auto& skin : skins) {
    std::string expected = head + "0002\r\n" + ssid + skin.flags +
                           "\r\nVTD tuning file properties:\r\nAPO name: Velsona engine\r\n"
                           "APO version: 3.0.0.-7\r\nTuning Tool version: 2.4\r\n"
                           "VTD Version: 65534\r\nDate(DDMMYYYY): 12032015\r\n";
    for (const auto& [route, bits] :
         {std::pair("internal speaker", 0x21U), std::pair("headphone", 0x3EU),
          std::pair("line out", 0xC4U), std::pair("internal speaker with subwoofer", 0U)}) {
      expected += std::string("\r\nTuning status ") + route + ":\r\n";
      for (unsigned i = 0; i < 6; ++i) {
        expected += skin.modes[i] + std::string((bits >> i & 1U) != 0 ? "Set" : "Not set") + "\r\n";
      }
    }
    TuningFile file(0x0200, kSsid, 0);
    file.Properties("Velsona engine", "2.4", 12032015, {"\x21\x00\x3E\xC4", 4});
    EXPECT_EQ(LogOf(file, skin.model), expected);
  }
}

TEST_F(TuningImportTest, LogTellsTheOrderOfDatesAndCutsTexts) {
  const std::string nul(1, '\0');
  const std::string n(20, 'n');
  const std::string t(10, 't');
  const struct {
    std::string name, tool;
    std::uint32_t date;
    std::string shownName, shownTool, shownDate;
  } cases[] = {
      {"a", "b", 20150312, "a", "b", "Date(YYYYMMDD): 20150312"},
      {"name" + nul + "rest", nul + "rest", 20120312, "name", "", "Date(DDMMYYYY): 20120312"},
      {n, t, 20130312, n, t, "Date(YYYYMMDD): 20130312"},
      {"", "", 0, "", "", "Date(DDMMYYYY): 00000000"},
      {"a", "b", 4294967295U, "a", "b", "Date(YYYYMMDD): 4294967295"},
  };
  for (const auto& c : cases) {
    TuningFile file(0x0200, kSsid, 0);
    file.Properties(c.name, c.tool, c.date, std::string(4, '\0'));
    EXPECT_NE(LogOf(file, kStandard)
                  .find("APO name: " + c.shownName +
                        "\r\nAPO version: 3.0.0.-7\r\nTuning Tool version: " + c.shownTool +
                        "\r\nVTD Version: 65534\r\n" + c.shownDate + "\r\n"),
              std::string::npos)
        << c.shownDate;
  }
  files_.PutFile(kLog, "before\r\n");
  {
    const auto holder = files_.OpenExisting(kLog, platform::FileAccess::Append);
    EXPECT_EQ(Import(SmallFile().Bytes()), kSsid);
  }
  EXPECT_EQ(files_.Contents(kLog), "before\r\n") << "a held log loses lines and nothing else";
  EXPECT_EQ(Import(SmallFile().Bytes()), kSsid);
  EXPECT_TRUE(files_.Contents(kLog)->starts_with("before\r\nNorvane Tonalyx version: "));
}

// Which files are imported and which remain, for a machine with kSsid.
TEST_F(TuningImportTest, FolderRules) {
  const std::string own1 = SpeakerFile(kSsid, 1.0F);
  const std::string own2 = SpeakerFile(kSsid, 2.0F);
  const std::string other = SpeakerFile(kSsid + 1, 3.0F);
  const std::string generic = SpeakerFile(0, 4.0F);
  const std::string cut = own1.substr(0, own1.size() - 1);
  const std::optional<float> none;
  const struct {
    const char* what;
    std::map<std::u16string, std::string> files;
    bool imported;
    std::optional<float> parameter;  // of the speaker, afterwards
    std::set<std::u16string> remaining;
  } cases[] = {
      {"nothing", {{u"readme.txt", ""}}, false, none, {u"readme.txt"}},
      {"own before generic", {{u"a.vtd", own1}, {u"0.vtd", generic}}, true, 1.0F, {}},
      {"later in the list wins", {{u"B.VTD", own2}, {u"a.vtd", own1}}, true, 2.0F, {}},
      {"other machine's", {{u"a.vtd", other}, {u"0.vtd", generic}}, false, 4.0F, {}},
      {"generic alone", {{u"0.vtd", generic}}, false, 4.0F, {}},
      {"generic for a machine", {{u"0.vtd", own1}}, false, none, {}},
      {"begins like generic", {{u"0.vtd.vtd", own1}}, false, none, {u"0.vtd.vtd"}},
      {"capital generic is no generic", {{u"0.VTD", generic}}, false, none, {}},
      {"capital generic for the machine", {{u"0.VTD", own1}}, true, 1.0F, {}},
      {"longer extension", {{u"a.vtdx", own1}}, false, none, {u"a.vtdx"}},
      {"cut file", {{u"a.vtd", cut}, {u"0.vtd", generic}}, false, 4.0F, {}},
      {"own and other", {{u"a.vtd", own1}, {u"b.vtd", other}}, true, 1.0F, {}},
      {"unreadable", {{u"denied.vtd", own1}, {u"0.vtd", generic}}, false, 4.0F, {}},
      {"kept", {{u"kept.vtd", other}, {u"z.vtd", own1}}, true, 1.0F, {u"kept.vtd"}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    Clear();
    platform::FakeFileSystem files;
    files.PutFolder(u"/program/folder.vtd");
    for (const auto& [name, bytes] : c.files) files.PutFile(u"/program/" + name, bytes);
    files.DenyOpening(u"/program/denied.vtd");
    files.DenyRemoval(u"/program/kept.vtd");
    EXPECT_EQ(TuningImport(registry_, files, kStandard).ImportTuningFiles(kSsid), c.imported);
    EXPECT_EQ(Speaker(), c.parameter);
    for (const auto& [name, bytes] : c.files) {
      EXPECT_EQ(files.Contents(u"/program/" + name).has_value(), c.remaining.contains(name));
    }
    const std::string log = files.Contents(kLog).value_or("");
    EXPECT_EQ(log.find("0x0(0)\r\n") != std::string::npos, c.parameter == 4.0F) << log;
  }
}

TEST_F(TuningImportTest, InstallImportsForItsMachineAndLeavesVendorKeyAndHint) {
  const support::StoredValue one{RegistryType::Dword, std::string("\1\0\0\0", 4)};
  const auto install = [&] {
    EXPECT_TRUE(TuningImport(registry_, files_, kStandard).RunInstallImport(kSsid));
    EXPECT_EQ(support::GetValue(inner_, support::kProduct, u"HardwareOutputPath"), one);
    EXPECT_FALSE(inner_.AccessListOf(RegistryRoot::LocalMachine, u"SOFTWARE\\Norvane").empty());
  };
  install();
  support::PutDword(inner_, support::kProduct, u"HardwareOutputPath", 2);
  files_.PutFile(kFile, SpeakerFile(kSsid, 1.0F));
  files_.PutFile(u"/program/0.vtd", SpeakerFile(0, 4.0F));
  install();
  EXPECT_EQ(Speaker(), 1.0F);
  EXPECT_EQ(files_.Contents(u"/program/0.vtd"), std::nullopt);
  EXPECT_EQ(registry_.Accesses().at(support::kProduct), (std::set{0x102U, 0xF013FU}));
}

}  // namespace
}  // namespace store
