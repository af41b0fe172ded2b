#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace vistrel::platform::linux_desktop {

/// Where a program started by `startDetached` finds the first descriptor that it was handed, and
/// the others after it.
inline constexpr int firstHandedDescriptor = 3;

/// Starts a program of ours that goes on when this one has ended. It has nothing of this process
/// but the environment and `descriptors`, which stay open here as well. It forks at once and goes
/// on as the child, so that it is nobody's child; this returns then. For any thread. False where it
/// does not start.
bool startDetached(const std::filesystem::path& program, std::vector<std::string> arguments,
                   const std::vector<int>& descriptors = {});

}  // namespace vistrel::platform::linux_desktop
