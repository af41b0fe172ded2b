#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <systemd/sd-bus.h>

#include "platform/linux/SerialQueue.h"

namespace vistrel::platform::linux_desktop {

/// Where the portal has its object, and what of it shares windows (xdg-desktop-portal,
/// org.freedesktop.portal.ScreenCast).
inline constexpr const char* desktopPath = "/org/freedesktop/portal/desktop";
inline constexpr const char* screenCast = "org.freedesktop.portal.ScreenCast";

/// Calls `visit` with the name of each entry of the a{sv} that a message goes on with; it answers
/// whether it has read the value.
template <class Visit>
void forEachEntry(sd_bus_message& message, const Visit& visit) {
  if (sd_bus_message_enter_container(&message, SD_BUS_TYPE_ARRAY, "{sv}") <= 0) return;
  while (sd_bus_message_enter_container(&message, SD_BUS_TYPE_DICT_ENTRY, "sv") > 0) {
    const char* name = nullptr;
    if (sd_bus_message_read_basic(&message, SD_BUS_TYPE_STRING, &name) <= 0) return;
    if (!visit(std::string_view(name))) sd_bus_message_skip(&message, "v");
    if (sd_bus_message_exit_container(&message) < 0) return;
  }
}

/// The session bus as one talks to xdg-desktop-portal over it, without waiting for anybody: a
/// portal may take as long as a person does, and it may hang. On its queue only.
class PortalBus : public std::enable_shared_from_this<PortalBus> {
 public:
  /// What a call has come to. `message` is null where it failed, and `error` the failure's name in
  /// D-Bus then.
  struct Reply {
    sd_bus_message* message = nullptr;
    std::string error;
  };
  using Write = std::function<void(sd_bus_message& call)>;
  using Answered = std::function<void(const Reply& reply)>;
  using Heard = std::function<void(sd_bus_message& signal)>;
  enum class PortalsLife { started, ended };
  using LifeHeard = std::function<void(PortalsLife change)>;
  /// Nothing is heard any more once it goes.
  using Subscription = std::shared_ptr<void>;

  /// Null where no bus answers.
  static std::shared_ptr<PortalBus> connect(const std::shared_ptr<SerialQueue>& queue);
  PortalBus(const PortalBus&) = delete;
  PortalBus& operator=(const PortalBus&) = delete;
  ~PortalBus();

  bool isLost() const { return isLost_; }
  /// The socket; the bus keeps it.
  int descriptor() const { return sd_bus_get_fd(bus_.get()); }
  /// Calls a method of the portal's object at `path`, whose arguments `write` appends. The answer
  /// comes once, later, and as a failure when the portal or the bus goes.
  void call(const std::string& path, const char* interface, const char* method, const Write& write,
            Answered answered);
  /// Hears what the portal's object at `path` signals from now on.
  Subscription listen(const std::string& path, const char* interface, const char* signal,
                      Heard heard);
  /// Hears that the portal's program has started or ended; the loss of the bus is an end.
  Subscription listenToPortalsLife(LifeHeard heard);
  /// The path of a request or a session of this program with the handle `token`
  /// (org.freedesktop.portal.Request, "handle_token").
  std::string pathOf(const char* kind, const std::string& token) const;

 private:
  struct Close {
    void operator()(sd_bus* bus) const { sd_bus_close_unref(bus); }
  };
  struct Call;
  struct Listener;

  PortalBus(const std::shared_ptr<SerialQueue>& queue, sd_bus* bus);

  void serve();
  void ownerHasChanged(sd_bus_message& signal);
  void portalHasEnded();
  void tell(PortalsLife change);
  Subscription match(const std::string& rule, Heard heard);

  const std::weak_ptr<SerialQueue> queue_;
  const std::unique_ptr<sd_bus, Close> bus_;
  std::map<const Call*, std::unique_ptr<Call>> calls_;
  std::map<int, LifeHeard> lifeListeners_;
  int lastLifeListener_ = 0;
  Subscription portalsOwner_;
  bool isLost_ = false;
};

}  // namespace vistrel::platform::linux_desktop
