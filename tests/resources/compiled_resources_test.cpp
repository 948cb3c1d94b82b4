// What the program file holds beside its code, as the system reads it, against the tables.
#include <gmock/gmock.h>
#include <windows.h>

#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "platform/drawing.h"
#include "platform/resources.h"
#include "platform/startup.h"
#include "platform/windows/wide_text.h"
#include "resources/templates.h"

namespace resources {
namespace {

using platform::FindResourceData;
using platform::ResourceType;

// Reads a dialog template: words, texts, and what is aligned to four bytes.
class TemplateReader {
 public:
  explicit TemplateReader(std::uint16_t id) {
    const HMODULE program = GetModuleHandleW(nullptr);
    const HRSRC found = FindResourceW(program, MAKEINTRESOURCEW(id), RT_DIALOG);
    if (found == nullptr) return;
    words_.resize(SizeofResource(program, found) / sizeof(std::uint16_t) + kBeyond);
    std::memcpy(words_.data(), LockResource(LoadResource(program, found)),
                SizeofResource(program, found));
  }

  std::uint16_t Word() { return words_.at(next_++); }
  std::int16_t Number() { return static_cast<std::int16_t>(Word()); }
  std::uint32_t Long() {
    const std::uint32_t low = Word();
    return low | static_cast<std::uint32_t>(Word()) << 16U;
  }
  // A number as "#16".
  std::u16string Text() {
    std::u16string text;
    for (char16_t unit = Word(); unit != 0; unit = Word()) {
      if (unit == 0xFFFF) return platform::FromWide(L"#" + std::to_wstring(Word()));
      text += unit;
    }
    return text;
  }
  void Align() { next_ += next_ % 2; }

 private:
  static constexpr std::size_t kBeyond = 2;
  std::vector<std::uint16_t> words_;
  std::size_t next_ = 0;
};

struct Kind {
  std::u16string windowClass;
  std::uint32_t style;
};
Kind KindOf(const DialogControl& control) {
  switch (control.kind) {
    case ControlKind::PushButton:
      return {u"#128", BS_PUSHBUTTON | WS_TABSTOP};
    case ControlKind::DefaultPushButton:
      return {u"#128", BS_DEFPUSHBUTTON | WS_TABSTOP};
    case ControlKind::CheckBox:
      return {u"#128", BS_AUTOCHECKBOX | WS_TABSTOP};
    case ControlKind::Text:
      return {u"#130", SS_LEFT};
    case ControlKind::Icon:
      return {u"STATIC", SS_ICON};  // which is 130
    case ControlKind::Custom:
      break;
  }
  return {std::u16string(control.windowClass), 0};
}

void ExpectControl(TemplateReader& reader, const DialogControl& control) {
  SCOPED_TRACE(control.id);
  reader.Align();
  EXPECT_EQ(reader.Long(), 0U) << "help";
  EXPECT_EQ(reader.Long(), 0U) << "extended style";
  const Kind kind = KindOf(control);
  const std::uint32_t kCounts = WS_TABSTOP | WS_CHILD | WS_VISIBLE | SS_TYPEMASK;
  EXPECT_EQ(reader.Long() & kCounts, kind.style | WS_CHILD | WS_VISIBLE);
  for (const std::int16_t number : {control.x, control.y, control.width, control.height}) {
    EXPECT_EQ(reader.Number(), number);
  }
  EXPECT_EQ(static_cast<std::uint16_t>(reader.Long()), control.id);
  EXPECT_EQ(reader.Text(), kind.windowClass);
  EXPECT_EQ(reader.Text(), control.kind == ControlKind::Icon
                               ? platform::FromWide(L"#" + std::to_wstring(control.icon))
                               : control.text);
  EXPECT_EQ(reader.Word(), 0U) << "data";
}

TEST(CompiledResources, DialogsAreThoseOfTheTables) {
  const struct {
    const DialogTemplate& table;
    std::uint32_t style;
    std::uint32_t extended;
  } dialogs[] = {
      {kMainTemplate, WS_POPUP | WS_BORDER | WS_SYSMENU, WS_EX_LAYERED},
      {kAdvancedTemplate, DS_CENTER | WS_POPUP | WS_BORDER | WS_SYSMENU, WS_EX_APPWINDOW},
      {kAboutTemplate, DS_MODALFRAME | WS_POPUP | WS_CAPTION | WS_SYSMENU, 0}};
  for (const auto& [table, style, extended] : dialogs) {
    SCOPED_TRACE(table.id);
    TemplateReader reader(table.id);
    EXPECT_EQ(reader.Long(), 0xFFFF0001U) << "the extended form";
    EXPECT_EQ(reader.Long(), 0U) << "help";
    EXPECT_EQ(reader.Long(), extended);
    EXPECT_EQ(reader.Long(), style | DS_SETFONT);
    ASSERT_EQ(reader.Word(), table.controls.size());
    EXPECT_EQ(reader.Long(), 0U) << "place";
    EXPECT_EQ(reader.Number(), table.width);
    EXPECT_EQ(reader.Number(), table.height);
    for (const std::u16string_view text : {std::u16string_view(), {}, table.title}) {
      EXPECT_EQ(reader.Text(), text);
    }
    EXPECT_EQ(reader.Number(), table.fontPoints);
    reader.Long();  // weight, slant and character set of the font
    EXPECT_EQ(reader.Text(), table.fontFamily);
    for (const DialogControl& control : table.controls) ExpectControl(reader, control);
  }
}

TEST(CompiledResources, MenuAndTextsAreThoseOfTheTables) {
  const HMENU menu = GetSubMenu(LoadMenuW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(145)), 0);
  ASSERT_EQ(GetMenuItemCount(menu), static_cast<int>(kAdvancedMenuItems.size()));
  for (int i = 0; const MenuItem& item : kAdvancedMenuItems) {
    wchar_t text[64] = {};
    GetMenuStringW(menu, static_cast<UINT>(i), text, static_cast<int>(std::size(text)),
                   MF_BYPOSITION);
    EXPECT_EQ(platform::FromWide(text), item.text);
    EXPECT_EQ(GetMenuItemID(menu, i), item.command);
    ++i;
  }
  std::size_t texts = 0;
  for (std::uint16_t id = 0; id < 1000; ++id) texts += !platform::LoadStringResource(id).empty();
  EXPECT_EQ(texts, kStringTable.size());
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
