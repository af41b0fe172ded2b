#include <array>
#include <optional>
#include <stdexcept>
#include <utility>

#include "bench/ProcessorTime.h"
#include "bench/peers/Subject.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/Poll.h"
#include "tests/support/XWindows.h"

namespace vistrel::bench {
namespace {

/// The program and arguments that show one window of a display.
using PeerCommand =
    std::function<std::vector<std::string>(const std::string& display, xcb_window_t, Extent)>;

std::vector<std::uint32_t> managedWindows(const testbed::XConnection& connection) {
  return connection.numbers(connection.root(), "_NET_CLIENT_LIST");
}

/// Servers give ids again: the manager may still list a window of the peer before that has the id
/// which the next one's is going to have.
void awaitFormerGone(const testbed::XConnection& connection, xcb_window_t source) {
  if (!testbed::eventually(
          [&] { return managedWindows(connection) == std::vector<std::uint32_t>{source}; })) {
    throw std::runtime_error("there is another window beside the source");
  }
}

/// A program that shows nothing but the source's picture, in a window of its size.
class Peer : public Subject {
 public:
  Peer(Bed& bed, xcb_window_t source, std::vector<std::string> arguments, Extent extent)
      : connection_(&bed.connection()),
        extent_(extent),
        source_(source),
        process_(commandOf(bed, std::move(arguments))) {
    // Before its first picture it may be of another size.
    await([this] { return isShown(); });
    const std::array<std::uint32_t, 2> place{Bed::sourceArea.width + 30, 60};
    xcb_configure_window(connection_->get(), window_, XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y,
                         place.data());
    await([this] {
      return testbed::areaOf(*connection_, window_).value_or(testbed::Rect{}).x >=
             Bed::sourceArea.width;
    });
  }

  double clientSeconds() const override { return processorSeconds(process_.pid()); }
  xcb_window_t window() const override { return window_; }
  testbed::Rect picture() const override { return {0, 0, extent_.width, extent_.height}; }

 private:
  static testbed::ChildProcess::Command commandOf(const Bed& bed,
                                                  std::vector<std::string> arguments) {
    std::vector<std::string> environment = bed.display().environment();
    // There is no accelerated drawing on a server without a screen.
    environment.insert(environment.end(),
                       {"SDL_RENDER_DRIVER=software", "SDL_AUDIODRIVER=dummy", "NO_AT_BRIDGE=1"});
    return {.arguments = std::move(arguments), .environment = std::move(environment)};
  }

  template <class Condition>
  void await(const Condition& condition) {
    if (testbed::eventually([&] { return process_.ending() || condition(); }) &&
        !process_.ending()) {
      return;
    }
    throw std::runtime_error("it did not start; " + endingOf(process_.ending()) + " " +
                             process_.standardError());
  }

  static std::string endingOf(const std::optional<testbed::ChildProcess::Ending>& ending) {
    if (!ending) return "it shows no window.";
    if (ending->signal) return "signal " + std::to_string(*ending->signal) + ".";
    return "exit status " + std::to_string(ending->exitStatus.value_or(0)) + ".";
  }

  bool isShown() {
    for (const xcb_window_t window : managedWindows(*connection_)) {
      const auto area = testbed::areaOf(*connection_, window);
      if (window != source_ && area && area->width == extent_.width &&
          area->height == extent_.height && testbed::isViewable(*connection_, window)) {
        window_ = window;
        return true;
      }
    }
    return false;
  }

  const testbed::XConnection* connection_;
  Extent extent_;
  xcb_window_t source_;
  xcb_window_t window_ = XCB_WINDOW_NONE;
  testbed::ChildProcess process_;
};

Contestant peer(std::string name, const PeerCommand& command) {
  return {.name = std::move(name),
          .start = [command](Bed& bed, const ChangingSource& source, Extent extent) {
            awaitFormerGone(bed.connection(), source.id());
            return std::make_unique<Peer>(
                bed, source.id(), command(bed.display().name(), source.id(), extent), extent);
          }};
}

std::vector<std::string> gstreamer(xcb_window_t source, Extent extent, const std::string& damage,
                                   const std::string& method) {
  return {"gst-launch-1.0",
          "-q",
          "ximagesrc",
          "xid=" + std::to_string(source),
          "use-damage=" + damage,
          "!",
          "video/x-raw,framerate=30/1",
          "!",
          "videoscale",
          "add-borders=false",
          "method=" + method,
          "!",
          "video/x-raw,width=" + std::to_string(extent.width) +
              ",height=" + std::to_string(extent.height) + ",pixel-aspect-ratio=1/1",
          "!",
          "ximagesink",
          "sync=false"};
}

PeerCommand gstreamer(const std::string& damage, const std::string& method) {
  return [damage, method](const std::string&, xcb_window_t source, Extent extent) {
    return gstreamer(source, extent, damage, method);
  };
}

std::vector<std::string> player(const std::string& display, xcb_window_t source, Extent extent) {
  const std::string width = std::to_string(extent.width);
  const std::string height = std::to_string(extent.height);
  return {"ffplay",     "-hide_banner",
          "-loglevel",  "error",
          "-f",         "x11grab",
          "-framerate", "30",
          "-window_id", std::to_string(source),
          "-fflags",    "nobuffer",
          "-flags",     "low_delay",
          "-i",         display,
          "-vf",        "scale=" + width + ":" + height + ":flags=area",
          "-noborder",  "-x",
          width,        "-y",
          height};
}

}  // namespace

std::vector<Contestant> peers() {
  return {peer("gst bilinear2", gstreamer("false", "bilinear2")),
          peer("gst two-tap", gstreamer("false", "bilinear")),
          peer("gst damage", gstreamer("true", "bilinear2")), peer("ffplay", player)};
}

}  // namespace vistrel::bench
