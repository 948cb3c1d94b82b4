#include "platform/replace_file.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <fstream>

#include "tests/support/files.h"
#include "tests/support/temporary_folder.h"

namespace platform {
namespace {

namespace fs = std::filesystem;

class ReplaceFileTest : public testing::Test {
 protected:
  support::TemporaryFolder temporary_;
  fs::path target_ = temporary_.Path() / "target";
  fs::path fresh_ = target_.string() + "." + std::to_string(getpid());  // anybody can guess it
};

TEST_F(ReplaceFileTest, LeavesNothingButTheFileWithTheUmasksMode) {
  const mode_t before = umask(0027);
  EXPECT_TRUE(ReplaceWholeFile(target_, "new"));
  umask(before);
  EXPECT_EQ(support::ReadFile(target_), "new");
  EXPECT_EQ(static_cast<unsigned>(fs::status(target_).permissions()), 0640U);
  EXPECT_FALSE(fs::exists(fresh_));
}

TEST_F(ReplaceFileTest, WritesThroughNoLink) {
  const fs::path victim = temporary_.Path() / "victim";
  for (const fs::path& trap : {fresh_, target_}) {
    std::ofstream(victim) << "precious";
    fs::create_symlink(victim, trap);
    EXPECT_TRUE(ReplaceWholeFile(target_, "new"));
    EXPECT_EQ(support::ReadFile(victim), "precious");
    EXPECT_FALSE(fs::is_symlink(target_));
    EXPECT_EQ(support::ReadFile(target_), "new");
    fs::remove(target_);
  }
}

TEST_F(ReplaceFileTest, LeavesNothingWhereSomethingIsInTheWay) {
  fs::create_directory(fresh_);
  EXPECT_FALSE(ReplaceWholeFile(target_, "new"));
  EXPECT_FALSE(fs::exists(target_));
  fs::remove(fresh_);
  fs::create_directories(target_ / "full");
  EXPECT_FALSE(ReplaceWholeFile(target_, "new"));
  EXPECT_FALSE(fs::exists(fresh_));
}

}  // namespace
}  // namespace platform
