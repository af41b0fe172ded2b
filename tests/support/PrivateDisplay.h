#pragma once

#include <memory>
#include <string>
#include <vector>

#include "tests/support/ChildProcess.h"
#include "tests/support/DisplayServer.h"
#include "tests/support/PrivateHome.h"
#include "tests/support/SessionBus.h"
#include "tests/support/WindowManager.h"

namespace vistrel::testbed {

/// A desktop session of a test's own: a display server without a screen (which picks its number by
/// itself), a window manager, a session bus, and a home for its programs. Everything ends with this
/// object, also when the test failed or was killed.
class PrivateDisplay {
 public:
  struct Options {
    int width = 1280;
    int height = 1024;
    WindowManager windowManager = WindowManager::openbox;
    DisplayServer server = DisplayServer::fixed;
    /// Further arguments of the server.
    std::vector<std::string> serverArguments = {};
    /// Further variables of the session's programs, as a person's login sets them: "NAME=value".
    std::vector<std::string> variables = {};
  };

  /// Returns once the window manager manages. Throws std::runtime_error, with what the programs
  /// wrote, when one of them does not start.
  PrivateDisplay() : PrivateDisplay(Options{}) {}
  explicit PrivateDisplay(const Options& options);
  ~PrivateDisplay();

  /// As in the environment variable DISPLAY, e.g. ":7".
  const std::string& name() const { return name_; }
  /// Where the session's bus listens, as in DBUS_SESSION_BUS_ADDRESS.
  const std::string& busAddress() const { return bus_->address(); }
  /// The whole environment for programs of this session.
  std::vector<std::string> environment() const {
    return environmentOnBus(bus_ ? bus_->address() : "");
  }
  /// The same for programs of this session that use another bus.
  std::vector<std::string> environmentOnBus(const std::string& address) const;
  /// Makes this process itself a program of the session. Before any thread reads the environment.
  void adoptEnvironment() const { testbed::adoptEnvironment(environment()); }
  /// Where programs of this session find their home and XDG directories.
  const std::filesystem::path& home() const { return home_.path(); }

  /// The server's process, for measuring what it costs.
  pid_t serverPid() const { return server_->pid(); }
  /// The process of the session's bus.
  pid_t busPid() const { return bus_->pid(); }
  /// The process of the window manager, which must not be none.
  pid_t windowManagerPid() const { return windowManager_->pid(); }
  /// Another window manager takes over from the one that runs, if any; with none it just ends.
  /// Throws like the constructor.
  void replaceWindowManager(WindowManager manager);
  /// Ends the server, as when a person logs out.
  void stopServer() { server_.reset(); }

 private:
  void startServer(const Options& options);
  void startWindowManager(WindowManager manager);

  const std::vector<std::string> variables_;
  const PrivateHome home_;
  std::string name_;
  std::unique_ptr<ChildProcess> server_;
  std::unique_ptr<SessionBus> bus_;
  std::unique_ptr<ChildProcess> windowManager_;
};

}  // namespace vistrel::testbed
