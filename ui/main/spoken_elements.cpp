#include "ui/main/spoken_elements.h"

#include <string>

#include "ui/main/davrin_skin.h"
#include "ui/main/skin_canvas.h"
#include "ui/main/standard_skin.h"

namespace ui {

using platform::AccessibleChange;
using platform::AccessibleCheck;
using platform::AccessibleInfo;
using platform::AccessibleRole;
using platform::AccessibleVisibility;

namespace {

std::u16string NameOf(Element element, Skin skin) {
  switch (element) {
    case Element::Minimize:
      return u"Minimize";
    case Element::Close:
      return u"Close";
    case Element::Done:
      return u"Done";
    case Element::Advanced:
      return u"Advanced";
    case Element::MakerLogo:
      return u"Norvane web site";
    case Element::None:
      return {};
  }
  const auto mode = static_cast<std::int32_t>(element);
  return skin == Skin::Standard ? StandardModeName(mode) : std::u16string(DavrinModeName(mode));
}

AccessibleRole RoleOf(Element element) {
  if (IsMode(element)) return AccessibleRole::RadioButton;
  return element == Element::MakerLogo ? AccessibleRole::Link : AccessibleRole::PushButton;
}

AccessibleVisibility VisibilityOf(const platform::Rect& area) {
  const bool empty = area.Width() == 0 && area.Height() == 0;
  return empty ? AccessibleVisibility::Hidden : AccessibleVisibility::Shown;
}

}  // namespace

// The rows of modes from left to right, then what one does with the window.
SpokenElements::SpokenElements(Skin skin, bool threeGuiLayers) : skin_(skin) {
  for (std::int32_t mode = 0; mode < kModeCount; ++mode) elements_.push_back(ModeElement(mode));
  if (threeGuiLayers) elements_.push_back(Element::Advanced);
  elements_.push_back(Element::MakerLogo);
  if (skin == Skin::Standard) elements_.push_back(Element::Done);
  elements_.push_back(Element::Minimize);
  elements_.push_back(Element::Close);
}

Element SpokenElements::At(std::int32_t part) const {
  const bool isElement = part >= 1 && part < WarningPart();
  return isElement ? elements_[static_cast<std::size_t>(part) - 1] : Element::None;
}

AccessibleInfo SpokenElements::Describe(std::int32_t part, const MainScene& scene,
                                        const SkinComposer& composer) const {
  AccessibleInfo info;
  if (part == WarningPart()) {
    info.role = AccessibleRole::Alert;
    info.name = kWarningText;
    info.area = composer.WarningArea();
    info.visibility = VisibilityOf(info.area);
    return info;
  }
  const Element element = At(part);
  if (element == Element::None) return info;
  info.role = RoleOf(element);
  info.name = NameOf(element, skin_);
  info.area = composer.Layout().Area(element, composer.AdvancedBox());
  info.visibility = VisibilityOf(info.area);
  if (IsMode(element)) {
    const bool selected = ModeElement(scene.selectedMode) == element;
    info.check = selected ? AccessibleCheck::Checked : AccessibleCheck::Unchecked;
  }
  return info;
}

void SpokenElements::Announce(const platform::Window& window, const MainScene& scene) {
  if (scene.selectedMode != selectedMode_) {
    const std::int32_t before = selectedMode_;
    selectedMode_ = scene.selectedMode;
    // The modes are the first parts.
    for (const std::int32_t mode : {before, selectedMode_}) {
      if (IsMode(ModeElement(mode))) NotifyAccessible(window, AccessibleChange::Check, mode + 1);
    }
  }
  if (scene.endpointWarning != warning_) {
    warning_ = scene.endpointWarning;
    NotifyAccessible(window, AccessibleChange::Visibility, WarningPart());
  }
}

}  // namespace ui
