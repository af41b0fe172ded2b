#pragma once

#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "platform/linux/CurrentThread.h"
#include "platform/linux/PanelSurface.h"
#include "platform/linux/x11/panel/AwaitedChromes.h"
#include "platform/linux/x11/picture/Drawing.h"
#include "platform/linux/x11/picture/PictureStore.h"

namespace vistrel::platform::linux_desktop {

/// Draws one panel's window: background, picture and chrome are composed in a back pixmap, from
/// which the window is filled, so that nothing flickers. Lives on a queue with a connection; one at
/// a time draws a window.
class PanelPainter {
 public:
  /// `store` keeps the picture that the panel shows, and outlives this.
  PanelPainter(Connection& connection, PictureStore& store, xcb_window_t window);
  PanelPainter(const PanelPainter&) = delete;
  PanelPainter& operator=(const PanelPainter&) = delete;
  ~PanelPainter();

  xcb_window_t window() const { return window_; }
  bool showsPicture() const { return showsPicture_; }
  /// The one that was given last, whether shown or awaited; none before.
  std::optional<AwaitedChrome> newestChrome() const;
  void awaitChrome(AwaitedChrome chrome) { awaited_.add(std::move(chrome)); }
  /// The newest awaited chrome that the window has room for by now.
  std::optional<AwaitedChrome> takeNextChrome();
  /// One that was taken and could not be set is the next again.
  void putBack(AwaitedChrome chrome) { awaited_.putBack(std::move(chrome)); }
  /// False where the server has no memory for it: the former one stays.
  bool setChrome(std::shared_ptr<const PanelChrome> chrome);
  /// Whether anything of the window may be seen. Under a compositing manager the server tells of no
  /// window that another one covers; there panels alone cover a panel, as `CoveredPanels` says.
  bool isInSight() const { return isMapped_ && !isCovered_ && !liesUnderPanels_; }
  /// The size at which a picture of that size is shown; none when there is no room for one.
  std::optional<PixelSize> pictureSizeFor(PixelSize source) const;
  /// Takes notice that the store's picture has changed. The window shows it at the next `paint`.
  void pictureChanged(const PictureChanges& changes);
  void setShowsPicture(bool shows);
  /// Brings the window up to date.
  void paint();
  /// Where a compositing manager shows the window, draws all of it once more.
  void showAgain();
  void handle(const xcb_generic_event_t& event);

 private:
  void selectEvents();
  void followSight(const xcb_generic_event_t& event);
  /// False, and nothing has changed, where the server has no memory.
  bool makeCanvasesFor(const PanelChrome& chrome);
  void uploadRows(int first, int count);
  PixelRect pictureAreaFor(PixelSize source) const;
  void compose(const PixelRect& area);
  void composeBackground(const PixelRect& area);
  void composeChrome(const PixelRect& area);
  void composeCorners(const PixelRect& area);
  void copyToWindow(const PixelRect& area);
  void lookForCompositor();
  void outlineWindow();
  void clearBeside();
  void shapeWindow();
  bool hasSmoothCorners() const { return depth_ == 32 && composited_; }

  const OwnThread thread_;
  Connection& connection_;
  PictureStore& store_;
  const xcb_window_t window_;
  std::uint8_t depth_ = 24;
  xcb_render_pictformat_t format_ = XCB_NONE;
  GContext copying_;
  bool composited_ = false;
  PixelSize windowSize_;
  bool isMapped_ = false;
  bool isCovered_ = false;  // wholly, as the server tells
  bool liesUnderPanels_ = false;

  AwaitedChromes awaited_;
  std::shared_ptr<const PanelChrome> chrome_;
  std::vector<PixelRect> overlays_;  // disjoint
  Canvas chromeCanvas_;
  Canvas back_;
  Canvas cornerMask_;
  PixelRect pictureArea_;
  bool showsPicture_ = false;
  ChangedRects dirty_;  // what of the back pixmap is yet to be composed
  bool outlineChanged_ = false;
};

}  // namespace vistrel::platform::linux_desktop
