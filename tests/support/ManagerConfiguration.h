#pragma once

#include <filesystem>

#include "tests/support/WindowManager.h"
#include "tests/support/XConnection.h"

namespace vistrel::testbed {

/// Writes into a home what the manager is to find there of a person's own settings: several
/// desktops, no panel of its own on the screen, and, where it would tile windows, all of them
/// floating. Everything else is as the manager has it.
void configure(WindowManager manager, const std::filesystem::path& home);

/// Whether the manager of this display has the desktops. One that is configured by commands takes
/// these after it has begun to manage; desktops come last.
bool isConfigured(const XConnection& connection);

}  // namespace vistrel::testbed
