#pragma once

#include <QTimer>
#include <memory>
#include <optional>
#include <string>

#include "platform/Window.h"
#include "platform/linux/PixelRect.h"
#include "platform/linux/qt/widgets/TitledWindow.h"
#include "platform/linux/qt/windows/NativeWindow.h"
#include "platform/linux/qt/windows/PeerHost.h"
#include "platform/linux/qt/windows/PlacedFrame.h"

namespace vistrel::platform::linux_desktop {

/// Shows an ordinary window with real widgets. Its frame is the area inside the decoration that the
/// window manager adds; the bar of menus is a part of the frame, not of the content.
class TitledPeer final : public HostedPeer {
 public:
  /// `notice` stands under the window's list; an empty one is none.
  TitledPeer(Window& window, std::shared_ptr<PeerHost> host, std::string notice);
  ~TitledPeer() override;

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
  bool hasKeyboard() const override;
  void hideWithProgram() override;
  void showWithProgram() override;
  void retire() override;
  void screensDidChange() override;
  void saveFrame() override;

 private:
  void makeNative();
  void releaseNative();
  void show();
  void place();
  QRect askedGeometry() const;
  QSize minimumSize() const;
  void nativeWasPlaced();
  PixelRect placeOfNative() const;
  void adoptPlace(bool keepingSize);
  void scaleDidChange();
  void settleSoon();
  /// Gives the window back its size in points, and brings it back into view.
  void settle();
  void nativeWasClosed();
  void scheduleUpdate(ViewChange change);
  void update();
  void saveFrameSoon();
  void writeFrame();

  const std::string notice_;
  OwnedNative<TitledWindow> native_;
  PlacedFrame placed_;  // of native_, in pixels of the root window
  QTimer saving_;
  QTimer settling_;  // runs out some time after the last change of scale or screens
  int settlingsLeft_ = 0;
  QTimer update_;  // runs out at the next turn of the event loop
  struct {
    bool hierarchy = false;
    bool appearance = false;
    bool rows = false;
  } pending_;
};

}  // namespace vistrel::platform::linux_desktop
