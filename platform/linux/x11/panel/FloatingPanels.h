#pragma once

#include <map>
#include <memory>

#include "platform/linux/SerialQueue.h"
#include "platform/linux/x11/panel/AskingLimit.h"
#include "platform/linux/x11/panel/CoveredPanels.h"
#include "platform/linux/x11/panel/FullScreenFollower.h"
#include "platform/linux/x11/panel/ManagersRest.h"
#include "platform/linux/x11/server/Connection.h"

namespace vistrel::platform::linux_desktop {

/// Sees to it that panels stay what `makeFloating` has made them, whatever their manager does
/// meanwhile:
///
/// - above the active window while that is full-screen. A manager may put such a window above those
///   that are merely kept above others (EWMH, "Stacking order"), yet below its own transients
///   (ICCCM `WM_TRANSIENT_FOR`): where one does, that is what panels are for as long as it lasts;
/// - above an active full-screen window that is none of the server's, which has no transients here;
/// - in the state that they were mapped in: the manager is asked for what has gone of it;
/// - without the keyboard: it goes back to whom a panel has got it from.
///
/// Those that lie wholly under others are marked.
class FloatingPanels {
 public:
  /// Works on `queue` for as long as that runs; null when the display refuses. Any thread.
  static std::shared_ptr<FloatingPanels> on(const std::shared_ptr<SerialQueue>& queue);

  /// Each time that `panel` is about to be mapped; counts until it is destroyed. On the queue.
  void add(xcb_window_t panel);
  /// Whether the active window is full-screen and may be none of the server's. On the queue.
  void setForeignFullScreen(bool isActive);

 private:
  FloatingPanels(SerialQueue& queue, std::unique_ptr<Connection> connection);

  /// Handles what has arrived.
  void serve();
  void handle(const xcb_generic_event_t& event);
  void changedProperty(const xcb_property_notify_event_t& event);
  void changedPanel(xcb_atom_t property);
  void wasMapped(xcb_window_t panel);
  void followActiveWindow();
  void followFullScreen(xcb_window_t former);
  void giveKeyboardBack();

  /// At what the manager has made of panels, once it has come to rest.
  void look();
  bool coversPanels(xcb_window_t fullScreen);
  void askAgain(xcb_window_t panel, AskingLimit& limit);
  void mapAnew(xcb_window_t panel, AskingLimit& limit);

  void riseAbove(xcb_window_t fullScreen);
  void attach(xcb_window_t panel);
  void detachAll();
  void restoreMinimised();

  std::unique_ptr<Connection> connection_;
  ManagersRest managersRest_;
  CoveredPanels covered_;
  std::map<xcb_window_t, AskingLimit> panels_;
  FullScreenFollower active_;             // the window that is, or was before a panel
  xcb_window_t owner_ = XCB_WINDOW_NONE;  // whose transients panels are
  bool areInItsLayer_ = false;            // instead of above others
  bool isForeignFullScreenActive_ = false;
  AskingLimit keyboardLimit_;
};

}  // namespace vistrel::platform::linux_desktop
