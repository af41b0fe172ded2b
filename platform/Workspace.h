#pragma once

#include <cstdint>
#include <string>

namespace vistrel::platform {

/// Opens a URL with whatever program serves it; false when none does. Main thread.
bool openURL(const std::string& url);

/// Starts a new instance of the program whose bundle is at `bundlePath`, even while one is running;
/// false when it could not be started. On macOS it runs "/usr/bin/open" with "-n" and the path.
/// Main thread.
bool openNewInstance(const std::string& bundlePath);

/// This process. Any thread.
std::int32_t processIdentifier();

}  // namespace vistrel::platform
