#include "store/tuning_log.h"

#include <gtest/gtest.h>

#include <string>

#include "platform/fake/fake_files.h"
#include "platform/fake/fake_registry.h"
#include "store/tuning_import.h"
#include "tests/store/tuning_file_builder.h"

namespace store {
namespace {

// The log after the import of a file without routes.
std::string LogOf(const TuningFileBuilder& file, std::uint32_t ssid, ModelFlags model) {
  platform::FakeRegistry registry;
  platform::FakeFileSystem files;
  files.PutFile(u"/x.vtd", file.Bytes());
  EXPECT_EQ(TuningImport(registry, files, model).ImportTuningFile(u"/x.vtd", ssid), ssid);
  return files.Contents(u"/state/Velsona.txt").value_or("");
}

TEST(TuningLog, OldFormatIsDescribedByOneRecord) {
  EXPECT_EQ(LogOf(TuningFileBuilder().Header(0x0100, 0x1A9E100F, 0), 0x1A9E100F,
                  {.threeGuiLayers = true, .davrinModel = false}),
            "Norvane Tonalyx version: 1, 0, 5, 40\r\n"
            "VTD file format: 0001\r\n"
            "HWID (SVID/SSID): 0x1A9E100F(446566415)\r\n"
            "GUI layers: 3\r\n"
            "Davrin model: No\r\n");
}

TEST(TuningLog, NewFormatOnDavrinModel) {
  const std::string status("\x21\x00\x3F\xC0", 4);
  TuningFileBuilder file;
  file.Header(0x0200, 0x9A9E100F, 0).Properties("Velsona engine", "2.4", 12032015, status);
  EXPECT_EQ(LogOf(file, 0x9A9E100F, {.threeGuiLayers = true, .davrinModel = true}),
            "Norvane Tonalyx version: 1, 0, 5, 40\r\n"
            "VTD file format: 0002\r\n"
            "HWID (SVID/SSID): 0x9A9E100F(-1700917233)\r\n"
            "GUI layers: 3\r\n"
            "Davrin model: Yes\r\n"
            "\r\n"
            "VTD tuning file properties:\r\n"
            "APO name: Velsona engine\r\n"
            "APO version: 3.0.0.-7\r\n"
            "Tuning Tool version: 2.4\r\n"
            "VTD Version: 65534\r\n"
            "Date(DDMMYYYY): 12032015\r\n"
            "\r\n"
            "Tuning status internal speaker:\r\n"
            "War Room: \t\tSet\r\n"
            "Battlefield: \tNot set\r\n"
            "Multimedia: \tNot set\r\n"
            "Action: \t\tNot set\r\n"
            "Soundspace: \tNot set\r\n"
            "Off: \t\t\tSet\r\n"
            "\r\n"
            "Tuning status headphone:\r\n"
            "War Room: \t\tSet\r\n"
            "Battlefield: \tSet\r\n"
            "Multimedia: \tSet\r\n"
            "Action: \t\tSet\r\n"
            "Soundspace: \tSet\r\n"
            "Off: \t\t\tSet\r\n"
            "\r\n"
            "Tuning status line out:\r\n"
            "War Room: \t\tNot set\r\n"
            "Battlefield: \tNot set\r\n"
            "Multimedia: \tNot set\r\n"
            "Action: \t\tNot set\r\n"
            "Soundspace: \tNot set\r\n"
            "Off: \t\t\tNot set\r\n"
            "\r\n"
            "Tuning status internal speaker with subwoofer:\r\n"
            "War Room: \t\tNot set\r\n"
            "Battlefield: \tNot set\r\n"
            "Multimedia: \tNot set\r\n"
            "Action: \t\tNot set\r\n"
            "Soundspace: \tNot set\r\n"
            "Off: \t\t\tNot set\r\n");
}

TEST(TuningLog, StandardModelsListTheirModes) {
  TuningFileBuilder file;
  file.Header(0x0200, 7, 0).Properties("", "", 20150312, std::string("\0\x15\0\0", 4));
  const std::string log = LogOf(file, 7, {.threeGuiLayers = false, .davrinModel = false});
  EXPECT_NE(log.find("GUI layers: 1\r\nDavrin model: No\r\n"), std::string::npos);
  EXPECT_TRUE(
      log.ends_with("\r\nTuning status internal speaker with subwoofer:\r\n"
                    "Off: \t\tSet\r\nMusic: \t\tNot set\r\nMovie: \t\tSet\r\n"
                    "Recording: \tNot set\r\nGaming: \tSet\r\nSpeech: \tNot set\r\n"));
}

TEST(TuningLog, DateOrderIsToldByItsMiddle) {
  const struct {
    std::uint32_t date;
    const char* expected;
  } cases[] = {
      {20150312, "Date(YYYYMMDD): 20150312\r\n"}, {12032015, "Date(DDMMYYYY): 12032015\r\n"},
      {20120312, "Date(DDMMYYYY): 20120312\r\n"}, {20130312, "Date(YYYYMMDD): 20130312\r\n"},
      {0, "Date(DDMMYYYY): 00000000\r\n"},        {4294967295U, "Date(YYYYMMDD): 4294967295\r\n"},
  };
  for (const auto& c : cases) {
    TuningFileBuilder file;
    file.Header(0x0200, 7, 0).Properties("a", "b", c.date, "");
    EXPECT_NE(LogOf(file, 7, {}).find(c.expected), std::string::npos) << c.expected;
  }
}

TEST(TuningLog, TextsEndAtTheirFirstNulOrAtTheirWidth) {
  TuningFileBuilder rest;
  rest.Header(0x0200, 7, 0)
      .Properties(std::string("name\0rest", 9), std::string("\0rest", 5), 0, "");
  const std::string cut = LogOf(rest, 7, {});
  EXPECT_NE(cut.find("APO name: name\r\n"), std::string::npos);
  EXPECT_NE(cut.find("Tuning Tool version: \r\n"), std::string::npos);

  TuningFileBuilder file;
  file.Header(0x0200, 7, 0).Properties(std::string(20, 'n'), std::string(10, 't'), 0, "");
  const std::string log = LogOf(file, 7, {});
  EXPECT_NE(log.find("APO name: " + std::string(20, 'n') + "\r\n"), std::string::npos);
  EXPECT_NE(log.find("Tuning Tool version: " + std::string(10, 't') + "\r\n"), std::string::npos);
}

}  // namespace
}  // namespace store
