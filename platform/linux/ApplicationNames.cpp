#include "platform/linux/ApplicationNames.h"

#include <filesystem>
#include <system_error>

#include "platform/linux/RegularFile.h"
#include "platform/linux/Utf8.h"

namespace vistrel::platform::linux_desktop {
namespace {

std::string processName(std::int32_t processId) {
  // Linux keeps 15 bytes of it, and more for its own threads (proc(5)).
  constexpr std::size_t longest = 100;
  const auto line = contentsOfRegularFile("/proc/" + std::to_string(processId) + "/comm", longest);
  return line ? repairedUtf8(line->substr(0, line->find('\n'))) : std::string();
}

/// Of the file that it runs; empty for a process that may not be looked at.
std::string programName(std::int32_t processId) {
  std::error_code error;
  return std::filesystem::read_symlink("/proc/" + std::to_string(processId) + "/exe", error)
      .filename()
      .string();
}

}  // namespace

const DesktopEntry* ApplicationNames::entryFor(const ApplicationHints& hints) const {
  if (const auto* entry = entries_.withId(hints.applicationId)) return entry;
  for (const auto& each : {hints.wmClass, hints.wmClassInstance}) {
    if (const auto* entry = entries_.withWindowClass(each)) return entry;
  }
  // Many programs give their windows their own file's name for a class.
  for (const auto& each : {hints.wmClass, hints.wmClassInstance}) {
    if (const auto* entry = entries_.withProgram(each)) return entry;
  }
  return hints.processId ? entries_.withProgram(programName(*hints.processId)) : nullptr;
}

std::string ApplicationNames::nameFor(const ApplicationHints& hints) const {
  if (const auto* entry = entryFor(hints)) return entry->name;
  if (!hints.wmClass.empty()) return hints.wmClass;
  const auto name = hints.processId ? processName(*hints.processId) : std::string();
  return name.empty() ? "Unknown" : name;
}

}  // namespace vistrel::platform::linux_desktop
