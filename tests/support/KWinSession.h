#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "tests/support/WaylandSession.h"

namespace vistrel::testbed {

/// A Wayland session of KWin without a screen, with XWayland.
class KWinSession : public WaylandSession {
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

  /// Lets another program do what `Options::granted` may do. Returns once KWin can know of it.
  void grant(const std::filesystem::path& program);

 private:
  void grantWithoutNotice(const std::filesystem::path& program) const;
  void rebuildServiceCache() const;
  void startKWin(const Options& options);
};

}  // namespace vistrel::testbed
