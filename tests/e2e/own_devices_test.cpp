// The program on what Windows itself says of codec and endpoints, without a virtual laptop: Wine
// beside a sound server, with a registry that tells what a laptop's drivers would have put there.
#include <cstdio>

#include "resources/sample_models.h"
#include "tests/e2e/panel_fixture.h"

namespace e2e {
namespace {

const std::string kGuid = "{5B1C9E70-3A54-4D0F-8C26-7F1E02A9D401}";
const std::string kMachine = "HKEY_LOCAL_MACHINE\\";
const std::string kEndpoint =
    kMachine + R"(SOFTWARE\Microsoft\Windows\CurrentVersion\MMDevices\Audio\Render\)" + kGuid;
const std::string kWine = R"(HKEY_CURRENT_USER\Software\Wine\)";

std::string Hexadecimal(std::uint32_t number, int digits) {
  char text[9];
  std::snprintf(text, sizeof(text), "%0*X", digits, number);
  return text;
}

class OwnDevicesTest : public PanelTest {
 protected:
  OwnDevicesTest() { environment_["TONALYX_LAPTOP"] = ""; }

  // Keys with a value each, as files for the registry have them.
  void Plant(const std::vector<std::pair<std::string, std::string>>& values) {
    std::ofstream file(folder_ / "planted.reg");
    file << "REGEDIT4\n";
    for (const auto& [key, value] : values) file << "\n[" << key << "]\n" << value << "\n";
    file.close();
    const support::ProcessResult planted = support::RunProcess(
        {"wine", "regedit", "/S", home_.NameOf(folder_ / "planted.reg")}, environment_);
    ASSERT_EQ(planted.exitStatus, 0) << planted.errors;
  }
  void PlantCodec(std::uint32_t ssid) {
    std::string list;
    for (const char letter : "HDAUDIO\\FUNC_01&VEN_10EC&DEV_0257&SUBSYS_" + Hexadecimal(ssid, 8)) {
      list += Hexadecimal(static_cast<std::uint32_t>(letter), 2) + ",";
    }
    const std::string key = kMachine + R"(SYSTEM\CurrentControlSet\Enum\HDAUDIO\CODEC\4&1&0&0001)";
    Plant({{key, R"("ClassGUID"="{4D36E96C-E325-11CE-BFC1-08002BE10318}")"},
           {key, R"("HardwareID"=hex(7):)" + list + "00,00"}});
  }
  // The server's sink as the default endpoint with a jack, under the GUID by which Wine then knows
  // it.
  void PlantEndpoint() {
    Plant({{kWine + "Drivers", R"("Audio"="pulse")"},
           {kWine + R"(Drivers\winepulse.drv)",
            R"("DefaultOutput"="{0.0.0.00000000}.)" + kGuid + "\""},
           {kWine + R"(Drivers\winepulse.drv\devices\0,speaker)",
            R"("guid"=hex:70,9e,1c,5b,54,3a,0f,4d,8c,26,7f,1e,02,a9,d4,01)"},
           {kEndpoint + R"(\Properties)",
            R"("{1DA5D803-D492-4EDD-8C23-E0C0FFEE7F0E},8"=")" + kSpeakerKey + "\""},
           Jack(6)});
  }
  static std::pair<std::string, std::string> Jack(int number) {
    return {kEndpoint + R"(\FxProperties)", R"("{1496451E-75E5-484F-9914-A9F246BC960F},)" +
                                                std::to_string(number) + R"("=dword:00000001)"};
  }
};

TEST_F(OwnDevicesTest, TheCodecDecidesAndTheEndpointsRouteIsShownAndEdited) {
  EXPECT_EQ(Run("tonalyx", {"/init"}).exitStatus, 67) << "1603, as far as the system keeps it";
  PlantCodec(resources::kUnsupportedSample);
  EXPECT_EQ(Run("tonalyx", {"/init"}).exitStatus, 67);
  EXPECT_EQ(Run("regtool", {"query", "HKLM\\SOFTWARE\\Norvane"}).exitStatus, 1);
  PlantCodec(resources::kStandardSample);
  PlantEndpoint();
  ImportSample();
  EXPECT_NE(Log().find("SSID 0x" + Hexadecimal(resources::kStandardSample, 8) +
                       " was supported by Tonalyx\r\n"),
            std::string::npos);

  StartPanel();
  EXPECT_FALSE(ShowsWarning());
  const auto off = PictureOfMode(0);
  ClickMode(2);
  EXPECT_TRUE(Eventually([&] { return ActiveSetting(kSpeakerKey) == "3"; }));
  EXPECT_EQ(ActiveSetting(kHeadphoneKey), "1");
  Plant({Jack(4)});
  ParkPointer();
  EXPECT_TRUE(ShowsPicture(off)) << "headphones are plugged in";
  EXPECT_EQ(ClosePanel(), 0);

  Plant({{kWine + "Drivers", R"("Audio"="")"}});
  StartPanel();
  EXPECT_TRUE(ShowsWarning()) << "there is no endpoint at all";
  EXPECT_EQ(ClosePanel(), 0);
}

}  // namespace
}  // namespace e2e
