#pragma once

#include <concepts>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "tests/support/ChildProcess.h"
#include "tests/support/OrdinaryUser.h"
#include "tests/support/PrivateHome.h"
#include "tests/support/PrivatePipeWire.h"
#include "tests/support/SessionBus.h"

namespace vistrel::testbed {

/// A Wayland session of a test's own, whatever its compositor: PipeWire and its session manager, a
/// session bus, and a home for its programs. As root, the process of the test becomes an ordinary
/// user first. Everything ends with this object, also when the test failed or was killed.
class WaylandSession {
 public:
  WaylandSession(const WaylandSession&) = delete;
  WaylandSession& operator=(const WaylandSession&) = delete;

  /// As in the environment variable WAYLAND_DISPLAY.
  static constexpr const char* waylandName = "wayland-0";
  /// As in the environment variable DISPLAY; empty without XWayland.
  const std::string& xName() const { return xName_; }
  const std::string& busAddress() const { return bus_->address(); }
  /// The whole environment for programs of this session.
  std::vector<std::string> environment() const;
  /// Makes this process itself a program of the session. Before any thread reads the environment.
  void adoptEnvironment() const { testbed::adoptEnvironment(environment()); }
  const std::filesystem::path& home() const { return home_.path(); }

  pid_t compositorPid() const { return compositor_->pid(); }
  /// Throws std::runtime_error without XWayland.
  pid_t xwaylandPid() const;
  /// The compositor ends at once, as in a crash, and XWayland with it.
  void killCompositor();
  void stopPipeWire() { pipeWire_.reset(); }
  /// Returns once streams can start.
  void startPipeWire();

 protected:
  /// What the session's programs find in the environment, "NAME=value", instead of the home's under
  /// those names: as the desktop has it, and as the person does. Nothing runs yet.
  WaylandSession(std::vector<std::string> ofDesktop, const std::vector<std::string>& ofPerson);
  ~WaylandSession();

  const PrivateHome& privateHome() const { return home_; }
  void startBus();
  /// Returns once `isReady`. Throws std::runtime_error, with what it wrote, when it does not start.
  template <std::predicate Condition>
  void startCompositor(const ChildProcess::Command& command, Condition&& isReady) {
    compositor_ = std::make_unique<ChildProcess>(command);
    awaitStart(*compositor_, command.arguments.front(), isReady);
  }
  ChildProcess& compositor() { return *compositor_; }
  void setXDisplay(std::string name, std::string authority);

 private:
  const OrdinaryUser user_;
  const PrivateHome home_;
  std::vector<std::string> variables_;
  std::unique_ptr<SessionBus> bus_;
  std::unique_ptr<PrivatePipeWire> pipeWire_;
  std::unique_ptr<ChildProcess> compositor_;
  std::string xName_;
  std::string xAuthority_;
};

}  // namespace vistrel::testbed
