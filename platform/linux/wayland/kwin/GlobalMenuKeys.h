#pragma once

#include <functional>
#include <memory>
#include <systemd/sd-bus.h>

namespace vistrel::platform::linux_desktop {

/// The keys that ask for a context menu, Menu and Shift+F10, as global shortcuts of KWin's
/// (org.kde.kglobalaccel), so that they are heard whatever window has the keyboard. They are of the
/// kind that belongs to a session: no settings list them. KWin keeps them when the program goes.
/// One thread.
class GlobalMenuKeys {
 public:
  /// Null where no session bus answers.
  static std::unique_ptr<GlobalMenuKeys> connect(std::function<void()> pressed);
  GlobalMenuKeys(const GlobalMenuKeys&) = delete;
  GlobalMenuKeys& operator=(const GlobalMenuKeys&) = delete;
  ~GlobalMenuKeys() = default;

  /// A key that is another shortcut already stays that.
  void take();
  /// Returns once KWin is told, also of what an earlier run has taken.
  void release();

  /// The socket; the bus keeps it.
  int descriptor() const;
  /// Tells of presses that have come in. False once the bus is lost.
  bool serve();

 private:
  struct Close {
    void operator()(sd_bus* bus) const { sd_bus_flush_close_unref(bus); }
  };

  GlobalMenuKeys(sd_bus* bus, std::function<void()> pressed);

  static int hear(sd_bus_message* signal, void* keys, sd_bus_error* error);
  void call(const char* method, const std::function<void(sd_bus_message& call)>& write);

  const std::unique_ptr<sd_bus, Close> bus_;
  const std::function<void()> pressed_;
};

}  // namespace vistrel::platform::linux_desktop
