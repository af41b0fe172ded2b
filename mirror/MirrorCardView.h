#pragma once

#include <functional>
#include <memory>

#include "platform/View.h"

namespace vistrel {

/// A panel's content view: holds everything else, drags the panel, and tells its owner of
/// double-clicks, layout passes and context menus through callbacks that know nothing of a mirror.
class MirrorCardView : public platform::View {
 public:
  using View::View;

  /// A double-click that was no drag.
  std::function<void()> onDoubleClick;
  /// After each layout pass.
  std::function<void()> onLayout;
  /// Supplies the context menu; may answer none.
  std::function<std::shared_ptr<platform::Menu>()> menuProvider;
  /// Adjusts the panel frame that a drag proposes (screen space); its size is ignored.
  std::function<platform::Rect(const platform::Rect& proposed)> snap;

  bool isFlipped() const override { return true; }
  void layout() override;
  std::shared_ptr<platform::Menu> menuForEvent(const platform::Event& event) override;
  void mouseDown(const platform::Event& event) override;
  void mouseDragged(const platform::Event& event) override;
  void mouseUp(const platform::Event& event) override;

 private:
  platform::Point downMouse_;   // screen space
  platform::Point downOrigin_;  // screen space
  bool dragged_ = false;
};

}  // namespace vistrel
