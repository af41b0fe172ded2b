#pragma once

#import <AppKit/AppKit.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "platform/Window.h"
#include "platform/macos/ViewTree.h"

@class VLPanel;

namespace vistrel::platform::macos {

/// Shows a `Panel` of the core in an `NSPanel`. Main thread.
class PanelPeer final : public WindowPeer {
 public:
  explicit PanelPeer(Window& window);
  PanelPeer(const PanelPeer&) = delete;
  PanelPeer& operator=(const PanelPeer&) = delete;
  ~PanelPeer() override;

  Rect frameRectForContentRect(const Rect& contentRect) const override;
  Rect contentRectForFrameRect(const Rect& frame) const override;
  void frameDidChange(bool display, bool animate) override;
  void propertiesDidChange() override;
  void contentViewDidChange() override;
  void viewDidChange(View& view, ViewChange change) override;
  void orderFrontRegardless() override;
  void makeKeyAndOrderFront() override;
  void orderOut() override;
  void close() override;
  std::optional<Rect> adoptAutosavedFrame(const std::string& name) override;

  // What the AppKit panel tells and asks.

  bool canBecomeKey() const { return window_.canBecomeKey(); }
  void panelDidChangeFrame();
  void panelDidChangeBackingProperties();
  void panelWillClose();

 private:
  class Telling;

  /// Tells the window, unless it is being made or destroyed; at a later turn of the main queue
  /// while the panel is itself being told something, which AppKit answers at once (a frame that it
  /// corrected, a screen of another scale).
  void tellWindow(std::function<void(Window&)> report);

  Window& window_;
  VLPanel* panel_;
  ViewTree tree_;
  int tellingDepth_ = 0;
};

}  // namespace vistrel::platform::macos
