// What only real files can show.
#include "platform/linux/files/posix_files.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <memory>
#include <span>
#include <sstream>
#include <string>
#include <string_view>

#include "platform/text.h"
#include "tests/support/forked_process.h"
#include "tests/support/temporary_folder.h"

namespace platform {
namespace {

namespace fs = std::filesystem;
using support::ForkedProcess;
using support::Line;

class PosixFilesTest : public testing::Test {
 protected:
  std::u16string Path(const char* name) const {
    return FromUtf8((temporary_.Path() / name).native());
  }

  static bool Write(File& file, std::string_view text) {
    return file.Write(std::as_bytes(std::span(text)));
  }

  static std::string Contents(const fs::path& path) {
    std::ostringstream text;
    text << std::ifstream(path).rdbuf();
    return text.str();
  }

  support::TemporaryFolder temporary_;
  fs::path stateFolder_ = temporary_.Path() / "a/state";
  PosixFileSystem files_{stateFolder_};
};

TEST_F(PosixFilesTest, IsRefusedWhatAnotherProcessHoldsUntilItIsKilled) {
  std::ofstream(temporary_.Path() / "file") << "text";
  ForkedProcess holder([this](const Line& parent) {
    const std::unique_ptr<File> file = files_.OpenExisting(Path("file"), FileAccess::Append);
    parent.Say(file && Write(*file, "+more") ? 'y' : 'n');
    parent.Hear();
  });
  ASSERT_EQ(holder.Talk().Hear(), 'y');
  EXPECT_EQ(files_.OpenExisting(Path("file"), FileAccess::Read), nullptr);
  EXPECT_EQ(files_.CreateAlways(Path("file")), nullptr);
  EXPECT_EQ(Contents(temporary_.Path() / "file"), "text+more");
  holder.Kill();
  EXPECT_TRUE(files_.OpenExisting(Path("file"), FileAccess::Read));
}

TEST_F(PosixFilesTest, DoesNotWaitForTheOtherEndOfAFifo) {
  ASSERT_EQ(mkfifo((temporary_.Path() / "fifo").c_str(), 0666), 0);
  EXPECT_EQ(files_.OpenExisting(Path("fifo"), FileAccess::Read), nullptr);
  EXPECT_EQ(files_.OpenExisting(Path("fifo"), FileAccess::Append), nullptr);
  EXPECT_EQ(files_.CreateAlways(Path("fifo")), nullptr);
  EXPECT_EQ(files_.OpenExisting(u"/dev/null", FileAccess::Read), nullptr);
  EXPECT_EQ(files_.CreateAlways(u"/dev/null"), nullptr);
}

TEST_F(PosixFilesTest, AppendsWhereTheEndIsByThen) {
  std::ofstream(temporary_.Path() / "file") << "a";
  const std::unique_ptr<File> file = files_.OpenExisting(Path("file"), FileAccess::Append);
  ASSERT_TRUE(file);
  EXPECT_TRUE(Write(*file, "b"));
  // Somebody who knows nothing of the locks.
  std::ofstream(temporary_.Path() / "file", std::ios::app) << "foreign";
  EXPECT_TRUE(Write(*file, "c"));
  EXPECT_EQ(Contents(temporary_.Path() / "file"), "abforeignc");
}

TEST_F(PosixFilesTest, KeepsNamesThatAreNoUtf8) {
  const std::string name = "caf\xE9\xFF.VTD";
  std::ofstream(temporary_.Path() / name) << "text";
  const std::vector<std::u16string> found = files_.FindByExtension(Path(""), u".vtd");
  ASSERT_EQ(found.size(), 1U);
  EXPECT_TRUE(files_.OpenExisting(Path("") + found[0], FileAccess::Read));
  EXPECT_TRUE(files_.Remove(Path("") + found[0]));
  EXPECT_FALSE(fs::exists(temporary_.Path() / name));
}

TEST_F(PosixFilesTest, DoesNotCutAPathAtANul) {
  std::ofstream(temporary_.Path() / "file") << "text";
  const std::u16string path = Path("file") + std::u16string(1, u'\0') + u"more";
  EXPECT_EQ(files_.OpenExisting(path, FileAccess::Read), nullptr);
  EXPECT_EQ(files_.CreateAlways(path), nullptr);
  EXPECT_FALSE(files_.Remove(path));
  EXPECT_EQ(Contents(temporary_.Path() / "file"), "text");
}

TEST_F(PosixFilesTest, MakesTheLogsFolderWithTheLogAndNoOther) {
  const std::u16string log = files_.DiagnosticLogPath();
  EXPECT_EQ(ToUtf8(log), (stateFolder_ / "Velsona.txt").native());
  EXPECT_EQ(files_.OpenExisting(log, FileAccess::Append), nullptr);
  EXPECT_FALSE(fs::exists(temporary_.Path() / "a"));
  EXPECT_EQ(files_.CreateAlways(Path("b/file")), nullptr) << "no other file's folder is made";
  EXPECT_TRUE(files_.CreateNew(log));
}

TEST_F(PosixFilesTest, FollowsLinks) {
  std::ofstream(temporary_.Path() / "file") << "text";
  fs::create_symlink(temporary_.Path() / "file", temporary_.Path() / "link");
  EXPECT_TRUE(files_.OpenExisting(Path("link"), FileAccess::Read));
}

TEST_F(PosixFilesTest, NamesTheFolderInWhichTheProgramReallyLies) {
  EXPECT_EQ(ToUtf8(files_.ProgramFolder()),
            (fs::canonical("/proc/self/exe").parent_path() / "").native());
}

}  // namespace
}  // namespace platform
