#include "platform/simulated/SimulatedWindowPeer.h"

#include <algorithm>
#include <utility>

#include "platform/simulated/SimulatedDesktop.h"

namespace vistrel::platform::simulated {

std::vector<PeerCall::Kind> WindowHistory::steps() const {
  std::vector<PeerCall::Kind> kinds;
  for (const PeerCall& call : calls) {
    if (call.kind == PeerCall::Kind::viewDidChange) continue;
    if (call.kind == PeerCall::Kind::propertiesDidChange) continue;
    kinds.push_back(call.kind);
  }
  return kinds;
}

int WindowHistory::count(PeerCall::Kind kind) const {
  return static_cast<int>(std::count_if(calls.begin(), calls.end(),
                                        [kind](const PeerCall& c) { return c.kind == kind; }));
}

SimulatedWindowPeer::SimulatedWindowPeer(SimulatedDesktop& desktop, Window& window, bool isPanel)
    : desktop_(desktop), window_(window), toldBackingScale_(window.backingScaleFactor()) {
  history_->isPanel = isPanel;
  desktop_.peerWasMade(*this);
}

SimulatedWindowPeer::~SimulatedWindowPeer() {
  history_->calls.push_back({.kind = PeerCall::Kind::destroyed});
  desktop_.peerIsGoing(*this);
}

PeerCall& SimulatedWindowPeer::record(PeerCall::Kind kind) {
  history_->calls.push_back({.kind = kind, .frame = window_.frame()});
  return history_->calls.back();
}

void SimulatedWindowPeer::recordOrdering(PeerCall::Kind kind, const std::string& words) {
  record(kind);
  desktop_.journal().add((history_->isPanel ? "Panel " : "Window ") + words);
}

void SimulatedWindowPeer::adoptScreen() {
  const double scale = window_.backingScaleFactor();
  if (std::exchange(toldBackingScale_, scale) != scale) window_.peerDidChangeBackingProperties();
}

void SimulatedWindowPeer::saveFrame() {
  if (!autosaveName_.empty()) desktop_.setSavedFrame(autosaveName_, window_.frame());
}

double SimulatedWindowPeer::chromeHeight() const {
  return (window_.styleMask() & styleTitled) != 0 ? titleBarHeight : 0;
}

Rect SimulatedWindowPeer::frameRectForContentRect(const Rect& contentRect) const {
  Rect frame = contentRect;
  frame.size.height += chromeHeight();
  return frame;
}

Rect SimulatedWindowPeer::contentRectForFrameRect(const Rect& frame) const {
  Rect contentRect = frame;
  contentRect.size.height -= chromeHeight();
  return contentRect;
}

std::optional<Point> SimulatedWindowPeer::center() { return desktop_.centeredOrigin(); }

void SimulatedWindowPeer::frameDidChange(Redisplay redisplay, FrameChange change) {
  PeerCall& call = record(PeerCall::Kind::frameDidChange);
  call.display = redisplay == Redisplay::atOnce;
  call.animate = change == FrameChange::animated;
  adoptScreen();
  saveFrame();
}

void SimulatedWindowPeer::personSetFrame(const Rect& frame) {
  window_.peerDidSetFrame(frame);
  adoptScreen();
  saveFrame();
}

void SimulatedWindowPeer::propertiesDidChange() { record(PeerCall::Kind::propertiesDidChange); }

void SimulatedWindowPeer::contentViewDidChange() { record(PeerCall::Kind::contentViewDidChange); }

void SimulatedWindowPeer::viewDidChange(View& view, ViewChange change) {
  PeerCall& call = record(PeerCall::Kind::viewDidChange);
  call.view = &view;
  call.viewChange = change;
}

void SimulatedWindowPeer::orderFrontRegardless() {
  recordOrdering(PeerCall::Kind::orderFrontRegardless, "orderFrontRegardless");
  desktop_.moveToFront(*this);
}

void SimulatedWindowPeer::makeKeyAndOrderFront() {
  recordOrdering(PeerCall::Kind::makeKeyAndOrderFront, "makeKeyAndOrderFront");
  desktop_.moveToFront(*this);
  desktop_.setKeyWindow(&window_);
}

void SimulatedWindowPeer::orderOut() {
  recordOrdering(PeerCall::Kind::orderOut, "orderOut");
  desktop_.windowIsOffScreen(window_);
}

void SimulatedWindowPeer::miniaturize() {
  record(PeerCall::Kind::miniaturize);
  desktop_.windowIsOffScreen(window_);
}

void SimulatedWindowPeer::close() {
  recordOrdering(PeerCall::Kind::close, "close");
  desktop_.windowIsOffScreen(window_);
}

std::optional<Rect> SimulatedWindowPeer::adoptAutosavedFrame(const std::string& name) {
  record(PeerCall::Kind::adoptAutosavedFrame);
  autosaveName_ = name;
  return desktop_.savedFrame(name);
}

std::optional<int> SimulatedWindowPeer::selectedRow(const TableView& /*table*/) const {
  return desktop_.selectedRow();
}

}  // namespace vistrel::platform::simulated
