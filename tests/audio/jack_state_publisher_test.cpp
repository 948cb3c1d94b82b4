#include "platform/linux/audio/jack_state_publisher.h"

#include <gmock/gmock.h>

#include <optional>
#include <thread>

#include "platform/fake/fake_registry.h"
#include "platform/linux/audio/pulse_endpoints.h"
#include "platform/wake_event.h"

namespace platform {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;

PulseSink SinkOn(const std::string& name, PulsePortKind port) {
  PulseSink sink;
  sink.name = name;
  sink.activePort = PulsePort{port, PulsePort::Plug::Unknown};
  return sink;
}

class JackStatePublisherTest : public testing::Test {
 protected:
  // Speaker, subwoofer, headphone.
  std::vector<std::optional<std::uint32_t>> Stored(const std::string& sink) {
    const std::u16string guid = SinkGuid(sink);
    return {ReadJackValue(registry_, guid, JackProperty::Speaker),
            ReadJackValue(registry_, guid, JackProperty::Subwoofer),
            ReadJackValue(registry_, guid, JackProperty::Headphone)};
  }

  // Whether publishing sets a value of the sink, changed or not.
  bool WritesTo(const std::string& sink, const PulseState& state) {
    WakeEvent wake;
    const auto key =
        registry_.OpenKey(RegistryRoot::LocalMachine, JackKeyPath(SinkGuid(sink)), kRegistryRead);
    if (key == nullptr) return false;
    key->NotifyChange(wake);
    publisher_->Publish(state);
    return wake.WaitFor(0ms);
  }

  FakeRegistry registry_;
  std::optional<JackStatePublisher> publisher_{registry_};
};

TEST_F(JackStatePublisherTest, SaysWhatTheActivePortIs) {
  PulseState state{{SinkOn("card", PulsePortKind::Speaker)}, "card"};
  publisher_->Publish(state);
  EXPECT_THAT(Stored("card"), ElementsAre(1U, 0U, 0U));

  state.sinks[0].subwoofer = PulseSink::Subwoofer::Present;
  publisher_->Publish(state);
  EXPECT_THAT(Stored("card"), ElementsAre(1U, 1U, 0U));

  state.sinks[0] = SinkOn("card", PulsePortKind::Headphones);
  publisher_->Publish(state);
  EXPECT_THAT(Stored("card"), ElementsAre(0U, 0U, 1U));

  state.sinks[0] = SinkOn("card", PulsePortKind::LineOut);
  publisher_->Publish(state);
  EXPECT_THAT(Stored("card"), ElementsAre(0U, 0U, 0U));

  publisher_->Publish({{SinkOn("hdmi", PulsePortKind::Display)}, "hdmi"});
  EXPECT_THAT(Stored("hdmi"), ElementsAre(std::nullopt, std::nullopt, std::nullopt));
}

TEST_F(JackStatePublisherTest, WritesOnlyWhatDiffers) {
  const PulseState state{{SinkOn("card", PulsePortKind::Headphones)}, "card"};
  publisher_->Publish(state);
  EXPECT_FALSE(WritesTo("card", state));
  // Another run of the program finds the same.
  publisher_.emplace(registry_);
  EXPECT_FALSE(WritesTo("card", state));
}

TEST_F(JackStatePublisherTest, WakesThoseWhoWatchADefaultOfBefore) {
  PulseState state{{SinkOn("speaker", PulsePortKind::Speaker), SinkOn("tv", PulsePortKind::Display),
                    SinkOn("headphones", PulsePortKind::Headphones)},
                   "tv"};
  publisher_->Publish(state);
  EXPECT_FALSE(WritesTo("tv", state)) << "it alone has been the default";
  for (const char* sink : {"speaker", "headphones", "tv"}) {
    state.defaultSink = sink;
    EXPECT_TRUE(WritesTo("tv", state)) << sink;
    EXPECT_FALSE(WritesTo("tv", state)) << sink;
    std::thread([&] { EXPECT_TRUE(WritesTo("tv", state)) << "as a watcher learns of it"; }).join();
  }
  EXPECT_THAT(Stored("speaker"), ElementsAre(1U, 0U, 0U));

  state.defaultSink = "headphones";
  publisher_->Publish(state);
  state.sinks[2] = SinkOn("headphones", PulsePortKind::LineOut);
  EXPECT_TRUE(WritesTo("tv", state)) << "another jack";
  publisher_->Publish({});
  EXPECT_TRUE(WritesTo("tv", state)) << "the server is back";
}

}  // namespace
}  // namespace platform
