#pragma once

#include <memory>
#include <optional>
#include <vector>
#include <xcb/xfixes.h>

#include "platform/linux/x11/picture/LivePicture.h"
#include "platform/linux/x11/picture/PictureStore.h"
#include "platform/linux/x11/server/Connection.h"
#include "platform/linux/x11/server/Resources.h"
#include "platform/linux/x11/source/Subwindows.h"

namespace vistrel::platform::linux_desktop {

/// A window that is being captured: watches it, has the server keep its picture whole wherever the
/// window is and whatever lies over it, and collects what changes in it. Captured is the frame that
/// the window manager made around the client's window, cut to what a person sees as the window.
class SourceWindow {
 public:
  /// Null when there is no such window.
  static std::unique_ptr<SourceWindow> open(Connection& connection, xcb_window_t client);
  SourceWindow(const SourceWindow&) = delete;
  SourceWindow& operator=(const SourceWindow&) = delete;
  ~SourceWindow();

  xcb_window_t client() const { return client_; }
  /// Listens to the window and takes its picture anew, as if it had just been opened.
  void renew();
  void handle(const xcb_generic_event_t& event);
  /// Follows what the events told. To be called once they have all been handled.
  void refresh();

  bool isGone() const { return gone_; }
  /// False where the server had no memory for the window's picture; `refresh` tries again.
  bool hasRoom() const { return hasRoom_; }
  /// Whether the client draws into the picture; a window that is minimised or on another desktop
  /// does not.
  bool isViewable() const { return viewable_; }
  /// Whether something has changed since `askForChanges`, as far as events tell.
  bool hasChanges() const { return hasDamage_ || hasNewPicture_; }
  /// Whether the client has lost some of the windows inside its own since this was last asked.
  bool takeLoss() { return subwindows_.takeLoss(); }
  /// Whether an event that is yet to be handled tells of that.
  bool isAboutToTellOfLoss() {
    return connection_.hasRead([this](const auto& event) { return subwindows_.isLoss(event); });
  }
  /// The window's picture; null until the window has been viewable. Another one after each change
  /// of size.
  const std::shared_ptr<const LivePicture>& picture() const { return picture_; }
  /// Asks the server what has changed so far. It need not be waited for before it is needed.
  void askForChanges();
  /// What had changed when it was last asked for, and is not taken yet.
  PictureChanges takeChanges();

  /// The child of the root that holds the client.
  xcb_window_t frame() const { return frame_; }
  /// What lies there on the root, in pixels of the picture.
  PixelRect inPicture(const PixelRect& onRoot) const;

 private:
  SourceWindow(Connection& connection, xcb_window_t client);

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
  bool viewable_ = false;
  bool gone_ = false;
  bool hasRoom_ = true;
  bool moved_ = true;    // the client may be in another frame
  bool renamed_ = true;  // the picture has to be named again
};

}  // namespace vistrel::platform::linux_desktop
