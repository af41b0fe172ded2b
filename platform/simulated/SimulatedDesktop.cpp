#include "platform/simulated/SimulatedDesktop.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

#include "platform/Controls.h"
#include "platform/Window.h"

namespace vistrel::platform::simulated {
namespace {

Size textSize(const std::string& text, double pointSize) {
  const auto startsCodePoint = [](char c) {
    return (static_cast<unsigned char>(c) & 0xC0U) != 0x80;
  };
  const auto codePoints = std::count_if(text.begin(), text.end(), startsCodePoint);
  return {static_cast<double>(codePoints) * pointSize / 2, pointSize + 4};
}

Size buttonSize(const Button& button) {
  const Size title =
      textSize(button.title(), button.attributedStyle() ? button.attributedStyle()->font.pointSize
                                                        : Font{}.pointSize);
  if (!button.isBordered()) return title;
  return {title.width + 24, title.height + 8};
}

}  // namespace

SimulatedDesktop::SimulatedDesktop(CallJournal& journal) : journal_(journal) {
  setScreens({{.frame = rect(0, 0, 1440, 900), .visibleFrame = rect(0, 25, 1440, 850)}});
}

void SimulatedDesktop::setScreens(std::vector<Screen> screens) {
  screens_ = std::move(screens);
  mainScreen_ = screens_.empty() ? std::nullopt : std::optional(screens_.front());
}

void SimulatedDesktop::setMainScreen(std::optional<Screen> screen) { mainScreen_ = screen; }

std::vector<Screen> SimulatedDesktop::screens() { return screens_; }

std::optional<Screen> SimulatedDesktop::mainScreen() { return mainScreen_; }

std::optional<Rect> SimulatedDesktop::savedFrame(const std::string& autosaveName) const {
  const auto found = savedFrames_.find(autosaveName);
  return found == savedFrames_.end() ? std::nullopt : std::optional(found->second);
}

void SimulatedDesktop::setSavedFrame(const std::string& autosaveName, const Rect& frame) {
  savedFrames_[autosaveName] = frame;
}

std::vector<Window*> SimulatedDesktop::windowsFrontToBack() const {
  std::vector<Window*> windows;
  for (SimulatedWindowPeer* peer : peers_) windows.push_back(&peer->window());
  return windows;
}

SimulatedWindowPeer& SimulatedDesktop::peerOf(const Window& window) const {
  const auto found = std::find_if(peers_.begin(), peers_.end(), [&window](const auto* peer) {
    return &peer->window() == &window;
  });
  if (found == peers_.end()) std::abort();
  return **found;
}

std::shared_ptr<WindowHistory> SimulatedDesktop::historyOf(const Window& window) const {
  return peerOf(window).history();
}

Event SimulatedDesktop::mouseEvent(const Window& window, EventType type) const {
  const Point origin = window.frame().origin;
  return {.type = type, .locationInWindow = {mouse_.x - origin.x, mouse_.y - origin.y}};
}

void SimulatedDesktop::sendMouse(Window& window, EventType type, int clickCount,
                                 std::uint64_t modifiers) {
  Event event = mouseEvent(window, type);
  event.modifierFlags = modifiers;
  event.clickCount = clickCount;
  window.sendEvent(event);
}

std::shared_ptr<Menu> SimulatedDesktop::clickRight(Window& window) {
  return window.menuForEvent(mouseEvent(window, EventType::rightMouseDown));
}

void SimulatedDesktop::pressMouse(Window& window, int clickCount, std::uint64_t modifiers) {
  sendMouse(window, EventType::leftMouseDown, clickCount, modifiers);
}

void SimulatedDesktop::dragMouse(Window& window, Point location, std::uint64_t modifiers) {
  moveMouse(location);
  sendMouse(window, EventType::leftMouseDragged, 0, modifiers);
}

void SimulatedDesktop::releaseMouse(Window& window, int clickCount, std::uint64_t modifiers) {
  sendMouse(window, EventType::leftMouseUp, clickCount, modifiers);
}

void SimulatedDesktop::moveWindow(Window& window, const Rect& frame) {
  peerOf(window).personSetFrame(frame);
}

void SimulatedDesktop::closeWindow(Window& window) { window.peerDidClose(); }

std::unique_ptr<WindowPeer> SimulatedDesktop::makePeer(Window& window, bool isPanel) {
  return std::make_unique<SimulatedWindowPeer>(*this, window, isPanel);
}

void SimulatedDesktop::peerIsGoing(SimulatedWindowPeer& peer) {
  std::erase(peers_, &peer);
  windowIsOffScreen(peer.window());
}

void SimulatedDesktop::windowIsOffScreen(const Window& window) {
  if (keyWindow_ == &window) keyWindow_ = nullptr;
}

void SimulatedDesktop::moveToFront(SimulatedWindowPeer& peer) {
  const auto found = std::find(peers_.begin(), peers_.end(), &peer);
  std::rotate(peers_.begin(), found, std::next(found));
}

Size SimulatedDesktop::intrinsicContentSize(const Control& control) {
  if (const auto* label = dynamic_cast<const Label*>(&control)) {
    return textSize(label->stringValue(), label->font().pointSize);
  }
  if (const auto* button = dynamic_cast<const Button*>(&control)) return buttonSize(*button);
  if (const auto* imageView = dynamic_cast<const ImageView*>(&control); imageView != nullptr) {
    const double side = imageView->image() ? imageView->image()->pointSize : 0;
    return {side, side};
  }
  return {};
}

int SimulatedDesktop::runModal(const Alert& alert) {
  alerts_.push_back(alert);
  if (alertAnswer_) return alertAnswer_(alert);
  const auto buttons = static_cast<int>(alert.buttonTitles.size());
  return alertFirstButtonReturn + std::max(buttons, 1) - 1;
}

}  // namespace vistrel::platform::simulated
