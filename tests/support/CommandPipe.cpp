#include "tests/support/CommandPipe.h"

#include <array>
#include <cerrno>
#include <system_error>
#include <unistd.h>

namespace vistrel::testbed {
namespace {

std::size_t checked(ssize_t result, const char* what) {
  if (result < 0) {
    throw std::system_error(errno, std::generic_category(), what);
  }
  return static_cast<std::size_t>(result);
}

}  // namespace

bool CommandPipe::serve(const std::function<std::string(const std::string&)>& obey) {
  std::array<char, 256> chunk{};
  const auto count = checked(::read(commands_, chunk.data(), chunk.size()), "read");
  pending_.append(chunk.data(), count);
  for (auto end = pending_.find('\n'); end != std::string::npos; end = pending_.find('\n')) {
    const std::string answer = obey(pending_.substr(0, end)) + '\n';
    checked(::write(answers_, answer.data(), answer.size()), "write");
    pending_.erase(0, end + 1);
  }
  return count > 0;
}

}  // namespace vistrel::testbed
