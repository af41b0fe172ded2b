#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace vistrel::platform::linux_desktop {

/// All of a regular file; none when there is none, when it cannot be read or when it is longer than
/// `mostBytes`. Anything may stand in a file's place and is none: a pipe, which would have us wait
/// for somebody to write, a device that never ends. Links are followed. Any thread.
std::optional<std::string> contentsOfRegularFile(const std::filesystem::path& path,
                                                 std::size_t mostBytes);

/// As `contentsOfRegularFile`, for texts of lines: of a file that is longer than `mostBytes`, what
/// ends with the last whole line within them.
std::optional<std::string> linesOfRegularFile(const std::filesystem::path& path,
                                              std::size_t mostBytes);

/// Makes a regular file of `contents`, for its owner alone whatever the umask, at once: a reader
/// sees what was there or all of it. What a link in its place leads to is not touched, the link is
/// replaced. A file that its owner has made read-only stays, and so does anything that is no file.
/// What cannot be written leaves everything as it was. Any thread.
void replaceRegularFile(const std::filesystem::path& path, std::string_view contents);

}  // namespace vistrel::platform::linux_desktop
