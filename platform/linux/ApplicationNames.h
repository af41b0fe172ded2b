#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <utility>

#include "platform/linux/DesktopEntries.h"
#include "platform/linux/XdgDirectories.h"

namespace vistrel::platform::linux_desktop {

/// What a window says about the application that it belongs to; empty where it says nothing.
struct ApplicationHints {
  std::string applicationId;
  std::string wmClassInstance;
  std::string wmClass;
  std::optional<std::int32_t> processId;
};

/// Names of applications as people know them. One thread at a time.
class ApplicationNames {
 public:
  explicit ApplicationNames(DesktopEntries entries = DesktopEntries(xdgDataDirectories(),
                                                                    messagesLocale()))
      : entries_(std::move(entries)) {}

  /// Takes notice of applications that have been installed since.
  void refresh() { entries_.refresh(); }
  /// From the desktop entry, else the window class, else the process; "Unknown" when all are
  /// silent.
  std::string nameFor(const ApplicationHints& hints) const;

 private:
  const DesktopEntry* entryFor(const ApplicationHints& hints) const;

  DesktopEntries entries_;
};

}  // namespace vistrel::platform::linux_desktop
