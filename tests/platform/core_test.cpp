// The folder that everything lies in, and text.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>

#include "platform/linux/files/state_folder.h"
#include "platform/text.h"
#include "tests/support/forked_process.h"
#include "tests/support/temporary_folder.h"

namespace platform {
namespace {

namespace fs = std::filesystem;

TEST(StateFolderTest, FollowsTheEnvironmentAndTheUsersRights) {
  constexpr uid_t kNobody = 65534;
  const bool isRoot = geteuid() == 0 && !fs::exists("/var/lib/norvane/velsona");
  const struct {
    const char* root;
    const char* stateHome;
    uid_t user;
    fs::path expected;
  } cases[] = {
      {"/somewhere/./else/", "", geteuid(), "/somewhere/else"},
      {"relative", "", geteuid(), fs::current_path() / "relative"},
      {"", "/state", 0, "/var/lib/norvane/velsona"},
      {"", "/state", kNobody, "/state/norvane/velsona"},
      {"", "", kNobody, "/home/someone/.local/state/norvane/velsona"},
      {"", "relative", kNobody, "/home/someone/.local/state/norvane/velsona"},
  };
  for (const auto& c : cases) {
    if (c.user != geteuid() && !isRoot) continue;
    // In a child, for the environment and the user belong to the whole process.
    support::ForkedProcess child([&](const support::Line&) {
      setenv("TONALYX_ROOT", c.root, 1);
      setenv("XDG_STATE_HOME", c.stateHome, 1);
      setenv("HOME", "/home/someone", 1);
      if (seteuid(c.user) != 0 || StateFolder() != c.expected) _exit(1);
    });
    EXPECT_TRUE(child.Join()) << c.expected;
  }
  EXPECT_FALSE(fs::exists("/somewhere"));
}

TEST(StateFolderTest, IsOpenToEveryoneAndItsParentsAreNot) {
  const support::TemporaryFolder temporary;
  const fs::path folder = temporary.Path() / "one/two/three";
  const mode_t before = umask(0077);
  EXPECT_TRUE(MakeStateFolder(folder));
  umask(before);
  EXPECT_EQ(fs::status(folder).permissions(), fs::perms(0777));
  EXPECT_EQ(fs::status(folder.parent_path()).permissions(), fs::perms(0755));
  fs::permissions(folder, fs::perms(0700));
  EXPECT_TRUE(MakeStateFolder(folder)) << "it is there already";
  EXPECT_EQ(fs::status(folder).permissions(), fs::perms(0700));
  EXPECT_FALSE(MakeStateFolder("/dev/null/folder"));
}

TEST(TextTest, Utf8AndBack) {
  struct Case {
    std::u16string_view utf16;
    std::string_view utf8;
  };
  for (const Case& c :
       {Case{u"", ""}, Case{u"aß€\U0001F50A", "a\xC3\x9F\xE2\x82\xAC\xF0\x9F\x94\x8A"},
        Case{{u"a\0b", 3}, {"a\0b", 3}},
        // Bytes that are no UTF-8: alone, overlong, a surrogate, beyond the last.
        Case{u"x\xDC80\xDCFFy", "x\x80\xFFy"}, Case{u"\xDCC0\xDCAF", "\xC0\xAF"},
        Case{u"\xDCED\xDCA0\xDC80", "\xED\xA0\x80"},
        Case{u"\xDCF4\xDC90\xDC80\xDC80", "\xF4\x90\x80\x80"},
        // Cut off at the end.
        Case{u"\xDCE2\xDC82", "\xE2\x82"}}) {
    EXPECT_EQ(ToUtf8(c.utf16), c.utf8);
    EXPECT_EQ(FromUtf8(c.utf8), c.utf16);
  }
  EXPECT_EQ(ToUtf8(u"\xD800x\xDC00"), "\xEF\xBF\xBDx\xEF\xBF\xBD");
}

TEST(TextTest, AnsiHasOneByteForEachUnit) {
  EXPECT_EQ(ToAnsi(u"Aÿ€Ÿ™\x81\x80\U0001F50AĀ"), "A\xFF\x80\x9F\x99\x81????");
}

TEST(TextTest, CaseIsIgnoredAllOverUnicode) {
  struct Case {
    std::u16string_view left;
    std::u16string_view right;
    int order;
  };
  for (const Case& c :
       {Case{u"", u"", 0}, Case{u"", u"a", -1}, Case{u"PARAM1", u"param1", 0},
        Case{u"Param10", u"param2", -1}, Case{u"a_", u"aB", 1}, Case{u"äÖ", u"Äö", 0},
        Case{u"ЖУК", u"жук", 0}, Case{u"ΣΑΣ", u"σας", 0}, Case{u"ẞ", u"ß", 0},
        Case{u"\U00010400", u"\U00010428", 0}, Case{u"ı", u"I", 1}, Case{u"ss", u"ß", -1},
        Case{u"\xD800", u"\xD801", -1}}) {
    const int order = CompareIgnoreCase(c.left, c.right);
    EXPECT_EQ((order > 0) - (order < 0), c.order);
    const int reverse = CompareIgnoreCase(c.right, c.left);
    EXPECT_EQ((reverse > 0) - (reverse < 0), -c.order);
    EXPECT_EQ(FoldCase(c.left) == FoldCase(c.right), c.order == 0);
  }
}

}  // namespace
}  // namespace platform
