#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "mirror/CaptureSize.h"
#include "mirror/MirrorHost.h"
#include "mirror/MirrorPanel.h"
#include "mirror/PanelViews.h"
#include "mirror/StreamOutput.h"
#include "parking/VirtualDisplayHost.h"
#include "platform/AccessibilityElement.h"
#include "platform/Dispatch.h"
#include "platform/Guarded.h"
#include "platform/Image.h"
#include "platform/Menu.h"
#include "platform/ScreenCapture.h"

namespace vistrel {

/// One mirror: the floating panel that shows one window of another program, the views in it, and
/// the stream that feeds it. Lives on the main thread; only `handleSample` and the answers of the
/// capture service run elsewhere. Views, callbacks, timer and stream hold it weakly, so whoever
/// keeps it decides how long it lives. Once closed it counts as gone, whoever still holds it: its
/// commands do nothing, and answers and frames that arrive start and show nothing.
class WindowMirrorHUDController : public platform::RepresentedObject,
                                  public std::enable_shared_from_this<WindowMirrorHUDController> {
 public:
  /// Told the source's window number when a person closes the mirror.
  using OnClosed = std::function<void(platform::WindowID windowID)>;

  WindowMirrorHUDController() = delete;
  WindowMirrorHUDController(const WindowMirrorHUDController&) = delete;
  WindowMirrorHUDController& operator=(const WindowMirrorHUDController&) = delete;

  /// Builds the panel of a mirror of `window` and places it, hidden and without capture. `cascade`
  /// is how many mirrors are open already; `host` may go before the mirror does, or be none.
  static std::shared_ptr<WindowMirrorHUDController> make(const platform::WindowRecord& window,
                                                         int cascade, OnClosed onClosed,
                                                         std::weak_ptr<MirrorHost> host = {});

  /// Orders the panel in without activating the program, and starts capture and the freshness
  /// timer.
  void show();
  /// Stops everything and closes the panel, for good. Does not call `onClosed`.
  void close();
  /// Lays out the views for the card's size.
  void relayout();

  // Commands.

  /// Unrolls the panel and brings it to the front, without activating the program.
  void bringForward();
  /// Flips between the full panel and its title bar alone; the top edge stays.
  void toggleRollUp();
  void toggleRollUpMenu();
  /// Sizes the panel to a fraction of the source's size, unrolled; the top edge stays.
  void setScale(double factor);
  /// The item's tag is the percentage.
  void scaleFromMenu(const platform::MenuItem& sender);
  /// Starts capture anew.
  void recaptureMenu();
  /// Parks the source's window where a person does not see it but it still draws, on a hidden
  /// display or else in the main screen's corner; or puts it back. Parking needs the permission for
  /// Accessibility, and asks for it.
  void toggleKeepAwake();
  void toggleKeepAwakeMenu();
  /// Brings the source's program to the front, with all its windows.
  void activateSource();
  /// Closes the mirror as a person's command: `close`, then `onClosed`.
  void closeClicked();
  /// Closes every mirror.
  void hideAllMenu();
  /// The commands above; a new menu each time.
  std::shared_ptr<platform::Menu> makeContextMenu();
  /// Shows a text over the picture, and a red dot, until the next frame.
  void showStatus(const std::string& text);
  /// Shows it, and takes it away after a while if there is a picture by then.
  void flashStatus(const std::string& text);

  // Capture.

  /// Looks the source up and starts its stream. Stops no stream that runs: see `stopCapture`.
  void startCapture();
  void stopCapture();
  /// Shows a sample unless it is incomplete, or black while a picture is shown. On `sampleQueue`.
  void handleSample(const platform::SampleBuffer& sample);
  /// Turns the dot amber once frames have ceased.
  void tickFreshness();
  /// Lets the capture size follow a panel that has grown.
  void updateCaptureResolutionIfNeeded();

  // What others know of it.

  platform::WindowID windowID() const { return windowID_; }
  /// What a list of mirrors calls this one: application, dash, title.
  std::string displayName() const;
  /// What the desktop leaves free of the screen that the panel is on. Screen space.
  platform::Rect visibleArea() const;
  const std::shared_ptr<MirrorPanel>& panel() const { return panel_; }

 private:
  friend class MirrorInsides;  // which tests look at

  WindowMirrorHUDController(const platform::ShareableWindow& window, OnClosed onClosed,
                            std::weak_ptr<MirrorHost> host);

  /// Any thread.
  bool isClosed() const { return closed_.load(); }
  /// The mirror unless it is gone or closed. Any thread.
  static std::shared_ptr<WindowMirrorHUDController> ifOpen(
      const std::weak_ptr<WindowMirrorHUDController>& mirror);

  void connectViews();
  void connectCard();
  void positionInitially(int cascade);
  std::shared_ptr<platform::Menu> makeScaleMenu();
  platform::Rect snapped(const platform::Rect& proposed) const;

  void park(std::shared_ptr<platform::AccessibilityElement> window);
  void restoreParkedWindow();

  void receiveShareableContent(const platform::ShareableContent* content, double backingScale);
  void startStream(const platform::WindowRecord& source, CaptureSize size);
  void streamDidStart(const std::optional<platform::Error>& error);
  void showStatusOnMain(std::string text);
  void showFrame(std::shared_ptr<const platform::Image> image);

  const platform::WindowID windowID_;
  const std::string sourceTitle_;
  const std::string appName_;
  const std::int32_t sourcePID_;  // -1 when unknown
  const OnClosed onClosed_;
  const std::weak_ptr<MirrorHost> host_;
  const platform::Size sourcePointSize_;  // each side at least 1
  const double aspect_;                   // the source's width over its height
  const std::shared_ptr<MirrorPanel> panel_;
  PanelViews views_;
  const std::shared_ptr<platform::DispatchQueue> sampleQueue_;
  const std::shared_ptr<platform::ImageContext> ciContext_;  // on sampleQueue_ alone
  bool rolledUp_ = false;
  std::optional<platform::Rect> frameBeforeRollUp_;
  platform::Date lastFrameAt_ = platform::Date::distantPast();
  std::shared_ptr<platform::Timer> freshnessTimer_;

  // Parking.
  bool keepAwake_ = false;  // whether the source's window is parked
  std::shared_ptr<platform::AccessibilityElement> parkedWindow_;
  /// Where it was before; none when that could not be read. Global display space.
  std::optional<platform::Point> savedOrigin_;
  /// The display that it is parked on; null where it is parked in the corner.
  std::unique_ptr<VirtualDisplayHost> virtualHost_;

  std::atomic<bool> closed_ = false;  // set on main

  // Stored by the capture service's answer, or on main, and read on main; `lastImage_` is stored on
  // main and read on sampleQueue_.
  platform::Guarded<std::shared_ptr<platform::Stream>> stream_;
  platform::Guarded<std::shared_ptr<StreamOutput>> streamOutput_;
  platform::Guarded<CaptureSize> captureSize_;
  platform::Guarded<std::shared_ptr<const platform::Image>> lastImage_;
};

}  // namespace vistrel
