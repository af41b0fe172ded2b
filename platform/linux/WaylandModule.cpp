#include "platform/linux/WaylandModule.h"

#include <dlfcn.h>
#include <string>

#include "platform/linux/Companions.h"
#include "platform/linux/Environment.h"
#include "platform/linux/Trace.h"

namespace vistrel::platform::linux_desktop {
namespace {

void* loadModule() {
  const auto path = companion("vistrel-wayland.so", VISTREL_INSTALLED_WAYLAND);
  return path.empty() ? nullptr : dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
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
