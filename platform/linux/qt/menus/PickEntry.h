#pragma once

#include <QObject>
#include <QTimer>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "platform/Menu.h"
#include "platform/linux/session/WindowPicking.h"

namespace vistrel::platform::linux_desktop {

/// The way to the desktop's dialog in which a person picks a window: the same in all places that
/// show it. Main thread.
class PickEntry : public std::enable_shared_from_this<PickEntry> {
 public:
  struct Callbacks {
    /// The X window that the dialog is to stand in front of; 0 for none.
    std::function<std::uint32_t()> parent;
    std::function<void(const WindowRecord& picked)> picked;
  };

  static constexpr auto title = "Choose Another Window…";

  /// `picking` outlives it, or at least the event loop.
  static std::shared_ptr<PickEntry> make(WindowPicking& picking);

  bool isEnabled() const { return picking_.canPickInteractively(); }
  /// As `WindowPicking::status`.
  std::string status() const { return picking_.status(); }
  /// Opens the dialog; does nothing while there are no callbacks.
  Action action();
  /// A menu's line that stands for it as it is now.
  std::shared_ptr<MenuItem> item();

  /// Empty ones where the event loop runs no more.
  void setCallbacks(Callbacks callbacks);
  /// Calls `changed`, for as long as `follower` lives, at the next turn of the event loop after
  /// `isEnabled` or `status` has become another.
  void follow(const QObject& follower, const std::function<void()>& changed);

 private:
  explicit PickEntry(WindowPicking& picking);

  void perform();

  WindowPicking& picking_;
  Callbacks callbacks_;
  QTimer changed_;  // runs out at the next turn of the event loop
};

}  // namespace vistrel::platform::linux_desktop
