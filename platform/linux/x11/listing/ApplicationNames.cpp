#include "platform/linux/x11/listing/ApplicationNames.h"

#include <fstream>

#include "platform/linux/x11/server/TextDecoding.h"

namespace vistrel::platform::linux_desktop {
namespace {

std::string processName(std::int32_t processId) {
  std::string name;
  std::ifstream stream("/proc/" + std::to_string(processId) + "/comm", std::ios::binary);
  std::getline(stream, name);
  return repairedUtf8(name);
}

}  // namespace

const DesktopEntry* ApplicationNames::entryFor(const ApplicationHints& hints) const {
  if (const auto* entry = entries_.withId(hints.gtkApplicationId)) return entry;
  for (const auto& each : {hints.wmClass, hints.wmClassInstance}) {
    if (const auto* entry = entries_.withWindowClass(each)) return entry;
  }
  return nullptr;
}

std::string ApplicationNames::nameFor(const ApplicationHints& hints) const {
  if (const auto* entry = entryFor(hints)) return entry->name;
  if (!hints.wmClass.empty()) return hints.wmClass;
  return hints.processId ? processName(*hints.processId) : std::string();
}

}  // namespace vistrel::platform::linux_desktop
