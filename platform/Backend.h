#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/AccessibilityElement.h"
#include "platform/Dispatch.h"
#include "platform/Displays.h"
#include "platform/Geometry.h"
#include "platform/Image.h"
#include "platform/Screen.h"
#include "platform/ScreenCapture.h"
#include "platform/Text.h"
#include "platform/VirtualDisplay.h"

namespace vistrel::platform {

struct Alert;
class Application;
class Control;
class RunningApplication;
class TableView;
class View;
class Window;
enum class ViewChange;

/// Queues, timers, the clock. What each must do is said in Dispatch.h.
class DispatchBackend {
 public:
  virtual ~DispatchBackend() = default;
  virtual Date now() = 0;
  virtual DispatchQueue& mainQueue() = 0;
  virtual void mainAsyncAfter(double seconds, Block block) = 0;
  virtual std::shared_ptr<DispatchQueue> makeSerialQueue(std::string label,
                                                         QualityOfService quality) = 0;
  virtual std::shared_ptr<Timer> scheduledTimer(double seconds, bool repeats, Block block) = 0;
  virtual std::shared_ptr<Semaphore> makeSemaphore(int value) = 0;
};

/// Whether a window's views are laid out in a new frame at once or when the main loop turns next.
enum class Redisplay { later, atOnce };

/// Whether a window jumps into a new frame or a person sees it change.
enum class FrameChange { immediate, animated };

/// What shows one window. Told after the window's or a view's state has changed; reads the state
/// from the window it was made for, which outlives it. Feeds what happens back through the window's
/// functions for peers, never from within a call that told it something; only layout passes and
/// questions for a table's cells may come at any time. Main thread.
class WindowPeer {
 public:
  virtual ~WindowPeer() = default;

  /// The window's size around a content size, at the same origin.
  virtual Rect frameRectForContentRect(const Rect& contentRect) const { return contentRect; }
  virtual Rect contentRectForFrameRect(const Rect& frame) const { return frame; }
  /// Puts the window where the desktop centres windows, and answers its origin; none, having done
  /// nothing, where the desktop has no such place.
  virtual std::optional<Point> center() { return std::nullopt; }
  /// `frame()` has changed by code.
  virtual void frameDidChange(Redisplay redisplay, FrameChange change) = 0;
  /// Anything else that is no call of its own: title, level, behaviour, minimum size, colours.
  virtual void propertiesDidChange() = 0;
  virtual void contentViewDidChange() = 0;
  virtual void viewDidChange(View& view, ViewChange change) = 0;
  virtual void orderFrontRegardless() = 0;
  virtual void makeKeyAndOrderFront() = 0;
  virtual void orderOut() = 0;
  /// Puts the window where the desktop keeps windows that are out of the way.
  virtual void miniaturize() = 0;
  virtual void close() = 0;
  /// The frame that an earlier run saved under `name`, if any; saves it from now on.
  virtual std::optional<Rect> adoptAutosavedFrame(const std::string& name) = 0;
  /// The row of `table` that is selected, -1 for none, where the desktop keeps the selection; none
  /// where tables keep it themselves.
  virtual std::optional<int> selectedRow(const TableView& /*table*/) const { return std::nullopt; }
};

/// Windows, screens, the pointer, controls' sizes, alerts.
class WindowBackend {
 public:
  virtual ~WindowBackend() = default;
  /// Called while `window` is being constructed; the peer must not call its virtual functions yet.
  virtual std::unique_ptr<WindowPeer> makePeer(Window& window, bool isPanel) = 0;
  virtual std::vector<Screen> screens() = 0;
  virtual std::optional<Screen> mainScreen() = 0;
  /// The window that has the keyboard; null when none of this program's has.
  virtual Window* keyWindow() = 0;
  virtual Point mouseLocation() = 0;
  virtual Size intrinsicContentSize(const Control& control) = 0;
  virtual int runModal(const Alert& alert) = 0;
};

/// Listing and capturing windows. What each must do is said in ScreenCapture.h and Image.h.
class ScreenCaptureBackend {
 public:
  virtual ~ScreenCaptureBackend() = default;
  virtual bool preflightScreenCaptureAccess() = 0;
  virtual bool requestScreenCaptureAccess() = 0;
  virtual void getShareableContent(DesktopWindows desktopWindows, ListedWindows listedWindows,
                                   ShareableContentCompletion completion) = 0;
  virtual std::shared_ptr<Stream> makeStream(const ContentFilter& filter,
                                             const StreamConfiguration& configuration,
                                             std::weak_ptr<StreamDelegate> delegate) = 0;
  virtual std::shared_ptr<ImageContext> makeImageContext(const ImageContextOptions& options) = 0;
};

/// The surroundings of the process. What each must do is said in Workspace.h, Bundle.h and Text.h.
class WorkspaceBackend {
 public:
  virtual ~WorkspaceBackend() = default;
  virtual bool openURL(const std::string& url) = 0;
  virtual bool openNewInstance(const std::string& bundlePath) = 0;
  virtual std::int32_t processIdentifier() = 0;
  virtual std::shared_ptr<RunningApplication> runningApplication(std::int32_t processID) = 0;
  virtual std::string mainBundlePath() = 0;
  virtual std::optional<std::string> bundleInfo(const std::string& key) = 0;
  virtual ComparisonResult localizedCaseInsensitiveCompare(const std::string& a,
                                                           const std::string& b) = 0;
};

/// The display server's displays. What each must do is said in Displays.h.
class DisplayBackend {
 public:
  virtual ~DisplayBackend() = default;
  virtual DisplayID mainDisplayID() = 0;
  virtual Rect displayBounds(DisplayID display) = 0;
  virtual std::uint32_t onlineDisplayCount() = 0;
  virtual std::unique_ptr<DisplayConfiguration> beginDisplayConfiguration() = 0;
};

/// The classes of virtual displays. What each must do is said in VirtualDisplay.h; a backend whose
/// system has no such classes of its own takes those of VirtualDisplayClasses.h.
class VirtualDisplayBackend {
 public:
  virtual ~VirtualDisplayBackend() = default;
  virtual std::shared_ptr<RuntimeClass> classNamed(const std::string& name) = 0;
};

/// Other programs' windows. What each must do is said in AccessibilityElement.h.
class AccessibilityBackend {
 public:
  virtual ~AccessibilityBackend() = default;
  virtual bool isProcessTrusted() = 0;
  virtual bool isProcessTrustedWithOptions(bool prompt) = 0;
  virtual std::shared_ptr<AccessibilityElement> applicationElement(std::int32_t processID) = 0;
  virtual std::optional<AccessibilityValue> makePointValue(Point point) = 0;
  virtual GetWindowNumber windowNumberFunctionNamed(const std::string& symbol) = 0;
};

/// Where the process says what no window is there to say. What it must do is said in
/// StandardError.h.
class StandardErrorBackend {
 public:
  virtual ~StandardErrorBackend() = default;
  virtual void write(const std::string& text) = 0;
};

/// One desktop, behind which everything above this folder runs.
class Backend {
 public:
  virtual ~Backend() = default;
  virtual DispatchBackend& dispatch() = 0;
  virtual WindowBackend& windows() = 0;
  virtual ScreenCaptureBackend& screenCapture() = 0;
  virtual WorkspaceBackend& workspace() = 0;
  virtual DisplayBackend& displays() = 0;
  virtual VirtualDisplayBackend& virtualDisplays() = 0;
  virtual AccessibilityBackend& accessibility() = 0;
  virtual StandardErrorBackend& standardError() = 0;
  /// Made when it is first asked for, and not before.
  virtual Application& application() = 0;
};

/// The installed backend; ends the program when there is none. Any thread.
Backend& backend();

/// Installs a backend for as long as it lives. One at a time; main thread.
class BackendInstallation {
 public:
  explicit BackendInstallation(Backend& backend);
  BackendInstallation(const BackendInstallation&) = delete;
  BackendInstallation& operator=(const BackendInstallation&) = delete;
  ~BackendInstallation();
};

}  // namespace vistrel::platform
