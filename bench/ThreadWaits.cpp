#include "bench/ThreadWaits.h"

#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <system_error>

namespace vistrel::bench {
namespace {

long waitsIn(std::istream& status) {
  const std::string wanted = "voluntary_ctxt_switches:";
  for (std::string line; std::getline(status, line);) {
    if (line.starts_with(wanted)) return std::stol(line.substr(wanted.size()));
  }
  return 0;
}

}  // namespace

std::map<std::string, long> threadWaits(pid_t pid) {
  std::map<std::string, long> waits;
  std::error_code failure;
  const std::filesystem::directory_iterator threads("/proc/" + std::to_string(pid) + "/task",
                                                    failure);
  if (failure) throw std::runtime_error("a measured process is gone");
  for (const auto& thread : threads) {
    std::ifstream comm(thread.path() / "comm");
    std::string name;
    std::getline(comm, name);
    std::ifstream status(thread.path() / "status");
    waits[name] += waitsIn(status);
  }
  return waits;
}

}  // namespace vistrel::bench
