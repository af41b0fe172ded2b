#pragma once

#include "platform/Backend.h"

namespace vistrel::platform::macos {

/// What AppKit and Foundation know of this process, its bundle and the programs beside it.
class AppKitWorkspace final : public WorkspaceBackend {
 public:
  bool openURL(const std::string& url) override;
  bool openNewInstance(const std::string& bundlePath) override;
  std::int32_t processIdentifier() override;
  std::shared_ptr<RunningApplication> runningApplication(std::int32_t processID) override;
  std::string mainBundlePath() override;
  std::optional<std::string> bundleInfo(const std::string& key) override;
  ComparisonResult localizedCaseInsensitiveCompare(const std::string& a,
                                                   const std::string& b) override;
};

}  // namespace vistrel::platform::macos
