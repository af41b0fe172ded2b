#pragma once

#include "mirror/PanelLayout.h"
#include "platform/View.h"

namespace vistrel {

/// The handle in a panel's bottom-right corner. Resizing keeps the panel's top-left corner and not
/// its aspect; the picture is letter-boxed instead.
class MirrorResizeGrip : public platform::View {
 public:
  explicit MirrorResizeGrip(const platform::Rect& frame = {});

  /// The smallest panel frame that a resize may make.
  platform::Size minSize() const { return minSize_; }

  /// A crosshair, since no resize cursor tells that only this corner moves.
  void resetCursorRects() override;
  void draw(platform::GraphicsContext& context) override;
  void mouseDown(const platform::Event& event) override;
  void mouseDragged(const platform::Event& event) override;
  /// Keeps the release of its own press from the card, which would take it for a click of its own.
  void mouseUp(const platform::Event& event) override;
  /// For those who cannot drag: a step larger and a step smaller.
  std::vector<platform::AccessibilityAction> accessibilityActions() const override;
  void accessibilityPerform(platform::AccessibilityAction action) override;

 private:
  /// Makes the panel that wider (to the right) and taller (downwards) than it was at `start`.
  void resizePanel(const platform::Rect& start, double wider, double taller);

  const platform::Size minSize_ = panelMinSize;
  platform::Point startMouse_;  // screen space
  platform::Rect startFrame_;   // screen space
};

}  // namespace vistrel
