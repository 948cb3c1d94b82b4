#include "tests/platform/registry_contract.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <cstdint>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "platform/fake/fake_registry.h"
#include "platform/linux/registry/sqlite_registry.h"
#include "platform/registry.h"
#include "tests/platform/open_key.h"
#include "tests/support/temporary_folder.h"

namespace support {
namespace {

using platform::RegistryAccess;
using platform::RegistryDisposition;
using platform::RegistryKey;
using platform::RegistryRoot;
using platform::RegistryStatus;
using platform::RegistryType;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr RegistryAccess kAll = platform::kRegistryAllAccess;
constexpr RegistryAccess kRead = platform::kRegistryRead | platform::kRegistryView64;

struct StoreInAFolder {
  TemporaryFolder folder;
  platform::SqliteRegistry registry{folder.Path() / "store"};
};

std::shared_ptr<platform::Registry> MakeSqlite() {
  const auto store = std::make_shared<StoreInAFolder>();
  return {store, &store->registry};
}

const RegistryBackendKind kKinds[] = {
    {"Fake", [] { return std::make_shared<platform::FakeRegistry>(); }}, {"Sqlite", MakeSqlite}};

INSTANTIATE_TEST_SUITE_P(Backends, RegistryContract, testing::ValuesIn(kKinds),
                         [](const auto& kind) { return kind.param.name; });

TEST_P(RegistryContract, PathsWithBadPartsNeitherOpenNorAreCreated) {
  const std::u16string longest(255, u'k');
  for (const std::u16string& path :
       {std::u16string(), std::u16string(u"\\"), std::u16string(u"\\a"), std::u16string(u"a\\"),
        std::u16string(u"a\\\\b"), u"a\\" + longest + u"k"}) {
    EXPECT_EQ(Create(path), nullptr);
    EXPECT_EQ(Open(path, kRead), nullptr);
    EXPECT_EQ(registry().RemoveTree(RegistryRoot::LocalMachine, path),
              RegistryStatus::FileNotFound);
  }
  EXPECT_EQ(Open(u"a", kRead), nullptr);
  EXPECT_NE(Create(u"a\\" + longest), nullptr);
  EXPECT_NE(Open(u"a\\" + longest, kRead), nullptr);
}

TEST_P(RegistryContract, CreatesMissingPartsAndTellsNewFromOld) {
  RegistryDisposition disposition = RegistryDisposition::OpenedExisting;
  const auto create = [&](std::u16string_view path) {
    return registry().CreateKey(RegistryRoot::LocalMachine, path, kAll, &disposition) != nullptr;
  };
  EXPECT_TRUE(create(u"One\\Two\\Three"));
  EXPECT_EQ(disposition, RegistryDisposition::CreatedNew);
  EXPECT_TRUE(create(u"ONE\\two"));
  EXPECT_EQ(disposition, RegistryDisposition::OpenedExisting);
  EXPECT_EQ(registry().OpenKey(RegistryRoot::ClassesRoot, u"One", kRead), nullptr);
}

TEST_P(RegistryContract, NamesIgnoreCaseAndKeepTheirFirstSpelling) {
  const auto key = Create(u"Köln\\Жук");
  ASSERT_NE(Open(u"KÖLN\\жУК", kRead), nullptr);
  ASSERT_NE(Create(u"kÖln\\ЖУК\\inner"), nullptr);
  EXPECT_THAT(SubKeysOf(*Open(u"köln", kRead)), ElementsAre(u"Жук"));

  EXPECT_EQ(SetBytes(*key, u"Größe", "1"), RegistryStatus::Success);
  EXPECT_EQ(SetBytes(*key, u"GRÖße", "2"), RegistryStatus::Success);
  EXPECT_THAT(ValuesOf(*key), ElementsAre(u"Größe"));
  EXPECT_EQ(GetBytes(*key, u"gröẞe"), "2");
  EXPECT_EQ(key->RemoveValue(u"GRÖSSE"), RegistryStatus::FileNotFound);
  EXPECT_EQ(key->RemoveValue(u"GRÖße"), RegistryStatus::Success);
  EXPECT_THAT(ValuesOf(*key), IsEmpty());
}

TEST_P(RegistryContract, EnumeratesInNameOrderFromAnyPosition) {
  const auto key = Create(u"top");
  for (const std::u16string name : {u"beta", u"Alpha", u"Param10", u"param2", u"äb", u"_x"}) {
    ASSERT_EQ(SetBytes(*key, name, "x"), RegistryStatus::Success);
    ASSERT_NE(Create(u"TOP\\" + name), nullptr);
  }
  ASSERT_EQ(SetBytes(*key, u"", "x"), RegistryStatus::Success);
  EXPECT_THAT(ValuesOf(*key),
              ElementsAre(u"", u"Alpha", u"beta", u"Param10", u"param2", u"_x", u"äb"));
  EXPECT_THAT(SubKeysOf(*key), ElementsAre(u"Alpha", u"beta", u"Param10", u"param2", u"_x", u"äb"));

  std::u16string name;
  EXPECT_EQ(key->EnumerateValue(4, &name), RegistryStatus::Success);
  EXPECT_EQ(name, u"param2");
  EXPECT_EQ(key->EnumerateValue(2, &name), RegistryStatus::Success);
  EXPECT_EQ(name, u"beta");
  EXPECT_EQ(key->RemoveValue(u"alpha"), RegistryStatus::Success);
  EXPECT_EQ(key->EnumerateValue(3, &name), RegistryStatus::Success);
  EXPECT_EQ(name, u"param2");
  EXPECT_EQ(key->EnumerateValue(6, &name), RegistryStatus::NoMoreItems);
  EXPECT_EQ(key->EnumerateSubKey(0xFFFFFFFF, &name), RegistryStatus::NoMoreItems);

  const auto root = registry().OpenRoot(RegistryRoot::LocalMachine);
  ASSERT_NE(root, nullptr);
  EXPECT_THAT(SubKeysOf(*root), ElementsAre(u"top"));
}

TEST_P(RegistryContract, QueriesFillOnlyBuffersThatAreLargeEnough) {
  const auto key = Create(u"k");
  ASSERT_EQ(key->SetValue(u"text", RegistryType::String, BytesOf("abc")), RegistryStatus::Success);
  ASSERT_EQ(key->SetValue(u"", RegistryType::Dword, BytesOf("")), RegistryStatus::Success);

  struct Case {
    std::u16string_view name;
    std::uint32_t capacity;
    RegistryStatus status;
    std::uint32_t size;
    std::string_view buffer;
  };
  for (const Case& c : {Case{u"text", 2, RegistryStatus::MoreData, 3, "....."},
                        Case{u"text", 0, RegistryStatus::MoreData, 3, "....."},
                        Case{u"text", 3, RegistryStatus::Success, 3, "abc.."},
                        Case{u"TEXT", 5, RegistryStatus::Success, 3, "abc.."},
                        Case{u"", 0, RegistryStatus::Success, 0, "....."},
                        Case{u"other", 5, RegistryStatus::FileNotFound, 5, "....."}}) {
    std::string buffer = ".....";
    std::uint32_t size = c.capacity;
    EXPECT_EQ(key->QueryValue(c.name, nullptr, buffer.data(), &size), c.status);
    EXPECT_EQ(size, c.size);
    EXPECT_EQ(buffer, c.buffer);
  }
  RegistryType type = RegistryType::None;
  std::uint32_t size = 0;
  EXPECT_EQ(key->QueryValue(u"text", &type, nullptr, &size), RegistryStatus::Success);
  EXPECT_EQ(size, 3U);
  EXPECT_EQ(type, RegistryType::String);
  EXPECT_EQ(key->QueryValue(u"text", &type, nullptr, nullptr), RegistryStatus::Success);
}

TEST_P(RegistryContract, SetsReplaceTypeAndBytes) {
  const auto key = Create(u"k");
  const std::string large(100'000, 'x');
  EXPECT_EQ(SetBytes(*key, u"v", large), RegistryStatus::Success);
  EXPECT_EQ(GetBytes(*key, u"v"), large);
  EXPECT_EQ(key->SetValue(u"v", static_cast<RegistryType>(0xFFFFFFFF), BytesOf("")),
            RegistryStatus::Success);
  RegistryType type = RegistryType::None;
  std::uint32_t size = 7;
  EXPECT_EQ(key->QueryValue(u"v", &type, nullptr, &size), RegistryStatus::Success);
  EXPECT_EQ(type, static_cast<RegistryType>(0xFFFFFFFF));
  EXPECT_EQ(size, 0U);

  EXPECT_EQ(SetBytes(*key, std::u16string(16383, u'n'), "1"), RegistryStatus::Success);
  EXPECT_EQ(SetBytes(*key, std::u16string(16384, u'n'), "1"), RegistryStatus::InvalidParameter);
}

TEST_P(RegistryContract, AHandleGrantsWhatItsMaskNames) {
  ASSERT_NE(Create(u"k\\sub"), nullptr);
  ASSERT_EQ(SetBytes(*Create(u"k"), u"v", "1"), RegistryStatus::Success);
  platform::WakeEvent wake;
  std::u16string name;
  constexpr std::u16string_view kList = u"D:(A;;KA;;;BU)";

  struct Granted {
    RegistryAccess mask;
    bool query;
    bool set;
    bool enumerateSubKeys;
    bool notify;
    bool setAccessList;
  };
  for (const Granted& g : {Granted{0x20119, true, false, true, true, false},
                           Granted{0x102, false, true, false, false, false},
                           Granted{0xF013F, true, true, true, true, true},
                           Granted{0x100, false, false, false, false, false}}) {
    const auto key = Open(u"k", g.mask);
    ASSERT_NE(key, nullptr);
    const auto expect = [](bool granted, RegistryStatus status) {
      EXPECT_EQ(status, granted ? RegistryStatus::Success : RegistryStatus::AccessDenied);
    };
    expect(g.query, key->QueryValue(u"v", nullptr, nullptr, nullptr));
    expect(g.query, key->EnumerateValue(0, &name));
    expect(g.set, SetBytes(*key, u"w", "2"));
    expect(g.set, key->RemoveValue(u"w"));
    expect(g.enumerateSubKeys, key->EnumerateSubKey(0, &name));
    expect(g.notify, key->NotifyChange(wake));
    expect(g.setAccessList, key->SetAccessList(kList));
  }
  EXPECT_EQ(GetBytes(*Open(u"k", kRead), u"w"), std::nullopt);
}

TEST_P(RegistryContract, AccessListsMustBeOnes) {
  const auto create = [&](std::u16string_view path, std::u16string_view sddl) {
    return registry().CreateKey(RegistryRoot::LocalMachine, path, kAll, nullptr, sddl);
  };
  EXPECT_EQ(create(u"bad", u"nonsense"), nullptr);
  EXPECT_EQ(Open(u"bad", kRead), nullptr);
  const auto key = create(u"good", u"D:(A;OICI;KA;;;BU)(A;OICI;KA;;;AU)(A;OICI;KA;;;BA)");
  ASSERT_NE(key, nullptr);
  EXPECT_EQ(key->SetAccessList(u"D:PAI(A;;0xF003F;;;S-1-5-32-545)"), RegistryStatus::Success);
  EXPECT_EQ(key->SetAccessList(u"nonsense"), RegistryStatus::InvalidParameter);
}

TEST_P(RegistryContract, RemovingATreeTakesEverythingBelowAndItsOpenHandles) {
  platform::WakeEvent wake;
  const auto inner = Create(u"a\\b\\c");
  ASSERT_EQ(SetBytes(*inner, u"v", "1"), RegistryStatus::Success);
  ASSERT_EQ(SetBytes(*Create(u"a\\bb"), u"v", "kept"), RegistryStatus::Success);
  EXPECT_EQ(registry().RemoveTree(RegistryRoot::LocalMachine, u"A\\B"), RegistryStatus::Success);
  EXPECT_EQ(registry().RemoveTree(RegistryRoot::LocalMachine, u"A\\B"),
            RegistryStatus::FileNotFound);
  EXPECT_THAT(SubKeysOf(*Open(u"a", kRead)), ElementsAre(u"bb"));
  EXPECT_EQ(GetBytes(*Open(u"a\\bb", kRead), u"v"), "kept");

  // A key of the same name is another key.
  ASSERT_NE(Create(u"a\\b\\c"), nullptr);
  std::u16string name;
  EXPECT_EQ(SetBytes(*inner, u"v", "2"), RegistryStatus::FileNotFound);
  EXPECT_EQ(inner->RemoveValue(u"v"), RegistryStatus::FileNotFound);
  EXPECT_EQ(GetBytes(*inner, u"v"), std::nullopt);
  EXPECT_EQ(inner->EnumerateValue(0, &name), RegistryStatus::FileNotFound);
  EXPECT_EQ(inner->EnumerateSubKey(0, &name), RegistryStatus::FileNotFound);
  EXPECT_EQ(inner->NotifyChange(wake), RegistryStatus::FileNotFound);
  EXPECT_EQ(GetBytes(*Open(u"a\\b\\c", kRead), u"v"), std::nullopt);
}

TEST_P(RegistryContract, ScopesNestAndShowTheirThreadItsOwnWrites) {
  {
    // Before anything exists.
    const auto outer = registry().BeginWrite();
    EXPECT_EQ(Open(u"k", kRead), nullptr);
    const auto inner = registry().BeginRead();
    const auto key = Create(u"k");
    EXPECT_EQ(SetBytes(*key, u"v", "1"), RegistryStatus::Success);
    EXPECT_EQ(GetBytes(*key, u"v"), "1");
    EXPECT_EQ(outer->Commit(), RegistryStatus::Success);
  }
  const auto reading = registry().BeginRead();
  const auto key = Open(u"k", kAll);
  ASSERT_NE(key, nullptr);
  EXPECT_EQ(GetBytes(*key, u"v"), "1");
  EXPECT_EQ(SetBytes(*key, u"v", "2"), RegistryStatus::Success);
  {
    const auto writing = registry().BeginWrite();
    EXPECT_EQ(SetBytes(*key, u"v", "3"), RegistryStatus::Success);
    EXPECT_EQ(registry().RemoveTree(RegistryRoot::LocalMachine, u"k"), RegistryStatus::Success);
    EXPECT_EQ(SetBytes(*key, u"v", "4"), RegistryStatus::FileNotFound);
    EXPECT_EQ(SetBytes(*Create(u"k"), u"v", "5"), RegistryStatus::Success);
    EXPECT_EQ(writing->Commit(), RegistryStatus::Success);
  }
  EXPECT_EQ(GetBytes(*Open(u"k", kRead), u"v"), "5");
}

TEST_P(RegistryContract, ServesSeveralThreadsAtOnce) {
  constexpr int kThreads = 4;
  constexpr int kRounds = 50;
  ASSERT_NE(Create(u"shared"), nullptr);
  std::atomic<int> failures = 0;
  std::vector<std::thread> threads;
  threads.reserve(kThreads);
  for (int t = 0; t < kThreads; ++t) {
    threads.emplace_back([&, name = std::u16string(1, static_cast<char16_t>(u'a' + t))] {
      for (int round = 0; round < kRounds; ++round) {
        const std::string text = std::to_string(round);
        const auto scope = round % 2 == 0 ? registry().BeginWrite() : nullptr;
        const auto key = Open(u"shared", kAll);
        if (SetBytes(*key, name, text) != RegistryStatus::Success) ++failures;
        if (GetBytes(*key, name) != text) ++failures;
        if (scope != nullptr && scope->Commit() != RegistryStatus::Success) ++failures;
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(failures, 0);
}

}  // namespace
}  // namespace support
