#pragma once

#include <QSocketNotifier>
#include <functional>
#include <memory>

namespace vistrel::platform::linux_desktop {

/// Follows the person's session by its manager (X Session Management Protocol 1.0), as a client of
/// its own: the toolkit is another, and Qt 6.4.2 does not tell that the end of a session has been
/// cancelled. What a session's end is for a program is the toolkit's affair. Main thread.
class SessionEnd {
 public:
  struct Callbacks {
    /// Programs are saving what they are to begin with next time. The session waits for its return.
    std::function<void()> saving;
    /// All have saved, and the session goes on.
    std::function<void()> goesOn;
  };
  /// Nothing is called where the toolkit knows no session manager, or once that is gone.
  explicit SessionEnd(Callbacks callbacks);
  SessionEnd(const SessionEnd&) = delete;
  SessionEnd& operator=(const SessionEnd&) = delete;
  ~SessionEnd();

 private:
  /// The protocol library's types stay out of this header.
  struct Client;

  const std::unique_ptr<Client> client_;
};

}  // namespace vistrel::platform::linux_desktop
