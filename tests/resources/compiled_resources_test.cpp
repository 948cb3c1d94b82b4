// What the program file holds beside its code, as the system reads it, against the tables.
#include <gtest/gtest.h>
#include <windows.h>

#include <filesystem>
#include <string>
#include <vector>

#include "platform/drawing.h"
#include "platform/resources.h"
#include "platform/startup.h"
#include "resources/templates.h"
#include "tests/support/files.h"

namespace resources {
namespace {

using platform::FindResourceData;
using platform::ResourceType;

// Dialogs and menu are what every other test of windows sees.
TEST(CompiledResources, TextsAreThoseOfTheTable) {
  for (const StringEntry& entry : kStringTable) {
    EXPECT_EQ(platform::LoadStringResource(entry.id), entry.text);
  }
}

TEST(CompiledResources, PicturesAreTheFilesOfTheArtwork) {
  const platform::DrawingSession session;
  int pictures = 0;
  for (const auto& entry :
       std::filesystem::directory_iterator(TONALYX_SOURCE_DIR "/resources/png")) {
    const int id = std::stoi(entry.path().stem().string());
    const auto bytes = FindResourceData(id == 132 ? ResourceType::Bitmap : ResourceType::Png,
                                        static_cast<std::uint16_t>(id));
    const auto* const first = reinterpret_cast<const char*>(bytes.data());
    EXPECT_EQ(std::string(first, bytes.size()), support::ReadFile(entry.path())) << id;
    ++pictures;
  }
  EXPECT_GT(pictures, 50);
  EXPECT_TRUE(FindResourceData(ResourceType::Png, 132).empty());
  EXPECT_TRUE(FindResourceData(ResourceType::Icon, 17).empty());
  const auto icon = platform::Bitmap::FromPng(FindResourceData(ResourceType::Icon, 16));
  ASSERT_TRUE(icon);
  EXPECT_EQ(icon->Width(), 256);
  for (const int side : {16, 24, 32, 48, 64}) {
    const auto loaded = static_cast<HICON>(LoadImageW(
        GetModuleHandleW(nullptr), MAKEINTRESOURCEW(16), IMAGE_ICON, side, side, LR_DEFAULTCOLOR));
    ICONINFO info{};
    ASSERT_TRUE(GetIconInfo(loaded, &info)) << side;
    BITMAP bitmap{};
    GetObjectW(info.hbmColor, sizeof(bitmap), &bitmap);
    EXPECT_EQ(bitmap.bmWidth, side);
  }
}

TEST(CompiledResources, VersionAndManifestAreTheProducts) {
  wchar_t file[MAX_PATH];
  GetModuleFileNameW(nullptr, file, MAX_PATH);
  std::vector<char> data(GetFileVersionInfoSizeW(file, nullptr));
  ASSERT_TRUE(GetFileVersionInfoW(file, 0, static_cast<DWORD>(data.size()), data.data()));
  wchar_t* text = nullptr;
  UINT length = 0;
  ASSERT_TRUE(VerQueryValueW(data.data(), L"\\StringFileInfo\\040904B0\\ProductVersion",
                             reinterpret_cast<void**>(&text), &length));
  EXPECT_EQ(std::wstring(text), TONALYX_VERSION);
  ACTCTX_SECTION_KEYED_DATA controls{};
  controls.cbSize = sizeof(controls);
  EXPECT_TRUE(FindActCtxSectionStringW(0, nullptr, ACTIVATION_CONTEXT_SECTION_DLL_REDIRECTION,
                                       L"comctl32.dll", &controls))
      << "the common controls are not those of version 6";
}

}  // namespace
}  // namespace resources
