#pragma once

#include <memory>
#include <string>
#include <vector>

#include "tests/support/ChildProcess.h"

namespace vistrel::testbed {

/// The portal of a session of GNOME's, with its dialogs (xdg-desktop-portal,
/// xdg-desktop-portal-gnome).
class GnomePortal {
 public:
  /// Returns once it answers. Throws std::runtime_error, with what the programs wrote, when one of
  /// them does not start.
  GnomePortal(const std::string& busAddress, const std::vector<std::string>& environment);

 private:
  std::vector<std::unique_ptr<ChildProcess>> programs_;
};

}  // namespace vistrel::testbed
