#pragma once

#include <cstdint>
#include <functional>
#include <list>
#include <memory>
#include <string>
#include <vector>

#include "platform/ScreenCapture.h"
#include "platform/linux/SerialQueue.h"
#include "platform/linux/session/SharedScreenLayout.h"
#include "platform/linux/wayland/compositor/NativeWindowIds.h"
#include "platform/linux/wayland/portal/FirstFrame.h"
#include "platform/linux/wayland/portal/ScreenCastPortal.h"
#include "platform/linux/wayland/stream/StreamOffer.h"

namespace vistrel::platform::linux_desktop {

/// A picked window's node. It is asked for no more frames than a screen shows: where they follow
/// one another at once, mutter 43.8 loses more of what it tells of the pointer.
PipeWireNode pickedNode(std::uint32_t node, int remote);

/// The windows that a person has picked in the portal's dialog, each with the session in which it
/// is shared. A session ends once none of its streams has been wanted for a while, since the
/// desktop shows as long as it lives that something is shared. A window whose session has ended can
/// be streamed again by a person's wish: the portal finds it by its restore token, or has one
/// picked once more. Tokens are kept here alone. On its queue only, whose attachment it is.
class PickedWindows : public std::enable_shared_from_this<PickedWindows> {
 public:
  /// What picking has come to: the window, or null and what a person is told of it, if anything.
  using Picked = std::function<void(WindowRecord window, const std::string& status)>;
  /// Tells a stream's owner what shows the window; a null `remote`, that nothing does any more.
  using Tell = std::function<void(std::uint32_t node, SharedDescriptor remote)>;
  /// The windows that are shared at the moment, and those with all that may be again.
  using WindowsChanged =
      std::function<void(std::vector<WindowRecord> shared, std::vector<WindowRecord> all)>;

  /// How long a session usually may live without a stream that is wanted, in seconds. Capturing
  /// anew stops one and starts the next.
  static constexpr double usualIdle = 10;

  PickedWindows(const std::shared_ptr<SerialQueue>& queue,
                std::shared_ptr<const SharedScreenLayout> layout, double longestIdle,
                std::function<void(PickingOffer offer)> offerChanged,
                WindowsChanged windowsChanged);

  /// Asks the portal what it offers.
  void askPortal() { portal_->ask(); }
  void pick(std::string parentWindow, Picked picked);
  /// Starts a stream of a window, which is wanted, by a number that no other has had.
  void open(WindowID window, int stream, StreamRequest::Occasion occasion, Tell tell);
  void setWanted(WindowID window, int stream, bool isWanted);
  void release(WindowID window, int stream);

 private:
  struct Stream {
    int number;
    bool isWanted;
    Tell tell;
  };
  struct Window {
    WindowRecord record;
    std::shared_ptr<PortalSession> session;  // null once it has ended
    std::uint32_t node = 0;
    std::string restoreToken;  // empty where there is none
    std::list<Stream> streams;
    bool isReturning = false;  // its session is being started anew
    int idleTimes = 0;         // how often no stream was wanted any more
  };

  void started(const std::shared_ptr<PortalSession>& session, const PortalSession::Started& start,
               const Picked& picked);
  void add(const std::shared_ptr<PortalSession>& session, const PortalSession::Started& start,
           PixelSize size, const Picked& picked);
  Window* find(WindowID window);
  static bool isWanted(const Window& window);
  void connect(Window& window, const Stream& stream);
  void bringBack(Window& window);
  void endLater(Window& window);
  void endIfIdle(WindowID window, int idleTime);
  PortalSession::Closed whenClosed();
  void sessionHasEnded(const PortalSession& session);
  void endStreams(Window& window);
  void publish() const;

  const std::weak_ptr<SerialQueue> queue_;
  const std::shared_ptr<const SharedScreenLayout> layout_;
  const double longestIdle_;
  const WindowsChanged windowsChanged_;
  const std::shared_ptr<ScreenCastPortal> portal_;
  NativeWindowIds ids_;
  std::list<Window> windows_;
  std::unique_ptr<FirstFrame> firstFrame_;  // of the window picked last, while it is waited for
  int picks_ = 0;
};

}  // namespace vistrel::platform::linux_desktop
