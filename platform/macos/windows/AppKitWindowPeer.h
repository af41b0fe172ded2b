#pragma once

#import <AppKit/AppKit.h>

#include <memory>
#include <optional>
#include <set>
#include <string>

#include "platform/Window.h"
#include "platform/macos/views/ViewTree.h"

@class VLWindowDelegate;

namespace vistrel::platform::macos {

/// Shows a `Window` of the core in an `NSWindow`, a `Panel` in an `NSPanel`. Main thread.
class AppKitWindowPeer final : public WindowPeer {
 public:
  AppKitWindowPeer(Window& window, bool isPanel);
  AppKitWindowPeer(const AppKitWindowPeer&) = delete;
  AppKitWindowPeer& operator=(const AppKitWindowPeer&) = delete;
  ~AppKitWindowPeer() override;

  /// The core's window that `shown` shows; null for none, or for a window that is not ours.
  static Window* windowShownBy(NSWindow* shown);

  Rect frameRectForContentRect(const Rect& contentRect) const override;
  Rect contentRectForFrameRect(const Rect& frame) const override;
  std::optional<Point> center() override;
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
  std::optional<int> selectedRow(const TableView& table) const override;

  // What AppKit asks and tells.

  enum class Report { frame, backingProperties };

  bool canBecomeKey() const { return window_.canBecomeKey(); }
  /// Passed on to the window: at once, or, while AppKit is being told something, which it may
  /// answer from within the call (a frame that it corrected, a screen of another scale), at a later
  /// turn of the main queue.
  void shownDidReport(Report report);
  void shownWillClose();

 private:
  class Telling;

  void pass(Report report);
  void passPendingReports();

  Window& window_;
  VLWindowDelegate* delegate_;
  NSWindow* shown_;
  /// The same window where it is a panel, else nil.
  NSPanel* panel_;
  ViewTree tree_;
  int tellingDepth_ = 0;
  std::set<Report> pendingReports_;
};

}  // namespace vistrel::platform::macos
