// What every implementation of the file system promises.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <filesystem>
#include <memory>
#include <span>
#include <string>
#include <string_view>

#include "platform/fake/fake_files.h"
#include "platform/linux/files/posix_files.h"
#include "platform/text.h"
#include "tests/support/temporary_folder.h"

namespace platform {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// An implementation and an empty folder in it.
class FilesUnderTest {
 public:
  virtual ~FilesUnderTest() = default;
  virtual FileSystem& Files() = 0;
  virtual std::u16string Folder() = 0;
  virtual void MakeFolder(std::u16string_view path) = 0;
};

class FakeFilesUnderTest : public FilesUnderTest {
 public:
  FileSystem& Files() override { return files_; }
  std::u16string Folder() override { return u"/folder"; }
  void MakeFolder(std::u16string_view path) override { files_.PutFolder(path); }

 private:
  FakeFileSystem files_;
};

class PosixFilesUnderTest : public FilesUnderTest {
 public:
  FileSystem& Files() override { return files_; }
  std::u16string Folder() override { return FromUtf8(folder_.Path().native()); }
  void MakeFolder(std::u16string_view path) override {
    std::filesystem::create_directory(ToUtf8(path));
  }

 private:
  support::TemporaryFolder folder_;
  PosixFileSystem files_{folder_.Path() / "state"};
};

using Factory = std::unique_ptr<FilesUnderTest> (*)();

template <class Implementation>
std::unique_ptr<FilesUnderTest> MakeImplementation() {
  return std::make_unique<Implementation>();
}

class FileSystemContract : public testing::TestWithParam<Factory> {
 protected:
  std::u16string Path(std::u16string_view name) {
    return implementation_->Folder() + u"/" + std::u16string(name);
  }

  std::unique_ptr<File> Open(std::u16string_view name, FileAccess access) {
    return files_.OpenExisting(Path(name), access);
  }

  void Create(std::u16string_view name, std::string_view text) {
    const std::unique_ptr<File> file = files_.CreateAlways(Path(name));
    ASSERT_TRUE(file);
    EXPECT_TRUE(file->Write(std::as_bytes(std::span(text))));
  }

  // Everything in the file, read in pieces; "(none)" when it does not open.
  std::string Contents(std::u16string_view name) {
    const std::unique_ptr<File> file = Open(name, FileAccess::Read);
    if (!file) return "(none)";
    std::string text;
    std::array<char, 3> piece{};
    for (std::size_t read = 1; read > 0;) {
      EXPECT_TRUE(file->Read(std::as_writable_bytes(std::span(piece)), &read));
      text.append(piece.data(), read);
    }
    return text;
  }

  std::unique_ptr<FilesUnderTest> implementation_ = GetParam()();
  FileSystem& files_ = implementation_->Files();
};

INSTANTIATE_TEST_SUITE_P(Fake, FileSystemContract,
                         testing::Values(&MakeImplementation<FakeFilesUnderTest>));
INSTANTIATE_TEST_SUITE_P(Posix, FileSystemContract,
                         testing::Values(&MakeImplementation<PosixFilesUnderTest>));

TEST_P(FileSystemContract, CreatesEmptiesAppendsAndReadsInSequence) {
  EXPECT_EQ(Open(u"file", FileAccess::Read), nullptr);
  EXPECT_EQ(Open(u"file", FileAccess::Append), nullptr) << "opening must not make it";
  Create(u"file", "first text");
  EXPECT_EQ(Contents(u"file"), "first text");
  Create(u"file", "2nd");
  EXPECT_EQ(Contents(u"file"), "2nd");
  {
    const std::unique_ptr<File> file = Open(u"file", FileAccess::Append);
    ASSERT_TRUE(file);
    for (const std::string_view text : {"+a", "", "+b"}) {
      EXPECT_TRUE(file->Write(std::as_bytes(std::span(text))));
    }
  }
  EXPECT_EQ(Contents(u"file"), "2nd+a+b");
  EXPECT_EQ(files_.CreateNew(Path(u"file")), nullptr);
  EXPECT_EQ(Contents(u"file"), "2nd+a+b");
  const std::unique_ptr<File> fresh = files_.CreateNew(Path(u"new"));
  ASSERT_TRUE(fresh);
  EXPECT_EQ(Open(u"new", FileAccess::Append), nullptr);
  EXPECT_TRUE(fresh->Write(std::as_bytes(std::span(std::string_view("text")))));
}

TEST_P(FileSystemContract, RefusesASecondOpenerAndLeavesTheFileAsItIs) {
  Create(u"file", "text");
  for (const FileAccess access : {FileAccess::Read, FileAccess::Append}) {
    const std::unique_ptr<File> holder = Open(u"file", access);
    ASSERT_TRUE(holder);
    EXPECT_EQ(Open(u"file", FileAccess::Read), nullptr);
    EXPECT_EQ(Open(u"file", FileAccess::Append), nullptr);
    EXPECT_EQ(files_.CreateAlways(Path(u"file")), nullptr);
  }
  EXPECT_EQ(Contents(u"file"), "text");
  const std::unique_ptr<File> creator = files_.CreateAlways(Path(u"file"));
  ASSERT_TRUE(creator);
  EXPECT_EQ(Open(u"file", FileAccess::Append), nullptr);
}

TEST_P(FileSystemContract, OpensNoFolder) {
  implementation_->MakeFolder(Path(u"folder.vtd"));
  EXPECT_EQ(Open(u"folder.vtd", FileAccess::Read), nullptr);
  EXPECT_EQ(Open(u"folder.vtd", FileAccess::Append), nullptr);
  EXPECT_EQ(files_.CreateAlways(Path(u"folder.vtd")), nullptr);
  EXPECT_FALSE(files_.Remove(Path(u"folder.vtd")));
}

TEST_P(FileSystemContract, RefusesTheWrongDirection) {
  Create(u"file", "text");
  std::array<std::byte, 4> bytes{};
  std::size_t read = 9;
  EXPECT_FALSE(Open(u"file", FileAccess::Read)->Write(bytes));
  EXPECT_FALSE(Open(u"file", FileAccess::Append)->Read(bytes, &read));
  EXPECT_EQ(read, 0U);
  EXPECT_EQ(Contents(u"file"), "text");
}

TEST_P(FileSystemContract, RemovesAFileOnce) {
  Create(u"file", "text");
  EXPECT_TRUE(files_.Remove(Path(u"file")));
  EXPECT_FALSE(files_.Remove(Path(u"file")));
  EXPECT_EQ(Contents(u"file"), "(none)");
}

TEST_P(FileSystemContract, FindsNamesByTheirEndWithoutRegardToCase) {
  for (const std::u16string_view name :
       {u"b.vtd", u"A.VTD", u"0.vtd", u"c.vtd.bak", u"d.vtdx", u"vtd", u"\u00C4.VtD", u".vtd"}) {
    Create(name, "");
  }
  implementation_->MakeFolder(Path(u"folder.vtd"));
  EXPECT_THAT(files_.FindByExtension(implementation_->Folder(), u".vtd"),
              ElementsAre(u".vtd", u"0.vtd", u"A.VTD", u"b.vtd", u"folder.vtd", u"\u00C4.VtD"));
  EXPECT_THAT(files_.FindByExtension(implementation_->Folder() + u"/", u".VTDX"),
              ElementsAre(u"d.vtdx"));
  EXPECT_THAT(files_.FindByExtension(Path(u"missing"), u".vtd"), IsEmpty());
}

}  // namespace
}  // namespace platform
