#pragma once

#include "platform/Backend.h"

namespace vistrel::platform::linux_desktop {

/// The surroundings of the process by the XDG specifications and the person's locale.
class QtWorkspace final : public WorkspaceBackend {
 public:
  /// Spawns nothing where no program is registered for the URL's scheme.
  bool openURL(const std::string& url) override;
  bool openNewInstance(const std::string& bundlePath) override;
  std::int32_t processIdentifier() override;
  std::string mainBundlePath() override;
  ComparisonResult localizedCaseInsensitiveCompare(const std::string& a,
                                                   const std::string& b) override;
};

}  // namespace vistrel::platform::linux_desktop
