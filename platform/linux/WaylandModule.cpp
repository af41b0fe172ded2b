#include "platform/linux/WaylandModule.h"

#include <dlfcn.h>
#include <string>

#include "platform/linux/Companions.h"
#include "platform/linux/Environment.h"
#include "platform/linux/Trace.h"

namespace vistrel::platform::linux_desktop {
namespace {

/// A function of the Wayland half; null where this is no Wayland session, or without that half. The
/// module stays: blocks that wait on queues are its code.
void* functionOfModule(const char* name) {
  if (environmentVariable("WAYLAND_DISPLAY").empty()) return nullptr;
  const auto path = companion("vistrel-wayland.so", VISTREL_INSTALLED_WAYLAND);
  void* const module = path.empty() ? nullptr : dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
  void* const function = module == nullptr ? nullptr : dlsym(module, name);
  if (function == nullptr) {
    trace(TraceTopic::start, [] {
      const char* const failure = dlerror();
      return "native windows are not offered: " +
             std::string(failure == nullptr ? "vistrel-wayland.so is not installed" : failure);
    });
  }
  return function;
}

}  // namespace

void joinWaylandSession(Session& session, OpenSource& openSource) {
  void* const join = functionOfModule("vistrelJoinWaylandSession");
  if (join == nullptr) return;
  reinterpret_cast<void (*)(Session&, OpenSource&)>(join)(session, openSource);
}

void notifyOfFailure(const std::string& failure) {
  void* const notify = functionOfModule("vistrelNotifyOfFailure");
  if (notify != nullptr) reinterpret_cast<void (*)(const char*)>(notify)(failure.c_str());
}

}  // namespace vistrel::platform::linux_desktop
