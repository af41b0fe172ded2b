#pragma once

#include <QTimer>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "platform/Window.h"
#include "platform/linux/ScreenLayout.h"
#include "platform/linux/qt/panel/KeyboardHolder.h"
#include "platform/linux/qt/panel/PanelWindow.h"
#include "platform/linux/qt/panel/RollAnimation.h"
#include "platform/linux/qt/space/QtSpace.h"
#include "platform/linux/qt/windows/NativeWindow.h"
#include "platform/linux/qt/windows/PeerHost.h"
#include "platform/linux/qt/windows/PlacedFrame.h"
#include "platform/linux/session/ContextMenuKeys.h"
#include "platform/linux/session/PanelWindows.h"
#include "platform/linux/session/SourceSituations.h"
#include "platform/linux/session/WindowActivation.h"

namespace vistrel::platform::linux_desktop {

/// Shows a borderless panel: one native window that never takes the focus, whose chrome is painted
/// from the view tree when it changes and composited with the picture by a `PanelSurface`.
class PanelPeer final : public HostedPeer {
 public:
  /// Of the session, for as long as the host is open.
  struct Providers {
    PanelWindows& windows;
    ContextMenuKeys& menuKeys;
    WindowActivation& activation;
    SourceSituations& situations;
    /// As `Session::mayHaveForeignWindows`.
    bool mayHaveForeignWindows = false;
    /// As `Session::confinesWindows`.
    bool confinesWindows = false;
  };

  PanelPeer(Window& window, std::shared_ptr<PeerHost> host, Providers providers);
  ~PanelPeer() override;

  void frameDidChange(Redisplay redisplay, FrameChange change) override;
  void propertiesDidChange() override;
  void contentViewDidChange() override;
  void viewDidChange(View& view, ViewChange change) override;
  void orderFrontRegardless() override;
  /// As `orderFrontRegardless`: a panel floats without the keyboard.
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

 private:
  void makeNative();
  void hasAppeared();
  void pointerEntered();
  void pointerIsOver(bool isOver);
  /// Calls `show` once the menu can be shown.
  void prepareForMenu(const QPoint& onDesktop, std::function<void()> show);
  void menuHasClosed();
  SourceSituation situationOfSource() const;
  void releaseNative();
  enum class Arrival { atOnce, rolling };

  void place(Arrival arrival = Arrival::atOnce);
  /// `frame` in global display space.
  void placeOn(const LaidOutMonitor& monitor, const Rect& frame, Arrival arrival = Arrival::atOnce);
  /// What is wanted now: the frame itself, or one on the way there.
  QRect due() const;
  /// From a frame that differs in its height alone; else it goes there at once.
  void roll(const QRect& from);
  void endRoll();
  void showRolled();
  /// How large the window is to be, and where.
  QRect room() const;
  void ask();
  void askFor(const QtPlace& place);
  /// As the toolkit has it, or will have once the desktop has done what was asked.
  QRect askedGeometry() const;
  void belongTo(const LaidOutMonitor& monitor);
  /// On the root, as the server has it; none when it does not tell.
  std::optional<PixelRect> placeOfNative() const;
  void nativeWasPlaced();
  /// Managers choose places for windows that appear, and grant others then: i3 4.22 shifts them by
  /// the title bar that it does not give them, each time; awesome 4.3 finds some where nothing is
  /// covered, a moment later. Asks once more for its own, once for each time that it appears.
  void insistOnPlace();
  void awaitLastAnswer();
  void believeDesktop();
  void adoptPlace(const QRect& place);
  void scheduleRepaint();
  void repaint();
  void paintAll();
  /// Paints by a member function. Where there is no memory for that, what is shown stays, and it is
  /// tried again later.
  void attempt(void (PanelPeer::*painting)());
  void showChrome(PanelChrome chrome);
  void showContents(std::shared_ptr<const Image> image);

  const Providers providers_;
  OwnedNative<PanelWindow> native_;
  std::unique_ptr<PanelSurface> surface_;  // goes before native_
  QRect wanted_;                           // the model's frame in pixels of the root window
  OwnedNative<KeyboardHolder> keyboardHolder_;
  PlacedFrame placed_;                    // of native_, in pixels of the root window
  QSize shownSize_;                       // in pixels; of what native_ shows
  LaidOutMonitor monitor_;                // by whose scale native_ is placed and drawn
  double toldBackingScale_ = 0;           // what the views know
  const Layer* contentsLayer_ = nullptr;  // compared, never followed
  std::shared_ptr<const Image> shownContents_;
  RollAnimation roll_{[this] { attempt(&PanelPeer::showRolled); }};
  std::shared_ptr<const PanelChrome> unrolled_;  // while `roll_` runs; it shows the top of it
  bool takesMenuKeys_ = false;
  bool isAppearing_ = false;
  bool insistsOnPlace_ = false;
  QTimer repaint_;     // runs out at the next turn of the event loop
  QTimer lastAnswer_;  // runs out when the desktop has said nothing for long
};

}  // namespace vistrel::platform::linux_desktop
