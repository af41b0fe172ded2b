#pragma once

#include <memory>

namespace vistrel::platform::linux_desktop {

/// Sees to it that a dialog of the portal's stays open until a person has answered it, however this
/// program ends before that: the portal withdraws the dialogs of a program whose connection to the
/// session bus goes, and the GNOME backend 43.1 crashes then. `vistrel-dialog-keeper`, a process of
/// its own, holds the connection open as well. Not needed any more once this object is destroyed.
class DialogKeeper {
 public:
  /// `bus` is the connection's socket. Null where the keeper does not start.
  static std::unique_ptr<DialogKeeper> start(int bus);
  DialogKeeper(const DialogKeeper&) = delete;
  DialogKeeper& operator=(const DialogKeeper&) = delete;
  ~DialogKeeper();

 private:
  explicit DialogKeeper(int keeper) : keeper_(keeper) {}

  const int keeper_;  // a socket; owned
};

}  // namespace vistrel::platform::linux_desktop
