#include "platform/linux/Companions.h"

#include <system_error>

namespace vistrel::platform::linux_desktop {

std::filesystem::path ownProgram() {
  std::error_code failure;
  return std::filesystem::read_symlink("/proc/self/exe", failure);
}

std::filesystem::path companion(const std::string& name, const std::filesystem::path& installed) {
  const auto folder = ownProgram().parent_path();
  for (const std::filesystem::path& place : {std::filesystem::path(name), installed}) {
    std::error_code failure;
    auto path = (folder / place).lexically_normal();
    if (std::filesystem::exists(path, failure)) return path;
  }
  return {};
}

}  // namespace vistrel::platform::linux_desktop
