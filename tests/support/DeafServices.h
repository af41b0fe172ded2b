#pragma once

#include <string>
#include <sys/un.h>
#include <vector>

#include "tests/support/DBus.h"
#include "tests/support/FileDescriptor.h"
#include "tests/support/PrivateDisplay.h"
#include "tests/support/TemporaryDirectory.h"

namespace vistrel::testbed {

// Services that hang: they are there and never answer. One thread; everything here throws
// std::runtime_error when it cannot be had.

/// Something that listens like a bus or a session manager and answers nobody.
class DeafListener {
 public:
  /// What becomes of those who connect.
  enum class Connecting { succeeds, waitsForEver };

  explicit DeafListener(Connecting connecting);

  /// Of its socket.
  const std::string& path() const { return path_; }
  /// As that of a bus.
  std::string address() const { return "unix:path=" + path_; }

 private:
  void fillBacklog();

  TemporaryDirectory directory_;
  std::string path_ = directory_.path() / "bus";
  sockaddr_un address_{};
  FileDescriptor socket_;
  std::vector<FileDescriptor> backlog_;
};

/// A service of the session's bus that answers nobody.
class DeafService {
 public:
  DeafService(const PrivateDisplay& display, const std::string& name);

 private:
  BusConnection bus_;
};

}  // namespace vistrel::testbed
