#pragma once

#include <memory>
#include <optional>
#include <utility>
#include <vector>
#include <xcb/xfixes.h>

#include "platform/linux/x11/picture/SampleGrid.h"
#include "platform/linux/x11/server/Resources.h"
#include "platform/linux/x11/source/CaptureSource.h"
#include "platform/linux/x11/source/CursorOverlay.h"
#include "platform/linux/x11/source/Subwindows.h"

namespace vistrel::platform::linux_desktop {

/// A window of the display server as a source: watches it, has the server keep its picture whole
/// wherever the window is and whatever lies over it, and collects what changes in it. Captured is
/// the frame that the window manager made around the client's window, cut to what a person sees as
/// the window.
class SourceWindow final : public CaptureSource {
 public:
  /// Null when there is no such window.
  static std::unique_ptr<SourceWindow> open(Connection& connection, xcb_window_t client);
  ~SourceWindow() override;

  WindowID window() const override { return client_; }
  void rest() override;
  void renew() override;
  void handle(const xcb_generic_event_t& event) override;
  void refresh() override;

  bool isGone() const override { return gone_; }
  bool hasRoom() const override { return hasRoom_; }
  /// A window that is minimised or on another desktop is not.
  bool isViewable() const override { return viewable_; }
  bool hasChanges() const override { return hasDamage_ || hasNewPicture_; }
  /// Its parts are the windows inside the client's own.
  bool takeLoss() override { return subwindows_.takeLoss(); }
  bool isAboutToTellOfLoss() override {
    return connection_.hasRead([this](const auto& event) { return subwindows_.isLoss(event); });
  }
  const std::shared_ptr<const LivePicture>& picture() const override { return picture_; }
  void askForChanges() override;
  PictureChanges takeChanges() override;
  bool visitSampleGrid(int rows, int columns, const std::function<bool(PixelBGRA)>& visit) override;

  bool takePointerNews() override { return std::exchange(hasPointerNews_, false); }
  bool isPointerFollowed() const override { return cursor_ && cursor_->isFollowing(); }
  void askForPointer() override { cursor().askForPlace(); }
  bool isPointerAsked() const override { return cursor_ && cursor_->isAsked(); }
  CursorMark pointerMark() override { return cursor().markOver(*this); }

  /// The child of the root that holds the client.
  xcb_window_t frame() const { return frame_; }
  /// What lies there on the root, in pixels of the picture.
  PixelRect inPicture(const PixelRect& onRoot) const;

 private:
  SourceWindow(Connection& connection, xcb_window_t client);

  CursorOverlay& cursor();
  bool watchClient();
  void attachToFrame();
  xcb_void_cookie_t listenToFrame();
  /// False when the frame is gone, or cannot be captured.
  bool watchFrame();
  void releaseFrame();
  void configured(const xcb_configure_notify_event_t& event);
  void changedProperty(const xcb_property_notify_event_t& event);
  void nameAgain();
  std::shared_ptr<const LivePicture> namePicture();
  /// Traces why there is no picture; null.
  std::shared_ptr<const LivePicture> unnamed(const char* reason) const;
  /// None while the window is rolled up to its title bar.
  std::optional<PixelRect> visibleInFrame() const;
  std::vector<PixelRect> outsideShape(const PixelRect& crop) const;
  PixelRect inCrop(const PixelRect& inFrame, const PixelRect& crop) const;
  void collectDamage();

  Connection& connection_;
  const xcb_window_t client_;
  Subwindows subwindows_;
  std::optional<CursorOverlay> cursor_;  // none while nobody has asked for it
  std::optional<SampleGrid> grid_;
  xcb_window_t frame_ = XCB_NONE;
  Damage damage_;
  Region region_;
  std::shared_ptr<const LivePicture> picture_;
  PictureChanges changes_;
  std::optional<Pending<xcb_xfixes_fetch_region_reply, xcb_xfixes_fetch_region_cookie_t>> asked_;
  PixelRect frameGeometry_;
  int frameBorder_ = 0;
  bool hasDamage_ = false;
  bool hasNewPicture_ = false;
  bool hasPointerNews_ = false;
  bool viewable_ = false;
  bool gone_ = false;
  bool hasRoom_ = true;
  bool moved_ = true;    // the client may be in another frame
  bool renamed_ = true;  // the picture has to be named again
};

/// Opens windows of the display server.
std::unique_ptr<CaptureSource> openSourceWindow(const CapturingMirror& mirror, WindowID window);

}  // namespace vistrel::platform::linux_desktop
