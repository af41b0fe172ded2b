#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <variant>

#include "platform/linux/wayland/portal/DialogKeeper.h"
#include "platform/linux/wayland/portal/PortalBus.h"

namespace vistrel::platform::linux_desktop {

/// What the portal offers (org.freedesktop.portal.ScreenCast, properties); source types and cursor
/// modes are bits.
struct PortalOffer {
  static constexpr std::uint32_t windows = 2;
  static constexpr std::uint32_t cursorEmbedded = 2;
  static constexpr std::uint32_t cursorMetadata = 4;

  std::uint32_t version = 0;
  std::uint32_t sourceTypes = 0;
  std::uint32_t cursorModes = 0;
};

/// A file descriptor, which is closed with the last owner.
using SharedDescriptor = std::shared_ptr<const int>;

/// A session of the portal's in which one window is shared, from a person's picking it to the end.
/// The portal's dialog is never withdrawn: the GNOME backend 43.1 crashes then. On its bus's queue.
class PortalSession : public std::enable_shared_from_this<PortalSession> {
 public:
  struct Wish {
    /// What the dialog belongs to, as the portal names windows ("Common Conventions"); may be
    /// empty.
    std::string parentWindow;
    /// By which the portal finds the window of an earlier session again without a dialog, if it
    /// does; empty for none.
    std::string restoreToken;
  };
  struct Started {
    std::uint32_t node = 0;
    std::string restoreToken;  // good for one time; empty where the portal gives none
  };
  enum class Failure { cancelled, refused, gone };
  using Result = std::variant<Started, Failure>;
  using Closed = std::function<void(const PortalSession& session)>;
  using Completion = std::function<void(const Result& result)>;

  /// `closed` is called once the session, having been started, ends otherwise than by `close`.
  PortalSession(std::shared_ptr<PortalBus> bus, const PortalOffer& offer, Closed closed);
  PortalSession(const PortalSession&) = delete;
  PortalSession& operator=(const PortalSession&) = delete;
  ~PortalSession();

  /// Once. Lives at least until the completion, which comes once, later.
  void start(Wish wish, Completion completion);
  /// A connection to PipeWire that shows the window; null when there is none any more.
  void openRemote(std::function<void(SharedDescriptor remote)> completion);
  bool isOpen() const { return !path_.empty(); }
  /// What is shared is shared no more.
  void close();

 private:
  using Responded = std::function<void(std::uint32_t response, sd_bus_message& results)>;

  /// Calls a method that answers by a request's signal; `write` appends what precedes the options,
  /// `writeOptions` those beside the handle.
  void request(const char* method, const PortalBus::Write& write,
               const PortalBus::Write& writeOptions, const Responded& responded);
  void create();
  void selectSources();
  void ask();
  void finish(const Result& result);
  void end();

  const std::shared_ptr<PortalBus> bus_;
  const PortalOffer offer_;
  const Closed closed_;
  Wish wish_;
  Completion completion_;
  std::string path_;                            // of the session; empty while there is none
  std::unique_ptr<DialogKeeper> dialogKeeper_;  // while there may be a dialog
  PortalBus::Subscription closing_;
  PortalBus::Subscription portalsLife_;
};

}  // namespace vistrel::platform::linux_desktop
