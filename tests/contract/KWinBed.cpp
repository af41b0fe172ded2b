#include <sstream>
#include <stdexcept>

#include "tests/contract/BackendBed.h"
#include "tests/support/KWinScripts.h"
#include "tests/support/KWinSession.h"
#include "tests/support/NativeWindow.h"

namespace vistrel::contract {
namespace {

using platform::WindowRecord;

/// Null as long as it is not listed.
WindowRecord listedWindowOf(pid_t process) {
  WindowRecord found;
  const auto answered = platform::makeSemaphore(0);
  platform::getShareableContent(platform::DesktopWindows::included, platform::ListedWindows::all,
                                [&](const auto& content, const auto& /*error*/) {
                                  for (const auto& each : content->windows) {
                                    if (each->owningApplication->processID == process) found = each;
                                  }
                                  answered->signal();
                                });
  answered->wait(60);
  return found;
}

/// A native window of a program of its own.
class NativeSource : public SourceWindow {
 public:
  NativeSource(const testbed::KWinSession& session, const SourceOptions& options)
      : kwin_(session.busAddress()),
        window_(session.environment(), {.title = options.title,
                                        .applicationId = options.application,
                                        .width = static_cast<int>(options.size.width),
                                        .height = static_cast<int>(options.size.height),
                                        .picture = quadrants(options.colors)}) {
    if (!testbed::eventually([&] { return listedWindowOf(window_.pid()) != nullptr; })) {
      throw std::runtime_error("a native window is not listed");
    }
    id_ = listedWindowOf(window_.pid())->windowID;
  }

  platform::WindowID id() const override { return id_; }
  platform::Rect frame() const override {
    std::istringstream numbers(
        run("var f = each.frameGeometry; tell([f.x, f.y, f.width, f.height].join(' '))"));
    platform::Rect frame;
    numbers >> frame.origin.x >> frame.origin.y >> frame.size.width >> frame.size.height;
    return frame;
  }
  void moveBy(double dx, double dy) override {
    run("var f = each.frameGeometry; each.frameGeometry = {x: f.x + " + std::to_string(dx) +
        ", y: f.y + " + std::to_string(dy) + ", width: f.width, height: f.height}");
  }
  void resize(platform::Size size) override {
    window_.resize(static_cast<int>(size.width), static_cast<int>(size.height));
  }
  void hide() override { window_.minimise(); }
  void show() override { run("each.minimized = false"); }
  void paint(const Quadrants& colors) override { window_.show(quadrants(colors)); }
  void close() override { window_.close(); }

 private:
  std::string run(const std::string& javaScript) const {
    return kwin_.run("workspace.clientList().forEach(function (each) { if (each.pid == " +
                     std::to_string(window_.pid()) + ") {" + javaScript + "} })");
  }

  mutable testbed::KWinScripts kwin_;
  testbed::NativeWindow window_;
  platform::WindowID id_ = 0;
};

/// One for all tests of a process, as LinuxBed's display.
const testbed::KWinSession& sharedSession() {
  static const testbed::KWinSession session;
  session.adoptEnvironment();
  return session;
}

/// The real backend in a session of KWin, with native windows for sources: what the Wayland half
/// fills in. Panels are as on X.
class KWinBed : public BackendBed {
 public:
  explicit KWinBed(const testbed::KWinSession& session) : session_(session) {}

  std::unique_ptr<SourceWindow> openSource(const SourceOptions& options) override {
    return std::make_unique<NativeSource>(session_, options);
  }
  platform::PixelBGRA colorShown(platform::Window&, platform::Point) override { fail(); }
  PanelFacts factsOf(platform::Panel&) override { fail(); }
  void makeTwoScreens() override { fail(); }

 private:
  [[noreturn]] static void fail() { throw std::logic_error("not a part of the suite here"); }

  const testbed::KWinSession& session_;
};

}  // namespace

std::unique_ptr<ContractBed> makeContractBed() {
  return std::make_unique<KWinBed>(sharedSession());
}

}  // namespace vistrel::contract
