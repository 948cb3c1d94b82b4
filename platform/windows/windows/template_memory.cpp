#include "platform/windows/windows/template_memory.h"

#include <string_view>
#include <utility>

#include "platform/windows/wide_text.h"

namespace platform {
namespace {

struct FrameStyle {
  DWORD style;
  DWORD extended;
};

FrameStyle StyleOf(DialogFrame frame) {
  constexpr DWORD kPopup = WS_POPUP | WS_CLIPCHILDREN | WS_SYSMENU | DS_SETFONT;
  switch (frame) {
    case DialogFrame::Layered:
      return {kPopup | WS_MINIMIZEBOX, WS_EX_LAYERED | WS_EX_APPWINDOW};
    case DialogFrame::Skinned:
      return {kPopup | WS_MINIMIZEBOX, WS_EX_APPWINDOW};
    case DialogFrame::Captioned:
      break;
  }
  return {kPopup | WS_CAPTION | DS_MODALFRAME, 0};
}

constexpr WORD kButtonClass = 0x0080;
constexpr WORD kStaticClass = 0x0082;

// One of the system's own classes by number, or a class by name where that is 0.
struct ControlClass {
  WORD number;
  DWORD style;
};

ControlClass ClassOf(ControlKind kind) {
  switch (kind) {
    case ControlKind::PushButton:
      return {kButtonClass, BS_PUSHBUTTON | WS_TABSTOP};
    case ControlKind::DefaultPushButton:
      return {kButtonClass, BS_DEFPUSHBUTTON | WS_TABSTOP};
    case ControlKind::CheckBox:
      return {kButtonClass, BS_AUTOCHECKBOX | WS_TABSTOP};
    case ControlKind::Text:
      return {kStaticClass, SS_LEFT};
    case ControlKind::Icon:
      return {kStaticClass, SS_ICON};
    case ControlKind::Custom:
      break;
  }
  return {0, 0};
}

class Writer {
 public:
  template <class Part>
  void Append(const Part& part) {
    const auto* words = reinterpret_cast<const WORD*>(&part);
    memory_.insert(memory_.end(), words, words + sizeof(part) / sizeof(WORD));
  }
  void AppendText(std::u16string_view text) {
    memory_.insert(memory_.end(), text.begin(), text.end());
    memory_.push_back(0);
  }
  void AppendNumber(WORD number) {
    memory_.push_back(0xFFFF);
    memory_.push_back(number);
  }
  // Each control begins at a double word.
  void Align() {
    if (memory_.size() % 2 != 0) memory_.push_back(0);
  }

  std::vector<WORD> Take() { return std::move(memory_); }

 private:
  std::vector<WORD> memory_;
};

void AppendControl(Writer& writer, const DialogControl& control, bool isDrawn) {
  auto [number, style] = ClassOf(control.kind);
  if (isDrawn && number == kButtonClass) style = BS_OWNERDRAW | WS_TABSTOP;
  writer.Align();
  writer.Append(DLGITEMTEMPLATE{style | WS_CHILD | WS_VISIBLE, 0, control.x, control.y,
                                control.width, control.height, control.id});
  if (number != 0) {
    writer.AppendNumber(number);
  } else {
    writer.AppendText(FromWide(CustomClassOf(control)));
  }
  if (control.kind == ControlKind::Icon) {
    writer.AppendNumber(control.icon);
  } else {
    writer.AppendText(control.text);
  }
  writer.Append(WORD{0});
}

}  // namespace

std::wstring CustomClassOf(const DialogControl& control) {
  return control.windowClass.empty() ? L"TONALYXCONTROL" : ToWide(control.windowClass);
}

std::vector<WORD> MakeTemplateMemory(const DialogTemplate& dialogTemplate,
                                     const std::function<bool(const DialogControl&)>& isDrawn) {
  Writer writer;
  const FrameStyle frame = StyleOf(dialogTemplate.frame);
  writer.Append(DLGTEMPLATE{frame.style, frame.extended,
                            static_cast<WORD>(dialogTemplate.controls.size()), 0, 0,
                            dialogTemplate.width, dialogTemplate.height});
  writer.AppendText({});  // no menu
  writer.AppendText({});  // the usual class
  writer.AppendText(dialogTemplate.title);
  writer.Append(static_cast<WORD>(dialogTemplate.fontPoints));
  writer.AppendText(dialogTemplate.fontFamily);
  for (const DialogControl& control : dialogTemplate.controls) {
    AppendControl(writer, control, isDrawn(control));
  }
  return writer.Take();
}

}  // namespace platform
