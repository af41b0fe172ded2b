#include "platform/macos/windows/AppKitWindowPeer.h"

#include <utility>

#include "platform/Controls.h"
#include "platform/macos/Conversions.h"

using vistrel::platform::macos::AppKitWindowPeer;

NS_ASSUME_NONNULL_BEGIN

/// The delegate of a window on screen: tells the peer.
@interface VLWindowDelegate : NSObject <NSWindowDelegate>
/// Set by the peer, and cleared by it before it goes.
@property(nonatomic, nullable) AppKitWindowPeer* peer;
@end

/// The panel on screen.
@interface VLPanel : NSPanel
@end

NS_ASSUME_NONNULL_END

namespace {

/// Null for none, or for a window that no peer shows.
AppKitWindowPeer* peerOf(NSWindow* shown) {
  const id delegate = shown.delegate;
  if (![delegate isKindOfClass:VLWindowDelegate.class]) return nullptr;
  return static_cast<VLWindowDelegate*>(delegate).peer;
}

}  // namespace

@implementation VLWindowDelegate

- (void)windowDidMove:(NSNotification*)__unused notification {
  if (self.peer != nullptr) self.peer->shownDidReport(AppKitWindowPeer::Report::frame);
}

- (void)windowDidResize:(NSNotification*)__unused notification {
  if (self.peer != nullptr) self.peer->shownDidReport(AppKitWindowPeer::Report::frame);
}

- (void)windowDidChangeBackingProperties:(NSNotification*)__unused notification {
  if (self.peer != nullptr) self.peer->shownDidReport(AppKitWindowPeer::Report::backingProperties);
}

- (void)windowWillClose:(NSNotification*)__unused notification {
  if (self.peer != nullptr) self.peer->shownWillClose();
}

@end

@implementation VLPanel

- (BOOL)canBecomeKeyWindow {
  const AppKitWindowPeer* peer = peerOf(self);
  return peer != nullptr ? peer->canBecomeKey() : [super canBecomeKeyWindow];
}

@end

namespace vistrel::platform::macos {

namespace {

NSAppearance* nsAppearance(Appearance appearance) {
  return appearance == Appearance::darkAqua
             ? [NSAppearance appearanceNamed:NSAppearanceNameDarkAqua]
             : nil;
}

NSWindow* makeShown(const Window& window, bool isPanel) {
  const Class kind = isPanel ? VLPanel.class : NSWindow.class;
  NSWindow* shown =
      [[kind alloc] initWithContentRect:cgRect(window.frame())
                              styleMask:static_cast<NSWindowStyleMask>(window.styleMask())
                                backing:static_cast<NSBackingStoreType>(window.backing())
                                  defer:NO];
  // The peer owns it; AppKit must not release it a second time.
  shown.releasedWhenClosed = NO;
  return shown;
}

}  // namespace

/// While it lives, AppKit is being told something, and what it reports has to wait. Keeps the
/// window too: an animated resize runs an event loop, in which the window's last owner may go.
class AppKitWindowPeer::Telling {
 public:
  explicit Telling(AppKitWindowPeer& peer)
      : kept_(peer.window_.weak_from_this().lock()), peer_(peer) {
    ++peer_.tellingDepth_;
  }
  Telling(const Telling&) = delete;
  Telling& operator=(const Telling&) = delete;
  ~Telling() {
    if (--peer_.tellingDepth_ > 0 || peer_.pendingReports_.empty()) return;
    mainQueue().async([weak = std::weak_ptr(kept_), &peer = peer_] {
      if (const auto window = weak.lock()) peer.passPendingReports();
    });
  }

 private:
  std::shared_ptr<Window> kept_;
  AppKitWindowPeer& peer_;
};

AppKitWindowPeer::AppKitWindowPeer(Window& window, bool isPanel)
    : window_(window),
      delegate_([[VLWindowDelegate alloc] init]),
      shown_(makeShown(window, isPanel)),
      panel_(isPanel ? static_cast<NSPanel*>(shown_) : nil) {
  delegate_.peer = this;
  shown_.delegate = delegate_;
}

AppKitWindowPeer::~AppKitWindowPeer() {
  delegate_.peer = nullptr;
  [shown_ close];
}

Window* AppKitWindowPeer::windowShownBy(NSWindow* shown) {
  const AppKitWindowPeer* peer = peerOf(shown);
  return peer != nullptr ? &peer->window_ : nullptr;
}

Rect AppKitWindowPeer::frameRectForContentRect(const Rect& contentRect) const {
  return coreRect([shown_ frameRectForContentRect:cgRect(contentRect)]);
}

Rect AppKitWindowPeer::contentRectForFrameRect(const Rect& frame) const {
  return coreRect([shown_ contentRectForFrameRect:cgRect(frame)]);
}

std::optional<Point> AppKitWindowPeer::center() {
  const Telling telling(*this);
  [shown_ center];
  return corePoint(shown_.frame.origin);
}

void AppKitWindowPeer::frameDidChange(Redisplay redisplay, FrameChange change) {
  const Telling telling(*this);
  const Rect& frame = window_.frame();
  const bool displays = redisplay == Redisplay::atOnce;
  if (change == FrameChange::animated) {
    [shown_ setFrame:cgRect(frame) display:displays animate:YES];
  } else if (displays || frame.size != coreRect(shown_.frame).size) {
    [shown_ setFrame:cgRect(frame) display:displays];
  } else {
    [shown_ setFrameOrigin:cgPoint(frame.origin)];
  }
}

void AppKitWindowPeer::propertiesDidChange() {
  const Telling telling(*this);
  if (panel_ != nil) {
    const auto& panel = static_cast<const Panel&>(window_);
    panel_.floatingPanel = panel.isFloatingPanel();  // sets a level of its own: before the level
    panel_.becomesKeyOnlyIfNeeded = panel.becomesKeyOnlyIfNeeded();
  }
  shown_.level = window_.level();
  shown_.title = nsString(window_.title());
  shown_.collectionBehavior = static_cast<NSWindowCollectionBehavior>(window_.collectionBehavior());
  shown_.hidesOnDeactivate = window_.hidesOnDeactivate();
  shown_.opaque = window_.isOpaque();
  if (const auto& color = window_.backgroundColor()) shown_.backgroundColor = nsColor(*color);
  shown_.hasShadow = window_.hasShadow();
  shown_.appearance = nsAppearance(window_.appearance());
  shown_.contentMinSize = cgSize(window_.contentMinSize());
}

void AppKitWindowPeer::contentViewDidChange() {
  const Telling telling(*this);
  shown_.contentView = tree_.realize(*window_.contentView());
  const std::string label = window_.contentView()->accessibilityLabel();
  if (!label.empty()) shown_.accessibilityLabel = nsString(label);
}

void AppKitWindowPeer::viewDidChange(View& view, ViewChange change) {
  const Telling telling(*this);
  tree_.viewDidChange(view, change);
}

void AppKitWindowPeer::orderFrontRegardless() {
  const Telling telling(*this);
  [shown_ orderFrontRegardless];
}

void AppKitWindowPeer::makeKeyAndOrderFront() {
  const Telling telling(*this);
  [shown_ makeKeyAndOrderFront:nil];
}

void AppKitWindowPeer::orderOut() {
  const Telling telling(*this);
  [shown_ orderOut:nil];
}

void AppKitWindowPeer::miniaturize() {
  const Telling telling(*this);
  [shown_ miniaturize:nil];
}

void AppKitWindowPeer::close() {
  const Telling telling(*this);
  [shown_ close];
}

std::optional<Rect> AppKitWindowPeer::adoptAutosavedFrame(const std::string& name) {
  const Telling telling(*this);
  const bool restored = [shown_ setFrameUsingName:nsString(name)];
  [shown_ setFrameAutosaveName:nsString(name)];
  if (!restored) return std::nullopt;
  return coreRect(shown_.frame);
}

std::optional<int> AppKitWindowPeer::selectedRow(const TableView& table) const {
  NSTableView* realized = static_cast<NSTableView*>(tree_.realizedView(table));
  if (realized == nil) return std::nullopt;
  return static_cast<int>(realized.selectedRow);
}

void AppKitWindowPeer::shownDidReport(Report report) {
  if (tellingDepth_ > 0) {
    pendingReports_.insert(report);
  } else {
    pass(report);
  }
}

void AppKitWindowPeer::shownWillClose() {
  if (tellingDepth_ > 0) return;  // the core closed it
  if (const auto window = window_.weak_from_this().lock()) window->peerDidClose();
}

void AppKitWindowPeer::pass(Report report) {
  const auto window = window_.weak_from_this().lock();
  if (!window) return;  // being made or destroyed
  switch (report) {
    case Report::frame:
      return window->peerDidSetFrame(coreRect(shown_.frame));
    case Report::backingProperties:
      return window->peerDidChangeBackingProperties();
  }
}

void AppKitWindowPeer::passPendingReports() {
  if (tellingDepth_ > 0) return;  // in an event loop within a call, whose end asks for this again
  for (const Report report : std::exchange(pendingReports_, {})) pass(report);
}

}  // namespace vistrel::platform::macos
