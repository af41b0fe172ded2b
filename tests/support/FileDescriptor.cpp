#include "tests/support/FileDescriptor.h"

#include <array>
#include <cerrno>
#include <fcntl.h>
#include <system_error>
#include <unistd.h>

namespace vistrel::testbed {

void FileDescriptor::close() {
  if (descriptor_ >= 0) {
    ::close(std::exchange(descriptor_, -1));
  }
}

Pipe Pipe::open() {
  std::array<int, 2> ends{};
  if (::pipe2(ends.data(), O_CLOEXEC) != 0) {
    throw std::system_error(errno, std::generic_category(), "pipe2");
  }
  return {FileDescriptor(ends[0]), FileDescriptor(ends[1])};
}

std::string readLine(const FileDescriptor& descriptor) {
  std::string line;
  char character = 0;
  while (::read(descriptor.get(), &character, 1) == 1 && character != '\n') {
    line += character;
  }
  return line;
}

}  // namespace vistrel::testbed
