#pragma once

#include <functional>
#include <string>

#include "platform/Backend.h"
#include "platform/Workspace.h"
#include "platform/linux/qt/windows/PeerHost.h"
#include "platform/linux/session/ProgramInstance.h"
#include "platform/linux/session/WindowActivation.h"

namespace vistrel::platform::linux_desktop {

/// The surroundings of the process by the XDG specifications and the person's locale.
class QtWorkspace final : public WorkspaceBackend {
 public:
  /// Does what it can for a URL that no program serves; answers whether that is anything.
  using Unserved = std::function<bool(const std::string& url)>;

  /// The first three outlive it. Made when the program starts.
  QtWorkspace(PeerHost& windows, WindowActivation& activation, ProgramInstance& instance,
              Unserved unserved);

  /// Spawns nothing where no program is registered for the URL's scheme.
  bool openURL(const std::string& url) override;
  /// Also where programs are held to one instance: this one leaves its place to the new one.
  bool openNewInstance(const std::string& bundlePath) override;
  std::int32_t processIdentifier() override;
  std::shared_ptr<RunningApplication> runningApplication(std::int32_t processID) override;
  /// The program's file, or the one that has taken its place since the program was started.
  std::string mainBundlePath() override;
  /// The version that the program was built as; there is no bundle.
  std::optional<std::string> bundleInfo(const std::string& key) override;
  ComparisonResult localizedCaseInsensitiveCompare(const std::string& a,
                                                   const std::string& b) override;

 private:
  PeerHost& windows_;
  WindowActivation& activation_;
  ProgramInstance& instance_;
  const Unserved unserved_;
  const std::string programPath_;
};

}  // namespace vistrel::platform::linux_desktop
