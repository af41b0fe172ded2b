#pragma once

#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "platform/Backend.h"
#include "platform/Workspace.h"

namespace vistrel::platform::simulated {

/// The surroundings of the process, which record what they were asked for. Main thread, except
/// where Workspace.h and Text.h say otherwise.
class SimulatedWorkspace : public WorkspaceBackend {
 public:
  void setProcessIdentifier(std::int32_t pid) { pid_ = pid; }
  void setMainBundlePath(std::string path) { bundlePath_ = std::move(path); }
  /// What `openURL` and `openNewInstance` answer from now on.
  void setOpensURLs(bool opens) { opensURLs_ = opens; }
  void setStartsInstances(bool starts) { startsInstances_ = starts; }

  /// A program with that process id runs from now on.
  void startApplication(std::int32_t processID) { running_.insert(processID); }
  /// None for what the bundle does not say.
  void setBundleInfo(const std::string& key, std::optional<std::string> value) {
    bundleInfo_[key] = std::move(value);
  }

  /// Of running programs brought to the front, in order: process ids.
  const std::vector<std::int32_t>& activatedApplications() const { return activated_; }
  const std::vector<std::string>& openedURLs() const { return openedURLs_; }
  /// Bundle paths, in order.
  const std::vector<std::string>& startedInstances() const { return startedInstances_; }

  bool openURL(const std::string& url) override;
  bool openNewInstance(const std::string& bundlePath) override;
  std::int32_t processIdentifier() override { return pid_; }
  std::shared_ptr<RunningApplication> runningApplication(std::int32_t processID) override;
  std::string mainBundlePath() override { return bundlePath_; }
  std::optional<std::string> bundleInfo(const std::string& key) override;
  /// Folds the letters of ASCII, Latin-1, Greek and Cyrillic, then compares code points.
  ComparisonResult localizedCaseInsensitiveCompare(const std::string& a,
                                                   const std::string& b) override;

 private:
  std::int32_t pid_ = 4711;
  std::string bundlePath_ = "/simulated/Vistrel.app";
  std::map<std::string, std::optional<std::string>> bundleInfo_;
  std::set<std::int32_t> running_;
  std::vector<std::int32_t> activated_;
  bool opensURLs_ = true;
  bool startsInstances_ = true;
  std::vector<std::string> openedURLs_;
  std::vector<std::string> startedInstances_;
};

}  // namespace vistrel::platform::simulated
