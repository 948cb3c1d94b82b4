#include "app/codec_log.h"

#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <span>
#include <string>

#include "tests/app/app_fixture.h"

namespace app {
namespace {

constexpr const char* kNoneInstalled =
    "VELSONAAPO_GFX_CLASS {2B4139E7-89E4-4458-A087-827B58916AC7} not installed\r\n\r\n"
    "VELSONAAPO_EFX_CLASS {DFCCA0CA-849C-4D9C-87DC-E0BE0AD7BAF9} not installed\r\n\r\n"
    "VELSONAAPO_MFX_CLASS {EC5B94CA-4341-4C74-B34B-CB62CA177621} not installed\r\n\r\n"
    "VELSONAAPO_SFX_CLASS {7D22DA36-19D1-4D0D-9E9F-ACED5148F9DD} not installed\r\n\r\n"
    "VELSONAAPO_LFX_CLASS {1C02106E-1BE3-4686-998F-9B33CBCFCF8B} not installed\r\n\r\n";

class CodecLogTest : public AppFixture {
 protected:
  std::unique_ptr<platform::RegistryKey> RegisterClass(std::u16string_view clsid) {
    return machine_.registry.CreateKey(
        platform::RegistryRoot::ClassesRoot,
        u"AudioEngine\\AudioProcessingObjects\\" + std::u16string(clsid),
        platform::kRegistryAllAccess);
  }

  static void SetText(platform::RegistryKey& key, std::u16string_view name,
                      const std::u16string& text) {
    const std::span<const char16_t> units(text.c_str(), text.size() + 1);
    key.SetValue(name, platform::RegistryType::String, std::as_bytes(units));
  }

  static void SetNumber(platform::RegistryKey& key, std::u16string_view name, std::int32_t number) {
    key.SetValue(name, platform::RegistryType::Dword, std::as_bytes(std::span(&number, 1)));
  }

  void LogDevice(std::u16string_view text, std::u16string_view label = {}) {
    LogCodecDevice(text, label, machine_.files, machine_.registry);
  }
};

TEST_F(CodecLogTest, NamesEveryClassThatIsNotInstalled) {
  LogDevice(u"ID (Realtek HDA Codec)\r\n\r\n");
  LogDevice(u"ID (Realtek HDA Codec)\r\n\r\n");
  const std::string entry = std::string("ID (Realtek HDA Codec)\r\n\r\n") + kNoneInstalled;
  EXPECT_EQ(Log(), entry + entry);
}

TEST_F(CodecLogTest, ReportsAnInstalledClassByteForByte) {
  const auto gfx = RegisterClass(u"{2B4139E7-89E4-4458-A087-827B58916AC7}");
  SetText(*gfx, u"FriendlyName", u"Velsona \u20AC \u00E9 \u4E2D GFX");
  SetText(*gfx, u"Copyright", u"\u00A9 Norvane");
  SetNumber(*gfx, u"MajorVersion", 3);
  SetNumber(*gfx, u"MinorVersion", -7);
  RegisterClass(u"{DFCCA0CA-849C-4D9C-87DC-E0BE0AD7BAF9}");
  LogDevice(u"ID\r\n\r\n");
  const std::string log = Log();
  const std::string expected =
      "ID\r\n\r\nVelsona \x80 \xE9 ? GFX\r\n\xA9 Norvane\r\n"
      "VELSONAAPO_GFX_CLASS version: 3.0.0.-7 installed\r\n\r\n"
      "\r\n\r\nVELSONAAPO_EFX_CLASS version: 0.0.0.0 installed\r\n\r\n";
  EXPECT_EQ(log.substr(0, expected.size()), expected);
}

TEST_F(CodecLogTest, WritesANameThatFillsItsBufferAndDropsALongerOne) {
  for (const std::size_t length : {255U, 256U}) {
    machine_.files.Remove(u"/state/Velsona.txt");
    const auto gfx = RegisterClass(u"{2B4139E7-89E4-4458-A087-827B58916AC7}");
    SetText(*gfx, u"FriendlyName", std::u16string(length, u'n'));
    LogDevice(u"ID\r\n\r\n");
    const std::string line = length == 255 ? std::string(255, 'n') : std::string();
    EXPECT_TRUE(Log().starts_with("ID\r\n\r\n" + line + "\r\n\r\nVELSONAAPO_GFX_CLASS version"))
        << length;
  }
}

TEST_F(CodecLogTest, CutsAnIdentificationThatLeavesItsLabelNoRoom) {
  LogDevice(std::u16string(600, u'd'), u" (I2S Audio Codec)\r\n\r\n");
  EXPECT_EQ(Log(), std::string(489, 'd') + " (I2S Audio Codec)\r\n\r\n" + kNoneInstalled);
}

TEST_F(CodecLogTest, KeepsWhatAnotherWritesBetweenOpeningAndCreating) {
  struct Meanwhile : platform::FakeFileSystem {
    std::unique_ptr<platform::File> OpenExisting(std::u16string_view path,
                                                 platform::FileAccess access) override {
      auto file = FakeFileSystem::OpenExisting(path, access);
      if (!file) PutFile(path, "theirs\r\n\r\n");
      return file;
    }
  } files;
  LogCodecDevice(u"ID", u"\r\n\r\n", files, machine_.registry);
  EXPECT_EQ(files.Contents(u"/state/Velsona.txt"),
            std::string("theirs\r\n\r\nID\r\n\r\n") + kNoneInstalled);
}

TEST_F(CodecLogTest, DropsItsLinesWhileAnotherHoldsTheLog) {
  machine_.files.PutFile(u"/state/Velsona.txt", "kept");
  const auto holder =
      machine_.files.OpenExisting(u"/state/Velsona.txt", platform::FileAccess::Append);
  ASSERT_TRUE(holder);
  LogDevice(u"ID\r\n\r\n");
  EXPECT_EQ(Log(), "kept");
}

}  // namespace
}  // namespace app
