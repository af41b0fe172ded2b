#include "tests/support/PrivatePipeWire.h"

#include <filesystem>
#include <fstream>

namespace vistrel::testbed {
namespace {

namespace fs = std::filesystem;

// WirePlumber 0.4's own configuration, without what opens the machine's devices.
void configure(const fs::path& home) {
  const fs::path config = home / "config/wireplumber";
  fs::create_directories(config / "main.lua.d");
  fs::create_directories(config / "bluetooth.lua.d");
  std::ofstream(config / "main.lua.d/90-enable-all.lua")
      << "load_module(\"metadata\")\ndefault_access.enable()\n";
  std::ofstream(config / "bluetooth.lua.d/90-enable-all.lua").flush();
}

/// WirePlumber ends where it does not find it.
ChildProcess::Command afterPipeWire(ChildProcess& pipeWire, const PrivateHome& home,
                                    const std::vector<std::string>& environment) {
  configure(home.path());
  awaitStart(pipeWire, "pipewire", [&] { return fs::exists(home.path() / "runtime/pipewire-0"); });
  return {.arguments = {"wireplumber"}, .environment = environment};
}

}  // namespace

PrivatePipeWire::PrivatePipeWire(const PrivateHome& home,
                                 const std::vector<std::string>& environment)
    : pipeWire_({.arguments = {"pipewire"}, .environment = environment}),
      wirePlumber_(afterPipeWire(pipeWire_, home, environment)) {
  awaitStart(wirePlumber_, "wireplumber", [&] {
    ChildProcess list({.arguments = {"pw-cli", "ls", "Metadata"}, .environment = environment});
    return list.waitForEnd() && list.standardOutput().find("default") != std::string::npos;
  });
}

}  // namespace vistrel::testbed
