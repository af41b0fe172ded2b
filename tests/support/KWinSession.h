#pragma once

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

/// A Wayland session of a test's own: KWin without a screen, with XWayland, PipeWire and its
/// session manager, a session bus, and a home for its programs. KWin is not for root: as root, the
/// process of the test becomes an ordinary user first. Everything ends with this object, also when
/// the test failed or was killed.
class KWinSession {
 public:
  struct Options {
    /// Of each output, in logical pixels.
    int width = 1280;
    int height = 1024;
    double scale = 1;
    /// Side by side.
    int outputs = 1;
    int desktops = 2;
    bool hasXWayland = true;
    /// Whether this test may see and stream windows of others, and give input as a person does.
    bool grantsTest = true;
    /// Programs that may do so too.
    std::vector<std::filesystem::path> granted = {};
    /// Further variables of the session's programs, as a person's login sets them: "NAME=value".
    std::vector<std::string> variables = {};
  };

  /// Returns once programs can be started and streamed. Throws std::runtime_error, with what the
  /// programs wrote, when one of them does not start.
  KWinSession() : KWinSession(Options{}) {}
  explicit KWinSession(const Options& options);
  ~KWinSession();
  KWinSession(const KWinSession&) = delete;
  KWinSession& operator=(const KWinSession&) = delete;

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

  pid_t kwinPid() const { return kwin_->pid(); }
  /// Throws std::runtime_error without XWayland.
  pid_t xwaylandPid() const;
  /// The compositor ends at once, as in a crash.
  void killKWin();
  void stopPipeWire() { pipeWire_.reset(); }
  /// Returns once streams can start.
  void startPipeWire();
  /// Lets another program do what `Options::granted` may do. Returns once KWin can know of it.
  void grant(const std::filesystem::path& program);

 private:
  void grantWithoutNotice(const std::filesystem::path& program) const;
  void rebuildServiceCache() const;
  void startKWin(const Options& options);

  const OrdinaryUser user_;
  const std::vector<std::string> variables_;
  const PrivateHome home_;
  std::string xName_;
  std::string xAuthority_;
  std::unique_ptr<SessionBus> bus_;
  std::unique_ptr<PrivatePipeWire> pipeWire_;
  std::unique_ptr<ChildProcess> kwin_;
};

}  // namespace vistrel::testbed
