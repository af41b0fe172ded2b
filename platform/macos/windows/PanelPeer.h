#pragma once

#import <AppKit/AppKit.h>

#include <memory>
#include <optional>
#include <set>
#include <string>

#include "platform/Window.h"
#include "platform/macos/views/ViewTree.h"

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
  void frameDidChange(Redisplay redisplay, FrameChange change) override;
  void propertiesDidChange() override;
  void contentViewDidChange() override;
  void viewDidChange(View& view, ViewChange change) override;
  void orderFrontRegardless() override;
  void makeKeyAndOrderFront() override;
  void orderOut() override;
  void miniaturize() override;
  void close() override;
  std::optional<Rect> adoptAutosavedFrame(const std::string& name) override;

  // What the AppKit panel asks and tells.

  enum class Report { frame, backingProperties };

  bool canBecomeKey() const { return window_.canBecomeKey(); }
  /// Passed on to the window: at once, or, while the panel is being told something, which AppKit
  /// may answer from within the call (a frame that it corrected, a screen of another scale), at a
  /// later turn of the main queue.
  void panelDidReport(Report report);
  void panelWillClose();

 private:
  class Telling;

  void pass(Report report);
  void passPendingReports();

  Window& window_;
  VLPanel* panel_;
  ViewTree tree_;
  int tellingDepth_ = 0;
  std::set<Report> pendingReports_;
};

}  // namespace vistrel::platform::macos
