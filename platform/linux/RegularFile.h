#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>

namespace vistrel::platform::linux_desktop {

/// All of a regular file; none when there is none, when it cannot be read or when it is longer than
/// `mostBytes`. Anything may stand in a file's place and is none: a pipe, which would have us wait
/// for somebody to write, a device that never ends. Links are followed. Any thread.
std::optional<std::string> contentsOfRegularFile(const std::filesystem::path& path,
                                                 std::size_t mostBytes);

}  // namespace vistrel::platform::linux_desktop
