// What every implementation of the file system and of the named events promises.
#include "tests/platform/base_contracts.h"

#include <gmock/gmock.h>

#include <array>
#include <set>
#include <span>

namespace support {
namespace {

using platform::File;
using platform::FileAccess;
using testing::ElementsAre;
using testing::IsEmpty;

class FileSystemContract : public testing::TestWithParam<Maker<FilesBackend>> {
 protected:
  std::u16string Path(std::u16string_view name) {
    return backend_->Folder() + u"/" + std::u16string(name);
  }
  std::unique_ptr<File> Open(std::u16string_view name, FileAccess access = FileAccess::Read) {
    return files_.OpenExisting(Path(name), access);
  }
  void Create(std::u16string_view name, std::string_view text) {
    const std::unique_ptr<File> file = files_.CreateAlways(Path(name));
    ASSERT_TRUE(file);
    EXPECT_TRUE(file->Write(std::as_bytes(std::span(text))));
  }
  // Everything in the file, read in pieces; "(none)" when it does not open.
  std::string Contents(std::u16string_view name) {
    const std::unique_ptr<File> file = Open(name);
    if (!file) return "(none)";
    std::string text;
    std::array<char, 3> piece{};
    for (std::size_t read = 1; read > 0;) {
      EXPECT_TRUE(file->Read(std::as_writable_bytes(std::span(piece)), &read));
      text.append(piece.data(), read);
    }
    return text;
  }

  const std::unique_ptr<FilesBackend> backend_ = GetParam()();
  platform::FileSystem& files_ = backend_->Files();
};

INSTANTIATE_TEST_SUITE_P(Backends, FileSystemContract, testing::ValuesIn(FilesBackends()));

TEST_P(FileSystemContract, CreatesEmptiesAppendsReadsAndRemoves) {
  EXPECT_EQ(Open(u"file"), nullptr);
  EXPECT_EQ(Open(u"file", FileAccess::Append), nullptr) << "opening must not make it";
  Create(u"file", "first text");
  EXPECT_EQ(Contents(u"file"), "first text");
  Create(u"file", "2nd");
  EXPECT_EQ(Contents(u"file"), "2nd");
  auto file = Open(u"file", FileAccess::Append);
  ASSERT_TRUE(file);
  for (const std::string_view text : {"+a", "", "+b"}) {
    EXPECT_TRUE(file->Write(std::as_bytes(std::span(text))));
  }
  EXPECT_EQ(files_.CreateNew(Path(u"file")), nullptr);
  const std::unique_ptr<File> fresh = files_.CreateNew(Path(u"new"));
  ASSERT_TRUE(fresh);
  EXPECT_EQ(Open(u"new", FileAccess::Append), nullptr);
  EXPECT_TRUE(fresh->Write(std::as_bytes(std::span(std::string_view("text")))));
  std::array<std::byte, 4> bytes{};
  std::size_t read = 9;
  EXPECT_FALSE(file->Read(bytes, &read));
  EXPECT_EQ(read, 0U);
  file.reset();
  EXPECT_TRUE(files_.Remove(Path(u"file")));
  EXPECT_FALSE(files_.Remove(Path(u"file")));
  EXPECT_EQ(Contents(u"file"), "(none)");
}

TEST_P(FileSystemContract, RefusesASecondOpenerAndLeavesTheFileAsItIs) {
  Create(u"file", "text");
  for (const FileAccess access : {FileAccess::Read, FileAccess::Append}) {
    const std::unique_ptr<File> holder = Open(u"file", access);
    ASSERT_TRUE(holder);
    EXPECT_EQ(Open(u"file"), nullptr);
    EXPECT_EQ(Open(u"file", FileAccess::Append), nullptr);
    EXPECT_EQ(files_.CreateAlways(Path(u"file")), nullptr);
    const std::array<std::byte, 4> bytes{};
    EXPECT_EQ(access == FileAccess::Append || !holder->Write(bytes), true);
  }
  EXPECT_EQ(Contents(u"file"), "text");
  const std::unique_ptr<File> creator = files_.CreateAlways(Path(u"file"));
  ASSERT_TRUE(creator);
  EXPECT_EQ(Open(u"file", FileAccess::Append), nullptr);
}

TEST_P(FileSystemContract, FindsNamesByTheirEndWithoutRegardToCaseAndOpensNoFolder) {
  for (const std::u16string_view name :
       {u"b.vtd", u"A.VTD", u"0.vtd", u"c.vtd.bak", u"d.vtdx", u"vtd", u"\u00C4.VtD", u".vtd"}) {
    Create(name, "");
  }
  const std::u16string folder = Path(u"folder.vtd");
  backend_->MakeFolder(folder);
  EXPECT_THAT(files_.FindByExtension(backend_->Folder(), u".vtd"),
              ElementsAre(u".vtd", u"0.vtd", u"A.VTD", u"b.vtd", u"folder.vtd", u"\u00C4.VtD"));
  EXPECT_THAT(files_.FindByExtension(backend_->Folder() + u"/", u".VTDX"), ElementsAre(u"d.vtdx"));
  EXPECT_THAT(files_.FindByExtension(Path(u"missing"), u".vtd"), IsEmpty());
  EXPECT_EQ(Open(u"folder.vtd"), nullptr);
  EXPECT_EQ(Open(u"folder.vtd", FileAccess::Append), nullptr);
  EXPECT_EQ(files_.CreateAlways(folder), nullptr);
  EXPECT_FALSE(files_.Remove(folder));
}

class NamedEventsContract : public testing::TestWithParam<Maker<EventsBackend>> {
 protected:
  bool Set(std::u16string_view name) {
    const std::unique_ptr<platform::NamedEvent> event = backend_->Events().Open(name);
    return event && event->Set();
  }

  const std::unique_ptr<EventsBackend> backend_ = GetParam()();
};

INSTANTIATE_TEST_SUITE_P(Backends, NamedEventsContract, testing::ValuesIn(EventsBackends()));

constexpr std::u16string_view kEvent =
    u"Global\\VelsonaGFXPropEvent{8E5A1C40-93B7-4B52-9F0B-35A5D6A3C6E1}";

TEST_P(NamedEventsContract, OpensWhatAnEngineMadeAndNothingElseAndShowsWhenItIsGone) {
  EXPECT_FALSE(Set(kEvent)) << "nothing was made yet";
  EXPECT_FALSE(Set(kEvent)) << "the first attempt must not have made it";
  backend_->Make(kEvent);
  EXPECT_TRUE(Set(kEvent));
  EXPECT_FALSE(Set(u"Global\\VelsonaGFXPropEvent")) << "a prefix of the name";
  EXPECT_FALSE(Set(u"Global\\VELSONAGFXPROPEVENT{8E5A1C40-93B7-4B52-9F0B-35A5D6A3C6E1}"))
      << "another case";
  EXPECT_FALSE(Set(u""));
  EXPECT_THAT(backend_->Received(), ElementsAre(std::u16string(kEvent)));
  const auto opened = backend_->Events().Open(kEvent);
  ASSERT_TRUE(opened);
  backend_->EndEngine();
  EXPECT_FALSE(opened->Set()) << "opened while the engine lived";
  EXPECT_FALSE(Set(kEvent));
  EXPECT_THAT(backend_->Received(), IsEmpty());
}

TEST_P(NamedEventsContract, KeepsTheOrderOfSetsOverSeveralEvents) {
  // Made in another order than set, and one of them set twice.
  for (const std::u16string_view name : {u"third", u"second", u"first"}) backend_->Make(name);
  for (const std::u16string_view name : {u"first", u"second", u"third", u"second"}) {
    EXPECT_TRUE(Set(name));
  }
  // Sets without a time are one, and have no order.
  if (backend_->KeepsTimes()) {
    EXPECT_THAT(backend_->Received(), ElementsAre(u"first", u"second", u"third", u"second"));
  } else {
    const auto names = backend_->Received();
    EXPECT_THAT(std::set(names.begin(), names.end()), ElementsAre(u"first", u"second", u"third"));
  }
  EXPECT_THAT(backend_->Received(), IsEmpty());
}

}  // namespace
}  // namespace support
