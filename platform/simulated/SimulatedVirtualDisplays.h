#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "platform/VirtualDisplayClasses.h"
#include "platform/simulated/SimulatedDisplays.h"

namespace vistrel::platform::simulated {

/// What the server does with virtual displays that are asked for from now on.
struct VirtualDisplayScript {
  /// Refuses descriptors.
  bool refusesDescriptors = false;
  /// Rejects settings.
  bool rejectsSettings = false;
  /// Gives displays the id 0.
  bool givesNoID = false;
  /// When a display comes online: seconds after its settings were applied, or never. It has no
  /// bounds before.
  std::optional<double> onlineAfter = 0;
  /// Where it is before anybody places it.
  Point origin{-5000, 0};
};

/// The server that virtual displays come from.
class SimulatedVirtualDisplayServer
    : public VirtualDisplayServer,
      public std::enable_shared_from_this<SimulatedVirtualDisplayServer> {
 public:
  explicit SimulatedVirtualDisplayServer(SimulatedDisplays& displays) : displays_(displays) {}

  void setScript(const VirtualDisplayScript& script) { script_ = script; }
  /// It hosts virtual displays from now on, or none.
  void setHosts(bool hosts) { hosts_ = hosts; }
  /// Every descriptor that made a display, and all settings that were applied.
  const std::vector<VirtualDisplayDescriptor>& descriptors() const { return descriptors_; }
  const std::vector<VirtualDisplaySettings>& settings() const { return settings_; }
  /// The displays that have not been removed, online or not.
  const std::set<DisplayID>& live() const { return live_; }

  bool hostsVirtualDisplays() override { return hosts_; }
  std::optional<DisplayID> createDisplay(const VirtualDisplayDescriptor& descriptor) override;
  bool applySettings(DisplayID display, const VirtualDisplaySettings& settings) override;
  void removeDisplay(DisplayID display) override;

 private:
  SimulatedDisplays& displays_;
  bool hosts_ = true;
  VirtualDisplayScript script_;
  std::vector<VirtualDisplayDescriptor> descriptors_;
  std::vector<VirtualDisplaySettings> settings_;
  std::set<DisplayID> live_;
};

/// Where the classes are not as they are known.
struct OddVirtualDisplayClasses {
  /// The names of those that make no objects.
  std::set<std::string> makingNothing;
  /// What objects answer to these selectors in place of what the class answers.
  std::map<std::string, RuntimeValue, std::less<>> answers;
};

/// The classes, with every message to them and their objects in the journal, as in
/// "CGVirtualDisplayDescriptor setMaxPixelsWide: 1280". Main thread.
class SimulatedVirtualDisplays : public VirtualDisplayBackend {
 public:
  SimulatedVirtualDisplays(SimulatedDisplays& displays, CallJournal& journal);

  /// The system has no classes of these names from now on.
  void setMissing(std::set<std::string> names) { missing_ = std::move(names); }
  void setOddities(OddVirtualDisplayClasses oddities) { oddities_ = std::move(oddities); }
  SimulatedVirtualDisplayServer& server() { return *server_; }

  std::shared_ptr<RuntimeClass> classNamed(const std::string& name) override;

 private:
  const std::shared_ptr<SimulatedVirtualDisplayServer> server_;
  VirtualDisplayClasses classes_;
  CallJournal& journal_;
  std::set<std::string> missing_;
  OddVirtualDisplayClasses oddities_;
};

}  // namespace vistrel::platform::simulated
