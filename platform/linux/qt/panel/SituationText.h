#pragma once

#include <string>

#include "platform/linux/session/SourceSituations.h"

namespace vistrel::platform::linux_desktop {

/// What a person is told of where the source is, and what helps; empty where there is nothing to
/// tell.
std::string situationText(SourceSituation situation);

/// Two texts, each in lines of its own; an empty one takes none.
std::string inLines(const std::string& first, const std::string& second);

}  // namespace vistrel::platform::linux_desktop
