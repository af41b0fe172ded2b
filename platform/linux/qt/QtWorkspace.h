#pragma once

#include "platform/Backend.h"
#include "platform/Workspace.h"
#include "platform/linux/X11Desktop.h"

namespace vistrel::platform::linux_desktop {

/// The surroundings of the process by the XDG specifications and the person's locale.
class QtWorkspace final : public WorkspaceBackend {
 public:
  explicit QtWorkspace(X11Desktop& desktop) : desktop_(desktop) {}

  /// Spawns nothing where no program is registered for the URL's scheme.
  bool openURL(const std::string& url) override;
  bool openNewInstance(const std::string& bundlePath) override;
  std::int32_t processIdentifier() override;
  std::shared_ptr<RunningApplication> runningApplication(std::int32_t processID) override;
  std::string mainBundlePath() override;
  /// The version that the program was built as; there is no bundle.
  std::optional<std::string> bundleInfo(const std::string& key) override;
  ComparisonResult localizedCaseInsensitiveCompare(const std::string& a,
                                                   const std::string& b) override;

 private:
  X11Desktop& desktop_;
};

}  // namespace vistrel::platform::linux_desktop
