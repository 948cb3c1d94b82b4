// The real binary, command line by command line.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <tuple>

#include "tests/support/child_process.h"
#include "tests/support/temporary_folder.h"

namespace {

using support::ProcessResult;

constexpr const char* kFailed = "<failed>";  // one line on standard error, status 1

class RegtoolTest : public testing::Test {
 protected:
  // What `line`, as a shell reads it, prints. `input` is what the user types.
  std::string Run(const std::string& line, const std::string& input = "") {
    std::ofstream(temporary_.Path() / "input") << input;
    const std::string command =
        TONALYX_BIN_DIR "/regtool " + line + " < " + (temporary_.Path() / "input").string();
    const ProcessResult result =
        support::RunProcess({"/bin/sh", "-c", command}, {{"TONALYX_ROOT", root_.string()}});
    errors_ = result.errors;
    if (result.exitStatus == 0) return result.output;
    EXPECT_EQ(result.exitStatus, 1) << line;
    EXPECT_EQ(result.output, "") << line;
    EXPECT_NE(result.errors.find("regtool: "), std::string::npos) << line;
    return kFailed;
  }

  // The data of a value, as printed.
  std::string Data(const std::string& name) {
    std::string output = Run(R"(query 'HKLM\K' /v ')" + name + "'");
    const std::size_t line = output.find('\n');
    if (line == std::string::npos) return output;
    const std::string value = output.substr(line + 1 + 4 + name.size() + 4);
    return value.substr(0, value.find('\n'));
  }

  support::TemporaryFolder temporary_;
  std::filesystem::path root_ = temporary_.Path() / "root";
  std::string errors_;
};

TEST_F(RegtoolTest, WrongCallsFailAndMakeNothing) {
  const std::string lines =
      R"(|frobnicate 'HKLM\K'|query|query 'HKCU\K'|query 'K'|query 'HKLM\'|query 'HKLM\a\\b'|)"
      R"(query 'HKLM\K'|query 'HKLM\K' /v|query 'HKLM\K' /f|query 'HKLM\K' /v a|)"
      R"(query 'HKLM\K' extra|add 'HKLM'|add 'HKLM\K' /s|add 'HKLM\K' /t REG_FOO /v a|)"
      R"(add 'HKLM\K' /v a /v b|add 'HKLM\K' /d 1 /d 2|)"
      R"(add 'HKLM\K' /t REG_SZ /t REG_SZ|add 'HKLM\K' /v a /t REG_DWORD /d 4294967296|)"
      R"(add 'HKLM\K' /v a /t REG_DWORD /d -1|add 'HKLM\K' /v a /t REG_DWORD /d 0x|)"
      R"(add 'HKLM\K' /v a /t REG_DWORD /d 12z|add 'HKLM\K' /v a /t REG_BINARY /d 123|)"
      R"(add 'HKLM\K' /v a /t REG_BINARY /d 0x12|delete 'HKLM' /f|delete 'HKLM\K' /f|)"
      R"(delete 'HKLM\K' /v a /f|delete 'HKLM\K' /d a)";
  std::istringstream stream(lines);
  for (std::string line; std::getline(stream, line, '|');) {
    EXPECT_EQ(Run(line), kFailed) << line;
  }
  EXPECT_FALSE(std::filesystem::exists(root_));
  EXPECT_NE(Run("--help").find("regtool query KEY"), std::string::npos);
  EXPECT_NE(Run("add --help").find("REG_DWORD"), std::string::npos);
  EXPECT_EQ(Run("query HKLM"), "HKEY_LOCAL_MACHINE\n");
  EXPECT_FALSE(std::filesystem::exists(root_));
}

TEST_F(RegtoolTest, QueryPrintsKeysAndValuesInOrderAsStored) {
  for (const char* line :
       {R"(add 'HKLM\SOFTWARE\Norvane\Sub' /v x /d 'Grüße  an')",
        R"(add 'hklm\software\NORVANE' /v Beta /t REG_DWORD /d 0xAB)",
        R"(add 'HKEY_LOCAL_MACHINE\SOFTWARE\Norvane' /v alpha /t reg_binary /d 0aff)",
        R"(ADD 'HKLM\SOFTWARE\Norvane' /D default)", R"(add 'HKLM\SOFTWARE\Norvane\another\deep')",
        R"(add 'HKCR\Other')"}) {
    EXPECT_EQ(Run(line), "") << line << errors_;
  }
  const std::string values =
      "HKEY_LOCAL_MACHINE\\SOFTWARE\\Norvane\n"
      "    (Default)    REG_SZ    default\n"
      "    alpha    REG_BINARY    0AFF\n"
      "    Beta    REG_DWORD    0xab\n"
      "HKEY_LOCAL_MACHINE\\SOFTWARE\\Norvane\\another\n";
  const std::string sub = "HKEY_LOCAL_MACHINE\\SOFTWARE\\Norvane\\Sub\n";
  EXPECT_EQ(Run(R"(query 'hklm\software\norvane')"), values + sub);
  EXPECT_EQ(Run(R"(query 'HKLM\SOFTWARE\Norvane' /s)"),
            values + "HKEY_LOCAL_MACHINE\\SOFTWARE\\Norvane\\another\\deep\n" + sub +
                "    x    REG_SZ    Grüße  an\n");
  EXPECT_EQ(Run(R"(query 'HKLM\software\norvane' /v BETA)"),
            "HKEY_LOCAL_MACHINE\\SOFTWARE\\Norvane\n    Beta    REG_DWORD    0xab\n");
  EXPECT_EQ(Run(R"(query 'HKLM\software\norvane' /v '')"),
            "HKEY_LOCAL_MACHINE\\SOFTWARE\\Norvane\n    (Default)    REG_SZ    default\n");
  EXPECT_EQ(Run(R"(query 'HKLM\software' /s /v X)"), sub + "    x    REG_SZ    Grüße  an\n");
  EXPECT_EQ(Run("query hkcr"), "HKEY_CLASSES_ROOT\nHKEY_CLASSES_ROOT\\Other\n");
}

TEST_F(RegtoolTest, DataSurvivesTheWayInAndOut) {
  const std::tuple<std::string, std::string, std::string> cases[] = {
      {"REG_SZ", "", ""},
      {"REG_EXPAND_SZ", "%x% \U0001F50A", "%x% \U0001F50A"},
      {"REG_MULTI_SZ", R"(one\0\0two\0)", R"(one\0\0two)"},
      {"REG_BINARY", "0000803f", "0000803F"},
      {"REG_DWORD", "4294967295", "0xffffffff"},
      {"REG_DWORD", "0X0010", "0x10"},
      {"REG_QWORD", "0xFFFFFFFFFFFFFFFF", "0xffffffffffffffff"},
      {"REG_NONE", "AB", "AB"}};
  for (const auto& [type, data, printed] : cases) {
    EXPECT_EQ(Run("add 'HKLM\\K' /f /v v /t " + type + " /d '" + data + "'"), "") << errors_;
    EXPECT_EQ(Data("v"), type + "    " + printed);
  }
}

TEST_F(RegtoolTest, AsksBeforeItOverwritesOrDeletes) {
  ASSERT_EQ(Run(R"(add 'HKLM\K' /v v /d first)"), "");
  EXPECT_EQ(Run(R"(add 'HKLM\K')"), "") << "an existing key is no question";
  for (const char* answer : {"", "no\n", "N\n", "maybe\n", "maybe\nno\nyes\n"}) {
    EXPECT_EQ(Run(R"(add 'HKLM\K' /v V /d second)", answer), kFailed);
    EXPECT_EQ(Run(R"(delete 'HKLM\K' /v v)", answer), kFailed);
    EXPECT_EQ(Run(R"(delete 'HKLM\K')", answer), kFailed);
    EXPECT_EQ(Data("v"), "REG_SZ    first");
  }
  EXPECT_EQ(Run(R"(add 'HKLM\K' /v V /d second)", "perhaps\nYes\n"), "");
  EXPECT_EQ(Data("v"), "REG_SZ    second");
  EXPECT_EQ(Run(R"(delete 'HKLM\K' /v V)", "y\n"), "");
  EXPECT_EQ(Data("v"), kFailed);
  EXPECT_EQ(Run(R"(add 'HKLM\K\below' /v w /d 1)"), "");
  EXPECT_EQ(Run(R"(delete 'HKLM\k' /f)"), "");
  EXPECT_EQ(Run("query HKLM /s"), "HKEY_LOCAL_MACHINE\n");
  root_ = "/dev/null/root";
  EXPECT_EQ(Run(R"(add 'HKLM\K' /v v /d 1)"), kFailed) << "a store that cannot be made";
}

}  // namespace
