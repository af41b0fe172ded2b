#pragma once

#include "platform/Alert.h"

namespace vistrel::platform::linux_desktop {

/// Shows the alert and waits for its answer. Main thread.
int runAlertBox(const Alert& alert);

/// What closing the alert without choosing a button answers.
int answerOfClosing(const Alert& alert);

}  // namespace vistrel::platform::linux_desktop
