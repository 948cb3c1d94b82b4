// Sinks as endpoints: names, states and GUIDs.
#include <gtest/gtest.h>

#include "platform/linux/audio/adapter_name.h"
#include "platform/linux/audio/pulse_endpoints.h"
#include "platform/linux/audio/uuid5.h"

namespace platform {
namespace {

TEST(AdapterNameTest, SupportedCodecsCarryTheNameOfTheirDriver) {
  using Output = AdapterFacts::Output;
  const struct {
    AdapterFacts facts;
    const char* name;
  } cases[] = {
      // Codecs on the PCI bus, by their chips or, on older kernels, by the mixer.
      {{"pci", "alsa", "HDA:10ec0257,17aa3138,00100001", "Realtek ALC257", "HDA Intel PCH",
        Output::Analog, "Built-in Audio"},
       "Realtek High Definition Audio"},
      {{"pci", "alsa", "", "Realtek ALC269VC", "HDA Intel PCH", Output::Analog, "Built-in Audio"},
       "Realtek High Definition Audio"},
      {{"pci", "alsa", "", "Realtek ALC269VC", "HDA Intel PCH", Output::Spdif, "Built-in Audio"},
       "Realtek High Definition Audio"},
      {{"pci", "alsa", "HDA:14f15114,17aa5114,00100100 HDA:80862807,80860101,00100000",
        "Conexant CX20751/2", "HDA Intel PCH", Output::Analog, "Built-in Audio"},
       "SmartAudio HD"},
      // Behind the audio DSP: the same chips on the HDA link, others on I2S.
      {{"pci", "alsa", "HDA:8086280b,80860101,00100000 HDA:10ec0236,17aa3138,00100002 cfg-dmics:2",
        "Intel Kabylake HDMI", "sof-hda-dsp", Output::Analog, "Built-in Audio"},
       "Realtek High Definition Audio"},
      {{"", "alsa", "", "", "bytcr-rt5640", Output::Analog, "Built-in Audio"},
       "Intel SST Audio Device"},
      {{"", "alsa", "", "", "sof-bytcht cx2072x", Output::Analog, "Built-in Audio"},
       "Intel SST Audio Device"},
      // The display's output of the very same card.
      {{"pci", "alsa", "HDA:10ec0257,17aa3138,00100001 HDA:8086280b,80860101,00100000",
        "Realtek ALC257", "HDA Intel PCH", Output::Display, "Built-in Audio"},
       "Built-in Audio"},
      // Other chips, other buses.
      {{"pci", "alsa", "HDA:11d41984,17aa20bb,00100400", "Analog Devices AD1984", "HDA Intel",
        Output::Analog, "Built-in Audio"},
       "Built-in Audio"},
      {{"pci", "alsa", "", "SigmaTel rt5639", "bytcr-rt5651", Output::Analog, "Built-in Audio"},
       "Built-in Audio"},
      {{"usb", "alsa", "USB0bda:4014", "Realtek USB Audio", "USB Audio", Output::Analog,
        "Realtek USB2.0 Audio"},
       "Realtek USB2.0 Audio"},
      {{"bluetooth", "bluez", "", "", "", Output::Analog, "WH-1000XM4"}, "WH-1000XM4"},
      {{"", "bluez5", "", "", "", Output::Analog, "WH-1000XM4"}, "WH-1000XM4"},
      {{"", "", "", "", "", Output::Analog, "Null Output"}, "Null Output"},
  };
  for (const auto& [facts, name] : cases) {
    EXPECT_EQ(AdapterName(facts), name) << facts.cardName << ", " << facts.components;
  }
}

TEST(NameToGuidTest, AgreesWithTheStandard) {
  const Guid dns = *GuidFromString(u"{6BA7B810-9DAD-11D1-80B4-00C04FD430C8}");
  EXPECT_EQ(GuidToString(NameToGuid(dns, "python.org")), u"{886313E1-3B8A-5372-9B90-0C9AEE199E5D}");
  // More than one block of the digest.
  EXPECT_EQ(GuidToString(NameToGuid(dns, std::string(100, 'a'))),
            u"{56596F37-716C-57A9-A735-2561F8608390}");
}

PulseSink AnalogSink() {
  PulseSink sink;
  sink.name = "alsa_output.pci-0000_00_1f.3.analog-stereo";
  sink.description = "Built-in Audio Analog Stereo";
  sink.cardDescription = "Built-in Audio";
  sink.properties = {{"device.bus", "pci"},
                     {"device.api", "alsa"},
                     {"alsa.components", "HDA:10ec0257,17aa3138,00100001"}};
  sink.activePort = PulsePort{PulsePortKind::Speaker, PulsePort::Plug::Unknown};
  return sink;
}

TEST(SinkToEndpointTest, MapsPortsToStatesAndNodes) {
  const ListedEndpoint speaker = SinkToEndpoint(AnalogSink());
  EXPECT_EQ(speaker.id, u"{0.0.0.00000000}." + speaker.guid);
  EXPECT_EQ(speaker.guid, SinkGuid(AnalogSink().name));
  EXPECT_EQ(speaker.adapter, u"Realtek High Definition Audio");
  EXPECT_EQ(speaker.jackSubType, u"{DFF21CE1-F70F-11D0-B917-00A0C9223196}");
  EXPECT_EQ(speaker.state, kDeviceStateActive);
  EXPECT_EQ(speaker.level, 0.0F);

  PulseSink sink = AnalogSink();
  sink.activity = PulseSink::Activity::Running;
  sink.activePort = PulsePort{PulsePortKind::Headphones, PulsePort::Plug::Plugged};
  EXPECT_EQ(SinkToEndpoint(sink).jackSubType, speaker.jackSubType)
      << "the same endpoint, whatever is plugged into it";
  EXPECT_EQ(SinkToEndpoint(sink).level, 1.0F);

  sink.activePort = PulsePort{PulsePortKind::Display, PulsePort::Plug::Pulled};
  EXPECT_EQ(SinkToEndpoint(sink).state, kDeviceStateUnplugged);
  EXPECT_EQ(SinkToEndpoint(sink).adapter, u"Built-in Audio");
  EXPECT_EQ(SinkToEndpoint(sink).jackSubType, u"{D1B9CC2A-F519-417F-91C9-55FA65481001}");

  sink.activePort.reset();
  sink.properties["device.profile.name"] = "iec958-stereo";
  EXPECT_EQ(SinkToEndpoint(sink).jackSubType, u"{DFF21FE5-F70F-11D0-B917-00A0C9223196}");
  EXPECT_EQ(SinkToEndpoint(sink).state, kDeviceStateActive);
}

TEST(SinksToEndpointsTest, UnpluggedDefaultIsNone) {
  PulseState state{{AnalogSink()}, AnalogSink().name};
  ASSERT_NE(SinksToEndpoints(state).Default(), nullptr);
  state.sinks[0].activePort->plug = PulsePort::Plug::Pulled;
  EXPECT_EQ(SinksToEndpoints(state).Default(), nullptr);
  state.defaultSink = "gone";
  EXPECT_EQ(SinksToEndpoints(state).Default(), nullptr);
}

}  // namespace
}  // namespace platform
