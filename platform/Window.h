#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "platform/Backend.h"
#include "platform/Color.h"
#include "platform/Event.h"
#include "platform/Geometry.h"
#include "platform/Screen.h"
#include "platform/View.h"

namespace vistrel::platform {

/// Raw values are AppKit's NSWindowStyleMask.
enum StyleMask : std::uint64_t {
  styleBorderless = 0,
  styleTitled = 1,
  styleClosable = 2,
  styleMiniaturizable = 4,
  styleResizable = 8,
  styleNonactivatingPanel = 128,
};

/// Raw value is AppKit's NSBackingStoreType.
enum class BackingStore { buffered = 2 };

/// Raw values are AppKit's NSWindowLevel.
enum WindowLevel : int { levelNormal = 0, levelStatusBar = 25 };

/// Raw values are AppKit's NSWindowCollectionBehavior.
enum CollectionBehavior : std::uint64_t {
  behaviorDefault = 0,
  behaviorCanJoinAllSpaces = 1,
  behaviorFullScreenAuxiliary = 256,
};

enum class Appearance { inherited, darkAqua };

/// A window: its state, its tree of views, and the peer that the backend shows it with. Main
/// thread. Make windows with `makeOwnedByMain`.
class Window : public std::enable_shared_from_this<Window> {
 public:
  /// `contentRect` in screen space. The window is made hidden.
  Window(const Rect& contentRect, std::uint64_t styleMask, BackingStore backing, bool defer);
  Window(const Window&) = delete;
  Window& operator=(const Window&) = delete;
  virtual ~Window();

  virtual bool isPanel() const { return false; }
  virtual bool canBecomeKey() const { return (styleMask_ & styleTitled) != 0; }

  /// The whole window in screen space, as last asked for or as a person last made it. After an
  /// animated change it reads as final at once.
  const Rect& frame() const { return frame_; }
  void setFrame(const Rect& frame, Redisplay redisplay,
                FrameChange change = FrameChange::immediate);
  void setFrameOrigin(Point origin);
  /// Puts the window where the desktop centres windows, else in the middle of its screen.
  void center();

  std::uint64_t styleMask() const { return styleMask_; }
  BackingStore backing() const { return backing_; }
  const std::string& title() const { return title_; }
  void setTitle(std::string title);
  int level() const { return level_; }
  void setLevel(int level);
  std::uint64_t collectionBehavior() const { return collectionBehavior_; }
  void setCollectionBehavior(std::uint64_t behavior);
  bool hidesOnDeactivate() const { return hidesOnDeactivate_; }
  void setHidesOnDeactivate(bool hides);
  bool isOpaque() const { return opaque_; }
  void setOpaque(bool opaque);
  /// None for the desktop's own.
  const std::optional<Color>& backgroundColor() const { return backgroundColor_; }
  void setBackgroundColor(Color color);
  bool hasShadow() const { return hasShadow_; }
  void setHasShadow(bool hasShadow);
  bool isReleasedWhenClosed() const { return releasedWhenClosed_; }
  void setReleasedWhenClosed(bool released) { releasedWhenClosed_ = released; }
  Appearance appearance() const { return appearance_; }
  void setAppearance(Appearance appearance);
  /// Binds a person's resizing only, never a frame set by code.
  Size contentMinSize() const { return contentMinSize_; }
  void setContentMinSize(Size size);
  /// Takes on the frame saved under `name` by an earlier run, and keeps it saved from now on.
  void setFrameAutosaveName(std::string name);
  const std::string& frameAutosaveName() const { return frameAutosaveName_; }

  const std::shared_ptr<View>& contentView() const { return contentView_; }
  /// Sizes `view` to the window's content.
  void setContentView(std::shared_ptr<View> view);

  bool isVisible() const { return visible_; }
  /// Shows the window above its level without activating the program.
  void orderFrontRegardless();
  void makeKeyAndOrderFront();
  void orderOut();
  /// Hides the window for good, or until it is ordered front again where it is kept.
  void close();

  /// As by a person's click on the button in the title bar; nothing where there is no such button.
  void performMiniaturize();
  void performClose();
  /// Performs the command of that selector; false when a window knows none.
  bool tryToPerform(const std::string& selector);

  /// The screen that shows most of the window.
  std::optional<Screen> screen() const;
  /// Pixels per point of that screen, else of the main one.
  double backingScaleFactor() const;

  void layoutIfNeeded();
  /// Lays out at the next turn of the main queue.
  void setNeedsLayoutPass();

  /// Presses the first visible button with that key equivalent; false when there is none.
  bool performKeyEquivalent(const std::string& key);
  /// The cursor of the frontmost cursor rectangle at a point in the window.
  Cursor cursorAt(Point locationInWindow);
  /// The tooltip of the frontmost view that has one at a point in the window.
  std::string toolTipAt(Point locationInWindow);

  // For peers.

  /// The context menu for a `rightMouseDown`: that of the frontmost view under it, or of the
  /// nearest view around that which has one; null for none.
  std::shared_ptr<Menu> menuForEvent(const Event& event);
  /// An event of the left button: a press goes to the view under it, drags and release follow the
  /// press.
  void sendEvent(const Event& event);
  /// The desktop's word on where the window is. Ignored when it is the frame that was asked for,
  /// rounded to the desktop's pixels.
  void peerDidSetFrame(const Rect& frame);
  void peerDidChangeBackingProperties();
  /// A person closed the window, or the desktop took it away.
  void peerDidClose();
  WindowPeer* peer() const { return peer_.get(); }

 protected:
  enum class Kind { window, panel };
  Window(Kind kind, const Rect& contentRect, std::uint64_t styleMask, BackingStore backing,
         bool defer);

 private:
  void adoptFrame(const Rect& frame);

  Rect frame_;
  std::uint64_t styleMask_;
  BackingStore backing_;
  std::string title_;
  int level_ = levelNormal;
  std::uint64_t collectionBehavior_ = behaviorDefault;
  bool hidesOnDeactivate_ = false;
  bool opaque_ = true;
  std::optional<Color> backgroundColor_;
  bool hasShadow_ = true;
  bool releasedWhenClosed_ = true;
  Appearance appearance_ = Appearance::inherited;
  Size contentMinSize_;
  std::string frameAutosaveName_;
  bool visible_ = false;
  bool layoutPassScheduled_ = false;
  std::shared_ptr<View> contentView_;
  std::weak_ptr<View> pressedView_;
  std::unique_ptr<WindowPeer> peer_;
};

/// A window that floats above others and need not take the keyboard.
class Panel : public Window {
 public:
  Panel(const Rect& contentRect, std::uint64_t styleMask, BackingStore backing, bool defer);

  bool isPanel() const override { return true; }
  bool isFloatingPanel() const { return floating_; }
  void setFloatingPanel(bool floating);
  bool becomesKeyOnlyIfNeeded() const { return becomesKeyOnlyIfNeeded_; }
  void setBecomesKeyOnlyIfNeeded(bool onlyIfNeeded);

 private:
  bool floating_ = false;
  bool becomesKeyOnlyIfNeeded_ = false;
};

/// Owns one window. Main thread.
class WindowController {
 public:
  virtual ~WindowController() = default;
  const std::shared_ptr<Window>& window() const { return window_; }

 protected:
  void setWindow(std::shared_ptr<Window> window) { window_ = std::move(window); }

 private:
  std::shared_ptr<Window> window_;
};

}  // namespace vistrel::platform
