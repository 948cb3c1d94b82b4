// What only real files can show.
#include "platform/linux/files/posix_files.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <span>
#include <sstream>

#include "platform/fake/fake_files.h"
#include "platform/text.h"
#include "tests/platform/base_contracts.h"
#include "tests/support/forked_process.h"
#include "tests/support/temporary_folder.h"

namespace support {
namespace {

struct FakeFiles : FilesBackend {
  platform::FileSystem& Files() override { return files; }
  std::u16string Folder() override { return u"/folder"; }
  void MakeFolder(std::u16string_view path) override { files.PutFolder(path); }

  platform::FakeFileSystem files;
};

struct PosixFiles : FilesBackend {
  platform::FileSystem& Files() override { return files; }
  std::u16string Folder() override { return platform::FromUtf8(folder.Path().native()); }
  void MakeFolder(std::u16string_view path) override {
    std::filesystem::create_directory(platform::ToUtf8(path));
  }

  TemporaryFolder folder;
  platform::PosixFileSystem files{folder.Path() / "state"};
};

}  // namespace

std::vector<Maker<FilesBackend>> FilesBackends() {
  return {&Make<FilesBackend, FakeFiles>, &Make<FilesBackend, PosixFiles>};
}

}  // namespace support

namespace platform {
namespace {

namespace fs = std::filesystem;

class PosixFilesTest : public testing::Test {
 protected:
  std::u16string Path(const char* name) const {
    return FromUtf8((temporary_.Path() / name).native());
  }
  bool Opens(const std::u16string& path, FileAccess access = FileAccess::Read) {
    return files_.OpenExisting(path, access) != nullptr;
  }
  void Put(const char* name, const char* text) const {
    std::ofstream(temporary_.Path() / name, std::ios::app) << text;
  }
  std::string Contents(const char* name) const {
    std::ostringstream text;
    text << std::ifstream(temporary_.Path() / name).rdbuf();
    return text.str();
  }
  static bool Write(File& file, std::string_view text) {
    return file.Write(std::as_bytes(std::span(text)));
  }

  support::TemporaryFolder temporary_;
  fs::path stateFolder_ = temporary_.Path() / "a/state";
  PosixFileSystem files_{stateFolder_};
};

TEST_F(PosixFilesTest, AppendsAtTheEndOfThenAndIsRefusedWhatALivingProcessHolds) {
  Put("file", "a");
  support::ForkedProcess holder([this](const support::Line& parent) {
    const std::unique_ptr<File> file = files_.OpenExisting(Path("file"), FileAccess::Append);
    parent.Say(file && Write(*file, "b") ? 'y' : 'n');
    parent.Hear();
    parent.Say(Write(*file, "c") ? 'y' : 'n');
    parent.Hear();
  });
  ASSERT_EQ(holder.Talk().Hear(), 'y');
  // Somebody who knows nothing of the locks.
  Put("file", "foreign");
  holder.Talk().Say('g');
  ASSERT_EQ(holder.Talk().Hear(), 'y');
  EXPECT_FALSE(Opens(Path("file")));
  EXPECT_EQ(files_.CreateAlways(Path("file")), nullptr);
  EXPECT_EQ(Contents("file"), "abforeignc");
  holder.Kill();
  EXPECT_TRUE(Opens(Path("file")));
}

TEST_F(PosixFilesTest, DoesNotWaitForTheOtherEndOfAFifo) {
  ASSERT_EQ(mkfifo((temporary_.Path() / "fifo").c_str(), 0666), 0);
  for (const std::u16string& path : {Path("fifo"), std::u16string(u"/dev/null")}) {
    EXPECT_FALSE(Opens(path));
    EXPECT_FALSE(Opens(path, FileAccess::Append));
    EXPECT_EQ(files_.CreateAlways(path), nullptr);
  }
}

TEST_F(PosixFilesTest, KeepsNamesThatAreNoUtf8AndCutsNoPathAtANul) {
  const char* name = "caf\xE9\xFF.VTD";
  Put(name, "text");
  const std::vector<std::u16string> found = files_.FindByExtension(Path(""), u".vtd");
  ASSERT_EQ(found.size(), 1U);
  const std::u16string path = Path("") + found[0];
  const std::u16string longer = path + std::u16string(1, u'\0') + u"more";
  EXPECT_FALSE(Opens(longer));
  EXPECT_EQ(files_.CreateAlways(longer), nullptr);
  EXPECT_FALSE(files_.Remove(longer));
  EXPECT_EQ(Contents(name), "text");
  EXPECT_TRUE(Opens(path));
  EXPECT_TRUE(files_.Remove(path));
}

TEST_F(PosixFilesTest, MakesTheLogsFolderWithTheLogAndNoOtherAndFollowsLinksButToTheLog) {
  const std::u16string log = files_.DiagnosticLogPath();
  EXPECT_EQ(ToUtf8(log), (stateFolder_ / "Velsona.txt").native());
  EXPECT_FALSE(Opens(log, FileAccess::Append));
  EXPECT_FALSE(fs::exists(temporary_.Path() / "a"));
  EXPECT_EQ(files_.CreateAlways(Path("b/file")), nullptr) << "no other file's folder is made";
  const mode_t before = umask(0077);
  EXPECT_TRUE(files_.CreateNew(log));
  umask(before);
  EXPECT_EQ(fs::status(stateFolder_ / "Velsona.txt").permissions(), fs::perms(0666));
  EXPECT_EQ(fs::status(stateFolder_).permissions(), fs::perms(0777));

  fs::rename(stateFolder_ / "Velsona.txt", temporary_.Path() / "file");
  for (const fs::path& link : {temporary_.Path() / "link", stateFolder_ / "Velsona.txt"}) {
    fs::create_symlink(temporary_.Path() / "file", link);
  }
  EXPECT_TRUE(Opens(Path("link")));
  EXPECT_FALSE(Opens(log, FileAccess::Append));
  EXPECT_EQ(files_.CreateNew(log), nullptr);
}

}  // namespace
}  // namespace platform
