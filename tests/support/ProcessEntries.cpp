#include "tests/support/ProcessEntries.h"

#include <filesystem>
#include <iterator>
#include <string>

namespace vistrel::testbed {
namespace {

std::size_t entriesIn(pid_t process, const std::string& folder) {
  const std::filesystem::directory_iterator entries("/proc/" + std::to_string(process) + "/" +
                                                    folder);
  return static_cast<std::size_t>(std::distance(begin(entries), end(entries)));
}

}  // namespace

std::size_t openDescriptors(pid_t process) { return entriesIn(process, "fd"); }

std::size_t threadCount(pid_t process) { return entriesIn(process, "task"); }

}  // namespace vistrel::testbed
