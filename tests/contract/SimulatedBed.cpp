#include "tests/contract/SimulatedBed.h"

#include "platform/simulated/RecordingGraphicsContext.h"

namespace vistrel::contract {
namespace {

using platform::Rect;
using platform::ShareableWindow;
using platform::simulated::SimulatedCapture;

class SimulatedSource : public SourceWindow {
 public:
  SimulatedSource(SimulatedCapture& capture, const SourceOptions& options)
      : capture_(capture),
        frame_{{100, 100}, options.size},
        colors_(options.colors),
        id_(capture.openWindow({.title = options.title,
                                .frame = frame_,
                                .owningApplication = std::make_shared<platform::SharedApplication>(
                                    platform::SharedApplication{options.application, 99}),
                                .isOnScreen = true})) {
    paint(colors_);
  }
  ~SimulatedSource() override { close(); }

  platform::WindowID id() const override { return id_; }
  Rect frame() const override { return frame_; }
  void moveBy(double dx, double dy) override {
    frame_.origin = {frame_.minX() + dx, frame_.minY() + dy};
    applyFrame();
  }
  void resize(platform::Size size) override {
    frame_.size = size;
    applyFrame();
    paint(colors_);
  }
  void hide() override { setOnScreen(false); }
  void show() override { setOnScreen(true); }
  void paint(const Quadrants& colors) override {
    colors_ = colors;
    capture_.paintWindow(id_, platform::simulated::quadrantPixels(
                                  static_cast<std::int64_t>(frame_.width()),
                                  static_cast<std::int64_t>(frame_.height()), colors));
  }
  void close() override { capture_.closeWindow(id_); }

 private:
  void applyFrame() {
    capture_.changeWindow(id_, [this](ShareableWindow& window) { window.frame = frame_; });
  }
  void setOnScreen(bool onScreen) {
    capture_.changeWindow(id_, [=](ShareableWindow& window) { window.isOnScreen = onScreen; });
  }

  SimulatedCapture& capture_;
  Rect frame_;
  Quadrants colors_;
  const platform::WindowID id_;
};

std::uint8_t byteOf(double component) { return static_cast<std::uint8_t>(component * 255 + 0.5); }

}  // namespace

std::unique_ptr<SourceWindow> SimulatedBed::openSource(const SourceOptions& options) {
  return std::make_unique<SimulatedSource>(backend_.screenCapture(), options);
}

bool SimulatedBed::turnUntil(const std::function<bool()>& condition) {
  constexpr double generously = 60;
  return backend_.dispatch().turnMainUntil(condition, generously);
}

platform::PixelBGRA SimulatedBed::colorShown(platform::Window& window,
                                             platform::Point fromTopLeft) {
  platform::simulated::RecordingGraphicsContext context;
  window.layoutIfNeeded();
  platform::paint(*window.contentView(), context);
  const platform::Color color = colorAt(context.commands(), fromTopLeft);
  return {byteOf(color.blue), byteOf(color.green), byteOf(color.red), byteOf(color.alpha)};
}

PanelFacts SimulatedBed::factsOf(platform::Panel& panel) {
  return {
      .isShown = panel.isVisible(),
      .frame = panel.frame(),
      .floatsAboveOthers = panel.level() > platform::levelNormal,
      .isOnEveryDesktop = (panel.collectionBehavior() & platform::behaviorCanJoinAllSpaces) != 0,
      .hasKeyboardFocus = false};
}

void SimulatedBed::makeTwoScreens() {
  const Rect left = platform::rect(0, 0, 640, 1024);
  const Rect right = platform::rect(640, 512, 320, 512);
  backend_.windows().setScreens({{.frame = left, .visibleFrame = left},
                                 {.frame = right, .visibleFrame = right, .backingScaleFactor = 2}});
}

}  // namespace vistrel::contract
