#pragma once

#include <array>
#include <functional>
#include <memory>
#include <string>

#include "platform/Backend.h"
#include "platform/Image.h"
#include "platform/ScreenCapture.h"
#include "platform/Window.h"

namespace vistrel::contract {

/// The colours of a picture's four quarters, in reading order.
using Quadrants = std::array<platform::PixelBGRA, 4>;

/// A window of another program on the bed's desktop. Every change has taken effect when the call
/// returns.
class SourceWindow {
 public:
  virtual ~SourceWindow() = default;

  virtual platform::WindowID id() const = 0;
  /// As the listing is to give it: points, global display space.
  virtual platform::Rect frame() const = 0;
  virtual void moveBy(double dx, double dy) = 0;
  virtual void resize(platform::Size size) = 0;
  virtual void hide() = 0;
  virtual void show() = 0;
  virtual void paint(const Quadrants& colors) = 0;
  virtual void close() = 0;
};

struct SourceOptions {
  std::string title = "Document";
  std::string application = "Sample";
  platform::Size size{400, 300};
  Quadrants colors{};
};

/// What the desktop itself says of a panel.
struct PanelFacts {
  bool isShown = false;
  /// Screen space.
  platform::Rect frame;
  bool floatsAboveOthers = false;
  bool isOnEveryDesktop = false;
  bool hasKeyboardFocus = false;

  friend bool operator==(const PanelFacts&, const PanelFacts&) = default;
};

/// One desktop that the suite runs on, with its backend installed. Main thread.
class ContractBed {
 public:
  virtual ~ContractBed() = default;

  virtual platform::Backend& backend() = 0;
  virtual std::unique_ptr<SourceWindow> openSource(const SourceOptions& options) = 0;
  /// Turns the main loop until `condition` holds; false when it does not within a generous time.
  virtual bool turnUntil(const std::function<bool()>& condition) = 0;
  /// The colour that a person sees in `window` at a point from its content's top-left.
  virtual platform::PixelBGRA colorShown(platform::Window& window, platform::Point fromTopLeft) = 0;
  virtual PanelFacts factsOf(platform::Panel& panel) = 0;
  /// Puts two screens side by side in place of the one; the right one shows things twice as large.
  virtual void makeTwoScreens() = 0;
};

/// Each of the suite's programs defines its own.
std::unique_ptr<ContractBed> makeContractBed();

}  // namespace vistrel::contract
