#pragma once

#include <memory>
#include <string>

namespace vistrel::platform {

class Backend;

struct BackendOrFailure {
  std::unique_ptr<Backend> backend;
  /// Why there is none: one line for a person, without a line feed.
  std::string failure;
};

/// The backend of the desktop that this program was built for; each backend's library defines it.
/// Main thread, once.
BackendOrFailure makeBackend(int argc, char** argv);

}  // namespace vistrel::platform
