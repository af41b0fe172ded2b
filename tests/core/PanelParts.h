#pragma once

#include <memory>

#include "mirror/MirrorCardView.h"
#include "mirror/MirrorContentView.h"
#include "mirror/MirrorResizeGrip.h"
#include "mirror/WindowMirrorHUDController.h"
#include "platform/Controls.h"

namespace vistrel {

/// What a person sees of a mirror: the views in its panel, told by their kinds and places.
struct PanelParts {
  std::shared_ptr<MirrorCardView> card;
  std::shared_ptr<MirrorContentView> content;
  std::shared_ptr<platform::View> titleBar;
  std::shared_ptr<platform::ImageView> brandIcon;
  std::shared_ptr<platform::View> liveDot;
  std::shared_ptr<platform::Label> titleLabel;
  std::shared_ptr<platform::Button> closeButton;
  std::shared_ptr<platform::Label> statusLabel;
  std::shared_ptr<MirrorResizeGrip> grip;
};

inline PanelParts partsOf(const WindowMirrorHUDController& mirror) {
  const auto card = std::dynamic_pointer_cast<MirrorCardView>(mirror.panel()->contentView());
  PanelParts parts{.card = card};
  const auto takeIf = [](auto& part, const std::shared_ptr<platform::View>& view) {
    const auto found =
        std::dynamic_pointer_cast<typename std::decay_t<decltype(part)>::element_type>(view);
    if (found) part = found;
    return found != nullptr;
  };
  for (const auto& view : card->subviews()) {
    if (takeIf(parts.content, view) || takeIf(parts.statusLabel, view)) continue;
    if (!takeIf(parts.grip, view)) parts.titleBar = view;
  }
  for (const auto& view : parts.titleBar->subviews()) {
    if (takeIf(parts.brandIcon, view) || takeIf(parts.titleLabel, view)) continue;
    if (!takeIf(parts.closeButton, view)) parts.liveDot = view;
  }
  return parts;
}

}  // namespace vistrel
