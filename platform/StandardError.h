#pragma once

#include <string>

namespace vistrel::platform {

/// Writes all of the text to the process's standard error, in one piece where the system takes it
/// so, before it returns. Where nobody reads standard error the text is lost and nothing else
/// happens. Main thread.
void writeToStandardError(const std::string& text);

}  // namespace vistrel::platform
