// What the program file holds beside its code, as the system reads it, against the tables.
#include <gtest/gtest.h>
#include <windows.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "platform/drawing.h"
#include "platform/resources.h"
#include "platform/startup.h"
#include "resources/templates.h"

namespace resources {
namespace {

using platform::FindResourceData;
using platform::ResourceType;

std::vector<HWND> ChildrenOf(HWND window) {
  std::vector<HWND> children;
  for (HWND child = GetWindow(window, GW_CHILD); child != nullptr;
       child = GetWindow(child, GW_HWNDNEXT)) {
    children.push_back(child);
  }
  return children;
}

// All of it comes from the program's own tables; here the system finds some of it by number.
TEST(CompiledResources, DialogsMenuAndTextsAreThoseOfTheTables) {
  const HMODULE program = GetModuleHandleW(nullptr);
  for (const wchar_t* name : {L"POTENTIOMETER", L"FREQPLOT", L"PNGSLIDER"}) {
    WNDCLASSW custom{};
    custom.lpfnWndProc = &DefWindowProcW;
    custom.hInstance = program;
    custom.lpszClassName = name;
    ASSERT_NE(RegisterClassW(&custom), 0);
  }
  const struct {
    WORD id;
    std::size_t controls;
    int last;
    RECT lastPlace;  // with width and height
    DWORD style;
    DWORD extended;
  } dialogs[] = {{148, 0, 0, {}, WS_POPUP | WS_BORDER | WS_SYSMENU, WS_EX_LAYERED},
                 {102, 18, 2, {471, 7, 25, 19}, WS_POPUP | WS_BORDER, WS_EX_APPWINDOW},
                 {100, 3, 1, {140, 54, 50, 14}, DS_MODALFRAME | WS_CAPTION | WS_SYSMENU, 0}};
  for (const auto& d : dialogs) {
    const HWND dialog = CreateDialogParamW(
        program, MAKEINTRESOURCEW(d.id), nullptr,
        [](HWND, UINT, WPARAM, LPARAM) -> INT_PTR { return FALSE; }, 0);
    const std::vector<HWND> controls = ChildrenOf(dialog);
    ASSERT_EQ(controls.size(), d.controls) << d.id;
    EXPECT_EQ(static_cast<DWORD>(GetWindowLongW(dialog, GWL_STYLE)) & d.style, d.style) << d.id;
    EXPECT_EQ(static_cast<DWORD>(GetWindowLongW(dialog, GWL_EXSTYLE)) & d.extended, d.extended)
        << d.id;
    if (!controls.empty()) {
      RECT expected = d.lastPlace;
      MapDialogRect(dialog, &expected);
      RECT place{};
      GetWindowRect(controls.back(), &place);
      MapWindowPoints(nullptr, dialog, reinterpret_cast<POINT*>(&place), 2);
      EXPECT_EQ(GetDlgCtrlID(controls.back()), d.last);
      EXPECT_EQ(place.left, expected.left) << d.id;
      EXPECT_EQ(place.bottom - place.top, expected.bottom) << d.id;
    }
    DestroyWindow(dialog);
  }
  const HMENU menu = GetSubMenu(LoadMenuW(program, MAKEINTRESOURCEW(145)), 0);
  ASSERT_EQ(GetMenuItemCount(menu), 6);
  EXPECT_EQ(GetMenuItemID(menu, 3), kCommandRestore);
  for (const StringEntry& entry : kStringTable) {
    EXPECT_EQ(platform::LoadStringResource(entry.id), entry.text);
  }
}

std::vector<char> Contents(const std::filesystem::path& file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
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
    EXPECT_EQ(std::vector<char>(first, first + bytes.size()), Contents(entry.path())) << id;
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
  VS_FIXEDFILEINFO* fixed = nullptr;
  ASSERT_TRUE(VerQueryValueW(data.data(), L"\\", reinterpret_cast<void**>(&fixed), &length));
  EXPECT_EQ(std::to_wstring(HIWORD(fixed->dwFileVersionMS)) + L"." +
                std::to_wstring(LOWORD(fixed->dwFileVersionMS)) + L"." +
                std::to_wstring(HIWORD(fixed->dwFileVersionLS)),
            TONALYX_VERSION);

  wchar_t setting[16] = {};
  QueryActCtxSettingsW(0, nullptr, L"http://schemas.microsoft.com/SMI/2005/WindowsSettings",
                       L"dpiAware", setting, std::size(setting), nullptr);
  EXPECT_EQ(std::wstring(setting), L"true");
  ACTCTX_SECTION_KEYED_DATA controls{};
  controls.cbSize = sizeof(controls);
  EXPECT_TRUE(FindActCtxSectionStringW(0, nullptr, ACTIVATION_CONTEXT_SECTION_DLL_REDIRECTION,
                                       L"comctl32.dll", &controls))
      << "the common controls are not those of version 6";
}

}  // namespace
}  // namespace resources
