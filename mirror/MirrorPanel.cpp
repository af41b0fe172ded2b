#include "mirror/MirrorPanel.h"

#include "mirror/PanelLayout.h"

namespace vistrel {

std::shared_ptr<MirrorPanel> MirrorPanel::make(platform::Size contentSize) {
  auto panel = platform::makeOwnedByMain<MirrorPanel>(
      platform::Rect{{0, 0}, contentSize},
      platform::styleBorderless | platform::styleResizable | platform::styleNonactivatingPanel,
      platform::BackingStore::buffered, /*defer=*/false);
  panel->setFloatingPanel(true);
  panel->setBecomesKeyOnlyIfNeeded(true);
  panel->setLevel(platform::levelStatusBar);
  panel->setCollectionBehavior(platform::behaviorCanJoinAllSpaces |
                               platform::behaviorFullScreenAuxiliary);
  panel->setHidesOnDeactivate(false);
  panel->setOpaque(false);
  panel->setBackgroundColor(platform::Color::clear());
  panel->setHasShadow(true);
  panel->setReleasedWhenClosed(false);
  panel->setAppearance(platform::Appearance::darkAqua);
  panel->setContentMinSize(panelMinSize);
  return panel;
}

}  // namespace vistrel
