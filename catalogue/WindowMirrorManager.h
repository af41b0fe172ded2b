#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <vector>

#include "mirror/WindowMirrorHUDController.h"
#include "platform/Guarded.h"
#include "platform/Menu.h"
#include "platform/ScreenCapture.h"

namespace vistrel {

/// The catalogue of windows that can be mirrored and the registry of open mirrors, at most one per
/// window. Main thread; answers of the capture service hop there, except where said otherwise.
class WindowMirrorManager : public platform::MenuDelegate,
                            public MirrorHost,
                            public std::enable_shared_from_this<WindowMirrorManager> {
 public:
  using Windows = std::vector<platform::WindowRecord>;
  using FetchCompletion = std::function<void(Windows windows)>;
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
  Windows filteredWindows(const Windows& windows) const;
  /// Refreshes `cachedWindows`, waiting for it at most `timeoutSeconds`; an answer that comes later
  /// still replaces it. Makes no permission test.
  void refreshWindowsBlocking(double timeoutSeconds);
  /// The last list that a refresh gave. Any thread.
  Windows cachedWindows() const { return cachedWindows_.load(); }
  /// Opens the system's settings page for the permission to capture the screen.
  void openScreenRecordingSettings();

  // Registry.

  const Mirrors& mirrors() const { return mirrors_; }
  /// Opens a mirror of `window`, or unrolls the one it has and brings it to the front.
  void mirror(const platform::WindowRecord& window);
  std::size_t mirrorCount() const override { return mirrors_.size(); }
  /// Closes every mirror, without their `onClosed`.
  void closeAll() override;
  platform::Rect snap(const platform::Rect& rect,
                      const WindowMirrorHUDController& excluding) const override;

  // Menus.

  /// A menu of the windows that can be mirrored, made and filled on the spot, which may take 0.7
  /// seconds.
  std::shared_ptr<platform::Menu> makeDockPickerMenu();
  /// Fills the menu with the windows listed last, and again, open or not, once the list has been
  /// asked for anew.
  void rebuildPicker(platform::Menu& menu);
  /// Replaces the menu's items by `windows`, which are grouped by application.
  void populatePicker(platform::Menu& menu, const Windows& windows);
  /// Mirrors the window that the item stands for.
  void pickFromMenu(const platform::MenuItem& sender);
  void openSettingsFromMenu();
  void hideAllAction();
  /// Brings the mirror that the item stands for to the front, unless it has been closed since.
  void focusFromMenu(const platform::MenuItem& sender);
  /// Fills the menu with the open mirrors.
  void rebuildFocusMenu(platform::Menu& menu);
  /// Fills the menu with mirrors or windows, by its title.
  void menuNeedsUpdate(platform::Menu& menu) override;

 private:
  /// None where the capture service failed or the manager is gone.
  using WindowsAnswer = std::function<void(std::optional<Windows> windows)>;

  WindowMirrorManager() = default;

  /// Asks a person only where the permission is not there yet.
  static bool isScreenCaptureAllowed();
  /// Has the capture service answer, on a queue of its own, with what is listed.
  void requestWindows(WindowsAnswer answer);
  /// What stands in a menu for the windows while the permission is missing.
  std::shared_ptr<platform::MenuItem> permissionItem();
  std::shared_ptr<platform::MenuItem> windowItem(const platform::WindowRecord& window);

  Mirrors mirrors_;
  platform::Guarded<Windows> cachedWindows_;
};

}  // namespace vistrel
