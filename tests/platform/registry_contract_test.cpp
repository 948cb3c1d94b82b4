#include "tests/platform/registry_contract.h"

#include <gmock/gmock.h>

#include <atomic>
#include <thread>

namespace support {
namespace {

using platform::RegistryAccess;
using platform::RegistryDisposition;
using platform::RegistryRoot;
using platform::RegistryStatus;
using platform::RegistryType;
using platform::WakeEvent;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr RegistryAccess kAll = 0xF003F;
constexpr RegistryAccess kRead = 0x20119;  // on the 64-bit view
constexpr RegistryRoot kRoot = RegistryRoot::LocalMachine;
constexpr auto kSuccess = RegistryStatus::Success;
constexpr auto kNotFound = RegistryStatus::FileNotFound;
constexpr std::u16string_view kOpenToAll = u"D:(A;OICI;KA;;;BU)(A;OICI;KA;;;AU)(A;OICI;KA;;;BA)";

class RegistryContract : public testing::TestWithParam<RegistryBackend> {
 protected:
  void SetUp() override {
    const std::string test = testing::UnitTest::GetInstance()->current_test_info()->name();
    if (!Keeps(test.substr(0, test.find('/')))) GTEST_SKIP();
  }
  // Says so when the backend cannot.
  static bool Keeps(const std::string& promise) {
    const auto lack = GetParam().lacks.find(promise);
    if (lack == GetParam().lacks.end()) return true;
    std::cout << promise << " is skipped: " << lack->second << std::endl;
    return false;
  }
  std::unique_ptr<platform::RegistryKey> Open(std::u16string_view path,
                                              RegistryAccess access = kRead) {
    return registry_->OpenKey(kRoot, path, access);
  }
  std::unique_ptr<platform::RegistryKey> Create(std::u16string_view path) {
    return registry_->CreateKey(kRoot, path, kAll);
  }
  RegistryStatus Remove(std::u16string_view path) { return registry_->RemoveTree(kRoot, path); }

  const std::shared_ptr<platform::Registry> registry_ = GetParam().make();
  WakeEvent wake_;
  std::u16string name_;
};

INSTANTIATE_TEST_SUITE_P(Backends, RegistryContract, testing::ValuesIn(RegistryBackends()),
                         [](const auto& kind) { return kind.param.name; });

TEST_P(RegistryContract, PathsWithBadPartsNeitherOpenNorAreCreated) {
  const std::u16string longest(255, u'k');
  for (const std::u16string& path :
       {std::u16string(), std::u16string(u"\\"), std::u16string(u"\\a"), std::u16string(u"a\\"),
        std::u16string(u"a\\\\b"), u"a\\" + longest + u"k"}) {
    EXPECT_EQ(Create(path), nullptr);
    EXPECT_EQ(Open(path), nullptr);
    EXPECT_EQ(Remove(path), kNotFound);
  }
  EXPECT_EQ(Open(u"a"), nullptr);
  EXPECT_NE(Create(u"a\\" + longest), nullptr);
  EXPECT_NE(Open(u"a\\" + longest), nullptr);
}

TEST_P(RegistryContract, CreatesMissingPartsAndTellsNewFromOld) {
  for (const auto& [path, expected] :
       {std::pair(u"One\\Two\\Three", RegistryDisposition::CreatedNew),
        std::pair(u"ONE\\two", RegistryDisposition::OpenedExisting),
        std::pair(u"one\\TWO\\four", RegistryDisposition::CreatedNew)}) {
    auto disposition = static_cast<RegistryDisposition>(9);
    EXPECT_NE(registry_->CreateKey(kRoot, path, kAll, &disposition, kOpenToAll), nullptr);
    EXPECT_EQ(disposition, expected);
  }
  EXPECT_EQ(registry_->OpenKey(RegistryRoot::ClassesRoot, u"One", kRead), nullptr);
  EXPECT_EQ(registry_->CreateKey(kRoot, u"bad", kAll, nullptr, u"nonsense"), nullptr);
  EXPECT_EQ(Open(u"bad"), nullptr);
  EXPECT_THAT(SubKeysOf(*registry_->OpenRoot(kRoot)), ElementsAre(u"One"));
}

TEST_P(RegistryContract, NamesIgnoreCaseAndKeepTheirFirstSpelling) {
  const auto key = Create(u"Köln\\Жук");
  ASSERT_NE(Create(u"kÖln\\ЖУК\\inner"), nullptr);
  EXPECT_THAT(SubKeysOf(*Open(u"KÖLN")), ElementsAre(u"Жук"));
  EXPECT_EQ(SetBytes(*key, u"Größe", "1"), kSuccess);
  EXPECT_EQ(SetBytes(*key, u"GRÖße", "2"), kSuccess);
  EXPECT_THAT(ValuesOf(*key), ElementsAre(u"Größe"));
  EXPECT_EQ(GetBytes(*key, u"gRÖßE"), "2");
  EXPECT_EQ(key->RemoveValue(u"GRÖSSE"), kNotFound);
  EXPECT_EQ(key->RemoveValue(u"GRÖße"), kSuccess);
  EXPECT_THAT(ValuesOf(*key), IsEmpty());
}

TEST_P(RegistryContract, EnumeratesInNameOrderFromAnyPosition) {
  const auto key = Create(u"top");
  for (const std::u16string name : {u"beta", u"Alpha", u"Param10", u"param2", u"äb", u"_x"}) {
    ASSERT_EQ(SetBytes(*key, name, "x"), kSuccess);
    ASSERT_NE(Create(u"TOP\\" + name), nullptr);
  }
  ASSERT_EQ(SetBytes(*key, u"", "x"), kSuccess);
  EXPECT_THAT(ValuesOf(*key),
              ElementsAre(u"", u"Alpha", u"beta", u"Param10", u"param2", u"_x", u"äb"));
  EXPECT_THAT(SubKeysOf(*key), ElementsAre(u"Alpha", u"beta", u"Param10", u"param2", u"_x", u"äb"));

  const auto valueAt = [&](std::uint32_t index) {
    return key->EnumerateValue(index, &name_) == kSuccess ? name_ : u"none";
  };
  EXPECT_EQ(valueAt(4), u"param2");
  EXPECT_EQ(valueAt(2), u"beta");
  // What was set or removed meanwhile counts.
  EXPECT_EQ(key->RemoveValue(u"alpha"), kSuccess);
  EXPECT_EQ(valueAt(3), u"param2");
  EXPECT_EQ(SetBytes(*key, u"aa", "x"), kSuccess);
  EXPECT_EQ(valueAt(4), u"param2");
  EXPECT_EQ(key->EnumerateValue(7, &name_), RegistryStatus::NoMoreItems);
  EXPECT_EQ(key->EnumerateSubKey(0xFFFFFFFF, &name_), RegistryStatus::NoMoreItems);
}

TEST_P(RegistryContract, QueriesFillOnlyBuffersThatAreLargeEnough) {
  const auto key = Create(u"k");
  ASSERT_EQ(key->SetValue(u"text", RegistryType::Binary, std::as_bytes(std::span("abc", 3))),
            kSuccess);
  ASSERT_EQ(SetBytes(*key, u"", ""), kSuccess);
  const struct {
    std::u16string_view name;
    std::uint32_t capacity;
    RegistryStatus status;
    std::uint32_t size;
    std::string_view buffer;
  } cases[] = {{u"text", 2, RegistryStatus::MoreData, 3, "....."},
               {u"text", 0, RegistryStatus::MoreData, 3, "....."},
               {u"text", 3, kSuccess, 3, "abc.."},
               {u"TEXT", 5, kSuccess, 3, "abc.."},
               {u"", 0, kSuccess, 0, "....."},
               {u"other", 5, kNotFound, 5, "....."}};
  for (const auto& c : cases) {
    std::string buffer = ".....";
    std::uint32_t size = c.capacity;
    EXPECT_EQ(key->QueryValue(c.name, nullptr, buffer.data(), &size), c.status);
    EXPECT_EQ(size, c.size);
    EXPECT_EQ(buffer, c.buffer);
  }
  RegistryType type = RegistryType::None;
  std::uint32_t size = 0;
  EXPECT_EQ(key->QueryValue(u"text", &type, nullptr, &size), kSuccess);
  EXPECT_EQ(size, 3U);
  EXPECT_EQ(type, RegistryType::Binary);
  EXPECT_EQ(key->QueryValue(u"text", nullptr, nullptr, nullptr), kSuccess);
  EXPECT_EQ(key->QueryValue(u"text", nullptr, &size, nullptr), RegistryStatus::InvalidParameter);
}

TEST_P(RegistryContract, SetsReplaceTypeAndBytes) {
  const auto key = Create(u"k");
  const std::string large(100'000, 'x');
  EXPECT_EQ(SetBytes(*key, u"v", large), kSuccess);
  EXPECT_EQ(GetBytes(*key, u"v"), large);
  constexpr auto kOdd = static_cast<RegistryType>(0xFFFFFFFF);
  EXPECT_EQ(key->SetValue(u"v", kOdd, {}), kSuccess);
  EXPECT_EQ(GetValue(*key, u"v"), (StoredValue{kOdd, ""}));
  EXPECT_EQ(SetBytes(*key, std::u16string(16383, u'n'), "1"), kSuccess);
  EXPECT_EQ(SetBytes(*key, std::u16string(16384, u'n'), "1"), RegistryStatus::InvalidParameter);
}

TEST_P(RegistryContract, AHandleGrantsWhatItsMaskNames) {
  ASSERT_NE(Create(u"k\\sub"), nullptr);
  ASSERT_EQ(SetBytes(*Create(u"k"), u"v", "1"), kSuccess);
  const struct {
    RegistryAccess mask;
    bool query;
    bool set;
    bool enumerateSubKeys;
    bool notify;
    bool setAccessList;
  } cases[] = {
      {0x20119, true, false, true, true, false},  {0x102, false, true, false, false, false},
      {0xF013F, true, true, true, true, true},    {0x1, true, false, false, false, false},
      {0x8, false, false, true, false, false},    {0x10, false, false, false, true, false},
      {0x40000, false, false, false, false, true}};
  for (const auto& granted : cases) {
    SCOPED_TRACE(granted.mask);
    const auto key = Open(u"k", granted.mask);
    ASSERT_NE(key, nullptr);
    const auto expect = [](bool isGranted, RegistryStatus status) {
      EXPECT_EQ(status, isGranted ? kSuccess : RegistryStatus::AccessDenied);
    };
    expect(granted.query, key->QueryValue(u"v", nullptr, nullptr, nullptr));
    expect(granted.query, key->EnumerateValue(0, &name_));
    expect(granted.set, SetBytes(*key, u"w", "2"));
    expect(granted.set, key->RemoveValue(u"w"));
    expect(granted.enumerateSubKeys, key->EnumerateSubKey(0, &name_));
    expect(granted.notify, key->NotifyChange(wake_));
    expect(granted.setAccessList, key->SetAccessList(kOpenToAll));
  }
  if (Keeps("RootIsOpenedToListSubKeysOnly")) {
    EXPECT_EQ(registry_->OpenRoot(kRoot)->EnumerateValue(0, &name_), RegistryStatus::AccessDenied);
  }
  EXPECT_EQ(Create(u"k")->SetAccessList(u"nonsense"), RegistryStatus::InvalidParameter);
  EXPECT_EQ(platform::kRegistryRead | platform::kRegistryView64, kRead);
  EXPECT_EQ(platform::kRegistryAllAccess, kAll);
}

TEST_P(RegistryContract, RemovingATreeTakesEverythingBelowAndItsOpenHandles) {
  const auto inner = Create(u"a\\b\\c");
  ASSERT_EQ(SetBytes(*inner, u"v", "1"), kSuccess);
  ASSERT_EQ(SetBytes(*Create(u"a\\bb"), u"v", "kept"), kSuccess);
  EXPECT_EQ(Remove(u"A\\B"), kSuccess);
  EXPECT_EQ(Remove(u"A\\B"), kNotFound);
  EXPECT_THAT(SubKeysOf(*Open(u"a")), ElementsAre(u"bb"));
  EXPECT_EQ(GetBytes(*Open(u"a\\bb"), u"v"), "kept");
  // A key of the same name is another key.
  ASSERT_NE(Create(u"a\\b\\c"), nullptr);
  EXPECT_EQ(SetBytes(*inner, u"v", "2"), kNotFound);
  EXPECT_EQ(inner->RemoveValue(u"v"), kNotFound);
  EXPECT_EQ(GetBytes(*inner, u"v"), std::nullopt);
  EXPECT_EQ(inner->EnumerateValue(0, &name_), kNotFound);
  EXPECT_EQ(inner->EnumerateSubKey(0, &name_), kNotFound);
  EXPECT_EQ(inner->NotifyChange(wake_), kNotFound);
  if (Keeps("DeletedKeysTakeNoAccessList")) {
    EXPECT_EQ(inner->SetAccessList(kOpenToAll), kNotFound);
  }
  EXPECT_EQ(GetBytes(*Open(u"a\\b\\c"), u"v"), std::nullopt);
}

TEST_P(RegistryContract, ScopesNestAndShowTheirThreadItsOwnWrites) {
  {
    // Before anything exists.
    const auto outer = registry_->BeginWrite();
    EXPECT_EQ(Open(u"k"), nullptr);
    const auto inner = registry_->BeginRead();
    const auto key = Create(u"k");
    EXPECT_EQ(SetBytes(*key, u"v", "1"), kSuccess);
    EXPECT_EQ(GetBytes(*key, u"v"), "1");
    EXPECT_EQ(outer->Commit(), kSuccess);
  }
  const auto reading = registry_->BeginRead();
  EXPECT_EQ(GetBytes(*Open(u"k"), u"v"), "1");
  {
    const auto writing = registry_->BeginWrite();
    const auto key = Open(u"k", kAll);
    EXPECT_EQ(SetBytes(*key, u"v", "3"), kSuccess);
    EXPECT_EQ(Remove(u"k"), kSuccess);
    EXPECT_EQ(SetBytes(*key, u"v", "4"), kNotFound);
    EXPECT_EQ(SetBytes(*Create(u"k"), u"v", "5"), kSuccess);
    EXPECT_EQ(writing->Commit(), kSuccess);
  }
  EXPECT_EQ(GetBytes(*Open(u"k"), u"v"), "5");
}

TEST_P(RegistryContract, ServesSeveralThreadsAtOnce) {
  ASSERT_NE(Create(u"shared"), nullptr);
  std::atomic<int> failures = 0;
  std::vector<std::jthread> threads;
  for (const char16_t letter : {u'a', u'b', u'c', u'd'}) {
    threads.emplace_back([&, name = std::u16string(1, letter)] {
      for (int round = 0; round < 50; ++round) {
        const std::string text = std::to_string(round);
        const auto scope = round % 2 == 0 ? registry_->BeginWrite() : nullptr;
        const auto key = Open(u"shared", kAll);
        if (SetBytes(*key, name, text) != kSuccess || GetBytes(*key, name) != text) ++failures;
        if (scope != nullptr && scope->Commit() != kSuccess) ++failures;
      }
    });
  }
  threads.clear();
  EXPECT_EQ(failures, 0);
}

// What a notification promises.

bool IsWoken(WakeEvent& wake) {
  return wake.WaitFor(std::chrono::seconds(5));
}
// Long enough for a notification that must not come.
bool StaysAsleep(WakeEvent& wake) {
  return !wake.WaitFor(std::chrono::milliseconds(60));
}

TEST_P(RegistryContract, AnyChangeOfTheKeysOwnValuesWakesOnce) {
  const auto writer = Create(u"k");
  ASSERT_EQ(SetBytes(*writer, u"v", "before"), kSuccess);
  const auto reader = Open(u"k");
  const std::function<void()> changes[] = {
      [&] { SetBytes(*writer, u"v", "1"); }, [&] { SetBytes(*writer, u"v", "1"); },
      [&] { SetBytes(*writer, u"new", "1"); }, [&] { writer->RemoveValue(u"new"); },
      [&] {
        const auto scope = registry_->BeginWrite();
        SetBytes(*writer, u"v", "2");
        SetBytes(*writer, u"w", "2");
        static_cast<void>(scope->Commit());
      }};
  for (const auto& change : changes) {
    ASSERT_EQ(reader->NotifyChange(wake_), kSuccess);
    ASSERT_TRUE(StaysAsleep(wake_)) << "woken by a change that was already reported";
    change();
    ASSERT_TRUE(IsWoken(wake_));
  }
  ASSERT_TRUE(StaysAsleep(wake_)) << "woken twice";
  ASSERT_EQ(reader->NotifyChange(wake_), kSuccess);
  EXPECT_EQ(Remove(u"k"), kSuccess);
  EXPECT_TRUE(IsWoken(wake_));
  EXPECT_EQ(reader->NotifyChange(wake_), kNotFound);
}

TEST_P(RegistryContract, OtherKeysWakeNobody) {
  const auto reader = Create(u"p\\k");
  ASSERT_EQ(reader->NotifyChange(wake_), kSuccess);
  for (const char16_t* path : {u"p", u"p\\sibling", u"p\\k\\sub"}) {
    ASSERT_EQ(SetBytes(*Create(path), u"v", "1"), kSuccess);
  }
  ASSERT_EQ(Remove(u"p\\k\\sub"), kSuccess);
  ASSERT_EQ(reader->RemoveValue(u"missing"), kNotFound);
  EXPECT_TRUE(StaysAsleep(wake_));
}

TEST_P(RegistryContract, ChangesBetweenTwoArmingsAreNotLost) {
  const auto writer = Create(u"k");
  const auto reader = Open(u"k");
  SetBytes(*writer, u"v", "before the first arming");
  ASSERT_EQ(reader->NotifyChange(wake_), kSuccess);
  ASSERT_TRUE(StaysAsleep(wake_));
  SetBytes(*writer, u"v", "1");
  ASSERT_TRUE(IsWoken(wake_));
  SetBytes(*writer, u"v", "2");
  SetBytes(*writer, u"v", "3");
  ASSERT_TRUE(StaysAsleep(wake_)) << "woken without being armed";
  ASSERT_EQ(reader->NotifyChange(wake_), kSuccess);
  ASSERT_TRUE(IsWoken(wake_));
  ASSERT_EQ(reader->NotifyChange(wake_), kSuccess);
  EXPECT_TRUE(StaysAsleep(wake_)) << "reported twice";
}

TEST_P(RegistryContract, EveryHandleIsArmedByItself) {
  const auto writer = Create(u"k");
  WakeEvent secondWake;
  WakeEvent unused;
  const auto first = Open(u"k");
  auto second = Open(u"k");
  const auto arm = [&] {
    ASSERT_EQ(first->NotifyChange(wake_), kSuccess);
    ASSERT_EQ(second->NotifyChange(secondWake), kSuccess);
    ASSERT_EQ(first->NotifyChange(unused), kSuccess) << "arming an armed key changes nothing";
  };
  arm();
  SetBytes(*writer, u"v", "1");
  EXPECT_TRUE(IsWoken(wake_));
  EXPECT_TRUE(IsWoken(secondWake));
  arm();
  second.reset();
  EXPECT_TRUE(StaysAsleep(secondWake)) << "closing woke";
  SetBytes(*writer, u"v", "2");
  EXPECT_TRUE(IsWoken(wake_));
  EXPECT_TRUE(StaysAsleep(secondWake)) << "woken after closing";
  EXPECT_TRUE(StaysAsleep(unused));
}

}  // namespace
}  // namespace support
