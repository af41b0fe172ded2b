#pragma once

#include <QApplication>
#include <array>
#include <optional>

#include "tests/support/PrivateHome.h"

namespace vistrel::platform::linux_desktop {

/// The toolkit without a display, for what needs its fonts or widgets, in a home of its own. One at
/// a time, for a whole process.
class OffscreenQt {
 public:
  /// Makes it on first use. It is never destroyed: the toolkit's own static objects, some of which
  /// it makes later, need it while they go.
  static void start() {
    static const testbed::PrivateHome home;
    [[maybe_unused]] static auto& started = *new OffscreenQt(home);
  }

 private:
  explicit OffscreenQt(const testbed::PrivateHome& home) {
    testbed::adoptEnvironment(home.environment());
    application_.emplace(count_, arguments_.data());
  }

  std::array<char, 6> name_ = {"tests"};
  std::array<char, 10> option_ = {"-platform"};
  std::array<char, 10> platform_ = {"offscreen"};
  std::array<char*, 4> arguments_ = {name_.data(), option_.data(), platform_.data(), nullptr};
  int count_ = 3;
  std::optional<QApplication> application_;
};

}  // namespace vistrel::platform::linux_desktop
