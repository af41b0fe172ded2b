#include "platform/macos/windows/PanelPeer.h"

#include <utility>

#include "platform/macos/Conversions.h"

using vistrel::platform::macos::PanelPeer;

NS_ASSUME_NONNULL_BEGIN

/// The panel on screen, and its own delegate.
@interface VLPanel : NSPanel <NSWindowDelegate>
/// Set by the peer, and cleared by it before it goes.
@property(nonatomic, nullable) PanelPeer* peer;
@end

NS_ASSUME_NONNULL_END

@implementation VLPanel

- (BOOL)canBecomeKeyWindow {
  return self.peer != nullptr ? self.peer->canBecomeKey() : [super canBecomeKeyWindow];
}

- (void)windowDidMove:(NSNotification*)__unused notification {
  if (self.peer != nullptr) self.peer->panelDidReport(PanelPeer::Report::frame);
}

- (void)windowDidResize:(NSNotification*)__unused notification {
  if (self.peer != nullptr) self.peer->panelDidReport(PanelPeer::Report::frame);
}

- (void)windowDidChangeBackingProperties:(NSNotification*)__unused notification {
  if (self.peer != nullptr) self.peer->panelDidReport(PanelPeer::Report::backingProperties);
}

- (void)windowWillClose:(NSNotification*)__unused notification {
  if (self.peer != nullptr) self.peer->panelWillClose();
}

@end

namespace vistrel::platform::macos {

namespace {

NSAppearance* nsAppearance(Appearance appearance) {
  return appearance == Appearance::darkAqua
             ? [NSAppearance appearanceNamed:NSAppearanceNameDarkAqua]
             : nil;
}

VLPanel* makePanel(const Window& window) {
  VLPanel* panel =
      [[VLPanel alloc] initWithContentRect:cgRect(window.frame())
                                 styleMask:static_cast<NSWindowStyleMask>(window.styleMask())
                                   backing:static_cast<NSBackingStoreType>(window.backing())
                                     defer:NO];
  // The peer owns the panel; AppKit must not release it a second time.
  panel.releasedWhenClosed = NO;
  panel.delegate = panel;
  return panel;
}

}  // namespace

/// While it lives, the panel is being told something, and what it reports has to wait. Keeps the
/// window too: an animated resize runs an event loop, in which the window's last owner may go.
class PanelPeer::Telling {
 public:
  explicit Telling(PanelPeer& peer) : kept_(peer.window_.weak_from_this().lock()), peer_(peer) {
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
  PanelPeer& peer_;
};

PanelPeer::PanelPeer(Window& window) : window_(window), panel_(makePanel(window)) {
  panel_.peer = this;
}

PanelPeer::~PanelPeer() {
  panel_.peer = nullptr;
  [panel_ close];
}

Rect PanelPeer::frameRectForContentRect(const Rect& contentRect) const {
  return coreRect([panel_ frameRectForContentRect:cgRect(contentRect)]);
}

Rect PanelPeer::contentRectForFrameRect(const Rect& frame) const {
  return coreRect([panel_ contentRectForFrameRect:cgRect(frame)]);
}

void PanelPeer::frameDidChange(Redisplay redisplay, FrameChange change) {
  const Telling telling(*this);
  [panel_ setFrame:cgRect(window_.frame())
           display:redisplay == Redisplay::atOnce
           animate:change == FrameChange::animated];
}

void PanelPeer::propertiesDidChange() {
  const Telling telling(*this);
  const auto& panel = static_cast<const Panel&>(window_);
  panel_.floatingPanel = panel.isFloatingPanel();  // sets a level of its own: before the level
  panel_.becomesKeyOnlyIfNeeded = panel.becomesKeyOnlyIfNeeded();
  panel_.level = panel.level();
  panel_.title = nsString(panel.title());
  panel_.collectionBehavior = static_cast<NSWindowCollectionBehavior>(panel.collectionBehavior());
  panel_.hidesOnDeactivate = panel.hidesOnDeactivate();
  panel_.opaque = panel.isOpaque();
  panel_.backgroundColor = nsColor(panel.backgroundColor());
  panel_.hasShadow = panel.hasShadow();
  panel_.appearance = nsAppearance(panel.appearance());
  panel_.contentMinSize = cgSize(panel.contentMinSize());
}

void PanelPeer::contentViewDidChange() {
  const Telling telling(*this);
  panel_.contentView = tree_.realize(*window_.contentView());
  panel_.accessibilityLabel = nsString(window_.contentView()->accessibilityLabel());
}

void PanelPeer::viewDidChange(View& view, ViewChange change) {
  const Telling telling(*this);
  tree_.viewDidChange(view, change);
}

void PanelPeer::orderFrontRegardless() {
  const Telling telling(*this);
  [panel_ orderFrontRegardless];
}

void PanelPeer::makeKeyAndOrderFront() {
  const Telling telling(*this);
  [panel_ makeKeyAndOrderFront:nil];
}

void PanelPeer::orderOut() {
  const Telling telling(*this);
  [panel_ orderOut:nil];
}

void PanelPeer::miniaturize() {
  const Telling telling(*this);
  [panel_ miniaturize:nil];
}

void PanelPeer::close() {
  const Telling telling(*this);
  [panel_ close];
}

std::optional<Rect> PanelPeer::adoptAutosavedFrame(const std::string& name) {
  const Telling telling(*this);
  const bool restored = [panel_ setFrameUsingName:nsString(name)];
  [panel_ setFrameAutosaveName:nsString(name)];
  if (!restored) return std::nullopt;
  return coreRect(panel_.frame);
}

void PanelPeer::panelDidReport(Report report) {
  if (tellingDepth_ > 0) {
    pendingReports_.insert(report);
  } else {
    pass(report);
  }
}

void PanelPeer::panelWillClose() {
  if (tellingDepth_ > 0) return;  // the core closed it
  if (const auto window = window_.weak_from_this().lock()) window->peerDidClose();
}

void PanelPeer::pass(Report report) {
  const auto window = window_.weak_from_this().lock();
  if (!window) return;  // being made or destroyed
  switch (report) {
    case Report::frame:
      return window->peerDidSetFrame(coreRect(panel_.frame));
    case Report::backingProperties:
      return window->peerDidChangeBackingProperties();
  }
}

void PanelPeer::passPendingReports() {
  if (tellingDepth_ > 0) return;  // in an event loop within a call, whose end asks for this again
  for (const Report report : std::exchange(pendingReports_, {})) pass(report);
}

}  // namespace vistrel::platform::macos
