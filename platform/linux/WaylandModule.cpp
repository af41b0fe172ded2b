#include "platform/linux/WaylandModule.h"

#include <dlfcn.h>
#include <filesystem>
#include <string>
#include <system_error>

#include "platform/linux/Environment.h"
#include "platform/linux/Trace.h"

namespace vistrel::platform::linux_desktop {
namespace {

/// Beside the program, as it is built, or where it is installed.
void* loadModule() {
  std::error_code failure;
  const auto program = std::filesystem::read_symlink("/proc/self/exe", failure);
  for (const char* place : {"vistrel-wayland.so", VISTREL_INSTALLED_WAYLAND}) {
    const auto path = program.parent_path() / place;
    if (!std::filesystem::exists(path, failure)) continue;
    return dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
  }
  return nullptr;
}

std::string failureToLoad() {
  const char* const failure = dlerror();
  return "native windows are not offered: " +
         std::string(failure == nullptr ? "vistrel-wayland.so is not installed" : failure);
}

}  // namespace

void joinWaylandSession(Session& session) {
  if (environmentVariable("WAYLAND_DISPLAY").empty()) return;
  // It stays: blocks that wait on queues are its code.
  void* const module = loadModule();
  void* const join = module == nullptr ? nullptr : dlsym(module, "vistrelJoinWaylandSession");
  if (join == nullptr) return trace(TraceTopic::start, failureToLoad);
  reinterpret_cast<void (*)(Session&)>(join)(session);
}

}  // namespace vistrel::platform::linux_desktop
