// What every implementation of the named events promises to the side that sets them.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <string>
#include <vector>

#include "platform/fake/fake_events.h"
#include "platform/linux/events/fifo_event_listener.h"
#include "platform/linux/events/fifo_events.h"
#include "tests/support/temporary_folder.h"

namespace platform {
namespace {

using std::chrono::milliseconds;
using testing::ElementsAre;
using testing::IsEmpty;

// An implementation with an engine beside it that makes the events.
class EventsUnderTest {
 public:
  virtual ~EventsUnderTest() = default;
  virtual NamedEvents& Events() = 0;
  virtual void Make(std::u16string_view name) = 0;
  virtual void EndEngine() = 0;
  // The names of the sets that the engine has received since the last call, in order.
  virtual std::vector<std::u16string> Received() = 0;
};

class FakeEventsUnderTest : public EventsUnderTest {
 public:
  NamedEvents& Events() override { return events_; }
  void Make(std::u16string_view name) override {
    events_.Add(name);
    made_.emplace_back(name);
  }
  void EndEngine() override {
    for (const std::u16string& name : made_) events_.Remove(name);
  }
  std::vector<std::u16string> Received() override {
    std::vector<std::u16string> names = events_.Sets();
    events_.ClearCalls();
    return names;
  }

 private:
  FakeNamedEvents events_;
  std::vector<std::u16string> made_;
};

class FifoEventsUnderTest : public EventsUnderTest {
 public:
  NamedEvents& Events() override { return events_; }
  void Make(std::u16string_view name) override {
    ASSERT_TRUE(engine_->Create(name));
    made_.emplace_back(name);
  }
  void EndEngine() override { engine_.reset(); }
  std::vector<std::u16string> Received() override {
    std::vector<std::u16string> names;
    for (const EventSet& set : engine_->Wait(milliseconds(0))) names.push_back(made_[set.event]);
    return names;
  }

 private:
  support::TemporaryFolder folder_;
  FifoEvents events_{folder_.Path() / "root/events"};
  std::unique_ptr<EventListener> engine_ =
      std::make_unique<FifoEventListener>(folder_.Path() / "root/events");
  std::vector<std::u16string> made_;
};

using Factory = std::unique_ptr<EventsUnderTest> (*)();

template <class Implementation>
std::unique_ptr<EventsUnderTest> MakeImplementation() {
  return std::make_unique<Implementation>();
}

class NamedEventsContract : public testing::TestWithParam<Factory> {
 protected:
  bool Set(std::u16string_view name) {
    const std::unique_ptr<NamedEvent> event = implementation_->Events().Open(name);
    return event && event->Set();
  }

  std::unique_ptr<EventsUnderTest> implementation_ = GetParam()();
};

INSTANTIATE_TEST_SUITE_P(Fake, NamedEventsContract,
                         testing::Values(&MakeImplementation<FakeEventsUnderTest>));
INSTANTIATE_TEST_SUITE_P(Fifo, NamedEventsContract,
                         testing::Values(&MakeImplementation<FifoEventsUnderTest>));

constexpr std::u16string_view kEvent =
    u"Global\\VelsonaGFXPropEvent{8E5A1C40-93B7-4B52-9F0B-35A5D6A3C6E1}";

TEST_P(NamedEventsContract, OpensWhatTheEngineMadeAndNothingElse) {
  EXPECT_FALSE(Set(kEvent)) << "nothing was made yet";
  EXPECT_FALSE(Set(kEvent)) << "the first attempt must not have made it";

  implementation_->Make(kEvent);
  EXPECT_TRUE(Set(kEvent));
  EXPECT_FALSE(Set(u"Global\\VelsonaGFXPropEvent")) << "a prefix of the name";
  EXPECT_FALSE(Set(u"Global\\VELSONAGFXPROPEVENT{8E5A1C40-93B7-4B52-9F0B-35A5D6A3C6E1}"))
      << "another case";
  EXPECT_FALSE(Set(u""));
  EXPECT_THAT(implementation_->Received(), ElementsAre(std::u16string(kEvent)));
}

TEST_P(NamedEventsContract, KeepsTheOrderOfSetsOverSeveralEvents) {
  // Made in another order than set, and one of them set twice.
  implementation_->Make(u"third");
  implementation_->Make(u"second");
  implementation_->Make(u"first");
  for (const std::u16string_view name : {u"first", u"second", u"third", u"second"}) {
    EXPECT_TRUE(Set(name));
  }
  EXPECT_THAT(implementation_->Received(), ElementsAre(u"first", u"second", u"third", u"second"));
  EXPECT_THAT(implementation_->Received(), IsEmpty());
}

TEST_P(NamedEventsContract, ShowsThatTheEngineIsGone) {
  implementation_->Make(kEvent);
  const std::unique_ptr<NamedEvent> opened = implementation_->Events().Open(kEvent);
  ASSERT_TRUE(opened);
  EXPECT_TRUE(opened->Set());
  implementation_->EndEngine();
  EXPECT_FALSE(opened->Set()) << "opened while the engine lived";
  EXPECT_FALSE(Set(kEvent));
}

}  // namespace
}  // namespace platform
