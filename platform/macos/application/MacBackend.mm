#include "platform/macos/application/MacBackend.h"

#import <CoreGraphics/CoreGraphics.h>

#include "platform/Factory.h"
#include "platform/WithoutDesktop.h"
#include "platform/macos/CFOwned.h"

namespace vistrel::platform {

namespace macos {

namespace {

/// Whether there is a window server to talk to. AppKit ends the process where there is none, as
/// for a person who is logged in from another machine alone.
bool hasDesktop() { return CFOwned<CFDictionaryRef>(CGSessionCopyCurrentDictionary()) != nullptr; }

}  // namespace

Application& MacBackend::application() {
  if (!application_) application_.emplace();
  return *application_;
}

}  // namespace macos

using namespace macos;

/// That there is one instance of a bundle is the system's business: opened again, it has the one
/// that runs show itself. "open -n", with which the program relaunches itself, asks for another.
BackendOrFailure makeBackend(int /*argc*/, char** /*argv*/, Instances /*instances*/) {
  if (!hasDesktop()) return {nullptr, "vistrel: no desktop: this session has no window server"};
  return {std::make_unique<MacBackend>(), {}};
}

std::unique_ptr<Backend> makeSelfTestBackend(int /*argc*/, char** /*argv*/) {
  if (hasDesktop()) return std::make_unique<MacBackend>();
  return makeBackendWithoutDesktop(std::make_unique<GrandCentralDispatch>(),
                                   std::make_unique<ObjectiveCClasses>(),
                                   std::make_unique<StandardError>());
}

}  // namespace vistrel::platform
