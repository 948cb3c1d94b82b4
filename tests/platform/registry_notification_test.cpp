// The part of the registry's contract that is about waiting for changes.
#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <memory>
#include <string_view>

#include "platform/registry.h"
#include "platform/wake_event.h"
#include "tests/platform/open_key.h"
#include "tests/platform/registry_contract.h"

namespace support {
namespace {

using platform::RegistryRoot;
using platform::RegistryStatus;
using platform::WakeEvent;

constexpr platform::RegistryAccess kRead = platform::kRegistryRead | platform::kRegistryView64;

bool IsWoken(WakeEvent& wake) {
  return wake.WaitFor(std::chrono::seconds(5));
}
// Long enough for a notification that must not come.
bool StaysAsleep(WakeEvent& wake) {
  return !wake.WaitFor(std::chrono::milliseconds(60));
}

TEST_P(RegistryContract, AnyChangeOfTheKeysOwnValuesWakesOnce) {
  const auto writer = Create(u"k");
  ASSERT_EQ(SetBytes(*writer, u"v", "before"), RegistryStatus::Success);
  WakeEvent wake;
  const auto reader = Open(u"k", kRead);

  const std::function<void()> changes[] = {
      [&] { SetBytes(*writer, u"v", "1"); }, [&] { SetBytes(*writer, u"v", "1"); },
      [&] { SetBytes(*writer, u"new", "1"); }, [&] { writer->RemoveValue(u"new"); },
      [&] {
        const auto scope = registry().BeginWrite();
        SetBytes(*writer, u"v", "2");
        SetBytes(*writer, u"w", "2");
        static_cast<void>(scope->Commit());
      }};
  for (const auto& change : changes) {
    ASSERT_EQ(reader->NotifyChange(wake), RegistryStatus::Success);
    ASSERT_TRUE(StaysAsleep(wake)) << "woken by a change that was already reported";
    change();
    ASSERT_TRUE(IsWoken(wake));
  }
  ASSERT_TRUE(StaysAsleep(wake)) << "woken twice";
  ASSERT_EQ(reader->NotifyChange(wake), RegistryStatus::Success);
  EXPECT_EQ(registry().RemoveTree(RegistryRoot::LocalMachine, u"k"), RegistryStatus::Success);
  EXPECT_TRUE(IsWoken(wake));
  EXPECT_EQ(reader->NotifyChange(wake), RegistryStatus::FileNotFound);
}

TEST_P(RegistryContract, OtherKeysWakeNobody) {
  const auto parent = Create(u"p");
  const auto sibling = Create(u"p\\sibling");
  WakeEvent wake;
  const auto reader = Create(u"p\\k");
  const auto subKey = Create(u"p\\k\\sub");
  ASSERT_EQ(reader->NotifyChange(wake), RegistryStatus::Success);
  for (platform::RegistryKey* key : {parent.get(), sibling.get(), subKey.get()}) {
    ASSERT_EQ(SetBytes(*key, u"v", "1"), RegistryStatus::Success);
  }
  ASSERT_NE(Create(u"p\\k\\another"), nullptr);
  ASSERT_EQ(registry().RemoveTree(RegistryRoot::LocalMachine, u"p\\k\\sub"),
            RegistryStatus::Success);
  ASSERT_EQ(reader->RemoveValue(u"missing"), RegistryStatus::FileNotFound);
  EXPECT_TRUE(StaysAsleep(wake));
}

TEST_P(RegistryContract, ChangesBetweenTwoArmingsAreNotLost) {
  const auto writer = Create(u"k");
  WakeEvent wake;
  const auto reader = Open(u"k", kRead);
  SetBytes(*writer, u"v", "before the first arming");
  ASSERT_EQ(reader->NotifyChange(wake), RegistryStatus::Success);
  ASSERT_TRUE(StaysAsleep(wake));
  SetBytes(*writer, u"v", "1");
  ASSERT_TRUE(IsWoken(wake));

  SetBytes(*writer, u"v", "2");
  SetBytes(*writer, u"v", "3");
  ASSERT_TRUE(StaysAsleep(wake)) << "woken without being armed";
  ASSERT_EQ(reader->NotifyChange(wake), RegistryStatus::Success);
  ASSERT_TRUE(IsWoken(wake));
  ASSERT_EQ(reader->NotifyChange(wake), RegistryStatus::Success);
  EXPECT_TRUE(StaysAsleep(wake)) << "reported twice";
}

TEST_P(RegistryContract, EveryHandleIsArmedByItself) {
  const auto writer = Create(u"k");
  WakeEvent firstWake;
  WakeEvent secondWake;
  WakeEvent unused;
  const auto first = Open(u"k", kRead);
  auto second = Open(u"k", kRead);
  ASSERT_EQ(first->NotifyChange(firstWake), RegistryStatus::Success);
  ASSERT_EQ(second->NotifyChange(secondWake), RegistryStatus::Success);
  // Arming an armed key changes nothing.
  ASSERT_EQ(first->NotifyChange(unused), RegistryStatus::Success);
  SetBytes(*writer, u"v", "1");
  EXPECT_TRUE(IsWoken(firstWake));
  EXPECT_TRUE(IsWoken(secondWake));
  EXPECT_TRUE(StaysAsleep(unused));

  ASSERT_EQ(first->NotifyChange(firstWake), RegistryStatus::Success);
  ASSERT_EQ(second->NotifyChange(secondWake), RegistryStatus::Success);
  second.reset();
  EXPECT_TRUE(StaysAsleep(secondWake)) << "closing woke";
  SetBytes(*writer, u"v", "2");
  EXPECT_TRUE(IsWoken(firstWake));
  EXPECT_TRUE(StaysAsleep(secondWake)) << "woken after closing";
}

}  // namespace
}  // namespace support
