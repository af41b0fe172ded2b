#pragma once

#include <optional>
#include <string>

#include "platform/Alert.h"
#include "platform/linux/session/SessionFacts.h"

namespace vistrel::platform::linux_desktop {

/// What a person can do here for what the page of the settings at `url` is about, where there is no
/// such page; none for URLs of anything else.
std::optional<Alert> settingsAdvice(const std::string& url, const SessionFacts& facts);

/// What a person is told where windows are listed and cannot be captured, or some are not even
/// listed; empty where all can be mirrored.
std::string mirroringNotice(const SessionFacts& facts);

}  // namespace vistrel::platform::linux_desktop
