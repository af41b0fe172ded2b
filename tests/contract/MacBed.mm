#include <algorithm>
#include <map>
#include <utility>

#include "platform/Factory.h"
#include "tests/contract/ContractBed.h"
#include "tests/macos/fakes/CaptureFakes.h"
#include "tests/macos/fakes/Recorder.h"
#include "tests/macos/fakes/State.h"
#include "tests/macos/fakes/World.h"

// Of the suite the parts that fakes can answer for run here: queues and timers over virtual time
// (real threads and their races are not there), displays, the listing, and streams, whose pictures
// the bed hands out itself when the source is painted or shown, each of its size: neither the
// service's rate nor its scaling is there. What a person sees of a panel, and how the desktop's own
// windows and screens bear on it, no fake knows: PanelContract, DesktopContract and
// OtherWindowsContract do not run.

extern "C" {
void* objc_autoreleasePoolPush();
void objc_autoreleasePoolPop(void* pool);
}

namespace vistrel::contract {
namespace {

using platform::PixelBGRA;

/// As an event loop has one around what the program does.
class Pool {
 public:
  Pool() : pool_(objc_autoreleasePoolPush()) {}
  Pool(const Pool&) = delete;
  Pool& operator=(const Pool&) = delete;
  ~Pool() { objc_autoreleasePoolPop(pool_); }

 private:
  void* const pool_;
};

/// What the windows of other programs show, and which of it streams have delivered.
class Pictures {
 public:
  void paint(platform::WindowID window, const Quadrants& colors) {
    shown_[window] = {colors, ++versions_};
    deliver();
  }

  void deliver() {
    @autoreleasepool {
      for (SCStream* stream : fake::streams()) deliverTo(stream);
    }
  }

 private:
  struct Picture {
    Quadrants colors;
    int version = 0;
  };

  void deliverTo(SCStream* stream) {
    const auto& windows = fake::world().desktop().windows;
    const platform::WindowID number = stream.filter.window.windowID;
    const auto window = std::find_if(windows.begin(), windows.end(),
                                     [number](const auto& each) { return each.id == number; });
    if (!stream.isCapturing || window == windows.end() || !window->isOnScreen) return;
    const Picture& picture = shown_[number];
    if (std::exchange(delivered_[fake::describe(stream)], picture.version) == picture.version) {
      return;
    }
    const auto width = static_cast<std::size_t>(window->frame.size.width);
    const auto height = static_cast<std::size_t>(window->frame.size.height);
    fake::deliver(stream, {.width = width,
                           .height = height,
                           .pixelAt = [&, width, height](std::size_t x, std::size_t y) {
                             const std::size_t quarter = (y * 2 / height) * 2 + x * 2 / width;
                             const PixelBGRA pixel = picture.colors.at(quarter);
                             return std::array{pixel.blue, pixel.green, pixel.red, pixel.alpha};
                           }});
  }

  std::map<platform::WindowID, Picture> shown_;
  /// The version of each stream's last picture, by the stream's name.
  std::map<std::string, int> delivered_;
  int versions_ = 0;
};

class MacSource : public SourceWindow {
 public:
  MacSource(Pictures& pictures, platform::WindowID id, const SourceOptions& options)
      : pictures_(pictures), id_(id), colors_(options.colors) {
    fake::world().desktop().windows.push_back(
        {.id = id,
         .title = options.title,
         .frame = {{100, 100}, {options.size.width, options.size.height}},
         .application = options.application});
    paint(colors_);
  }
  ~MacSource() override { close(); }

  platform::WindowID id() const override { return id_; }
  platform::Rect frame() const override {
    const CGRect& frame = window().frame;
    return platform::rect(frame.origin.x, frame.origin.y, frame.size.width, frame.size.height);
  }
  void moveBy(double dx, double dy) override {
    window().frame.origin.x += dx;
    window().frame.origin.y += dy;
  }
  void resize(platform::Size size) override {
    window().frame.size = {size.width, size.height};
    paint(colors_);
  }
  void hide() override { window().isOnScreen = false; }
  void show() override {
    window().isOnScreen = true;
    pictures_.deliver();
  }
  void paint(const Quadrants& colors) override {
    colors_ = colors;
    pictures_.paint(id_, colors);
  }
  void close() override {
    std::erase_if(fake::world().desktop().windows,
                  [this](const auto& each) { return each.id == id_; });
  }

 private:
  fake::SourceWindow& window() const {
    for (fake::SourceWindow& each : fake::world().desktop().windows) {
      if (each.id == id_) return each;
    }
    fake::fail("a closed window is asked for");
  }

  Pictures& pictures_;
  const platform::WindowID id_;
  Quadrants colors_;
};

/// The suite's bed over the fakes of the frameworks.
class MacBed : public ContractBed {
 public:
  platform::Backend& backend() override { return *backend_; }
  std::unique_ptr<SourceWindow> openSource(const SourceOptions& options) override {
    return std::make_unique<MacSource>(pictures_, ++lastWindowID_, options);
  }
  bool turnUntil(const std::function<bool()>& condition) override {
    constexpr double generously = 60;
    pictures_.deliver();
    return world_.dispatch().turnMainUntil(condition, generously);
  }
  PixelBGRA colorShown(platform::Window&, platform::Point) override { fail(); }
  PanelFacts factsOf(platform::Panel&) override { fail(); }
  void makeTwoScreens() override { fail(); }

 private:
  [[noreturn]] static void fail() { fake::fail("no fake shows panels to a person"); }
  static std::unique_ptr<platform::Backend> makeBackend() {
    return platform::makeBackend(0, nullptr, platform::Instances::any).backend;
  }

  fake::World world_;
  const Pool pool_;
  const std::unique_ptr<platform::Backend> backend_ = makeBackend();
  const platform::BackendInstallation installation_{*backend_};
  Pictures pictures_;
  platform::WindowID lastWindowID_ = 0;
};

}  // namespace

std::unique_ptr<ContractBed> makeContractBed() { return std::make_unique<MacBed>(); }

}  // namespace vistrel::contract
