#pragma once

#include <functional>
#include <map>
#include <memory>
#include <vector>

#include "mirror/WindowMirrorHUDController.h"
#include "platform/Guarded.h"
#include "platform/Menu.h"
#include "platform/ScreenCapture.h"

namespace vistrel {

/// The catalogue of windows that can be mirrored and the registry of open mirrors, at most one per
/// window. Main thread; answers of the capture service hop there, except where said otherwise.
class WindowMirrorManager : public platform::MenuDelegate,
                            public std::enable_shared_from_this<WindowMirrorManager> {
 public:
  using FetchCompletion = std::function<void(std::vector<platform::WindowRecord> windows)>;
  using Mirrors = std::map<platform::WindowID, std::shared_ptr<WindowMirrorHUDController>>;

  WindowMirrorManager(const WindowMirrorManager&) = delete;
  WindowMirrorManager& operator=(const WindowMirrorManager&) = delete;

  /// The program's one manager, made on first use and kept until the process ends.
  static const std::shared_ptr<WindowMirrorManager>& shared();
  /// A manager of its own.
  static std::shared_ptr<WindowMirrorManager> make();

  // Catalogue.

  /// Hands the list of mirrorable windows to `completion`, once: on the main thread later, or at
  /// once and empty where the permission is missing. Leaves `cachedWindows` alone.
  void fetchWindows(FetchCompletion completion);
  /// What of `windows` is listed, and in which order. Any thread.
  std::vector<platform::WindowRecord> filteredWindows(
      const std::vector<platform::WindowRecord>& windows) const;
  /// Refreshes `cachedWindows`, waiting for it at most `timeoutSeconds`; an answer that comes later
  /// still replaces it. Makes no permission test.
  void refreshWindowsBlocking(double timeoutSeconds);
  /// The last list that a refresh gave. Any thread.
  std::vector<platform::WindowRecord> cachedWindows() const { return cachedWindows_.load(); }
  /// Opens the system's settings page for the permission to capture the screen.
  void openScreenRecordingSettings();

  // Registry.

  const Mirrors& mirrors() const { return mirrors_; }
  /// Opens a mirror of `window`, or unrolls the one it has and brings it to the front.
  void mirror(const platform::WindowRecord& window);
  /// Closes every mirror, without their `onClosed`.
  void closeAll();

  // Menus.

  void hideAllAction(const platform::MenuItem& sender);
  /// Brings the mirror that the item stands for to the front.
  void focusFromMenu(const platform::MenuItem& sender);
  /// Fills the menu with the open mirrors.
  void rebuildFocusMenu(platform::Menu& menu);
  void menuNeedsUpdate(platform::Menu& menu) override;

 private:
  WindowMirrorManager() = default;

  Mirrors mirrors_;
  platform::Guarded<std::vector<platform::WindowRecord>> cachedWindows_;
};

}  // namespace vistrel
