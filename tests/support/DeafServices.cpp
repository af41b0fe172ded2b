#include "tests/support/DeafServices.h"

#include <cstring>
#include <stdexcept>
#include <sys/socket.h>

namespace vistrel::testbed {
namespace {

FileDescriptor localSocket() {
  return FileDescriptor(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
}

const sockaddr* generic(const sockaddr_un& address) {
  return reinterpret_cast<const sockaddr*>(&address);
}

}  // namespace

DeafListener::DeafListener(Connecting connecting) : socket_(localSocket()) {
  address_.sun_family = AF_UNIX;
  std::strncpy(address_.sun_path, path_.c_str(), sizeof address_.sun_path - 1);
  const int mostWaiting = connecting == Connecting::succeeds ? 64 : 0;
  if (bind(socket_.get(), generic(address_), sizeof address_) != 0 ||
      listen(socket_.get(), mostWaiting) != 0) {
    throw std::runtime_error("no socket can listen at " + path_);
  }
  if (connecting == Connecting::waitsForEver) fillBacklog();
}

void DeafListener::fillBacklog() {
  do {
    backlog_.push_back(localSocket());
  } while (connect(backlog_.back().get(), generic(address_), sizeof address_) == 0);
}

DeafService::DeafService(const PrivateDisplay& display, const std::string& name)
    : bus_(connectToBus(display.busAddress())) {
  if (sd_bus_request_name(bus_.get(), name.c_str(), 0) < 0) {
    throw std::runtime_error("the name is not to be had: " + name);
  }
}

}  // namespace vistrel::testbed
