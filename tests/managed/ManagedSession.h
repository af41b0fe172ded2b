#pragma once

#include <functional>
#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "platform/Image.h"
#include "platform/ScreenCapture.h"
#include "platform/linux/session/Session.h"
#include "tests/support/PrivateDisplay.h"
#include "tests/support/ScreenReader.h"
#include "tests/support/TestWindow.h"
#include "tests/support/XConnection.h"

namespace vistrel::testbed {

/// The pictures that a stream of one window delivers, pixel by pixel.
class StreamedWindow {
 public:
  /// Starts the stream. `beforeReading` runs on the stream's queue
  /// whenever a picture has come and is not yet read.
  StreamedWindow(platform::linux_desktop::WindowStreams& streams,
                 const platform::WindowRecord& window, std::function<void()> beforeReading = {});
  ~StreamedWindow();
  StreamedWindow(const StreamedWindow&) = delete;
  StreamedWindow& operator=(const StreamedWindow&) = delete;

  /// The latest; empty before the first.
  Picture picture() const;
  /// The same as a panel can show it, as the mirror's queue has taken it over.
  std::shared_ptr<const platform::Image> image() const;
  /// The widths and heights of all so far.
  std::set<std::pair<int, int>> sizes() const;
  /// Whether the system has ended the stream.
  bool hasEnded() const;

 private:
  class Receiver;

  const std::shared_ptr<Receiver> receiver_;
  const std::shared_ptr<platform::DispatchQueue> queue_;
  const std::shared_ptr<platform::Stream> stream_;
};

/// A session under one window manager, with the X11 half of the backend in this process.
class ManagedSession {
 public:
  explicit ManagedSession(WindowManager manager)
      : ManagedSession(PrivateDisplay::Options{.windowManager = manager}) {}
  explicit ManagedSession(const PrivateDisplay::Options& options);
  ~ManagedSession();
  ManagedSession(const ManagedSession&) = delete;
  ManagedSession& operator=(const ManagedSession&) = delete;

  PrivateDisplay& display() { return display_; }
  const XConnection& connection() const { return connection_; }
  const ScreenReader& screen() const { return screen_; }
  platform::linux_desktop::Session& providers() { return *providers_; }

  /// The windows that are listed.
  std::vector<platform::WindowRecord> listed(
      platform::ListedWindows which = platform::ListedWindows::onScreen);
  /// The one with that id; null when it is not listed.
  platform::WindowRecord listed(xcb_window_t window,
                                platform::ListedWindows which = platform::ListedWindows::onScreen);
  std::unique_ptr<StreamedWindow> stream(xcb_window_t window,
                                         std::function<void()> beforeReading = {});

 private:
  PrivateDisplay display_;
  XConnection connection_{display_.name()};
  ScreenReader screen_{connection_};
  std::unique_ptr<platform::linux_desktop::Session> providers_;
};

}  // namespace vistrel::testbed
