#pragma once

#include <memory>
#include <string>
#include <vector>

#include "tests/support/GnomePortal.h"
#include "tests/support/SystemBus.h"
#include "tests/support/WaylandSession.h"

namespace vistrel::testbed {

/// A Wayland session of mutter, or of GNOME's own shell, without a screen and with XWayland, which
/// begins with its first client. Each window opens in the middle of what panels leave free of the
/// screen. There is a system bus too, on which a stand-in answers for logind.
class MutterSession : public WaylandSession {
 public:
  struct Options {
    /// Of its one monitor, in logical pixels.
    int width = 1280;
    int height = 1024;
    /// Whether gnome-shell stands where mutter does alone otherwise.
    bool isGnomeShell = false;
    /// Whether the desktop's own portal runs, with its dialogs. Of gnome-shell alone, which knows
    /// the windows that they list.
    bool hasPortal = false;
    /// Further variables of the session's programs, as a person's login sets them: "NAME=value".
    std::vector<std::string> variables = {};
  };

  /// Returns once programs can be started and streamed, and the portal answers. Throws
  /// std::runtime_error, with what the programs wrote, when one of them does not start.
  MutterSession() : MutterSession(Options{}) {}
  explicit MutterSession(const Options& options);
  ~MutterSession();

  /// The desktop's own portal ends.
  void stopPortal() { portal_.reset(); }
  /// Returns once it answers.
  void startPortal();

 private:
  void startMutter(const Options& options);
  void letTestIn() const;

  SystemBus systemBus_;
  std::unique_ptr<GnomePortal> portal_;
};

}  // namespace vistrel::testbed
