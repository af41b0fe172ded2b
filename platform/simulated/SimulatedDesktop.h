#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/Alert.h"
#include "platform/Backend.h"
#include "platform/Event.h"
#include "platform/simulated/CallJournal.h"
#include "platform/simulated/SimulatedWindowPeer.h"

namespace vistrel::platform::simulated {

/// Screens, the pointer, windows and alerts as a test sets them. Windows that are ordered in, out
/// and closed go into the journal, as in "Panel orderOut". Main thread.
///
/// Measures of controls, in points, with n code points of text at a font of p points: text is
/// n × p / 2 wide and p + 4 high; a bordered button adds 24 and 8 to its title at 13 points; a
/// symbol is as wide and high as its point size; tables have no size of their own.
class SimulatedDesktop : public WindowBackend {
 public:
  explicit SimulatedDesktop(CallJournal& journal);

  /// The first is the primary one, and is the main screen unless `setMainScreen` says otherwise.
  void setScreens(std::vector<Screen> screens);
  void setMainScreen(std::optional<Screen> screen);

  /// The frame that an earlier run saved, or this one has by now.
  std::optional<Rect> savedFrame(const std::string& autosaveName) const;
  void setSavedFrame(const std::string& autosaveName, const Rect& frame);

  /// Where the desktop puts windows that are to be centred; none unless set.
  std::optional<Point> centeredOrigin() const { return centeredOrigin_; }
  void setCenteredOrigin(Point origin) { centeredOrigin_ = origin; }

  /// The row that the desktop says is selected in its tables; none, unless set, leaves the
  /// selection to them.
  std::optional<int> selectedRow() const { return selectedRow_; }
  void setSelectedRow(int row) { selectedRow_ = row; }

  /// Every alert that was run, and what answers it (by default its closing: the last button).
  const std::vector<Alert>& alerts() const { return alerts_; }
  void setAlertAnswer(std::function<int(const Alert&)> answer) { alertAnswer_ = std::move(answer); }

  /// All windows that exist, the frontmost first; among those never ordered front, the oldest
  /// first.
  std::vector<Window*> windowsFrontToBack() const;
  /// Of a window that exists.
  std::shared_ptr<WindowHistory> historyOf(const Window& window) const;

  // What a person does. The pointer is in screen space.

  void moveMouse(Point location) { mouse_ = location; }
  void pressMouse(Window& window, int clickCount = 1, std::uint64_t modifiers = modifierNone);
  /// Moves the pointer while the button is down.
  void dragMouse(Window& window, Point location, std::uint64_t modifiers = modifierNone);
  void releaseMouse(Window& window, int clickCount = 1, std::uint64_t modifiers = modifierNone);
  /// Where the right button is clicked; null when there is no context menu.
  std::shared_ptr<Menu> clickRight(Window& window);
  void moveWindow(Window& window, const Rect& frame);
  void closeWindow(Window& window);
  /// Gives the keyboard to a window, or to another program.
  void setKeyWindow(Window* window) { keyWindow_ = window; }

  std::unique_ptr<WindowPeer> makePeer(Window& window, bool isPanel) override;
  std::vector<Screen> screens() override;
  std::optional<Screen> mainScreen() override;
  Window* keyWindow() override { return keyWindow_; }
  Point mouseLocation() override { return mouse_; }
  Size intrinsicContentSize(const Control& control) override;
  int runModal(const Alert& alert) override;

  // For peers.

  CallJournal& journal() { return journal_; }
  void peerWasMade(SimulatedWindowPeer& peer) { peers_.push_back(&peer); }
  void peerIsGoing(SimulatedWindowPeer& peer);
  void moveToFront(SimulatedWindowPeer& peer);
  void windowIsOffScreen(const Window& window);

 private:
  SimulatedWindowPeer& peerOf(const Window& window) const;
  Event mouseEvent(const Window& window, EventType type) const;
  void sendMouse(Window& window, EventType type, int clickCount, std::uint64_t modifiers);

  CallJournal& journal_;
  std::vector<Screen> screens_;
  std::optional<Screen> mainScreen_;
  Window* keyWindow_ = nullptr;
  Point mouse_;
  std::map<std::string, Rect> savedFrames_;
  std::optional<Point> centeredOrigin_;
  std::optional<int> selectedRow_;
  std::vector<Alert> alerts_;
  std::function<int(const Alert&)> alertAnswer_;
  std::vector<SimulatedWindowPeer*> peers_;  // front to back; each takes itself out as it goes
};

}  // namespace vistrel::platform::simulated
