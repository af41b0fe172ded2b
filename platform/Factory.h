#pragma once

#include <memory>
#include <string>

namespace vistrel::platform {

class Backend;

/// How many instances of the program there may be on a desktop.
enum class Instances {
  /// Started again, it shows the one that runs, as a click on its icon does.
  one,
  any,
};

struct BackendOrFailure {
  std::unique_ptr<Backend> backend;
  /// Why there is none: one line for a person, without a line feed. Empty when nothing is left to
  /// do, since the instance that runs has been shown.
  std::string failure;
};

/// The backend of the desktop that this program was built for; each backend's library defines it.
/// Main thread, once.
BackendOrFailure makeBackend(int argc, char** argv, Instances instances);

/// The same for the program's self-tests, which must also run where there is no desktop: it then
/// has no screens, no displays, and classes for virtual ones only where these are not the
/// desktop's. They use its application, screens, displays, virtual displays, dispatch and standard
/// error alone. Never null. Main thread, once.
std::unique_ptr<Backend> makeSelfTestBackend(int argc, char** argv);

}  // namespace vistrel::platform
