#include "platform/linux/LinuxBackend.h"

#include <unistd.h>
#include <utility>

#include "platform/Factory.h"
#include "platform/linux/Environment.h"
#include "platform/linux/OpenSession.h"
#include "platform/linux/Trace.h"
#include "platform/linux/WaylandModule.h"
#include "platform/linux/WithoutDisplay.h"

namespace vistrel::platform {

namespace linux_desktop {

void SessionScreenCapture::getShareableContent(DesktopWindows desktopWindows,
                                               ListedWindows listedWindows,
                                               ShareableContentCompletion completion) {
  lister_.request(desktopWindows, listedWindows, std::move(completion));
}

std::shared_ptr<Stream> SessionScreenCapture::makeStream(const ContentFilter& filter,
                                                         const StreamConfiguration& configuration,
                                                         std::weak_ptr<StreamDelegate> delegate) {
  return streams_.makeStream(filter, configuration, std::move(delegate));
}

std::shared_ptr<ImageContext> SessionScreenCapture::makeImageContext(
    const ImageContextOptions& options) {
  return streams_.makeImageContext(options);
}

LinuxBackend::LinuxBackend(std::unique_ptr<Session> session, char* programPath)
    : session_(std::move(session)),
      programPath_(programPath),
      screenCapture_(*session_->windowLister, *session_->windowStreams),
      virtualDisplays_(session_->hiddenDisplays) {}

QtDesktop& LinuxBackend::toolkit() {
  if (!qt_) qt_ = QtDesktop::start(programPath_, *session_);
  return *qt_;
}

}  // namespace linux_desktop

using namespace linux_desktop;

BackendOrFailure makeBackend(int /*argc*/, char** argv, Instances instances) {
  openMissingStandardStreams();
  beginTrace(environmentVariable("VISTREL_TRACE"));
  auto [session, failure] = openSession(instances);
  if (!session) {
    // Who has started it from a menu reads no standard error.
    if (!failure.empty() && isatty(STDERR_FILENO) == 0) notifyOfFailure(failure);
    return {nullptr, failure};
  }
  auto backend = std::make_unique<LinuxBackend>(std::move(session), argv[0]);
  // The other parts of the backend are asked for on any thread.
  backend->application();
  return {std::move(backend), {}};
}

std::unique_ptr<Backend> makeSelfTestBackend(int /*argc*/, char** argv) {
  openMissingStandardStreams();
  auto [session, failure] = openSession(Instances::any);
  if (!session) return makeBackendWithoutDisplay();
  return std::make_unique<LinuxBackend>(std::move(session), argv[0]);
}

}  // namespace vistrel::platform
