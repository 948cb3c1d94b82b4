#include "tools/laptopctl/laptop_kinds.h"

#include <array>
#include <cstdint>
#include <string>
#include <utility>

#include "platform/text.h"
#include "resources/sample_models.h"

namespace tools {
namespace {

using platform::JackProperty;
using platform::JackValue;

constexpr std::array<std::pair<std::string_view, std::uint32_t>, 4> kKinds = {
    {{"standard", resources::kStandardSample},
     {"layers", resources::kLayersSample},
     {"davrin", resources::kDavrinSample},
     {"unsupported", resources::kUnsupportedSample}}};

constexpr std::u16string_view kSpeakerNode = u"{DFF21CE1-F70F-11D0-B917-00A0C9223196}";
constexpr std::u16string_view kHdmiNode = u"{D1B9CC2A-F519-417F-91C9-55FA65481001}";

std::u16string Hexadecimal(std::uint32_t value) {
  constexpr std::u16string_view kDigits = u"0123456789ABCDEF";
  std::u16string text(8, u'0');
  for (auto digit = text.rbegin(); digit != text.rend(); ++digit) {
    *digit = kDigits[value & 0x0FU];
    value >>= 4U;
  }
  return text;
}

platform::DeviceRecord MakeCodec(std::uint32_t ssid) {
  platform::DeviceRecord codec;
  codec.hardwareIds = {u"HDAUDIO\\FUNC_01&VEN_10EC&DEV_0257&SUBSYS_" + Hexadecimal(ssid) +
                       u"&REV_1000"};
  codec.description = u"Realtek High Definition Audio";
  codec.deviceClass = u"MEDIA";
  codec.classGuid = u"{4D36E96C-E325-11CE-BFC1-08002BE10318}";
  return codec;
}

platform::ListedEndpoint MakeEndpoint(std::u16string_view guid, std::u16string_view jackSubType,
                                      std::u16string_view adapter, std::uint32_t state) {
  platform::ListedEndpoint endpoint;
  endpoint.id = u"{0.0.0.00000000}.";
  endpoint.id += guid;
  endpoint.guid = guid;
  endpoint.jackSubType = jackSubType;
  endpoint.adapter = adapter;
  endpoint.state = state;
  return endpoint;
}

}  // namespace

std::optional<platform::LaptopFile> MakeLaptop(std::string_view kind) {
  for (const auto& [name, ssid] : kKinds) {
    if (name != kind) continue;
    platform::LaptopFile laptop;
    laptop.devices = {MakeCodec(ssid)};
    laptop.endpoints = {
        MakeEndpoint(u"{5B1C9E70-3A54-4D0F-8C26-7F1E02A9D401}", kSpeakerNode,
                     u"Realtek High Definition Audio", platform::kDeviceStateActive),
        MakeEndpoint(u"{5B1C9E70-3A54-4D0F-8C26-7F1E02A9D402}", kHdmiNode,
                     u"Intel(R) Display Audio", platform::kDeviceStateActive),
        MakeEndpoint(u"{5B1C9E70-3A54-4D0F-8C26-7F1E02A9D403}", kSpeakerNode, u"USB Audio Device",
                     platform::kDeviceStateUnplugged)};
    laptop.defaultEndpoint = laptop.endpoints->front().id;
    return laptop;
  }
  return std::nullopt;
}

std::vector<JackValue> FactoryJackValues() {
  return {{JackProperty::Speaker, 1},
          {JackProperty::Subwoofer, 0},
          {JackProperty::Headphone, 0},
          {JackProperty::OtherHeadphone, 0}};
}

std::optional<std::vector<JackValue>> PlugJackValues(std::string_view plug) {
  if (plug == "headphones") {
    return {
        {{JackProperty::Speaker, 0}, {JackProperty::Subwoofer, 0}, {JackProperty::Headphone, 1}}};
  }
  if (plug == "lineout") {
    return {{{JackProperty::Speaker, 0},
             {JackProperty::Subwoofer, 0},
             {JackProperty::Headphone, 0},
             {JackProperty::OtherHeadphone, 0}}};
  }
  if (plug == "subwoofer") {
    return {
        {{JackProperty::Speaker, 1}, {JackProperty::Subwoofer, 1}, {JackProperty::Headphone, 0}}};
  }
  return std::nullopt;
}

std::vector<JackValue> UnplugJackValues() {
  return {{JackProperty::Speaker, 1}, {JackProperty::Subwoofer, 0}, {JackProperty::Headphone, 0}};
}

}  // namespace tools
